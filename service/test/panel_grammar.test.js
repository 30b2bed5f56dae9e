/** The grammar check in a real browser, with a scripted language model and the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, afterEach, before, test } from 'node:test';

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
afterEach(() => model.forget());

/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;
const TEXTS = ['She go home.', 'All is well.', 'He have a dog.'];
const FIXES = [
  { id: 0, text: 'She goes home.', reason: 'agreement' },
  { id: 2, text: 'He has a dog.', reason: 'agreement' },
];

/** A sheet of one column, A, which the page reads and writes. */
class Sheet {
  constructor(view, values) {
    Object.assign(this, { view, values: [...values], markers: [], log: [] });
  }

  /** Answers a message of the page, whichever comes next; gives its action. */
  async answer(action) {
    const message = await this.view.postedNow(action);
    this.log.push(action);
    await this.view.answer(message, this[action](message));
    return message;
  }

  excelGetWriteContext = () => ({
    workbookKey: 'k',
    sheetName: 'Data',
    row: 1,
    col: 1,
    rangeAddress: `$A$1:$A$${this.values.length}`,
  });

  excelReadRange = () => ({ cells: this.values.map((value, i) => ({ row: i + 1, col: 1, value })) });

  excelPushUndoMarker = () => {
    this.markers.push([...this.values]);
    return { ok: true, depth: this.markers.length };
  };

  excelWriteRange = ({ range, values }) => {
    this.values[Number(range.slice(1)) - 1] = values[0][0];
    return { results: [{ status: 'applied' }], applied: 1 };
  };

  excelUndoMessage = () => {
    this.values = this.markers.pop();
    return { restored: 1, depth: this.markers.length };
  };

  async accept(count) {
    await this.answer('excelReadRange');
    await this.answer('excelPushUndoMarker');
    for (let i = 0; i < count; i++) await this.answer('excelWriteRange');
    await this.answer('excelReadRange');
  }
}

const say = (fixes) => [{ say: JSON.stringify(fixes) }];
const one = (view, cell) => view.page.locator(`#suggestions li[data-cell="${cell}"]`);
const button = (view, name) => view.page.getByRole('button', { name, exact: true });

async function check(fixes = FIXES, values = TEXTS) {
  model.script(say(fixes));
  const view = await panel.open('grammar');
  await view.posted();
  const sheet = new Sheet(view, values);
  await view.id('check').click();
  await sheet.answer('excelGetWriteContext');
  await sheet.answer('excelReadRange');
  await view.id('check').waitFor();
  return { view, sheet };
}

test('suggestions show what changes, and one is accepted, another dismissed, and the first taken back', async () => {
  const { view, sheet } = await check();
  assert.equal(await view.text('outcome'), 'Suggestions found: 2');
  assert.equal(await view.text('where'), 'A1:A3 on “Data”');
  assert.equal(await one(view, 'A1').locator('del').innerText(), 'go');
  assert.equal(await one(view, 'A1').locator('ins').innerText(), 'goes');
  assert.match(await one(view, 'A1').innerText(), /agreement/);
  const [rules, asked] = model.requests[0].body.messages;
  assert.match(rules.content, /in English/);
  assert.deepEqual(JSON.parse(asked.content).map(({ text }) => text), TEXTS);
  assert.equal(model.requests[0].body.tools, undefined);

  await button(view, 'Accept A1').click();
  await sheet.accept(1);
  await one(view, 'A1').getByText('Accepted').waitFor();
  assert.deepEqual(sheet.values, ['She goes home.', TEXTS[1], TEXTS[2]]);
  await button(view, 'Dismiss A3').click();
  assert.match(await one(view, 'A3').innerText(), /Dismissed/);
  await button(view, 'Undo').click();
  await sheet.answer('excelUndoMessage');
  await button(view, 'Accept A1').waitFor();
  assert.deepEqual(sheet.values, TEXTS);
  await view.close();
});

