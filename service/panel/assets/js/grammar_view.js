/** Draws the suggestions, each with what differs in it. */
import { cellName } from './cell_address.js';
import { byId, make } from './dom.js';
import { differences } from './grammar_rules.js';
import { t } from './i18n.js';

/** More would be slow to draw, and nobody reads them at a time: the next ones come up as these are settled. */
const MAX_SHOWN = 100;

const STATES = {
  accepted: 'grammar.accepted',
  dismissed: 'grammar.dismissed',
  changed: 'grammar.changed',
  refused: 'grammar.refused',
};
const MARKS = { same: 'span', gone: 'del', new: 'ins' };

/** @typedef {import('./grammar_rules.js').Suggestion} Suggestion */

/**
 * @param {Suggestion[]} suggestions
 * @param {{busy: boolean, accept: (one: Suggestion) => void, dismiss: (one: Suggestion) => void}} uses
 */
export function drawSuggestions(suggestions, uses) {
  const wanted = suggestions.length > MAX_SHOWN ? suggestions.filter(({ state }) => state === 'open') : suggestions;
  byId('suggestions').replaceChildren(...wanted.slice(0, MAX_SHOWN).map((one) => drawOne(one, uses)));
  const count = wanted.length - MAX_SHOWN;
  byId('more').textContent = count > 0 ? t('terms.more', { count }) : '';
}

function drawOne(one, { busy, accept, dismiss }) {
  const cell = cellName(one.row, one.col);
  const title = make('strong', { textContent: cell, dir: 'ltr' });
  const changes = differences(one.before, one.after).map(({ kind, text }) => make(MARKS[kind], { textContent: text }));
  const lines = [title, make('p', { class: 'change', dir: 'auto' }, changes)];
  if (one.reason) lines.push(make('p', { class: 'quiet', dir: 'auto', textContent: one.reason }));
  if (one.state === 'open') {
    const yes = button('grammar.accept', cell, busy, () => accept(one));
    const no = button('grammar.dismiss', cell, busy, () => dismiss(one));
    lines.push(make('div', { class: 'row' }, [yes, no]));
  } else {
    lines.push(make('p', { class: 'quiet', textContent: t(STATES[one.state]) }));
  }
  return make('li', { 'data-state': one.state, 'data-cell': cell }, lines);
}

function button(key, cell, disabled, act) {
  const words = t(key);
  const made = make('button', { type: 'button', textContent: words, 'aria-label': `${words} ${cell}`, disabled });
  made.addEventListener('click', act);
  return made;
}
