/** What texts that were read somewhere become in cells: numbers where they are some, else exactly what they say. */

/** @typedef {'point' | 'comma'} NumberStyle the mark ahead of a number's fraction */

/** Numbers with more digits are codes: no cell holds them exactly. */
const MAX_DIGITS = 15;
/** Blanks and apostrophes group digits in either style. */
const GROUPS = { point: "[,\\u00a0\\u202f '’]", comma: "[.\\u00a0\\u202f '’]" };
const FRACTIONS = { point: '\\.', comma: ',' };

const patternOf = (style) =>
  new RegExp(`^(0|[1-9]\\d*|[1-9]\\d{0,2}(?:(${GROUPS[style]})\\d{3}(?:\\2\\d{3})*))(?:${FRACTIONS[style]}(\\d+))?$`);
const PATTERNS = { point: patternOf('point'), comma: patternOf('comma') };

const NEGATIVE = /^(?:[-−](?=\d)(.+)|\((\d.*)\))$/;
/** A host reads it as a number in every language. */
const PLAIN_PERCENT = /^-?(?:0|[1-9]\d{0,14})%$/;
/** What a host may take for something else than the text that it is: numbers, dates, formulas, and words of logic. */
const MAY_CHANGE = /^[=+\-@']|\p{Nd}|^(true|false)$/iu;

/**
 * @param {string} text
 * @param {NumberStyle} style
 * @returns {number | null} null for what is no number; one that begins with a needless zero is a code
 */
export function readNumber(text, style) {
  const [, minus, inside] = NEGATIVE.exec(text) ?? [];
  const [, whole, , fraction = ''] = PATTERNS[style].exec(minus ?? inside ?? text) ?? [];
  if (whole === undefined) return null;
  const digits = whole.replace(/\D/g, '');
  if (digits.length + fraction.length > MAX_DIGITS) return null;
  const number = Number(`${digits}.${fraction}`);
  return minus ?? inside ? -number : number;
}

/**
 * A text as a cell's content that stays this very text: hosts drop an apostrophe ahead of it.
 * @param {string} text
 */
export const asText = (text) => (MAY_CHANGE.test(text) ? `'${text}` : text);

/**
 * @param {string} text
 * @param {NumberStyle} style
 * @returns {string | number | null} as the add-in writes it into a cell; null empties the cell
 */
export function cellValue(text, style) {
  const trimmed = text.trim();
  if (trimmed === '') return null;
  if (PLAIN_PERCENT.test(trimmed)) return trimmed;
  return readNumber(trimmed, style) ?? asText(trimmed);
}

/** A number whose last mark parts the fraction off, when there are two kinds, or when no three digits follow it. */
const TELLING =
  /^[-−(]?(?:\d{1,3}(?:[.,\u00a0\u202f '’]\d{3})+([.,])\d+|\d+([.,])(?:\d{1,2}|\d{4,}))\)?$/;
const GROUPED_TWICE = /^[-−(]?\d{1,3}(?:([.,])\d{3})(?:\1\d{3})+\)?$/;

/**
 * @param {string[][]} rows
 * @param {NumberStyle} usual of the user's language, for tables that do not tell
 * @returns {NumberStyle}
 */
export function numberStyleOf(rows, usual) {
  const votes = { '.': 0, ',': 0 };
  for (const text of rows.flat()) {
    const [, last, only] = TELLING.exec(text) ?? [];
    const [, group] = GROUPED_TWICE.exec(text) ?? [];
    const mark = group ? (group === '.' ? ',' : '.') : (last ?? only);
    if (mark) votes[mark]++;
  }
  if (votes['.'] === votes[',']) return usual;
  return votes['.'] > votes[','] ? 'point' : 'comma';
}

/** @param {string} language @returns {NumberStyle} */
export function usualStyle(language) {
  const parts = new Intl.NumberFormat(language).formatToParts(1.5);
  return parts.some(({ type, value }) => type === 'decimal' && value === ',') ? 'comma' : 'point';
}
