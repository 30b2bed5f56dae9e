/** What the page knows of the sheet's pictures and of the work on them; whoever changes it has the page drawn. */
import { changeItem } from './pictures_state.js';
import { readUndos, stepsOf } from './pictures_undo.js';
import { load, save } from './storage.js';

const NAME = 'pictures';

/**
 * @typedef {import('./pictures_state.js').Item} Item
 * @typedef {import('./pictures_failures.js').PictureFailure} PictureFailure
 */

export const state = {
  /** @type {import('./pictures_state.js').Scan | null} null before the first one */
  scan: null,
  scanning: false,
  /** @type {PictureFailure | null} why the last one came to nothing */
  scanFailure: null,
  /** The picture that is selected in the sheet. @type {Item | null} */
  selected: null,
  /** The sheet that the user has gone to since the scan; empty while it is the same. */
  openSheet: '',
  /** Why the list may not fit the sheet any more, as a key of the words; empty while it does. */
  stale: '',
  /** What is under way: how many of how many pictures are done. @type {{done: number, total: number} | null} */
  work: null,
  /** Ends the work under way. */
  stop: new AbortController(),
  /** What came of the last work, as words. @type {(() => string) | null} */
  outcome: null,
  /** @type {PictureFailure | null} what stopped it */
  stoppedBy: null,
  /** @type {import('./pictures_undo.js').Undo[]} */
  undos: readUndos(load(sessionStorage, NAME)),
};

let draw = () => {};

/** @param {() => void} listener called after each change */
export function onChanged(listener) {
  draw = listener;
}

/** @param {Partial<typeof state>} fields */
export function change(fields) {
  Object.assign(state, fields);
  draw();
}

/** @returns {Item[]} */
export const items = () => state.scan?.items ?? [];

/** @param {Item[]} next they get the undo steps that are known of them */
export function setItems(next) {
  const counted = next.map((item) => {
    const undos = stepsOf(state.undos, item.anchor);
    return undos === item.undos ? item : { ...item, undos };
  });
  change({ scan: { sheetName: '', unsupported: 0, ...state.scan, items: counted } });
}

/** @param {number} id @param {Partial<Item>} fields */
export const setItem = (id, fields) => setItems(changeItem(items(), id, fields));

/** @param {import('./pictures_undo.js').Undo[]} undos */
export function setUndos(undos) {
  state.undos = undos;
  save(sessionStorage, NAME, undos);
  setItems(items());
}

export const isCancelled = () => state.stop.signal.aborted;

export const isBusy = () => state.work !== null || state.scanning;
