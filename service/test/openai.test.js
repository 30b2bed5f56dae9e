import assert from 'node:assert/strict';
import http from 'node:http';
import { afterEach, test } from 'node:test';

import { OpenAiEngine } from '../translate/openai.js';

let server;
afterEach(() => server?.close());

/** An endpoint that answers each request with the next of `answers`: the content of a message, or a status. */
async function engineFor(answers, asked = []) {
  server = http.createServer(async (request, response) => {
    let text = '';
    for await (const chunk of request) text += chunk;
    asked.push({ url: request.url, authorization: request.headers.authorization, body: JSON.parse(text) });
    const answer = answers.shift();
    if (typeof answer === 'number') response.writeHead(answer).end();
    else response.end(JSON.stringify({ choices: [{ message: { content: answer } }] }));
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  return OpenAiEngine.fromEnvironment({
    QV_LLM_BASE_URL: `http://127.0.0.1:${server.address().port}/v1/`,
    QV_LLM_API_KEY: 'secret',
    QV_LLM_MODEL: 'm',
  });
}

const JOB = { texts: ['one', 'two'], sourceLang: 'en', targetLang: 'es', glossary: [], instruction: '' };

test('glossary, note, instruction and texts reach the model', async () => {
  const asked = [];
  const engine = await engineFor(['["uno","dos"]'], asked);
  const glossary = [{ source: 'two', target: 'dos', note: 'number' }];
  assert.deepEqual(await engine.translate({ ...JOB, glossary, instruction: 'Be formal.' }), ['uno', 'dos']);
  const [{ url, authorization, body }] = asked;
  assert.equal(url, '/v1/chat/completions');
  assert.equal(authorization, 'Bearer secret');
  assert.equal(body.model, 'm');
  assert.match(body.messages[0].content, /two = dos \(number\)/);
  assert.match(body.messages[0].content, /Be formal\./);
  assert.deepEqual(JSON.parse(body.messages[1].content), ['one', 'two']);
});

test('a list inside a code fence is found, and a wrong count is asked for again', async () => {
  const engine = await engineFor(['["uno"]', 'Here:\n```json\n["uno", "dos"]\n```']);
  assert.deepEqual(await engine.translate(JOB), ['uno', 'dos']);
});

test('what is no list of texts, and a failing endpoint, are failures of the engine', async () => {
  for (const answers of [['sorry', '[1,2]'], [500]]) {
    const engine = await engineFor(answers);
    await assert.rejects(engine.translate(JOB), { status: 502, code: 'engine_failed' });
    server.close();
  }
});

test('the model must be named', () => {
  assert.throws(() => OpenAiEngine.fromEnvironment({ QV_LLM_BASE_URL: 'http://127.0.0.1:1' }), /QV_LLM_MODEL/);
});
