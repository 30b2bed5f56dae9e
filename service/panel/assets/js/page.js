/** What all pages share: language, navigation, session, notices, the answers that the add-in may want at any time. */
import { addressOf, askedLanguage, inWorkspace, pageName, rememberLanguage } from './address.js';
import { openBatchTransport } from './batch_transport.js';
import { isHosted, onEvents, onMessages, openBridge, post } from './bridge.js';
import { byId, make } from './dom.js';
import { unwrittenText } from './errors.js';
import { language, onLanguage, setLanguage, t } from './i18n.js';
import { currentRun, openRunEvents, showsRun } from './run_events.js';
import { openSession, token } from './session.js';
import { openTerminologyAnswers } from './terminology_answers.js';

/** The pages of the navigation, and those that count as one of them. */
const NAVIGATION = ['translate', 'glossary', 'account', 'support'];
const COUNTS_AS = { login: 'account', instruction: 'glossary' };

const TOAST_MS = 6000;
let toastTimer = 0;

/**
 * Sets the page up; call it after all handlers are registered, for messages may come at once.
 * @returns {Promise<void>} when the words are in place
 */
export async function openPage() {
  buildHeader();
  openBridge(showNotice);
  openRunEvents();
  onMessages({
    uiLangChanged: ({ uiLang }) => void switchLanguage(uiLang),
  });
  onEvents({
    quorvantisOnWorkspaceOpen: () => setWorkspaceOpen(true),
    quorvantisOnWorkspaceClosed: () => setWorkspaceOpen(false),
  });
  if (!inWorkspace) openAnswers();
  onLanguage(drawHeader);
  try {
    await setLanguage(askedLanguage ?? navigator.language);
  } finally {
    openSession();
    document.documentElement.removeAttribute('data-loading');
  }
  post('trace', { phase: 'page.open', detail: pageName, jsTokenLen: token().length });
}

/** What the pane's page answers for both: the workspace shares its run. */
function openAnswers() {
  openBatchTransport();
  openTerminologyAnswers();
}

async function switchLanguage(code) {
  await setLanguage(code);
  rememberLanguage(language());
}

/** A notice of the add-in. The one about unwritten cells is known, and a page that shows the run says it already. */
function showNotice(text, kind) {
  const known = text !== '' && text === currentRun().unwritten;
  if (!known) showToast(text, kind);
  else if (!showsRun()) showToast(t(unwrittenText(text)), kind);
}

/**
 * @param {string} text
 * @param {string} [kind] "warn" or "info"
 */
export function showToast(text, kind = 'info') {
  const toast = byId('toast');
  toast.textContent = text;
  toast.className = `toast ${kind === 'warn' ? 'warn' : 'info'}`;
  clearTimeout(toastTimer);
  toastTimer = setTimeout(() => {
    toast.textContent = '';
  }, TOAST_MS);
}

/** @param {string} name of a page of the panel */
export function goTo(name) {
  location.assign(addressOf(name, language()));
}

function buildHeader() {
  const links = NAVIGATION.map((name) => make('a', { 'data-page': name, 'data-t': `nav.${name}` }));
  byId('top').append(make('nav', { 'data-t-label': 'nav.label' }, links), windowButton());
  for (const link of links) {
    if (link.dataset.page === (COUNTS_AS[pageName] ?? pageName)) link.setAttribute('aria-current', 'page');
  }
  document.body.append(make('div', { id: 'toast', class: 'toast', role: 'status' }));
  document.documentElement.classList.toggle('workspace', inWorkspace);
}

/** Opens the workspace window from a pane, and closes it from inside. */
function windowButton() {
  const button = make('button', { id: 'window', type: 'button', class: inWorkspace ? 'icon close' : 'icon window' });
  button.addEventListener('click', () => {
    if (inWorkspace) post('closeWorkspace');
    else if (workspaceOpen) post('focusWorkspace');
    else post('openWorkspace', { page: pageName });
  });
  button.hidden = !isHosted();
  return button;
}

let workspaceOpen = false;
function setWorkspaceOpen(open) {
  workspaceOpen = open;
  drawHeader();
}

function drawHeader() {
  for (const link of document.querySelectorAll('a[data-page]')) {
    link.href = addressOf(link.dataset.page, language());
  }
  const label = t(inWorkspace ? 'window.close' : workspaceOpen ? 'window.show' : 'window.open');
  byId('window').setAttribute('aria-label', label);
  byId('window').title = label;
  document.title = `${t(`page.${pageName}`)} · Quorvantis`;
}
