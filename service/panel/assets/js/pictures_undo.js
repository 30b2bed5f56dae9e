/**
 * Which pictures the add-in can put back, and how often: it answers that when it replaces one, and not again. Kept
 * beyond the page, which comes and goes while the add-in remembers. Nothing here touches the page.
 */
import { isSamePicture, readAnchor } from './pictures_state.js';

/** The add-in keeps the first and the newest picture of each. */
const MOST_STEPS = 2;
/** Of the pictures of a workbook, the latest. */
const MOST_PICTURES = 500;

/**
 * @typedef {object} Undo
 * @property {import('./pictures_state.js').Anchor} anchor of the picture that is in the sheet now
 * @property {number} steps that can be undone, at least 1
 * @property {boolean} inBatch is put back with the others of the last batch
 */

const others = (undos, anchor) => undos.filter((undo) => !isSamePicture(undo.anchor, anchor));

/** @param {Undo[]} undos @param {import('./pictures_state.js').Anchor} anchor @returns {number} */
export const stepsOf = (undos, anchor) => undos.find((undo) => isSamePicture(undo.anchor, anchor))?.steps ?? 0;

/**
 * @param {Undo[]} undos
 * @param {object} before anchor of the picture that was replaced
 * @param {object} now anchor of the one in its place
 * @param {boolean} inBatch
 * @returns {Undo[]}
 */
export function withReplaced(undos, before, now, inBatch) {
  const steps = Math.min(MOST_STEPS, stepsOf(undos, before) + 1);
  return [...others(undos, before), { anchor: now, steps, inBatch }].slice(-MOST_PICTURES);
}

/** One step of a picture was undone. */
export function withUndone(undos, before, now) {
  const steps = stepsOf(undos, before) - 1;
  const rest = others(undos, before);
  return steps > 0 ? [...rest, { anchor: now, steps, inBatch: false }] : rest;
}

/** The add-in has nothing for a picture, whatever was known here. */
export const withNothing = others;

/** The batch was put back as a whole. */
export const withBatchUndone = (undos) =>
  withBatchForgotten(undos.map((undo) => ({ ...undo, steps: undo.steps - (undo.inBatch ? 1 : 0) }))).filter(
    ({ steps }) => steps > 0,
  );

/** Another batch begins. */
export const withBatchForgotten = (undos) => undos.map((undo) => ({ ...undo, inBatch: false }));

/** @param {Undo[]} undos @returns {number} pictures of the last batch */
export const batchSize = (undos) => undos.filter(({ inBatch }) => inBatch).length;

/** @param {any} value that was kept @returns {Undo[]} what of it fits */
export function readUndos(value) {
  if (!Array.isArray(value)) return [];
  return value
    .map((undo) => ({ anchor: readAnchor(undo?.anchor), steps: undo?.steps, inBatch: undo?.inBatch === true }))
    .filter(({ anchor, steps }) => anchor && (steps === 1 || steps === MOST_STEPS));
}
