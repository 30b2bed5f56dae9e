import assert from 'node:assert/strict';
import { test } from 'node:test';

import { findPlaceholders, Shielder } from '../translate/shields.js';

const wireOf = (text, glossary) => new Shielder(glossary).protect(text).wire();

test('placeholder tokens follow the grammar', () => {
  const counts = {
    '[[QV_REF_1]]': 1,
    '[[qv__7]]': 1,
    '[[Qv_ñ9_007]] [[qV_x_1]]': 2,
    '[[[QV_A_1]]]': 1,
    '[[QV_A_1]][[QV_A_1]]': 2,
    '[[QV_A_]]': 0,
    '[QV_A_1]]': 0,
    '[[QV_A_1]': 0,
    '[[QV_A_B_1]]': 0,
    '[[QX_A_1]]': 0,
    '[[QV_A_١]]': 0,
    '[[QV_[[QV_A_1]]': 1,
  };
  for (const [text, count] of Object.entries(counts)) assert.equal(findPlaceholders(text).length, count, text);
});

test('fixed pieces leave the text and come back where their stand-ins are', () => {
  const shielded = new Shielder().protect('See [[QV_REF_1]] at https://a.example/b_c?d, {name}!');
  const wire = shielded.wire();
  assert.doesNotMatch(wire, /QV_|https|name/);
  assert.match(wire, /^See (\w+) at (\w+), (\w+)!$/);
  const [first, second, third] = wire.match(/Qvz[a-z]+/g);
  assert.equal(
    shielded.restore(`${third.toUpperCase()} y ${first.toLowerCase()}, ${second}`),
    '{name} y [[QV_REF_1]], https://a.example/b_c?d',
  );
});

test('a lost, doubled or invented stand-in is noticed', () => {
  const shielded = new Shielder().protect('[[QV_A_1]] and [[QV_A_2]]');
  const [first, second] = shielded.wire().split(' and ');
  assert.equal(shielded.restore(first), null);
  assert.equal(shielded.restore(`${first} ${second} ${first}`), null);
  assert.equal(shielded.restore(`${first} ${second} Qvzzzzz`), null);
  assert.equal(shielded.restore(`${second}${first}`), '[[QV_A_2]][[QV_A_1]]');
});

test('a text that looks like a stand-in is not taken for one', () => {
  const shielded = new Shielder().protect('Qvzaaaa sees [[QV_A_1]]');
  assert.equal(shielded.restore(shielded.wire()), 'Qvzaaaa sees [[QV_A_1]]');
});

test('letters count only outside of fixed pieces', () => {
  const shielder = new Shielder([{ source: 'Sales', target: 'Ventas' }]);
  assert.equal(shielder.protect('[[QV_A_1]] 12 %').hasLetters, false);
  assert.equal(shielder.protect('Sales').hasLetters, false);
  assert.equal(shielder.protect('Sales').replaced(), 'Ventas');
  assert.equal(shielder.protect('Sales up').hasLetters, true);
});

test('characters that would upset the stream never reach it', () => {
  for (const unsafe of ['~', '\u0000', '\u001f', '\u200f', '\ufeff', '\ud83d', '\udc00', '\ue000']) {
    const shielded = new Shielder().protect(`left ${unsafe} right`);
    assert.ok(!shielded.wire().includes(unsafe), JSON.stringify(unsafe));
    assert.equal(shielded.restore(shielded.wire()), `left ${unsafe} right`);
  }
  assert.equal(wireOf('a 🚀 b'), 'a 🚀 b');
});

test('glossary terms are whole words, longest first, in the case in which they stand', () => {
  const glossary = [
    { source: 'sales', target: 'ventas' },
    { source: 'net sales', target: 'ventas netas' },
    { source: 'US', target: 'EE. UU.' },
    { source: 'C++', target: 'C más más' },
    { source: 'Polish', target: 'polaco' },
    { source: 'polish', target: 'pulir' },
  ];
  const replaced = (text) => new Shielder(glossary).protect(text).replaced();
  const cases = {
    'net sales and sales': 'ventas netas and ventas',
    'Net sales': 'Ventas netas',
    'NET SALES': 'VENTAS NETAS',
    'net  sales': 'ventas netas',
    'salesman wholesales saless': 'salesman wholesales saless',
    'us in the US, U.S.': 'us in the EE. UU., U.S.',
    'C++, not C': 'C más más, not C',
    'Polish or polish': 'polaco or pulir',
    'ventassales ñsales': 'ventassales ñsales',
    '[[QV_sales_1]] sales': '[[QV_sales_1]] ventas',
  };
  for (const [text, expected] of Object.entries(cases)) assert.equal(replaced(text), expected);
});
