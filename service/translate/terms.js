/** Where the terms of a glossary occur in texts: as whole words, and in their own letter case where that means something. */

/** Scripts that put no blanks between words, or whose words carry their particles along: any place in them may end a word. */
const UNSPACED = ['Han', 'Hiragana', 'Katakana', 'Hangul', 'Thai', 'Lao', 'Khmer', 'Myanmar']
  .map((script) => `\\p{Script_Extensions=${script}}`)
  .join('');
const WORD_CHARACTER = '[\\p{L}\\p{N}\\p{M}]';
/** A character that belongs to the word beside it. */
const JOINED = `(?![${UNSPACED}])${WORD_CHARACTER}`;

const STARTS_JOINED = new RegExp(`^${JOINED}`, 'u');
const ENDS_JOINED = new RegExp(`${JOINED}$`, 'u');
const TOKENS = new RegExp(`(?:${JOINED})+|${WORD_CHARACTER}`, 'gu');
const UPPER_CASE = /[\p{Lu}\p{Lt}]/u;

/** Between texts that are searched as one: no term holds it, and it ends every word. */
const BETWEEN_TEXTS = '\u0000';

/**
 * @template {{source: string}} Entry
 * @param {Entry[]} entries
 * @returns {(Entry & {exact: boolean})[]} longest source first, blank ones left out. `exact`: only the spelling given is
 *   the term. "US" must not catch "us", nor "polish" the "Polish" that is a term of its own.
 */
export function orderTerms(entries) {
  const terms = entries
    .map((entry) => ({ ...entry, source: entry.source.trim() }))
    .filter(({ source }) => source !== '')
    .sort((a, b) => b.source.length - a.source.length);
  const cased = new Set(terms.filter(({ source }) => UPPER_CASE.test(source)).map(({ source }) => source.toLowerCase()));
  return terms.map((term) => ({ ...term, exact: cased.has(term.source.toLowerCase()) }));
}

/**
 * @param {{source: string, exact: boolean}} term of `orderTerms`
 * @returns {RegExp} global; finds the term as whole words, with any blanks between them
 */
export function termPattern({ source, exact }) {
  const before = STARTS_JOINED.test(source) ? `(?<!${JOINED})` : '';
  const after = ENDS_JOINED.test(source) ? `(?!${JOINED})` : '';
  const words = source.replace(/[\\^$.*+?()[\]{}|/]/g, '\\$&').replace(/\s+/g, '\\s+');
  return new RegExp(before + words + after, exact ? 'gu' : 'giu');
}

/**
 * @template {{source: string}} Entry
 * @param {Entry[]} entries of two with the same source the first one counts
 * @param {string[]} texts
 * @param {number} limit
 * @returns {(Entry & {exact: boolean})[]} those that occur in a text, longest source first, `limit` at most
 */
export function occurringTerms(entries, texts, limit) {
  const distinct = [...new Set(texts)];
  const words = new Set(distinct.flatMap(tokensOf));
  const corpus = distinct.join(BETWEEN_TEXTS);
  const seen = new Set();
  const found = [];
  for (const term of orderTerms(entries)) {
    if (found.length === limit) break;
    if (seen.has(term.source)) continue;
    seen.add(term.source);
    // Most terms of a large glossary lack a word: the long text is searched for few.
    if (tokensOf(term.source).every((word) => words.has(word)) && termPattern(term).test(corpus)) found.push(term);
  }
  return found;
}

/** The words of a text in lower case, of unspaced scripts the single characters. */
const tokensOf = (text) => [...new Set(text.match(TOKENS) ?? [])].map((word) => word.toLowerCase());
