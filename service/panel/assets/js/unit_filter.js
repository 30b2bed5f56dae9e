/** Which texts of a run the list shows, and in what portions. */

export const PAGE_LENGTH = 20;

const KINDS = {
  all: () => true,
  translated: (unit) => !unit.skipped,
  skipped: (unit) => unit.skipped,
};

/**
 * @param {import('./unit_store.js').Unit[]} units by number; missing ones are passed over
 * @param {{words: string, kind: keyof typeof KINDS}} filter words: what the text or its translation holds, in any
 *   letter case
 * @returns {number[]} numbers of those that fit
 */
export function matchesOf(units, { words, kind }) {
  const wanted = words.trim().toLowerCase();
  const holds = (text) => text.toLowerCase().includes(wanted);
  const found = [];
  units.forEach((unit, index) => {
    if (!KINDS[kind](unit)) return;
    if (wanted === '' || holds(unit.original) || holds(unit.translated)) found.push(index);
  });
  return found;
}

/**
 * @param {number[]} matches
 * @param {number} page asked for, from 0
 * @returns {{page: number, from: number, rows: number[], isLast: boolean}} the nearest page that there is
 */
export function pageOf(matches, page) {
  const last = Math.max(0, Math.ceil(matches.length / PAGE_LENGTH) - 1);
  const nearest = Math.min(Math.max(page, 0), last);
  const from = nearest * PAGE_LENGTH;
  return { page: nearest, from, rows: matches.slice(from, from + PAGE_LENGTH), isLast: nearest === last };
}
