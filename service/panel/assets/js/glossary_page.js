/** The user's glossaries and their entries. */
import { byId, make } from './dom.js';
import { EntryTable } from './entry_table.js';
import { glossaryCsv } from './glossary_csv.js';
import { onLanguage, t } from './i18n.js';
import { askForImport, readImportFile } from './import_dialog.js';
import { openLocalOffer } from './local_offer.js';
import { openPage, showToast } from './page.js';
import { Shelf } from './shelf.js';

/** How long a download may take to begin. */
const DOWNLOAD_MS = 60000;

const shelf = new Shelf({
  kind: 'glossaries',
  empty: { entries: [] },
  newTitle: 'terms.newGlossary',
  deletion: () => ({
    title: t('terms.deleteGlossary', { name: shelf.item.name }),
    text: t('terms.deleteGlossaryText', { count: shelf.item.entries.length }),
  }),
  draw: () => table.show(shelf.item.entries),
});
const table = new EntryTable(() => shelf.changed());

/** @param {string} problem of the chosen file, in words */
function tellOfFile(problem) {
  byId('file-problem').textContent = problem;
}

async function importFile(file) {
  const { item } = shelf;
  const { rows, problem = '' } = await readImportFile(file);
  tellOfFile(problem);
  if (!rows) return;
  const plan = await askForImport(file.name, rows, item.entries);
  if (!plan || item !== shelf.item) return;
  item.entries = plan.entries;
  table.show(item.entries);
  shelf.changed();
  showToast(t('terms.imported', { count: plan.added.length + plan.replaced.length }));
}

function exportFile() {
  const { name, entries } = shelf.item;
  const url = URL.createObjectURL(new Blob([glossaryCsv(entries)], { type: 'text/csv;charset=utf-8' }));
  // No file name has these.
  make('a', { href: url, download: `${name.replace(/[\\/:*?"<>|\p{Cc}]/gu, '_') || 'glossary'}.csv` }).click();
  setTimeout(() => URL.revokeObjectURL(url), DOWNLOAD_MS);
}

byId('import').addEventListener('click', () => byId('file').click());
byId('file').addEventListener('change', async ({ target }) => {
  const [file] = target.files;
  if (file) await importFile(file);
  // So that the same file can be chosen again.
  target.value = '';
});
byId('export').addEventListener('click', exportFile);
onLanguage(() => tellOfFile(''));
table.open();
shelf.open();
const offer = openLocalOffer(() => void shelf.load());
await openPage();
await shelf.load();
await offer.look();
