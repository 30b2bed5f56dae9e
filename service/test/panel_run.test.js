/** The translation page in a real browser, with the add-in played by the test. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { ERRORS } from '../panel/assets/js/errors.js';
import english from '../panel/assets/js/languages/en.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

const REFUSED = /^Failed to load resource/;

/** A page that can start a run, with nothing posted yet. */
async function openForm(options) {
  const view = await panel.open('translate', options);
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await view.posted();
  return view;
}

/** Scripts by which the add-in tells of a run with four texts, `done` of which are finished. */
function runScript(id, done) {
  const unit = (index) =>
    `onProgress({runId:${id},wordIndex:${index},total:10,translatable:4,` +
    `skipped:${index === 1},original:"Q${index}",translated:"T${index}"})`;
  const texts = Array.from({ length: done }, (_, index) => unit(index));
  return [`onRunStarted({runId:${id}})`, `onReady({total:10,translatable:4,runId:${id}})`, ...texts].join(';');
}

test('Start posts exactly what was chosen, and the choice is there the next time', async () => {
  const view = await openForm({ query: 'mode=full' });
  await view.say({ action: 'fontList', fonts: ['Arial', '微软雅黑'] });
  await view.id('source').selectOption('en');
  await view.id('target').selectOption('es');
  await view.id('swap').click();
  await view.id('all-sheets').check();
  await view.page.getByText('Text style of the translation').click();
  await view.id('font').selectOption('微软雅黑');
  await view.id('font-size').fill('9.5');
  await view.id('weight').selectOption('bold');
  await view.id('start').click();
  const [{ clientTraceId, ...message }, ...more] = await view.posted();
  assert.deepEqual(more, []);
  assert.match(clientTraceId, /^[0-9a-f]{32}$/);
  assert.deepEqual(message, {
    action: 'start',
    accessToken: 'dev-ada',
    sourceLang: 'es',
    targetLang: 'en',
    panelMode: 'full',
    panelIsRestart: false,
    panelScriptRev: '1',
    excelTranslateAllSheets: true,
    excelBilingualBelow: true,
    nativeTranslateViaJs: false,
    targetFont: '微软雅黑',
    targetFontSize: 9.5,
    targetFontBold: true,
  });
  assert.equal(await view.text('run-title'), 'Starting…');
  await view.page.reload();
  await view.page.waitForFunction(() => document.getElementById('target').value === 'en');
  assert.equal(await view.id('source').inputValue(), 'es');
  assert.equal(await view.id('font').inputValue(), '微软雅黑');
  await view.close();
});

test('a selection is previewed, and started without sheets and style when its layout has none', async () => {
  const view = await panel.open('translate', { query: 'mode=selection' });
  await view.postedNow('requestSelectionPreview');
  await view.run('onSelectionPreview({fragments:12,chars:3400,rangeAddress:"$B$2:$D$10",quickText:"x"})');
  assert.equal(await view.text('preview'), 'B2:D10 · texts: 12 · characters: 3,400');
  await view.run('onSelectionPreview({error:"无法读取选区"})');
  assert.equal(await view.text('preview'), 'The selection cannot be read.');
  await view.page.getByLabel('In its place').check();
  assert.equal(await view.text('style'), '');
  await view.id('start').click();
  const { action, panelMode, excelBilingualBelow, excelTranslateAllSheets } = await view.postedNow('startSelection');
  assert.deepEqual(
    [action, panelMode, excelBilingualBelow, excelTranslateAllSheets],
    ['startSelection', 'selection', false, false],
  );
  await view.close();
});

test('the ribbon changes the mode of an open page by message and by script', async () => {
  const view = await openForm();
  await view.say({ action: 'setMode', mode: 'selection' });
  assert.equal(await view.page.locator('input[name="scope"]:checked').inputValue(), 'selection');
  await view.run("quorvantisSetMode('full')");
  assert.equal(await view.page.locator('input[name="scope"]:checked').inputValue(), 'full');
  await view.close();
});

