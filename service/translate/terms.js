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
 * @returns {(text: string) => Generator<RegExpExecArray>} finds the term as whole words, with any blanks between them
 */
export function termFinder({ source, exact }) {
  // The ends of words are looked at here: within each term's own pattern their classes cost milliseconds to build.
  const words = source.replace(/[\\^$.*+?()[\]{}|/]/g, '\\$&').replace(/\s+/g, '\\s+');
  const pattern = new RegExp(words, exact ? 'gu' : 'giu');
  const before = STARTS_JOINED.test(source);
  const after = ENDS_JOINED.test(source);
  return function* find(text) {
    pattern.lastIndex = 0;
    for (let match; (match = pattern.exec(text)); ) {
      const { index } = match;
      const end = index + match[0].length;
      const joined = (before && isJoinedBefore(text, index)) || (after && isJoinedAfter(text, end));
      // By whole characters: a search shall not begin inside a surrogate pair.
      pattern.lastIndex = joined ? index + String.fromCodePoint(text.codePointAt(index)).length : end;
      if (!joined) yield match;
    }
  };
}

/** One character has two code units at most. */
const isJoinedBefore = (text, index) => ENDS_JOINED.test(text.slice(Math.max(0, index - 2), index));
const isJoinedAfter = (text, end) => STARTS_JOINED.test(text.slice(end, end + 2));

/**
 * @template {{source: string}} Entry
 * @param {Entry[]} entries of two with the same source the first one counts
 * @param {string[]} texts
 * @param {number} limit
 * @returns {(Entry & {exact: boolean})[]} those that occur in a text, longest source first, `limit` at most
 */
export function occurringTerms(entries, texts, limit) {
  const index = new WordIndex(texts);
  const seen = new Set();
  const found = [];
  for (const term of orderTerms(entries)) {
    if (found.length === limit) break;
    if (seen.has(term.source)) continue;
    seen.add(term.source);
    const candidates = index.textsFor(term.source);
    if (candidates.length === 0) continue;
    const find = termFinder(term);
    if (candidates.some((text) => !find(text).next().done)) found.push(term);
  }
  return found;
}

/** Says which texts are worth searching: large glossaries meet whole workbooks. */
class WordIndex {
  /** @type {string[]} */
  #texts;
  /** @type {Map<string, string[]>} the texts that hold a word */
  #byWord = new Map();

  /** @param {string[]} texts */
  constructor(texts) {
    this.#texts = [...new Set(texts)];
    for (const text of this.#texts) {
      for (const word of wordsOf(text)) {
        const holders = this.#byWord.get(word);
        if (holders) holders.push(text);
        else this.#byWord.set(word, [text]);
      }
    }
  }

  /** @param {string} term @returns {string[]} those with its rarest word; all texts for a term without words */
  textsFor(term) {
    const holders = [...wordsOf(term)].map((word) => this.#byWord.get(word) ?? []);
    return holders.reduce((rarest, each) => (each.length < rarest.length ? each : rarest), this.#texts);
  }
}

/** The words of a text in lower case, of unspaced scripts the single characters. */
const wordsOf = (text) => new Set((text.match(TOKENS) ?? []).map((word) => word.toLowerCase()));
