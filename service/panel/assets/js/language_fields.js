/** The fields for source and target language, filled with what the service can translate. */
import { byId, fillSelect } from './dom.js';
import { language, languageName, t } from './i18n.js';
import { fetchLanguagePairs } from './service_api.js';

const AUTO = 'auto';

/** For services that translate anything into anything. */
const COMMON = (
  'ar bg bn ca cs da de el en es et fa fi fr he hi hr hu id it ja ko lt lv ms nb nl pl pt pt-BR ro ' +
  'ru sk sl sr sv sw ta th tr uk ur vi zh-CN zh-TW'
).split(' ');

/** @type {string[][] | 'any' | null} null until the service has answered, or failed to */
let pairs = null;

/**
 * @param {string[][] | 'any'} known
 * @param {string} source "auto" or a code
 * @returns {string[]} what it can be translated into
 */
export function targetsOf(known, source) {
  if (known === 'any') return COMMON.filter((code) => code !== source);
  const fitting = known.filter(([from]) => source === AUTO || from === source);
  return [...new Set(fitting.map(([, to]) => to))];
}

/** @param {string[][] | 'any'} known @returns {string[]} */
export function sourcesOf(known) {
  return known === 'any' ? COMMON : [...new Set(known.map(([from]) => from))];
}

/**
 * The target to offer when nothing, or nothing possible, is chosen: the user's own language, if it can be had.
 * @param {string[]} targets
 * @param {string} uiLanguage
 * @returns {string} empty when there is none
 */
export function likelyTarget(targets, uiLanguage) {
  const primary = uiLanguage.split('-')[0];
  return targets.find((code) => code === uiLanguage) ?? targets.find((code) => code === primary) ?? targets[0] ?? '';
}

/** @param {string[][] | 'any'} known @param {string} source @param {string} target */
export function canSwap(known, source, target) {
  return source !== AUTO && sourcesOf(known).includes(target) && targetsOf(known, target).includes(source);
}

/**
 * @param {import('./choices.js').Choices} choices
 * @param {() => void} changed called after each change of the two languages
 */
export function openLanguageFields(choices, changed) {
  const react = () => {
    drawLanguageFields(choices);
    changed();
  };
  byId('source').addEventListener('change', (event) => {
    choices.sourceLang = event.target.value;
    react();
  });
  byId('target').addEventListener('change', (event) => {
    choices.targetLang = event.target.value;
    react();
  });
  byId('swap').addEventListener('click', () => {
    [choices.sourceLang, choices.targetLang] = [choices.targetLang, choices.sourceLang];
    react();
  });
  byId('languages-again').addEventListener('click', () => void loadPairs(react));
  void loadPairs(react);
}

async function loadPairs(done) {
  const failed = byId('languages-failed');
  try {
    pairs = await fetchLanguagePairs();
    failed.hidden = true;
  } catch {
    pairs ??= 'any';
    failed.hidden = false;
  }
  done();
}

/** Fills both fields in the current language; an impossible choice is replaced by a possible one. */
export function drawLanguageFields(choices) {
  if (pairs === null) return;
  const sources = sourcesOf(pairs);
  if (choices.sourceLang !== AUTO && !sources.includes(choices.sourceLang)) choices.sourceLang = AUTO;
  const targets = targetsOf(pairs, choices.sourceLang);
  if (!targets.includes(choices.targetLang)) choices.targetLang = likelyTarget(targets, language());
  const auto = { value: AUTO, text: t('form.auto') };
  fillSelect(byId('source'), [auto, ...named(sources)], choices.sourceLang);
  fillSelect(byId('target'), named(targets), choices.targetLang);
  byId('swap').disabled = !canSwap(pairs, choices.sourceLang, choices.targetLang);
}

function named(codes) {
  const order = new Intl.Collator(language());
  return codes.map((value) => ({ value, text: languageName(value) })).sort((a, b) => order.compare(a.text, b.text));
}