test('reading, progress and completion are shown as they come', async () => {
  const view = await openForm();
  await view.run('onRunStarted({runId:1});onScanProgress({runId:1,current:16,total:64})');
  assert.deepEqual([await view.text('run-title'), await view.text('run-count')], ['Reading cells…', 'Row 16 of 64']);
  assert.equal(await view.text('form'), '');
  await view.run(runScript(1, 3));
  assert.deepEqual(
    [await view.text('run-title'), await view.text('run-count'), await view.text('run-percent')],
    ['Translating…', 'Texts: 3 of 4', '75%'],
  );
  assert.deepEqual([await view.text('run-original'), await view.text('run-translated')], ['Q2', 'T2']);
  assert.equal(await view.id('run-bar').evaluate((bar) => bar.value), 0.75);
  assert.match(await view.id('announcer').innerText(), /70%/);
  await view.run(
    'onSheetWriteBlocked({message:"目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。"})',
  );
  await view.run('onComplete({runId:1,total:10,elapsed:83000,allSheets:false})');
  assert.equal(await view.text('run-title'), 'Translation finished');
  assert.deepEqual((await view.text('summary')).split(/\n+/), [
    'Translations received',
    '3',
    'Skipped: nothing to translate',
    '1',
    'Not translated: no text, or too long',
    '6',
    'Time',
    '1:23',
  ]);
  assert.match(await view.text('unwritten'), /A target cell is locked/);
  await view.id('dismiss').click();
  assert.equal(await view.text('run'), '');
  await view.close();
});

test('pause, resume and cancel are posted, and the page follows the add-in', async () => {
  const view = await openForm();
  await view.run(runScript(1, 1));
  await view.id('pause').click();
  assert.equal(await view.text('run-title'), 'Paused');
  await view.id('resume').click();
  assert.deepEqual(await view.posted(), [{ action: 'pause' }, { action: 'resume' }]);
  await view.run('onExcelTranslateResumeBlocked({sheetName:"B",sourceSheetName:"A"})');
  assert.deepEqual(
    [await view.text('run-title'), await view.text('moved')],
    ['Paused', 'Go back to the sheet “A”, then resume.'],
  );
  await view.run('onExcelTranslateResumed({reason:"manual"})');
  assert.equal(await view.text('moved'), '');
  await view.run('onExcelActiveSheetChanged({sheetName:"B"})');
  assert.equal(await view.text('run-title'), 'Paused');
  await view.id('cancel').click();
  assert.deepEqual(await view.posted(), [{ action: 'cancel' }]);
  assert.equal(await view.text('run-title'), 'Paused');
  await view.run('onCancelled()');
  assert.equal(await view.text('run-title'), 'Translation cancelled');
  assert.match(await view.text('summary'), /Not translated\s+3/);
  await view.close();
});

test('a start that nothing answers can be taken back', async () => {
  const view = await openForm();
  await view.id('start').click();
  await view.id('cancel').click();
  assert.deepEqual(
    (await view.posted()).map(({ action }) => action),
    ['start', 'cancel'],
  );
  assert.equal(await view.text('run-title'), 'Translation cancelled');
  await view.close();
});

test('every error code is explained, with the remedy that fits', async () => {
  const view = await openForm();
  const remedies = { signIn: 'error-sign-in', account: 'error-account', tryAgain: 'error-again' };
  let runId = 0;
  for (const [code, { text, remedy }] of Object.entries(ERRORS)) {
    await view.run(`onRunStarted({runId:${++runId}});onError({code:"${code}",message:"中文",runId:${runId}})`);
    assert.equal(await view.text('error-text'), english[text], code);
    assert.equal(await view.text('error-detail'), '', code);
    for (const [name, id] of Object.entries(remedies))
      assert.equal(await view.id(id).isVisible(), name === remedy, `${code} ${name}`);
  }
  await view.run(`onRunStarted({runId:99});onError({message:"Strange",runId:99})`);
  assert.deepEqual(
    [await view.text('error-text'), await view.text('error-detail')],
    [english['error.unknown'], 'Strange'],
  );
  await view.close();
});

test('an expired sign-in leads to the sign-in page', async () => {
  const view = await openForm();
  await view.id('start').click();
  await view.run('onError({code:"unauthorized",message:"登录已失效，请重新登录"})');
  assert.ok(await view.id('start').isDisabled());
  await view.id('error-sign-in').click();
  await view.page.waitForURL(/login\.html/);
  await view.close();
});

test('a run that failed for an old token leaves the one of a later sign-in alone', async () => {
  const view = await openForm();
  await view.run(`${runScript(1, 1)};onError({code:"unauthorized",message:"m",runId:1})`);
  const failed = await view.run('quorvantisExportState()');
  assert.equal(failed.run.error.code, 'unauthorized');
  const fresh = await openForm();
  await fresh.run(`quorvantisImportState(${JSON.stringify(failed)})`);
  assert.equal(await fresh.text('error-text'), english['error.unauthorized']);
  assert.ok(await fresh.id('start').isEnabled());

  await fresh.run(runScript(2, 1));
  await fresh.run(`localStorage.setItem('quorvantis.session', '{"token":"dev-grace","signedOut":false}')`);
  await fresh.run(`dispatchEvent(new StorageEvent('storage', { key: 'quorvantis.session' }))`);
  await fresh.run('onError({code:"unauthorized",message:"m",runId:2})');
  assert.ok(await fresh.id('start').isEnabled());
  assert.ok((await fresh.posted()).every(({ action }) => action !== 'clearAccessToken'));
  await view.close();
  await fresh.close();
});

