/** The page's words, numbers and direction in the user's language; switches while the page is open. */

import english from './languages/en.js';

/** The languages of the add-in's own language dialog. */
export const LANGUAGES = ['zh-CN', 'zh-TW', 'en', 'ja', 'ru', 'ms', 'th', 'de', 'fr', 'es', 'id', 'vi', 'ko', 'ar'];
const FALLBACK = 'en';
const RIGHT_TO_LEFT = ['ar'];
/** Chinese regions and scripts that read the traditional characters. */
const TRADITIONAL = /^zh-(hant|tw|hk|mo)\b/i;

let current = FALLBACK;
let texts = english;
let askedLast = 0;
const listeners = [];

/**
 * @param {string | null | undefined} code such as "de", "de-AT", "zh-Hant-HK"
 * @returns {string} one of LANGUAGES
 */
export function closestLanguage(code) {
  const asked = code ?? '';
  const exact = LANGUAGES.find((known) => known.toLowerCase() === asked.toLowerCase());
  if (exact) return exact;
  if (/^zh\b/i.test(asked)) return TRADITIONAL.test(asked) ? 'zh-TW' : 'zh-CN';
  const primary = asked.toLowerCase().split(/[-_]/)[0];
  return LANGUAGES.includes(primary) ? primary : FALLBACK;
}

/** @returns {string} one of LANGUAGES */
export function language() {
  return current;
}

/**
 * @param {string} key of the language modules
 * @param {Record<string, string | number>} [values] for the {names} in the text; numbers are written the language's way
 * @returns {string}
 */
export function t(key, values = {}) {
  return (texts[key] ?? key).replace(/\{(\w+)\}/g, (mark, name) => {
    const value = values[name];
    if (value === undefined) return mark;
    return typeof value === 'number' ? formatNumber(value) : isolated(value);
  });
}

/** A name written the other way round must not turn the sentence around it. */
const isolated = (text) => (RIGHT_TO_LEFT.includes(current) ? `\u2068${text}\u2069` : text);

/** By language and style: making one takes far longer than using it. @type {Map<string, Intl.NumberFormat>} */
const formats = new Map();

function format(value, style) {
  const key = `${current} ${style}`;
  if (!formats.has(key)) formats.set(key, new Intl.NumberFormat(current, { style }));
  return formats.get(key).format(value);
}

/** @param {number} value */
export const formatNumber = (value) => format(value, 'decimal');

/** @param {number} part 0 to 1; rounded down, so that 100 % means all */
export const formatPercent = (part) => format(Math.floor(part * 100) / 100, 'percent');

/**
 * @param {number} milliseconds
 * @returns {string} "0:42", "1:02:03"
 */
export function formatDuration(milliseconds) {
  const seconds = Math.max(0, Math.floor(milliseconds / 1000));
  const two = (value) => String(value).padStart(2, '0');
  const [h, m, s] = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, seconds % 60];
  return h > 0 ? `${h}:${two(m)}:${two(s)}` : `${m}:${two(s)}`;
}

/** Chinese is named by its script, which is what the two codes stand for. */
const NAMED_AS = { zh: 'zh-Hans', 'zh-CN': 'zh-Hans', 'zh-TW': 'zh-Hant' };

/**
 * @param {string} code of any language
 * @returns {string} its name in the user's language
 */
export function languageName(code) {
  try {
    const name = new Intl.DisplayNames([current], { type: 'language' }).of(NAMED_AS[code] ?? code);
    return name.charAt(0).toLocaleUpperCase(current) + name.slice(1);
  } catch {
    return code;
  }
}

/** @param {() => void} listener called after each switch, the first one included */
export function onLanguage(listener) {
  listeners.push(listener);
}

/**
 * Loads a language and puts it into the page. One that cannot be loaded leaves the page in the language it has, which is
 * English at first; of several asked for at a time the last one counts.
 * @param {string | null | undefined} code
 */
export async function setLanguage(code) {
  const chosen = closestLanguage(code);
  const asked = ++askedLast;
  const module = await import(`./languages/${chosen}.js`).catch(() => null);
  if (asked !== askedLast) return;
  if (module) [current, texts] = [chosen, module.default];
  document.documentElement.lang = current;
  document.documentElement.dir = RIGHT_TO_LEFT.includes(current) ? 'rtl' : 'ltr';
  translate(document);
  for (const listener of listeners) listener();
}

/**
 * Fills the elements that name their text: `data-t` the content, `data-t-label` the accessible name and the tooltip,
 * `data-t-hint` what an empty field shows.
 * @param {ParentNode} root
 */
export function translate(root) {
  for (const element of root.querySelectorAll('[data-t]')) element.textContent = t(element.dataset.t);
  for (const element of root.querySelectorAll('[data-t-label]')) {
    element.setAttribute('aria-label', t(element.dataset.tLabel));
    element.title = t(element.dataset.tLabel);
  }
  for (const element of root.querySelectorAll('[data-t-hint]')) element.placeholder = t(element.dataset.tHint);
}
