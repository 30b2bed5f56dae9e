#!/usr/bin/env node
import { once } from 'node:events';
import { readFileSync } from 'node:fs';
import http from 'node:http';
import { setTimeout as sleep } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';

import { logLine } from './log.js';

/** Of the pieces that a flood is made of. */
const FLOOD_PIECE_BYTES = 16 * 1024;
const CREATED = 1700000000;

/** How the events of a stream are framed. */
const FRAMINGS = {
  // Each event is a chunk.
  chunked: { before: () => {}, after: '' },
  // The answer ends with its connection.
  close: { before: endWithConnection, after: '' },
  // Each event is a chunk, and so is a comment behind it, for clients that hand a chunk on when the next one is there.
  comments: { before: () => {}, after: ':\n\n' },
};
export const FRAMING_NAMES = Object.keys(FRAMINGS);

function endWithConnection(response) {
  response.removeHeader('Transfer-Encoding');
  response.setHeader('Connection', 'close');
}

/**
 * One answer is a list of steps; each request takes the next answer.
 * @typedef {object} Step has one of
 * @property {string} [say] words, told one after the other
 * @property {string} [call] name of a tool to call, with `arguments` (any JSON value, or a text that is sent as it is)
 * @property {number} [fail] status to refuse with, and perhaps `message` and `retryAfter` (seconds); as the first step
 * @property {number | true} [stall] milliseconds of silence, true until the client leaves
 * @property {true} [die] cuts the connection
 * @property {number} [flood] bytes of words to tell, as fast as they are taken
 * @property {number} [everyMs] pause before each word of `say`
 */

/**
 * A language model that says what a script tells it to, by OpenAI's chat completions: streamed, or in one piece.
 * Listens on loopback only.
 */
export class ScriptedModel {
  #answers = [];
  #framing;
  /** @type {http.Server} */
  server;
  /** What was asked: `{headers, body}`, and `left` once the client was gone before the answer's end. */
  requests = [];

  /**
   * @param {{answers?: Step[][], framing?: string, port?: number}} [options]
   * @returns {Promise<ScriptedModel>}
   */
  static async start({ answers = [], framing = 'chunked', port = 0 } = {}) {
    const model = new ScriptedModel(framing);
    model.script(...answers);
    model.server.listen(port, '127.0.0.1');
    await once(model.server, 'listening');
    return model;
  }

  constructor(framing) {
    this.#framing = FRAMINGS[framing];
    this.server = http.createServer((request, response) => void this.#answer(request, response));
  }

  get baseUrl() {
    return `http://127.0.0.1:${this.server.address().port}/v1`;
  }

  /** How many answers were not asked for yet. */
  get waiting() {
    return this.#answers.length;
  }

  /** @param {...Step[]} answers added behind those that wait */
  script(...answers) {
    this.#answers.push(...answers);
  }

  /** Drops the answers that wait, and the record of what was asked. */
  forget() {
    this.#answers = [];
    this.requests = [];
  }

  async close() {
    this.server.closeAllConnections();
    this.server.close();
    await once(this.server, 'close');
  }

  async #answer(request, response) {
    const chunks = [];
    for await (const chunk of request) chunks.push(chunk);
    const body = readJson(Buffer.concat(chunks));
    const entry = { headers: request.headers, body, left: false };
    this.requests.push(entry);
    const gone = new AbortController();
    response.once('close', () => {
      entry.left = !response.writableFinished;
      gone.abort();
    });
    const steps = this.#answers.shift() ?? [{ fail: 500, message: 'the script is at its end' }];
    try {
      if (request.method !== 'POST' || !request.url.endsWith('/chat/completions')) refuse(response, { fail: 404 });
      else if (steps[0]?.fail) refuse(response, steps[0]);
      else await new Telling(response, body, this.#framing, gone.signal).tell(steps);
    } catch (error) {
      if (!gone.signal.aborted) throw error;
    }
  }
}

function readJson(bytes) {
  try {
    return JSON.parse(bytes.toString('utf8'));
  } catch {
    return null;
  }
}

const TYPES = { 400: 'invalid_request_error', 401: 'invalid_request_error', 429: 'rate_limit_exceeded' };
const CODES = { 401: 'invalid_api_key', 429: 'rate_limit_exceeded' };

function refuse(response, { fail: status, message = `refused with ${status}`, retryAfter }) {
  const headers = { 'Content-Type': 'application/json' };
  if (retryAfter !== undefined) headers['Retry-After'] = retryAfter;
  const error = { message, type: TYPES[status] ?? 'server_error', param: null, code: CODES[status] ?? null };
  response.writeHead(status, headers).end(JSON.stringify({ error }));
}

/** One answer on its way. */
class Telling {
  #message = { role: 'assistant', content: '', tool_calls: [] };

