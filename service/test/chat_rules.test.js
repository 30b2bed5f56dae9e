/** The chat's rules that need no page: streams, Markdown, what the model is told. */
import assert from 'node:assert/strict';
import { test } from 'node:test';

import {
  endTurn,
  newTurn,
  prepareRetry,
  readTurns,
  toMessages,
  undoableTurn,
} from '../panel/assets/js/chat_conversation.js';
import { failureRow } from '../panel/assets/js/chat_failures.js';
import { Completion, MAX_ANSWER_LENGTH } from '../panel/assets/js/chat_stream.js';
import { parseBlocks, parseSpans } from '../panel/assets/js/markdown.js';
import { TOOL_CATALOG, TOOL_FIELDS } from '../panel/assets/js/tool_actions.js';

const event = (delta, finish = null) => `data: ${JSON.stringify({ choices: [{ delta, finish_reason: finish }] })}\n\n`;
const part = (index, fields) => event({ tool_calls: [{ index, ...fields }] });

function completionOf(text, size = text.length) {
  const completion = new Completion();
  for (let at = 0; at < text.length; at += size) completion.push(text.slice(at, at + size));
  return completion;
}

test('a stream means the same wherever it is cut', () => {
  const stream = [
    ': a comment\n\n',
    event({ role: 'assistant', content: '' }),
    event({ content: 'Größe 🎉' }),
    part(0, { id: 'a', function: { name: 'one', arguments: '' } }),
    part(1, { id: 'b', function: { name: 'two', arguments: '{"x"' } }),
    part(0, { function: { arguments: '{}' } }),
    part(1, { function: { arguments: ':1}' } }),
    'event: usage\nid: 7\ndata: {"choices":[],"usage":{}}\n\n',
    event({}, 'tool_calls'),
    'data: [DONE]\n\n',
  ].join('');
  for (const text of [stream, stream.replaceAll('\n', '\r\n')]) {
    for (const size of [1, 2, 7, text.length]) {
      const { text: said, calls, whole } = completionOf(text, size);
      assert.deepEqual([said, whole], ['Größe 🎉', true]);
      assert.deepEqual(calls, [
        { id: 'a', name: 'one', arguments: '{}' },
        { id: 'b', name: 'two', arguments: '{"x":1}' },
      ]);
    }
  }
});

test('a stream that ends too soon is not whole, and what is no answer is a failure', () => {
  assert.ok(!completionOf(event({ content: 'Half' })).whole);
  assert.ok(completionOf(event({}, 'stop')).whole);
  const cases = [
    ['data: {"error":{"message":"m","code":"c"}}\n', { code: 'c', message: 'm' }],
    ['data: {"choices\n', { code: 'broken' }],
    [part(1, { id: 'a' }), { code: 'broken' }],
    [part(-1, { id: 'a' }), { code: 'broken' }],
  ];
  for (const [text, failure] of cases) assert.throws(() => completionOf(text), failure, text);
  assert.equal(completionOf(event({ content: 'x'.repeat(MAX_ANSWER_LENGTH) })).text.length, MAX_ANSWER_LENGTH);
  const long = event({ content: 'x'.repeat(MAX_ANSWER_LENGTH) }) + part(0, { id: 'a', function: { arguments: 'x' } });
  assert.throws(() => completionOf(long), { code: 'answer_too_long' });
});

test('calls without an index, and answers in one piece, are taken', () => {
  const loose = (id) => event({ tool_calls: [{ id, function: { name: id, arguments: '{}' } }] });
  assert.deepEqual(completionOf(loose('a') + loose('b')).calls.map(({ name }) => name), ['a', 'b']);
  const completion = new Completion();
  const message = { content: 'Hi', tool_calls: [{ id: 'a', function: { name: 'one', arguments: '{}' } }] };
  completion.takeWhole({ choices: [{ message }] });
  assert.deepEqual([completion.text, completion.calls.length, completion.whole], ['Hi', 1, true]);
  assert.throws(() => completion.takeWhole({}), { code: 'broken' });
});

const calling = (id, result = '{}') => ({ id, name: 'excelListSheets', arguments: '{}', state: 'done', result });

