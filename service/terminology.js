import { signedInToken } from './accounts.js';
import { ServiceError } from './errors.js';
import { KINDS, TerminologyStore } from './terminology_store.js';
import { occurringTerms } from './translate/terms.js';
import { bad, isObject, isTextList, parseJson } from './validation.js';

/** As many as the add-in asks for. */
const MAX_RESOLVED = 200;
/** Bounds what one item takes together with the limits of its texts. */
const ITEM_LIMIT_BYTES = 1024 * 1024;
/** The texts of a whole workbook come at once. */
const CORPUS_LIMIT_BYTES = 32 * 1024 * 1024;

/**
 * The user's glossaries and instructions, and what of them matters to a run.
 * @param {import('fastify').FastifyInstance} app
 * @param {import('./accounts.js').Accounts} accounts
 */
export function registerTerminology(app, accounts) {
  const store = new TerminologyStore();
  app.register(async (scope) => {
    scope.decorateRequest('user', '');
    scope.addHook('onRequest', async (request, reply) => {
      reply.header('Cache-Control', 'no-store');
      request.user = userOf(signedInToken(request, accounts), accounts);
    });
    for (const kind of KINDS) registerItems(scope, store, kind);
    scope.post('/v1/terminology/resolve', { bodyLimit: CORPUS_LIMIT_BYTES }, async (request) =>
      resolve(store, request.user, readQuestion(parseJson(request.body))),
    );
  });
}

/** Whoever signs in again by the same name finds everything again; a token without a name is a user of its own. */
function userOf(token, accounts) {
  const { name, email } = accounts.find(token);
  if (email) return `email ${email.toLowerCase()}`;
  return name ? `name ${name}` : `token ${token}`;
}

function registerItems(scope, store, kind) {
  const path = `/v1/${kind}/:id`;
  const missing = () => new ServiceError(404, 'not_found', 'not found');
  scope.get(`/v1/${kind}`, async ({ user }) => ({
    [kind]: store.list(user, kind).map(({ id, name, updatedAt }) => ({ id, name, updatedAt })),
  }));
  scope.get(path, async ({ user, params }) => {
    const item = store.find(user, kind, params.id);
    if (!item) throw missing();
    return item;
  });
  scope.put(path, { bodyLimit: ITEM_LIMIT_BYTES }, async ({ user, params, body }) =>
    store.put(user, kind, params.id, parseJson(body)),
  );
  scope.delete(path, async ({ user, params }, reply) => {
    if (!store.remove(user, kind, params.id)) throw missing();
    return reply.code(204).send();
  });
}

function readQuestion(body) {
  if (!isObject(body)) throw bad('the body must be an object');
  const { glossaryIds = [], instructionId = null, corpusTexts = [], maxEntries = MAX_RESOLVED } = body;
  if (!isTextList(glossaryIds)) throw bad('"glossaryIds" must be a list of strings');
  if (instructionId !== null && typeof instructionId !== 'string') throw bad('"instructionId" must be a string or null');
  if (!isTextList(corpusTexts)) throw bad('"corpusTexts" must be a list of strings');
  if (!Number.isInteger(maxEntries) || maxEntries < 1) throw bad('"maxEntries" must be a number from 1 on');
  return { glossaryIds, instructionId, corpusTexts, limit: Math.min(maxEntries, MAX_RESOLVED) };
}

/** An id that is gone adds nothing: the run shall have the rest of its terminology. */
function resolve(store, user, { glossaryIds, instructionId, corpusTexts, limit }) {
  const glossaries = [...new Set(glossaryIds)].map((id) => store.find(user, 'glossaries', id));
  const enabled = glossaries.flatMap((glossary) => glossary?.entries ?? []).filter((entry) => entry.enabled);
  return {
    entries: occurringTerms(enabled, corpusTexts, limit).map(({ exact, ...entry }) => entry),
    instruction: store.find(user, 'instructions', instructionId)?.content ?? '',
  };
}
