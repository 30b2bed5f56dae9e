/** The chat in a real browser, with a scripted language model and the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, afterEach, before, test } from 'node:test';

import english from '../panel/assets/js/languages/en.js';
import { TOOL_CATALOG } from '../panel/assets/js/tool_actions.js';
import { ScriptedModel } from '../scripted_model.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let model;
let panel;
before(async () => {
  model = await ScriptedModel.start();
  panel = await PanelBrowser.start({ languageModel: { baseUrl: model.baseUrl, model: 'm' } });
});
after(async () => {
  await panel.close();
  await model.close();
});
afterEach(() => {
  const { waiting } = model;
  model.forget();
  assert.equal(waiting, 0, 'the model was asked as often as expected');
});

/** What the browser itself says of an answer that is a refusal, or that breaks off. */
const REFUSED = /^Failed to load resource/;

const say = (text) => [{ say: text }];
const call = (name, given = {}) => ({ call: name, arguments: given });
const CONFIRMED = { confirm: true };
const WRITE = { range: 'A1:B1', values: [['x', 1]] };

async function openChat(...answers) {
  model.script(...answers);
  const view = await panel.open('chat');
  await view.posted();
  return view;
}

async function ask(view, text) {
  await view.id('message').fill(text);
  await view.id('message').press('Enter');
}

/** Waits until the last turn has come to its end, in the given way. */
const ended = (view, state = 'done') => view.page.waitForSelector(`#turns > li:last-child[data-state="${state}"]`);
const turn = (view, number = 0) => view.page.locator('#turns > li').nth(number);
const button = (view, name) => view.page.getByRole('button', { name, exact: true });
const told = (request) => request.body.messages.filter(({ role }) => role !== 'system');

test('a message is answered word by word, and the conversation goes on', async () => {
  const view = await openChat([{ say: 'Good' }, { stall: 300 }, { say: ' **morning**' }], say('Yes.'));
  await ask(view, 'Hello');
  await turn(view).getByText('Good', { exact: true }).waitFor();
  assert.ok(await view.id('stop').isVisible());
  await ended(view);
  assert.equal(await turn(view).locator('.markdown strong').innerText(), 'morning');
  assert.equal(await view.id('announcer').innerText(), 'Good **morning**');
  await ask(view, 'Sure?');
  await turn(view, 1).getByText('Yes.').waitFor();
  await ended(view);
  assert.deepEqual(told(model.requests[1]), [
    { role: 'user', content: 'Hello' },
    { role: 'assistant', content: 'Good **morning**' },
    { role: 'user', content: 'Sure?' },
  ]);
  assert.deepEqual(model.requests[0].body.tools, TOOL_CATALOG);
  assert.deepEqual(await view.posted(), [], 'nothing was done in the workbook');
  await view.close();
});

test('a tool is run with exactly its arguments, and its result goes to the model', async () => {
  const view = await openChat([{ say: 'I look.' }, call('excelReadRange', { range: 'A1:B2' })], say('Done.'));
  await ask(view, 'Read');
  const { requestId, ...message } = await view.postedNow('excelReadRange');
  assert.deepEqual(message, { action: 'excelReadRange', range: 'A1:B2' });
  const cells = { cells: [{ row: 1, col: 1, value: 'x' }] };
  await view.answer({ requestId: 'excelReadRange-of-another-page' }, { cells: [] });
  await view.answer({ requestId }, cells);
  await ended(view);
  const [, asked, result] = told(model.requests[1]);
  assert.equal(asked.tool_calls[0].function.name, 'excelReadRange');
  assert.deepEqual([result.role, result.tool_call_id], ['tool', asked.tool_calls[0].id]);
  assert.deepEqual(JSON.parse(result.content), cells);
  assert.match(await turn(view).locator('summary').innerText(), /Reads cells\s+A1:B2\s+Done/);
  assert.ok(!(await turn(view).locator('.call-body').isVisible()));
  await turn(view).locator('summary').click();
  const body = await turn(view).locator('.call-body').innerText();
  assert.match(body, /excelReadRange[^]*"range": "A1:B2"[^]*"value": "x"/);
  await view.close();
});

