/** The little Markdown that language models write, as blocks and spans. Nothing here touches the page. */

/**
 * @typedef {object} Span
 * @property {'text' | 'code' | 'strong' | 'em' | 'link'} kind
 * @property {string} text
 * @property {string} [address] of a link
 *
 * @typedef {object} Block
 * @property {'paragraph' | 'heading' | 'code' | 'quote' | 'list' | 'table' | 'rule'} kind
 * @property {string} source its own lines: equal ones look the same
 * @property {string} [text] of paragraph, heading, code, quote
 * @property {number} [level] of a heading, 1 to 6
 * @property {{text: string, depth: number}[]} [items] of a list
 * @property {number | null} [start] of an ordered list
 * @property {string[][]} [rows] of a table, the heading first
 */

const FENCE = /^\s*(```+|~~~+)/;
const HEADING = /^(#{1,6})\s+(\S.*)$/;
const RULE = /^\s*([-*_])(\s*\1){2,}\s*$/;
const QUOTE = /^\s*>\s?/;
const ITEM = /^(\s*)([-*+]|\d{1,9}[.)])\s+(.*)$/;
const TABLE_LINE = /^[\s|:-]+$/;

/** The first kind that takes a line takes as many more as belong to it. */
const KINDS = [readFence, readHeading, readRule, readQuote, readTable, readList];

/** @param {string} text @returns {Block[]} */
export function parseBlocks(text) {
  const lines = text.split(/\r?\n/);
  const blocks = [];
  for (let at = 0; at < lines.length; ) {
    if (lines[at].trim() === '') {
      at++;
      continue;
    }
    const [block, count] = readBlock(lines, at) ?? readParagraph(lines, at);
    blocks.push({ ...block, source: lines.slice(at, at + count).join('\n') });
    at += count;
  }
  return blocks;
}

function readBlock(lines, at) {
  for (const read of KINDS) {
    const found = read(lines, at);
    if (found) return found;
  }
  return null;
}

/** @returns {number} how many lines from `at` on fit */
function countWhile(lines, at, fits) {
  let end = at;
  while (end < lines.length && fits(lines[end])) end++;
  return end - at;
}

function readFence(lines, at) {
  const mark = FENCE.exec(lines[at])?.[1];
  if (!mark) return null;
  const inner = countWhile(lines, at + 1, (line) => !line.trimStart().startsWith(mark));
  const text = lines.slice(at + 1, at + 1 + inner).join('\n');
  // One that is not closed goes on to the end, as it does while the answer is still coming.
  return [{ kind: 'code', text }, Math.min(inner + 2, lines.length - at)];
}

function readHeading(lines, at) {
  const match = HEADING.exec(lines[at]);
  return match && [{ kind: 'heading', level: match[1].length, text: match[2].replace(/ #+$/, '') }, 1];
}

function readRule(lines, at) {
  return RULE.test(lines[at]) ? [{ kind: 'rule' }, 1] : null;
}

function readQuote(lines, at) {
  const count = countWhile(lines, at, (line) => QUOTE.test(line));
  if (count === 0) return null;
  const text = lines.slice(at, at + count).map((line) => line.replace(QUOTE, ''));
  return [{ kind: 'quote', text: text.join('\n') }, count];
}

const isRow = (line = '') => /^\|.+\|$/.test(line.trim());

function readTable(lines, at) {
  if (!isRow(lines[at]) || !isRow(lines[at + 1]) || !TABLE_LINE.test(lines[at + 1])) return null;
  const count = countWhile(lines, at, isRow);
  const rows = lines.slice(at, at + count).filter((line, index) => index !== 1);
  return [{ kind: 'table', rows: rows.map(cellsOf) }, count];
}

function cellsOf(line) {
  const inner = line.trim().slice(1, -1);
  return inner.split(/(?<!\\)\|/).map((cell) => cell.trim().replaceAll('\\|', '|'));
}

function readList(lines, at) {
  const first = ITEM.exec(lines[at]);
  if (!first) return null;
  const items = [];
  const count = countWhile(lines, at, (line) => {
    const item = ITEM.exec(line);
    if (item) items.push({ text: item[3], depth: Math.floor(item[1].length / 2) });
    // Indented lines go on with the item.
    else if (/^\s+\S/.test(line)) items.at(-1).text += `\n${line.trim()}`;
    else return false;
    return true;
  });
  const number = Number.parseInt(first[2], 10);
  return [{ kind: 'list', items, start: Number.isNaN(number) ? null : number }, count];
}

function readParagraph(lines, at) {
  let count = 1;
  while (at + count < lines.length && lines[at + count].trim() !== '' && !readBlock(lines, at + count)) count++;
  return [{ kind: 'paragraph', text: lines.slice(at, at + count).join('\n') }, count];
}

/** Code first: nothing in it means anything else. */
const SPAN = /(`+)(.+?)\1(?!`)|\*\*(?=\S)(.+?)\*\*|(?<![*\w])\*(?=[^\s*])([^*]+)\*(?!\w)|\[([^\]\n]+)\]\(([^)\s]+)\)/s;

/** Longer pieces are taken as they are: looking for pairs in them could take long. */
const MAX_SPANS_LENGTH = 10000;

/** @param {string} text of a block @returns {Span[]} */
export function parseSpans(text) {
  if (text.length > MAX_SPANS_LENGTH) return [{ kind: 'text', text }];
  const spans = [];
  let rest = text;
  for (let match = SPAN.exec(rest); match; match = SPAN.exec(rest)) {
    if (match.index > 0) spans.push({ kind: 'text', text: rest.slice(0, match.index) });
    const [whole, , code, strong, em, link, address] = match;
    if (code !== undefined) spans.push({ kind: 'code', text: code.trim() || code });
    else if (strong !== undefined) spans.push({ kind: 'strong', text: strong });
    else if (em !== undefined) spans.push({ kind: 'em', text: em });
    else spans.push({ kind: 'link', text: link, address });
    rest = rest.slice(match.index + whole.length);
  }
  if (rest !== '') spans.push({ kind: 'text', text: rest });
  return spans;
}
