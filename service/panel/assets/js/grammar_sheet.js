/** Reads the selection's texts, and writes corrections into their cells. */
import { asText } from './cell_values.js';
import { cellName } from './cell_address.js';
import { selectedPlace, writeBlocks } from './sheet_writer.js';
import { ask } from './tool_request.js';

/** @typedef {import('./grammar_rules.js').Suggestion} Suggestion */

/**
 * @returns {Promise<{sheetName: string, range: string, cells: object[]} | {problem: string}>} problem: key of why there
 *   are none
 */
export async function readSelection() {
  const place = await selectedPlace();
  if (!place) return { problem: 'totable.noPlace' };
  const range = place.rangeAddress.replaceAll('$', '');
  // One rectangle of whole cells is what the add-in reads.
  if (!/^[A-Z]+\d+(:[A-Z]+\d+)?$/i.test(range)) return { problem: 'grammar.oneRange' };
  const answer = await readCells({ sheetName: place.sheetName, range });
  if (Array.isArray(answer?.cells)) return { sheetName: place.sheetName, range, cells: answer.cells };
  return { problem: /5000/.test(answer?.error) ? 'grammar.tooMany' : 'totable.noPlace' };
}

const readCells = ({ sheetName, range }) => ask('excelReadRange', { range, sheetName }).catch(() => null);

/**
 * Writes corrections into the cells that still hold what was proofread, and notes in each what came of it.
 * @param {{sheetName: string, range: string}} place that was proofread
 * @param {Suggestion[]} suggestions
 * @returns {Promise<import('./sheet_writer.js').Written>}
 */
export async function accept(place, suggestions) {
  const before = await textsAt(place);
  const current = suggestions.filter((suggestion) => before(suggestion) === suggestion.before);
  for (const suggestion of suggestions) if (!current.includes(suggestion)) suggestion.state = 'changed';
  if (current.length === 0) return { depth: 0, applied: 0, refused: 0, failed: false };
  const blocks = current.map(({ row, col, after }) => ({ row, col, values: [[asText(after)]] }));
  const written = await writeBlocks(place.sheetName, blocks);
  const now = await textsAt(place);
  for (const suggestion of current) {
    suggestion.state = now(suggestion) === suggestion.after ? 'accepted' : 'refused';
  }
  return written;
}

/** @returns {Promise<(cell: {row: number, col: number}) => string | undefined>} a cell's text; a formula has none */
async function textsAt(place) {
  const { cells = [] } = (await readCells(place)) ?? {};
  const texts = new Map(cells.map(({ row, col, value, formula }) => [cellName(row, col), formula ? undefined : value]));
  return ({ row, col }) => texts.get(cellName(row, col));
}
