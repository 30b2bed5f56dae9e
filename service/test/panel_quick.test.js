/** The page of quick translation in a real browser, with the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import english from '../panel/assets/js/languages/en.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;

/** A page with both languages chosen and nothing posted yet. */
async function openQuick(options) {
  const view = await panel.open('quicktranslate', options);
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await view.id('source').selectOption('en');
  await view.id('target').selectOption('es');
  await view.posted();
  return view;
}

/** Translates by the keyboard; gives what was posted. */
async function ask(view, text) {
  await view.id('text').fill(text);
  await view.id('text').press('Control+Enter');
  return view.postedNow('quickTranslate');
}

const answer = (view, fields) => view.run(`onQuickTranslateResult(${JSON.stringify(fields)})`);
const card = (view, number) => view.page.locator('#answers li').nth(number);
const select = (view, quickText, rangeAddress = '$A$1') =>
  view.run(`onSelectionPreview(${JSON.stringify({ fragments: 1, chars: quickText.length, rangeAddress, quickText })})`);

test('a text is posted with exactly its fields, by button and by Ctrl+Enter', async () => {
  const view = await openQuick();
  assert.equal(await view.text('reason'), english['quick.empty']);
  assert.ok(await view.id('start').isDisabled());
  await view.id('text').fill(' Good\nmorning ');
  await view.id('start').click();
  const [{ requestId, ...message }, ...more] = await view.posted();
  assert.deepEqual(more, []);
  assert.deepEqual(message, {
    action: 'quickTranslate',
    text: ' Good\nmorning ',
    sourceLang: 'en',
    targetLang: 'es',
    accessToken: 'dev-ada',
  });
  await view.id('instruction-fields').locator('summary').click();
  await view.id('instruction').fill(' formal ');
  const second = await ask(view, 'Yes');
  assert.equal(second.instruction, 'formal');
  assert.notEqual(second.requestId, requestId);
  await view.id('text').press('Enter');
  assert.deepEqual(await view.posted(), [], 'Enter alone begins a new line');
  await view.close();
});

test('answers find their text in any order, and others are not taken', async () => {
  const view = await openQuick();
  const first = await ask(view, 'one');
  const second = await ask(view, 'two');
  await answer(view, { requestId: 'of another page', ok: true, translation: 'x' });
  await answer(view, { requestId: second.requestId, ok: true, translation: 'dos' });
  assert.match(await card(view, 0).innerText(), /English → Spanish\s+two\s+dos/);
  assert.match(await card(view, 1).innerText(), /one\s+Translating…$/);
  assert.equal(await view.id('announcer').innerText(), 'dos');
  await answer(view, { requestId: first.requestId, ok: true, translation: 'uno' });
  await answer(view, { requestId: first.requestId, ok: false, error: 'late' });
  assert.match(await card(view, 1).innerText(), /uno/);
  await view.close();
});

test('an answer is copied, and goes into the cell in both ways', async () => {
  const view = await openQuick();
  const { requestId } = await ask(view, 'one');
  await answer(view, { requestId, ok: true, translation: 'uno' });
  await card(view, 0).getByRole('button', { name: 'Replace cell' }).click();
  await card(view, 0).getByRole('button', { name: 'Insert below' }).click();
  assert.deepEqual(await view.posted(), [
    { action: 'quickTranslateWrite', mode: 'replace', text: 'uno' },
    { action: 'quickTranslateWrite', mode: 'insert', text: 'uno' },
  ]);
  const message = '目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。';
  await view.say({ action: 'sheetWriteBlocked', message });
  await view.run(`onSheetWriteBlocked({message:'${message}'})`);
  assert.equal(await view.text('unwritten-text'), english['unwritten.locked']);
  await card(view, 0).getByRole('button', { name: 'Replace cell' }).click();
  assert.equal(await view.text('unwritten'), '', 'the next try has not failed yet');
  await view.page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await card(view, 0).getByRole('button', { name: 'Copy' }).click();
  await view.id('toast').getByText('Copied').waitFor();
  assert.equal(await view.run('navigator.clipboard.readText()'), 'uno');
  await view.close();
});

test('failures are said in words, with another try', async () => {
  const view = await openQuick();
  const cases = [
    ['HTTP request failed', english['error.network']],
    ['内容过长ï¼请拆分后重试', english['error.contentTooLong']],
    ['积分不足ï¼请充值或升级套餐后继续翻译。', english['error.noCredits']],
    ['No translation from xx to es', english['error.languagePair']],
    ['Translation count mismatch', english['error.badAnswer']],
    ['Strange', `${english['quick.failed']} Strange`],
  ];
  for (const [error, words] of cases) {
    const { requestId } = await ask(view, 'one');
    await answer(view, { requestId, ok: false, error });
    assert.equal(await card(view, 0).locator('.problem').innerText(), words);
    assert.equal(await view.id('announcer').innerText(), words);
  }
  await view.id('target').selectOption('fr');
  await view.id('text').fill('two');
  await card(view, 0).getByRole('button', { name: 'Try again' }).click();
  const { text, targetLang } = await view.postedNow('quickTranslate');
  assert.deepEqual([text, targetLang], ['one', 'es']);
  await view.close();
});

