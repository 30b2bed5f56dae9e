/** Glossaries, instructions and the choice of them for runs, in a real browser. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, test } from 'node:test';

import { LANGUAGES } from '../panel/assets/js/i18n.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

const REFUSED = /^Failed to load resource/;
const entry = (source, target = 'x', more = {}) => ({ source, target, note: '', enabled: true, ...more });
const numbered = (count) => Array.from({ length: count }, (_, index) => entry(`s${index}`, `t${index}`));

let users = 0;
/** Somebody with glossaries and instructions, as [id, contents], in an account of their own. */
async function user({ glossaries = [], instructions = [] } = {}) {
  const token = await panel.signIn(`Terms ${++users}`);
  const ask = async (method, path, body) => {
    const headers = { Authorization: `Bearer ${token}` };
    const answer = await fetch(`${panel.origin}/v1/${path}`, { method, headers, body: body && JSON.stringify(body) });
    return answer.status === 204 ? null : answer.json();
  };
  for (const [id, body] of glossaries) await ask('PUT', `glossaries/${id}`, { name: id, ...body });
  for (const [id, body] of instructions) await ask('PUT', `instructions/${id}`, { name: id, ...body });
  return { token, ask, entries: async (id) => (await ask('GET', `glossaries/${id}`)).entries };
}

/** A page with the contents of its first item shown. */
async function openItem(name, token, options = {}) {
  const view = await panel.open(name, { token, ...options });
  await view.id('contents').waitFor();
  return view;
}

const saved = (view) => view.page.waitForSelector('#save-state[data-state="saved"]:has-text("Saved")');
/** Keeps a later `saved` from seeing an earlier one. */
const unsave = (view) => view.run("delete document.getElementById('save-state').dataset.state");
const field = (view, row, name) => view.page.locator(`#rows tr:nth-child(${row}) .${name}`);
const sources = (view) => view.page.locator('#rows .source').evaluateAll((fields) => fields.map(({ value }) => value));
const focused = (view) => view.run('`${document.activeElement.className} ${document.activeElement.value}`');
const reply = (view, { requestId }, data) =>
  view.run(`QuorvantisTerminology._onResponse(${JSON.stringify({ requestId, ok: true, data })})`);
const chooseFile = (view, text, name = 'terms.csv') =>
  view.id('file').setInputFiles({ name, mimeType: 'text/csv', buffer: Buffer.from(text) });

test('a glossary is made, named, filled, renamed and deleted', async () => {
  const { token, ask } = await user();
  const view = await panel.open('glossary', { token });
  await view.page.getByText('There is no glossary yet.').waitFor();
  await view.id('new').click();
  await view.id('dialog-yes').click();
  assert.equal(await view.text('dialog-problem'), 'Please enter a name.');
  await view.id('dialog-name').fill('  Finance ');
  await view.id('dialog-name').press('Enter');
  await saved(view);
  await unsave(view);
  await view.id('new-source').fill('tax');
  await view.id('new-target').fill('impuesto');
  await view.id('new-target').press('Enter');
  await saved(view);
  const [{ id, name }] = (await ask('GET', 'glossaries')).glossaries;
  assert.equal(name, 'Finance');
  assert.deepEqual((await ask('GET', `glossaries/${id}`)).entries, [entry('tax', 'impuesto')]);

  await view.id('new').click();
  await view.id('dialog-name').fill('Finance');
  await view.id('dialog-yes').click();
  assert.equal(await view.text('dialog-problem'), 'This name is taken already.');
  await view.id('dialog-name').press('Escape');
  await unsave(view);
  await view.id('rename').click();
  assert.equal(await view.id('dialog-name').inputValue(), 'Finance');
  await view.id('dialog-name').fill('Money');
  await view.id('dialog-yes').click();
  await saved(view);
  assert.equal((await ask('GET', `glossaries/${id}`)).name, 'Money');

  await view.id('delete').click();
  assert.match(await view.page.locator('dialog').innerText(), /Delete the glossary “Money”\?\s+Entries in it: 1\./);
  await view.page.keyboard.press('Enter');
  await view.page.waitForSelector('dialog', { state: 'detached' });
  assert.equal((await ask('GET', 'glossaries')).glossaries.length, 1, 'Enter alone deletes nothing');
  await view.id('delete').click();
  await view.id('dialog-yes').click();
  await view.page.getByText('There is no glossary yet.').waitFor();
  assert.deepEqual((await ask('GET', 'glossaries')).glossaries, []);
  await view.close();
});

