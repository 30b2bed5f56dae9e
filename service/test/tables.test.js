/** Tables out of PDF files and pictures that a real browser has made, and what is refused. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { buildApp } from '../app.js';
import { choosePages } from '../documents/page_choice.js';
import { MAX_PDF_BYTES } from '../documents/pdf.js';
import { findTables } from '../documents/tables.js';
import { launchBrowser } from '../testing/panel_browser.js';
import { print, tableOf } from '../testing/paper.js';
import { EchoEngine } from '../translate/echo.js';

const app = buildApp({ engine: new EchoEngine() });
let browser;
before(async () => {
  browser = await launchBrowser();
});
after(async () => {
  await browser.close();
  await app.close();
});

async function post(path, payload, token = 'dev-ada') {
  const headers = { authorization: `Bearer ${token}`, 'content-type': 'application/octet-stream' };
  const answer = await app.inject({ method: 'POST', url: `/v1/tables/${path}`, headers, payload });
  return { status: answer.statusCode, ...answer.json() };
}

const STOCK = [
  ['Item', 'Units', 'Price', 'Code'],
  ['Left screw', '120', '1,250.50', '007'],
  ['Washer', '8', '0.35', '123456789012'],
  ['Spring', '', '2.75', '0099'],
  ['Nut & bolt', '1500', '-12.00', 'B-17'],
];
const PROSE =
  '<p>The company sold more houses in the summer than in the winter. The prices of the houses were high, and the ' +
  'people of the city bought them all the same, because they wanted a garden.</p>';

test('a table comes out of a PDF and of a picture cell by cell, whatever it looks like', async () => {
  for (const look of ['wide', 'wide ruled', 'ruled dark']) {
    const { pdf, png } = await print(browser, `<h1>The stock of the year</h1>${PROSE}${tableOf(STOCK, look)}${PROSE}`);
    const fromPdf = await post('pdf', pdf);
    assert.deepEqual([fromPdf.pageCount, fromPdf.tables], [1, [{ pages: [1], rows: STOCK }]], `PDF, ${look}`);
    assert.deepEqual((await post('picture', png)).tables, [{ pages: [1], rows: STOCK }], `picture, ${look}`);
  }
});

test('a cell over several columns stands in the first of them', async () => {
  const title = '<tr><td colspan="4">All that is in the stock by the end of the year</td></tr>';
  const html = tableOf(STOCK, 'ruled').replace('</thead>', `</thead>${title}`);
  const rows = [STOCK[0], ['All that is in the stock by the end of the year', '', '', ''], ...STOCK.slice(1)];
  const { pdf, png } = await print(browser, html);
  assert.deepEqual((await post('pdf', pdf)).tables[0].rows, rows);
  assert.deepEqual((await post('picture', png)).tables[0].rows, rows);
});

test('a table over several pages is one, its heading counts once, and pages can be chosen', async () => {
  const items = Array.from({ length: 90 }, (_, i) => [`Item ${i + 1}`, String(i + 100), `C-${i}`]);
  const rows = [['Item', 'Units', 'Code'], ...items];
  const { pdf } = await print(browser, tableOf(rows));
  const whole = await post('pdf', pdf);
  assert.equal(whole.pageCount, whole.tables[0].pages.length);
  assert.ok(whole.pageCount > 1);
  assert.deepEqual(whole.tables, [{ pages: whole.tables[0].pages, rows }]);
  const second = await post('pdf?pages=2', pdf);
  assert.deepEqual(second.tables[0].pages, [2]);
  assert.deepEqual(second.tables[0].rows[0], rows[0]);
  assert.ok(second.tables[0].rows.length < rows.length);
});

test('a page that is a picture is recognised', async () => {
  const { png } = await print(browser, tableOf(STOCK, 'wide ruled'));
  const { pdf } = await print(browser, `<img width="640" src="data:image/png;base64,${png.toString('base64')}">`);
  assert.deepEqual((await post('pdf', pdf)).tables[0].rows, STOCK);
});

test('two tables of a page are two', async () => {
  const other = [['Name', 'Town'], ['Ada', 'London'], ['Grace', 'New York']];
  const { pdf } = await print(browser, `${tableOf(STOCK)}${PROSE}${PROSE}${tableOf(other)}`);
  assert.deepEqual((await post('pdf', pdf)).tables.map(({ rows }) => rows), [STOCK, other]);
});

test('what holds no table, or cannot be read, is refused in its own way', async () => {
  const { pdf, png } = await print(browser, PROSE);
  const cases = [
    ['pdf', pdf, 422, 'no_table'],
    ['picture', png, 422, 'no_table'],
    ['pdf', Buffer.from('no PDF at all'), 422, 'unreadable_pdf'],
    ['pdf', pdf.subarray(0, 300), 422, 'unreadable_pdf'],
    ['picture', Buffer.from('no picture'), 422, 'unreadable_picture'],
    ['picture', png.subarray(0, 200), 422, 'unreadable_picture'],
    ['pdf', Buffer.alloc(0), 400, 'bad_request'],
    ['pdf', Buffer.alloc(MAX_PDF_BYTES + 1), 413, 'content_too_long'],
    ['pdf?pages=2', pdf, 400, 'bad_pages'],
    ['pdf?pages=1&pages=2', pdf, 400, 'bad_request'],
  ];
  for (const [path, file, status, code] of cases) {
    const answer = await post(path, file);
    assert.deepEqual([answer.status, answer.code], [status, code], `${path} ${code}`);
  }
  assert.deepEqual([(await post('pdf', pdf, 'x')).status, (await post('pdf', pdf, 'dev-broke')).code], [
    401,
    'insufficient_credits',
  ]);
});

test('pages are chosen by numbers and ranges', () => {
  const good = { '2': [2], '1-3, 5': [1, 2, 3, 5], '3,1,3': [1, 3], '4-9': [4, 5] };
  for (const [choice, pages] of Object.entries(good)) assert.deepEqual(choosePages(choice, 5), pages, choice);
  assert.equal(choosePages('', 80).length, 50);
  assert.equal(choosePages('1-50', 80).length, 50);
  for (const [choice, count] of [['0', 5], ['a', 5], ['3-1', 5], ['6', 5], ['1,', 5], ['-2', 5], ['1-51', 80]]) {
    assert.throws(() => choosePages(choice, count), { code: 'bad_pages' }, choice);
  }
});

/** Words of ten units' height, a letter six wide and a blank three: `[left, text]` in each line. */
const wordsAt = (...lines) =>
  lines.flatMap((line, i) =>
    line.flatMap(([left, text]) => {
      let at = left;
      return text.split(' ').map((word) => {
        const placed = { text: word, left: at, top: i * 15, width: word.length * 6.001 + (i % 2) / 5, height: 10 };
        at += word.length * 6 + 3;
        return placed;
      });
    }),
  );
