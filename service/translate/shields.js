import { orderTerms, termFinder } from './terms.js';

/** A locked span: "[[QV_", a kind of letters and digits or none, "_", a number, "]]"; Q and V in either case. */
const PLACEHOLDER = /\[\[[Qq][Vv]_[\p{L}\p{N}]*_[0-9]+\]\]/gu;

/** What a word-by-word translator would spoil: addresses, e-mail addresses, format fields, "N/A". */
const KEPT = new RegExp(
  [
    /(?:https?:\/\/|www\.)[^\s<>"]*[^\s<>".,;:!?)\]]/u,
    /[\w.+-]+@[\w-]+(?:\.[\w-]+)+/u,
    /\{\w*\}/u,
    /%(?:\d+\$)?[sdif]\b/u,
    /\bN\/A\b/u,
  ]
    .map((pattern) => pattern.source)
    .join('|'),
  'gu',
);

/**
 * Characters that the translation stream gives a meaning of its own or loses: controls, the tilde (a wake-up mark of the
 * post-generator), direction and zero-width marks, private use, and halves of surrogate pairs.
 */
const UNSAFE =
  /[\u0000-\u0008\u000b-\u001f\u007f-\u009f~\u00ad\u200b-\u200f\u202a-\u202e\u2060-\u2069\ufeff\p{Co}\p{Cs}]+/gu;

/** Beginnings of the stand-in words; no language has them. The second ones serve a text that holds the first. */
const STEMS = ['Qvz', 'Xqj', 'Zkq', 'Jxw', 'Wqz'];
const INDEX_LETTERS = 4;

/**
 * @param {string} text
 * @returns {{index: number, length: number}[]} the placeholder tokens, left to right
 */
export function findPlaceholders(text) {
  return [...text.matchAll(PLACEHOLDER)].map((match) => ({ index: match.index, length: match[0].length }));
}

/** Keeps parts of texts out of a translator's hands. One serves all texts of a request. */
export class Shielder {
  #terms;

  /** @param {{source: string, target: string}[]} [glossary] the longest term wins */
  constructor(glossary = []) {
    this.#terms = orderTerms(glossary).map((term) => ({ ...term, find: termFinder(term) }));
  }

  /**
   * @param {string} text one line
   * @returns {ShieldedText}
   */
  protect(text) {
    let pieces = [{ text }];
    const keep = (found) => found;
    for (const pattern of [PLACEHOLDER, KEPT, UNSAFE]) pieces = split(pieces, (part) => part.matchAll(pattern), keep);
    for (const { source, target, exact, find } of this.#terms) {
      pieces = split(pieces, find, (found) => (exact ? target : inCaseOf(found, source, target)));
    }
    return new ShieldedText(pieces);
  }
}

/** A text cut into free pieces (`text`) and fixed ones (`fixed`: what stands there in the translation). */
export class ShieldedText {
  #stem;

  /** @param {{text: string, fixed?: string}[]} pieces */
  constructor(pieces) {
    this.pieces = pieces;
    const free = pieces.map((piece) => (piece.fixed === undefined ? piece.text : '')).join(' ').toLowerCase();
    this.hasLetters = /\p{L}/u.test(free);
    this.#stem = STEMS.find((stem) => !free.includes(stem.toLowerCase()));
  }

  /**
   * The text with a stand-in word for each fixed piece.
   * @returns {string | null} null when no stem is left for the stand-ins: translate the pieces alone
   */
  wire() {
    if (this.#stem === undefined) return null;
    let index = 0;
    return this.pieces.map((piece) => (piece.fixed === undefined ? piece.text : this.#standIn(index++))).join('');
  }

  /**
   * Puts the fixed pieces back.
   * @param {string} translated translation of `wire()`
   * @returns {string | null} null when a stand-in is missing or came twice
   */
  restore(translated) {
    const fixed = this.pieces.filter((piece) => piece.fixed !== undefined);
    const seen = new Set();
    const pattern = new RegExp(`${this.#stem}([a-z]{${INDEX_LETTERS}})`, 'gi');
    let sound = true;
    const text = translated.replace(pattern, (whole, letters) => {
      const index = toNumber(letters.toLowerCase());
      if (index >= fixed.length || seen.has(index)) sound = false;
      seen.add(index);
      return fixed[index]?.fixed ?? whole;
    });
    return sound && seen.size === fixed.length ? text : null;
  }

  /** @returns {string} the text with nothing but its fixed pieces replaced */
  replaced() {
    return this.pieces.map((piece) => piece.fixed ?? piece.text).join('');
  }

  #standIn(index) {
    return this.#stem + toLetters(index);
  }
}

function split(pieces, find, replace) {
  return pieces.flatMap((piece) => {
    if (piece.fixed !== undefined) return [piece];
    const parts = [];
    let end = 0;
    for (const match of find(piece.text)) {
      if (match.index > end) parts.push({ text: piece.text.slice(end, match.index) });
      parts.push({ text: match[0], fixed: replace(match[0]) });
      end = match.index + match[0].length;
    }
    if (end < piece.text.length) parts.push({ text: piece.text.slice(end) });
    return parts;
  });
}

/** The target in the letter case in which the term, which has no upper-case letters of its own, was found. */
function inCaseOf(found, source, target) {
  if (found === source) return target;
  if (isAllCaps(found)) return target.toUpperCase();
  return found[0] === source[0] ? target : capitalized(target);
}

/**
 * @param {string} text
 * @returns {boolean} two or more letters, none of them lower case
 */
export function isAllCaps(text) {
  return (text.match(/\p{Lu}/gu)?.length ?? 0) >= 2 && !/\p{Ll}/u.test(text);
}

/**
 * @param {string} text
 * @returns {string} with its first letter in upper case
 */
export function capitalized(text) {
  return text.replace(/\p{L}/u, (letter) => letter.toUpperCase());
}

function toLetters(index) {
  let letters = '';
  for (let i = 0; i < INDEX_LETTERS; i++, index = Math.floor(index / 26)) {
    letters = String.fromCharCode(97 + (index % 26)) + letters;
  }
  return letters;
}

function toNumber(letters) {
  return [...letters].reduce((sum, letter) => sum * 26 + letter.charCodeAt(0) - 97, 0);
}
