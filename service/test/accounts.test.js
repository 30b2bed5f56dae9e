import assert from 'node:assert/strict';
import { afterEach, beforeEach, test } from 'node:test';

import { buildApp } from '../app.js';
import { EchoEngine } from '../translate/echo.js';

let app;
beforeEach(() => {
  app = buildApp({ engine: new EchoEngine() });
});
afterEach(() => app.close());

const bearer = (token) => ({ authorization: `Bearer ${token}` });
const JSON_TYPE = { 'content-type': 'application/json' };
const ask = (method, url, { token, body } = {}) =>
  app.inject({
    method,
    url,
    headers: { ...(token && bearer(token)), ...(body !== undefined && JSON_TYPE) },
    payload: body && JSON.stringify(body),
  });
const signIn = (body) => ask('POST', '/v1/auth/dev-token', { body });
const account = (token) => ask('GET', '/v1/account', { token });

test('a name or an e-mail address is enough to sign in, and each sign-in has a token of its own', async () => {
  const first = (await signIn({ name: '  Ada  ' })).json();
  const second = (await signIn({ email: 'ada@example.org' })).json();
  assert.equal(first.account.name, 'Ada');
  assert.deepEqual([second.account.name, second.account.email], ['ada', 'ada@example.org']);
  assert.match(first.token, /^dev-[\w-]{32}$/);
  assert.notEqual(first.token, second.token);
  assert.deepEqual((await account(first.token)).json(), first.account);
});

test('a sign-in without a usable name is refused', async () => {
  const refused = [{}, { name: '  ' }, { name: 7 }, { name: 'a\nb' }, { email: 'x'.repeat(201) }, null];
  for (const body of refused) assert.equal((await signIn(body)).statusCode, 400, JSON.stringify(body));
  assert.equal((await signIn({ name: 'x'.repeat(200) })).statusCode, 200);
});

test('only this machine signs in, and only where the service is its own', async () => {
  const from = (headers) =>
    app.inject({ method: 'POST', url: '/v1/auth/dev-token', headers, payload: '{"name":"Ada"}' });
  const cases = [
    [{ ...JSON_TYPE, host: '127.0.0.1:8080' }, 200],
    [{ ...JSON_TYPE, host: '[::1]:8080' }, 200],
    [{ ...JSON_TYPE, host: 'localhost:8080', origin: 'https://localhost:8080' }, 200],
    [{ ...JSON_TYPE, host: 'localhost:8080', origin: 'http://localhost:8081' }, 403],
    [{ ...JSON_TYPE, origin: 'https://example.org' }, 403],
    [{ ...JSON_TYPE, origin: 'null' }, 403],
    [{ ...JSON_TYPE, host: 'example.org' }, 403],
    [{ ...JSON_TYPE, host: 'localhost.example.org' }, 403],
    [{ 'content-type': 'text/plain' }, 415],
    [{}, 415],
  ];
  for (const [headers, status] of cases) {
    assert.equal((await from(headers)).statusCode, status, JSON.stringify(headers));
  }
  const open = buildApp({ engine: new EchoEngine(), faults: true, devSignIn: false });
  const signIn = { method: 'POST', url: '/v1/auth/dev-token', headers: JSON_TYPE, payload: '{"name":"Ada"}' };
  assert.equal((await open.inject(signIn)).statusCode, 404);
  for (const url of ['/control/faults', '/control/requests']) {
    const foreign = { method: 'DELETE', url, headers: { origin: 'https://example.org' } };
    assert.equal((await open.inject(foreign)).statusCode, 403, url);
    assert.equal((await open.inject({ method: 'DELETE', url })).statusCode, 204, url);
  }
  await open.close();
});

test('answers about an account are kept by nobody', async () => {
  const answer = await signIn({ name: 'Ada' });
  assert.equal(answer.headers['cache-control'], 'no-store');
  assert.equal((await account(answer.json().token)).headers['cache-control'], 'no-store');
});

test('an account is shown to its token only', async () => {
  assert.equal((await account()).statusCode, 401);
  assert.equal((await account('stranger')).json().code, 'unauthorized');
  const stranger = await account('dev-anything');
  assert.equal(stranger.statusCode, 200);
  assert.ok(!stranger.body.includes('dev-anything'), 'no answer gives a token back');
});

test('translated characters are counted, failed requests are not', async () => {
  const { token } = (await signIn({ name: 'Ada' })).json();
  const body = { texts: ['four', 'sechs!'], sourceLang: 'en', targetLang: 'de' };
  await ask('POST', '/v1/translate', { token, body });
  await ask('POST', '/v1/translate', { token, body: { ...body, targetLang: '' } });
  assert.equal((await account(token)).json().creditsUsed, 10);
});

test('the broke token has used all it had', async () => {
  const { creditsUsed, creditsLimit } = (await account('dev-broke')).json();
  assert.equal(creditsUsed, creditsLimit);
});

test('a token that was signed out opens nothing any more', async () => {
  const { token } = (await signIn({ name: 'Ada' })).json();
  assert.equal((await ask('POST', '/v1/auth/sign-out', { token })).statusCode, 204);
  const body = { texts: ['x'], targetLang: 'de' };
  assert.equal((await account(token)).statusCode, 401);
  assert.equal((await ask('POST', '/v1/translate', { token, body })).statusCode, 401);
  assert.equal((await ask('POST', '/v1/auth/sign-out', { token })).statusCode, 401);
});
