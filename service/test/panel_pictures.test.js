/** The page for pictures in a real browser, with add-in and service played by the test. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { LANGUAGES } from '../panel/assets/js/i18n.js';
import english from '../panel/assets/js/languages/en.js';
import { writeBitmap } from '../pictures/bitmap.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

/** The page looks at the selection whenever the user comes to it. */
const LOOKS = ['requestImageSelectionPreview', 'excelGetWriteContext'];
const postedBut = async (view) => (await view.posted()).filter(({ action }) => !LOOKS.includes(action));

/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;
const words = (key, values = {}) => english[key].replace(/\{(\w+)\}/g, (_, name) => values[name]);

function png(colour, width = 32, height = 18) {
  const data = Uint8Array.from({ length: 4 * width * height }, (_, i) => [...colour, 255][i % 4]);
  return writeBitmap({ width, height, data }).toString('base64');
}
const [BLUE, RED] = [png([0, 0, 200]), png([200, 0, 0])];

const anchorOf = (shapeName, sheetName = 'Sheet1') => ({
  v: 1,
  host: 'excel',
  kind: 'excel_shape',
  sheetName,
  shapeName,
  shapeIndex: 1,
  childPath: [],
  widthPt: 24,
  heightPt: 13.5,
  leftPt: 10,
  topPt: 20,
});
const scanOf = (names, { sheetName = 'Sheet1', skippedUnsupported = 0 } = {}) => ({
  ok: true,
  count: names.length,
  skippedUnsupported,
  sheetSummary: [
    {
      sheetName,
      count: names.length,
      anchors: names.map((name) => ({ ...anchorOf(name, sheetName), thumbBase64: BLUE, width: 32, height: 18 })),
    },
  ],
});

/** The page with its first scan answered, both languages chosen, and the service played. */
async function openPictures(names, { scan = {}, service, ...options } = {}) {
  const view = await panel.open('imagetranslate', { width: 360, ...options });
  await view.page.route('**/v1/images/translate', service ?? translateAny);
  view.answer(await view.postedNow('imageTranslateScan'), scanOf(names, scan));
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  await view.id('source').selectOption('en');
  await view.id('target').selectOption('es');
  await view
    .id('list-state')
    .getByText(/\d|no pictures/)
    .waitFor();
  return view;
}

const translateAny = (route) =>
  route.fulfill({ json: { imageBase64: RED, texts: [{ drawn: true }, { drawn: false }] } });
const refuse = (status, code) => (route) => route.fulfill({ status, json: { code, message: code } });

/** Answers what the page asks for one picture; gives the fields of the replacement. */
async function serve(view, { replace = true, hasUndo = true } = {}) {
  const { anchor, ...extract } = await view.postedNow('imageTranslateExtract');
  await view.answer(extract, { ok: true, mediaType: 'image/png', width: 32, height: 18, data: BLUE });
  if (!replace) return { anchor };
  return answerReplace(view, hasUndo);
}

async function answerReplace(view, hasUndo = true) {
  const { action, requestId, ...fields } = await view.postedNow('imageTranslateReplace');
  const data = { ok: true, replaced: true, hasUndo, anchor: { ...fields.anchor, shapeIndex: 7 } };
  await view.answer({ requestId }, data);
  return { action, ...fields };
}

const card = (view, number) => view.page.locator('#list li').nth(number);
async function choose(view, ...numbers) {
  for (const number of numbers) await card(view, number).getByRole('checkbox').check();
}
const button = (view, number, key) => card(view, number).getByRole('button', { name: english[key] });
const colourOf = (canvas) => canvas.evaluate((shown) => [...shown.getContext('2d').getImageData(1, 1, 1, 1).data]);
const ended = (view) => view.id('work').waitFor({ state: 'hidden' });

