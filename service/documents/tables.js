/** Finds the tables of a document's pages by the places of their words. */
import { overlap, readCells } from './columns.js';
import { WIDE_GAP, letterWidth, linesOf, median, piecesOf } from './lines.js';

/** As many lines of running text in a row end a table. */
const MAX_PLAIN_LINES = 2;
/** So does a space of as many usual distances between lines. */
const MAX_PITCHES = 3;
const MIN_ROWS = 2;

/**
 * @typedef {object} Table
 * @property {number[]} pages 1-based
 * @property {string[][]} rows all of the same length
 */

/**
 * @param {{page: number, words: import('./lines.js').PlacedWord[]}[]} pages
 * @returns {Table[]} in reading order; a table that goes on at the top of the next page is one
 */
export function findTables(pages) {
  const tables = [];
  for (const { page, words } of pages) {
    const found = tablesOnPage(words).map((table) => ({ pages: [page], ...table }));
    if (found.length > 0 && goesOn(tables.at(-1), found[0], page)) append(tables.at(-1), found.shift());
    tables.push(...found);
  }
  return tables.map((table) => ({ pages: table.pages, rows: table.rows }));
}

function tablesOnPage(words) {
  const gap = WIDE_GAP * letterWidth(words);
  const lines = linesOf(words).map((line) => ({ ...line, isParted: piecesOf(line.words, gap).length > 1 }));
  return partsOf(lines).map(readCells).filter(isTable);
}

const isTable = ({ rows, columns }) => rows.length >= MIN_ROWS && columns.length > 1;

/** Runs of lines of which most have gaps; running text around a table is none of it. */
function partsOf(lines) {
  const pitch = median(lines.slice(1).map(({ top }, i) => top - lines[i].top));
  const parts = [];
  let plain = [];
  let last = null;
  for (const line of lines) {
    if (!line.isParted) {
      plain.push(line);
      continue;
    }
    const before = plain.at(-1) ?? last;
    const isNear = last && plain.length <= MAX_PLAIN_LINES && isClose([last, ...plain, line], pitch);
    if (isNear && before) parts.at(-1).push(...plain, line);
    else parts.push([line]);
    plain = [];
    last = line;
  }
  return parts;
}

const isClose = (lines, pitch) => lines.slice(1).every(({ top }, i) => top - lines[i].top <= MAX_PITCHES * pitch);

/** The columns of one table lie below each other. */
const goesOn = (before, next, page) =>
  before?.pages.at(-1) === page - 1 && before.columns.length === next.columns.length &&
  before.columns.every((column, i) => overlap(column, next.columns[i]) > 0);

/** A heading that is repeated on the next page counts once. */
function append(table, { pages, rows }) {
  const isRepeated = rows[0].join('\n') === table.rows[0].join('\n');
  table.pages.push(...pages);
  table.rows.push(...rows.slice(isRepeated ? 1 : 0));
}
