/** The token of an account that has used up its credits. */
export const BROKE_TOKEN = 'dev-broke';

/** What every token begins with that this service gives out or takes. */
export const TOKEN_PREFIX = 'dev-';

/**
 * @param {string | undefined} header the Authorization header
 * @returns {string} the bearer token, empty without one
 */
export function bearerToken(header) {
  return /^Bearer (\S+)\s*$/i.exec(header ?? '')?.[1] ?? '';
}

/**
 * Decides whether a request may go on. Every token that begins with "dev-" belongs to a signed-in user here.
 * @param {string | undefined} header the Authorization header
 * @param {{isSignedOut: (token: string) => boolean}} [accounts] knows which tokens were given back
 * @returns {{status: number, body: object | null} | null} the refusal, or null when the token is good
 */
export function tokenRefusal(header, accounts) {
  const token = bearerToken(header);
  if (!token.startsWith(TOKEN_PREFIX) || accounts?.isSignedOut(token)) return { status: 401, body: null };
  if (token === BROKE_TOKEN) {
    return { status: 402, body: { code: 'insufficient_credits', message: 'insufficient_credits' } };
  }
  return null;
}