test('the pictures of the sheet are shown, and asked for again', async () => {
  const view = await openPictures(['Logo', 'Chart'], { scan: { skippedUnsupported: 3 } });
  assert.equal(await view.text('list-title'), words('pictures.onSheet', { sheet: 'Sheet1' }));
  assert.equal(await view.text('list-state'), words('pictures.found', { count: 2, chosen: 0 }));
  assert.equal(await view.text('unsupported'), words('pictures.unsupported', { count: 3 }));
  assert.deepEqual(await colourOf(card(view, 0).locator('canvas')), [0, 0, 200, 255]);
  assert.equal(await view.text('reason'), english['pictures.chooseFirst']);
  await view.id('all').check();
  assert.equal(await view.text('list-state'), words('pictures.found', { count: 2, chosen: 2 }));
  await view.id('scan').click();
  assert.equal(await view.text('list-state'), english['pictures.scanning']);
  assert.ok(await view.id('start').isDisabled());
  await view.answer(await view.postedNow('imageTranslateScan'), { error: 'no_sheet' });
  assert.equal(await view.text('list-state'), english['error.noSheet']);
  await view.id('scan').click();
  await view.answer(await view.postedNow('imageTranslateScan'), scanOf([]));
  assert.equal(await view.text('list-state'), english['pictures.none']);
  await view.close();
});

test('a picture is translated, looked at, replaced and put back', async () => {
  let asked;
  const view = await openPictures(['Logo'], {
    service: (route) => {
      asked = { body: route.request().postDataJSON(), token: route.request().headers().authorization };
      return translateAny(route);
    },
  });
  assert.ok(await card(view, 0).getByRole('checkbox').isChecked(), 'the only one is chosen already');
  await view.id('start').click();
  assert.deepEqual((await serve(view, { replace: false })).anchor, anchorOf('Logo'));
  await ended(view);
  assert.deepEqual(asked, { body: { imageBase64: BLUE, sourceLang: 'en', targetLang: 'es' }, token: 'Bearer dev-ada' });
  const shown = card(view, 0).locator('.compare canvas');
  assert.deepEqual(
    [await colourOf(shown.nth(0)), await colourOf(shown.nth(1))],
    [
      [0, 0, 200, 255],
      [200, 0, 0, 255],
    ],
  );
  assert.match(await card(view, 0).innerText(), /Translated\. Texts: 1\s+Left as they were, for lack of room: 1/);
  assert.deepEqual(await postedBut(view), [], 'nothing goes into the sheet unasked');

  await button(view, 0, 'pictures.enlarge').click();
  assert.deepEqual(await postedBut(view), [
    { action: 'openImagePreview', imageBase64: RED, mediaType: 'image/png', title: 'Logo', downloadName: 'Logo.png' },
  ]);
  await button(view, 0, 'pictures.replace').click();
  assert.deepEqual(await answerReplace(view), {
    action: 'imageTranslateReplace',
    anchor: anchorOf('Logo'),
    imageBase64: RED,
    batchMode: false,
  });
  await ended(view);
  assert.deepEqual(await colourOf(card(view, 0).locator('.thumbnail canvas')), [200, 0, 0, 255]);
  assert.equal(await view.text('undo-all'), '');

  await button(view, 0, 'terms.undo').click();
  const undo = await view.postedNow('imageTranslateUndoReplace');
  assert.equal(undo.anchor.shapeIndex, 7, 'the anchor is that of the new picture');
  await view.answer(undo, { anchor: anchorOf('Logo'), imageBase64: BLUE, batchMode: false });
  await ended(view);
  assert.equal(await view.text('outcome-text'), english['pictures.putBack']);
  assert.deepEqual(await colourOf(card(view, 0).locator('.thumbnail canvas')), [0, 0, 200, 255]);
  assert.equal(await button(view, 0, 'terms.undo').count(), 0);
  await view.close();
});

