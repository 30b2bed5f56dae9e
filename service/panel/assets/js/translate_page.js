/** The translation page: the form, the run, and what lies between them. */
import { announce } from './announcer.js';
import { isHosted, onEvents, post } from './bridge.js';
import { loadChoices, readChoices, saveChoices } from './choices.js';
import { byId } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { drawLanguageFields, openLanguageFields } from './language_fields.js';
import { openPage } from './page.js';
import { currentRun, goesThroughPage, pausePosted, runPosted, showRun, step, takeRun } from './run_events.js';
import { hasEnded, isBusy } from './run_state.js';
import { drawResults, openResults } from './results_view.js';
import { drawElapsed, drawRun } from './run_view.js';
import { drawScopeFields, openScopeFields, scopeMode } from './scope_fields.js';
import { fetchAccount } from './service_api.js';
import { openSelectionPreview } from './selection_preview.js';
import { dropToken, onSession, token } from './session.js';
import { newTraceId, startMessage } from './start_message.js';
import { drawStyleFields, openStyleFields } from './style_fields.js';
import { loadTerminology, openTerminologyFields, terminologyFields } from './terminology_fields.js';
import { exportUnits, importUnits } from './unit_store.js';

const SECOND_MS = 1000;

const choices = loadChoices();
let drawnPhase = 'idle';

function start() {
  if (obstacle()) return;
  const mode = scopeMode();
  const { action, fields } = startMessage(choices, {
    mode,
    accessToken: token(),
    clientTraceId: newTraceId(),
    viaPage: goesThroughPage(),
  });
  const { excelTranslateAllSheets: allSheets, excelBilingualBelow: dual, clientTraceId: trace } = fields;
  runPosted({ allSheets, dual, trace });
  post(action, { ...fields, ...terminologyFields() });
}

/** Why nothing can be started, empty when it can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  if (!isHosted()) return 'reason.host';
  if (!choices.targetLang) return 'reason.target';
  return choices.sourceLang === choices.targetLang ? 'reason.same' : '';
}

function drawForm() {
  const reason = obstacle();
  byId('start').disabled = reason !== '';
  byId('reason').textContent = reason ? t(reason) : '';
  byId('sign-in').hidden = token() !== '';
  byId('form').hidden = isBusy(currentRun());
}

function draw() {
  const run = currentRun();
  drawForm();
  drawRun(run, Date.now());
  drawResults(run);
  announce(run);
  keepFocus(run);
  drawnPhase = run.phase;
}

/** The buttons under the user's fingers vanish when a run begins or ends; its title takes the focus over. */
function keepFocus(run) {
  const group = (phase) => (hasEnded({ phase }) ? 'ended' : isBusy({ phase }) ? 'busy' : 'idle');
  if (group(run.phase) === group(drawnPhase)) return;
  if (run.phase === 'idle') byId(byId('start').disabled ? 'source' : 'start').focus();
  else byId('run-title').focus({ preventScroll: true });
  if (run.phase !== 'idle') byId('run').scrollIntoView({ block: 'nearest' });
}

function redraw() {
  drawLanguageFields(choices);
  drawScopeFields(choices);
  drawStyleFields(choices);
  draw();
}

function changed() {
  saveChoices(choices);
  drawForm();
}

function cancel() {
  post('cancel');
  // Before its run has begun the add-in has nothing to tell about.
  if (currentRun().phase === 'starting') step('cancelled');
}

const CLICKS = {
  pause: () => {
    post('pause');
    pausePosted();
  },
  resume: () => {
    post('resume');
    step('resumePosted');
  },
  cancel,
  dismiss: () => step('dismissed'),
  'error-again': start,
};

function openButtons() {
  for (const [id, act] of Object.entries(CLICKS)) byId(id).addEventListener('click', act);
  byId('form').addEventListener('submit', (event) => {
    event.preventDefault();
    start();
  });
}

/** The pane's page and the workspace's page hand each other where they are. */
function exportState() {
  return { version: 1, choices, mode: scopeMode(), run: currentRun(), units: exportUnits() };
}

function importState(state) {
  if (state?.version !== 1) return;
  Object.assign(choices, readChoices(state.choices));
  globalThis.quorvantisSetMode(state.mode);
  takeRun(state.run);
  importUnits(state.units);
  saveChoices(choices);
  redraw();
}

/** An account that the service does not know any more is better noticed before a run than in it. */
async function checkAccount() {
  const asked = token();
  if (!asked) return;
  await fetchAccount(asked).catch((error) => {
    if (error.status === 401 && token() === asked) dropToken();
  });
}

openButtons();
openResults(draw);
openSelectionPreview(draw);
showRun(draw);
openScopeFields(choices, changed);
openStyleFields(choices, changed);
openTerminologyFields();
onEvents({
  quorvantisExportState: exportState,
  quorvantisImportState: importState,
});
onLanguage(redraw);
onSession(() => {
  drawForm();
  void checkAccount();
});
await openPage();
void loadTerminology();
openLanguageFields(choices, changed);
for (const question of ['getFontList', 'requestSelectionPreview']) post(question);
void checkAccount();
setInterval(() => {
  if (isBusy(currentRun())) drawElapsed(currentRun(), Date.now());
}, SECOND_MS);
