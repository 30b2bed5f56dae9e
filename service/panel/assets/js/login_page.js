/** Signing in. */
import { byId } from './dom.js';
import { t, onLanguage } from './i18n.js';
import { goTo, openPage } from './page.js';
import { signInAsDeveloper } from './service_api.js';
import { signIn } from './session.js';

/** Key of what went wrong, empty when nothing did. */
let problem = '';

function drawProblem() {
  byId('login-error').textContent = problem ? t(problem) : '';
  byId('who').setAttribute('aria-invalid', String(problem === 'login.empty'));
}

function tell(key) {
  problem = key;
  drawProblem();
}

/** @param {boolean} waits the button keeps the focus, so it is not disabled outright */
function setWaiting(waits) {
  byId('login-button').ariaDisabled = waits ? 'true' : null;
}

async function submit() {
  if (byId('login-button').ariaDisabled) return;
  const who = byId('who').value.trim();
  if (!who) {
    tell('login.empty');
    byId('who').focus();
    return;
  }
  tell('');
  setWaiting(true);
  try {
    const { token } = await signInAsDeveloper(who.includes('@') ? { email: who } : { name: who });
    signIn(token);
    goTo('translate');
  } catch (error) {
    tell(error.status === 404 ? 'login.unavailable' : 'login.failed');
  } finally {
    setWaiting(false);
  }
}

byId('login').addEventListener('submit', (event) => {
  event.preventDefault();
  void submit();
});
onLanguage(drawProblem);
await openPage();
byId('who').focus();
