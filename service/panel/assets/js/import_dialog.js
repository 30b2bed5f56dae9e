/** Taking entries over from a CSV file: first what would come of it, then the user's word. */
import { CsvError } from './csv.js';
import { askInDialog } from './dialogs.js';
import { make } from './dom.js';
import { planImport, readGlossaryCsv } from './glossary_csv.js';
import { formatNumber, t } from './i18n.js';

/** Far above what a glossary can hold. */
const MAX_FILE_BYTES = 8 * 1024 * 1024;
/** As many of a kind as can be looked over. */
const SAMPLE_SIZE = 20;

const FILE_PROBLEMS = {
  encoding: 'terms.fileEncoding',
  openQuote: 'terms.fileQuote',
  afterQuote: 'terms.fileAfterQuote',
};
const REASONS = {
  empty: 'terms.skipEmpty',
  again: 'terms.skipAgain',
  long: 'terms.skipLong',
  flag: 'terms.skipFlag',
  full: 'terms.skipFull',
};

/**
 * @param {File} file
 * @returns {Promise<{rows: import('./glossary_csv.js').FileRow[]} | {problem: string}>} `problem` in the user's words
 */
export async function readImportFile(file) {
  if (file.size > MAX_FILE_BYTES) return { problem: t('terms.fileLarge') };
  try {
    const rows = readGlossaryCsv(new Uint8Array(await file.arrayBuffer()));
    if (rows.length === 0) return { problem: t('terms.fileEmpty') };
    if (rows.every(({ texts }) => texts.target === undefined)) return { problem: t('terms.fileOneColumn') };
    return { rows };
  } catch (error) {
    if (!(error instanceof CsvError)) return { problem: t('terms.fileUnread') };
    return { problem: t(FILE_PROBLEMS[error.kind], { line: error.line }) };
  }
}

/**
 * @param {string} fileName
 * @param {import('./glossary_csv.js').FileRow[]} rows
 * @param {import('./entries.js').Entry[]} entries of the glossary
 * @returns {Promise<import('./glossary_csv.js').ImportPlan | null>} null when the user does not want it
 */
export async function askForImport(fileName, rows, entries) {
  const plan = planImport(rows, entries);
  const pair = ({ source, target }) => `${source} → ${target}`;
  const skipped = ({ line, reason }) => t('terms.lineIs', { line, text: t(REASONS[reason]) });
  const parts = [
    part('terms.willAdd', plan.added.length, plan.added, pair),
    part('terms.willReplace', plan.replaced.length, plan.replaced, pair),
    part('terms.unchanged', plan.unchanged, [], pair),
    part('terms.willSkip', plan.skipped.length, plan.skipped, skipped),
  ];
  const asked = askInDialog([make('div', { id: 'import-preview', tabIndex: 0 }, parts.flat())], {
    title: t('terms.importTitle', { file: fileName }),
    accept: t('terms.take'),
  });
  if (plan.added.length + plan.replaced.length === 0) document.getElementById('dialog-yes').disabled = true;
  return (await asked) ? plan : null;
}

/** A heading with the number, and the first of them. */
function part(title, count, items, wordsOf) {
  if (count === 0) return [];
  const heading = make('p', { class: 'figures' }, [
    make('strong', { textContent: t(title) }),
    make('span', { textContent: formatNumber(count) }),
  ]);
  const lines = items.slice(0, SAMPLE_SIZE).map((item) => make('li', { textContent: wordsOf(item), dir: 'auto' }));
  if (items.length > SAMPLE_SIZE) {
    lines.push(make('li', { class: 'quiet', textContent: t('terms.more', { count: items.length - SAMPLE_SIZE }) }));
  }
  return lines.length > 0 ? [heading, make('ul', {}, lines)] : [heading];
}
