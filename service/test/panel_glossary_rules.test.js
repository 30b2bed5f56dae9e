/** Glossary files, what they change, duplicates, and how changes are sent. */
import assert from 'node:assert/strict';
import { test } from 'node:test';

import { CsvError, decodeCsv, parseCsv, unguarded, writeCsv } from '../panel/assets/js/csv.js';
import { duplicatesAmong, entriesWith, MAX_ENTRIES, MAX_LENGTHS } from '../panel/assets/js/entries.js';
import { glossaryCsv, planImport, readGlossaryCsv } from '../panel/assets/js/glossary_csv.js';
import { accountItems, missingItems } from '../panel/assets/js/local_items.js';
import { Saver } from '../panel/assets/js/saver.js';

const entry = (source, target = 'x', more = {}) => ({ source, target, note: '', enabled: true, ...more });
const bytesOf = (text) => new TextEncoder().encode(text);
const rowsOf = (text) => readGlossaryCsv(bytesOf(text));
const fieldsOf = (text) => parseCsv(text).map(({ fields }) => fields);

test('CSV files are read field by field, however they part them', () => {
  const cases = [
    ['', []],
    ['\n \r\n', []],
    ['a,b', [['a', 'b']]],
    ['a,b\r\nc,d\r\n', [['a', 'b'], ['c', 'd']]],
    ['a,b\rc,d\n', [['a', 'b'], ['c', 'd']]],
    ['a,', [['a', '']]],
    [',b\n', [['', 'b']]],
    ['"a,b","c""d"\n', [['a,b', 'c"d']]],
    ['"a\r\nb",c', [['a\r\nb', 'c']]],
    ['"",x', [['', 'x']]],
    ['""""', [['"']]],
    // Not by the book, but what is meant is clear.
    ['5" disk,x', [['5" disk', 'x']]],
    ['a;b,c;d\n', [['a', 'b,c', 'd']]],
    ['a\tb,c\tx\n', [['a', 'b,c', 'x']]],
    ['"a;b;c",d\n', [['a;b;c', 'd']]],
    ['5" disk;x\n', [['5" disk', 'x']]],
    ['sep=;\r\na;b,c\r\n', [['a', 'b,c']]],
    ['SEP=,\na;b,c', [['a;b', 'c']]],
  ];
  for (const [text, expected] of cases) assert.deepEqual(fieldsOf(text), expected, JSON.stringify(text));
});

test('lines are counted as an editor counts them', () => {
  const lines = (text) => parseCsv(text).map(({ line }) => line);
  assert.deepEqual(lines('a,b\r\n\r\n"c\r\nd",e\nf,g'), [1, 3, 5]);
  assert.deepEqual(lines('sep=,\na,b'), [2]);
});

test('a broken file is refused with its line', () => {
  const cases = [
    ['a,b\n"c,d\n', 'openQuote', 2],
    ['"', 'openQuote', 1],
    ['"a""', 'openQuote', 1],
    ['a,b\n"c\nd" e,f', 'afterQuote', 3],
    ['"a"b', 'afterQuote', 1],
  ];
  for (const [text, kind, line] of cases) {
    assert.throws(() => parseCsv(text), (error) => error instanceof CsvError && error.kind === kind && error.line === line, text);
  }
});

test('files are text in UTF-8, or in UTF-16 with a mark', () => {
  const utf16 = (text, mark, swap) => {
    const bytes = Buffer.from(`${text}`, 'utf16le');
    return Uint8Array.from([...mark, ...(swap ? bytes.swap16() : bytes)]);
  };
  assert.equal(decodeCsv(bytesOf('\ufeffä,术')), 'ä,术');
  assert.equal(decodeCsv(utf16('ä,术', [0xff, 0xfe], false)), 'ä,术');
  assert.equal(decodeCsv(utf16('ä,术', [0xfe, 0xff], true)), 'ä,术');
  assert.equal(decodeCsv(new Uint8Array()), '');
  for (const bytes of [[0xe4, 0x2c], [0x50, 0x4b, 0x03, 0x04, 0x00]]) {
    assert.throws(() => decodeCsv(Uint8Array.from(bytes)), { kind: 'encoding' });
  }
});

test('what is written is what Excel expects, and calculates nothing', () => {
  assert.equal(
    writeCsv([['a', 'b,c'], ['d"e', '=1+1']]),
    "\ufeffa,\"b,c\"\r\n\"d\"\"e\",'=1+1\r\n",
  );
  for (const text of ['=A1', '+1', '-1', '@x', '\tx', '＝x', "'=x", "''-"]) {
    const [[written]] = fieldsOf(writeCsv([[text, '']]).slice(1));
    assert.equal(written, `'${text}`);
    assert.equal(unguarded(written), text);
  }
  for (const text of ['a=b', "'", "'a", 'x-1']) {
    assert.equal(writeCsv([[text]]), `\ufeff${text}\r\n`);
    assert.equal(unguarded(text), text);
  }
});

test('a glossary comes back from its file as it was', () => {
  const entries = [
    entry('tax', 'impuesto', { note: 'a, "b"\nc; d' }),
    entry('=SUM', '-5', { enabled: false }),
    entry('税', '', { note: "'=x" }),
  ];
  const plan = planImport(rowsOf(glossaryCsv(entries)), []);
  assert.deepEqual(plan.entries, entries);
  assert.deepEqual(planImport(rowsOf(glossaryCsv(entries)), entries).unchanged, 3);
});

