/** Finds the tables of a document's pages by the places of their words. */
import { fitsColumns, overlap, readCells } from './columns.js';
import { blankWidth, linesOf, median, piecesOf } from './lines.js';

/** In widths of a blank: wider than one mostly is in lines that are stretched to one length. */
const WIDE_GAP = 1.8;
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
  const placed = linesOf(words);
  const gap = WIDE_GAP * blankWidth(placed);
  const lines = placed.map((line) => ({ ...line, isParted: piecesOf(line.words, gap).length > 1 }));
  return partsOf(lines).map((part) => readCells(withHeading(part, lines))).filter(isTable);
}

const isTable = ({ rows, columns }) => rows.length >= MIN_ROWS && columns.length > 1;

/** Words of a heading may stand so close that its line seems to be running text. */
function withHeading(part, lines) {
  const above = lines[lines.indexOf(part[0]) - 1];
  if (!above || above.isParted) return part;
  const isNear = part[0].top - above.top <= MAX_PITCHES * (part[1] ? part[1].top - part[0].top : 0);
  return isNear && fitsColumns(above, readCells(part).columns) ? [above, ...part] : part;
}

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
