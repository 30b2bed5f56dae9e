/** The service's endpoints, as the pages use them. */

/** A refusal by the service, or no answer at all (status 0). */
export class ApiError extends Error {
  /**
   * @param {number} status
   * @param {string} message
   */
  constructor(status, message) {
    super(message);
    this.status = status;
  }
}

async function call(method, path, { token, body } = {}) {
  const headers = {};
  if (token) headers.Authorization = `Bearer ${token}`;
  if (body) headers['Content-Type'] = 'application/json';
  let response;
  try {
    response = await fetch(path, { method, headers, body: body && JSON.stringify(body) });
  } catch (error) {
    throw new ApiError(0, error.message);
  }
  const answer = await response.json().catch(() => null);
  if (!response.ok) throw new ApiError(response.status, answer?.message ?? '');
  return answer;
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
