import assert from 'node:assert/strict';
import { test } from 'node:test';

import { batchesOf, differences, questionAbout, suggestionsIn, textsOf } from '../panel/assets/js/grammar_rules.js';

const cell = (row, value, formula) => ({ row, col: 1, value, ...(formula && { formula }) });
const texts = (count, text = 'word') => Array.from({ length: count }, (_, i) => ({ row: i + 1, col: 1, text }));

test('only texts with words are proofread', () => {
  const values = ['She go home', '1,250', 'x', '', 'x'.repeat(5001), '日本'];
  const cells = [...values.map((value, i) => cell(i + 1, value)), cell(7, 'TOTAL', '="TOTAL"')];
  assert.deepEqual(textsOf(cells).map(({ row }) => row), [1, 6]);
});

test('a batch holds 20 texts and 6000 characters at most, and a longer text alone', () => {
  const sizes = (list) => batchesOf(list).map(({ length }) => length);
  assert.deepEqual(sizes(texts(41)), [20, 20, 1]);
  assert.deepEqual(sizes(texts(3, 'x'.repeat(3000))), [2, 1]);
  assert.deepEqual(sizes(texts(3, 'x'.repeat(7000))), [1, 1, 1]);
  assert.deepEqual(sizes([]), []);
});

test('the model is told the texts by number, and the language of its reasons', () => {
  const [rules, texts] = questionAbout([{ row: 7, col: 2, text: 'She go' }], 'German');
  assert.match(rules.content, /in German/);
  assert.deepEqual(JSON.parse(texts.content), [{ id: 0, text: 'She go' }]);
});

test('an answer’s corrections find their cells, and what is none is left out', () => {
  const batch = [
    { row: 1, col: 1, text: 'She go' },
    { row: 2, col: 1, text: 'He goes' },
    { row: 3, col: 2, text: 'It go' },
  ];
  const answer = [
    { id: 2, text: 'It goes', reason: 'agreement' },
    { id: 1, text: 'He goes', reason: 'none' },
    { id: 9, text: 'no cell' },
    { id: 0, text: 7 },
  ];
  const suggestion = { row: 3, col: 2, before: 'It go', after: 'It goes', reason: 'agreement', state: 'open' };
  assert.deepEqual(suggestionsIn(`Here:\n\`\`\`json\n${JSON.stringify(answer)}\n\`\`\``, batch), [suggestion]);
  assert.deepEqual(suggestionsIn('[]', batch), []);
  for (const broken of ['', 'All is well.', '[1]', '[{"id":0', '{}']) {
    assert.throws(() => suggestionsIn(broken, batch), { code: 'broken' }, broken);
  }
});

test('differences are told word by word', () => {
  const told = (before, after) =>
    differences(before, after).map(({ kind, text }) => ({ same: '', gone: '-', new: '+' })[kind] + text);
  assert.deepEqual(told('She go home.', 'She goes home.'), ['She ', '-go', '+goes', ' home.']);
  assert.deepEqual(told('I has a apple and pear', 'I have an apple and a pear'), [
    'I ', '-has', '+have', ' ', '-a', '+an', ' apple and', '+ a', ' pear',
  ]);
  assert.deepEqual(told('a', ''), ['-a']);
  assert.deepEqual(told('', 'a'), ['+a']);
  assert.deepEqual(told('same', 'same'), ['same']);
  const long = Array.from({ length: 2000 }, (_, i) => `w${i}`).join(' ');
  assert.deepEqual(differences(`x ${long} y`, `p ${long.toUpperCase()} q`).map(({ kind }) => kind), ['gone', 'new']);
});