test('a header is known by its names, in any order; without one the columns have theirs', () => {
  const cases = [
    ['Target; SOURCE \nb;a', [{ line: 2, texts: { source: 'a', target: 'b' } }]],
    ['source,target,comment,note\na,b,c,d', [{ line: 2, texts: { source: 'a', target: 'b', note: 'd' } }]],
    ['a,b', [{ line: 1, texts: { source: 'a', target: 'b' } }]],
    ['a,b,n,false,more', [{ line: 1, texts: { source: 'a', target: 'b', note: 'n', enabled: 'false' } }]],
    ['source,target\n', []],
    ['a', [{ line: 1, texts: { source: 'a' } }]],
  ];
  for (const [text, expected] of cases) assert.deepEqual(rowsOf(text), expected, text);
});

test('an import says what it adds, replaces and leaves out, and why', () => {
  const before = [entry('tax', 'impuesto', { note: 'kept', enabled: false }), entry('rate', 'tasa'), entry('tax', 'second')];
  const kept = structuredClone(before);
  const long = 'x'.repeat(MAX_LENGTHS.source);
  const text = ['tax,tributo', ' rate ,tasa', ' ,nothing', 'new,nuevo', 'new,again', `${long}x,y`, `${long},y`, 'odd,x,,maybe', 'odd,x,,FALSCH'];
  const plan = planImport(rowsOf(text.join('\n')), before);
  const tax = entry('tax', 'tributo', { note: 'kept', enabled: false });
  const added = [entry('new', 'nuevo'), entry(long, 'y'), entry('odd', 'x', { enabled: false })];
  assert.deepEqual(plan, {
    added,
    replaced: [tax],
    unchanged: 1,
    skipped: [
      { line: 3, reason: 'empty' },
      { line: 5, reason: 'again' },
      { line: 6, reason: 'long' },
      { line: 8, reason: 'flag' },
    ],
    entries: [tax, before[1], before[2], ...added],
  });
  assert.deepEqual(before, kept, 'the glossary itself is left alone');
});

test('an import stops at the full glossary, and still replaces', () => {
  const before = Array.from({ length: MAX_ENTRIES - 1 }, (_, index) => entry(`s${index}`));
  const plan = planImport(rowsOf('a,1\nb,2\ns7,y'), before);
  assert.deepEqual([plan.added.length, plan.replaced.length, plan.entries.length], [1, 1, MAX_ENTRIES]);
  assert.deepEqual(plan.skipped, [{ line: 2, reason: 'full' }]);
});

test('of entries with the same source the first one in use counts', () => {
  const entries = [entry('a', '1', { enabled: false }), entry('a'), entry(' a '), entry('A'), entry('a', '', { enabled: false })];
  assert.deepEqual([...duplicatesAmong(entries)], [entries[2]]);
});

test('a search looks at all texts, whatever their case or width', () => {
  const entries = [entry('Tax', 'Ｓｔｅｕｅｒ'), entry('b', 'c', { note: 'TAXES' }), entry('d', 'e')];
  const found = (query) => entriesWith(entries, query).map(({ source }) => source);
  assert.deepEqual([found('tax'), found('steuer'), found(' '), found('zz')], [['Tax', 'b'], ['Tax'], ['Tax', 'b', 'd'], []]);
});

test("the local store's items fit the service, and only those that it lacks are told", () => {
  const items = accountItems({
    glossaries: [{ id: 'g', name: '', updatedAt: 1, entries: [entry('a'), entry(' ')] }],
    instructions: [{ id: 'not an id!', name: 'I', content: 'c', updatedAt: 2 }],
  });
  assert.deepEqual(items[0], { kind: 'glossaries', item: { id: 'g', name: 'g', entries: [entry('a')] } });
  assert.match(items[1].item.id, /^local-[0-9a-f]{16}$/);
  assert.deepEqual(missingItems(items, ['g']), [items[1]]);
  assert.deepEqual(accountItems({}), []);
});

test('changes are sent one at a time, the last one of each item, and again after a failure', async () => {
  const sent = [];
  const states = [];
  let answer;
  const saver = new Saver(
    (item) => {
      sent.push(item.text);
      return new Promise((resolve, reject) => {
        answer = { resolve, reject };
      });
    },
    (state) => states.push(state),
  );
  saver.save({ id: 'a', text: 'a1' });
  saver.save({ id: 'a', text: 'a2' });
  saver.save({ id: 'a', text: 'a3' });
  assert.deepEqual([sent, saver.isBehind, saver.unsaved('a').text], [['a1'], true, 'a3']);
  answer.resolve();
  await new Promise(setImmediate);
  assert.deepEqual(sent, ['a1', 'a3']);
  answer.reject(new Error('away'));
  await saver.settled();
  assert.deepEqual([states.at(-1), saver.unsaved('a').text], ['failed', 'a3']);
  const again = saver.run();
  answer.resolve();
  await again;
  assert.deepEqual([sent.at(-1), states.at(-1), saver.isBehind, saver.unsaved('a')], ['a3', 'saved', false, undefined]);
});
