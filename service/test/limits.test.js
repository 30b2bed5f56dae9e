import assert from 'node:assert/strict';
import { after, test } from 'node:test';

import { buildApp } from '../app.js';
import { EchoEngine } from '../translate/echo.js';

const app = buildApp({ engine: new EchoEngine(), faults: true });
after(() => app.close());

const post = (url, body, headers = {}) =>
  app.inject({
    method: 'POST',
    url,
    headers: { authorization: 'Bearer dev-secret-1234', ...headers },
    payload: JSON.stringify(body),
  });
const statusOf = async (...request) => (await post(...request)).statusCode;

test('languages and instructions are taken up to their longest', async () => {
  const body = { texts: ['x'], sourceLang: 'en', targetLang: 'de' };
  for (const [name, longest] of [
    ['sourceLang', 35],
    ['targetLang', 35],
    ['instruction', 20000],
  ]) {
    assert.equal(await statusOf('/v1/translate', { ...body, [name]: 'x'.repeat(longest) }), 200, name);
    const refused = await post('/v1/translate', { ...body, [name]: 'x'.repeat(longest + 1) });
    assert.deepEqual([refused.statusCode, refused.json().code], [400, 'bad_request'], name);
  }
});

test('usage events are objects, and few enough to keep', async () => {
  const url = '/v1/analytics/events';
  assert.equal(await statusOf(url, { events: [{ name: 'x' }] }), 204);
  for (const event of [7, 'x', null, []]) assert.equal(await statusOf(url, { events: [{}, event] }), 400);
  const bytes = (count) => ({ events: [{ x: 'x'.repeat(count - '{"events":[{"x":""}]}'.length) }] });
  assert.equal(await statusOf(url, bytes(65536)), 204);
  assert.equal(await statusOf(url, bytes(65537)), 413);
});

test('the record of requests shows the end of a token only', async () => {
  await post('/v1/translate', {});
  await post('/v1/translate', {}, { authorization: 'dev-secret-5678' });
  const recorded = await app.inject({ url: '/control/requests' });
  const seen = recorded.json().map(({ headers }) => headers.authorization);
  assert.deepEqual(seen.slice(-2), ['Bearer …1234', '…5678']);
  assert.ok(!recorded.body.includes('secret'));
});
