/** Who is signed in, what the account has used, and signing out. */
import { byId } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { openPage } from './page.js';
import { fetchAccount } from './service_api.js';
import { dropToken, onSession, signOut, token } from './session.js';

/** Plans that have words of their own; others are shown as the service names them. */
const PLANS = { development: 'account.planDevelopment' };

/** @type {object | null} as the service gave it */
let account = null;
/** Key of what stands in the account's place. */
let problem = '';

function draw() {
  const signedIn = token() !== '';
  byId('signed-out').hidden = signedIn;
  byId('account').hidden = !signedIn || account === null;
  byId('account-failed').hidden = !signedIn || problem === '';
  byId('sign-out').hidden = !signedIn;
  if (account === null) return;
  byId('account-name').textContent = account.name || t('account.unnamed');
  byId('account-email').textContent = account.email;
  byId('account-email-row').hidden = account.email === '';
  byId('account-plan').textContent = Object.hasOwn(PLANS, account.plan) ? t(PLANS[account.plan]) : account.plan;
  const { creditsUsed: used, creditsLimit: limit } = account;
  byId('account-usage').textContent = t('account.used', { used, limit });
  byId('account-meter').max = limit;
  byId('account-meter').value = Math.min(used, limit);
}

async function loadAccount() {
  account = null;
  problem = '';
  const asked = token();
  if (asked) {
    const { answer, error } = await fetchAccount(asked).then(
      (answer) => ({ answer }),
      (error) => ({ error }),
    );
    // Somebody else has signed in meanwhile, or nobody is: this is not their account.
    if (token() !== asked) return;
    if (error?.status === 401) return dropToken();
    account = answer ?? null;
    problem = error ? 'account.failed' : '';
  }
  draw();
}

byId('sign-out').addEventListener('click', () => void signOut());
byId('account-again').addEventListener('click', () => void loadAccount());
onLanguage(draw);
onSession(() => void loadAccount());
await openPage();
await loadAccount();
