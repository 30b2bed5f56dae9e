import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { test } from 'node:test';

import { closestLanguage, LANGUAGES } from '../panel/assets/js/i18n.js';

const PANEL = new URL('../panel/', import.meta.url);
const load = async (code) => (await import(`../panel/assets/js/languages/${code}.js`)).default;
const english = await load('en');

/** Words that really are the same in both languages. */
const SAME = {
  de: ['account.name', 'support.version', 'support.install', 'display.original', 'agents.version'],
  fr: ['nav.label', 'page.instruction', 'account.email', 'agents.version'],
  id: ['support.version'],
};

const marksOf = (text) => [...text.matchAll(/\{\w+\}/g)].map(([mark]) => mark).sort();

test('there is one module for each language of the add-in', () => {
  const files = readdirSync(new URL('assets/js/languages/', PANEL)).map((file) => file.replace('.js', ''));
  assert.equal(LANGUAGES.length, 14);
  assert.deepEqual(files.sort(), [...LANGUAGES].sort());
});

for (const code of LANGUAGES) {
  test(`${code} says everything, with the same placeholders, in words of its own`, async () => {
    const texts = await load(code);
    assert.deepEqual(Object.keys(texts), Object.keys(english));
    for (const [key, text] of Object.entries(texts)) {
      assert.ok(text.trim() === text && text !== '', `${key} is empty or padded`);
      assert.deepEqual(marksOf(text), marksOf(english[key]), key);
      // A text of placeholders alone has no words.
      const words = /\p{L}/u.test(text.replace(/\{\w+\}/g, ''));
      if (code !== 'en' && words && !SAME[code]?.includes(key)) assert.notEqual(text, english[key], key);
    }
  });
}

test('every text that pages ask for exists, and none is left over', () => {
  const read = (folder) =>
    readdirSync(new URL(folder, PANEL))
      .filter((file) => /\.(js|html)$/.test(file))
      .map((file) => readFileSync(new URL(folder + file, PANEL), 'utf8'))
      .join('\n');
  const code = read('assets/js/') + read('pages/');
  const areas = new Set(Object.keys(english).map((key) => key.split('.')[0]));
  const asked = new Set(
    [...code.matchAll(/['"]([a-z]+\.[A-Za-z0-9]+)['"]/g)]
      .map(([, key]) => key)
      .filter((key) => areas.has(key.split('.')[0]) && key !== 'page.open'),
  );
  for (const key of asked) assert.ok(Object.hasOwn(english, key), key);
  // These are put together from a page's name or a row of the error table.
  const built = /^(page|nav|error)\./;
  assert.deepEqual(
    Object.keys(english).filter((key) => !built.test(key) && !asked.has(key)),
    [],
  );
});

test('codes find the closest language', () => {
  const cases = {
    de: 'de',
    'DE-at': 'de',
    'zh-cn': 'zh-CN',
    zh: 'zh-CN',
    'zh-Hant-HK': 'zh-TW',
    'zh-TW': 'zh-TW',
    'zh-MO': 'zh-TW',
    'zh-SG': 'zh-CN',
    pt: 'en',
    '': 'en',
    'ar-EG': 'ar',
    constructor: 'en',
  };
  for (const [code, expected] of Object.entries(cases)) assert.equal(closestLanguage(code), expected, code);
  assert.equal(closestLanguage(null), 'en');
});