test('entries are edited with the keyboard alone, and saved as they are written', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a', '1'), entry('b', '2'), entry('c', '3')] }]] });
  const view = await openItem('glossary', me.token);
  await field(view, 1, 'source').focus();
  await view.page.keyboard.press('Tab');
  assert.equal(await focused(view), 'target 1');
  await view.page.keyboard.type('one');
  await view.page.keyboard.press('Enter');
  assert.equal(await focused(view), 'target 2');
  await view.page.keyboard.press('ArrowDown');
  await view.page.keyboard.press('ArrowDown');
  assert.equal(await focused(view), 'target 3', 'the last row stays');
  await view.page.keyboard.type('three');
  await view.page.keyboard.press('Escape');
  assert.equal(await focused(view), 'target 3');
  await view.page.keyboard.press('Shift+Enter');
  await view.page.keyboard.press('Tab');
  await view.page.keyboard.type('a note');
  for (const key of ['Shift+Tab', 'Shift+Tab', 'Shift+Tab', 'Space']) await view.page.keyboard.press(key);
  await saved(view);
  assert.deepEqual(await me.entries('g'), [
    entry('a', 'one'),
    entry('b', '2', { note: 'a note', enabled: false }),
    entry('c', '3'),
  ]);
  await view.close();
});

test('the last removal can be undone, by button and by keys', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a'), entry('b'), entry('c')] }]] });
  const view = await openItem('glossary', me.token);
  assert.equal(await view.text('undo'), '');
  await field(view, 2, 'target').press('Control+Delete');
  assert.deepEqual([await sources(view), await view.text('removed')], [['a', 'c'], 'Removed: “b”']);
  assert.match(await focused(view), /^icon close remove/);
  await saved(view);
  assert.deepEqual((await me.entries('g')).map(({ source }) => source), ['a', 'c']);
  await unsave(view);
  await view.page.keyboard.press('Control+z');
  assert.deepEqual([await sources(view), await focused(view), await view.text('undo')], [['a', 'b', 'c'], 'source b', '']);
  await field(view, 1, 'remove').click();
  await view.id('undo').click();
  await saved(view);
  assert.deepEqual((await me.entries('g')).map(({ source }) => source), ['a', 'b', 'c']);
  await view.close();
});

test('missing sources and duplicates are pointed out, and nothing of them is lost', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('tax', '1'), entry('b', '2'), entry('tax', '3')] }]] });
  const view = await openItem('glossary', me.token);
  const problem = (row) => view.page.locator(`#rows tr:nth-child(${row}) .problem`).innerText();
  assert.match(await problem(3), /further up has the same source/);
  assert.equal(await view.text('duplicates'), 'Duplicates: 1');
  await view.id('duplicates').click();
  assert.deepEqual([await sources(view), await view.text('count')], [['tax'], 'Found: 1 of 3']);
  await view.id('duplicates').click();
  await field(view, 2, 'source').fill(' ');
  assert.equal(await problem(2), 'A source is needed. Until there is one, “b” stays.');
  assert.equal(await field(view, 2, 'source').getAttribute('aria-invalid'), 'true');
  await field(view, 2, 'target').fill('two');
  await saved(view);
  assert.deepEqual((await me.entries('g'))[1], entry('b', 'two'));
  assert.equal(await field(view, 2, 'source').inputValue(), 'b');
  await view.page.locator('#add button').click();
  assert.equal(await view.text('add-problem'), 'Enter a source first.');
  await view.close();
});

