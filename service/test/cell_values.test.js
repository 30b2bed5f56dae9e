import assert from 'node:assert/strict';
import { test } from 'node:test';

import { fits, rangeName, readCell } from '../panel/assets/js/cell_address.js';
import { asText, cellValue, numberStyleOf, usualStyle } from '../panel/assets/js/cell_values.js';

test('numbers become numbers by the table’s own marks, and codes stay what they say', () => {
  const cases = [
    ['1,250.50', 1250.5, "'1,250.50"],
    ['1.250,50', "'1.250,50", 1250.5],
    ['1.250', 1.25, 1250],
    ['12 500', 12500, 12500],
    ['1\u202f234\u202f567', 1234567, 1234567],
    ['-12.00', -12, "'-12.00"],
    ['−7', -7, -7],
    ['(1,200)', -1200, -1.2],
    ['0', 0, 0],
    ['0.5', 0.5, "'0.5"],
    ['999999999999999', 999999999999999, 999999999999999],
    ['1234567890123456', "'1234567890123456", "'1234567890123456"],
    ['007', "'007", "'007"],
    ['00.5', "'00.5", "'00.5"],
    ['1,25,000', "'1,25,000", "'1,25,000"],
    ['1,250 000', "'1,250 000", "'1,250 000"],
    ['12%', '12%', '12%'],
    ['-3%', '-3%', '-3%'],
    ['12.5%', "'12.5%", "'12.5%"],
    ['5 May', "'5 May", "'5 May"],
    ['1/2', "'1/2", "'1/2"],
    ['=A1', "'=A1", "'=A1"],
    ['+49 30', "'+49 30", "'+49 30"],
    ['@name', "'@name", "'@name"],
    ["'quoted", "''quoted", "''quoted"],
    ['true', "'true", "'true"],
    ['٣٤', "'٣٤", "'٣٤"],
    [' Nut & bolt ', 'Nut & bolt', 'Nut & bolt'],
    ['  ', null, null],
  ];
  for (const [text, point, comma] of cases) {
    assert.deepEqual([cellValue(text, 'point'), cellValue(text, 'comma')], [point, comma], text);
  }
  assert.equal(asText('The report'), 'The report');
});

test('a table tells how its numbers are written, else the language does', () => {
  const cases = [
    [['1,250.50'], 'point'],
    [['1.250,50'], 'comma'],
    [['0,35', '1.000'], 'comma'],
    [['1.234.567'], 'comma'],
    [['3.14159'], 'point'],
    [['1 250,5'], 'comma'],
    [['1,250', 'a', '12'], 'usual'],
    [['0.35', '0,35'], 'usual'],
  ];
  for (const [texts, style] of cases) assert.equal(numberStyleOf([texts], 'usual'), style, texts.join());
  assert.deepEqual(['en', 'de', 'fr', 'ja', 'ar'].map(usualStyle), ['point', 'comma', 'comma', 'point', 'point']);
});

test('cells are named as in the sheet, to its very edges', () => {
  assert.deepEqual(readCell(' b3 '), { row: 3, col: 2 });
  assert.deepEqual(readCell('$AA$10'), { row: 10, col: 27 });
  assert.deepEqual(readCell('XFD1048576'), { row: 1048576, col: 16384 });
  for (const text of ['', 'B', '3', 'B0', 'XFE1', 'A1048577', 'A1:B2', 'Sheet1!A1']) {
    assert.equal(readCell(text), null, text);
  }
  assert.equal(rangeName({ row: 3, col: 26 }, 2, 3), 'Z3:AB4');
  assert.equal(rangeName({ row: 3, col: 702 }, 1, 1), 'ZZ3');
  assert.ok(fits({ row: 1048575, col: 16383 }, 2, 2));
  assert.ok(!fits({ row: 1048575, col: 1 }, 3, 1));
  assert.ok(!fits({ row: 1, col: 16384 }, 1, 2));
});
