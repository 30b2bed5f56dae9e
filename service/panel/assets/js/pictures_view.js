/** Draws the pictures of a sheet: each with what became of it, and what can be done with it. */
import { byId, make } from './dom.js';
import { t } from './i18n.js';
import { makePicture } from './picture.js';
import { isSamePicture } from './pictures_state.js';

/**
 * @typedef {import('./pictures_state.js').Item} Item
 *
 * @typedef {object} Uses what the user can do with one picture
 * @property {(item: Item, chosen: boolean) => void} choose
 * @property {(item: Item) => void} replace
 * @property {(item: Item) => void} undo
 * @property {(item: Item) => void} enlarge
 */

const STATES = {
  idle: '',
  extracting: 'pictures.extracting',
  translating: 'run.translating',
  replacing: 'pictures.replacing',
  undoing: 'pictures.undoing',
  ready: 'pictures.ready',
  replaced: 'pictures.replaced',
  nothing: 'pictures.nothing',
  failed: '',
};

/** What is drawn, by the item's id: an item that looks as before needs no new element. */
const drawn = new Map();

/** The words of all items are in another language now. */
export function forgetDrawn() {
  drawn.clear();
  byId('list').replaceChildren();
}

/**
 * @param {Item[]} items
 * @param {object | null} selected anchor of the picture that is selected in the sheet
 * @param {Uses} uses
 */
export function drawItems(items, selected, uses) {
  const list = byId('list');
  const focused = list.contains(document.activeElement) ? document.activeElement.dataset.use : undefined;
  const wanted = new Set(items.map(({ id }) => id));
  for (const id of [...drawn.keys()].filter((known) => !wanted.has(known))) drawn.delete(id);
  const elements = items.map((item) =>
    elementOf(item, selected !== null && isSamePicture(item.anchor, selected), uses),
  );
  // What is in its place is not moved: moving takes the focus away.
  if (elements.some((element, i) => list.children[i] !== element) || list.children.length !== elements.length) {
    list.replaceChildren(...elements);
  }
  if (focused && document.activeElement.dataset.use !== focused) giveFocus(list, focused);
}

/** To what had it, else to what is left of its picture. */
function giveFocus(list, use) {
  const [id] = use.split(' ');
  const places = [`[data-use="${CSS.escape(use)}"]:enabled`, `[data-use="${CSS.escape(`${id} choose`)}"]`];
  places
    .map((place) => list.querySelector(place))
    .find(Boolean)
    ?.focus();
}

function elementOf(item, isSelected, uses) {
  const before = drawn.get(item.id);
  if (before && before.isSelected === isSelected && looksAlike(before.item, item)) {
    before.element.querySelector('input').checked = item.chosen;
    return before.element;
  }
  const element = makeElement(item, isSelected, uses);
  before?.element.replaceWith(element);
  drawn.set(item.id, { item, isSelected, element });
  return element;
}

/** A box that is clicked stays the same element, with the focus in it. */
const looksAlike = (before, now) =>
  before === now || Object.keys(now).every((name) => name === 'chosen' || before[name] === now[name]);

function makeElement(item, isSelected, uses) {
  const parts = [makeChoice(item, uses)];
  if (isSelected) parts.push(make('p', { class: 'quiet', textContent: t('pictures.selected') }));
  const state = stateOf(item);
  if (STATES[state]) parts.push(make('p', { class: 'state', 'data-state': state, textContent: stateText(item) }));
  if (item.crowded > 0) {
    parts.push(make('p', { class: 'quiet', textContent: t('pictures.noRoom', { count: item.crowded }) }));
  }
  if (item.failure) parts.push(make('p', { class: 'problem', textContent: failureText(item.failure) }));
  if (item.translated) parts.push(makeComparison(item));
  const buttons = makeButtons(item, uses);
  if (buttons.length > 0) parts.push(make('div', { class: 'buttons' }, buttons));
  return make('li', { 'data-id': item.id, ...(isSelected && { 'aria-current': 'true' }) }, parts);
}

/** A picture that an earlier page replaced is known by its way back only. */
const stateOf = ({ state, undos }) => (state === 'idle' && undos > 0 ? 'replaced' : state);

/** @param {Item} item @returns {string} what has become of it, empty when nothing has */
export function stateText(item) {
  if (item.failure) return failureText(item.failure);
  const key = STATES[stateOf(item)];
  return key && t(key, { count: item.count });
}

/** @param {import('./pictures_failures.js').PictureFailure} failure */
export const failureText = ({ key, message }) => t(key, { message });

function makeChoice(item, uses) {
  const box = make('input', { type: 'checkbox', checked: item.chosen, 'data-use': `${item.id} choose` });
  box.addEventListener('change', () => uses.choose(item, box.checked));
  return make('label', {}, [
    box,
    makeThumbnail(item),
    make('span', { dir: 'auto', textContent: item.anchor.shapeName }),
  ]);
}

/** @param {{thumbnail: string}} item whose name stands beside it */
export const makeThumbnail = ({ thumbnail }) =>
  make('span', { class: 'thumbnail' }, thumbnail ? [makePicture(thumbnail, '')] : []);

function makeComparison({ original, translated, anchor }) {
  const side = (key, base64) =>
    make('figure', {}, [
      make('figcaption', { textContent: t(key) }),
      makePicture(base64, `${t(key)}: ${anchor.shapeName}`),
    ]);
  return make('div', { class: 'compare' }, [side('display.original', original), side('display.target', translated)]);
}

function makeButtons(item, uses) {
  const { state, translated, undos } = item;
  const offers = [];
  if (translated) offers.push(['enlarge', 'pictures.enlarge']);
  if (translated && (state === 'ready' || state === 'failed')) offers.push(['replace', 'pictures.replace']);
  if (undos > 0) offers.push(['undo', 'terms.undo']);
  return offers.map(([use, key]) => {
    const button = make('button', { type: 'button', textContent: t(key), 'data-use': `${item.id} ${use}` });
    button.setAttribute('aria-label', `${t(key)}: ${item.anchor.shapeName}`);
    button.addEventListener('click', () => uses[use](item));
    return button;
  });
}
