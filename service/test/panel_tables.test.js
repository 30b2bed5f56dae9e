/** Tables out of files in a real browser, with the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { PanelBrowser } from '../testing/panel_browser.js';
import { print, tableOf } from '../testing/paper.js';

const STOCK = [
  ['Item', 'Units', 'Price', 'Code'],
  ['Left screw', '120', '1,250.50', '007'],
  ['=A1', '8', '0.35', '123456789012345678'],
];
const VALUES = [
  ['Item', 'Units', 'Price', 'Code'],
  ['Left screw', 120, 1250.5, "'007"],
  ["'=A1", 8, 0.35, "'123456789012345678"],
];
const PLACE = { workbookKey: 'k', sheetName: 'Data', row: 3, col: 2, rangeAddress: '$B$3:$C$4' };
/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;

let panel;
let paper;
before(async () => {
  panel = await PanelBrowser.start();
  paper = await print(panel.browser, tableOf(STOCK));
});
after(() => panel.close());

const written = (values, refused = 0) => {
  const results = values.flat().map((_, i) => ({ status: i < refused ? 'skipped' : 'applied' }));
  return { results, applied: results.length - refused };
};
/** What a sheet without text formats shows of what was written. */
const readBack = ({ row, col }, values) => ({
  cells: values.flatMap((line, i) =>
    line.map((value, j) => ({ row: row + i, col: col + j, value: String(value).replace(/^'/, '') })),
  ),
});

/** Opens a page on the table, with the selection taken. */
async function openOnTable(name = 'pdf2table', options = {}) {
  const view = await panel.open(name, options);
  // Recognition takes its time on a busy machine.
  view.page.setDefaultTimeout(60000);
  await view.posted();
  if (name === 'pdf2table') await view.choose('stock.pdf', 'application/pdf', paper.pdf);
  else await view.choose('stock.png', 'image/png', paper.png);
  await view.answer(await view.postedNow('excelGetWriteContext'), PLACE);
  await view.id('write').and(view.page.locator(':enabled')).waitFor();
  return view;
}

const shown = (view) =>
  view.page.$$eval('#cells tr:has(td input)', (rows) =>
    rows.map((row) => [...row.querySelectorAll('input')].map((field) => field.value)),
  );

/** Plays the add-in from the press of "Write" to the end; gives what was written. */
async function write(view, { filled = 0, refused = 0, depth = 1 } = {}) {
  await view.id('write').click();
  const asked = await view.postedNow('excelRangeHasContent');
  await view.answer(asked, { hasContent: filled !== 0, nonEmptyCount: filled, sheetName: 'Data' });
  if (filled !== 0) await view.id('dialog-yes').click();
  await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth });
  const message = await view.postedNow('excelWriteRange');
  await view.answer(message, written(message.values, refused));
  if (message.values.flat().some((value) => String(value).startsWith("'"))) {
    await view.answer(await view.postedNow('excelReadRange'), readBack(PLACE, message.values));
  }
  await view.id('written').waitFor();
  return message;
}

test('a PDF’s table is shown, mended, written as numbers and texts, and taken back with one undo', async () => {
  const view = await openOnTable();
  assert.deepEqual(await shown(view), STOCK);
  assert.equal(await view.id('cell').inputValue(), 'B3');
  assert.equal(await view.text('place'), 'On the sheet “Data”');
  await view.page.getByLabel('A2', { exact: true }).fill('Right screw');
  await view.page.getByLabel('A2', { exact: true }).press('Enter');
  assert.equal(await view.page.evaluate(() => document.activeElement.getAttribute('aria-label')), 'A3');
  const { range, sheetName, values } = await write(view);
  assert.deepEqual([range, sheetName], ['B3:E5', 'Data']);
  assert.deepEqual(values, [VALUES[0], ['Right screw', ...VALUES[1].slice(1)], VALUES[2]]);
  assert.equal(await view.text('written-text'), 'Written: B3:E5 on “Data”.');
  await view.id('undo').click();
  await view.answer(await view.postedNow('excelUndoMessage'), { restored: 12, depth: 0 });
  await view.id('written').getByText('Undone. Cells put back: 12').waitFor();
  assert.equal(await view.text('undo'), '');
  await view.close();
});

test('a picture is chosen, or pasted, and shown', async () => {
  const view = await openOnTable('imagetotable');
  assert.deepEqual(await shown(view), STOCK);
  assert.ok(await view.id('picture').isVisible());
  await view.page.evaluate(async (bytes) => {
    const data = new DataTransfer();
    const content = Uint8Array.from(atob(bytes), (letter) => letter.charCodeAt(0));
    data.items.add(new File([content], 'a.png', { type: 'image/png' }));
    document.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true }));
  }, paper.png.toString('base64'));
  await view.id('result').waitFor({ state: 'hidden' });
  await view.answer(await view.postedNow('excelGetWriteContext'), { ...PLACE, row: 9, sheetName: 'Other' });
  await view.page.waitForFunction(() => document.getElementById('cell').value === 'B9');
  assert.equal(await view.text('place'), 'On the sheet “Other”');
  await view.close();
});

test('cells that hold something are overwritten only after a yes', async () => {
  const view = await openOnTable();
  await view.id('write').click();
  await view.answer(await view.postedNow('excelRangeHasContent'), { hasContent: true, nonEmptyCount: 4 });
  const dialog = view.page.getByRole('dialog');
  assert.match(await dialog.innerText(), /Overwrite B3:E5\?[^]*Cells that hold something: 4\./);
  await view.id('dialog-no').click();
  await view.id('write').and(view.page.locator(':enabled')).waitFor();
  assert.deepEqual(await view.posted(), []);
  await write(view, { filled: -1 });
  await view.close();
});

