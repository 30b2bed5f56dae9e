import assert from 'node:assert/strict';
import { test } from 'node:test';

import { FaultQueue, spoilTranslations } from '../faults.js';

const bodyOf = (...texts) => Buffer.from(JSON.stringify({ texts }));

function queueOf(...faults) {
  const queue = new FaultQueue();
  assert.equal(queue.add(faults), null);
  return queue;
}

test('faults are used up in order, each as often as it says', () => {
  const queue = queueOf({ status: 500, times: 2 }, { status: 429 });
  const statuses = [1, 2, 3, 4].map(() => queue.take(bodyOf('x'))?.settings.status);
  assert.deepEqual(statuses, [500, 500, 429, undefined]);
});

test('a fault for ever stays until it is cleared', () => {
  const queue = queueOf({ status: 500, times: -1 });
  for (let i = 0; i < 5; i++) assert.equal(queue.take(bodyOf('x')).settings.status, 500);
  queue.clear();
  assert.equal(queue.take(bodyOf('x')), null);
});

test('a fault with a match waits for its text and lets others pass', () => {
  const queue = queueOf({ status: 500, match: 'red' }, { status: 503, match: 'blue' });
  assert.equal(queue.take(bodyOf('green')), null);
  assert.equal(queue.take(bodyOf('green', 'dark blue')).settings.status, 503);
  assert.equal(queue.take(Buffer.from('{"texts":["red"')), null);
  assert.equal(queue.take(undefined), null);
  assert.equal(queue.take(bodyOf('reddish')).settings.status, 500);
  assert.equal(queue.take(bodyOf('red')), null);
});

test('one misspelt fault refuses the whole list', () => {
  const queue = new FaultQueue();
  for (const wrong of [{ statos: 1 }, { status: 99 }, { times: 0 }, { times: -2 }, { hang: 1 }, { delayMs: -1 }, null]) {
    assert.match(queue.add([{ status: 500 }, wrong]), /fault|cannot be/, JSON.stringify(wrong));
  }
  assert.equal(queue.take(bodyOf('x')), null);
});

test('spoiling changes the count or drops the tokens, and nothing without a fault', () => {
  const good = ['a [[QV_R_1]]b[[QV_R_2]]', 'c'];
  assert.deepEqual(spoilTranslations(good, null), good);
  assert.equal(spoilTranslations(good, queueOf({ countMismatch: true }).take(bodyOf('x'))).length, 3);
  assert.deepEqual(spoilTranslations(good, queueOf({ dropPlaceholders: true }).take(bodyOf('x'))), ['a b', 'c']);
});