test('thousands of entries are shown a page at a time, searched, and stop at the limit', async () => {
  const me = await user({ glossaries: [['g', { entries: numbered(2000) }]] });
  const view = await openItem('glossary', me.token);
  assert.equal(await view.page.locator('#rows tr').count(), 50);
  assert.equal(await view.text('range'), '1–50 of 2,000');
  await field(view, 50, 'source').press('Enter');
  assert.deepEqual([await view.text('range'), await focused(view)], ['51–100 of 2,000', 'source s50']);
  await view.id('search').fill('T199');
  assert.deepEqual([await sources(view), await view.text('count')], [
    ['s199', ...Array.from({ length: 10 }, (_, index) => `s${1990 + index}`)],
    'Found: 11 of 2,000',
  ]);
  await view.id('search').fill('nothing');
  assert.equal(await view.text('no-match'), 'No entry fits.');
  await view.id('new-source').fill('more');
  await view.id('new-source').press('Enter');
  assert.equal(await view.text('add-problem'), 'A glossary holds 2,000 entries at most.');
  await view.id('search').fill('s1999');
  await field(view, 1, 'remove').click();
  await view.id('new-source').press('Enter');
  assert.equal(await field(view, 1, 'source').inputValue(), 'more');
  await view.id('undo').click();
  assert.equal(await view.text('add-problem'), 'A glossary holds 2,000 entries at most.');
  assert.equal(await view.text('removed'), 'Removed: “s1999”');
  await view.close();
});

test('a file is looked over before it is taken', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('tax', 'impuesto', { note: 'kept' })] }]] });
  const view = await openItem('glossary', me.token);
  await chooseFile(view, '\ufeffSource;Target\r\ntax;tributo\r\nvat;"IVA; impuesto"\r\n;x\r\n');
  const preview = (await view.id('import-preview').innerText()).split(/\n+/);
  assert.deepEqual(preview, [
    'New',
    '1',
    'vat → IVA; impuesto',
    'Replaced',
    '1',
    'tax → tributo',
    'Left out',
    '1',
    'Line 4: no source',
  ]);
  await view.id('dialog-no').click();
  assert.deepEqual(await sources(view), ['tax']);
  await chooseFile(view, 'source,target\ntax,tributo\nvat,IVA\n');
  await view.id('dialog-yes').click();
  await saved(view);
  assert.deepEqual(await me.entries('g'), [entry('tax', 'tributo', { note: 'kept' }), entry('vat', 'IVA')]);
  assert.equal(await view.text('toast'), 'Entries imported: 2');
  await chooseFile(view, 'tax,tributo\n');
  assert.ok(await view.id('dialog-yes').isDisabled(), 'there is nothing to take');
  await view.id('dialog-no').click();

  const cases = [
    ['a,b\n"c', /quotation mark in line 2 is never closed/],
    ['"a"b,c', /Line 1: there is text right after/],
    [Uint8Array.from([0xe4, 0x2c, 0x78]), /not UTF-8/],
    ['only\none', /one column only/],
    ['source,target', /holds no entries/],
    [' '.repeat(8 * 1024 * 1024 + 1), /too large/],
  ];
  for (const [text, words] of cases) {
    await chooseFile(view, text);
    await view.id('file-problem').getByText(words).waitFor();
  }
  await view.close();
});

test('a glossary is exported so that Excel opens it, and calculates nothing', async () => {
  const { token } = await user({ glossaries: [['g', { name: 'A/B: 术语', entries: [entry('税', '=1+1', { note: 'a, b' })] }]] });
  const view = await openItem('glossary', token);
  const download = view.page.waitForEvent('download');
  await view.id('export').click();
  const file = await download;
  assert.equal(file.suggestedFilename(), 'A_B_ 术语.csv');
  assert.equal(
    readFileSync(await file.path(), 'utf8'),
    "\ufeffsource,target,note,enabled\r\n税,'=1+1,\"a, b\",true\r\n",
  );
  await view.close();
});

