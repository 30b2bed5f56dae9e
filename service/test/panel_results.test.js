/** What the translation page does with a run's texts and cells, and what it says of the selection. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import english from '../panel/assets/js/languages/en.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

/** A run over some texts, each seventh of them skipped; it goes on. */
const runOf = (count, runId = 1) => `
  onRunStarted({runId:${runId}});
  onReady({total:${count},translatable:${count},runId:${runId}});
  for (let i = 0; i < ${count}; i++)
    onProgress({runId:${runId},wordIndex:i,total:${count},translatable:${count},skipped:i % 7 === 6,
      original:'Source ' + i,translated:i % 7 === 6 ? 'Source ' + i : 'Ziel ' + i});`;
const COMPLETE = 'onComplete({runId:1,total:9,elapsed:1000,allSheets:false});';

/** A page that shows the list of a run, with nothing posted yet. */
async function openList(count, end = COMPLETE) {
  const view = await panel.open('translate');
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await view.run(runOf(count) + end);
  await view.id('units').locator('summary').click();
  await view.page.locator('#unit-rows li').first().waitFor();
  await view.posted();
  return view;
}

const rows = (view) => view.page.locator('#unit-rows li').evaluateAll((items) => items.map((item) => item.value));

/** Waits until the list shows a range. */
const range = (view, text) => view.id('units-range').getByText(text, { exact: true }).waitFor();

test('each text of a run is put back, or in again, by its own number', async () => {
  const view = await openList(8);
  const row = (number) => view.page.locator(`#unit-rows li[value="${number}"]`);
  assert.deepEqual((await row(3).innerText()).split(/\n+/), ['Source 2', 'Ziel 2', 'Apply', 'Restore']);
  assert.deepEqual((await row(7).innerText()).split(/\n+/), ['Source 6', 'Skipped']);
  await row(3).getByRole('button', { name: 'Restore' }).click();
  await row(8).getByRole('button', { name: 'Apply' }).click();
  assert.deepEqual(await view.posted(), [
    { action: 'restoreParagraph', index: 2 },
    { action: 'applyParagraph', index: 7 },
  ]);
  await view.close();
});

test('the list is searched, filtered and turned, and stays where it is while texts arrive', async () => {
  const view = await openList(45, '');
  await range(view, '1–20 of 45');
  assert.equal((await rows(view)).length, 20);
  await view.id('units-next').click();
  await view.run(
    "onProgress({runId:1,wordIndex:45,total:46,translatable:46,skipped:false,original:'New',translated:'Neu'})",
  );
  await range(view, '21–40 of 46');
  await view.id('units-filter').fill('source');
  await range(view, '1–20 of 45');
  await view.id('units-filter').fill('NEU ');
  await range(view, '1–1 of 1');
  assert.deepEqual(await rows(view), [46]);
  await view.id('units-filter').fill('');
  await view.id('units-kind').selectOption('skipped');
  await range(view, '1–6 of 6');
  assert.deepEqual(await rows(view), [7, 14, 21, 28, 35, 42]);
  await view.id('units-filter').fill('absent');
  await view.id('units-range').getByText(english['units.none']).waitFor();
  await view.close();
});

test('ten thousand texts arrive and are searched without holding the page up', async () => {
  const view = await openList(12000);
  await range(view, '1–20 of 12,000');
  assert.ok((await view.page.locator('#unit-rows *').count()) < 200, 'only what is in sight is there');
  await view.id('units-filter').fill('ziel 11999');
  await range(view, '1–1 of 1');
  await view.close();
});

test('the list is turned by keys, and a button keeps the focus when the list is drawn again', async () => {
  const view = await openList(45);
  await view.page.locator('#unit-rows button').nth(1).focus();
  await view.say({ action: 'uiLangChanged', uiLang: 'de' });
  await view.page.waitForSelector('html[lang="de"]');
  assert.equal(await view.run('document.activeElement.textContent'), 'Zurücksetzen');
  await view.page.keyboard.press('PageDown');
  assert.equal(await view.run("document.activeElement.closest('li').value"), 22);
  await view.page.keyboard.press('Enter');
  assert.deepEqual(await view.posted(), [{ action: 'applyParagraph', index: 21 }]);
  await view.close();
});

