/** Draws the history of quick translation: each text with its answer, and what can be done with that. */
import { byId, make } from './dom.js';
import { errorRow, quickErrorCode } from './errors.js';
import { languageName, t, translate } from './i18n.js';

/** What is drawn, by request: an entry that is the same object needs no new element. */
const drawn = new Map();

/**
 * @typedef {object} Uses
 * @property {(entry: import('./quick_history.js').Entry) => void} copy
 * @property {(entry: import('./quick_history.js').Entry) => void} replace
 * @property {(entry: import('./quick_history.js').Entry) => void} insert
 * @property {(entry: import('./quick_history.js').Entry) => void} again
 * @property {string} signInAddress
 */

/**
 * @param {import('./quick_history.js').Entry[]} entries
 * @param {Uses} uses
 */
export function drawHistory(entries, uses) {
  byId('history').hidden = entries.length === 0;
  const list = byId('answers');
  const wanted = new Set(entries.map(({ requestId }) => requestId));
  for (const [id, { element }] of drawn) {
    if (wanted.has(id)) continue;
    element.remove();
    drawn.delete(id);
  }
  for (const entry of entries.toReversed()) {
    const before = drawn.get(entry.requestId);
    if (before?.entry === entry) continue;
    const element = makeEntry(entry, uses);
    if (before) before.element.replaceWith(element);
    else list.prepend(element);
    drawn.set(entry.requestId, { entry, element });
  }
}

/** The words of all entries are in another language now. */
export function forgetDrawn() {
  drawn.clear();
  byId('answers').replaceChildren();
}

function makeEntry(entry, uses) {
  const languages = { source: sourceName(entry.sourceLang), target: languageName(entry.targetLang) };
  const element = make('li', { 'data-state': entry.state }, [
    make('p', { class: 'quiet', textContent: t('quick.languages', languages) }),
    make('p', { class: 'quiet asked', dir: 'auto', textContent: entry.text }),
    ...PARTS[entry.state](entry, uses),
  ]);
  translate(element);
  return element;
}

const sourceName = (code) => (code === 'auto' ? t('form.auto') : languageName(code));

const PARTS = {
  waiting: () => [make('p', { 'data-t': 'run.translating' })],
  done: (entry, uses) => [
    make('p', { class: 'answer', dir: 'auto', lang: entry.targetLang, textContent: entry.translation }),
    make('div', { class: 'buttons' }, [
      makeButton('common.copy', () => uses.copy(entry)),
      makeButton('quick.replace', () => uses.replace(entry)),
      makeButton('quick.insert', () => uses.insert(entry)),
    ]),
  ],
  failed: (entry, uses) => {
    const { remedy } = errorRow(quickErrorCode(entry.error));
    const again = makeButton('common.tryAgain', () => uses.again(entry));
    const signIn = make('a', { class: 'button', href: uses.signInAddress, 'data-t': 'auth.signIn' });
    return [make('p', { class: 'problem', textContent: failureText(entry) }), remedy === 'signIn' ? signIn : again];
  },
};

/** @param {import('./quick_history.js').Entry} entry that has failed @returns {string} why, in words */
export function failureText({ error }) {
  if (error === '') return t('quick.noAnswer');
  const code = quickErrorCode(error);
  return code ? t(errorRow(code).text) : `${t('quick.failed')} ${error}`;
}

function makeButton(key, act) {
  const button = make('button', { type: 'button', 'data-t': key });
  button.addEventListener('click', act);
  return button;
}
