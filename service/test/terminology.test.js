import assert from 'node:assert/strict';
import { afterEach, beforeEach, test } from 'node:test';

import { buildApp } from '../app.js';
import { EchoEngine } from '../translate/echo.js';

let app;
beforeEach(() => {
  app = buildApp({ engine: new EchoEngine() });
});
afterEach(() => app.close());

const ask = (method, url, body, token = 'dev-ada') =>
  app.inject({
    method,
    url: `/v1/${url}`,
    headers: token ? { authorization: `Bearer ${token}` } : {},
    payload: body && JSON.stringify(body),
  });
const statusOf = async (...request) => (await ask(...request)).statusCode;
const resolve = async (question, token) => (await ask('POST', 'terminology/resolve', question, token)).json();
const entry = (source, target = 'x', more = {}) => ({ source, target, note: '', enabled: true, ...more });

test('an item is kept as it was sent, listed, replaced and removed', async () => {
  const cases = [
    ['glossaries', { name: 'Finance', entries: [entry('tax', 'impuesto', { note: 'n' }), entry('off', '', { enabled: false })] }],
    ['instructions', { name: 'Formal', content: 'Use "usted".\nAlways.' }],
  ];
  for (const [kind, body] of cases) {
    const url = `${kind}/a_1-Z`;
    const { updatedAt, ...stored } = (await ask('PUT', url, body)).json();
    assert.deepEqual(stored, { id: 'a_1-Z', ...body });
    assert.ok(!Number.isNaN(Date.parse(updatedAt)));
    assert.deepEqual((await ask('GET', url)).json(), { ...stored, updatedAt });
    assert.deepEqual((await ask('GET', kind)).json(), { [kind]: [{ id: 'a_1-Z', name: body.name, updatedAt }] });
    await ask('PUT', url, { ...body, name: 'Other' });
    assert.deepEqual((await ask('GET', kind)).json()[kind].map(({ name }) => name), ['Other']);
    assert.deepEqual([await statusOf('DELETE', url), await statusOf('DELETE', url)], [204, 404]);
    assert.equal(await statusOf('GET', url), 404);
    assert.deepEqual((await ask('GET', kind)).json(), { [kind]: [] });
  }
});

test('entries need a source only', async () => {
  const stored = (await ask('PUT', 'glossaries/g', { entries: [{ source: 'tax' }] })).json();
  assert.deepEqual(stored.entries, [{ source: 'tax', target: '', note: '', enabled: true }]);
});

test('items are taken up to their largest, and a refused one leaves the old one as it was', async () => {
  const x = (length) => 'x'.repeat(length);
  const glossary = (...entries) => ({ name: 'n', entries });
  const cases = [
    ['glossaries', { name: x(200) }, { name: x(201) }],
    ['glossaries', glossary(entry(x(1000))), glossary(entry(x(1001)))],
    ['glossaries', glossary(entry('a', x(1000))), glossary(entry('a', x(1001)))],
    ['glossaries', glossary(entry('a', '', { note: x(2000) })), glossary(entry('a', '', { note: x(2001) }))],
    ['glossaries', glossary(...Array(2000).fill({ source: 'a' })), glossary(...Array(2001).fill({ source: 'a' }))],
    ['instructions', { content: x(20000) }, { content: x(20001) }],
    ['glossaries', glossary(entry('a')), glossary(entry(' '))],
    ['glossaries', glossary(entry('a', '')), glossary({ target: 'a' })],
    ['glossaries', glossary(entry('a')), glossary(entry('a', 7))],
    ['glossaries', glossary(entry('a')), glossary(entry('a', 'b', { enabled: 1 }))],
    ['glossaries', glossary(entry('a')), { entries: {} }],
    ['glossaries', glossary(entry('a')), [entry('a')]],
  ];
  for (const [kind, good, bad] of cases) {
    const label = JSON.stringify(bad).slice(0, 60);
    const stored = await ask('PUT', `${kind}/i`, good);
    const refused = await ask('PUT', `${kind}/i`, bad);
    assert.deepEqual([stored.statusCode, refused.statusCode, refused.json().code], [200, 400, 'bad_request'], label);
    assert.deepEqual((await ask('GET', `${kind}/i`)).json(), stored.json(), label);
  }
  assert.equal(await statusOf('PUT', 'glossaries/i', { name: x(1024 * 1024) }), 413);
  for (const [id, status] of [[x(64), 200], [x(65), 400], ['a.b', 400], ['a%2Fb', 400], ['%C3%B1', 400]]) {
    assert.equal(await statusOf('PUT', `glossaries/${id}`, {}), status, id);
  }
});

