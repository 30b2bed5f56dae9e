/**
 * Asks for chat completions with OpenAI's own client, for tests in other languages. Reads one JSON object from standard
 * input, `{baseURL, apiKey, calls}`, and writes one JSON line a call. A call holds what the client is asked for, and
 * perhaps `leaveAfter`: the number of pieces of a stream after which the client leaves.
 *
 * An answer is `{message, finish}`, a streamed one `{pieces, finish}` with each piece's delta and its time in ms since
 * the request, a failure `{status, type, message}`, beside the pieces that came before it.
 */
import { text } from 'node:stream/consumers';

import OpenAI from 'openai';

const TIME_LIMIT_MS = 60000;

async function readStream(stream, leaveAfter, answer) {
  const start = performance.now();
  answer.pieces = [];
  for await (const { choices } of stream) {
    const [{ delta, finish_reason: finish }] = choices;
    answer.pieces.push({ delta, ms: performance.now() - start });
    if (finish) answer.finish = finish;
    if (answer.pieces.length === leaveAfter) break;
  }
}

async function ask(client, { leaveAfter, ...request }) {
  const answer = {};
  try {
    const given = await client.chat.completions.create(request);
    if (request.stream) {
      await readStream(given, leaveAfter, answer);
    } else {
      const [{ message, finish_reason: finish }] = given.choices;
      Object.assign(answer, { message, finish });
    }
  } catch (error) {
    Object.assign(answer, { status: error.status ?? null, type: error.type ?? null, message: error.message });
  }
  return answer;
}

const { baseURL, apiKey, calls } = JSON.parse(await text(process.stdin));
const client = new OpenAI({ baseURL, apiKey, maxRetries: 0, timeout: TIME_LIMIT_MS });
for (const call of calls) process.stdout.write(`${JSON.stringify(await ask(client, call))}\n`);
