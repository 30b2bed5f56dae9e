import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { test } from 'node:test';

import { ACTIONS, EVENTS, MESSAGES } from '../panel/assets/js/bridge.js';
import { readChoices } from '../panel/assets/js/choices.js';
import {
  cellsText,
  ERRORS,
  errorRow,
  previewErrorText,
  quickErrorCode,
  unwrittenText,
} from '../panel/assets/js/errors.js';
import { FILE_ERRORS } from '../panel/assets/js/file_errors.js';
import { canSwap, likelyTarget, sourcesOf, targetsOf } from '../panel/assets/js/language_fields.js';
import english from '../panel/assets/js/languages/en.js';
import { ANSWER_LIMIT_MS, ask, giveUp, readHistory, settle } from '../panel/assets/js/quick_history.js';
import { advance, noRun, partDone, readRun } from '../panel/assets/js/run_state.js';
import { hostColor, newTraceId, startMessage, styleFields } from '../panel/assets/js/start_message.js';
import { readAnswer, requestBody } from '../panel/assets/js/translate_request.js';
import { matchesOf, PAGE_LENGTH, pageOf } from '../panel/assets/js/unit_filter.js';

/** The run after some steps: [name, message], each a second after the one before. */
function runAfter(...steps) {
  return steps.reduce((run, [step, message], index) => advance(run, step, message, 1000 * (index + 1)), noRun());
}
const STARTED = [
  ['startPosted', { allSheets: false, dual: true, trace: 't', startedBy: 'ada', sheet: '' }],
  ['runStarted', { runId: 3, startedBy: 'eve' }],
];
const READY = [...STARTED, ['ready', { runId: 3, total: 10, translatable: 4 }]];
const progress = (wordIndex, skipped = false, runId = 3) => [
  'progressed',
  { runId, wordIndex, total: 10, translatable: 4, skipped, original: 'a', translated: 'b' },
];

test('a run goes from start to completion and counts on the way', () => {
  assert.equal(runAfter(STARTED[0]).phase, 'starting');
  assert.equal(runAfter(...STARTED).phase, 'scanning');
  assert.equal(runAfter(...STARTED).startedBy, 'ada');
  const half = runAfter(...READY, progress(0), progress(1, true));
  assert.deepEqual([half.phase, half.done, half.skipped, partDone(half)], ['translating', 2, 1, 0.5]);
  const done = advance(half, 'completed', { runId: 3, total: 10, elapsed: 83000, allSheets: false }, 9000);
  assert.deepEqual([done.phase, done.done, done.elapsed], ['done', 4, 83000]);
});

test('what an earlier run still says is not taken for the new one', () => {
  const first = runAfter(...READY, progress(3), ['completed', { runId: 3, total: 10, elapsed: 1, allSheets: false }]);
  assert.equal(advance(first, ...progress(2)), first);
  const second = advance(first, 'startPosted', { allSheets: false, sheet: '' }, 9000);
  assert.equal(advance(second, 'failed', { runId: 3, message: 'late' }, 9000), second);
  assert.equal(advance(second, ...progress(1)), second);
  assert.equal(advance(second, 'runStarted', { runId: 4 }, 9000).done, 0);
});

test('a page that was opened during a run shows where it is', () => {
  const run = runAfter(
    ['runStarted', { runId: 7 }],
    ['ready', { runId: 7, total: 10, translatable: 4 }],
    progress(2, false, 7),
  );
  assert.deepEqual([run.phase, run.done], ['translating', 3]);
});

test('a refused start ends at once, with or without a run id', () => {
  const refused = runAfter(STARTED[0], ['failed', { code: 'workbook_busy', message: 'm' }]);
  assert.deepEqual([refused.phase, refused.error], ['failed', { code: 'workbook_busy', message: 'm' }]);
  assert.deepEqual(runAfter(...READY, ['failed', { message: 'm', runId: 3 }]).error, { code: '', message: 'm' });
  assert.equal(
    runAfter(...READY, ['failed', { code: 'cancelled', message: 'Cancelled', runId: 3 }]).phase,
    'cancelled',
  );
});

