import { randomBytes } from 'node:crypto';

import { BROKE_TOKEN, TOKEN_PREFIX, bearerToken } from './auth.js';
import { ServiceError } from './errors.js';
import { refuseForeign } from './own_machine.js';
import { parseJson } from './validation.js';

const PLAN = 'development';
/** Credits are characters. They are counted, never refused: the broke token plays an empty account. */
const CREDITS_LIMIT = 1_000_000;
const TOKEN_BYTES = 24;
const MAX_NAME_LENGTH = 200;
/** Far more than one developer signs in with; the oldest are forgotten first. */
const KEPT_TOKENS = 1000;

/**
 * @typedef {object} Account
 * @property {string} name empty for a token that was not given out by signing in
 * @property {string} email empty when the user signed in with a name
 * @property {string} plan
 * @property {number} creditsUsed characters translated so far
 * @property {number} creditsLimit
 */

/** Who is signed in, by token. Kept in memory: a restart forgets the counters, tokens stay good. */
export class Accounts {
  #byToken = new Map();
  #signedOut = new Set();

  /**
   * @param {{name?: string, email?: string}} who
   * @returns {{token: string, account: Account}}
   */
  signIn({ name = '', email = '' }) {
    const token = TOKEN_PREFIX + randomBytes(TOKEN_BYTES).toString('base64url');
    return { token, account: this.#add(token, name || email.split('@')[0], email) };
  }

  /**
   * @param {string} token
   * @returns {Account | null} null when it is no token of this service, or was signed out
   */
  find(token) {
    if (!token.startsWith(TOKEN_PREFIX) || this.isSignedOut(token)) return null;
    return this.#byToken.get(token) ?? this.#add(token, '', '');
  }

  /** @param {string} token */
  isSignedOut(token) {
    return this.#signedOut.has(token);
  }

  /** @param {string} token unknown ones are taken as well, so that signing out twice is no failure */
  signOut(token) {
    this.#byToken.delete(token);
    this.#signedOut.add(token);
    forgetOldest(this.#signedOut);
  }

  /**
   * @param {string} token
   * @param {number} characters that were translated for it
   */
  charge(token, characters) {
    const account = this.find(token);
    if (account) account.creditsUsed += characters;
  }

  #add(token, name, email) {
    const creditsUsed = token === BROKE_TOKEN ? CREDITS_LIMIT : 0;
    const account = { name, email, plan: PLAN, creditsUsed, creditsLimit: CREDITS_LIMIT };
    this.#byToken.set(token, account);
    forgetOldest(this.#byToken);
    return account;
  }
}

/**
 * @param {Map<string, unknown> | Set<string>} kept in the order of insertion
 * @param {number} [limit] how many are kept
 */
export function forgetOldest(kept, limit = KEPT_TOKENS) {
  if (kept.size > limit) kept.delete(kept.keys().next().value);
}

function readText(body, name) {
  const value = body?.[name] ?? '';
  if (typeof value !== 'string' || value.length > MAX_NAME_LENGTH || /\p{Cc}/u.test(value)) {
    throw new ServiceError(
      400,
      'bad_request',
      `"${name}" must be a text of one line, ${MAX_NAME_LENGTH} characters at most`,
    );
  }
  return value.trim();
}

/**
 * Signing in without a password, for the service on the own machine only, and what the account page asks.
 * @param {import('fastify').FastifyInstance} app
 * @param {Accounts} accounts
 * @param {{devSignIn: boolean}} options devSignIn: only the own machine reaches the service
 */
export function registerAccounts(app, accounts, { devSignIn }) {
  if (devSignIn) registerDevSignIn(app, accounts);
  app.post('/v1/auth/sign-out', async (request, reply) => {
    accounts.signOut(signedInToken(request, accounts));
    return reply.code(204).send();
  });
  app.get('/v1/account', async (request, reply) => {
    reply.header('Cache-Control', 'no-store');
    return accounts.find(signedInToken(request, accounts));
  });
}

function registerDevSignIn(app, accounts) {
  app.post('/v1/auth/dev-token', { onRequest: refuseForeign }, async (request, reply) => {
    const body = parseJson(request.body);
    const who = { name: readText(body, 'name'), email: readText(body, 'email') };
    if (!who.name && !who.email) throw new ServiceError(400, 'bad_request', '"name" or "email" is missing');
    reply.header('Cache-Control', 'no-store');
    return accounts.signIn(who);
  });
}

/**
 * @param {import('fastify').FastifyRequest} request
 * @param {Accounts} accounts
 * @returns {string} the request's token; one that is not signed in is refused
 */
export function signedInToken(request, accounts) {
  const token = bearerToken(request.headers.authorization);
  if (!accounts.find(token)) throw new ServiceError(401, 'unauthorized', 'not signed in');
  return token;
}