test('all are accepted at once under one marker', async () => {
  const { view, sheet } = await check();
  await view.id('accept-all').click();
  await sheet.accept(2);
  await view.id('outcome').getByText('Cells corrected: 2').waitFor();
  assert.deepEqual(sheet.values, ['She goes home.', TEXTS[1], 'He has a dog.']);
  assert.equal(sheet.log.filter((action) => action === 'excelPushUndoMarker').length, 1);
  await button(view, 'Undo').click();
  await sheet.answer('excelUndoMessage');
  await view.id('outcome').getByText('Undone').waitFor();
  assert.deepEqual(sheet.values, TEXTS);
  await view.close();
});

test('a cell that was changed meanwhile is left alone, and one that refuses is told of', async () => {
  const { view, sheet } = await check();
  sheet.values[0] = 'Something else';
  sheet.excelWriteRange = () => ({ results: [{ status: 'skipped' }], applied: 0 });
  await view.id('accept-all').click();
  await sheet.answer('excelReadRange');
  await sheet.answer('excelPushUndoMarker');
  await sheet.answer('excelWriteRange');
  await sheet.answer('excelUndoMessage');
  await sheet.answer('excelReadRange');
  await one(view, 'A1').getByText('changed meanwhile').waitFor();
  await one(view, 'A3').getByText('could not be written').waitFor();
  assert.equal(sheet.values[0], 'Something else');
  assert.ok(!(await view.id('undo').isVisible()));
  await view.close();
});

test('a correction that looks like a formula or a number stays a text', async () => {
  const { view, sheet } = await check([{ id: 0, text: '=goes' }], ['=go?', 'x']);
  await button(view, 'Accept A1').click();
  await sheet.answer('excelReadRange');
  await sheet.answer('excelPushUndoMarker');
  const { values } = await sheet.answer('excelWriteRange');
  assert.deepEqual(values, [["'=goes"]]);
  await view.close();
});

test('nothing to check, nothing found, and what cannot be read are told apart', async () => {
  const { view, sheet } = await check([], TEXTS);
  assert.equal(await view.text('outcome'), 'No mistakes were found.');
  sheet.values = ['12', '13'];
  await view.id('check').click();
  await sheet.answer('excelGetWriteContext');
  await sheet.answer('excelReadRange');
  await view.id('outcome').getByText('holds no texts').waitFor();
  for (const [rangeAddress, words] of [['$A:$A', 'one block'], ['$A$1,$C$3', 'one block']]) {
    await view.id('check').click();
    await view.answer(await view.postedNow('excelGetWriteContext'), { ...sheet.excelGetWriteContext(), rangeAddress });
    await view.id('problem').getByText(words).waitFor();
  }
  await view.id('check').click();
  await sheet.answer('excelGetWriteContext');
  await view.answer(await view.postedNow('excelReadRange'), { error: '读取范围过大（>5000 单元格），请缩小' });
  await view.id('problem').getByText('5000 cells').waitFor();
  await view.close();
});

test('a model that fails, or answers something else, is told of, and a long check can be stopped', async () => {
  const { view, sheet } = await check([], TEXTS);
  for (const [steps, words] of [
    [[{ fail: 429, message: 'too many' }], /no more requests for now.*too many/],
    [[{ say: 'All is well.' }], /broke off/],
  ]) {
    model.script(steps);
    await view.id('check').click();
    await sheet.answer('excelGetWriteContext');
    await sheet.answer('excelReadRange');
    await view.id('problem').getByText(words).waitFor();
  }
  model.script([{ stall: true }]);
  await view.id('check').click();
  await sheet.answer('excelGetWriteContext');
  await sheet.answer('excelReadRange');
  await view.id('stop').click();
  await view.id('check').waitFor();
  assert.deepEqual([await view.text('problem'), await view.text('outcome')], ['', '']);
  await view.close(REFUSED);
});

test('without a model the page says how to configure one, and in every case who is to sign in', async () => {
  const bare = await PanelBrowser.start();
  const view = await bare.open('grammar');
  await view.id('no-model').waitFor();
  for (const name of ['QV_LLM_BASE_URL', 'QV_LLM_MODEL', 'QV_LLM_API_KEY']) {
    assert.match(await view.text('no-model'), new RegExp(name));
  }
  await view.close(REFUSED);
  await bare.close();
  const stranger = await panel.open('grammar', { token: null });
  assert.equal(await stranger.text('reason'), 'Sign in first.');
  assert.ok(await stranger.id('check').isDisabled());
  await stranger.close();
});
