/** Asks the service for chat completions. */
import { ChatFailure, Completion, failureOf } from './chat_stream.js';

const PATH = '/v1/agents/chat-completions';

const headersFor = (token) => ({ Authorization: `Bearer ${token}` });

/**
 * @param {string} token
 * @returns {Promise<boolean>} false when the service says that it has no language model
 */
export async function hasModel(token) {
  try {
    const answer = await fetch(PATH, { headers: headersFor(token) });
    return answer.status !== 503 || failureOf(503, await readAnswer(answer)).code !== 'model_not_configured';
  } catch {
    return true;
  }
}

/**
 * Asks for the next part of a conversation.
 * @param {{messages: object[], tools: object[]}} question
 * @param {{token: string, signal: AbortSignal, onProgress: (completion: Completion) => void}} options
 * @returns {Promise<Completion>} rejected with a ChatFailure, or with an AbortError once `signal` says so
 */
export async function complete({ messages, tools }, { token, signal, onProgress }) {
  const body = JSON.stringify({ messages, tools, stream: true });
  const headers = { ...headersFor(token), 'Content-Type': 'application/json', Accept: 'text/event-stream' };
  const answer = await orFailure('network_error', signal, () =>
    fetch(PATH, { method: 'POST', headers, body, signal }),
  );
  if (!answer.ok) throw failureOf(answer.status, await readAnswer(answer));
  const completion = new Completion();
  if (/json/.test(answer.headers.get('Content-Type') ?? '')) completion.takeWhole(await readAnswer(answer));
  else await readStream(answer.body, completion, { signal, onProgress });
  if (!completion.whole) throw new ChatFailure({ code: 'broken' });
  onProgress(completion);
  return completion;
}

async function readStream(body, completion, { signal, onProgress }) {
  const reader = body.pipeThrough(new TextDecoderStream()).getReader();
  try {
    for (;;) {
      const { done, value } = await orFailure('broken', signal, () => reader.read());
      if (done) return;
      completion.push(value);
      onProgress(completion);
    }
  } finally {
    // What is still to come of an answer that cannot be used is not wanted.
    reader.cancel().catch(() => {});
  }
}

async function orFailure(code, signal, act) {
  try {
    return await act();
  } catch (error) {
    signal.throwIfAborted();
    throw new ChatFailure({ code, message: error.message });
  }
}

async function readAnswer(answer) {
  return answer.json().catch(() => null);
}
