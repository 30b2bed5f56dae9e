import { performance } from 'node:perf_hooks';

import Fastify from 'fastify';

import { Accounts, registerAccounts } from './accounts.js';
import { registerAgents } from './agents.js';
import { registerAnalytics } from './analytics.js';
import { bearerToken, tokenRefusal } from './auth.js';
import { registerControl } from './control.js';
import { ServiceError } from './errors.js';
import { FaultQueue, spoilTranslations } from './faults.js';
import { logLine } from './log.js';
import { registerPanel } from './panel.js';
import { registerPdfTranslation } from './pdf_translation.js';
import { registerPictures } from './pictures.js';
import { RequestRecorder } from './recorder.js';
import { registerTables } from './tables.js';
import { registerTerminology } from './terminology.js';
import { parseJson, readTranslateRequest } from './validation.js';

const BODY_LIMIT_BYTES = 8 * 1024 * 1024;

/**
 * The service, ready to listen.
 * @param {object} options
 * @param {import('./translate/engines.js').Engine} options.engine closed together with the app
 * @param {boolean} [options.faults] offers the /control endpoints
 * @param {boolean} [options.devSignIn] offers signing in without a password: for a service that listens on loopback only
 * @param {import('./language_model.js').LanguageModel | null} [options.languageModel] answers agents and the chat
 * @param {import('node:https').ServerOptions | null} [options.https] serves https with these certificates
 * @returns {import('fastify').FastifyInstance}
 */
export function buildApp({ engine, faults = false, devSignIn = true, languageModel = null, https = null }) {
  const app = Fastify({ bodyLimit: BODY_LIMIT_BYTES, forceCloseConnections: true, https });
  const queue = new FaultQueue();
  const accounts = new Accounts();
  const recorder = faults ? new RequestRecorder() : null;

  // Bodies stay bytes until a handler reads them, so that a broken body still meets faults and the record.
  app.removeAllContentTypeParsers();
  app.addContentTypeParser('*', { parseAs: 'buffer' }, (request, body, done) => done(null, body));
  app.setErrorHandler(answerError);
  app.setNotFoundHandler((request, reply) => reply.code(404).send({ code: 'not_found', message: 'not found' }));
  logRequests(app);
  if (recorder) recorder.attach(app);

  app.get('/v1/languages', async () => ({ pairs: engine.languages() }));
  app.post('/v1/translate', (request, reply) => answerTranslate(request, reply, { engine, queue, accounts }));
  registerAccounts(app, accounts, { devSignIn });
  registerTerminology(app, accounts);
  registerAgents(app, accounts, languageModel);
  registerTables(app, accounts);
  registerPdfTranslation(app, accounts, engine);
  registerPictures(app, { engine, accounts });
  registerPanel(app);
  registerAnalytics(app, { readable: faults });
  if (recorder) registerControl(app, { queue, recorder });
  app.addHook('onClose', async () => engine.close());
  return app;
}

async function answerTranslate(request, reply, { engine, queue, accounts }) {
  const fault = queue.take(request.body);
  if (fault) {
    await fault.delay();
    if (fault.answersItself(reply)) return reply;
  }

  const refusal = tokenRefusal(request.headers.authorization, accounts);
  if (refusal) {
    reply.code(refusal.status);
    return refusal.body ? reply.send(refusal.body) : reply.send();
  }

  const job = readTranslateRequest(parseJson(request.body));
  request.note = `${job.texts.length} texts`;
  const translations = spoilTranslations(await engine.translate(job), fault);
  accounts.charge(bearerToken(request.headers.authorization), job.texts.join('').length);
  return reply.send(job.unitIds ? { translations, unitIds: job.unitIds } : { translations });
}

function answerError(error, request, reply) {
  if (error instanceof ServiceError) {
    return reply.code(error.status).send({ code: error.code, message: error.message });
  }
  if (error.statusCode === 413) {
    return reply.code(413).send({ code: 'content_too_long', message: 'Request too large' });
  }
  if (error.statusCode >= 400 && error.statusCode < 500) {
    return reply.code(error.statusCode).send({ code: 'bad_request', message: error.message });
  }
  process.stderr.write(`${error.stack}\n`);
  return reply.code(500).send({ code: 'internal_error', message: 'internal error' });
}

function logRequests(app) {
  app.addHook('onRequest', async (request, reply) => {
    const start = performance.now();
    // "close" also comes for requests that never get an answer.
    reply.raw.once('close', () => {
      const status = reply.raw.writableFinished ? reply.raw.statusCode : 'dropped';
      const note = request.note ? ` ${request.note}` : '';
      logLine(`${request.method} ${request.url} ${status}${note} ${(performance.now() - start).toFixed(0)} ms`);
    });
  });
}
