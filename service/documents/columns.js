/** Finds the columns of lines that stand below each other, and puts their words into cells. */
import { blankWidth, letterWidth, median, piecesOf, rightOf, textOf } from './lines.js';

/** In widths of a blank: more than one, which stays in a cell. */
const WIDE_GAP = 1.3;
/** In widths of a letter: a narrower gap counts only where the words beside it are aligned. */
const NARROW_GAP = 0.25;
const ALIGNED = 0.15;
/** Fewer lines may be aligned by chance. */
const MIN_ALIGNED_LINES = 3;

/** A row that holds this part of the usual number of pieces has no text over several columns, but perhaps a hole. */
const FULL_ROW = 0.75;

/** @typedef {{left: number, right: number, isWide: boolean}} Column `isWide`: the gap ahead of it is as wide as any */

/**
 * @param {import('./lines.js').Line[]} lines of one table
 * @returns {{rows: string[][], columns: {left: number, right: number}[]}} as many cells in each row as there are
 *   columns; a text over several columns stands in the first of them
 */
export function readCells(lines) {
  const unit = letterWidth(lines.flatMap(({ words }) => words));
  const gap = WIDE_GAP * blankWidth(lines);
  const rows = lines.map(({ words }) => ({ words, pieces: piecesOf(words, gap) }));
  const columns = columnsOf(rows, { unit, gap });
  const placed = rows.map(({ pieces }) => pieces.flatMap((piece) => placesOf(piece, columns)));
  const texts = placed.map((places) => columns.map((column) => textOf(wordsIn(places, column))));
  return joinHeadings(columns, texts);
}

/**
 * @param {import('./lines.js').Line} line beside a table whose words stand closer than its own
 * @param {{left: number, right: number}[]} columns of the table
 * @returns {boolean} whether it is a row of it all the same, as a heading may be: a word or more in each column but one
 */
export function fitsColumns(line, columns) {
  const pieces = piecesOf(line.words, WIDE_GAP * blankWidth([line]));
  const touched = pieces.map((piece) => columns.filter((column) => overlap(piece, column) > 0));
  return pieces.length >= Math.max(2, columns.length - 1) && touched.every(({ length }) => length === 1);
}

/** A heading at the left of its cell and numbers at the right of theirs may not meet: they are one column. */
function joinHeadings(columns, rows) {
  const joined = [];
  for (const [i, { left, right }] of columns.entries()) {
    const cells = rows.map((row) => row[i]);
    const last = joined.at(-1);
    if (last && (isLoneHeading(last.cells, cells) || isLoneHeading(cells, last.cells))) {
      last.right = right;
      last.cells = last.cells.map((text, row) => text || cells[row]);
    } else {
      joined.push({ left, right, cells });
    }
  }
  return { columns: joined, rows: rows.map((_, row) => joined.map(({ cells }) => cells[row])) };
}

const isLoneHeading = (cells, below) =>
  cells[0] !== '' && below[0] === '' && cells.slice(1).every((text) => text === '') &&
  below.some((text) => text !== '');

const wordsIn = (places, column) => places.filter((place) => place.column === column).flatMap(({ words }) => words);

/**
 * The columns are told by the rows that are about as full as most: a title over several columns says nothing against a
 * gap. What these rows have beside all columns makes columns of its own.
 */
function columnsOf(rows, sizes) {
  const usual = median(rows.map(({ pieces }) => pieces.length));
  const [full, other] = [rows.filter((row) => isFull(row, usual)), rows.filter((row) => !isFull(row, usual))];
  const columns = gapColumns(full, sizes);
  for (const piece of other.flatMap(({ pieces }) => pieces)) {
    if (!columns.some((column) => overlap(piece, column) > 0)) columns.push({ ...extentOf(piece), isWide: true });
  }
  return columns.sort((a, b) => a.left - b.left);
}

const isFull = ({ pieces }, usual) => pieces.length >= FULL_ROW * usual;
const extentOf = ({ left, right }) => ({ left, right });

/** Negative for the distance between two that do not meet. */
export const overlap = (a, b) => Math.min(a.right, b.right) - Math.max(a.left, b.left);

/** @returns {Column[]} parted by every gap that goes through all rows */
function gapColumns(rows, { unit, gap }) {
  const words = rows.flatMap((row) => row.words).sort((a, b) => a.left - b.left);
  const columns = [];
  for (const word of words) {
    const last = columns.at(-1);
    const distance = last ? word.left - last.right : Infinity;
    const isWide = distance >= gap;
    if (isWide || (distance >= NARROW_GAP * unit && isAligned(rows, last, word.left, unit))) {
      columns.push({ left: word.left, right: rightOf(word), isWide });
    } else {
      last.right = Math.max(last.right, rightOf(word));
    }
  }
  return columns;
}

/** Whether the words ahead of a gap end at one place, or those behind it begin at one, as cells do and words do not. */
function isAligned(rows, { right }, left, unit) {
  const beside = rows
    .map(({ words }) => [words.findLast((word) => rightOf(word) <= right), words.find((word) => word.left >= left)])
    .filter(([before, behind]) => before && behind);
  if (beside.length < MIN_ALIGNED_LINES) return false;
  const ends = beside.map(([before]) => rightOf(before));
  const starts = beside.map(([, behind]) => behind.left);
  return [ends, starts].some((edges) => Math.max(...edges) - Math.min(...edges) <= ALIGNED * unit);
}

/** @returns {{column: Column, words: object[]}[]} the columns that a piece's words belong to */
function placesOf(piece, columns) {
  const touched = columns.filter((column) => overlap(piece, column) > 0);
  if (touched.length === 0) return [{ column: nearest(piece, columns), words: piece.words }];
  const homes = piece.words.map((word) => touched.filter((column) => overlap(boxOf(word), column) > 0));
  const isWhole = touched.slice(1).some(({ isWide }) => isWide) || homes.some(({ length }) => length > 1);
  if (isWhole) return [{ column: touched[0], words: piece.words }];
  // Only narrow gaps: the piece is several cells, whose words stand as close as words do.
  return piece.words.map((word, i) => ({ column: homes[i][0] ?? nearest(boxOf(word), touched), words: [word] }));
}

const boxOf = (word) => ({ left: word.left, right: rightOf(word) });

const nearest = (piece, columns) =>
  columns.reduce((best, column) => (overlap(piece, column) > overlap(piece, best) ? column : best));
