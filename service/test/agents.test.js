/** The way of a chat completion through the service, asked for by OpenAI's own client. */
import assert from 'node:assert/strict';
import { afterEach, beforeEach, test } from 'node:test';

import OpenAI from 'openai';

import { buildApp } from '../app.js';
import { FRAMING_NAMES, ScriptedModel } from '../scripted_model.js';
import { EchoEngine } from '../translate/echo.js';

const HELLO = [{ role: 'user', content: 'Hello' }];

let model;
let app;
let origin;
let client;

/** The service in front of `languageModel`, and a client that believes the service to be OpenAI. */
async function open(languageModel) {
  app = buildApp({ engine: new EchoEngine(), languageModel });
  await app.listen({ host: '127.0.0.1', port: 0 });
  origin = `http://127.0.0.1:${app.server.address().port}`;
  client = clientOf('dev-ada');
}

const clientOf = (apiKey) =>
  new OpenAI({
    baseURL: `${origin}/v1`,
    apiKey,
    maxRetries: 0,
    // OpenAI's path is "/chat/completions"; the service keeps it for agents.
    fetch: (url, init) => fetch(String(url).replace('/chat/completions', '/agents/chat-completions'), init),
  });

const settings = () => ({ baseUrl: model.baseUrl, model: 'm', apiKey: 'secret' });
const complete = (more = {}, by = client) => by.chat.completions.create({ model: 'm', messages: HELLO, ...more });
const post = (body, url = `${origin}/v1/agents/chat-completions`, more = {}) =>
  fetch(url, { method: 'POST', headers: { Authorization: 'Bearer dev-ada' }, body, ...more });

async function deltasOf(stream) {
  const deltas = [];
  for await (const { choices } of stream) deltas.push(choices[0].delta);
  return deltas;
}

/** Lets others work until it is so; the test's own limit ends what never is. */
async function until(isSo) {
  while (!isSo()) await new Promise((resolve) => setTimeout(resolve, 1));
}

beforeEach(async () => {
  model = await ScriptedModel.start();
  await open(settings());
});
afterEach(async () => {
  await app.close();
  await model.close();
});

test('an answer in one piece, and the endpoint gets its own key and model', async () => {
  model.script([{ say: 'Good morning' }]);
  const { choices } = await complete({ model: 'quorvantis/any', temperature: 0.5 });
  assert.deepEqual([choices[0].message.content, choices[0].finish_reason], ['Good morning', 'stop']);
  const [{ headers, body }] = model.requests;
  assert.equal(headers.authorization, 'Bearer secret');
  assert.deepEqual(body, { model: 'm', temperature: 0.5, messages: HELLO });
});

test('a stream brings each word as it is said', async () => {
  model.script([{ say: 'one' }, { stall: true }]);
  const stream = await complete({ stream: true });
  const { value } = await stream[Symbol.asyncIterator]().next();
  assert.equal(value.choices[0].delta.content, 'one', 'while the model says nothing more');
  stream.controller.abort();
  model.script([{ say: 'one two three', everyMs: 1 }]);
  const deltas = await deltasOf(await complete({ stream: true }));
  assert.deepEqual(
    deltas.map(({ content }) => content).filter((content) => content !== undefined),
    ['one', ' two', ' three'],
  );
});

test('tools go there, and calls of them come back', async () => {
  const tools = [{ type: 'function', function: { name: 'excelReadRange', parameters: { type: 'object' } } }];
  const call = { call: 'excelReadRange', arguments: { range: 'A1:B2' } };
  model.script([call], [{ say: 'I look. ' }, call, call]);
  const whole = await complete({ tools });
  const { function: called } = whole.choices[0].message.tool_calls[0];
  assert.deepEqual(JSON.parse(called.arguments), { range: 'A1:B2' });
  assert.equal(whole.choices[0].finish_reason, 'tool_calls');
  assert.deepEqual(model.requests[0].body.tools, tools);
  const deltas = await deltasOf(await complete({ tools, stream: true }));
  const parts = deltas.flatMap(({ tool_calls: calls }) => calls ?? []);
  const second = parts.filter(({ index }) => index === 1).map((part) => part.function.arguments);
  assert.equal(second.join(''), '{"range":"A1:B2"}');
});

test('refusals of the endpoint pass as they are', async () => {
  const cases = [
    [400, OpenAI.BadRequestError],
    [401, OpenAI.AuthenticationError],
    [429, OpenAI.RateLimitError],
    [500, OpenAI.InternalServerError],
  ];
  for (const [fail, kind] of cases) {
    model.script([{ fail, message: `because of ${fail}`, retryAfter: 7 }]);
    await assert.rejects(complete({ stream: true }), (error) => {
      assert.ok(error instanceof kind, String(fail));
      assert.equal(error.error.message, `because of ${fail}`);
      assert.equal(error.headers.get('retry-after'), '7');
      return true;
    });
  }
});

