/**
 * Resolves a run's terminology: the add-in posts "terminologyResolveRequest" before the first batch and waits at most
 * 60 s for "terminologyResolveResult". Without an answer, or with a refusal, the run goes on without terminology.
 */
import { onMessages, post } from './bridge.js';
import { resolveTerminology } from './service_api.js';
import { token } from './session.js';

/** The add-in waits no longer. */
const LIMIT_MS = 60000;
const MAX_ENTRIES = 200;

/** @type {Set<string>} ids of the requests that are being answered */
const open = new Set();

export function openTerminologyAnswers() {
  onMessages({ terminologyResolveRequest: (request) => void answer(request) });
  // Leaving the page breaks its requests off. That is no answer: the add-in asks the next page for them again.
  addEventListener('pagehide', () => open.clear());
}

async function answer({ requestId, ...question }) {
  open.add(requestId);
  const fields = await resolve(question);
  if (open.delete(requestId)) post('terminologyResolveResult', { requestId, ...fields });
}

async function resolve({ glossaryIds, instructionId, corpusTexts }) {
  const body = { glossaryIds, instructionId: instructionId || null, corpusTexts, maxEntries: MAX_ENTRIES };
  try {
    return { result: JSON.stringify(await resolveTerminology(token(), body, AbortSignal.timeout(LIMIT_MS))) };
  } catch ({ code, message }) {
    return { code, message };
  }
}