test('while a run goes on nothing of it can be changed, and the page says so', async () => {
  const view = await openList(8, '');
  assert.equal(await view.text('results-reason'), english['results.running']);
  const buttons = view.page.locator('#results .sheet-change, #unit-rows button');
  assert.equal(await buttons.count(), 5 + 2 * 7);
  for (const button of await buttons.all()) {
    assert.equal(await button.getAttribute('aria-disabled'), 'true');
    await button.evaluate((element) => element.click());
  }
  assert.deepEqual(await view.posted(), []);
  await view.run(COMPLETE);
  assert.equal(await view.text('results-reason'), '');
  assert.equal(await buttons.first().getAttribute('aria-disabled'), null);
  assert.equal(await buttons.last().getAttribute('aria-disabled'), null);
  await view.close();
});

test('displays, batches and styles are answered in words, one at a time', async () => {
  const view = await openList(8);
  const display = (mode) => view.page.locator(`[data-display="${mode}"]`);
  const cases = [
    [
      'selection',
      "onExcelDisplayModeDone({ok:true,mode:'target',applied:2,failed:0,message:''})",
      'Cells changed: 2',
      'info',
    ],
    [
      'sheet',
      "onExcelDisplayModeDone({ok:true,mode:'target',applied:2,failed:1,message:''})",
      'Cells changed: 2 · not changed: 1',
      'warn',
    ],
    [
      'sheet',
      "onExcelDisplayModeDone({ok:false,mode:'target',applied:0,failed:0,message:'当前工作表没有翻译结果，请切换到已翻译的工作表'})",
      english['results.noneOnSheet'],
      'warn',
    ],
    [
      'session',
      "onExcelDisplayModeDone({ok:false,mode:'target',applied:0,failed:0,message:'Strange'})",
      'Strange',
      'warn',
    ],
  ];
  for (const [scope, answer, words, kind] of cases) {
    await view.id('display-scope').selectOption(scope);
    await display('target').click();
    await view.id('apply-all').evaluate((button) => button.click());
    assert.deepEqual(await view.posted(), [{ action: 'setExcelDisplayMode', mode: 'target', scope }]);
    assert.equal(await view.text('results-reason'), english['results.working']);
    await view.run(answer);
    assert.equal(await view.text('toast'), words);
    assert.equal(await view.id('toast').getAttribute('class'), `toast ${kind}`);
  }
  for (const [id, action, words] of [
    ['apply-all', 'applyAll', english['results.applied']],
    ['restore-all', 'restoreAll', english['results.restored']],
  ]) {
    await view.id(id).click();
    assert.deepEqual(await view.posted(), [{ action }]);
    await view.run(`onBatchDone({action:'${action}'})`);
    assert.equal(await view.text('toast'), words);
  }
  await view.id('style').locator('summary').click();
  await view.id('weight').selectOption('regular');
  await view.id('apply-style').click();
  assert.deepEqual(await view.posted(), [{ action: 'setTargetStyle', targetFontBold: false }]);
  await view.run("onTargetStyleDone({ok:true,applied:5,failed:1,skipped:2,message:''})");
  assert.equal(await view.text('toast'), 'Cells styled: 5 · no translation to style: 2 · not changed: 1');
  await view.close();
});

test('an add-in that does not answer gives the buttons back', async () => {
  const view = await panel.open('translate');
  await view.page.clock.install();
  await view.page.reload();
  await view.ready();
  await view.run(runOf(3) + COMPLETE);
  await view.page.getByRole('button', { name: 'Original' }).click();
  await view.page.clock.fastForward(29000);
  assert.equal(await view.text('results-reason'), english['results.working']);
  await view.page.clock.fastForward(2000);
  assert.equal(await view.text('results-reason'), '');
  assert.equal(await view.text('toast'), english['display.noAnswer']);
  await view.close();
});

