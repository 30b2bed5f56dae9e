/** What is made of a form's fields and of the model's proposals, without page and add-in. */
import assert from 'node:assert/strict';
import { test } from 'node:test';

import { newTurn, readTurns, toMessages } from '../panel/assets/js/chat_conversation.js';
import {
  compareFields,
  fieldsOf,
  fillOf,
  lastScan,
  matchProposals,
  undoableFill,
} from '../panel/assets/js/form_fields.js';

const field = (row, col, more = {}) => ({
  address: `${'ABC'[col - 1]}${row}`,
  row,
  col,
  kind: 'empty',
  label: 'Name',
  currentValue: '',
  context: { left: '', above: '', rowText: '' },
  ...more,
});
const NAME = field(1, 2);
const TOWN = field(2, 2, { kind: 'underline_placeholder', label: 'Town', currentValue: '____' });

test('the model is told of fields what it needs', () => {
  const whole = { ...NAME, id: 'R1C2', placeholderText: '' };
  assert.deepEqual(fieldsOf({ fields: [whole], usedRange: {} }), [NAME]);
  for (const scan of [null, {}, { fields: 'x' }, { error: 'x' }]) assert.deepEqual(fieldsOf(scan), []);
});

test('proposals count for fields that were found, the last one for each', () => {
  const fill = (row, col, value, more = {}) => ({ row, col, value, ...more });
  const { proposals, unknown } = matchProposals(
    [
      fill(2, 2, 'Old'),
      fill(1, 2, 41, { confidence: 0.2 }),
      fill(2, 2, 'Dresden', { confidence: 7 }),
      fill(9, 9, 'nowhere'),
      fill(1, 2, null),
      null,
      fill(1, 2, 'x', { action: 'FILL' }),
      fill(1, 2, 'x', { action: 'append' }),
    ],
    [NAME, TOWN],
  );
  assert.deepEqual(proposals.map(fillOf), [
    { row: 2, col: 2, action: 'fill', value: 'Dresden', confidence: 0.07 },
    { row: 1, col: 2, action: 'fill', value: 41, confidence: 0.2 },
  ]);
  assert.deepEqual(unknown.slice(0, 3), [fill(9, 9, 'nowhere'), fill(1, 2, null), null]);
  assert.deepEqual(
    unknown.slice(3).map(({ action }) => action),
    ['FILL', 'append'],
  );
  const sure = (confidence) => matchProposals([fill(1, 2, 'x', { confidence })], [NAME]).proposals[0].confidence;
  assert.deepEqual([0, 1, 1.5, 85, 100].map(sure), [0, 1, 0.015, 0.85, 1]);
  assert.deepEqual([-1, 101, NaN, '0.9', null, undefined].map(sure), Array(6).fill(undefined));
  const [cleared] = matchProposals([{ row: 2, col: 2, action: 'clear', value: 'x' }], [TOWN]).proposals;
  assert.deepEqual([cleared.action, cleared.value], ['clear', '']);
  for (const fills of [null, 'x', {}, []]) assert.deepEqual(matchProposals(fills, [NAME]).proposals, []);
});

test('a cell that asks for something else by now is left alone', () => {
  const fills = [
    { row: 1, col: 2, value: 'Ann' },
    { row: 2, col: 2, value: 'Dresden' },
  ];
  const { proposals } = matchProposals(fills, [NAME, TOWN]);
  const now = (...fields) => compareFields(proposals, fields).same.map(({ value }) => value);
  assert.deepEqual(now(TOWN, { ...NAME, context: {} }), ['Ann', 'Dresden']);
  assert.deepEqual(now(NAME), ['Ann'], 'filled in by somebody else');
  assert.deepEqual(now({ ...NAME, label: 'Street' }, { ...TOWN, currentValue: '___' }), [], 'rows have moved');
  assert.equal(compareFields(proposals, []).changed.length, 2);
});

const call = (name, more) => ({ id: name, name, arguments: '{}', state: 'done', result: '{}', ...more });
const turnOf = (...calls) => ({ ...newTurn('x'), rounds: [{ text: '', calls }] });
const filled = (more) => ({ filled: { count: 2, restored: 0, undone: false, failed: false, ...more } });

test('the last scan that worked counts', () => {
  const scan = (fields, state = 'done') =>
    call('autofillScan', { state, result: JSON.stringify({ sheetName: 'S', fields }) });
  assert.equal(lastScan([newTurn('x')]), null);
  assert.deepEqual(lastScan([turnOf(scan([NAME])), turnOf(scan([TOWN]), scan([], 'failed'))]).fields, [TOWN]);
});

test('what was filled in last can be put back, and the model is told that it was', () => {
  const first = call('proposeFills', filled());
  const second = call('proposeFills', filled());
  const turns = [turnOf(first), turnOf(second), newTurn('y')];
  assert.equal(undoableFill(turns), second);
  assert.equal(undoableFill(readTurns(JSON.parse(JSON.stringify(turns)))).filled.count, 2, 'also after a reload');
  second.filled.undone = true;
  assert.equal(undoableFill(turns), undefined, 'the add-in has forgotten the one before');
  assert.match(toMessages(turns).at(-1).content, /undone[^]*y$/);
  second.filled = { ...second.filled, undone: false, count: 0 };
  assert.equal(undoableFill(turns), undefined);
  assert.equal(undoableFill([]), undefined);
});
