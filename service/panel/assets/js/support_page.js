/** Where help is, and what to send along. */
import { request } from './bridge.js';
import { byId, copyText } from './dom.js';
import { language, onLanguage, t } from './i18n.js';
import { openPage, showToast } from './page.js';
import { fetchLanguagePairs } from './service_api.js';
import { token } from './session.js';
import { SCRIPT_REVISION } from './start_message.js';

/** @type {object | null} the add-in's description of itself */
let client = null;
let asked = false;
let serviceAnswers = false;

function draw() {
  byId('no-addin').hidden = !asked || client !== null;
  byId('versions').hidden = client === null;
  byId('version').textContent = client?.version ?? '';
  byId('host').textContent = client ? `${client.hostAppName || client.hostApp} ${client.hostAppVersion}`.trim() : '';
  byId('os').textContent = client?.os ?? '';
  byId('install').textContent = client?.installId ?? '';
  byId('diagnostics').value = diagnostics();
}

/** In English whatever the page speaks: support reads it. Nothing in it lets anybody sign in. */
function diagnostics() {
  const facts = {
    addin: client ?? 'no answer',
    page: { revision: SCRIPT_REVISION, language: language(), signedIn: token() !== '' },
    service: { origin: location.origin, answers: serviceAnswers },
    browser: navigator.userAgent,
    view: `${innerWidth}x${innerHeight} @${devicePixelRatio}`,
    time: new Date().toISOString(),
  };
  return JSON.stringify(facts, null, 2);
}

async function copy(text) {
  const copied = await copyText(text);
  showToast(t(copied ? 'common.copied' : 'common.notCopied'), copied ? 'info' : 'warn');
}

byId('copy-contact').addEventListener('click', () => void copy(byId('contact').textContent));
byId('copy-diagnostics').addEventListener('click', () => void copy(byId('diagnostics').value));
onLanguage(draw);
await openPage();
[client, serviceAnswers] = await Promise.all([
  request('clientInfoGet').catch(() => null),
  fetchLanguagePairs().then(
    () => true,
    () => false,
  ),
]);
asked = true;
draw();