test('the texts of a run outlive other pages, a reload and the way into the workspace, until the next run is read', async () => {
  const view = await openList(9, '');
  await view.goTo('support', 'host=excel&pane=xl1&uiLang=en');
  await view.run('onRunStarted({runId:1});onReady({total:9,translatable:9,runId:1})');
  await view.run(
    "onProgress({runId:1,wordIndex:8,total:9,translatable:9,skipped:false,original:'Last',translated:'Zuletzt'})",
  );
  await view.goTo('translate', 'host=excel&pane=xl1&uiLang=en');
  await view.run(COMPLETE);
  await view.id('units-title').getByText('Texts: 9').waitFor();
  const state = await view.run('quorvantisExportState()');
  assert.deepEqual(state.units.units.at(-1), ['Last', 'Zuletzt', false]);

  const workspace = await panel.open('translate', { query: 'surface=workspace', width: 1000 });
  for (const units of [null, 7, { runId: 1, units: 'x' }, { runId: 1, units: [null, ['only'], 3] }]) {
    await workspace.run(`quorvantisImportState(${JSON.stringify({ ...state, units })})`);
  }
  await workspace.run(`quorvantisImportState(${JSON.stringify(state)})`);
  await workspace.id('units-title').getByText('Texts: 9').waitFor();
  await workspace.close();

  await view.run('onRunStarted({runId:2})');
  await view.id('units-title').getByText('Texts: 9').waitFor();
  await view.run('onReady({total:5,translatable:5,runId:2})');
  await view.id('units').waitFor({ state: 'hidden' });
  await view.close();
});

test('cells that were translated before this page was opened can be changed as well', async () => {
  const view = await panel.open('translate');
  await view.postedNow('requestSelectionPreview');
  assert.equal(await view.text('results'), '');
  await view.run(
    "onSelectionPreview({fragments:0,chars:0,rangeAddress:'$A$1',translatedCellsOnSheet:4,translatedCellsInSelection:0})",
  );
  assert.notEqual(await view.text('display'), '');
  assert.equal(await view.text('units'), '');
  await view.close();
});

test('the selection is described as it changes, and its text goes on to quick translation', async () => {
  const view = await panel.open('translate');
  const tell = (fields) => view.run(`onSelectionPreview(${JSON.stringify(fields)})`);
  const counts = { translatedCellsOnSheet: 0, translatedCellsInSelection: 0 };
  await tell({ fragments: 0, chars: 0, rangeAddress: '$C$1', ...counts });
  assert.equal(await view.text('preview'), `C1 · ${english['selection.empty']}`);
  assert.deepEqual([await view.text('preview-written'), await view.text('preview-quick-row')], ['', '']);
  for (const [error, key] of [
    ['无法读取选区', 'selection.failed'],
    ['读取 Excel 选区异常', 'preview.unexpected'],
  ]) {
    await tell({ error });
    assert.equal(await view.text('preview'), english[key]);
  }
  await tell({
    fragments: 2,
    chars: 9,
    rangeAddress: '$A$1:$B$1',
    translatedCellsOnSheet: 12,
    translatedCellsInSelection: 1,
    quickText: 'One\nTwo',
  });
  assert.equal(await view.text('preview'), 'A1:B1 · texts: 2 · characters: 9');
  assert.equal(await view.text('preview-written'), 'Translated cells: 12 on this sheet, 1 in the selection');
  await view.id('preview-quick').click();
  await view.page.waitForURL(/quicktranslate\.html/);
  await view.ready();
  assert.equal(await view.id('text').inputValue(), 'One\nTwo');
  await view.page.reload();
  await view.ready();
  assert.equal(await view.id('text').inputValue(), '', 'it is handed over once');
  await view.close();
});

test('a run over all sheets says which one it is at, and where the user has to go back to', async () => {
  const view = await panel.open('translate');
  await view.run(`${runOf(3)}onExcelTranslateSheetChanged({runId:1,sheetName:'Q2',sourceSheetName:'Q1',mode:'full'})`);
  assert.equal(await view.text('run-sheet'), 'Sheet: Q2');
  assert.match(await view.id('announcer').innerText(), /Sheet: Q2$/);
  await view.run("onExcelActiveSheetChanged({sheetName:'Notes'})");
  assert.equal(await view.text('run-title'), 'Translating…');
  await view.run("onExcelTranslateResumeBlocked({sheetName:'Notes',sourceSheetName:'Q2'})");
  assert.equal(await view.text('moved'), 'Go back to the sheet “Q2”, then resume.');
  await view.run("onExcelTranslateResumed({reason:'sheet_changed'})");
  assert.deepEqual([await view.text('moved'), await view.text('run-title')], ['', 'Translating…']);
  await view.close();
});
