import { performance } from 'node:perf_hooks';

const KEPT_REQUESTS = 5000;
const SHOWN_OF_TOKEN = 4;
/** The record's own requests, and the files of the panel's pages. */
const NOT_KEPT = /^\/(control|panel)\//;

/** Milliseconds since 1970 with fractions: never going back, and comparable with what other processes measure. */
export function nowMs() {
  return performance.timeOrigin + performance.now();
}

/** Keeps what was asked of the service, and when, for tests to look at. */
export class RequestRecorder {
  #entries = [];

  /** @param {import('fastify').FastifyInstance} app */
  attach(app) {
    app.addHook('onRequest', async (request, reply) => {
      if (NOT_KEPT.test(request.url)) return;
      const entry = {
        method: request.method,
        path: request.url,
        headers: masked(request.headers),
        body: null,
        startMs: nowMs(),
        endMs: null,
        status: null,
      };
      request.recorded = entry;
      this.#entries.push(entry);
      if (this.#entries.length > KEPT_REQUESTS) this.#entries.shift();
      reply.raw.once('close', () => {
        entry.endMs = nowMs();
        // A status of null: the client never got a whole answer.
        if (reply.raw.writableFinished) entry.status = reply.raw.statusCode;
      });
    });
    app.addHook('preHandler', async (request) => {
      if (request.recorded && request.body) request.recorded.body = readable(request.body);
    });
  }

  /** @returns {object[]} in the order of arrival; requests still open have an `endMs` of null */
  entries() {
    return this.#entries;
  }

  clear() {
    this.#entries = [];
  }
}

/** Tests tell tokens apart by their ends; nobody needs more of them. */
function masked(headers) {
  if (!headers.authorization) return headers;
  const [, scheme = '', secret] = /^(Bearer )?(.*)$/is.exec(headers.authorization);
  return { ...headers, authorization: `${scheme}…${secret.slice(-SHOWN_OF_TOKEN)}` };
}

/** The JSON value of a body, or its text where it is no JSON. */
function readable(body) {
  const text = body.toString('utf8');
  try {
    return JSON.parse(text);
  } catch {
    return text;
  }
}