test('a batch goes into the sheet picture by picture, and is put back as a whole', async () => {
  const view = await openPictures(['A', 'B', 'C']);
  await choose(view, 0, 2);
  await view.page.locator('input[value="replace"]').check();
  await view.id('start').click();
  await view.answer(await view.postedNow('imageTranslateClearBatchUndo'), { ok: true });
  assert.equal(await view.text('work-title'), words('pictures.progress', { current: 1, total: 2 }));
  const first = await serve(view);
  assert.deepEqual([first.anchor.shapeName, first.batchMode], ['A', true]);
  const second = await serve(view);
  assert.deepEqual([second.anchor.shapeName, second.batchMode], ['C', true]);
  await ended(view);
  const summary = { replaced: 2, ready: 0, nothing: 0, failed: 0 };
  assert.equal(await view.text('outcome-text'), words('pictures.summary', summary));
  assert.equal(await view.id('announcer').innerText(), words('pictures.summary', summary));
  assert.equal(await card(view, 0).locator('.compare').count(), 0, 'pictures of a batch are not kept');

  await view.id('undo-all').click();
  await view.answer(await view.postedNow('imageTranslateBatchUndo'), {
    ok: true,
    restored: 2,
    failed: 0,
    failedReasons: [],
  });
  await view.answer(await view.postedNow('imageTranslateScan'), scanOf(['A', 'B', 'C']));
  await view
    .id('outcome-text')
    .getByText(words('pictures.undone', { restored: 2, failed: 0 }))
    .waitFor();
  assert.equal(await view.text('undo-all'), '');
  assert.equal(await view.page.locator('#list .state').count(), 0);
  await view.close();
});

test('translations that were looked at are replaced together', async () => {
  const view = await openPictures(['A', 'B']);
  await view.id('all').check();
  await view.id('start').click();
  await serve(view, { replace: false });
  await serve(view, { replace: false });
  await ended(view);
  assert.equal(await view.text('replace-all'), words('pictures.replaceAll', { count: 2 }));
  await view.id('replace-all').click();
  await view.answer(await view.postedNow('imageTranslateClearBatchUndo'), { ok: true });
  assert.ok((await answerReplace(view)).batchMode);
  await answerReplace(view);
  await ended(view);
  assert.equal(await view.text('undo-all'), words('pictures.undoAll', { count: 2 }));
  await view.close();
});

test('who cancels keeps what is in the sheet, and nothing more is asked', async () => {
  const view = await openPictures(['A', 'B', 'C'], {
    service: (route) => route.request().postDataJSON().imageBase64 === BLUE && translateAny(route),
  });
  await view.id('all').check();
  await view.page.locator('input[value="replace"]').check();
  await view.id('start').click();
  await view.answer(await view.postedNow('imageTranslateClearBatchUndo'), { ok: true });
  await serve(view);
  const { requestId } = await view.postedNow('imageTranslateExtract');
  assert.equal(await view.run('document.activeElement.id'), 'cancel');
  await view.page.keyboard.press('Enter');
  assert.equal(await view.text('work-title'), english['pictures.stopping']);
  await view.answer({ requestId }, { ok: true, data: RED });
  await ended(view);
  assert.deepEqual(await postedBut(view), []);
  assert.match(
    await view.text('outcome-text'),
    /^Stopped\. Replaced: 1 · to be replaced: 0 · without text: 0 · failed: 0/,
  );
  await view.close();
});

test('a request to the service that is given up ends at once', async () => {
  const view = await openPictures(['A'], { service: () => {} });
  await view.id('start').click();
  await serve(view, { replace: false });
  await card(view, 0).getByText(english['run.translating']).waitFor();
  await view.id('cancel').click();
  await ended(view);
  assert.equal(await card(view, 0).locator('.problem').count(), 0);
  await view.close(REFUSED);
});

