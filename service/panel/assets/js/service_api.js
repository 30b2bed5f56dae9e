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

/** Browsers let 64 KiB outlive the page, and a character may take three bytes. */
const OUTLIVING_LENGTH = 20000;

/** @param {any} body @returns {boolean} whether its request goes on although the page is left */
export const outlivesPage = (body) => JSON.stringify(body).length <= OUTLIVING_LENGTH;

async function call(method, path, { token, body, signal } = {}) {
  const headers = {};
  if (token) headers.Authorization = `Bearer ${token}`;
  const isFile = body instanceof Blob;
  if (body) headers['Content-Type'] = isFile ? 'application/octet-stream' : 'application/json';
  // What the user has just changed arrives even when the page is left at once.
  const keepalive = method === 'PUT' && outlivesPage(body);
  let response;
  let text;
  try {
    const sent = isFile ? body : body && JSON.stringify(body);
    response = await fetch(path, { method, headers, body: sent, signal, keepalive });
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

/**
 * @param {string} token
 * @param {{imageBase64: string, sourceLang: string, targetLang: string}} question a PNG
 * @param {AbortSignal} signal
 * @returns {Promise<{imageBase64: string, texts: {source: string, translation: string, drawn: boolean}[]}>} a PNG of the
 *   same size
 */
export async function translatePicture(token, question, signal) {
  const answer = await call('POST', '/v1/images/translate', { token, body: question, signal });
  if (!Array.isArray(answer?.texts) || typeof answer.imageBase64 !== 'string') {
    throw new ApiError(0, 'network_error', 'The answer holds no picture');
  }
  return answer;
}

/** @typedef {'glossaries' | 'instructions'} Kind of the user's own items */

/**
 * @param {string} token
 * @param {Kind} kind
 * @returns {Promise<{id: string, name: string, updatedAt: string}[]>} in the order in which they came
 */
export async function fetchItems(token, kind) {
  const items = (await call('GET', `/v1/${kind}`, { token }))?.[kind];
  if (!Array.isArray(items)) throw new ApiError(0, 'network_error', 'The answer holds no items');
  return items;
}

const pathOf = (kind, id) => `/v1/${kind}/${encodeURIComponent(id)}`;

/** @param {string} token @param {Kind} kind @param {string} id @returns {Promise<object>} the item with its contents */
export const fetchItem = (token, kind, id) => call('GET', pathOf(kind, id), { token });

/**
 * Adds or replaces an item.
 * @param {string} token
 * @param {Kind} kind
 * @param {{id: string, name: string, entries?: object[], content?: string}} item
 * @returns {Promise<object>} as it is kept
 */
export const putItem = (token, kind, { id, name, entries, content }) =>
  call('PUT', pathOf(kind, id), { token, body: { name, entries, content } });

/** @param {string} token @param {Kind} kind @param {string} id */
export const deleteItem = (token, kind, id) => call('DELETE', pathOf(kind, id), { token });

/**
 * @param {string} token
 * @param {'picture' | 'pdf'} kind of the file
 * @param {Blob} file
 * @param {{pages?: string, signal: AbortSignal}} options pages: such as "1-3, 5"; of a PDF only
 * @returns {Promise<{pages: number[], rows: string[][]}[]>} one at least
 */
export async function findTables(token, kind, file, { pages = '', signal }) {
  const answer = await call('POST', `/v1/tables/${kind}?${new URLSearchParams({ pages })}`, { token, body: file, signal });
  if (!Array.isArray(answer?.tables)) throw new ApiError(0, 'network_error', 'The answer holds no tables');
  return answer.tables;
}

/**
 * @param {string} token
 * @param {Blob} file a PDF
 * @param {{pages: string, sourceLang: string, targetLang: string}} wanted
 * @param {AbortSignal} signal
 * @returns {Promise<{pageCount: number, pages: {page: number,
 *   paragraphs: {isHeading: boolean, text: string, translation: string}[]}[]}>}
 */
export async function translatePdf(token, file, wanted, signal) {
  const answer = await call('POST', `/v1/translate/pdf?${new URLSearchParams(wanted)}`, { token, body: file, signal });
  if (!Array.isArray(answer?.pages)) throw new ApiError(0, 'network_error', 'The answer holds no pages');
  return answer;
}
