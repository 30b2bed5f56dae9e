/** The running text of a PDF's page, in paragraphs. */
import { median, rightOf, textOf } from './lines.js';
import { wordsIn } from './pdf.js';

/**
 * @typedef {object} Paragraph
 * @property {boolean} isHeading
 * @property {string} text in one line
 *
 * @typedef {object} TextLine
 * @property {import('./lines.js').PlacedWord[]} words
 * @property {number} left
 * @property {number} right
 * @property {number} height
 */

/** Letters that are larger than the page's usual ones by this make a heading, unless it goes on for too long. */
const HEADING_SIZE = 1.15;
const MAX_HEADING_LENGTH = 160;
/** In heights of a line: what two lines of one paragraph may differ by in the place that they begin and in height. */
const INDENT = 0.8;
const SIZE_STEP = 0.12;
/** A hyphen at a line's end parts a word; one behind a digit or ahead of a capital belongs to it. */
const PARTED = /(\p{L})[-\u00ad\u2010]$/u;

/**
 * @param {string} body of a page, as `readLayout` gives it
 * @returns {Paragraph[]} in reading order
 */
export function paragraphsOf(body) {
  const blocks = [...body.matchAll(/<block\b[^>]*>(.*?)<\/block>/gs)].map(([, block]) => linesIn(block));
  const usual = usualHeight(blocks.flat());
  return blocks.flatMap((lines) => splitBlock(lines).map((part) => paragraphOf(part, usual)));
}

function linesIn(block) {
  const lines = [...block.matchAll(/<line\b[^>]*>(.*?)<\/line>/gs)].map(([, line]) => wordsIn(line));
  return lines.filter((words) => words.length > 0).map((words) => ({
    words,
    left: words[0].left,
    right: rightOf(words.at(-1)),
    height: median(words.map(({ height }) => height)),
  }));
}

/** That of most letters, not of most lines. */
const usualHeight = (lines) => median(lines.flatMap(({ words, height }) => Array(textOf(words).length).fill(height)));

/** A block of Poppler's holds paragraphs, or cells of a table, that follow each other without a space. */
function splitBlock(lines) {
  const right = Math.max(...lines.map((line) => line.right));
  const parts = [];
  for (const [i, line] of lines.entries()) {
    if (i > 0 && goesOn(lines[i - 1], line, right)) parts.at(-1).push(line);
    else parts.push([line]);
  }
  return parts;
}

/** A line was full, and the next one belongs to it, when the next one's first word had found no room in it. */
function goesOn(line, next, right) {
  const [word] = next.words;
  const hadRoom = line.right + line.height / 4 + word.width < right;
  const isIndented = next.left - line.left > INDENT * line.height;
  const isLikeIt = Math.abs(next.height - line.height) <= SIZE_STEP * line.height;
  return !hadRoom && !isIndented && isLikeIt;
}

function paragraphOf(lines, usual) {
  // A soft hyphen inside a line parts nothing.
  const text = lines.map(({ words }) => textOf(words)).reduce(joined).replaceAll('\u00ad', '');
  const isLarge = lines.every(({ height }) => height >= HEADING_SIZE * usual);
  return { isHeading: isLarge && text.length <= MAX_HEADING_LENGTH, text };
}

function joined(before, line) {
  return PARTED.test(before) && /^\p{Ll}/u.test(line) ? before.replace(PARTED, '$1') + line : `${before} ${line}`;
}

/**
 * @param {import('../recognition.js').Word[]} words of a page that is a picture
 * @returns {Paragraph[]} as they were recognised; none is told to be a heading
 */
export function paragraphsOfWords(words) {
  const lines = new Map();
  for (const word of words) {
    const paragraph = `${word.block} ${word.paragraph}`;
    if (!lines.has(paragraph)) lines.set(paragraph, new Map());
    const inside = lines.get(paragraph);
    inside.set(word.line, [...(inside.get(word.line) ?? []), word]);
  }
  return [...lines.values()].map((inside) => ({
    isHeading: false,
    text: [...inside.values()].map(textOf).reduce(joined),
  }));
}
