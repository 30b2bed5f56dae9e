/**
 * Who is signed in. The token lives in this browser's storage, which all panes share, and the add-in holds copies of
 * it: one for its own requests, one a pane that only another token can replace. So signing out is remembered here, and
 * a token that comes back from the add-in afterwards is not taken.
 */
import { isHosted, onMessages, post } from './bridge.js';
import { signOutAtService } from './service_api.js';
import { load, onChangedElsewhere, save } from './storage.js';

const NAME = 'session';

/** @type {{token: string, signedOut: boolean}} */
let session = read();
const listeners = [];

function read() {
  const kept = load(localStorage, NAME);
  return { token: typeof kept?.token === 'string' ? kept.token : '', signedOut: kept?.signedOut === true };
}

function change(next) {
  session = next;
  save(localStorage, NAME, next);
  for (const listener of listeners) listener();
}

/** @returns {string} empty while nobody is signed in */
export const token = () => session.token;

/** @param {() => void} listener called whenever somebody signed in or out, here or in another page */
export function onSession(listener) {
  listeners.push(listener);
}

/** @param {string} newToken */
export function signIn(newToken) {
  post('setAccessToken', { accessToken: newToken });
  change({ token: newToken, signedOut: false });
}

/** Signs out here at once; the service is told, and not waited for longer than it takes to fail. */
export async function signOut() {
  const old = session.token;
  dropToken();
  await signOutAtService(old).catch(() => {});
}

/** The service does not know the token any more. */
export function dropToken() {
  post('clearAccessToken');
  change({ token: '', signedOut: true });
}

/** Agrees with the add-in on the token; its answer comes as a message. */
export function openSession() {
  onMessages({ accessToken: ({ accessToken }) => meet(accessToken ?? '') });
  onChangedElsewhere(NAME, () => {
    session = read();
    // This pane's own copies follow: its model proxy may be the one that agents use.
    if (session.token) post('setAccessToken', { accessToken: session.token });
    else if (session.signedOut) post('clearAccessToken');
    for (const listener of listeners) listener();
  });
  if (isHosted()) post('requestAccessToken');
}

function meet(offered) {
  if (session.token) {
    if (offered !== session.token) post('setAccessToken', { accessToken: session.token });
  } else if (offered && !session.signedOut) {
    change({ token: offered, signedOut: false });
  }
}