test('a refused start says nothing of the run before it', () => {
  const done = runAfter(...READY, progress(3), ['completed', { runId: 3, total: 10, elapsed: 1, allSheets: false }]);
  const refused = advance(done, 'failed', { code: 'workbook_busy', message: 'm' }, 9000);
  assert.deepEqual([refused.phase, refused.runId, refused.done, refused.units], ['failed', 3, 0, 0]);
});

test('the start of a run is described once, by whoever started it', () => {
  const heard = runAfter(['runStarted', { runId: 3, startedBy: '' }], ['described', { dual: true, trace: 'a' }]);
  assert.deepEqual([heard.dual, heard.trace], [true, 'a']);
  assert.equal(advance(heard, 'described', { dual: false, trace: 'b' }), heard);
});

test('pausing holds until resumed, also while finished texts still arrive', () => {
  const paused = runAfter(...READY, ['pausePosted'], progress(0));
  assert.deepEqual([paused.phase, paused.done], ['paused', 1]);
  assert.equal(advance(paused, 'resumePosted').phase, 'translating');
  const refused = advance(advance(paused, 'resumePosted'), 'resumeRefused', { sheetName: 'B', sourceSheetName: 'A' });
  assert.deepEqual([refused.phase, refused.sheet, refused.movedTo], ['paused', 'A', 'B']);
});

test('opening another sheet pauses a run over one sheet only', () => {
  const one = runAfter(...READY, ['sheetOpened', { sheetName: 'B' }]);
  assert.deepEqual([one.phase, one.movedTo], ['paused', 'B']);
  const back = advance(one, 'sheetOpened', { sheetName: 'A' });
  assert.equal(back.movedTo, 'B', 'A may be the sheet that is being translated');
  const known = runAfter(['startPosted', { allSheets: false, sheet: 'A' }], ...READY.slice(1), [
    'sheetOpened',
    { sheetName: 'A' },
  ]);
  assert.equal(known.phase, 'translating');
  const all = runAfter(['startPosted', { allSheets: true, sheet: 'A' }], ...READY.slice(1), [
    'sheetOpened',
    { sheetName: 'B' },
  ]);
  assert.equal(all.phase, 'translating');
});

test('a kept run is read back whole or not at all', () => {
  const run = runAfter(...READY, progress(0));
  assert.deepEqual(readRun(JSON.parse(JSON.stringify(run))), run);
  for (const wrong of [null, 7, {}, { ...run, done: 'x' }, { ...run, phase: 'other' }])
    assert.equal(readRun(wrong), null);
});

test('the start message holds what the user chose, and style only for a translation of its own line', () => {
  const choices = readChoices({
    sourceLang: 'en',
    targetLang: 'es',
    allSheets: true,
    font: 'Arial',
    fontSize: 9.5,
    weight: 'bold',
    color: '#ff8000',
  });
  const asked = { accessToken: 'dev-a', clientTraceId: 't', viaPage: false };
  assert.deepEqual(startMessage(choices, { ...asked, mode: 'full' }), {
    action: 'start',
    fields: {
      accessToken: 'dev-a',
      sourceLang: 'en',
      targetLang: 'es',
      panelMode: 'full',
      panelIsRestart: false,
      panelScriptRev: '1',
      clientTraceId: 't',
      excelTranslateAllSheets: true,
      excelBilingualBelow: true,
      nativeTranslateViaJs: false,
      targetFont: 'Arial',
      targetFontSize: 9.5,
      targetFontBold: true,
      targetFontColor: 0x0080ff,
    },
  });
  const plain = startMessage({ ...choices, layout: 'target' }, { ...asked, mode: 'selection', viaPage: true });
  assert.equal(plain.action, 'startSelection');
  assert.deepEqual(
    [
      plain.fields.excelTranslateAllSheets,
      plain.fields.excelBilingualBelow,
      plain.fields.nativeTranslateViaJs,
      'targetFont' in plain.fields,
    ],
    [false, false, true, false],
  );
});