test('cells that refuse are told of, and the apostrophe does not stay where the format is text', async () => {
  const view = await openOnTable();
  await view.id('write').click();
  await view.answer(await view.postedNow('excelRangeHasContent'), { hasContent: false, nonEmptyCount: 0 });
  await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth: 5 });
  const { requestId, values } = await view.postedNow('excelWriteRange');
  await view.answer({ requestId }, written(values, 2));
  const asIs = readBack(PLACE, values);
  for (const cell of asIs.cells) if (cell.value === '007') cell.value = "'007";
  await view.answer(await view.postedNow('excelReadRange'), asIs);
  const mended = await view.postedNow('excelWriteRange');
  assert.deepEqual([mended.range, mended.values], ['E4', [['007']]]);
  await view.answer(mended, written([['007']]));
  await view.id('written').waitFor();
  assert.equal(await view.text('written-text'), 'Written: B3:E5 on “Data”. Cells not written: 2. They may be locked.');
  await view.close();
});

test('what nothing came of leaves no marker behind, and what broke off can be taken back', async () => {
  const view = await openOnTable();
  const begin = async (depth) => {
    await view.id('write').click();
    await view.answer(await view.postedNow('excelRangeHasContent'), { hasContent: false, nonEmptyCount: 0 });
    await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth });
    return view.postedNow('excelWriteRange');
  };
  let message = await begin(1);
  await view.answer(message, written(message.values, 12));
  await view.answer(await view.postedNow('excelReadRange'), { cells: [] });
  await view.answer(await view.postedNow('excelUndoMessage'), { restored: 0, depth: 0 });
  await view.id('written').getByText('No cell could be written').waitFor();
  assert.equal(await view.text('undo'), '');
  message = await begin(1);
  await view.answer(message, { error: 'busy' });
  await view.id('written').getByText('stopped writing').waitFor();
  assert.ok(await view.id('undo').isVisible());
  await view.close();
});

test('a large table is written in parts, under one marker', async () => {
  const rows = Array.from({ length: 1300 }, (_, i) => ['a', 'b', 'c', String(i + 1)]);
  const view = await panel.open('pdf2table');
  await view.posted();
  await view.page.route('**/v1/tables/pdf?*', (route) => route.fulfill({ json: { tables: [{ pages: [1], rows }] } }));
  await view.choose('long.pdf', 'application/pdf', paper.pdf);
  await view.answer(await view.postedNow('excelGetWriteContext'), PLACE);
  assert.equal((await shown(view)).length, 50);
  await view.id('write').click();
  await view.answer(await view.postedNow('excelRangeHasContent'), { hasContent: false, nonEmptyCount: 0 });
  await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth: 1 });
  for (const range of ['B3:E1252', 'B1253:E1302']) {
    const message = await view.postedNow('excelWriteRange');
    assert.equal(message.range, range);
    await view.answer(message, written(message.values));
  }
  await view.id('written').getByText('Written: B3:E1302').waitFor();
  await view.close();
});

test('a place that is none, or has no room, is told of before anything is asked', async () => {
  const view = await openOnTable();
  for (const [cell, words] of [['B', /such as B2/], ['XFC1', /no room/], ['A1048575', /no room/]]) {
    await view.id('cell').fill(cell);
    await view.id('write').click();
    await view.id('target-problem').getByText(words).waitFor();
  }
  assert.deepEqual(await view.posted(), []);
  await view.close();
});

test('what cannot be read is told in words, and what is asked again may go well', async () => {
  const view = await panel.open('pdf2table', { lang: 'de' });
  for (const [name, bytes, words] of [['a.pdf', Buffer.from('x'), /nicht als PDF lesen/], ['b.pdf', paper.pdf, /^$/]]) {
    await view.choose(name, 'application/pdf', bytes);
    await view.id('read').waitFor();
    const tells = (text) => new RegExp(text).test(document.getElementById('problem').textContent);
    await view.page.waitForFunction(tells, words.source);
  }
  await view.id('pages').fill('7');
  await view.id('read').click();
  await view.id('problem').getByText('Geben Sie Seiten ein').waitFor();
  const told = { recognition_unavailable: 'Tesseract', pdf_encrypted: 'Kennwort', no_table: 'Keine Tabelle' };
  for (const [code, words] of Object.entries(told)) {
    await view.page.route('**/v1/tables/pdf?*', (route) => route.fulfill({ status: 422, json: { code } }));
    await view.id('read').click();
    await view.id('problem').getByText(words).waitFor();
    await view.page.unroute('**/v1/tables/pdf?*');
  }
  await view.close(REFUSED);
});

test('a reading that is given up changes nothing', async () => {
  const view = await panel.open('pdf2table');
  await view.page.route('**/v1/tables/pdf?*', () => {});
  await view.choose('a.pdf', 'application/pdf', paper.pdf);
  await view.id('stop').click();
  await view.id('read').waitFor();
  assert.deepEqual([await view.text('problem'), await view.text('result')], ['', '']);
  await view.close(REFUSED);
});

test('who is not signed in is asked to, and the larger window takes the table over', async () => {
  const stranger = await panel.open('imagetotable', { token: null });
  assert.equal(await stranger.text('reason'), 'Sign in first.');
  assert.ok(await stranger.id('read').isDisabled());
  await stranger.close();
  const view = await openOnTable();
  const state = await view.run('quorvantisExportState()');
  const other = await panel.open('pdf2table', { query: 'surface=workspace', width: 1000 });
  await other.run(`quorvantisImportState(${JSON.stringify(state)})`);
  assert.deepEqual(await shown(other), STOCK);
  await other.run('quorvantisImportState({ tables: [{ pages: [1], rows: [[1]] }] })');
  assert.deepEqual(await shown(other), STOCK);
  await other.close();
  await view.close();
});