  constructor(response, body, framing, signal) {
    Object.assign(this, { response, framing, signal });
    this.streams = body?.stream === true;
    this.head = { id: 'chatcmpl-scripted', created: CREATED, model: body?.model ?? '' };
  }

  async tell(steps) {
    if (this.streams) this.#open();
    for (const step of steps) {
      if (step.die) return void this.response.destroy();
      await this.#take(step);
    }
    const finish = this.#message.tool_calls.length > 0 ? 'tool_calls' : 'stop';
    if (this.streams) await this.#close(finish);
    else this.#answerWhole(finish);
  }

  #open() {
    this.response.setHeader('Content-Type', 'text/event-stream');
    this.response.setHeader('Cache-Control', 'no-cache');
    this.framing.before(this.response);
    this.response.flushHeaders();
  }

  async #take(step) {
    if (step.say !== undefined) await this.#say(step);
    else if (step.call !== undefined) await this.#call(step);
    else if (step.flood !== undefined) await this.#flood(step.flood);
    else if (step.stall !== undefined) await this.#stall(step.stall);
    else throw new Error(`no such step: ${JSON.stringify(step)}`);
  }

  async #say({ say, everyMs = 0 }) {
    for (const word of say.match(/\s*\S+\s*$|\s*\S+/g) ?? [say]) {
      if (everyMs > 0) await sleep(everyMs, null, { signal: this.signal });
      this.#message.content += word;
      await this.#event({ content: word });
    }
  }

  /** The arguments come in two pieces, as they may from any model. */
  async #call({ call, arguments: given = {} }) {
    const text = typeof given === 'string' ? given : JSON.stringify(given);
    const index = this.#message.tool_calls.length;
    const named = { id: `call_${index}_${call}`, type: 'function', function: { name: call, arguments: '' } };
    this.#message.tool_calls.push({ ...named, function: { name: call, arguments: text } });
    await this.#event({ tool_calls: [{ index, ...named }] });
    const middle = Math.ceil(text.length / 2);
    for (const piece of [text.slice(0, middle), text.slice(middle)]) {
      await this.#event({ tool_calls: [{ index, function: { arguments: piece } }] });
    }
  }

  async #flood(bytes) {
    for (let left = bytes; left > 0; left -= FLOOD_PIECE_BYTES) {
      const content = 'word '.repeat(FLOOD_PIECE_BYTES).slice(0, Math.min(left, FLOOD_PIECE_BYTES));
      if (this.streams) await this.#event({ content });
      else this.#message.content += content;
    }
  }

  async #stall(time) {
    if (time !== true) return sleep(time, null, { signal: this.signal });
    if (!this.signal.aborted) await once(this.signal, 'abort');
    throw this.signal.reason;
  }

  async #event(delta, finish = null) {
    if (!this.streams) return;
    const choices = [{ index: 0, delta, finish_reason: finish }];
    await this.#write(`data: ${JSON.stringify({ ...this.head, object: 'chat.completion.chunk', choices })}\n\n`);
  }

  async #write(text) {
    let room = this.response.write(text);
    if (this.framing.after) room = this.response.write(this.framing.after);
    if (!room) await once(this.response, 'drain', { signal: this.signal });
  }

  async #close(finish) {
    await this.#event({}, finish);
    await this.#write('data: [DONE]\n\n');
    this.response.end();
  }

  #answerWhole(finish) {
    const { content, tool_calls: calls } = this.#message;
    const message = { role: 'assistant', content: content || null, ...(calls.length > 0 && { tool_calls: calls }) };
    const choices = [{ index: 0, message, finish_reason: finish }];
    this.response.setHeader('Content-Type', 'application/json');
    this.response.end(JSON.stringify({ ...this.head, object: 'chat.completion', choices }));
  }
}

const USAGE = `usage: node scripted_model.js --script FILE [--port N] [--framing ${FRAMING_NAMES.join('|')}] [--leash]
FILE holds a JSON list of answers, each a list of steps; each request takes the next one.`;

async function main() {
  const { values } = parseArgs({
    options: {
      script: { type: 'string' },
      port: { type: 'string', default: '0' },
      framing: { type: 'string', default: 'chunked' },
      leash: { type: 'boolean', default: false },
    },
  });
  if (!values.script || !FRAMING_NAMES.includes(values.framing)) throw new Error(USAGE);
  const answers = JSON.parse(readFileSync(values.script, 'utf8'));
  const model = await ScriptedModel.start({ answers, framing: values.framing, port: Number(values.port) });
  if (values.leash) process.stdin.on('end', () => process.exit(0)).resume();
  process.on('SIGTERM', () => process.exit(0));
  logLine(`listening ${model.baseUrl}`);
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  main().catch((error) => {
    process.stderr.write(`${error.message}\n`);
    process.exit(1);
  });
}
