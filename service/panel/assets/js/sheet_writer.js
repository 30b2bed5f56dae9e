/** Writes into the sheet through the add-in's tools, so that one undo takes all of it back. */
import { rangeName } from './cell_address.js';
import { ask } from './tool_request.js';
import { takeMarkersOff } from './tool_runner.js';

/** The add-in writes and reads no more cells at a time. */
const MAX_CELLS = 5000;

/**
 * @typedef {object} Block of cells
 * @property {number} row 1-based, of its first cell
 * @property {number} col 1-based
 * @property {(string | number | null)[][]} values rows of the same length
 *
 * @typedef {object} Written
 * @property {number} depth of the add-in's markers with this write's on top; 0 when nothing is to be taken back
 * @property {number} applied cells
 * @property {number} refused cells: locked ones, mostly
 * @property {boolean} failed the spreadsheet program did not go through with it
 */

/** @returns {Promise<{sheetName: string, row: number, col: number, rangeAddress: string} | null>} what is selected */
export async function selectedPlace() {
  const place = await ask('excelGetWriteContext').catch(() => null);
  return place && place.error === undefined && place.row >= 1 && place.col >= 1 ? place : null;
}

/**
 * @param {string} sheetName
 * @param {string} range
 * @returns {Promise<number>} how many of its cells hold something; -1 for too many to count, NaN when nobody can tell
 */
export async function filledCells(sheetName, range) {
  const answer = await ask('excelRangeHasContent', { range, sheetName }).catch(() => null);
  if (!answer || answer.error !== undefined) return NaN;
  return answer.hasContent ? answer.nonEmptyCount : 0;
}

/**
 * @param {string} sheetName
 * @param {Block[]} blocks
 * @returns {Promise<Written>}
 */
export async function writeBlocks(sheetName, blocks) {
  const written = { depth: 0, applied: 0, refused: 0, failed: false };
  const { depth } = (await ask('excelPushUndoMarker').catch(() => null)) ?? {};
  if (!Number.isInteger(depth)) return { ...written, failed: true };
  for (const part of blocks.flatMap(partsOf)) {
    const answer = await writePart(sheetName, part);
    if (!answer) {
      written.failed = true;
      break;
    }
    written.applied += answer.applied;
    written.refused += answer.results.filter(({ status }) => status !== 'applied').length;
  }
  // After a failure nobody knows whether something was written.
  if (written.applied > 0 || written.failed) written.depth = depth;
  else await takeMarkersOff(depth);
  return written;
}

/** @param {Block} block @returns {Block[]} of which the add-in takes each */
function partsOf({ row, col, values }) {
  const height = Math.max(1, Math.floor(MAX_CELLS / values[0].length));
  const parts = [];
  for (let at = 0; at < values.length; at += height) {
    parts.push({ row: row + at, col, values: values.slice(at, at + height) });
  }
  return parts;
}

/** @returns {Promise<{applied: number, results: {status: string}[]} | null>} null when it failed */
async function writePart(sheetName, block) {
  const range = rangeName(block, block.values.length, block.values[0].length);
  const answer = await ask('excelWriteRange', { range, sheetName, values: block.values }).catch(() => null);
  if (!Number.isInteger(answer?.applied) || !Array.isArray(answer.results)) return null;
  await mendTexts(sheetName, block, range);
  return answer;
}

/** A cell whose format is text keeps the apostrophe that makes a text of anything, and needs none. */
async function mendTexts(sheetName, { row, col, values }, range) {
  const isGuarded = (value) => typeof value === 'string' && value.startsWith("'");
  if (!values.flat().some(isGuarded)) return;
  const { cells = [] } = (await ask('excelReadRange', { range, sheetName }).catch(() => null)) ?? {};
  for (const cell of cells) {
    const value = values[cell.row - row]?.[cell.col - col];
    // One that begins with "=" is left with it: whether such a cell makes a formula of it is not known.
    if (!isGuarded(value) || cell.value !== value || value[1] === '=') continue;
    const bare = { range: rangeName(cell, 1, 1), sheetName, values: [[value.slice(1)]] };
    await ask('excelWriteRange', bare).catch(() => {});
  }
}

/**
 * Takes back what was written with the marker, and what was written later.
 * @param {number} depth as `writeBlocks` told
 * @returns {Promise<{undone: boolean, restored: number}>} restored: cells
 */
export const takeBack = (depth) => takeMarkersOff(depth);
