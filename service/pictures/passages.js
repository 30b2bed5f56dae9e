/** Words of a picture, put together to what belongs together: the pieces of a line, and the lines of a paragraph. */

/** Below these, what was recognised is a speck or part of a drawing rather than a word, or a line of words. */
const MIN_WORD_CONFIDENCE = 25;
const MIN_CONFIDENCE = 50;
/** A gap between words that is wider than this, in heights of the line, parts columns. */
const COLUMN_GAP = 1.5;
/** Lines of one paragraph, in sizes of their letters: from baseline to baseline, and how far their edges may differ. */
const MAX_PITCH = 2;
const MAX_INDENT = 0.8;
const MAX_SIZE_RATIO = 1.25;
/** A line of fewer characters may be a label of its own, even where the next one would not have fit beside it. */
const PROSE_LENGTH = 30;

/** What letters of most fonts take above and below the baseline, and a blank between them, in sizes. */
const TALL = 0.72;
const LOW = 0.53;
const DEEP = 0.21;
const BLANK = 0.3;
const TALL_LETTERS = /[\p{Lu}\p{N}bdfhijklt\u00df-\u024f!?'"“”‘’()[\]{}|/\\%&@#$€£]/u;
const DEEP_LETTERS = /[gjpqyQ,;()[\]{}|/\\@çþ]/u;
const WIDE_SCRIPTS = /[\p{Script=Han}\p{Script=Hiragana}\p{Script=Katakana}\p{Script=Hangul}]/u;

/**
 * @typedef {object} Box in pixels; right and bottom lie just outside
 * @property {number} left
 * @property {number} top
 * @property {number} right
 * @property {number} bottom
 *
 * @typedef {object} Line
 * @property {string} text
 * @property {Box} box
 * @property {number} size of its letters: the em, in pixels
 * @property {number} baseline distance from the picture's top
 * @property {number} firstWidth of its first word, in pixels
 * @property {number} confidence 0 to 100
 *
 * @typedef {object} Passage
 * @property {string} text of all lines
 * @property {Line[]} lines
 * @property {Box} box around them
 * @property {number} size of the letters: the em, in pixels
 * @property {number} baseline of the first line
 * @property {'left' | 'center'} align
 */

/**
 * @param {import('../recognition.js').Word[]} words
 * @returns {Passage[]} those with letters in them, in reading order
 */
export function passagesOf(words) {
  const good = words.filter(({ confidence }) => confidence >= MIN_WORD_CONFIDENCE);
  const lines = groupLines(good).flatMap(splitColumns).map(makeLine).filter(isText);
  const passages = [];
  for (const line of lines) {
    const open = passages.at(-1);
    if (open && continues(open.at(-1), line, Math.max(...[...open, line].map(widthOf)))) open.push(line);
    else passages.push([line]);
  }
  return passages.map(makePassage);
}

function groupLines(words) {
  const lines = new Map();
  for (const word of words) {
    const key = `${word.block} ${word.paragraph} ${word.line}`;
    lines.set(key, [...(lines.get(key) ?? []), word]);
  }
  return [...lines.values()];
}

function splitColumns(words) {
  const height = median(words.map((word) => word.height));
  const pieces = [[]];
  words.forEach((word, i) => {
    const before = words[i - 1];
    const gap = before ? Math.max(word.left - before.left - before.width, before.left - word.left - word.width) : 0;
    if (gap > COLUMN_GAP * height) pieces.push([]);
    pieces.at(-1).push(word);
  });
  return pieces;
}

function makeLine(words) {
  const box = around(
    words.map(({ left, top, width, height }) => ({ left, top, right: left + width, bottom: top + height })),
  );
  const text = words.map((word) => word.text).reduce(joined);
  const { above, below } = reach(text);
  const size = (box.bottom - box.top) / (above + below);
  const confidence = words.reduce((sum, word) => sum + word.confidence, 0) / words.length;
  return { text, box, size, baseline: box.bottom - below * size, firstWidth: words[0].width, confidence };
}

/** How far the letters of a text go above and below the baseline, in sizes. */
function reach(text) {
  if (WIDE_SCRIPTS.test(text)) return { above: 0.85, below: 0.1 };
  return { above: TALL_LETTERS.test(text) ? TALL : LOW, below: DEEP_LETTERS.test(text) ? DEEP : 0 };
}

const isText = ({ text, confidence }) => /\p{L}/u.test(text) && confidence >= MIN_CONFIDENCE;

const widthOf = ({ box }) => box.right - box.left;

/**
 * Whether a line goes on what the one above began: the two look alike, and the word that begins the second would not
 * have fit at the end of the first, when no line is wider than `widest`.
 */
function continues(above, below, widest) {
  const size = Math.max(above.size, below.size);
  const pitch = below.baseline - above.baseline;
  const alike = size <= MAX_SIZE_RATIO * Math.min(above.size, below.size) && pitch > 0 && pitch <= MAX_PITCH * size;
  const aligned = Math.abs(above.box.left - below.box.left) <= MAX_INDENT * size || isCentred(above, below);
  const wrapped = widthOf(above) + BLANK * size + below.firstWidth > widest;
  const prose = above.text.length >= PROSE_LENGTH || /^\p{Ll}/u.test(below.text) || /[,-]$/.test(above.text);
  return alike && aligned && wrapped && prose;
}

function isCentred({ box: a, size }, { box: b }) {
  const shift = Math.abs(a.left + a.right - b.left - b.right) / 2;
  return shift <= 0.5 * size && Math.abs(a.left - b.left) > MAX_INDENT * size;
}

function makePassage(lines) {
  return {
    text: lines.map(({ text }) => text).reduce(joined),
    lines,
    box: around(lines.map(({ box }) => box)),
    size: median(lines.map(({ size }) => size)),
    baseline: lines[0].baseline,
    align: lines.length > 1 && lines.slice(1).some((line, i) => isCentred(lines[i], line)) ? 'center' : 'left',
  };
}

/** Puts two pieces together: a word that a line's end parted, and scripts without blanks, without one. */
function joined(first, second) {
  if (/\p{Ll}-$/u.test(first) && /^\p{Ll}/u.test(second)) return first.slice(0, -1) + second;
  const meets = (text) => /[\p{Script=Han}\p{Script=Hiragana}\p{Script=Katakana}。、，！？：；]/u.test(text);
  return meets(first.at(-1)) && meets(second[0]) ? first + second : `${first} ${second}`;
}

function around(boxes) {
  const all = (side) => boxes.map((box) => box[side]);
  return {
    left: Math.min(...all('left')),
    top: Math.min(...all('top')),
    right: Math.max(...all('right')),
    bottom: Math.max(...all('bottom')),
  };
}

function median(values) {
  const sorted = [...values].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)];
}
