import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { buildApp } from '../app.js';
import { runProgram } from '../child_program.js';
import { forRecognition, readBitmap, writeBitmap } from '../pictures/bitmap.js';
import { letter } from '../pictures/lettering.js';
import { paint } from '../pictures/painting.js';
import { passagesOf } from '../pictures/passages.js';
import { survey } from '../pictures/surroundings.js';
import { recognizeWords } from '../recognition.js';
import { ApertiumEngine } from '../translate/apertium.js';

let app;
before(async () => {
  app = buildApp({ engine: await ApertiumEngine.create() });
});
after(() => app.close());

const drawSvg = (content, { width = 480, height = 240 } = {}) =>
  runProgram('rsvg-convert', [], {
    input:
      `<svg xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}" font-family="Liberation Sans">` +
      `${content}</svg>`,
  });

const SHEET = `<rect width="100%" height="100%" fill="#f4f4e8"/>
  <rect width="480" height="60" fill="#1b6670"/><text x="20" y="40" font-size="26" fill="white">Annual report</text>
  <text x="20" y="110" font-size="16" fill="#802020">The house near the river is very old and our parents</text>
  <text x="20" y="130" font-size="16" fill="#802020">lived in it for many years.</text>
  <text x="20" y="190" font-size="16" fill="#222">Water</text><text x="300" y="190" font-size="16">1 250</text>
  <path d="M20 210 H460" stroke="#c04000"/>`;

function ask(fields, { token = 'dev-pictures' } = {}) {
  return app.inject({
    method: 'POST',
    url: '/v1/images/translate',
    headers: { authorization: `Bearer ${token}` },
    payload: JSON.stringify({ sourceLang: 'en', targetLang: 'es', ...fields }),
  });
}

const inside =
  (x, y) =>
  ({ left, top, right, bottom }) =>
    x >= left && x < right && y >= top && y < bottom;

test('English words of a picture come back as Spanish ones, and all else stays as it is', async () => {
  const picture = await drawSvg(SHEET);
  const answer = await ask({ imageBase64: picture.toString('base64') });
  assert.equal(answer.statusCode, 200, answer.body);
  const { mediaType, width, height, imageBase64, texts } = answer.json();
  assert.deepEqual([mediaType, width, height], ['image/png', 480, 240]);
  assert.deepEqual(
    texts.map(({ source, drawn }) => [source, drawn]),
    [
      ['Annual report', true],
      ['The house near the river is very old and our parents lived in it for many years.', true],
      ['Water', true],
    ],
  );

  const translated = Buffer.from(imageBase64, 'base64');
  const { words } = await recognizeWords(forRecognition(readBitmap(translated)).file, {
    language: 'es',
    layout: 'sparse',
  });
  const seen = words.map(({ text }) => text.toLowerCase()).join(' ');
  for (const word of ['informe', 'anual', 'casa', 'río', 'padres', 'agua'])
    assert.ok(seen.includes(word), `${word}: ${seen}`);
  for (const word of ['annual', 'report', 'house', 'river', 'parents'])
    assert.ok(!seen.includes(word), `${word}: ${seen}`);

  const [before, now] = [readBitmap(picture), readBitmap(translated)];
  let changed = 0;
  for (let y = 0; y < height; y++) {
    for (let x = 0; x < width; x++) {
      const at = 4 * (y * width + x);
      const same = [0, 1, 2, 3].every((i) => before.data[at + i] === now.data[at + i]);
      if (same) continue;
      changed++;
      assert.ok(
        texts.some(({ box }) => inside(x, y)(box)),
        `${x},${y} lies in no box`,
      );
    }
  }
  assert.ok(changed > 500, 'something was drawn');
});

test('translated characters are charged to the account', async () => {
  const picture = await drawSvg(
    '<rect width="100%" height="100%" fill="white"/><text x="20" y="60" font-size="26">Water</text>',
  );
  await ask({ imageBase64: picture.toString('base64') }, { token: 'dev-charged' });
  const account = await app.inject({ url: '/v1/account', headers: { authorization: 'Bearer dev-charged' } });
  assert.equal(account.json().creditsUsed, 'Water'.length);
});

test('a picture without words to translate comes back byte for byte', async () => {
  for (const content of [
    '<rect width="100%" height="100%" fill="white"/>',
    '<text x="20" y="60" font-size="26">12 / 450</text>',
  ]) {
    const imageBase64 = (await drawSvg(content)).toString('base64');
    const answer = (await ask({ imageBase64 })).json();
    assert.deepEqual([answer.texts, answer.imageBase64 === imageBase64], [[], true]);
  }
});