test('the fifty-first item is refused, a replacement is not', async () => {
  for (let i = 0; i < 50; i++) assert.equal(await statusOf('PUT', `instructions/${i}`, {}), 200);
  const refused = await ask('PUT', 'instructions/50', {});
  assert.deepEqual([refused.statusCode, refused.json().code], [409, 'bad_request']);
  assert.equal(await statusOf('PUT', 'instructions/49', { content: 'new' }), 200);
  assert.equal(await statusOf('PUT', 'glossaries/50', {}), 200);
});

test('items belong to their user, who finds them again after the next sign-in', async () => {
  const signIn = async (who) =>
    (
      await app.inject({
        method: 'POST',
        url: '/v1/auth/dev-token',
        headers: { 'content-type': 'application/json' },
        payload: JSON.stringify(who),
      })
    ).json().token;
  const first = await signIn({ name: 'Ada' });
  await ask('PUT', 'glossaries/g', { entries: [entry('tax')] }, first);
  await ask('POST', 'auth/sign-out', undefined, first);
  assert.equal(await statusOf('GET', 'glossaries/g', undefined, first), 401);
  assert.equal(await statusOf('GET', 'glossaries/g', undefined, await signIn({ name: 'Ada' })), 200);
  const question = { glossaryIds: ['g'], corpusTexts: ['tax'] };
  for (const other of [await signIn({ name: 'Eve' }), await signIn({ email: 'Ada@example.org' }), 'dev-ada']) {
    assert.equal(await statusOf('GET', 'glossaries/g', undefined, other), 404);
    assert.equal(await statusOf('DELETE', 'glossaries/g', undefined, other), 404);
    assert.deepEqual((await resolve(question, other)).entries, []);
  }
});

test('every answer about terminology needs a token, and is kept by nobody', async () => {
  for (const [method, url, body] of [
    ['GET', 'glossaries'],
    ['GET', 'instructions/i'],
    ['PUT', 'glossaries/g', {}],
    ['DELETE', 'instructions/i'],
    ['POST', 'terminology/resolve', {}],
  ]) {
    for (const token of [null, 'stranger']) {
      const refused = await ask(method, url, body, token);
      assert.deepEqual([refused.statusCode, refused.json().code], [401, 'unauthorized'], url);
    }
    assert.equal((await ask(method, url, body)).headers['cache-control'], 'no-store', url);
  }
});

test('resolving gives the enabled entries that occur in the texts, whole, and the instruction', async () => {
  const tax = entry('income tax', 'impuesto sobre la renta', { note: 'n' });
  await ask('PUT', 'glossaries/a', { entries: [entry('tax', 'first'), tax, entry('rate', 'x', { enabled: false })] });
  await ask('PUT', 'glossaries/b', { entries: [entry('tax', 'second'), entry('Rate'), entry('absent')] });
  await ask('PUT', 'instructions/i', { content: 'Be formal.' });
  const corpusTexts = ['Income tax rate', 'more'];
  const cases = [
    [{ glossaryIds: ['a', 'b'], instructionId: 'i', corpusTexts }, [tax, entry('tax', 'first')], 'Be formal.'],
    [{ glossaryIds: ['b', 'a'], instructionId: null, corpusTexts }, [tax, entry('tax', 'second')], ''],
    [{ glossaryIds: ['gone', 'b'], instructionId: 'gone', corpusTexts }, [entry('tax', 'second')], ''],
    [{ glossaryIds: ['a'], corpusTexts, maxEntries: 1 }, [tax], ''],
    [{ glossaryIds: ['a'], corpusTexts: [] }, [], ''],
    [{ glossaryIds: [], instructionId: 'i', corpusTexts: [], maxEntries: 200 }, [], 'Be formal.'],
  ];
  for (const [question, entries, instruction] of cases) {
    assert.deepEqual(await resolve(question), { entries, instruction }, JSON.stringify(question));
  }
});

test('at most 200 entries are resolved, however many are asked for', async () => {
  const sources = Array.from({ length: 250 }, (_, i) => `w${i}`);
  await ask('PUT', 'glossaries/g', { entries: sources.map((source) => entry(source)) });
  for (const maxEntries of [undefined, 200, 1000]) {
    const { entries } = await resolve({ glossaryIds: ['g'], corpusTexts: [sources.join(' ')], maxEntries });
    assert.equal(entries.length, 200);
  }
});

test('a broken question is refused', async () => {
  const broken = [
    null,
    [],
    { glossaryIds: 'g' },
    { glossaryIds: [1] },
    { instructionId: 1 },
    { corpusTexts: [null] },
    { maxEntries: 0 },
    { maxEntries: 1.5 },
    { maxEntries: '200' },
  ];
  for (const body of broken) {
    const refused = await app.inject({
      method: 'POST',
      url: '/v1/terminology/resolve',
      headers: { authorization: 'Bearer dev-ada' },
      payload: JSON.stringify(body),
    });
    assert.deepEqual([refused.statusCode, refused.json().code], [400, 'bad_request'], JSON.stringify(body));
  }
});