test('one undo marker a message is pushed ahead of its first cell, and Undo takes the message back', async () => {
  const view = await openChat([call('excelWriteRange', WRITE), call('excelWriteRange', WRITE)], say('Written.'));
  await ask(view, 'Write');
  await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth: 1 });
  for (const applied of [2, 0]) {
    const posted = await view.postedNow('excelWriteRange');
    assert.deepEqual(posted.values, WRITE.values);
    assert.ok(!(await button(view, 'Undo').isVisible()));
    await view.answer(posted, { results: [], applied });
  }
  await ended(view);
  await button(view, 'Undo').click();
  await view.answer(await view.postedNow('excelUndoMessage'), { restored: 2, depth: 0 });
  await turn(view).getByText('Undone. Cells put back: 2').waitFor();
  assert.ok(!(await button(view, 'Undo').isVisible()));
  model.script(say('Good.'));
  await ask(view, 'Thanks');
  await ended(view);
  assert.match(told(model.requests[2]).at(-1).content, /undone[^]*Thanks$/);
  assert.deepEqual(await view.posted(), [], 'a message that writes nothing has no marker');
  await view.close();
});

test('messages are undone newest first, and what the host refuses is tried again', async () => {
  const write = [call('excelWriteRange', WRITE)];
  const view = await openChat(write, say('One.'), write, say('Two.'));
  for (const depth of [1, 2]) {
    await ask(view, 'Write');
    await view.answer(await view.postedNow('excelPushUndoMarker'), { ok: true, depth });
    await view.answer(await view.postedNow('excelWriteRange'), { results: [], applied: 2 });
    await ended(view);
  }
  const undo = async (...answers) => {
    await button(view, 'Undo').click();
    for (const answer of answers) await view.answer(await view.postedNow('excelUndoMessage'), answer);
  };
  assert.equal(await turn(view, 0).getByRole('button').count(), 0);
  await undo({ restored: 1, depth: 2 }, { restored: 0, depth: 2 });
  await turn(view, 1).getByText(english['chat.undoFailed']).waitFor();
  await undo({ restored: 1, depth: 1 });
  await turn(view, 1).getByText('Undone. Cells put back: 2').waitFor();
  await undo({ restored: 2, depth: 0 });
  await turn(view, 0).getByText('Undone. Cells put back: 2').waitFor();
  await view.close();
});

test('a write that cannot be made undoable is not made', async () => {
  const view = await openChat([call('excelWriteRange', WRITE)], say('Sorry.'));
  await ask(view, 'Write');
  await view.answer(await view.postedNow('excelPushUndoMarker'), { error: '未连接到 Excel' });
  await ended(view);
  assert.deepEqual(await view.posted(), []);
  assert.deepEqual(JSON.parse(told(model.requests[1]).at(-1).content), { error: '未连接到 Excel' });
  assert.match(await turn(view).locator('summary').innerText(), /Failed/);
  await view.close();
});

test('what deletes waits for a yes, and a no is told to the model', async () => {
  const cases = [
    ['excelDeleteSheet', { name: 'Old' }, 'Delete the sheet “Old”?', {}],
    ['excelDeleteRowsCols', { mode: 'rows', indices: [2, 3] }, 'Delete rows 2, 3?', {}],
    ['excelRemoveDuplicates', { range: 'A1:C9' }, 'Remove the rows in A1:C9 that repeat earlier ones?', CONFIRMED],
  ];
  for (const [name, given, words, added] of cases) {
    const view = await openChat([call(name, given)], say('No, then.'), [call(name, given)], say('Gone.'));
    await ask(view, 'Delete');
    await turn(view).getByText(words).waitFor();
    assert.equal(await view.id('announcer').innerText(), words);
    assert.equal(await view.run('document.activeElement.textContent'), english['chat.refuse']);
    await button(view, 'Do not allow').click();
    await ended(view);
    assert.deepEqual(await view.posted(), [], 'nothing was done');
    assert.match(told(model.requests.at(-1)).at(-1).content, /user said no/);
    await ask(view, 'Do it');
    await button(view, 'Allow').click();
    const { requestId, ...message } = await view.postedNow(name);
    assert.deepEqual(message, { action: name, ...given, ...added });
    await view.answer({ requestId }, { ok: true });
    await ended(view);
    await view.close();
  }
});