test('what cannot be translated is refused with its own code', async () => {
  const imageBase64 = (await drawSvg(SHEET)).toString('base64');
  const huge = Buffer.from(imageBase64, 'base64');
  huge.writeUInt32BE(60000, 16);
  huge.writeUInt32BE(60000, 20);
  const cut = Buffer.from(imageBase64, 'base64').subarray(0, 400);
  const cases = [
    [{}, 400, 'bad_request'],
    [{ imageBase64: 'no base64!' }, 400, 'bad_request'],
    [{ imageBase64, targetLang: '' }, 400, 'bad_request'],
    [{ imageBase64: Buffer.from('a text').toString('base64') }, 422, 'unreadable_picture'],
    [{ imageBase64: cut.toString('base64') }, 422, 'unreadable_picture'],
    [{ imageBase64: huge.toString('base64') }, 413, 'content_too_long'],
    [{ imageBase64, targetLang: 'ja' }, 400, 'unsupported_language_pair'],
    [{ imageBase64, sourceLang: 'ja' }, 503, 'recognition_language_missing'],
  ];
  for (const [fields, status, code] of cases) {
    const answer = await ask(fields);
    assert.deepEqual([answer.statusCode, answer.json().code], [status, code], JSON.stringify(fields).slice(0, 80));
  }
  assert.equal((await ask({ imageBase64 }, { token: 'stranger' })).statusCode, 401);
  assert.equal((await ask({ imageBase64 }, { token: 'dev-broke' })).json().code, 'insufficient_credits');
});

test('where Tesseract is not installed the answer says so', async () => {
  const imageBase64 = (await drawSvg(SHEET)).toString('base64');
  const path = process.env.PATH;
  process.env.PATH = '/nowhere';
  try {
    const answer = await ask({ imageBase64 });
    assert.deepEqual([answer.statusCode, answer.json().code], [503, 'recognition_unavailable']);
  } finally {
    process.env.PATH = path;
  }
});

/** Words of lines as Tesseract gives them, 10 pixels a letter and 14 high; `at` is each line's [left, top]. */
const wordsOf = (...lines) =>
  lines.flatMap(([text, left, top, { confidence = 95, height = 14 } = {}], i) => {
    let x = left;
    return text.split(' ').flatMap((word) => {
      const box = { left: x, top, width: 10 * word.length, height };
      x += 10 * word.length + 5;
      return word ? [{ text: word, confidence, ...box, block: i + 1, paragraph: 1, line: 1 }] : [];
    });
  });

test('lines are put together where one goes on what another began', () => {
  const prose = 'Letters that wrap at the edge of';
  const cases = [
    [
      'a paragraph',
      [
        [prose, 20, 20],
        ['their column go on in the next.', 20, 40],
      ],
      [`${prose} their column go on in the next.`],
    ],
    [
      'a new one after a short line',
      [
        [prose, 20, 20],
        ['Short', 20, 40],
        ['Another one', 20, 60],
      ],
      [`${prose}`, 'Short', 'Another one'],
    ],
    [
      'labels',
      [
        ['Gross margin', 20, 20],
        ['Net profit', 20, 40],
      ],
      ['Gross margin', 'Net profit'],
    ],
    [
      'a word in two',
      [
        [`${prose} the trans-`, 20, 20],
        ['lation goes on', 20, 40],
      ],
      [`${prose} the translation goes on`],
    ],
    [
      'far apart',
      [
        [prose, 20, 20],
        ['their column', 20, 80],
      ],
      [prose, 'their column'],
    ],
    [
      'of another size',
      [
        [prose, 20, 20],
        ['their column', 20, 40, { height: 24 }],
      ],
      [prose, 'their column'],
    ],
    ['columns', [['Water' + ' '.repeat(20) + 'Light', 20, 20]], ['Water', 'Light']],
    [
      'numbers and specks',
      [
        ['1 250', 20, 20],
        ['Il', 20, 60, { confidence: 30 }],
        ['x', 20, 90, { confidence: 10 }],
      ],
      [],
    ],
  ];
  for (const [name, lines, texts] of cases) {
    assert.deepEqual(
      passagesOf(wordsOf(...lines)).map(({ text }) => text),
      texts,
      name,
    );
  }
});

test('the size of letters and their baseline follow from what the letters are', () => {
  const sizeOf = (text, height) => {
    const [{ size, baseline }] = passagesOf(wordsOf([text, 20, 100, { height }]));
    return [Math.round(size), Math.round(baseline)];
  };
  assert.deepEqual(sizeOf('Total', 14), [19, 114]);
  assert.deepEqual(sizeOf('sum', 10), [19, 110]);
  assert.deepEqual(sizeOf('Page', 18), [19, 114]);
});