test('after a network error the next try goes through the page', async () => {
  const view = await openForm();
  await view.run('onError({code:"network_error",message:"HTTP request failed"})');
  await view.id('error-again').click();
  assert.equal((await view.postedNow('start')).nativeTranslateViaJs, true);
  await view.close();
});

const BATCH = {
  action: 'translateBatchRequest',
  requestId: 'tr-1-1',
  runId: 1,
  batchSeq: 1,
  texts: ['one', 'two'],
  sourceLang: 'en',
  targetLang: 'es',
  usageKind: 'translate_full',
  clientProduct: 'excel',
  glossary: [],
  instruction: '',
  trace: { clientTraceId: 't', runId: '1' },
};

test('batches are translated through the page, on every page of the pane', async () => {
  for (const name of ['translate', 'support']) {
    const view = await panel.open(name);
    await view.say(BATCH);
    assert.deepEqual(await view.postedNow('translateBatchResult'), {
      action: 'translateBatchResult',
      requestId: 'tr-1-1',
      ok: true,
      translations: ['ES:one', 'ES:two'],
    });
    await view.close();
  }
  const workspace = await panel.open('translate', { query: 'surface=workspace' });
  await workspace.say(BATCH);
  await workspace.page.evaluate(() => fetch('/v1/languages'));
  assert.ok(
    (await workspace.posted()).every(({ action }) => action !== 'translateBatchResult'),
    'the pane answers for both',
  );
  await workspace.close();
});

test('a batch that the service refuses comes back with its code', async () => {
  const view = await panel.open('translate', { token: 'dev-broke' });
  await view.say(BATCH);
  assert.deepEqual(await view.postedNow('translateBatchResult'), {
    action: 'translateBatchResult',
    requestId: 'tr-1-1',
    ok: false,
    code: 'insufficient_credits',
    message: 'insufficient_credits',
  });
  await view.close(REFUSED);
});

test('an aborted run is not answered, and its requests end', async () => {
  const view = await panel.open('translate');
  let stalled;
  const reached = new Promise((resolve) => {
    stalled = resolve;
  });
  await view.page.route('**/v1/translate', () => stalled());
  const ended = view.page.waitForEvent('requestfailed', (request) => request.url().endsWith('/v1/translate'));
  await view.say(BATCH);
  await reached;
  await view.posted();
  await view.say({ action: 'translateAbortForRun', runId: 1 });
  await ended;
  assert.deepEqual(await view.posted(), []);
  await view.close(REFUSED);
});

test('a page that is left answers nothing for the requests that it breaks off', async () => {
  const view = await panel.open('translate');
  let stalled;
  const reached = new Promise((resolve) => {
    stalled = resolve;
  });
  await view.page.route('**/v1/translate', (route) => stalled(route));
  await view.say(BATCH);
  const route = await reached;
  await view.posted();
  await view.run("dispatchEvent(new PageTransitionEvent('pagehide'))");
  await route.abort();
  await view.page.evaluate(() => fetch('/v1/languages'));
  assert.deepEqual(await view.posted(), []);
  await view.close(REFUSED);
});

test('a reload in the middle of a run goes on counting', async () => {
  const view = await openForm();
  await view.run(runScript(5, 3));
  await view.page.reload();
  await view.ready();
  await view.run('onRunStarted({runId:5});onReady({total:10,translatable:4,runId:5})');
  assert.equal(await view.text('run-count'), 'Texts: 3 of 4');
  await view.run('onComplete({runId:5,total:10,elapsed:1000,allSheets:false})');
  assert.match(await view.text('summary'), /Texts translated\s+3\s+Skipped: nothing to translate\s+1/);
  await view.close();
});

test('a run that ends while another page is open is shown once, on the translation page', async () => {
  const view = await openForm();
  const go = (name) => view.goTo(name, 'host=excel&pane=xl1&uiLang=en');
  await view.run(runScript(5, 3));
  await go('support');
  await view.run('onRunStarted({runId:5});onReady({total:10,translatable:4,runId:5})');
  await view.run('onError({code:"workbook_busy",message:"m",runId:5})');
  await go('account');
  await go('translate');
  assert.equal(await view.text('error-text'), english['error.workbookBusy']);
  assert.match(await view.text('summary'), /Texts translated\s+2/);
  await go('account');
  await go('translate');
  assert.equal(await view.text('run'), '');

  await view.page.waitForFunction(() => !document.getElementById('start').disabled);
  await view.id('start').click();
  await go('account');
  await view.run('onError({code:"no_selection",message:"m"})');
  await go('translate');
  assert.equal(await view.text('error-text'), english['error.noSelection']);
  await view.close();
});

