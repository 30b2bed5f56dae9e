/** Forms in the chat, in a real browser, with a scripted language model and the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, afterEach, before, test } from 'node:test';

import english from '../panel/assets/js/languages/en.js';
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

const field = (row, label, currentValue = '') => ({
  id: `R${row}C2`,
  kind: currentValue ? 'underline_placeholder' : 'empty',
  label,
  placeholderText: currentValue,
  currentValue,
  row,
  col: 2,
  address: `B${row}`,
  context: { left: label, above: '', rowText: label },
});
const FORM = [field(1, 'Name'), field(2, 'Town', '____'), field(3, 'Age')];
const scanOf = (fields) => ({ fields, usedRange: { rows: 3, cols: 2, row0: 1, col0: 1 } });
const fill = (row, value, confidence = 0.9) => ({ row, col: 2, action: 'fill', value, confidence });
const FILLS = [fill(1, 'Ann'), fill(2, 'Dresden'), fill(3, '41', 0.2)];
const PROPOSE = [{ call: 'proposeFills', arguments: { fills: FILLS } }];
const DONE = [{ say: 'Done.' }];

async function openChat(...answers) {
  model.script(...answers);
  const view = await panel.open('chat');
  await view.posted();
  return view;
}

const button = (view, name) => view.page.getByRole('button', { name, exact: true });
const box = (view, name) => view.page.getByRole('checkbox', { name });
const ended = (view, state = 'done') => view.page.waitForSelector(`#turns > li:last-child[data-state="${state}"]`);

async function answerContext(view, workbookKey = 'C:\\Form.xlsx') {
  await view.answer(await view.postedNow('excelGetWriteContext'), { workbookKey, sheetName: 'Form', row: 1, col: 1 });
}

async function answerScan(view, fields, sheetName = 'Form') {
  const scan = await view.postedNow('autofillScan');
  assert.equal(scan.sheetName, sheetName);
  await view.answer(scan, scanOf(fields));
}

/** Presses the button, and answers what the page then asks of the add-in. */
async function startForm(view, fields = FORM) {
  await button(view, 'Fill in form').click();
  await answerContext(view);
  await answerScan(view, fields);
}

async function answerApply(view, statuses) {
  const { fills, sheetName, ...rest } = await view.postedNow('autofillApply');
  assert.equal(sheetName, 'Form');
  const results = fills.map(({ row, col }, index) => ({ row, col, status: statuses[index] }));
  await view.answer(rest, { results, applied: statuses.filter((status) => status === 'applied').length });
  return fills;
}

const resultTold = () => JSON.parse(model.requests.at(-1).body.messages.at(-1).content);

test('the model is given the fields, the user chooses from its proposals, and Undo puts the cells back', async () => {
  const view = await openChat(PROPOSE, DONE);
  await view.id('message').fill('I am Ann, 41, from Dresden');
  await startForm(view);
  await view.page.locator('.question').getByText(english['chat.askFill']).waitFor();
  const [, question, asked, scan] = model.requests[0].body.messages;
  assert.equal(question.content, 'Fill in the form on this sheet.\n\nI am Ann, 41, from Dresden');
  assert.equal(asked.tool_calls[0].function.name, 'autofillScan');
  assert.deepEqual(JSON.parse(scan.content).fields.map(({ address, label }) => [address, label]), [
    ['B1', 'Name'],
    ['B2', 'Town'],
    ['B3', 'Age'],
  ]);
  const rows = await view.page.locator('.proposals li').allInnerTexts();
  assert.deepEqual(rows.map((text) => text.replaceAll(/\s+/g, ' ')), [
    'Name B1 90% sure (empty) → Ann',
    'Town B2 90% sure ____ → Dresden',
    'Age B3 20% sure (empty) → 41',
  ]);
  const checked = () => view.page.locator('.proposals li input').evaluateAll((all) => all.map((one) => one.checked));
  assert.deepEqual(await checked(), [true, true, false], 'what the model is not sure of is not chosen');
  await box(view, 'All').check();
  assert.deepEqual(await checked(), [true, true, true]);
  await box(view, 'All').uncheck();
  assert.ok(await button(view, 'Fill in').isDisabled(), 'nothing is chosen');
  await box(view, 'Name').check();
  await box(view, 'Age').check();
  assert.deepEqual(await view.posted(), [], 'nothing is written before the user says so');
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, FORM);
  assert.deepEqual(await answerApply(view, ['applied', 'applied']), [FILLS[0], FILLS[2]]);
  await ended(view);
  const { results, ...told } = resultTold();
  assert.equal(results.length, 2);
  assert.deepEqual(told, { applied: 2, notChosen: ['B2'], changedMeanwhile: [], noFields: [] });
  await view.page.getByText('Cells filled in: 2').waitFor();
  await button(view, 'Undo').click();
  await view.answer(await view.postedNow('autofillUndo'), { restored: 1 });
  await view.page.getByText(english['chat.undoFailed']).first().waitFor();
  await button(view, 'Undo').click();
  await view.answer(await view.postedNow('autofillUndo'), { restored: 1 });
  await view.page.locator('#turns').getByText('Undone. Cells put back: 2').waitFor();
  assert.equal(await button(view, 'Undo').count(), 0);
  await view.close();
});

