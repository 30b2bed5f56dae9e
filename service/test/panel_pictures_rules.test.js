/** The rules of the page for pictures, without a page. */
import assert from 'node:assert/strict';
import { test } from 'node:test';

import { addinFailure, serviceFailure } from '../panel/assets/js/pictures_failures.js';
import { chooseAll, isSamePicture, makeItem, outcomeOf, readScan } from '../panel/assets/js/pictures_state.js';
import * as undo from '../panel/assets/js/pictures_undo.js';
import { replaceAll, translateAll } from '../panel/assets/js/pictures_work.js';

const anchorOf = (shapeName, more = {}) => ({
  v: 1,
  host: 'excel',
  kind: 'excel_shape',
  sheetName: 'Sheet1',
  shapeName,
  shapeIndex: 1,
  childPath: [],
  widthPt: 100,
  heightPt: 50,
  leftPt: 10,
  topPt: 20,
  ...more,
});
const scanOf = (...entries) => ({
  ok: true,
  count: entries.length,
  skippedUnsupported: 2,
  sheetSummary: [{ sheetName: 'Sheet1', count: entries.length, anchors: entries }],
});

test('a scan becomes a list of pictures, and what is none is told from it', () => {
  const scan = readScan(
    scanOf({ ...anchorOf('A'), thumbBase64: 'AAAA', width: 160, height: 90 }, anchorOf('B'), { x: 1 }),
  );
  assert.deepEqual([scan.sheetName, scan.unsupported], ['Sheet1', 2]);
  assert.deepEqual(
    scan.items.map(({ anchor, thumbnail, state, chosen }) => [anchor, thumbnail, state, chosen]),
    [
      [anchorOf('A'), 'AAAA', 'idle', false],
      [anchorOf('B'), '', 'idle', false],
    ],
  );
  assert.deepEqual([readScan({ error: 'no_sheet' }), readScan(undefined)], [null, null]);
  assert.deepEqual(readScan({ sheetSummary: [] }).items, []);
});

test('another scan keeps what was chosen and done with the pictures that are still there', () => {
  const before = readScan(scanOf(anchorOf('A'), anchorOf('B'))).items;
  const worked = before.map((item) => ({ ...item, chosen: true, state: 'ready', translated: 'T' }));
  const { items } = readScan(
    scanOf(anchorOf('B', { shapeIndex: 7, leftPt: 10.05 }), anchorOf('A', { topPt: 90 })),
    worked,
  );
  assert.deepEqual(
    items.map(({ id, anchor, state }) => [id === before[1].id, anchor.shapeIndex, state]),
    [
      [true, 7, 'ready'],
      [false, 1, 'idle'],
    ],
    'one has another place in the stack, the other was moved',
  );
  assert.ok(readScan(scanOf(anchorOf('A'))).items[0].chosen, 'the only one is chosen already');
});

test('pictures are told apart by sheet, name, group and place', () => {
  const picture = anchorOf('A');
  for (const other of [
    { sheetName: 'B' },
    { shapeName: 'B' },
    { childPath: [1] },
    { leftPt: 10.2 },
    { heightPt: 51 },
  ]) {
    assert.ok(!isSamePicture(picture, { ...picture, ...other }), JSON.stringify(other));
  }
  assert.ok(isSamePicture(picture, { ...picture, shapeIndex: 9, topPt: 20.09 }));
});

test('all are chosen by one click, and none by the next', () => {
  const items = [makeItem(anchorOf('A')), { ...makeItem(anchorOf('B')), chosen: true }];
  const all = chooseAll(items);
  assert.deepEqual(
    all.map(({ chosen }) => chosen),
    [true, true],
  );
  assert.deepEqual(
    chooseAll(all).map(({ chosen }) => chosen),
    [false, false],
  );
});

test('the ways back are counted as the add-in keeps them', () => {
  const [a, b] = [anchorOf('A'), anchorOf('B')];
  const moved = anchorOf('A', { shapeIndex: 5 });
  let undos = undo.withReplaced([], a, moved, false);
  undos = undo.withReplaced(undos, moved, moved, false);
  undos = undo.withReplaced(undos, moved, moved, false);
  assert.equal(undo.stepsOf(undos, a), 2, 'the first and the newest picture are kept');
  undos = undo.withUndone(undos, moved, a);
  assert.equal(undo.stepsOf(undos, a), 1);
  undos = undo.withReplaced(undo.withReplaced(undos, a, a, true), b, b, true);
  assert.equal(undo.batchSize(undos), 2);
  assert.equal(undo.batchSize(undo.withBatchForgotten(undos)), 0);
  const after = undo.withBatchUndone(undos);
  assert.deepEqual([undo.stepsOf(after, a), undo.stepsOf(after, b), undo.batchSize(after)], [1, 0, 0]);
  assert.deepEqual(undo.withNothing(after, a), []);
  assert.deepEqual(undo.readUndos(JSON.parse(JSON.stringify(undos))), undos);
  for (const value of [null, {}, [{ anchor: {}, steps: 1 }], [{ anchor: a, steps: 0 }]]) {
    assert.deepEqual(undo.readUndos(value), []);
  }
});

