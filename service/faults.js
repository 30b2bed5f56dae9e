import { setTimeout as sleep } from 'node:timers/promises';

import { findPlaceholders } from './translate/shields.js';

/** What a fault may hold, and how each member is checked; any other member is a mistake of the test that sent it. */
const MEMBERS = {
  status: (value) => Number.isInteger(value) && value >= 200 && value <= 599,
  body: (value) => value === null || typeof value === 'object',
  raw: (value) => typeof value === 'string',
  delayMs: (value) => Number.isFinite(value) && value >= 0 && value <= 600000,
  hang: (value) => typeof value === 'boolean',
  dropMidBody: (value) => typeof value === 'boolean',
  countMismatch: (value) => typeof value === 'boolean',
  dropPlaceholders: (value) => typeof value === 'boolean',
  match: (value) => typeof value === 'string',
  times: (value) => Number.isInteger(value) && (value > 0 || value === -1),
};

/** Faults that wait for requests. Each request uses up the first one that matches it. */
export class FaultQueue {
  #waiting = [];

  /**
   * @param {unknown} faults see docs of the members above; `times` defaults to 1, -1 is for ever
   * @returns {string | null} what is wrong with them; then none is added
   */
  add(faults) {
    if (!Array.isArray(faults)) return '"queue" must be a list';
    for (const fault of faults) {
      if (fault === null || typeof fault !== 'object') return 'a fault must be an object';
      for (const [name, value] of Object.entries(fault)) {
        if (!Object.hasOwn(MEMBERS, name)) return `a fault has no member "${name}"`;
        if (!MEMBERS[name](value)) return `"${name}" cannot be ${JSON.stringify(value)}`;
      }
    }
    this.#waiting.push(...faults.map((fault) => ({ fault, left: fault.times ?? 1 })));
    return null;
  }

  clear() {
    this.#waiting = [];
  }

  /**
   * @param {Buffer | undefined} body of the request; a fault with `match` needs a text that contains it
   * @returns {Fault | null}
   */
  take(body) {
    if (this.#waiting.length === 0) return null;
    const texts = textsOf(body);
    const index = this.#waiting.findIndex(
      ({ fault }) => fault.match === undefined || texts.some((text) => text.includes(fault.match)),
    );
    if (index < 0) return null;
    const entry = this.#waiting[index];
    if (entry.left > 0 && --entry.left === 0) this.#waiting.splice(index, 1);
    return new Fault(entry.fault);
  }
}

/** One fault on its way through one request. */
class Fault {
  /** @param {object} settings */
  constructor(settings) {
    this.settings = settings;
  }

  /** Waits as long as the fault says. */
  async delay() {
    if (this.settings.delayMs) await sleep(this.settings.delayMs);
  }

  /**
   * Answers (or leaves unanswered) in place of the service.
   * @param {import('fastify').FastifyReply} reply
   * @returns {boolean} false when the request is to be served, perhaps spoilt afterwards
   */
  answersItself(reply) {
    const { hang, dropMidBody, status, body, raw } = this.settings;
    if (hang) {
      reply.hijack();
      return true;
    }
    if (dropMidBody) {
      dropConnection(reply);
      return true;
    }
    if (status === undefined && body === undefined && raw === undefined) return false;
    reply.code(status ?? 200);
    if (raw !== undefined) reply.type('application/json').send(raw);
    else if (body) reply.send(body);
    else reply.send();
    return true;
  }
}

/** Promises more bytes than it sends, and cuts the connection once those are on their way. */
function dropConnection(reply) {
  reply.hijack();
  const part = Buffer.from('{"translations":["');
  reply.raw.writeHead(200, { 'Content-Type': 'application/json', 'Content-Length': part.length + 1000 });
  reply.raw.write(part, () => reply.raw.socket?.destroy());
}

/**
 * Makes good translations bad in the way that a fault asks for.
 * @param {string[]} translations
 * @param {Fault | null} fault
 * @returns {string[]}
 */
export function spoilTranslations(translations, fault) {
  let spoilt = translations;
  if (fault?.settings.dropPlaceholders) spoilt = spoilt.map(withoutPlaceholders);
  // One more, never one less: an empty list would be another failure than a wrong count.
  if (fault?.settings.countMismatch) spoilt = [...spoilt, ''];
  return spoilt;
}

function withoutPlaceholders(text) {
  return findPlaceholders(text).reduceRight(
    (rest, { index, length }) => rest.slice(0, index) + rest.slice(index + length),
    text,
  );
}

function textsOf(body) {
  try {
    const { texts } = JSON.parse(body.toString('utf8'));
    return Array.isArray(texts) ? texts.filter((text) => typeof text === 'string') : [];
  } catch {
    return [];
  }
}
