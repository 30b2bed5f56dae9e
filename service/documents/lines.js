/**
 * Words by their places on a page, and what they make: lines, and pieces of lines. Lengths are in the page's own unit,
 * and everything is judged against the width of its letters and blanks.
 */

/**
 * @typedef {object} PlacedWord
 * @property {string} text
 * @property {number} left
 * @property {number} top
 * @property {number} width
 * @property {number} height
 *
 * @typedef {object} Line
 * @property {PlacedWord[]} words from left to right
 * @property {number} top
 * @property {number} bottom
 *
 * @typedef {object} Piece words of a line that stand close together
 * @property {string} text
 * @property {PlacedWord[]} words
 * @property {number} left
 * @property {number} right
 */

/** Of a blank, in widths of a letter: in most fonts, and at least. On typewriters it is as wide as every letter. */
const USUAL_BLANK = 0.75;
const MIN_BLANK = 0.2;
const MAX_TYPEWRITER_SPREAD = 0.02;
/** The part of all gaps that surely are blanks. */
const SMALL_GAPS = 0.25;
/** Two words are in one line when the lower one's middle is that far inside the line's height. */
const SAME_LINE = 0.2;

export const rightOf = (word) => word.left + word.width;
const bottomOf = (word) => word.top + word.height;
const middleOf = (word) => word.top + word.height / 2;

/** @param {number[]} values @returns {number} 0 of none */
export function median(values) {
  const sorted = [...values].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)] ?? 0;
}

/** The width of a usual letter, and how much letters differ from it, as a part of it. */
function lettersOf(words) {
  const widths = words.map(({ text, width }) => width / Math.max(1, text.length));
  const usual = median(widths);
  return { usual, spread: median(widths.map((width) => Math.abs(width - usual))) / (usual || 1) };
}

/** @param {PlacedWord[]} words @returns {number} */
export const letterWidth = (words) => lettersOf(words).usual;

/**
 * @param {{words: PlacedWord[]}[]} lines
 * @returns {number} the width of a blank between words. Where most words stand alone in their cells there are few, and
 *   it is what it is in most fonts.
 */
export function blankWidth(lines) {
  const { usual, spread } = lettersOf(lines.flatMap(({ words }) => words));
  const gaps = lines.flatMap(({ words }) => words.slice(1).map((word, i) => word.left - rightOf(words[i])));
  const sorted = gaps.filter((gap) => gap > MIN_BLANK * usual).sort((a, b) => a - b);
  const small = sorted[Math.floor(sorted.length * SMALL_GAPS)];
  const most = (spread < MAX_TYPEWRITER_SPREAD ? 1 : USUAL_BLANK) * usual;
  return Math.min(small ?? most, most);
}

/**
 * @param {PlacedWord[]} words in any order
 * @returns {Line[]} from top to bottom
 */
export function linesOf(words) {
  const lines = [];
  for (const word of [...words].sort((a, b) => middleOf(a) - middleOf(b))) {
    const line = lines.at(-1);
    if (line && isBeside(word, line)) take(line, word);
    else lines.push({ words: [word], top: word.top, bottom: bottomOf(word) });
  }
  for (const line of lines) line.words.sort((a, b) => a.left - b.left);
  return lines;
}

/** A mark such as a dash is lower than letters, so each is measured against the other. */
function isBeside(word, { top, bottom }) {
  const margin = SAME_LINE * Math.min(word.height, bottom - top);
  const middle = middleOf(word);
  return middle > top + margin && middle < bottom - margin;
}

/** Adds a word to a line. */
function take(line, word) {
  line.words.push(word);
  line.top = Math.min(line.top, word.top);
  line.bottom = Math.max(line.bottom, bottomOf(word));
}

/**
 * @param {PlacedWord[]} words of one line, from left to right
 * @param {number} gap from which on two words are apart
 * @returns {Piece[]}
 */
export function piecesOf(words, gap) {
  const pieces = [];
  for (const word of words) {
    const piece = pieces.at(-1);
    if (piece && word.left - piece.right < gap) {
      piece.words.push(word);
      piece.right = Math.max(piece.right, rightOf(word));
    } else {
      pieces.push({ words: [word], left: word.left, right: rightOf(word) });
    }
  }
  return pieces.map((piece) => ({ ...piece, text: textOf(piece.words) }));
}

/** @param {PlacedWord[]} words @returns {string} */
export const textOf = (words) => words.map(({ text }) => text).join(' ');
