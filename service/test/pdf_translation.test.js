/** PDF files translated paragraph by paragraph: the endpoint, and the page in a real browser without an add-in. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, test } from 'node:test';

import { paragraphsOf } from '../documents/paragraphs.js';
import { PanelBrowser } from '../testing/panel_browser.js';
import { print } from '../testing/paper.js';

const LONG = 'The people of the city bought the houses all the same, because each of them wanted to have a garden.';
const HTML = `<div style="width: 420px"><h1>The yearly report</h1><p>${LONG} ${LONG}</p><h2>Costs &amp; prices</h2>
  <p>They rose.</p><p>They fell again in the winter of the year, when no&shy;body wanted any of the many
  hou&shy;ses that were to be had.</p><p style="break-before: page">The second page &lt;is&gt; short.</p></div>`;
const PARAGRAPHS = [
  [true, 'The yearly report'],
  [false, `${LONG} ${LONG}`],
  [true, 'Costs & prices'],
  [false, 'They rose.'],
  [false, 'They fell again in the winter of the year, when nobody wanted any of the many houses that were to be had.'],
];
const SECOND = [[false, 'The second page <is> short.']];
const MARKED = ([isHeading, text]) => ({ isHeading, text, translation: `ES:${text}` });
/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;

let panel;
let pdf;
let png;
before(async () => {
  panel = await PanelBrowser.start();
  ({ pdf, png } = await print(panel.browser, HTML));
});
after(() => panel.close());

async function post(query, payload, token = 'dev-ada') {
  const headers = { authorization: `Bearer ${token}`, 'content-type': 'application/pdf' };
  const answer = await panel.app.inject({ method: 'POST', url: `/v1/translate/pdf?${query}`, headers, payload });
  return { status: answer.statusCode, ...answer.json() };
}

test('headings and paragraphs come whole, in order, and page by page', async () => {
  const answer = await post('sourceLang=en&targetLang=es', pdf);
  assert.equal(answer.pageCount, 2);
  assert.deepEqual(answer.pages, [
    { page: 1, paragraphs: PARAGRAPHS.map(MARKED) },
    { page: 2, paragraphs: SECOND.map(MARKED) },
  ]);
  assert.deepEqual((await post('targetLang=es&pages=2', pdf)).pages, answer.pages.slice(1));
});

/** A block of lines in Poppler's XML, ten units high unless told: a letter is six wide, a blank three. */
function block(...lines) {
  const xml = lines.map(({ left = 0, height = 10, text }, i) => {
    let at = left;
    const words = text.split(' ').map((word) => {
      const [from, to] = [at, at + 6 * word.length];
      at = to + 3;
      return `<word xMin="${from}" yMin="${15 * i}" xMax="${to}" yMax="${15 * i + height}">${word}</word>`;
    });
    return `<line>${words.join('')}</line>`;
  });
  return `<block>${xml.join('')}</block>`;
}

test('a paragraph ends where the next word had found room, at an indent, and where letters change their size', () => {
  const cases = [
    [[{ text: 'aaaa bbbb cccc' }, { text: 'dddd eeee' }], ['aaaa bbbb cccc dddd eeee']],
    [[{ text: 'aaaa bbbb' }, { text: 'cccc' }, { text: 'dddd eeee' }], ['aaaa bbbb cccc', 'dddd eeee']],
    [[{ text: 'aaaa bbbb cccc' }, { text: 'dddd eeee', left: 12 }], ['aaaa bbbb cccc', 'dddd eeee']],
    [[{ text: 'aaaa bbbb cccc' }, { text: 'dddd eeee', height: 12 }], ['aaaa bbbb cccc', 'dddd eeee']],
    [[{ text: 'aaaa bbbb cccc-' }, { text: 'dddd' }], ['aaaa bbbb ccccdddd']],
    [[{ text: 'aaaa bbbb 2020-' }, { text: '2021' }], ['aaaa bbbb 2020- 2021']],
  ];
  for (const [lines, texts] of cases) {
    assert.deepEqual(paragraphsOf(block(...lines)).map(({ text }) => text), texts, JSON.stringify(lines));
  }
});

