/** The token of an account that has used up its credits. */
const BROKE_TOKEN = 'dev-broke';

/**
 * Decides whether a request may go on. Every token that begins with "dev-" belongs to a signed-in user here.
 * @param {string | undefined} header the Authorization header
 * @returns {{status: number, body: object | null} | null} the refusal, or null when the token is good
 */
export function tokenRefusal(header) {
  const token = /^Bearer (\S+)\s*$/i.exec(header ?? '')?.[1] ?? '';
  if (!token.startsWith('dev-')) return { status: 401, body: null };
  if (token === BROKE_TOKEN) {
    return { status: 402, body: { code: 'insufficient_credits', message: 'insufficient_credits' } };
  }
  return null;
}
