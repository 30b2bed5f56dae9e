import { ServiceError } from './errors.js';
import { isObject, parseJson } from './validation.js';

const KEPT_EVENTS = 1000;
/** Together with the number of events this bounds what is kept. */
const BODY_LIMIT_BYTES = 64 * 1024;

/**
 * Takes usage events and keeps the last ones in memory.
 * @param {import('fastify').FastifyInstance} app
 * @param {{readable: boolean}} options readable: the events may be asked for as well
 */
export function registerAnalytics(app, { readable }) {
  let events = [];

  app.post('/v1/analytics/events', { bodyLimit: BODY_LIMIT_BYTES }, async (request, reply) => {
    const body = parseJson(request.body);
    if (!Array.isArray(body?.events) || !body.events.every(isObject)) {
      throw new ServiceError(400, 'bad_request', '"events" must be a list of objects');
    }
    events = [...events, ...body.events].slice(-KEPT_EVENTS);
    return reply.code(204).send();
  });
  if (readable) app.get('/v1/analytics/events', async () => events);
}