test('a sheet that has changed is told, and looked at again', async () => {
  const view = await openPictures(['A', 'B']);
  await view.id('all').check();
  await view.id('start').click();
  const extract = await view.postedNow('imageTranslateExtract');
  await view.answer(extract, { error: 'anchor_stale' });
  await view.answer(await view.postedNow('imageTranslateExtract'), { error: 'sheet_changed' });
  await ended(view);
  assert.equal(await card(view, 0).locator('.problem').innerText(), english['pictures.failStale']);
  assert.equal(await card(view, 1).locator('.problem').innerText(), english['pictures.failSheet']);
  assert.equal(await view.text('moved-text'), english['pictures.failSheet']);
  await view.id('rescan').click();
  await view.answer(await view.postedNow('imageTranslateScan'), scanOf(['C'], { sheetName: 'Sheet2' }));
  await card(view, 0).getByText('C').waitFor();
  assert.equal(await view.text('moved'), '');

  await view.run("onExcelActiveSheetChanged({sheetName:'Sheet1'})");
  assert.equal(await view.text('moved-text'), words('pictures.otherSheet', { open: 'Sheet1', sheet: 'Sheet2' }));
  await view.run("onExcelActiveSheetChanged({sheetName:'Sheet2'})");
  assert.equal(await view.text('moved'), '');
  await view.close();
});

test('what the service lacks or refuses is said in words, and ends the work', async () => {
  const cases = [
    [503, 'recognition_unavailable', 'pictures.failRecognition'],
    [503, 'recognition_language_missing', 'pictures.failLanguage'],
    [402, 'insufficient_credits', 'error.noCredits'],
    [400, 'unsupported_language_pair', 'error.languagePair'],
  ];
  const view = await openPictures(['A', 'B']);
  await view.id('all').check();
  for (const [status, code, key] of cases) {
    await view.page.unroute('**/v1/images/translate');
    await view.page.route('**/v1/images/translate', refuse(status, code));
    await view.id('start').click();
    await serve(view, { replace: false });
    await ended(view);
    assert.equal(await card(view, 0).locator('.problem').innerText(), english[key]);
    assert.equal(await view.text('outcome-problem'), english[key]);
    assert.ok((await view.id('announcer').innerText()).endsWith(english[key]));
    assert.deepEqual(await postedBut(view), [], 'the second picture is left alone');
  }
  await view.page.unroute('**/v1/images/translate');
  await view.page.route('**/v1/images/translate', refuse(401, 'unauthorized'));
  await view.id('start').click();
  await serve(view, { replace: false });
  await ended(view);
  assert.deepEqual(await postedBut(view), [{ action: 'clearAccessToken' }]);
  assert.equal(await view.text('reason'), english['reason.signIn']);
  await view.close(REFUSED);
});

test('the picture that is selected in the sheet is shown and translated', async () => {
  const view = await openPictures(['A', 'B']);
  assert.equal(await view.text('selected'), '');
  const select = (preview) => view.run(`onImageSelectionPreview(${JSON.stringify(preview)})`);
  await select({ scope: 'shape', anchor: anchorOf('B'), width: 32, height: 18, thumbBase64: RED });
  assert.equal(await view.text('selected-name'), 'B');
  await view.id('selected-picture').locator('canvas').waitFor();
  assert.equal(await view.page.locator('#list li[aria-current]').count(), 1);
  await view.id('selected-translate').click();
  assert.equal((await serve(view, { replace: false })).anchor.shapeName, 'B');
  await ended(view);
  assert.deepEqual(await postedBut(view), []);
  await select({ scope: 'shape', anchor: anchorOf('New') });
  await view.id('selected-translate').click();
  assert.equal((await serve(view, { replace: false })).anchor.shapeName, 'New');
  await ended(view);
  assert.equal(await card(view, 2).locator('.state').innerText(), words('pictures.ready', { count: 1 }));
  await select({ scope: 'empty' });
  assert.equal(await view.text('selected'), '');
  // Cells: the add-in does not say on which sheet, so the page asks.
  await view.answer(await view.postedNow('excelGetWriteContext'), { sheetName: 'Sheet2', rangeAddress: 'A1' });
  assert.equal(await view.text('moved-text'), words('pictures.otherSheet', { open: 'Sheet2', sheet: 'Sheet1' }));
  await select({ scope: 'shape', anchor: anchorOf('B') });
  assert.equal(await view.text('moved'), '');
  await view.close();
});

