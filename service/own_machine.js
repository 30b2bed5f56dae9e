import { ServiceError } from './errors.js';

const LOOPBACK = /^(localhost|127(\.\d{1,3}){3}|\[?::1\]?)$/i;

/**
 * @param {string} host a name or an address
 * @returns {boolean} whether only the own machine reaches it
 */
export const isLoopback = (host) => LOOPBACK.test(host);

/** @param {string | undefined} authority "name:port" as in the Host header @returns {string} the name */
const nameOf = (authority) => (authority ?? '').replace(/:\d+$/, '');

/**
 * Guards what only programs of the own machine and the service's own pages may ask for: a page of another site that a
 * browser shows here can reach the service as well, under its own name (Origin) or by a name that leads here (Host).
 * @param {import('fastify').FastifyRequest} request
 */
export async function refuseForeign(request) {
  const { host, origin, 'content-type': type } = request.headers;
  const sameOrigin = origin === undefined || origin.replace(/^https?:\/\//, '') === host;
  if (!isLoopback(nameOf(host)) || !sameOrigin) throw new ServiceError(403, 'bad_request', 'only from this machine');
  // Other types may be posted by any page without a question beforehand.
  if (request.method === 'POST' && !/^application\/json\s*(;|$)/i.test(type ?? '')) {
    throw new ServiceError(415, 'bad_request', 'the content type must be application/json');
  }
}