test('a page that is a picture is recognised before', async () => {
  const picture = `<img width="640" src="data:image/png;base64,${png.toString('base64')}">`;
  const scanned = (await print(panel.browser, picture)).pdf;
  const [{ paragraphs }] = (await post('sourceLang=en&targetLang=es', scanned)).pages;
  assert.ok(paragraphs.some(({ translation }) => translation === `ES:${LONG} ${LONG}`), JSON.stringify(paragraphs));
});

test('characters are counted for who asked, and others are refused', async () => {
  const token = await panel.signIn('Reader');
  await post('targetLang=es&pages=2', pdf, token);
  const account = await panel.app.inject({ url: '/v1/account', headers: { authorization: `Bearer ${token}` } });
  assert.equal(account.json().creditsUsed, SECOND[0][1].length);
  const cases = [
    ['targetLang=es', pdf, 'nobody', 401, 'unauthorized'],
    ['targetLang=es', pdf, 'dev-broke', 402, 'insufficient_credits'],
    ['sourceLang=en', pdf, 'dev-ada', 400, 'bad_request'],
    ['targetLang=es&pages=9', pdf, 'dev-ada', 400, 'bad_pages'],
    ['targetLang=es', Buffer.from('x'), 'dev-ada', 422, 'unreadable_pdf'],
  ];
  for (const [query, file, who, status, code] of cases) {
    const answer = await post(query, file, who);
    assert.deepEqual([answer.status, answer.code], [status, code]);
  }
});

async function openWeb({ token = 'dev-ada', query = 'tool=pdftr' } = {}) {
  const view = await panel.open('support', { token, hosted: false });
  await view.page.goto(`${panel.origin}/panel/web/webtranslate.html?${query}`);
  await view.ready();
  return view;
}

test('a stranger signs in on the page, and reads a PDF side by side', async () => {
  const view = await openWeb({ token: null });
  assert.equal(await view.text('reason'), 'Sign in first.');
  await view.id('login-button').click();
  await view.id('login-error').getByText('Please enter').waitFor();
  await view.id('who').fill('ada@example.org');
  await view.id('who').press('Enter');
  await view.id('login').waitFor({ state: 'hidden' });
  await view.choose('report.pdf', 'application/pdf', pdf);
  await view.page.waitForFunction(() => document.querySelectorAll('#target option').length > 0);
  await view.id('target').selectOption('es');
  await view.id('start').click();
  await view.id('result').waitFor();
  assert.equal(await view.text('result-title'), 'report.pdf · pages: 2 of 2');
  const pairs = await view.page.$$eval('.pair', (found) =>
    found.map(({ children }) => [...children].map(({ tagName, textContent }) => [tagName, textContent])),
  );
  assert.deepEqual(pairs[0], [['H4', 'The yearly report'], ['H4', 'ES:The yearly report']]);
  assert.deepEqual(pairs.at(-1), [['P', SECOND[0][1]], ['P', `ES:${SECOND[0][1]}`]]);
  assert.equal(await view.page.locator('.translation').first().getAttribute('lang'), 'es');

  await view.id('both').uncheck();
  assert.ok(!(await view.page.locator('.original').first().isVisible()));
  const [download] = await Promise.all([view.page.waitForEvent('download'), view.id('download').click()]);
  assert.equal(download.suggestedFilename(), 'report.es.html');
  const html = readFileSync(await download.path(), 'utf8');
  assert.match(html, /^<!doctype html>/);
  assert.match(html, /<html lang="es">[^]*ES:The second page &lt;is&gt; short\./);
  assert.doesNotMatch(html, /<script|id="text"/);
  await view.close();
});

test('what cannot be translated is told, and the language of the page is the asked one', async () => {
  const view = await openWeb({ query: 'tool=pdftr&uiLang=fr' });
  assert.equal(await view.page.title(), 'Traduire un PDF · Quorvantis');
  await view.page.waitForFunction(() => document.querySelectorAll('#target option').length > 0);
  await view.choose('a.pdf', 'application/pdf', Buffer.from('x'));
  await view.id('start').click();
  await view.id('problem').getByText('ne peut pas être lu comme PDF').waitFor();
  const empty = (await print(panel.browser, '')).pdf;
  await view.choose('b.pdf', 'application/pdf', empty);
  await view.id('start').click();
  await view.id('problem').getByText('ne contient pas de texte').waitFor();
  assert.equal(await view.text('result'), '');
  await view.close(REFUSED);
});
