import http from 'node:http';
import https from 'node:https';
import { pipeline } from 'node:stream/promises';

import { tokenRefusal } from './auth.js';
import { logLine } from './log.js';
import { isObject, parseJson } from './validation.js';

const PATH = '/v1/agents/chat-completions';

/** A conversation with pictures in it is long. */
const BODY_LIMIT_BYTES = 32 * 1024 * 1024;
/** A model may think for minutes before it says its first word. */
const SILENCE_LIMIT_MS = 600000;

/** What of an answer's head concerns the client. */
const PASSED_ON = /^(content-(type|length|encoding)|cache-control|retry-after|x-request-id|x-ratelimit-.*)$/;

/** A refusal in the shape that OpenAI's clients know. */
class ChatError extends Error {
  constructor(status, type, code, message) {
    super(message);
    this.status = status;
    this.body = { error: { message, type, param: null, code } };
  }
}

const REFUSALS = {
  401: ['unauthorized', 'not_signed_in', 'not signed in'],
  402: ['insufficient_credits', 'insufficient_credits', 'the credits are used up'],
};

const notConfigured = () =>
  new ChatError(
    503,
    'server_error',
    'model_not_configured',
    'No language model is configured. Start the service with QV_LLM_BASE_URL and QV_LLM_MODEL, and QV_LLM_API_KEY ' +
      'where one is needed.',
  );

/**
 * Hands chat completions on to the configured endpoint: the request as it came but for the model, which is the
 * service's to choose; the answer byte for byte as it comes, errors too.
 * @param {import('fastify').FastifyInstance} app
 * @param {import('./accounts.js').Accounts} accounts
 * @param {import('./language_model.js').LanguageModel | null} languageModel
 */
export function registerAgents(app, accounts, languageModel) {
  const errorHandler = answerChatError;
  const admit = async (request) => {
    const refusal = tokenRefusal(request.headers.authorization, accounts);
    if (refusal) throw new ChatError(refusal.status, ...REFUSALS[refusal.status]);
    if (!languageModel) throw notConfigured();
  };
  // Lets the chat say beforehand that there is nobody to talk to.
  app.get(PATH, { errorHandler, onRequest: admit }, async (request, reply) => {
    reply.header('Cache-Control', 'no-store');
    return { model: languageModel.model };
  });
  app.post(PATH, { errorHandler, onRequest: admit, bodyLimit: BODY_LIMIT_BYTES }, (request, reply) =>
    handOn(request, reply, languageModel),
  );
}

async function handOn(request, reply, languageModel) {
  const gone = new AbortController();
  reply.raw.once('close', () => gone.abort());
  const body = withModel(request.body, languageModel.model);
  const answer = await ask(languageModel, body, request.headers.accept, gone.signal);
  reply.hijack();
  await relay(answer, reply.raw);
  return reply;
}

/** @param {Buffer | undefined} body @returns {Buffer} the same bytes wherever possible */
function withModel(body, model) {
  const chat = readChat(body);
  if (chat.model === model) return body;
  if (Object.hasOwn(chat, 'model')) return Buffer.from(JSON.stringify({ ...chat, model }));
  const start = body.indexOf('{') + 1;
  const comma = Object.keys(chat).length > 0 ? ',' : '';
  const added = Buffer.from(`"model":${JSON.stringify(model)}${comma}`);
  return Buffer.concat([body.subarray(0, start), added, body.subarray(start)]);
}

function readChat(body) {
  let chat = null;
  try {
    chat = parseJson(body);
  } catch {
    // Refused below.
  }
  if (!isObject(chat)) {
    throw new ChatError(400, 'invalid_request_error', 'bad_request', 'the body must be a JSON object');
  }
  return chat;
}

/** @returns {Promise<http.IncomingMessage>} the head of the answer, its body still to come */
function ask({ baseUrl, apiKey }, body, accept, signal) {
  const headers = { 'Content-Type': 'application/json', 'Content-Length': body.length };
  if (accept) headers.Accept = accept;
  if (apiKey) headers.Authorization = `Bearer ${apiKey}`;
  const { request } = baseUrl.startsWith('https:') ? https : http;
  return new Promise((resolve, reject) => {
    const fail = (error) =>
      reject(new ChatError(502, 'upstream_error', 'model_unreachable', `The language model failed: ${error.message}`));
    try {
      const asked = request(`${baseUrl}/chat/completions`, { method: 'POST', headers, signal }, resolve);
      asked.setTimeout(SILENCE_LIMIT_MS, () => asked.destroy(new Error('it says nothing')));
      asked.on('error', fail).end(body);
    } catch (error) {
      fail(error);
    }
  });
}

/** An answer that breaks off leaves the client with a broken one too, never with one that looks whole. */
async function relay(answer, response) {
  response.statusCode = answer.statusCode;
  for (const [name, value] of Object.entries(answer.headers)) {
    if (PASSED_ON.test(name)) response.setHeader(name, value);
  }
  if (endsWithItsConnection(answer)) {
    response.removeHeader('Transfer-Encoding');
    response.setHeader('Connection', 'close');
  }
  response.flushHeaders();
  await pipeline(answer, response).catch((error) => logLine(`chat completion broke off: ${error.message}`));
}

const endsWithItsConnection = ({ headers }) =>
  headers['transfer-encoding'] === undefined && headers['content-length'] === undefined;

function answerChatError(error, request, reply) {
  if (error instanceof ChatError) return reply.code(error.status).send(error.body);
  const tooLarge = error.statusCode === 413;
  if (!tooLarge) process.stderr.write(`${error.stack}\n`);
  const { status, body } = tooLarge
    ? new ChatError(413, 'invalid_request_error', 'content_too_long', 'Request too large')
    : new ChatError(500, 'server_error', 'internal_error', 'internal error');
  return reply.code(status).send(body);
}
