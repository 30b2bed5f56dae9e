/** Puts a streamed chat completion together. Nothing here touches the page. */

/** Longer answers, arguments of tools included, are cut off: no reader gets through them. In UTF-16 code units. */
export const MAX_ANSWER_LENGTH = 200000;

/** @typedef {{id: string, name: string, arguments: string}} ToolCall the arguments are JSON text */

/** An answer that cannot be used; `code` is one of chat_failures.js, or the endpoint's. */
export class ChatFailure extends Error {
  /** @param {{status?: number, code?: string, message?: string}} what status is 0 where there was no answer */
  constructor({ status = 0, code = '', message = '' }) {
    super(message);
    this.status = status;
    this.code = code;
  }
}

/** @param {number} status @param {any} answer with an `error` as OpenAI's endpoints write it */
export function failureOf(status, answer) {
  const error = answer?.error ?? {};
  const code = typeof error.code === 'string' ? error.code : '';
  return new ChatFailure({ status, code, message: typeof error.message === 'string' ? error.message : '' });
}

/** One answer, as far as it has come. */
export class Completion {
  text = '';
  /** @type {ToolCall[]} */
  calls = [];
  /** The model has said all that it wanted to say. */
  whole = false;
  #rest = '';
  #length = 0;

  /** @param {string} piece of the stream of events, cut anywhere */
  push(piece) {
    const lines = (this.#rest + piece).split('\n');
    this.#rest = lines.pop();
    for (const line of lines) this.#takeLine(line.trimEnd());
  }

  /** @param {any} answer that came in one piece */
  takeWhole(answer) {
    const message = answer?.choices?.[0]?.message;
    if (!message) throw new ChatFailure({ code: 'broken' });
    this.#takeDelta({ ...message, tool_calls: message.tool_calls?.map((call, index) => ({ index, ...call })) });
    this.whole = true;
  }

  #takeLine(line) {
    if (!line.startsWith('data:')) return;
    const data = line.slice('data:'.length).trim();
    if (data === '[DONE]') {
      this.whole = true;
      return;
    }
    const event = readJson(data);
    if (event.error) throw failureOf(0, event);
    const choice = event.choices?.[0];
    this.#takeDelta(choice?.delta ?? {});
    if (choice?.finish_reason) this.whole = true;
  }

  #takeDelta({ content, tool_calls: parts }) {
    if (typeof content === 'string') {
      this.text += content;
      this.#count(content);
    }
    for (const part of parts ?? []) this.#takePart(part);
  }

  /** A part names its call by the index; the name comes once, the arguments in pieces. */
  #takePart({ index, id, function: named }) {
    // Some endpoints leave the index out and send each call in one piece.
    const at = index ?? (id ? this.calls.length : this.calls.length - 1);
    if (at < 0 || at > this.calls.length) throw new ChatFailure({ code: 'broken' });
    this.calls[at] ??= { id: '', name: '', arguments: '' };
    const call = this.calls[at];
    if (id) call.id = id;
    if (named?.name) call.name = named.name;
    call.arguments += named?.arguments ?? '';
    this.#count(named?.arguments ?? '');
  }

  #count({ length }) {
    this.#length += length;
    if (this.#length > MAX_ANSWER_LENGTH) throw new ChatFailure({ code: 'answer_too_long' });
  }
}

function readJson(text) {
  try {
    return JSON.parse(text) ?? {};
  } catch {
    throw new ChatFailure({ code: 'broken' });
  }
}
