/**
 * The texts of the last run with their translations. The add-in holds the same ones by the same numbers; here they are
 * kept over reloads and handed on between pages and windows.
 */
import { load, save } from './storage.js';

const NAME = 'units';
/** A browser keeps about five million characters a site; a workbook with more text is listed while its page stays. */
const MAX_KEPT_CHARS = 2_000_000;

/**
 * @typedef {object} Unit
 * @property {string} original
 * @property {string} translated the original when the unit was skipped
 * @property {boolean} skipped it held nothing to translate
 */

let runId = 0;
/**
 * By the add-in's number, from 0; those that were finished before this page could hear of them are missing.
 * @type {Unit[]}
 */
let units = [];
let changed = () => {};

export const knownUnits = () => units;

/** @param {() => void} listener called after each change */
export function onUnits(listener) {
  changed = listener;
}

/** @param {number} id of a run whose cells have been read: the units of the one before are gone */
export function beginUnits(id) {
  if (id === runId) return;
  [runId, units] = [id, []];
  changed();
}

/** @param {{runId: number, wordIndex: number} & Unit} message as the add-in sends it */
export function addUnit({ runId: id, wordIndex, original, translated, skipped }) {
  beginUnits(id);
  units[wordIndex] = { original, translated, skipped };
  changed();
}

/** @returns {object | null} a JSON value; null when there is nothing, or too much to hand on */
export function exportUnits() {
  let chars = 0;
  for (const unit of units) chars += (unit?.original.length ?? 0) + (unit?.translated.length ?? 0);
  if (units.length === 0 || chars > MAX_KEPT_CHARS) return null;
  return { runId, units: Array.from(units, (unit) => unit && [unit.original, unit.translated, unit.skipped]) };
}

/** @param {any} value of another page's export; anything else is ignored */
export function importUnits(value) {
  if (!Number.isInteger(value?.runId) || !Array.isArray(value.units)) return;
  const read = [];
  value.units.forEach((fields, index) => {
    if (!Array.isArray(fields)) return;
    const [original, translated, skipped] = fields;
    if (typeof original !== 'string' || typeof translated !== 'string') return;
    read[index] = { original, translated, skipped: skipped === true };
  });
  [runId, units] = [value.runId, read];
  changed();
}

/** Takes over what the page before has kept, and keeps what there is for the next one. */
export function openUnits() {
  importUnits(load(sessionStorage, NAME));
  addEventListener('pagehide', () => {
    // What does not fit must not leave an earlier run's texts behind.
    save(sessionStorage, NAME, null);
    save(sessionStorage, NAME, exportUnits());
  });
}
