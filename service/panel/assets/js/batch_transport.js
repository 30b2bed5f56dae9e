/**
 * Performs the requests of a run whose start message carried "nativeTranslateViaJs": the add-in posts
 * "translateBatchRequest" and waits at most 120 s for "translateBatchResult". The browser knows the proxies that the
 * add-in's own requests pass by.
 */
import { onMessages, post } from './bridge.js';
import { token } from './session.js';
import { failure, readAnswer, requestBody } from './translate_request.js';

/** The add-in waits no longer. */
const LIMIT_MS = 120000;

/** @type {Map<string, {runId: number, abort: AbortController}>} by request id */
const open = new Map();

export function openBatchTransport() {
  onMessages({
    translateBatchRequest: (request) => void answer(request),
    translateAbortForRun: ({ runId }) => abortRun(runId),
  });
  // Leaving the page breaks its requests off. That is no answer: the add-in asks the next page for them again.
  addEventListener('pagehide', () => open.clear());
}

async function answer(request) {
  const abort = new AbortController();
  open.set(request.requestId, { runId: request.runId, abort });
  reply(request.requestId, await send(request, abort.signal));
}

/** Nobody waits for the answers of an aborted run. */
function abortRun(runId) {
  for (const [requestId, entry] of open) {
    if (entry.runId !== runId) continue;
    open.delete(requestId);
    entry.abort.abort();
  }
}

function reply(requestId, result) {
  if (open.delete(requestId)) post('translateBatchResult', { requestId, ...result });
}

async function send(request, signal) {
  const headers = { 'Content-Type': 'application/json' };
  if (token()) headers.Authorization = `Bearer ${token()}`;
  try {
    const response = await fetch('/v1/translate', {
      method: 'POST',
      headers,
      signal: AbortSignal.any([signal, AbortSignal.timeout(LIMIT_MS)]),
      body: JSON.stringify(requestBody(request)),
    });
    return readAnswer(response.status, await response.text());
  } catch {
    return failure('network_error', 'HTTP request failed');
  }
}