test('an answer that breaks off is a failure for the client, too', async () => {
  model.script([{ say: 'one two' }, { die: true }], [{ die: true }]);
  await assert.rejects(async () => deltasOf(await complete({ stream: true })));
  await assert.rejects(complete(), { status: 502, code: 'model_unreachable' });
});

test('a client that leaves ends the request to the model', async () => {
  // Before the head of the answer, and in the middle of it.
  for (const body of ['{}', '{"stream":true}']) {
    model.forget();
    model.script([{ say: 'one' }, { stall: true }]);
    const leaving = new AbortController();
    const asked = post(body, undefined, { signal: leaving.signal }).then((answer) => answer.text());
    await until(() => model.requests.length > 0);
    leaving.abort();
    await assert.rejects(asked);
    await until(() => model.requests[0].left);
  }
});

test('the bytes are the same as without the service, whatever the framing', async () => {
  for (const framing of FRAMING_NAMES) {
    const framed = await ScriptedModel.start({ framing });
    const service = buildApp({ engine: new EchoEngine(), languageModel: { baseUrl: framed.baseUrl, model: 'm' } });
    await service.listen({ host: '127.0.0.1', port: 0 });
    const url = `http://127.0.0.1:${service.server.address().port}/v1/agents/chat-completions`;
    const steps = [{ say: 'Größe 漢字 🎉', everyMs: 1 }, { call: 'excelListSheets' }];
    framed.script(steps, steps);
    const body = '{"model":"m","stream":true}';
    const direct = await post(body, `${framed.baseUrl}/chat/completions`);
    const relayed = await post(body, url);
    assert.equal(relayed.headers.get('content-type'), 'text/event-stream');
    assert.equal(relayed.headers.get('transfer-encoding'), direct.headers.get('transfer-encoding'), framing);
    assert.equal(direct.headers.get('transfer-encoding'), framing === 'close' ? null : 'chunked');
    const text = await relayed.text();
    assert.equal(text, await direct.text());
    assert.equal(text.includes('\n\n:\n\n'), framing === 'comments');
    await service.close();
    await framed.close();
  }
});

test('a stream of 50 MB and a request of 8 MB arrive whole', async () => {
  const size = 50 * 1024 * 1024;
  model.script([{ flood: size }]);
  let told = 0;
  for await (const { choices } of await complete({ stream: true })) told += choices[0].delta.content?.length ?? 0;
  assert.equal(told, size);
  model.script([{ say: 'ok' }]);
  await complete({ messages: [{ role: 'user', content: 'x'.repeat(8 * 1024 * 1024) }] });
  assert.equal(model.requests[1].body.messages[0].content.length, 8 * 1024 * 1024);
  const answer = await post('x'.repeat(33 * 1024 * 1024)).catch(() => null);
  // The service may hang up before it has read everything.
  if (answer) assert.deepEqual([answer.status, (await answer.json()).error.code], [413, 'content_too_long']);
});

test('the body stays as it was written but for the model', async () => {
  const raw = async (body) => {
    model.script([{ say: 'ok' }]);
    await (await post(body)).text();
    return model.requests.at(-1);
  };
  const length = async (body) => Number((await raw(body)).headers['content-length']);
  assert.equal(await length('{ "seed": 1.0, "model": "m" }'), '{ "seed": 1.0, "model": "m" }'.length);
  assert.equal(await length(' {"seed": 1.0}'), ' {"model":"m","seed": 1.0}'.length);
  assert.deepEqual((await raw('{}')).body, { model: 'm' });
});

test('who is not signed in, has no credits, or sends no JSON is refused in the shape of OpenAI', async () => {
  const refusals = [
    ['nobody', 401, 'not_signed_in'],
    ['dev-broke', 402, 'insufficient_credits'],
  ];
  for (const [key, status, code] of refusals) {
    await assert.rejects(complete({}, clientOf(key)), { status, code });
  }
  for (const body of ['', 'x', '[]', '7', 'null']) {
    const answer = await post(body);
    assert.deepEqual([answer.status, (await answer.json()).error.type], [400, 'invalid_request_error'], body);
  }
  assert.deepEqual(model.requests, []);
});

test('without a language model it is said how to name one, beforehand as well', async () => {
  const url = '/v1/agents/chat-completions';
  const headers = { authorization: 'Bearer dev-ada' };
  assert.deepEqual((await app.inject({ url, headers })).json(), { model: 'm' });
  assert.equal((await app.inject({ url })).statusCode, 401);
  await app.close();
  await open(null);
  await assert.rejects(complete(), (error) => {
    assert.deepEqual([error.status, error.code, error.type], [503, 'model_not_configured', 'server_error']);
    assert.match(error.message, /QV_LLM_BASE_URL and QV_LLM_MODEL/);
    return true;
  });
  assert.equal((await app.inject({ url, headers })).json().error.code, 'model_not_configured');
});

test('an endpoint that is not there, or has no address, is the service’s failure', async () => {
  for (const baseUrl of ['http://127.0.0.1:1', 'nonsense']) {
    await app.close();
    await open({ baseUrl, model: 'm' });
    await assert.rejects(complete(), { status: 502, code: 'model_unreachable' });
  }
});
