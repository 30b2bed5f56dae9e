import assert from 'node:assert/strict';
import { test } from 'node:test';

import { ProgramError, runProgram } from '../child_program.js';
import { chooseData, MAX_PICTURE_BYTES, readTable, recognizeWords } from '../recognition.js';

/** Draws black words on white: each at its place, in pixels. */
async function drawn(words, { width = 640, height = 200 } = {}) {
  const texts = words.map(({ text, x, y, size = 32 }) => `<text x="${x}" y="${y}" font-size="${size}">${text}</text>`);
  const svg =
    `<svg xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}" font-family="DejaVu Sans">` +
    `<rect width="100%" height="100%" fill="white"/>${texts.join('')}</svg>`;
  return runProgram('rsvg-convert', [], { input: svg });
}

const refusedWith = (status, code) => (error) => error.status === status && error.code === code;

test('words come with their boxes, in reading order, line by line', async () => {
  const picture = await drawn([
    { text: 'Annual report', x: 40, y: 60 },
    { text: 'The company grew', x: 40, y: 130 },
  ]);
  const { width, height, words } = await recognizeWords(picture, { language: 'en', layout: 'block' });
  assert.deepEqual([width, height], [640, 200]);
  assert.deepEqual(
    words.map(({ text }) => text),
    ['Annual', 'report', 'The', 'company', 'grew'],
  );
  assert.deepEqual(
    words.map(({ line }) => line - words[0].line),
    [0, 0, 1, 1, 1],
  );
  for (const word of words) assert.ok(word.confidence > 60 && word.confidence <= 100, word.text);
  const [first, , third] = words;
  assert.ok(Math.abs(first.left - 40) <= 4 && first.top >= 30 && first.top + first.height <= 72, JSON.stringify(first));
  assert.ok(third.top >= 100 && third.top + third.height <= 140, JSON.stringify(third));
});

test('a picture without words is an empty list, and what is no picture is refused', async () => {
  assert.deepEqual((await recognizeWords(await drawn([]))).words, []);
  await assert.rejects(recognizeWords(Buffer.from('no picture')), refusedWith(422, 'unreadable_picture'));
  await assert.rejects(recognizeWords(Buffer.alloc(MAX_PICTURE_BYTES + 1)), refusedWith(413, 'content_too_long'));
});

test('without Tesseract, or without the data of a language, the answer says so', async () => {
  const picture = Buffer.alloc(1);
  await assert.rejects(
    recognizeWords(picture, { program: 'tesseract-that-is-not-there' }),
    refusedWith(503, 'recognition_unavailable'),
  );
  await assert.rejects(recognizeWords(picture, { language: 'xx' }), refusedWith(503, 'recognition_language_missing'));
});

test('who gives up ends the recognition', async () => {
  const picture = await drawn([{ text: 'Report', x: 40, y: 60 }]);
  await assert.rejects(recognizeWords(picture, { signal: AbortSignal.abort() }), refusedWith(499, 'aborted'));
});

test('languages find their data', () => {
  const installed = ['chi_sim', 'chi_tra', 'eng', 'fra', 'spa', 'deu'];
  const cases = [
    ['en-US', 'eng'],
    ['ES', 'spa'],
    ['zh-CN', 'chi_sim'],
    ['zh_TW', 'chi_tra'],
    ['zh-Hant', 'chi_tra'],
    ['auto', 'eng+chi_sim+chi_tra+fra'],
  ];
  for (const [language, data] of cases) assert.equal(chooseData(installed, language), data, language);
  assert.throws(() => chooseData([], 'auto'), refusedWith(503, 'recognition_language_missing'));
});

test("Tesseract's table is read for its words only", () => {
  const table = [
    'level\tpage_num\tblock_num\tpar_num\tline_num\tword_num\tleft\ttop\twidth\theight\tconf\ttext',
    '1\t1\t0\t0\t0\t0\t0\t0\t300\t100\t-1\t',
    '4\t1\t1\t1\t2\t0\t10\t20\t90\t14\t-1\t',
    '5\t1\t1\t1\t2\t1\t10\t20\t40\t14\t96.5\tTotal',
    '5\t1\t1\t1\t2\t2\t60\t20\t40\t14\t12\t ',
    '',
  ].join('\n');
  assert.deepEqual(readTable(table), {
    width: 300,
    height: 100,
    words: [
      { text: 'Total', confidence: 96.5, left: 10, top: 20, width: 40, height: 14, block: 1, paragraph: 1, line: 2 },
    ],
  });
});

test('a child program is bounded in time and in what it writes', async () => {
  const reason = (wanted) => (error) => error instanceof ProgramError && error.reason === wanted;
  await assert.rejects(runProgram('sleep', ['60'], { timeoutMs: 50 }), reason('timeout'));
  await assert.rejects(runProgram('cat', ['/dev/zero'], { maxOutputBytes: 100000 }), reason('too_long'));
  await assert.rejects(runProgram('false', []), reason('failed'));
  await assert.rejects(runProgram('program-that-is-not-there', []), reason('missing'));
  const leaving = new AbortController();
  const waiting = runProgram('sleep', ['60'], { signal: leaving.signal });
  leaving.abort();
  await assert.rejects(waiting, reason('aborted'));
  assert.equal((await runProgram('cat', [], { input: 'ñ' })).toString(), 'ñ');
});