test('what has changed since, or is not taken, is said', async () => {
  const view = await openChat(PROPOSE, DONE);
  await startForm(view);
  await box(view, 'Age').check();
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, [FORM[0], FORM[2], field(2, 'Street', '____')]);
  assert.deepEqual(await answerApply(view, ['applied', 'skipped']), [FILLS[0], FILLS[2]]);
  await ended(view);
  await view.page.getByText(/Not filled in.*: B2, B3$/).waitFor();
  await view.page.getByText('Cells filled in: 1').waitFor();
  assert.deepEqual(resultTold().changedMeanwhile, ['B2']);
  await view.close();
});

test('a no is told to the model, and nothing is written', async () => {
  const view = await openChat(PROPOSE, DONE);
  await startForm(view);
  await button(view, 'Do not allow').click();
  await ended(view);
  assert.deepEqual(resultTold(), { error: 'the user said no' });
  assert.deepEqual(await view.posted(), []);
  await view.close();
});

test('without fields, or a sheet that can be searched, the model is not asked', async () => {
  const view = await openChat();
  await startForm(view, []);
  await view.page.getByText(english['chat.failNoFields']).first().waitFor();
  await button(view, 'Try again').click();
  await view.answer(await view.postedNow('excelGetWriteContext'), { sheetName: 'Large' });
  const scan = await view.postedNow('autofillScan');
  await view.answer(scan, { fields: [], scanUnavailable: true, scanError: 'too large' });
  await ended(view, 'failed');
  await view.page.locator('.foot').getByText(english['chat.failScan']).waitFor();
  await button(view, 'Try again').click();
  await view.answer(await view.postedNow('excelGetWriteContext'), { error: '未连接到工作表' });
  await ended(view, 'failed');
  assert.deepEqual(model.requests, []);
  await view.close();
});

test('proposals for cells that are no fields never reach the user', async () => {
  const view = await openChat([{ call: 'proposeFills', arguments: { fills: [fill(9, 'x')] } }], DONE);
  await view.id('message').fill('Fill in what you like');
  await view.id('message').press('Enter');
  await ended(view);
  assert.match(resultTold().error, /autofillScan first/);
  model.script([{ call: 'proposeFills', arguments: { fills: [fill(9, 'x')] } }], DONE);
  await startForm(view);
  await ended(view);
  assert.match(resultTold().error, /none of this/);
  await view.close();
});

test('Stop while cells are written leaves a way to put them back', async () => {
  const view = await openChat(PROPOSE);
  await startForm(view);
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, FORM);
  await view.postedNow('autofillApply');
  await view.id('stop').click();
  await ended(view, 'stopped');
  await button(view, 'Undo').click();
  await view.answer(await view.postedNow('autofillUndo'), { restored: 1 });
  await view.page.locator('#turns').getByText('Undone. Cells put back: 1').waitFor();
  await view.close();
});

test('nothing is written into another workbook than was looked at', async () => {
  const view = await openChat(PROPOSE, DONE);
  await startForm(view);
  assert.doesNotMatch(JSON.stringify(model.requests[0].body), /Form\.xlsx/, 'where it lies is nobody’s business');
  await button(view, 'Fill in').click();
  await answerContext(view, 'C:\\Other.xlsx');
  await ended(view);
  assert.match(resultTold().error, /another workbook/);
  assert.deepEqual(await view.posted(), []);
  await view.close();
});

test('a form that was not filled in leaves the way back to the one before', async () => {
  const view = await openChat(PROPOSE, DONE);
  await startForm(view);
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, FORM);
  await answerApply(view, ['applied', 'applied']);
  await ended(view);
  model.script(PROPOSE, DONE);
  await startForm(view);
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, FORM);
  await view.answer(await view.postedNow('autofillApply'), { error: 'busy' });
  await ended(view);
  await button(view, 'Undo').click();
  await view.answer(await view.postedNow('autofillUndo'), { restored: 2 });
  await view.page.locator('#turns').getByText('Undone. Cells put back: 2').waitFor();
  await view.close();
});

test('what the model says nothing about is shown without a percentage, and not chosen', async () => {
  const { confidence: _, ...unsaid } = fill(1, 41);
  const view = await openChat([{ call: 'proposeFills', arguments: { fills: [unsaid] } }], DONE);
  await startForm(view);
  const row = view.page.locator('.proposals li');
  assert.equal((await row.innerText()).replaceAll(/\s+/g, ' '), 'Name B1 (empty) → 41');
  assert.ok(await button(view, 'Fill in').isDisabled());
  await box(view, 'Name').check();
  await button(view, 'Fill in').click();
  await answerContext(view);
  await answerScan(view, FORM);
  assert.deepEqual(await answerApply(view, ['applied']), [{ ...unsaid }], 'a number stays one');
  await ended(view);
  await view.close();
});