test("an untouched style sends nothing; the default colour is the add-in's own", () => {
  assert.deepEqual(styleFields(readChoices(null)), {});
  assert.deepEqual(styleFields(readChoices({ weight: 'regular' })), { targetFontBold: false });
  assert.equal(hostColor(readChoices(null).color), 9203290);
});

test('each start has an id of its own', () => {
  assert.match(newTraceId(), /^[0-9a-f]{32}$/);
  assert.notEqual(newTraceId(), newTraceId());
});

test('choices that do not fit are left at their initial value', () => {
  const initial = readChoices(null);
  assert.deepEqual(
    readChoices({ sourceLang: '', layout: 'both', allSheets: 'yes', fontSize: 410, color: 'red', extra: 1 }),
    initial,
  );
  assert.equal(readChoices({ fontSize: 409 }).fontSize, 409);
});

test('every code of the add-in and of the service has words, and a remedy that exists', () => {
  const root = new URL('../../', import.meta.url);
  const sources = [
    'src/translation/',
    'service/',
    'service/documents/',
    'service/pictures/',
    'service/translate/',
  ].flatMap((folder) =>
    readdirSync(new URL(folder, root))
      .filter((file) => /\.(cpp|js)$/.test(file))
      .map((file) => readFileSync(new URL(folder + file, root), 'utf8')),
  );
  const patterns = [
    /L"[^"]+", L"([a-z]+(?:_[a-z]+)+)"/g, // rows of the add-in's table
    /(?:Refuse|Fail|Failure)\(L"([a-z_]+)"/g,
    /ServiceError\(\d+, '([a-z_]+)'/g,
    /\[\d{3}, '([a-z]+_[a-z_]+)', '/g, // rows of answers to a program's failure
  ];
  const codes = new Set(
    sources.flatMap((text) => patterns.flatMap((pattern) => [...text.matchAll(pattern)].map(([, code]) => code))),
  );
  assert.ok(codes.size > 20, 'the sources were read');
  for (const code of codes) assert.ok(Object.hasOwn(ERRORS, code) || Object.hasOwn(FILE_ERRORS, code), code);
  for (const text of Object.values(FILE_ERRORS)) assert.ok(Object.hasOwn(english, text), text);
  for (const [code, { text, remedy }] of Object.entries(ERRORS)) {
    assert.ok(Object.hasOwn(english, text), code);
    assert.ok(['signIn', 'account', 'tryAgain', ''].includes(remedy), code);
  }
  assert.equal(errorRow('constructor').text, 'error.unknown');
});

test("the add-in's notices about cells that it could not write are known by their very text", () => {
  const source = readFileSync(new URL('../../src/translation/protection_notice.cpp', import.meta.url), 'utf8');
  const notices = [...source.matchAll(/return L"([^"]+)"/g)].map(([, text]) => text);
  assert.deepEqual(notices.map(unwrittenText), ['unwritten.locked', 'unwritten.protected', 'unwritten.some']);
});

test("the add-in's texts for changes of cells and for selections are known by their very text", () => {
  const textsOf = (file) => {
    const source = readFileSync(new URL(`../../src/translation/${file}`, import.meta.url), 'utf8');
    return [...source.matchAll(/L"([^"]*\p{Script=Han}[^"]*)"/gu)].map(([, text]) => text);
  };
  const cells = [...textsOf('display_mode.h'), ...textsOf('display_mode.cpp')];
  assert.equal(cells.length, 10, 'the sources were read');
  for (const text of cells) assert.ok(Object.hasOwn(english, cellsText(text)), text);
  assert.deepEqual([cellsText('Strange'), cellsText('constructor')], ['', '']);
  assert.deepEqual(textsOf('selection_preview.h').map(previewErrorText), ['selection.failed', 'preview.unexpected']);
});

test("quick translation's failures stand for codes that have words", () => {
  const sources = ['translate_request.cpp', 'error_codes.h', 'error_codes.cpp', 'quick_translate_worker.cpp'].map(
    (file) => readFileSync(new URL(`../../src/translation/${file}`, import.meta.url), 'utf8'),
  );
  const said = (text) => {
    assert.ok(
      sources.some((source) => source.includes(`L"${text}`)),
      `the add-in says "${text}"`,
    );
    return text;
  };
  const cases = {
    unauthorized: [said('登录已失效，请重新登录'), 'not signed in'],
    insufficient_credits: [said('积分不足')],
    content_too_long: [said('内容过长'), 'Request too large'],
    network_error: [said('HTTP request failed'), 'WinHttpConnect failed'],
    batch_mismatch: [said('Translation count mismatch'), said('Empty translation response')],
    internal_error: [said('Translation worker failed'), said('CreateThread failed')],
    '': ['Strange', ''],
  };
  for (const [code, messages] of Object.entries(cases)) {
    for (const message of messages) assert.equal(quickErrorCode(message), code, message);
  }
});

test('texts are found in any letter case, and shown in portions', () => {
  const unit = (original, translated, skipped = false) => ({ original, translated, skipped });
  // Those between the first two were finished before the page could hear of them.
  const units = [unit('Apple', 'Manzana'), , , unit('100', '100', true), unit('PEAR', 'pera')];
  const found = (words, kind = 'all') => matchesOf(units, { words, kind });
  assert.deepEqual(found(''), [0, 3, 4]);
  assert.deepEqual(found(' pe '), [4]);
  assert.deepEqual(found('MANZ'), [0]);
  assert.deepEqual(found('', 'translated'), [0, 4]);
  assert.deepEqual(found('a', 'skipped'), []);

  const many = Array.from({ length: 2 * PAGE_LENGTH }, (_, index) => index);
  assert.deepEqual(pageOf(many, 1), { page: 1, from: PAGE_LENGTH, rows: many.slice(PAGE_LENGTH), isLast: true });
  assert.equal(pageOf([...many, 40], 1).isLast, false);
  assert.equal(pageOf(many, 9).page, 1);
  assert.equal(pageOf(many, -1).page, 0);
  assert.deepEqual(pageOf([], 3), { page: 0, from: 0, rows: [], isLast: true });
});

test('the history keeps the last fifty texts, and what of a kept one fits', () => {
  const question = (number) => ({ requestId: `q${number}`, text: 'a', sourceLang: 'auto', targetLang: 'es' });
  let entries = [];
  for (let number = 0; number < 51; number++) entries = ask(entries, question(number), number);
  assert.deepEqual([entries.length, entries[0].requestId, entries.at(-1).requestId], [50, 'q50', 'q1']);
  assert.equal(settle(entries, { requestId: 'q0', ok: true, translation: 'x' }), entries);
  const settled = settle(entries, { requestId: 'q1', ok: true, translation: 'x' });
  assert.equal(settle(settled, { requestId: 'q1', ok: false, error: 'late' }), settled);
  assert.equal(giveUp(entries, ANSWER_LIMIT_MS), entries);
  const late = giveUp(settled, ANSWER_LIMIT_MS + 2);
  assert.deepEqual(
    late.slice(-2).map(({ state }) => state),
    ['failed', 'done'],
  );
  assert.deepEqual(readHistory(JSON.parse(JSON.stringify(settled))), settled);
  const [entry] = entries;
  assert.deepEqual(
    readHistory([null, { ...entry, text: 1 }, { ...entry, state: 'x' }, { ...entry, at: null }, entry]),
    [entry],
  );
  assert.deepEqual(readHistory({ length: 1 }), []);
});

test('languages offered are those that the service has pairs for', () => {
  const pairs = [
    ['en', 'es'],
    ['es', 'en'],
    ['fr', 'ca'],
  ];
  assert.deepEqual(sourcesOf(pairs), ['en', 'es', 'fr']);
  assert.deepEqual(targetsOf(pairs, 'auto'), ['es', 'en', 'ca']);
  assert.deepEqual(targetsOf(pairs, 'fr'), ['ca']);
  assert.equal(likelyTarget(['es', 'de'], 'de'), 'de');
  assert.equal(likelyTarget(['es', 'zh'], 'zh-TW'), 'zh');
  assert.equal(likelyTarget(['es'], 'ja'), 'es');
  assert.equal(likelyTarget([], 'ja'), '');
  assert.ok(canSwap(pairs, 'en', 'es'));
  assert.ok(!canSwap(pairs, 'fr', 'ca'));
  assert.ok(!canSwap('any', 'auto', 'en'));
});

test('the bridge says and hears only what the protocol has', () => {
  const protocol = readFileSync(new URL('../../docs/protocol.md', import.meta.url), 'utf8');
  const section = (from, to) => protocol.slice(protocol.indexOf(from), protocol.indexOf(to));
  const posted = section('## From a page', '## To a page: messages');
  const heard = section('## To a page: messages', '## To a page: scripts');
  const start = posted.slice(posted.indexOf('A start message carries'));
  for (const [action, fields] of Object.entries(ACTIONS)) {
    const row = posted.split('\n').find((line) => line.startsWith(`| \`${action}\` |`));
    assert.ok(row, action);
    // Tools have a section of their own.
    const words = action.startsWith('start') ? start : row.includes("the tool's arguments") ? posted : row;
    for (const field of fields) assert.ok(words.includes(`\`${field}\``), `${action} ${field}`);
  }
  for (const message of MESSAGES) assert.ok(heard.includes(`\n| \`${message}\` |`), message);
  const called = section('## To a page: scripts', 'Error codes of `onError`');
  const events = [...called.matchAll(/^\|([^|]+)\|/gm)].flatMap(([, cell]) =>
    [...cell.matchAll(/`([^`]+)`/g)].map(([, name]) => name),
  );
  assert.deepEqual(events.filter((name) => !name.includes('.')).sort(), [...EVENTS].sort());
});

test('a batch goes to the service without its empty members', () => {
  const empty = {
    requestId: 'tr-1-1',
    runId: 1,
    batchSeq: 2,
    texts: ['a'],
    sourceLang: 'en',
    targetLang: 'es',
    usageKind: '',
    clientProduct: '',
    glossary: [],
    instruction: '',
    trace: { clientTraceId: 't', runId: '1' },
  };
  assert.deepEqual(requestBody(empty), {
    texts: ['a'],
    sourceLang: 'en',
    targetLang: 'es',
    trace: { clientTraceId: 't', runId: '1', batchSeq: 2 },
  });
  const full = requestBody({
    ...empty,
    usageKind: 'translate_full',
    clientProduct: 'excel',
    glossary: [{ source: 's', target: 't' }],
    instruction: 'i',
  });
  assert.deepEqual(Object.keys(full), [
    'texts',
    'sourceLang',
    'targetLang',
    'usageKind',
    'clientProduct',
    'glossary',
    'instruction',
    'trace',
  ]);
});

test("the service's answers become results with the codes that the add-in knows", () => {
  const cases = [
    [200, '{"translations":["x"]}', { ok: true, translations: ['x'] }],
    [200, '{"translations":[]}', { ok: false, code: '', message: 'Empty translation response' }],
    [200, 'no json', { ok: false, code: '', message: 'Empty translation response' }],
    [401, '', { ok: false, code: 'unauthorized', message: '' }],
    [402, '', { ok: false, code: 'insufficient_credits', message: '' }],
    [402, '{"message":"m"}', { ok: false, code: 'insufficient_credits', message: 'm' }],
    [500, '', { ok: false, code: 'network_error', message: 'HTTP request failed' }],
    [413, '{"code":"content_too_long","message":"m"}', { ok: false, code: 'content_too_long', message: 'm' }],
    [400, '{"error":"积分不足"}', { ok: false, code: '积分不足', message: '积分不足' }],
    [400, '{"message":"积分不足"}', { ok: false, code: 'insufficient_credits', message: '积分不足' }],
  ];
  for (const [status, body, expected] of cases) assert.deepEqual(readAnswer(status, body), expected, body);
});