test("other pages say the add-in's notice of unwritten cells in their own words", async () => {
  const message = '目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。';
  const script = `onSheetWriteBlocked({message:"${message}"});QuorvantisTerminology.showToast("${message}","warn")`;
  for (const [name, words] of [
    ['support', english['unwritten.locked']],
    ['translate', ''],
  ]) {
    const view = await panel.open(name);
    await view.run(`onRunStarted({runId:1});${script}`);
    assert.equal(await view.text('toast'), words, name);
    await view.close();
  }
});

test('the workspace takes over choices and run, and the pane takes them back', async () => {
  const pane = await openForm();
  await pane.id('source').selectOption('fr');
  await pane.say({ action: 'setMode', mode: 'selection' });
  await pane.run(runScript(2, 2));
  const state = await pane.run('quorvantisExportState()');
  const workspace = await openForm({ query: 'surface=workspace', width: 1000 });
  await workspace.run(`quorvantisImportState(${JSON.stringify(state)})`);
  assert.equal(await workspace.text('run-count'), 'Texts: 2 of 4');
  assert.equal(await workspace.id('source').inputValue(), 'fr');
  assert.deepEqual(await workspace.run('quorvantisExportState()'), state);
  for (const nonsense of [null, 7, {}, { version: 1, run: { phase: 'x' }, choices: 3 }]) {
    await workspace.run(`quorvantisImportState(${JSON.stringify(nonsense)})`);
  }
  assert.equal(await workspace.text('run-count'), 'Texts: 2 of 4');
  await pane.close();
  await workspace.close();
});

/** Says something to the page by its twin's channel, and waits until it was heard. */
function tellTwin(view, pane, message) {
  return view.page.evaluate(
    ([key, data]) =>
      new Promise((heard) => {
        const [mouth, ear] = [0, 1].map(() => new BroadcastChannel(`quorvantis excel ${key}`));
        // Heard by the test itself, so all before it have been heard as well.
        ear.onmessage = () => heard();
        mouth.postMessage(data);
      }),
    [pane, message],
  );
}

test('a pause in one window shows in the other one of the same start only', async () => {
  const view = await openForm({ pane: 'xl2' });
  await view.id('start').click();
  const { clientTraceId } = await view.postedNow('start');
  await view.run(runScript(1, 1));
  await tellTwin(view, 'xl1', { paused: clientTraceId });
  await tellTwin(view, 'xl2', { paused: '' });
  await tellTwin(view, 'xl2', { started: { runId: 1, dual: true, trace: 'of another program' } });
  await tellTwin(view, 'xl2', { paused: 'of another program' });
  assert.equal(await view.text('run-title'), 'Translating…');
  await tellTwin(view, 'xl2', { paused: clientTraceId });
  assert.equal(await view.text('run-title'), 'Paused');
  await view.close();
});

test('a run that the twin has started is known by what the twin says of it', async () => {
  for (const twinFirst of [true, false]) {
    const view = await openForm();
    const describe = () => tellTwin(view, 'xl1', { started: { runId: 1, dual: true, trace: 'theirs' } });
    if (twinFirst) await describe();
    await view.run(runScript(1, 1));
    if (!twinFirst) await describe();
    await tellTwin(view, 'xl1', { paused: 'theirs' });
    assert.equal(await view.text('run-title'), 'Paused');
    await view.close();
  }
});

test('trying again after a partly written run says what the sheet holds already', async () => {
  const view = await openForm();
  const fail = async (runId, done) => {
    await view.id('start').click();
    await view.run(`${runScript(runId, done)};onError({code:"internal_error",message:"m",runId:${runId}})`);
    assert.ok(await view.id('error-again').isVisible());
    return view.text('error-partly');
  };
  assert.equal(await fail(1, 0), '');
  assert.equal(await fail(2, 3), english['error.partlyWritten']);
  await view.page.getByLabel('In its place').check();
  assert.equal(await fail(3, 3), '');
  await view.close();
});