test('failures say what to do, and what they mean for the others', () => {
  const addin = [
    [{ ok: true }, null],
    [undefined, ['display.noAnswer', true, false]],
    [{ error: 'anchor_stale' }, ['pictures.failStale', false, true]],
    [{ error: 'sheet_changed' }, ['pictures.failSheet', true, true]],
    [{ error: 'replace_failed' }, ['pictures.failReplace', false, false]],
    [{ error: 'replace_failed', detail: 'group_child_inplace_only' }, ['pictures.failGroup', false, false]],
    [{ error: 'replace_failed', detail: 'bitmap_save' }, ['pictures.failReplace', false, false]],
    [{ error: 'image_translate_failed' }, ['agents.failed', false, false]],
    [{ error: 'constructor' }, ['agents.failed', false, false]],
  ];
  const seen = (failure) => failure && [failure.key, failure.stops, failure.rescan];
  for (const [data, expected] of addin) assert.deepEqual(seen(addinFailure(data)), expected, JSON.stringify(data));
  const service = [
    ['recognition_unavailable', 'pictures.failRecognition', true],
    ['recognition_language_missing', 'pictures.failLanguage', true],
    ['unreadable_picture', 'pictures.failUnreadable', false],
    ['insufficient_credits', 'error.noCredits', true],
    ['network_error', 'error.network', true],
    ['unknown', 'error.unknown', false],
  ];
  for (const [code, key, stops] of service) {
    assert.deepEqual(seen(serviceFailure({ code, message: 'm' })), [key, stops, false], code);
  }
});

/** Plays add-in and service: answers by the shape's name; notes what was asked. */
function stage(answers = {}, { cancelAfter = Infinity } = {}) {
  const items = ['A', 'B', 'C'].map((name) => makeItem(anchorOf(name)));
  const asked = [];
  const ask = (what, name, usual) => {
    asked.push(`${what} ${name}`);
    const answer = answers[`${what} ${name}`] ?? usual;
    return answer instanceof Error ? Promise.reject(answer) : Promise.resolve(answer);
  };
  let now = items;
  const means = {
    cancelled: () => asked.length >= cancelAfter,
    extract: ({ shapeName }) => ask('extract', shapeName, { ok: true, data: shapeName }),
    translate: (name) =>
      ask('translate', name, { imageBase64: `${name}!`, texts: [{ drawn: true }, { drawn: false }] }),
    replace: (anchor) =>
      ask('replace', anchor.shapeName, { ok: true, anchor: { ...anchor, shapeIndex: 9 }, hasUndo: true }),
    report: (id, fields) => {
      now = now.map((item) => (item.id === id ? { ...item, ...fields } : item));
    },
  };
  return { items, means, asked, states: () => now.map(({ state }) => state), now: () => now };
}

test('each picture is taken, translated and put back before the next', async () => {
  const { items, means, asked, states, now } = stage();
  assert.equal(await translateAll(items.slice(0, 2), true, means), null);
  const steps = (name) => ['extract', 'translate', 'replace'].map((step) => `${step} ${name}`);
  assert.deepEqual(asked, [...steps('A'), ...steps('B')]);
  assert.deepEqual(states(), ['replaced', 'replaced', 'idle']);
  const { anchor, count, crowded, original, translated } = now()[0];
  assert.deepEqual([anchor.shapeIndex, count, crowded, original, translated], [9, 1, 1, 'A', 'A!']);
  assert.deepEqual(outcomeOf(now()), { replaced: 2, ready: 0, nothing: 0, failed: 0 });
});

test('what is shown first waits, and is replaced later', async () => {
  const { items, means, asked, states, now } = stage();
  await translateAll(items, false, means);
  assert.deepEqual(states(), ['ready', 'ready', 'ready']);
  asked.length = 0;
  await replaceAll(now(), means);
  assert.deepEqual(asked, ['replace A', 'replace B', 'replace C']);
  assert.deepEqual(states(), ['replaced', 'replaced', 'replaced']);
});

test('a failure of one picture leaves the others, and one that meets all ends the work', async () => {
  const one = stage({ 'extract A': { error: 'anchor_stale' }, 'replace B': { error: 'replace_failed' } });
  assert.equal(await translateAll(one.items, true, one.means), null);
  assert.deepEqual(one.states(), ['failed', 'failed', 'replaced']);
  assert.equal(one.now()[1].translated, 'B!', 'another try needs no other translation');

  const refusal = Object.assign(new Error('x'), { code: 'recognition_unavailable' });
  for (const answers of [
    { 'extract B': { error: 'sheet_changed' } },
    { 'translate B': refusal },
    { 'replace B': { error: 'no_sheet' } },
  ]) {
    const all = stage(answers);
    assert.ok((await translateAll(all.items, true, all.means)).stops);
    assert.deepEqual(all.states(), ['replaced', 'failed', 'idle'], JSON.stringify(answers));
  }
});

test('a picture without text stays in the sheet as it is', async () => {
  const nothing = stage({ 'translate A': { imageBase64: 'A', texts: [] } });
  await translateAll(nothing.items.slice(0, 1), true, nothing.means);
  assert.deepEqual([nothing.asked, nothing.states()[0]], [['extract A', 'translate A'], 'nothing']);
});

test('who cancels keeps what is done, and nothing is half done', async () => {
  const cases = [
    [3, ['replaced', 'idle', 'idle']],
    [4, ['replaced', 'idle', 'idle']],
    [5, ['replaced', 'ready', 'idle']],
    [0, ['idle', 'idle', 'idle']],
  ];
  for (const [cancelAfter, states] of cases) {
    const work = stage({}, { cancelAfter });
    assert.equal(await translateAll(work.items, true, work.means), null);
    assert.deepEqual(work.states(), states, `after ${cancelAfter}`);
  }
  const aborted = stage({ 'translate A': new Error('aborted') }, { cancelAfter: 2 });
  await translateAll(aborted.items, true, aborted.means);
  assert.deepEqual(aborted.states()[0], 'idle', 'a request that was given up is no failure');
});