test('calls that no tool fits are answered to the model and never posted', async () => {
  const cases = [
    [call('excelUndoMessage'), /no tool/],
    [call('toString'), /no tool/],
    [call('excelReadRange', { range: 'A1', action: 'cancel' }), /takes no argument action/],
    [call('excelRemoveDuplicates', { range: 'A1:A2', confirm: true }), /takes no argument confirm/],
    [call('excelReadRange'), /needs the argument range/],
    [call('excelReadRange', '[1]'), /no JSON object/],
    [call('excelReadRange', '{"range":'), /no JSON object/],
  ];
  const view = await openChat(
    cases.map(([step]) => step),
    say('Sorry.'),
  );
  await ask(view, 'Go');
  await ended(view);
  const results = told(model.requests[1]).filter(({ role }) => role === 'tool');
  cases.forEach(([, words], index) => assert.match(JSON.parse(results[index].content).error, words));
  assert.deepEqual(await view.posted(), []);
  await view.close();
});

test('a picture is shown to the user, and the model is told its size', async () => {
  const view = await openChat([call('excelScreenshotRange', { range: 'A1:B2' })], say('There.'));
  await ask(view, 'Show');
  const data = 'iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==';
  const answer = { ok: true, mediaType: 'image/png', width: 1, height: 1, data };
  await view.answer(await view.postedNow('excelScreenshotRange'), answer);
  await ended(view);
  await view.page.waitForFunction(() => document.querySelector('canvas')?.width === 1);
  const { data: sent, width } = JSON.parse(told(model.requests[1]).at(-1).content);
  assert.deepEqual([sent, width], [undefined, 1]);
  await view.close();
});

test('Stop ends the answer, the call and the question', async () => {
  const cases = [
    [[{ say: 'One' }, { stall: true }], () => {}],
    [[call('excelReadRange', { range: 'A1' })], (view) => view.postedNow('excelReadRange')],
    [[call('excelDeleteSheet', { name: 'Old' })], (view) => button(view, 'Allow').waitFor()],
  ];
  for (const [steps, until] of cases) {
    const view = await openChat(steps);
    await ask(view, 'Go');
    await until(view);
    await view.id('stop').click();
    await ended(view, 'stopped');
    assert.ok(!(await button(view, 'Allow').isVisible()));
    model.script(say('Hello again.'));
    await ask(view, 'Go on');
    await ended(view);
    const messages = told(model.requests.at(-1));
    const calls = messages.flatMap(({ tool_calls: made }) => made ?? []);
    assert.equal(messages.filter(({ role }) => role === 'tool').length, calls.length, 'each call has a result');
    await view.close();
  }
});

test('failures are said in words, and the next try goes on where it stopped', async () => {
  const cases = [
    [[{ fail: 400, message: 'bad thing' }], `${english['chat.failRefused']} bad thing`],
    [[{ fail: 401 }], `${english['chat.failKey']} refused with 401`],
    [[{ fail: 429 }], `${english['chat.failBusy']} refused with 429`],
    [[{ fail: 500 }], `${english['error.service']} refused with 500`],
    [[{ say: 'Half' }, { stall: 200 }, { die: true }], english['chat.failBroken']],
  ];
  for (const [steps, words] of cases) {
    const view = await openChat([call('excelListSheets')], steps, say('At last.'));
    await ask(view, 'Go');
    await view.answer(await view.postedNow('excelListSheets'), { sheets: [] });
    await ended(view, 'failed');
    const foot = (await turn(view).locator('.foot').innerText()).replace(/\s+/g, ' ');
    assert.equal(foot, `${words} Try again`);
    assert.equal(await view.text('sign-in'), '');
    await button(view, 'Try again').click();
    await ended(view);
    assert.match(await turn(view).innerText(), /At last\.$/);
    assert.deepEqual(
      told(model.requests.at(-1)).map(({ role }) => role),
      ['user', 'assistant', 'tool'],
      'what broke off is forgotten',
    );
    await view.close(REFUSED);
  }
  const view = await openChat([{ flood: 300000 }]);
  await ask(view, 'Go');
  await ended(view, 'failed');
  assert.match(await turn(view).innerText(), new RegExp(english['chat.failAnswerLong']));
  await view.close();
});

