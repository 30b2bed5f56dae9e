/** A translated PDF as a page to read, and as a file to keep. */
import { make } from './dom.js';

/**
 * @typedef {object} TranslatedPage
 * @property {number} page 1-based
 * @property {{isHeading: boolean, text: string, translation: string}[]} paragraphs
 *
 * @typedef {object} Languages
 * @property {string} source a code, "auto" when nobody knows
 * @property {string} target
 */

/**
 * @param {TranslatedPage[]} pages
 * @param {Languages} languages
 * @param {(page: number) => string} nameOf words for a page's number
 * @returns {HTMLElement[]} a section a page
 */
export const drawPages = (pages, languages, nameOf) =>
  pages.map(({ page, paragraphs }) =>
    make('section', { class: 'sheet' }, [
      make('h3', { textContent: nameOf(page) }),
      ...paragraphs.map((paragraph) => drawPair(paragraph, languages)),
    ]),
  );

function drawPair({ isHeading, text, translation }, { source, target }) {
  const tag = isHeading ? 'h4' : 'p';
  const original = make(tag, { class: 'original', dir: 'auto', textContent: text });
  if (source !== 'auto') original.lang = source;
  const translated = make(tag, { class: 'translation', dir: 'auto', lang: target, textContent: translation });
  return make('div', { class: 'pair' }, [original, translated]);
}

const STYLE = [
  'body{font:16px/1.6 sans-serif;max-width:70rem;margin:2rem auto;padding:0 1rem}',
  'h3{font-size:.9rem;font-weight:400;color:#666;border-bottom:1px solid #ccc}',
  '.pair{display:grid;grid-template-columns:1fr 1fr;gap:0 2rem}.pair>*{margin:0 0 .6rem}.original{color:#555}',
  '.alone .pair{grid-template-columns:1fr}.alone .original{display:none}',
].join('\n');

/**
 * @param {HTMLElement} article the drawn pages
 * @param {{title: string, language: string}} options
 * @returns {Blob} a file that any browser shows as it is
 */
export function asFile(article, { title, language }) {
  const text = article.cloneNode(true);
  text.removeAttribute('id');
  const safe = escaped(title);
  const head = `<meta charset="utf-8"><title>${safe}</title><meta name="viewport" content="width=device-width">`;
  // Put together as a text: a style element made on this page would be held against its rules.
  const html = `<!doctype html>
<html lang="${escaped(language)}"><head>${head}<style>
${STYLE}
</style></head><body><h1>${safe}</h1>${text.outerHTML}</body></html>
`;
  return new Blob([html], { type: 'text/html' });
}

function escaped(text) {
  return text.replaceAll('&', '&amp;').replaceAll('<', '&lt;').replaceAll('"', '&quot;');
}
