import assert from 'node:assert/strict';
import { test } from 'node:test';

import { findPair, fromApertium, guessLanguage, isForeignScript, toApertium } from '../translate/languages.js';

const PAIRS = ['eng-spa', 'spa-eng', 'spa-eng_US', 'fra-cat'];

test('codes of any length and case find their pair', () => {
  const cases = [
    ['en', 'es', 'eng-spa'],
    ['EN-us', 'es_MX', 'eng-spa'],
    ['eng', 'spa', 'eng-spa'],
    ['es', 'en', 'spa-eng'],
    ['es', 'en-GB', 'spa-eng'],
    ['es', 'en-us', 'spa-eng_US'],
    ['fr', 'ca', 'fra-cat'],
    ['zh-CN', 'es', null],
    ['es', 'fr', null],
    ['', 'es', null],
    ['__proto__', 'constructor', null],
  ];
  for (const [source, target, pair] of cases) assert.equal(findPair(PAIRS, source, target), pair, `${source} ${target}`);
});

test('codes go both ways', () => {
  assert.equal(toApertium('zh-CN'), 'zho');
  assert.equal(toApertium('tok'), 'tok');
  assert.equal(fromApertium('eng_US'), 'en-US');
  assert.equal(fromApertium('spa'), 'es');
  assert.equal(fromApertium('tok'), 'tok');
});

test('a language is guessed from all texts together, and English without a clue', () => {
  assert.equal(guessLanguage(['Total', 'El informe de la empresa']), 'es');
  assert.equal(guessLanguage(['¿Cuándo?']), 'es');
  assert.equal(guessLanguage(['The report of the company', 'El Paso']), 'en');
  assert.equal(guessLanguage(['Total', '12']), 'en');
});

test('scripts that the source language does not use are foreign when they prevail', () => {
  assert.ok(isForeignScript('四半期の報告 Q4', 'eng'));
  assert.ok(isForeignScript('المبيعات', 'eng'));
  assert.ok(isForeignScript('서울', 'spa'));
  assert.ok(!isForeignScript('Revenue (収益) rose', 'eng'));
  assert.ok(!isForeignScript('Año', 'spa'));
  assert.ok(!isForeignScript('12 %', 'eng'));
  assert.ok(!isForeignScript('四半期', 'jpn'));
});