test('what cannot be saved is said, stays on the page, and is saved by trying again', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a', '1')] }]] });
  const view = await openItem('glossary', me.token);
  const cases = [
    [(route) => route.abort(), /Not saved\. The service cannot be reached/],
    [(route) => route.fulfill({ status: 413, body: '{}' }), /Not saved\. This is more than/],
    [(route) => route.fulfill({ status: 401, body: '{}' }), /Not saved\. Your sign-in has expired/],
    [(route) => route.fulfill({ status: 500, body: '{}' }), /Not saved\. The service has a problem/],
  ];
  await field(view, 1, 'target').fill('2');
  for (const [answer, words] of cases) {
    await view.page.unroute('**/v1/glossaries/g');
    await view.page.route('**/v1/glossaries/g', answer);
    await view.run("document.getElementById('save-again').click()");
    await view.id('save-text').getByText(words).waitFor();
  }
  const clicked = view.page.getByRole('link', { name: 'Account' }).click();
  const dialog = await view.page.waitForEvent('dialog');
  assert.equal(dialog.type(), 'beforeunload');
  await dialog.dismiss();
  await clicked;
  await view.page.unroute('**/v1/glossaries/g');
  await view.id('save-again').click();
  await saved(view);
  assert.equal(await view.text('save-again'), '');
  assert.deepEqual(await me.entries('g'), [entry('a', '2')]);
  await view.close(REFUSED);
});

test('what one user could not save is not written into the account of the next', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a', '1')] }]] });
  const next = await user({ glossaries: [['n', { entries: [entry('n')] }]] });
  const view = await openItem('glossary', me.token);
  await view.page.route('**/v1/glossaries/g', (route) => route.abort());
  await field(view, 1, 'target').fill('2');
  await view.id('save-again').waitFor();
  await view.page.unroute('**/v1/glossaries/g');
  const other = await view.page.context().newPage();
  await other.goto(`${panel.origin}/panel/excel/support.html?host=excel&pane=xl1&uiLang=en`);
  await other.evaluate((token) => localStorage.setItem('quorvantis.session', JSON.stringify({ token })), next.token);
  await view.page.waitForFunction(() => document.querySelector('#rows .source')?.value === 'n');
  await unsave(view);
  await field(view, 1, 'target').fill('mine');
  await saved(view);
  const ids = (await next.ask('GET', 'glossaries')).glossaries.map(({ id }) => id);
  assert.deepEqual([ids, await next.entries('n')], [['n'], [entry('n', 'mine')]]);
  await view.close(REFUSED);
});

test('a refused deletion is said, and leaves everything', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a', '1')] }]] });
  const view = await openItem('glossary', me.token);
  await view.page.route('**/v1/glossaries/g', (route) =>
    route.request().method() === 'DELETE' ? route.abort() : route.continue(),
  );
  await field(view, 1, 'target').fill('2');
  await view.id('delete').click();
  await view.id('dialog-yes').click();
  await view.id('toast').getByText('The service cannot be reached').waitFor();
  await saved(view);
  assert.deepEqual([await sources(view), await me.entries('g')], [['a'], [entry('a', '2')]]);
  await view.close(REFUSED);
});

test('what was written last arrives although the page is left at once', async () => {
  const me = await user({ glossaries: [['g', { entries: [entry('a', '1')] }], ['h', { entries: [entry('h')] }]] });
  const view = await openItem('glossary', me.token);
  await field(view, 1, 'target').fill('2');
  await view.id('item').selectOption('h');
  await view.page.waitForFunction(() => document.querySelector('#rows .source')?.value === 'h');
  await field(view, 1, 'target').fill('3');
  await view.page.getByRole('link', { name: 'Account' }).click();
  await view.page.waitForURL(/account/);
  await view.goTo('glossary', 'host=excel&pane=xl1&uiLang=en');
  await view.page.waitForFunction(() => document.querySelector('#rows .target')?.value === '3');
  assert.deepEqual([await me.entries('g'), await me.entries('h')], [[entry('a', '2')], [entry('h', '3')]]);
  // The pane is closed.
  const closed = await view.page.context().newPage();
  await closed.goto(view.page.url());
  await closed.locator('#rows .target').fill('4');
  await closed.close();
  await view.page.waitForFunction(
    async (headers) =>
      (await (await fetch('/v1/glossaries/h', { headers })).json()).entries[0].target === '4',
    { Authorization: `Bearer ${me.token}` },
  );
  await view.close();
});

test('another page of the browser shows what was changed in this one', async () => {
  const { token } = await user({ glossaries: [['g', { entries: [entry('a', '1')] }]] });
  const view = await openItem('glossary', token);
  const other = await view.page.context().newPage();
  await other.goto(view.page.url());
  await other.waitForSelector('#rows .target');
  await field(view, 1, 'target').fill('2');
  await other.waitForFunction(() => document.querySelector('#rows .target').value === '2');
  await view.close();
});

