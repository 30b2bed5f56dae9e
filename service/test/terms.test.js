import assert from 'node:assert/strict';
import { test } from 'node:test';

import { ApertiumEngine } from '../translate/apertium.js';
import { occurringTerms } from '../translate/terms.js';

const found = (sources, texts, limit = 200) =>
  occurringTerms(sources.map((source) => ({ source })), texts, limit).map(({ source }) => source);

test('a term occurs as whole words, in any letter case unless it has an upper-case letter', () => {
  const cases = [
    ['sales', 'Net SALES', true],
    ['sales', 'salesman', false],
    ['sales', 'wholesales', false],
    ['sales', 'sales\u0301', false],
    ['US', 'the US market', true],
    ['US', 'between us', false],
    ['Polish', 'polish it', false],
    ['eBay', 'ebay', false],
    ['École', 'école', false],
    ['école', 'ÉCOLE', true],
    ['net sales', 'net\n sales', true],
    [' net sales ', 'net sales', true],
    ['net sales', 'sales, net', false],
    ['na na', 'nana na na', true],
    ['tax', '𝒳tax', false],
    ['𝒳', '𝒳a', false],
    ['C++', 'in C++.', true],
    ['C++', 'C', false],
    ['50 %', 'up 50 % now', true],
    ['…', 'and so on…', true],
    // Scripts without blanks between words, and particles that follow a word.
    ['売上', '今年の売上高', true],
    ['売上', '上売', false],
    ['매출', '매출은 증가했다', true],
    ['ภาษี', 'อัตราภาษีใหม่', true],
    ['IT', '社内IT部門', true],
  ];
  for (const [source, text, expected] of cases) {
    assert.equal(found([source], [text]).length === 1, expected, `${source} in ${text}`);
  }
});

test('a spelling that is a term of its own is not taken for the other one', () => {
  assert.deepEqual(found(['polish', 'Polish'], ['Polish sausage']), ['Polish']);
  assert.deepEqual(found(['polish', 'Polish'], ['to polish']), ['polish']);
});

test('a term is not put together from the end of one text and the beginning of the next', () => {
  assert.deepEqual(found(['net sales'], ['net', 'sales']), []);
  assert.deepEqual(found(['net', 'sales'], ['net', 'sales']), ['sales', 'net']);
});

test('the longest terms come first, and are the ones that stay when there are too many', () => {
  assert.deepEqual(found(['tax', 'income tax', 'rate'], ['income tax rate']), ['income tax', 'rate', 'tax']);
  assert.deepEqual(found(['tax', 'missing word', 'income tax', 'rate'], ['income tax rate'], 2), ['income tax', 'rate']);
});

test('Apertium puts a term in its target wherever the term was found, and only there', async () => {
  const engine = await ApertiumEngine.create();
  const glossary = [{ source: 'report', target: 'dossier' }, { source: 'House', target: 'Cámara' }];
  const texts = ['The report is red.', 'REPORT', 'The House is red.', 'The house is red.'];
  try {
    const translated = await engine.translate({ texts, sourceLang: 'en', targetLang: 'es', glossary });
    assert.match(translated[0], / dossier .*roj[oa]\.$/);
    assert.equal(translated[1], 'DOSSIER');
    assert.match(translated[2], /Cámara/);
    assert.match(translated[3], /casa/);
  } finally {
    engine.close();
  }
});