test('a sign-in that has expired is dropped, unless somebody else has signed in since', async () => {
  const view = await openQuick();
  const error = '登录已失效，请重新登录';
  const first = await ask(view, 'one');
  await view.run(`localStorage.setItem('quorvantis.session', '{"token":"dev-grace","signedOut":false}')`);
  await view.run(`dispatchEvent(new StorageEvent('storage', { key: 'quorvantis.session' }))`);
  const second = await ask(view, 'two');
  await answer(view, { requestId: first.requestId, ok: false, error });
  assert.equal(await view.text('sign-in'), '');
  await answer(view, { requestId: second.requestId, ok: false, error });
  assert.deepEqual(await view.posted(), [{ action: 'clearAccessToken' }]);
  assert.ok(await view.id('start').isDisabled());
  await card(view, 0).getByRole('link', { name: 'Sign in' }).click();
  await view.page.waitForURL(/login\.html/);
  await view.close();
});

test("the selection's text is taken over until the user writes another one", async () => {
  const view = await panel.open('quicktranslate');
  await view.postedNow('requestSelectionPreview');
  const text = () => view.id('text').inputValue();
  await select(view, 'first');
  await select(view, 'second', '$B$2');
  assert.deepEqual([await text(), await view.text('selected')], ['second', 'B2 · texts: 1 · characters: 6']);
  assert.equal(await view.text('take'), '');
  await view.id('text').fill('mine');
  await view.id('text').blur();
  await select(view, 'third');
  assert.equal(await text(), 'mine');
  await view.id('take').click();
  assert.equal(await text(), 'third');
  await view.id('text').fill('');
  await select(view, 'fourth');
  assert.equal(await text(), '', 'not while the user writes');
  await view.run("onSelectionPreview({error:'读取 Excel 选区异常'})");
  assert.equal(await view.text('selected'), english['preview.unexpected']);
  await view.close();
});

test('the history is there after a reload, takes late answers, and is cleared', async () => {
  const view = await openQuick();
  const { requestId } = await ask(view, 'one');
  await view.goTo('account', 'host=excel&pane=xl1&uiLang=en');
  await view.goTo('quicktranslate', 'host=excel&pane=xl1&uiLang=en');
  await answer(view, { requestId, ok: true, translation: 'uno' });
  await view.say({ action: 'uiLangChanged', uiLang: 'de' });
  await view.page.waitForSelector('html[lang="de"]');
  assert.match(await card(view, 0).innerText(), /Englisch → Spanisch\s+one\s+uno\s+Kopieren/);
  await view.id('clear').click();
  assert.equal(await view.text('history'), '');
  await view.page.reload();
  await view.ready();
  assert.equal(await view.text('history'), '');
  await view.close(REFUSED);
});

test('a text that is never answered is given up', async () => {
  const view = await panel.open('quicktranslate');
  await view.page.clock.install();
  await view.page.reload();
  await view.ready();
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await ask(view, 'one');
  await view.page.clock.fastForward(179000);
  assert.match(await card(view, 0).innerText(), /Translating…/);
  await view.page.clock.fastForward(2000);
  assert.equal(await card(view, 0).locator('.problem').innerText(), english['quick.noAnswer']);
  await view.close();
});

test('a saved instruction is chosen by its name', async () => {
  const token = await panel.signIn('Quick');
  const put = (id, name, content) =>
    fetch(`${panel.origin}/v1/instructions/${id}`, {
      method: 'PUT',
      headers: { Authorization: `Bearer ${token}` },
      body: JSON.stringify({ name, content }),
    });
  for (const [id, name, content] of [
    ['a', 'Formal', 'Be formal.'],
    ['b', 'Short', 'Be brief.'],
  ]) {
    assert.equal((await put(id, name, content)).status, 200);
  }
  const view = await openQuick({ token });
  await view.id('instruction-fields').locator('summary').click();
  await view.id('saved').locator('option', { hasText: 'Short' }).waitFor({ state: 'attached' });
  await view.id('saved').selectOption({ label: 'Short' });
  await view.page.waitForFunction(() => document.getElementById('instruction').value === 'Be brief.');
  assert.equal((await ask(view, 'one')).instruction, 'Be brief.');
  await view.id('instruction').fill('Be brief and kind.');
  assert.equal(await view.id('saved').inputValue(), '', 'what was written over is not the saved one');
  await view.page.route('**/v1/instructions/*', (route) => route.abort());
  await view.id('saved').selectOption({ label: 'Formal' });
  await view.id('saved-failed').getByText(english['quick.savedFailed']).waitFor();
  assert.equal(await view.id('saved').inputValue(), '');
  assert.equal(await view.id('instruction').inputValue(), 'Be brief and kind.');
  await view.close(REFUSED);
});

test('everything on the page is reached by the keyboard, in order', async () => {
  const view = await openQuick();
  const { requestId } = await ask(view, 'one');
  await answer(view, { requestId, ok: true, translation: 'uno' });
  await view.id('source').focus();
  const names = [];
  for (let i = 0; i < 9; i++) {
    await view.page.keyboard.press('Tab');
    names.push(await view.run('(document.activeElement.id || document.activeElement.textContent).trim()'));
  }
  assert.deepEqual(names, [
    'swap',
    'target',
    'text',
    'Instruction',
    'start',
    'clear',
    'Copy',
    'Replace cell',
    'Insert below',
  ]);
  await view.close();
});