test('an instruction is written, counted and kept; a signed-out user is asked to sign in', async () => {
  const me = await user({ instructions: [['i', { name: 'Formal', content: 'Use "usted".' }]] });
  const view = await openItem('instruction', me.token);
  assert.deepEqual([await view.id('content').inputValue(), await view.text('length')], ['Use "usted".', 'Characters: 12 of 20,000']);
  await view.id('content').fill('Zwei\nZeilen');
  await saved(view);
  assert.equal((await me.ask('GET', 'instructions/i')).content, 'Zwei\nZeilen');
  await view.id('delete').click();
  assert.match(await view.page.locator('dialog').innerText(), /Delete the instruction “Formal”\?/);
  await view.id('dialog-yes').click();
  await view.page.getByText('There is no instruction yet.').waitFor();
  await view.run("localStorage.setItem('quorvantis.session', '{\"token\":\"\",\"signedOut\":true}')");
  await view.page.reload();
  await view.id('signed-out').waitFor();
  assert.deepEqual([await view.text('shelf'), await view.text('contents')], ['', '']);
  await view.close();
});

const SNAPSHOT = {
  glossaries: [
    { id: 'g', name: 'Known', updatedAt: 1, entries: [] },
    { id: 'local 1', name: 'Old terms', updatedAt: 1, entries: [entry('a'), entry('')] },
  ],
  instructions: [{ id: 'i', name: 'Formal', content: 'Use "usted".', updatedAt: 1 }],
};

test('what only this computer holds is offered to the account, once', async () => {
  const me = await user({ glossaries: [['g', { entries: [] }]] });
  const view = await openItem('glossary', me.token);
  await reply(view, await view.postedNow('exportLocalSnapshot'), SNAPSHOT);
  await view.id('local-offer').waitFor();
  assert.equal(await view.text('local-names'), 'Old terms · Formal');
  await view.id('local-take').click();
  await view.id('toast').getByText('Added to the account: 2').waitFor();
  const [, { id, name }] = (await me.ask('GET', 'glossaries')).glossaries;
  assert.deepEqual([name, await me.entries(id)], ['Old terms', [entry('a')]]);
  assert.equal((await me.ask('GET', 'instructions/i')).content, 'Use "usted".');
  // Deleted in the account: it is not brought up again.
  await me.ask('DELETE', `glossaries/${id}`);
  await view.page.reload();
  await view.id('contents').waitFor();
  await reply(view, await view.postedNow('exportLocalSnapshot'), SNAPSHOT);
  await view.page.evaluate(() => fetch('/v1/languages'));
  assert.equal(await view.text('local-offer'), '');
  await view.close();
});

/** The translation page, ready to start, with its terminology open. */
async function openForm(token) {
  const view = await panel.open('translate', { token });
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await view.page.locator('#term-glossaries input').first().waitFor({ state: 'attached' });
  await view.page.locator('#terms summary').click();
  return view;
}

async function startFields(view) {
  await view.posted();
  await view.id('start').click();
  const { glossaryIds, globalInstructionId } = await view.postedNow('start');
  await view.id('cancel').click();
  await view.id('dismiss').click();
  return [glossaryIds, globalInstructionId];
}

test('each document keeps its own choice, and the start message carries it', async () => {
  const me = await user({
    glossaries: [['g', { entries: [] }], ['h', { entries: [] }]],
    instructions: [['i', { content: 'c' }]],
  });
  const view = await openForm(me.token);
  const turnTo = async (docKey) => {
    await view.run("dispatchEvent(new Event('focus'))");
    await reply(view, await view.postedNow('docKeyGet'), { docKey });
  };
  assert.deepEqual(await startFields(view), [undefined, undefined]);
  await turnTo('00000000000000aa');
  await view.page.getByLabel('g', { exact: true }).check();
  await view.id('term-instruction').selectOption('i');
  assert.equal(await view.text('terms-chosen'), 'g · i');
  assert.deepEqual(await startFields(view), [['g'], 'i']);
  await turnTo('00000000000000bb');
  assert.deepEqual(await startFields(view), [undefined, undefined]);
  await view.page.getByLabel('h', { exact: true }).check();
  await turnTo('00000000000000aa');
  assert.deepEqual(await startFields(view), [['g'], 'i']);

  await view.page.getByRole('button', { name: 'Use for all documents' }).click();
  await turnTo('00000000000000cc');
  assert.deepEqual(await startFields(view), [['g'], 'i']);
  await turnTo('00000000000000bb');
  assert.deepEqual(await startFields(view), [['h'], undefined]);
  await view.page.getByRole('button', { name: 'Use the usual choice' }).click();
  assert.deepEqual(await startFields(view), [['g'], 'i']);
  assert.equal(await view.text('usual'), '');

  await me.ask('DELETE', 'glossaries/g');
  await view.page.reload();
  await view.page.locator('#term-glossaries input').waitFor({ state: 'attached' });
  assert.deepEqual(await startFields(view), [undefined, 'i'], 'what is gone is not asked for');
  await view.close();
});