const plainBitmap = (width, height, colour) => ({
  width,
  height,
  data: Uint8Array.from({ length: 4 * width * height }, (_, i) => colour[i % 4]),
});

function fill({ width, data }, { left, top, right, bottom }, colour) {
  for (let y = top; y < bottom; y++) for (let x = left; x < right; x++) data.set(colour, 4 * (y * width + x));
}

const pixel = ({ width, data }, x, y) => [...data.subarray(4 * (y * width + x), 4 * (y * width + x) + 4)];
const [BLUE, RED, WHITE] = [
  [0, 0, 200, 255],
  [200, 0, 0, 255],
  [255, 255, 255, 255],
];

test('colours of text and background are found, and the room ends at the next thing', () => {
  const bitmap = plainBitmap(200, 60, WHITE);
  const box = { left: 20, top: 20, right: 60, bottom: 34 };
  fill(bitmap, { left: 22, top: 22, right: 58, bottom: 32 }, BLUE);
  fill(bitmap, { left: 80, top: 0, right: 82, bottom: 60 }, RED);
  fill(bitmap, { left: 0, top: 36, right: 200, bottom: 37 }, RED);
  const { ink, room, above } = survey(bitmap, { box, size: 20 }, []);
  assert.deepEqual([ink, above[0]], [BLUE, WHITE]);
  // 80 is the line's place, less the margin of 0.4 sizes; below, the other line is two pixels away.
  assert.deepEqual(room, { left: 19, top: 13, right: 72, bottom: 36 });
});

test('a text on transparent ground leaves transparent ground', () => {
  const bitmap = plainBitmap(60, 30, [0, 0, 0, 0]);
  const box = { left: 10, top: 8, right: 40, bottom: 20 };
  fill(bitmap, { left: 12, top: 10, right: 38, bottom: 18 }, RED);
  const surroundings = survey(bitmap, { box, size: 12 }, []);
  const mask = Uint8Array.from([255, 128]);
  paint(bitmap, [{ surroundings, lettering: { left: 14, top: 12, width: 2, height: 1, mask } }]);
  assert.deepEqual(pixel(bitmap, 14, 12), RED);
  assert.deepEqual(pixel(bitmap, 15, 12), [200, 0, 0, 128]);
  assert.deepEqual(pixel(bitmap, 30, 14), [0, 0, 0, 0]);
});

test('a background that changes colour is gone on with behind the text', () => {
  const bitmap = plainBitmap(100, 40, WHITE);
  for (let x = 0; x < 100; x++) fill(bitmap, { left: x, top: 0, right: x + 1, bottom: 40 }, [2 * x, 0, 0, 255]);
  const box = { left: 10, top: 12, right: 90, bottom: 26 };
  fill(bitmap, box, WHITE);
  const surroundings = survey(bitmap, { box, size: 14 }, []);
  paint(bitmap, [{ surroundings, lettering: { left: 0, top: 0, width: 0, height: 0, mask: new Uint8Array() } }]);
  for (const x of [10, 50, 89]) assert.ok(Math.abs(pixel(bitmap, x, 20)[0] - 2 * x) <= 4, `column ${x}`);
});

test('texts take the size that was asked for, less where the room is small, none where it is too small', async () => {
  const item = { text: 'Informe anual', lang: 'es', width: 300, height: 30, size: 20, baseline: 22, align: 'left' };
  const long = 'Calefacción y limpieza de la casa';
  const [fitting, tight, wrapped, hopeless] = await letter([
    item,
    { ...item, text: long, width: 150 },
    { ...item, text: long, width: 190, height: 60 },
    { ...item, text: 'Donaudampfschifffahrtsgesellschaft', width: 12 },
  ]);
  assert.equal(fitting.size, 20);
  assert.ok(tight.size < 16 && tight.left + tight.width <= 150, `${tight.size}`);
  assert.equal(wrapped.size, 20);
  assert.ok(wrapped.height > 30 && wrapped.top + wrapped.height <= 60);
  assert.equal(hopeless, null);
  for (const { mask, width, height } of [fitting, tight, wrapped]) assert.equal(mask.length, width * height);
});

test('a bitmap survives being written and read', () => {
  const bitmap = plainBitmap(7, 5, [10, 20, 30, 128]);
  assert.deepEqual([...readBitmap(writeBitmap(bitmap)).data], [...bitmap.data]);
});
