/** Glossaries as CSV files, and what a file would change in a glossary. */
import { decodeCsv, parseCsv, unguarded, writeCsv } from './csv.js';
import { MAX_ENTRIES, MAX_LENGTHS, sourceKey } from './entries.js';

/** In the order of a file without a header; a header may have them in any. */
const COLUMNS = ['source', 'target', 'note', 'enabled'];
/** Excel writes truth values in its own language. */
const FLAGS = {
  true: ['', 'true', '1', 'yes', 'wahr', 'vrai', 'verdadero', 'истина'],
  false: ['false', '0', 'no', 'falsch', 'faux', 'falso', 'ложь'],
};

/**
 * @typedef {import('./entries.js').Entry} Entry
 * @typedef {{line: number, texts: Record<string, string>}} FileRow the columns that the file has, by name
 * @typedef {object} ImportPlan
 * @property {Entry[]} added
 * @property {Entry[]} replaced as they will be
 * @property {number} unchanged
 * @property {{line: number, reason: 'empty' | 'again' | 'long' | 'flag' | 'full'}[]} skipped
 * @property {Entry[]} entries the glossary afterwards: what was there in its order, then what is new
 */

/** @param {Entry[]} entries @returns {string} */
export const glossaryCsv = (entries) =>
  writeCsv([COLUMNS, ...entries.map((entry) => COLUMNS.map((name) => String(entry[name])))]);

/**
 * @param {Uint8Array} bytes of a file
 * @returns {FileRow[]} none when there is nothing below the header; a file that is broken is a CsvError
 */
export function readGlossaryCsv(bytes) {
  const records = parseCsv(decodeCsv(bytes));
  const header = headerOf(records[0]?.fields ?? []);
  return records.slice(header ? 1 : 0).map(({ line, fields }) => ({ line, texts: textsOf(header ?? COLUMNS, fields) }));
}

/** @returns {string[] | null} the columns' names when the first record holds them */
function headerOf(fields) {
  const names = fields.map((field) => field.trim().toLowerCase());
  return names.includes('source') && names.includes('target') ? names : null;
}

function textsOf(names, fields) {
  const known = COLUMNS.map((name) => [name, fields[names.indexOf(name)]]);
  return Object.fromEntries(known.filter(([, text]) => text !== undefined).map(([name, text]) => [name, unguarded(text)]));
}

/**
 * An entry with the same source is replaced, and keeps what the file has no column for.
 * @param {FileRow[]} rows
 * @param {Entry[]} entries of the glossary; left as they are
 * @returns {ImportPlan}
 */
export function planImport(rows, entries) {
  const plan = { added: [], replaced: [], unchanged: 0, skipped: [], entries: [...entries] };
  const places = new Map();
  entries.forEach(({ source }, index) => {
    if (!places.has(sourceKey(source))) places.set(sourceKey(source), index);
  });
  const met = new Set();
  for (const { line, texts } of rows) {
    const key = sourceKey(texts.source ?? '');
    const reason = faultOf(texts, key, met) || (!places.has(key) && plan.entries.length === MAX_ENTRIES ? 'full' : '');
    if (reason) {
      plan.skipped.push({ line, reason });
      continue;
    }
    met.add(key);
    place(plan, places.get(key), { ...texts, source: key });
  }
  return plan;
}

function faultOf(texts, key, met) {
  if (key === '') return 'empty';
  if (met.has(key)) return 'again';
  if (Object.entries(MAX_LENGTHS).some(([name, limit]) => texts[name]?.length > limit)) return 'long';
  return flagOf(texts.enabled) === undefined ? 'flag' : '';
}

/** @returns {boolean | undefined} true for none, undefined for what is neither */
function flagOf(text = '') {
  const word = text.trim().toLowerCase();
  if (FLAGS.true.includes(word)) return true;
  return FLAGS.false.includes(word) ? false : undefined;
}

function place(plan, index, { enabled, ...texts }) {
  const before = plan.entries[index] ?? { target: '', note: '', enabled: true };
  const after = { ...before, ...texts };
  if (enabled !== undefined) after.enabled = flagOf(enabled);
  if (index === undefined) {
    plan.added.push(after);
    plan.entries.push(after);
  } else if (COLUMNS.every((name) => after[name] === before[name])) {
    plan.unchanged += 1;
  } else {
    plan.replaced.push(after);
    plan.entries[index] = after;
  }
}
