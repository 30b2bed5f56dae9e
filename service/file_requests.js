/** What the endpoints that take files have in common. */
import { tokenRefusal } from './auth.js';
import { ServiceError } from './errors.js';
import { bad } from './validation.js';

const MAX_PARAMETER_LENGTH = 200;

/**
 * Lets signed-in users pass whose credits are not used up.
 * @param {import('fastify').FastifyRequest} request
 * @param {import('./accounts.js').Accounts} accounts
 */
export function refuseStranger(request, accounts) {
  const refusal = tokenRefusal(request.headers.authorization, accounts);
  if (refusal?.status === 401) throw new ServiceError(401, 'unauthorized', 'not signed in');
  if (refusal) throw new ServiceError(refusal.status, refusal.body.code, refusal.body.message);
}

/** @param {import('fastify').FastifyRequest} request @returns {Buffer} its body, which is a file */
export function readFile(request) {
  if (!request.body?.length) throw bad('the body must be a file');
  return request.body;
}

/** @param {import('fastify').FastifyReply} reply @returns {AbortSignal} of a client that leaves before the answer */
export function goneSignal(reply) {
  const gone = new AbortController();
  reply.raw.once('close', () => gone.abort());
  return gone.signal;
}

/**
 * @param {import('fastify').FastifyRequest} request
 * @param {string} name
 * @returns {string} a parameter of the address, empty without it
 */
export function queryText(request, name) {
  const value = request.query[name] ?? '';
  if (typeof value !== 'string' || value.length > MAX_PARAMETER_LENGTH) {
    throw bad(`"${name}" is too long, or stands twice`);
  }
  return value;
}
