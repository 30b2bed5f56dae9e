/** Tables out of pictures and PDF files: found by the service, mended by the user, written into the sheet. */
import { pageName } from './address.js';
import { isHosted, onEvents } from './bridge.js';
import { CellGrid } from './cell_grid.js';
import { numberStyleOf, readNumber, usualStyle } from './cell_values.js';
import { byId, fillSelect } from './dom.js';
import { fileErrorText } from './file_errors.js';
import { language, onLanguage, t } from './i18n.js';
import { openPage } from './page.js';
import { readPicture } from './picture_file.js';
import { ApiError, findTables } from './service_api.js';
import { dropToken, onSession, token } from './session.js';
import { TableTarget } from './table_target.js';

const KIND = pageName === 'pdf2table' ? 'pdf' : 'picture';
const WORDS = {
  picture: { label: 'totable.pictureFile', hint: 'totable.pictureHint', accept: 'image/*' },
  pdf: { label: 'totable.pdfFile', hint: 'totable.pdfHint', accept: 'application/pdf,.pdf' },
}[KIND];

/** What is read next, null as long as nothing is chosen. @type {Blob | null} */
let file = null;
/** Stops the reading. @type {AbortController | null} */
let reading = null;
/** Key of what went wrong, empty when nothing did. */
let problem = '';
/** @type {{pages: number[], rows: string[][]}[]} */
let tables = [];
let chosen = 0;

const numberStyle = () => byId('style').value;
const grid = new CellGrid((text) => readNumber(text.trim(), numberStyle()) !== null);
const target = new TableTarget(() => ({ rows: tables[chosen].rows, style: numberStyle() }));

/** Why nothing can be read, empty when something can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  return file ? '' : 'totable.chooseFirst';
}

async function read() {
  if (obstacle()) return;
  reading?.abort();
  const own = new AbortController();
  reading = own;
  const asked = token();
  tell('');
  announce('totable.reading');
  let found = [];
  try {
    const sent = KIND === 'picture' ? await readPicture(file, byId('picture')) : file;
    byId('picture').hidden = KIND !== 'picture';
    found = await findTables(asked, KIND, sent, { pages: byId('pages').value, signal: own.signal });
  } catch (error) {
    if (own.signal.aborted) return;
    if (error.status === 401 && asked === token()) dropToken();
    // A picture that the browser cannot read is not sent.
    tell(error instanceof ApiError ? fileErrorText(error.code) : 'files.badPicture');
  } finally {
    if (reading === own) reading = null;
    draw();
  }
  if (own.signal.aborted) return;
  show(found, 0);
  if (found.length > 0) {
    await target.takeSelection();
    byId('announcer').textContent = t('totable.found', { count: found.length });
  }
}

function show(found, index) {
  [tables, chosen] = [found, index];
  if (tables.length > 0) byId('style').value = numberStyleOf(tables[chosen].rows, usualStyle(language()));
  drawResult();
}

function choose(newFile) {
  if (!newFile) return;
  file = newFile;
  show([], 0);
  draw();
  void read();
}

function tell(key) {
  problem = key;
  draw();
}

const announce = (key) => {
  byId('announcer').textContent = t(key);
};

function draw() {
  byId('sign-in').hidden = token() !== '';
  const reason = obstacle();
  byId('reason').textContent = reason && !problem ? t(reason) : '';
  byId('read').disabled = reason !== '';
  byId('read').hidden = reading !== null;
  byId('reading').hidden = reading === null;
  byId('problem').textContent = problem ? t(problem) : '';
}

function drawResult() {
  byId('result').hidden = tables.length === 0;
  if (tables.length === 0) return;
  byId('choice-field').hidden = tables.length === 1;
  const options = tables.map((table, i) => ({ value: String(i), text: nameOf(table, i) }));
  fillSelect(byId('choice'), options, String(chosen));
  grid.show(tables[chosen].rows);
  target.draw();
}

function nameOf({ pages, rows }, i) {
  const facts = { number: i + 1, rows: rows.length, columns: rows[0].length };
  const name = t('totable.tableIs', facts);
  return KIND === 'pdf' ? `${name} · ${t('totable.onPages', { pages: pages.join(', ') })}` : name;
}

function redraw() {
  byId('file-label').textContent = t(WORDS.label);
  byId('file-hint').textContent = t(WORDS.hint);
  draw();
  drawResult();
}

/** The first picture among what was pasted or dropped. */
const fileOf = (data) => [...(data?.files ?? [])].find(({ type }) => KIND === 'pdf' || type.startsWith('image/'));

byId('title').dataset.t = `page.${pageName}`;
byId('file').accept = WORDS.accept;
byId('pages-field').hidden = KIND !== 'pdf';
byId('source').addEventListener('submit', (event) => {
  event.preventDefault();
  void read();
});
byId('file').addEventListener('change', ({ target: { files } }) => choose(files[0]));
byId('file').addEventListener('dragover', ({ target: field }) => field.classList.add('over'));
for (const type of ['dragleave', 'drop']) {
  byId('file').addEventListener(type, ({ target: field }) => field.classList.remove('over'));
}
document.addEventListener('paste', (event) => {
  const pasted = fileOf(event.clipboardData);
  if (!pasted) return;
  event.preventDefault();
  choose(pasted);
});
byId('stop').addEventListener('click', () => {
  reading?.abort();
  reading = null;
  draw();
  byId('read').focus();
});
byId('choice').addEventListener('change', ({ target: { value } }) => show(tables, Number(value)));
byId('style').addEventListener('change', () => grid.draw());
grid.open();
target.open();

const isTable = (table) =>
  Array.isArray(table?.pages) && Array.isArray(table.rows) && table.rows.length > 0 &&
  table.rows.every((row) => Array.isArray(row) && row.length > 0 && row.every((text) => typeof text === 'string'));

onEvents({
  quorvantisExportState: () => (tables.length > 0 ? { tables, chosen } : null),
  quorvantisImportState: (state) => {
    if (!Array.isArray(state?.tables) || !state.tables.every(isTable)) return;
    show(state.tables, state.tables[state.chosen] ? state.chosen : 0);
    void target.takeSelection();
  },
});
onLanguage(redraw);
onSession(draw);
await openPage();
if (!isHosted()) target.draw();