test('a workbook without a key shares the usual choice', async () => {
  const { token } = await user({ glossaries: [['g', { entries: [] }]] });
  const view = await openForm(token);
  await reply(view, await view.postedNow('docKeyGet'), { docKey: '_unsaved' });
  await view.page.getByLabel('g', { exact: true }).check();
  await view.run("dispatchEvent(new Event('focus'))");
  await reply(view, await view.postedNow('docKeyGet'), { docKey: '00000000000000dd' });
  assert.deepEqual(await startFields(view), [['g'], undefined]);
  await view.close();
});

test('terminology that cannot be listed says so, and does not stand in the way of a run', async () => {
  const { token } = await user({ glossaries: [['g', { entries: [] }]] });
  const view = await panel.open('support', { token });
  await view.page.route('**/v1/glossaries', (route) => route.abort());
  await view.run("localStorage.setItem('quorvantis.terminology', '{\"usual\":{\"glossaryIds\":[\"g\"],\"instructionId\":\"\"}}')");
  await view.goTo('translate', 'host=excel&pane=xl1&uiLang=en');
  await view.page.locator('#terms summary').click();
  await view.page.getByText('Your glossaries and instructions could not be loaded').waitFor();
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  assert.deepEqual(await startFields(view), [['g'], undefined]);
  await view.page.unroute('**/v1/glossaries');
  await view.id('terms-again').click();
  assert.ok(await view.page.getByLabel('g', { exact: true }).isChecked());
  await view.close(REFUSED);
});

test('nothing overflows in the narrowest pane, in any language', async () => {
  const me = await user({
    glossaries: [['g', { name: 'Finance and accounting', entries: [...numbered(60), entry('s1')] }]],
    instructions: [['i', { content: 'c' }]],
  });
  const problems = [];
  const view = await openItem('glossary', me.token, { width: 240 });
  for (const lang of LANGUAGES) {
    for (const name of ['glossary', 'instruction', 'translate']) {
      await view.goTo(name, `host=excel&pane=xl1&uiLang=${lang}`);
      if (name === 'translate') await view.id('terms').waitFor();
      else await view.id('contents').waitFor();
      await view.run("for (const element of document.querySelectorAll('main [hidden]:not(input)')) element.hidden = false");
      await view.run("document.querySelectorAll('details').forEach((element) => { element.open = true; })");
      if (name === 'glossary') {
        await view.id('delete').click();
        if (lang === 'ar') assert.equal(await view.run("getComputedStyle(document.querySelector('dialog')).direction"), 'rtl');
      }
      const wide = await view.run(`[...document.querySelectorAll('body *')].filter((element) => {
        if (!element.checkVisibility() || element.closest('.offscreen, .sample, option, th, [type=file]')) return false;
        const { left, right } = element.getBoundingClientRect();
        const labelled =
          element.matches('button, a, label, summary, legend') && getComputedStyle(element).display !== 'inline';
        return right > innerWidth + 1 || left < -1 || (labelled && element.scrollWidth > element.clientWidth + 1);
      }).map((element) => element.id || element.tagName + ' ' + element.textContent)`);
      if (wide.length > 0) problems.push(`${lang} ${name}: ${wide.join(', ')}`);
    }
  }
  assert.deepEqual(problems, []);
  await view.close();
});