test('the model is told everything, with a result for each call', () => {
  const first = { ...newTurn('One'), rounds: [{ text: 'I look', calls: [calling('a'), calling('b', '')] }] };
  const second = { ...newTurn('Two'), rounds: [{ text: '', calls: [] }] };
  const [system, ...messages] = toMessages([first, second]);
  assert.equal(system.role, 'system');
  assert.deepEqual(
    messages.map(({ role, content, tool_call_id: id }) => [role, content, id]),
    [
      ['user', 'One', undefined],
      ['assistant', 'I look', undefined],
      ['tool', '{}', 'a'],
      ['tool', '{"error":"interrupted before there was a result"}', 'b'],
      ['user', 'Two', undefined],
    ],
  );
  const long = toMessages([{ ...first, rounds: [{ text: '', calls: [calling('a', 'x'.repeat(100001))] }] }]).at(-1);
  assert.match(long.content, /^x{100000}… \(cut off here, of 100001 characters/);
});

test('of kept conversations only what fits is taken, and nothing goes on by itself', () => {
  const running = { ...newTurn('One'), rounds: [{ text: '', calls: [{ ...calling('a'), state: 'asking' }] }] };
  const turns = readTurns(JSON.parse(JSON.stringify([running, { question: 7 }, { ...running, undo: {} }, null])));
  assert.deepEqual(
    turns.map(({ state, rounds }) => [state, rounds[0].calls[0].state]),
    [['stopped', 'stopped']],
  );
  for (const value of [null, {}, 'x', [[]], [{ ...running, rounds: [null] }]]) assert.deepEqual(readTurns(value), []);
});

test('a retry keeps what was done and forgets what broke off', () => {
  const turn = { ...newTurn('One'), rounds: [{ text: '', calls: [calling('a')] }, { text: 'Half', calls: [] }] };
  endTurn(turn, 'failed', { status: 0, code: 'broken', message: '' });
  prepareRetry(turn);
  prepareRetry(turn);
  assert.deepEqual([turn.state, turn.failure, turn.rounds.length], ['running', null, 1]);
});

test('the last message that wrote can be undone', () => {
  const undo = (depth, wrote, undone) => ({ ...newTurn(''), undo: { depth, wrote, undone } });
  const turns = [undo(1, true, false), undo(2, true, true), undo(3, false, false), newTurn('')];
  assert.equal(undoableTurn(turns), turns[0]);
  assert.equal(undoableTurn([]), undefined);
});

test('every failure has words, by its code before its status', () => {
  assert.equal(failureRow({ status: 401, code: 'not_signed_in' }).remedy, 'signIn');
  assert.equal(failureRow({ status: 401, code: 'invalid_api_key' }).text, 'chat.failKey');
  assert.equal(failureRow({ status: 400, code: 'context_length_exceeded' }).text, 'chat.failLong');
  assert.equal(failureRow({ status: 422, code: '' }).text, 'chat.failRefused');
  assert.equal(failureRow({ status: 418, code: 'constructor' }).text, 'chat.failRefused');
  assert.equal(failureRow({ status: 0, code: '' }).text, 'error.service');
});

test('Markdown is parted into blocks', () => {
  const cases = [
    ['One\ntwo\n\nthree', ['paragraph', 'paragraph']],
    ['## Head ##\ntext', ['heading', 'paragraph']],
    ['text\n- a\n- b\n1. c', ['paragraph', 'list']],
    ['```js\n# no head\n\n- no list\n```\nafter', ['code', 'paragraph']],
    ['~~~\nopen', ['code']],
    ['> a\n> b\n\n---', ['quote', 'rule']],
    ['| a | b |\n|---|:-:|\n| 1 | 2 |\nend', ['table', 'paragraph']],
    ['| a |', ['paragraph']],
    ['#hashtag\n-dash\n1.5', ['paragraph']],
    ['', []],
  ];
  for (const [text, kinds] of cases) assert.deepEqual(parseBlocks(text).map(({ kind }) => kind), kinds, text);
  const [heading] = parseBlocks('## Head ##');
  assert.deepEqual([heading.level, heading.text], [2, 'Head']);
  assert.equal(parseBlocks('```\na\n\nb\n```')[0].text, 'a\n\nb');
  assert.deepEqual(parseBlocks('| a \\| b |\n|---|\n| 1 |')[0].rows, [['a | b'], ['1']]);
  const [list] = parseBlocks('3. a\n  more\n   - b');
  assert.deepEqual([list.start, list.items.map(({ text }) => text)], [3, ['a\nmore', 'b']]);
  assert.equal(parseBlocks('a\n\n- b\n- c')[1].source, '- b\n- c', 'a block knows its own lines');
});

test('Markdown is parted into spans, code first', () => {
  const show = (text) => parseSpans(text).map(({ kind, text: words }) => `${kind}:${words}`);
  assert.deepEqual(show('a **b** *c* `**d**`'), ['text:a ', 'strong:b', 'text: ', 'em:c', 'text: ', 'code:**d**']);
  assert.deepEqual(show('2 * 3 * 4, a_b_c, =A1*B1*C1, **open'), ['text:2 * 3 * 4, a_b_c, =A1*B1*C1, **open']);
  assert.deepEqual(show('`` a ` b ``'), ['code:a ` b']);
  assert.deepEqual(parseSpans('[x](http://y)'), [{ kind: 'link', text: 'x', address: 'http://y' }]);
});

test('long hostile Markdown takes no longer than its length', { timeout: 5000 }, () => {
  const size = MAX_ANSWER_LENGTH;
  const pieces = ['[', '**a ', '`', '* ', '|', '-', '# ', '> ', '- a\n', '|a|\n', '\n\na', '```\n', '_', '  '];
  for (const piece of pieces) {
    const text = piece.repeat(size / piece.length);
    for (const sample of [text, `# ${text}x`, `|${text}x`]) {
      for (const block of parseBlocks(sample)) parseSpans(block.text ?? '');
    }
  }
});

test('each tool is described for the model, and none of its arguments could change the message', () => {
  assert.equal(TOOL_CATALOG.length, 23);
  for (const { function: tool } of TOOL_CATALOG) {
    assert.ok(tool.description.length > 20, tool.name);
    const names = Object.keys(tool.parameters.properties);
    assert.ok(!names.includes('action') && !names.includes('requestId'), tool.name);
    assert.ok(tool.parameters.required.every((name) => names.includes(name)), tool.name);
    assert.equal(TOOL_FIELDS[tool.name]?.[0], tool.name === 'proposeFills' ? undefined : 'requestId');
  }
});