test('without a language model the page says how to configure one', async () => {
  const bare = await PanelBrowser.start();
  const view = await bare.open('chat');
  await view.id('no-model').getByText('QV_LLM_BASE_URL', { exact: true }).waitFor();
  await ask(view, 'Hello');
  await ended(view, 'failed');
  assert.match(await turn(view).innerText(), /No language model is configured/);
  await view.close(REFUSED);
  await bare.close();
});

test('nothing is sent by who is not signed in, or without an add-in', async () => {
  for (const [options, reason] of [
    [{ token: null }, 'reason.signIn'],
    [{ hosted: false }, 'reason.host'],
  ]) {
    const view = await panel.open('chat', options);
    await ask(view, 'Hello');
    assert.equal(await view.text('reason'), english[reason]);
    assert.equal(await turn(view).count(), 0);
    assert.equal(await view.id('message').inputValue(), 'Hello');
    await view.close();
  }
  const expired = await panel.signIn('Expired');
  await fetch(`${panel.origin}/v1/auth/sign-out`, { method: 'POST', headers: { Authorization: `Bearer ${expired}` } });
  const view = await panel.open('chat', { token: expired });
  await ask(view, 'Hello');
  await ended(view, 'failed');
  assert.ok(await view.id('sign-in').isVisible());
  await turn(view).getByRole('link', { name: 'Sign in' }).waitFor();
  await view.close(REFUSED);
});

test('what a model writes stays text', async () => {
  const line = '<img src=x onerror=alert(1)> **<b>bold</b>** [go](javascript:alert(1)) `<script>`';
  const hostile = `${line}\n\n# <i>H</i>\n\n| <u>a</u> |\n|---|\n| 1 |`;
  const view = await openChat(say(hostile));
  await ask(view, '<b>Hello</b>');
  await ended(view);
  const markdown = turn(view).locator('.markdown');
  assert.equal(await markdown.locator('img, b, i, u, script, a').count(), 0);
  assert.equal(await markdown.locator('strong').innerText(), '<b>bold</b>');
  assert.equal(await markdown.locator('th').innerText(), '<u>a</u>');
  assert.match(await markdown.innerText(), /<img src=x onerror=alert\(1\)>[^]*go \(javascript:alert\(1\)\)/);
  assert.equal(await turn(view).locator('.asked').innerText(), '<b>Hello</b>');
  await view.close();
});

test('the conversation outlives a reload and another page, and goes over to the workspace', async () => {
  const view = await openChat(say('Kept.'));
  await ask(view, 'Hello');
  await ended(view);
  await view.goTo('account', 'host=excel&pane=xl1&uiLang=en');
  await view.goTo('chat', 'host=excel&pane=xl1&uiLang=de');
  assert.match(await turn(view).innerText(), /Hello\s+Assistent\s+Kept\./);
  const state = await view.run('quorvantisExportState()');
  const workspace = await panel.open('chat', { query: 'surface=workspace' });
  await workspace.page.evaluate((value) => window.quorvantisImportState(value), state);
  assert.match(await turn(workspace).innerText(), /Kept\./);
  await workspace.id('new').click();
  await workspace.id('dialog-yes').click();
  await turn(workspace).waitFor({ state: 'detached' });
  await workspace.close();
  await view.close();
});

test('Enter sends unless it ends a character or begins a line, and examples are taken over', async () => {
  const view = await openChat(say('Yes.'));
  const message = view.id('message');
  await view.id('example1').click();
  assert.equal(await message.inputValue(), english['chat.example1']);
  await message.press('Shift+Enter');
  await message.dispatchEvent('keydown', { key: 'Enter', isComposing: true });
  assert.equal(await turn(view).count(), 0);
  await message.press('Enter');
  await ended(view);
  assert.equal(await message.inputValue(), '');
  await view.close();
});