test("after a run the sheet's display and style can be changed", async () => {
  const view = await openForm();
  await view.run(`${runScript(1, 4)};onComplete({runId:1,total:10,elapsed:1,allSheets:false})`);
  await view.page.getByRole('button', { name: 'Original' }).click();
  assert.deepEqual(await view.posted(), [{ action: 'setExcelDisplayMode', mode: 'original', scope: 'session' }]);
  assert.ok(await view.page.getByRole('button', { name: 'Both' }).isDisabled(), 'one switch at a time');
  await view.run('onExcelDisplayModeDone({ok:true,mode:"original",applied:3,failed:0,message:""})');
  assert.equal(await view.text('toast'), 'Cells changed: 3');
  assert.ok(await view.page.getByRole('button', { name: 'Both' }).isEnabled());
  await view.run('onExcelDisplayModeDone({ok:false,mode:"original",applied:0,failed:3,message:"没有可还原的单元格"})');
  assert.equal(await view.text('toast'), english['results.nothingLeft']);
  await view.page.getByText('Text style of the translation').click();
  await view.id('weight').selectOption('bold');
  await view.id('apply-style').click();
  assert.deepEqual(await view.posted(), [{ action: 'setTargetStyle', targetFontBold: true }]);
  await view.close();
});

test('languages that cannot be loaded are asked for again', async () => {
  const view = await panel.open('translate', { hosted: true, token: 'dev-ada' });
  await view.page.route('**/v1/languages', (route) => route.abort());
  await view.page.reload();
  await view.id('languages-failed').waitFor();
  await view.page.unroute('**/v1/languages');
  await view.page.route('**/v1/languages', (route) =>
    route.fulfill({
      json: {
        pairs: [
          ['en', 'es'],
          ['es', 'en'],
        ],
      },
    }),
  );
  await view.id('languages-again').click();
  await view.id('languages-failed').waitFor({ state: 'hidden' });
  assert.deepEqual(await view.id('source').locator('option').allInnerTexts(), [
    'Detect language',
    'English',
    'Spanish',
  ]);
  await view.close(REFUSED);
});

test('a dismissed run leaves the focus on something that can be used', async () => {
  for (const [token, focused] of [
    ['dev-ada', 'start'],
    [null, 'source'],
  ]) {
    const view = await panel.open('translate', { token });
    await view.page.waitForFunction(() => document.getElementById('target').value !== '');
    await view.run(`${runScript(1, 1)};onCancelled()`);
    await view.id('dismiss').click();
    assert.equal(await view.run('document.activeElement.id'), focused);
    await view.close();
  }
});

test('in high contrast icons, the chosen segment and progress are still drawn', async () => {
  const view = await openForm();
  await view.page.emulateMedia({ forcedColors: 'active' });
  const drawn = await view.run(`(() => {
    const seen = (element, pseudo) => getComputedStyle(element, pseudo).backgroundColor;
    const canvas = seen(document.body);
    const chosen = document.querySelector('.segments label:has(:checked)');
    return [seen(document.getElementById('swap'), '::before'), seen(chosen)].map((color) => color !== canvas);
  })()`);
  assert.deepEqual(drawn, [true, true]);
  await view.close();
});

test('a browser without the add-in cannot start, and is told why', async () => {
  const view = await panel.open('translate', { hosted: false });
  await view.id('reason').getByText('Open this page from your spreadsheet program.').waitFor();
  assert.ok(await view.id('start').isDisabled());
  await view.close();
});

test('everything is reached and worked by the keyboard alone', async () => {
  const view = await openForm();
  const names = [];
  for (let i = 0; i < 13; i++) {
    await view.page.keyboard.press('Tab');
    names.push(
      await view.run(
        '(document.activeElement.id || document.activeElement.name || document.activeElement.textContent).trim()',
      ),
    );
    const outline = await view.run(
      `getComputedStyle(document.activeElement.closest('.segments label') ?? document.activeElement).outlineStyle`,
    );
    assert.equal(outline, 'solid', names.at(-1));
  }
  assert.deepEqual(names, [
    'Translate',
    'Terms',
    'Account',
    'Support',
    'window',
    'source',
    'target',
    'scope',
    'all-sheets',
    'layout',
    'Text style of the translation',
    'Terminology',
    'start',
  ]);

  await view.id('start').focus();
  await view.page.keyboard.press('Enter');
  await view.postedNow('start');
  assert.equal(await view.run('document.activeElement.id'), 'run-title');
  await view.run(runScript(1, 1));
  await view.page.keyboard.press('Tab');
  await view.page.keyboard.press('Space');
  assert.equal((await view.postedNow('pause')).action, 'pause');
  await view.run('onCancelled()');
  assert.equal(await view.run('document.activeElement.id'), 'run-title');
  await view.close();
});
