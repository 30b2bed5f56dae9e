/** The entries of a glossary: their limits, which of them are doubled, and which a search finds. */

/** @typedef {{source: string, target: string, note: string, enabled: boolean}} Entry */

/** What the service keeps: entries of a glossary, and UTF-16 code units of their texts. */
export const MAX_ENTRIES = 2000;
export const MAX_LENGTHS = { source: 1000, target: 1000, note: 2000 };

/** @param {string} source @returns {string} the same for two sources of which only one counts */
export const sourceKey = (source) => source.trim();

/**
 * @param {Entry[]} entries
 * @returns {Set<Entry>} those in use whose source an earlier one in use has: a run takes the earlier one
 */
export function duplicatesAmong(entries) {
  const seen = new Set();
  const repeats = ({ source, enabled }) => {
    const key = sourceKey(source);
    const repeated = enabled && seen.has(key);
    if (enabled) seen.add(key);
    return repeated;
  };
  return new Set(entries.filter(repeats));
}

/** Letter case and the width of letters do not matter to a search. */
const folded = (text) => text.normalize('NFKC').toLowerCase();

/** @param {Entry[]} entries @param {string} query @returns {Entry[]} those with it in a text; all with a blank one */
export function entriesWith(entries, query) {
  const wanted = folded(query.trim());
  if (wanted === '') return entries;
  return entries.filter(({ source, target, note }) =>
    [source, target, note].some((text) => folded(text).includes(wanted)),
  );
}