test('the page looks at the selection when it opens and when the pointer comes to it, but not all the time', async () => {
  const view = await panel.open('imagetranslate');
  await view.postedNow('requestImageSelectionPreview');
  await view.page.clock.install();
  await view.page.reload();
  await view.ready();
  await view.answer(await view.postedNow('imageTranslateScan'), scanOf(['A']));
  const come = () => view.run("document.documentElement.dispatchEvent(new PointerEvent('pointerenter'))");
  const looks = async () => (await view.posted()).filter(({ action }) => action === LOOKS[0]).length;
  await looks();
  await come();
  assert.equal(await looks(), 0, 'a moment ago it looked');
  await view.page.clock.fastForward(2001);
  await come();
  await come();
  assert.equal(await looks(), 1);
  await view.close(REFUSED);
});

test('the ways back are still there after a look at another page', async () => {
  const view = await openPictures(['A']);
  await view.page.locator('input[value="replace"]').check();
  await view.id('start').click();
  await serve(view);
  await ended(view);
  await view.goTo('account', 'host=excel&pane=xl1&uiLang=en');
  await view.goTo('imagetranslate', 'host=excel&pane=xl1&uiLang=en');
  await view.answer(await view.postedNow('imageTranslateScan'), scanOf(['A']));
  await button(view, 0, 'terms.undo').click();
  await view.answer(await view.postedNow('imageTranslateUndoReplace'), { error: 'nothing_to_undo' });
  await card(view, 0).getByText(english['pictures.failUndo']).waitFor();
  assert.equal(await button(view, 0, 'terms.undo').count(), 0);
  await view.close(REFUSED);
});

test('everything on the page is reached by the keyboard, in order, and the focus comes back', async () => {
  const view = await openPictures(['A']);
  await view.id('start').focus();
  await view.page.keyboard.press('Enter');
  await serve(view, { replace: false });
  await ended(view);
  assert.equal(await view.run('document.activeElement.id'), 'start');
  await view.id('target').focus();
  const names = [];
  for (let i = 0; i < 6; i++) {
    await view.page.keyboard.press('Tab');
    names.push(
      await view.run('document.activeElement.id || document.activeElement.dataset.use || document.activeElement.value'),
    );
  }
  const [, id] = /^(\d+) choose$/.exec(names[1]);
  assert.deepEqual(names, ['scan', `${id} choose`, `${id} enlarge`, `${id} replace`, 'show', 'start']);
  await button(view, 0, 'pictures.replace').focus();
  await view.page.keyboard.press('Enter');
  await answerReplace(view);
  await ended(view);
  assert.equal(
    await view.run('document.activeElement.dataset.use'),
    `${id} choose`,
    'what it had is gone, its picture is not',
  );
  await view.close();
});

test('the page fits narrow panes in every language', async () => {
  const view = await openPictures(['A rather long name of a picture', 'B'], {
    width: 280,
    scan: { skippedUnsupported: 1 },
  });
  await view.run(
    `onImageSelectionPreview(${JSON.stringify({ scope: 'shape', anchor: anchorOf('B'), thumbBase64: RED })})`,
  );
  for (const code of LANGUAGES) {
    await view.say({ action: 'uiLangChanged', uiLang: code });
    await view.page.waitForSelector(`html[lang="${code}"]`);
    const { scrollWidth, clientWidth } = await view.run(
      '(({ scrollWidth, clientWidth }) => ({ scrollWidth, clientWidth }))(document.documentElement)',
    );
    assert.ok(scrollWidth <= clientWidth, `${code}: ${scrollWidth} > ${clientWidth}`);
  }
  await view.close();
});

test('without an add-in the page says so and asks for nothing', async () => {
  const view = await panel.open('imagetranslate', { hosted: false });
  await view.page.waitForFunction(() => document.getElementById('target').value !== '');
  assert.equal(await view.text('reason'), english['reason.host']);
  assert.ok(await view.id('scan').isDisabled());
  await view.close();
});
