/** The service's endpoints, as the pages use them. */

/** A refusal by the service, or no answer at all (status 0). */
export class ApiError extends Error {
  /**
   * @param {number} status
   * @param {string} code
   * @param {string} message
   */
  constructor(status, code, message) {
    super(message);
    this.status = status;
    this.code = code;
  }
}

async function call(method, path, { token, body, signal } = {}) {
  const headers = {};
  if (token) headers.Authorization = `Bearer ${token}`;
  if (body) headers['Content-Type'] = 'application/json';
  let response;
  let text;
  try {
    response = await fetch(path, { method, headers, body: body && JSON.stringify(body), signal });
    text = await response.text();
  } catch (error) {
    throw new ApiError(0, error.name === 'TimeoutError' ? 'request_timeout' : 'network_error', error.message);
  }
  const answer = parse(text);
  if (!response.ok) throw new ApiError(response.status, answer?.code ?? 'network_error', answer?.message ?? '');
  return answer;
}

/** @returns {any} null for what is no JSON */
function parse(text) {
  try {
    return JSON.parse(text);
  } catch {
    return null;
  }
}

/** @returns {Promise<string[][] | 'any'>} pairs of source and target code */
export const fetchLanguagePairs = async () => (await call('GET', '/v1/languages')).pairs;

/**
 * @param {{name: string} | {email: string}} who
 * @returns {Promise<{token: string, account: object}>}
 */
export const signInAsDeveloper = (who) => call('POST', '/v1/auth/dev-token', { body: who });

/** @param {string} token */
export const signOutAtService = (token) => call('POST', '/v1/auth/sign-out', { token });

/**
 * @param {string} token
 * @returns {Promise<{name: string, email: string, plan: string, creditsUsed: number, creditsLimit: number}>}
 */
export const fetchAccount = (token) => call('GET', '/v1/account', { token });

/** @param {string} token @returns {Promise<{id: string, name: string}[]>} */
export const fetchInstructions = async (token) => (await call('GET', '/v1/instructions', { token })).instructions;

/** @param {string} token @param {string} id @returns {Promise<{name: string, content: string}>} */
export const fetchInstruction = (token, id) => call('GET', `/v1/instructions/${encodeURIComponent(id)}`, { token });

/**
 * @param {string} token
 * @param {{glossaryIds: string[], instructionId: string | null, corpusTexts: string[], maxEntries: number}} question
 * @param {AbortSignal} signal
 * @returns {Promise<{entries: object[], instruction: string}>}
 */
export async function resolveTerminology(token, question, signal) {
  const answer = await call('POST', '/v1/terminology/resolve', { token, body: question, signal });
  if (!Array.isArray(answer?.entries)) throw new ApiError(0, 'network_error', 'The answer holds no entries');
  return answer;
}