const rowsOf = (...lines) => findTables([{ page: 1, words: wordsAt(...lines) }]).map(({ rows }) => rows);

test('cells that nearly touch are parted where they are aligned, words of a cell are not', () => {
  const touching = [
    [[0, 'red one'], [100, '20'], [114, 'kg'], [200, 'a']],
    [[0, 'blue'], [94, '300'], [114, 'lb'], [200, 'b']],
    [[0, 'pink two'], [88, '4000'], [114, 'pcs'], [200, 'c']],
  ];
  assert.deepEqual(rowsOf(...touching)[0][2], ['pink two', '4000', 'pcs', 'c']);
  const words = [[[0, 'red one'], [100, 'a']], [[0, 'blue two'], [100, 'b']], [[0, 'pinkish'], [100, 'c']]];
  assert.deepEqual(rowsOf(...words)[0].map((row) => row[0]), ['red one', 'blue two', 'pinkish']);
});

test('a heading at the left of its column and numbers at the right of theirs are one column', () => {
  const lines = [
    [[0, 'Name'], [100, 'Sum'], [200, 'Code']],
    [[0, 'red'], [130, '1'], [200, 'x']],
    [[0, 'blue'], [130, '2'], [200, 'y']],
  ];
  assert.deepEqual(rowsOf(...lines)[0], [['Name', 'Sum', 'Code'], ['red', '1', 'x'], ['blue', '2', 'y']]);
});

test('tables of neighbouring pages with other columns stay two', () => {
  const narrow = wordsAt([[0, 'a'], [100, 'b']], [[0, 'c'], [100, 'd']]);
  const moved = wordsAt([[300, 'a'], [400, 'b']], [[300, 'c'], [400, 'd']]);
  const pagesOf = (...pages) => {
    const found = findTables(pages.map((words, i) => ({ page: i + 1, words })));
    return found.map(({ pages: on }) => on);
  };
  assert.deepEqual(pagesOf(narrow, narrow), [[1, 2]]);
  assert.deepEqual(pagesOf(narrow, moved), [[1], [2]]);
  assert.deepEqual(pagesOf(narrow, [], narrow), [[1], [3]]);
});
