/** Cells and ranges in A1 notation; rows and columns count from 1. */

const MAX_ROW = 1048576;
const MAX_COLUMN = 16384;

/** @param {number} column */
export function columnName(column) {
  let name = '';
  for (let rest = column; rest > 0; rest = Math.floor((rest - 1) / 26)) {
    name = String.fromCharCode(65 + ((rest - 1) % 26)) + name;
  }
  return name;
}

/** @param {number} row @param {number} col */
export const cellName = (row, col) => columnName(col) + row;

/** @param {{row: number, col: number}} first @param {number} rows @param {number} columns */
export function rangeName({ row, col }, rows, columns) {
  const [from, to] = [cellName(row, col), cellName(row + rows - 1, col + columns - 1)];
  return from === to ? from : `${from}:${to}`;
}

/**
 * @param {string} text such as "b3" or "$B$3"
 * @returns {{row: number, col: number} | null} null for what is no cell of a sheet
 */
export function readCell(text) {
  const [, letters, digits] = /^\s*\$?([A-Za-z]{1,3})\$?([1-9]\d{0,6})\s*$/.exec(text) ?? [];
  if (letters === undefined) return null;
  const col = [...letters.toUpperCase()].reduce((sum, letter) => sum * 26 + letter.charCodeAt(0) - 64, 0);
  return col <= MAX_COLUMN && Number(digits) <= MAX_ROW ? { row: Number(digits), col } : null;
}

/** @param {{row: number, col: number}} first @returns {boolean} whether the sheet has room for so many */
export const fits = ({ row, col }, rows, columns) => row + rows - 1 <= MAX_ROW && col + columns - 1 <= MAX_COLUMN;
