import { ServiceError } from './errors.js';
import { parseJson } from './validation.js';

const KEPT_EVENTS = 1000;

/**
 * Takes usage events and keeps the last ones in memory.
 * @param {import('fastify').FastifyInstance} app
 * @param {{readable: boolean}} options readable: the events may be asked for as well
 */
export function registerAnalytics(app, { readable }) {
  let events = [];

  app.post('/v1/analytics/events', async (request, reply) => {
    const body = parseJson(request.body);
    if (!Array.isArray(body?.events)) throw new ServiceError(400, 'bad_request', '"events" must be a list');
    events = [...events, ...body.events].slice(-KEPT_EVENTS);
    return reply.code(204).send();
  });
  if (readable) app.get('/v1/analytics/events', async () => events);
}
