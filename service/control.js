import { ServiceError } from './errors.js';
import { refuseForeign } from './own_machine.js';
import { parseJson } from './validation.js';

/**
 * The endpoints by which tests make the service fail and read what it was asked.
 * @param {import('fastify').FastifyInstance} app
 * @param {{queue: import('./faults.js').FaultQueue, recorder: import('./recorder.js').RequestRecorder}} parts
 */
export function registerControl(app, { queue, recorder }) {
  const own = { onRequest: refuseForeign };
  app.post('/control/faults', own, async (request, reply) => {
    const problem = queue.add(parseJson(request.body)?.queue);
    if (problem) throw new ServiceError(400, 'bad_request', problem);
    return reply.code(204).send();
  });
  app.delete('/control/faults', own, async (request, reply) => {
    queue.clear();
    return reply.code(204).send();
  });
  app.get('/control/requests', own, async () => recorder.entries());
  app.delete('/control/requests', own, async (request, reply) => {
    recorder.clear();
    return reply.code(204).send();
  });
}
