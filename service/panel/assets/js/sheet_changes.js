/**
 * What can be done with the cells that hold translations: other displays, all of them back or in again, another style.
 * One at a time, and none while a run goes on.
 */
import { onEvents, post } from './bridge.js';
import { byId } from './dom.js';
import { cellsText } from './errors.js';
import { onLanguage, t } from './i18n.js';
import { showToast } from './page.js';

/** How long the add-in may take; large sheets take seconds. */
const LIMIT_MS = 30000;

const BATCHES = { applyAll: 'results.applied', restoreAll: 'results.restored' };

let timer = 0;
let waits = false;
let runs = false;
const heldListeners = [];

export function openSheetChanges() {
  onEvents({
    onExcelDisplayModeDone: (answer) => answered(answer, displayText),
    onTargetStyleDone: (answer) => answered(answer, styleText),
    onBatchDone: ({ action }) => answered({ ok: true }, () => t(BATCHES[action] ?? BATCHES.applyAll)),
  });
  for (const button of document.querySelectorAll('[data-display]')) {
    const mode = button.dataset.display;
    button.addEventListener('click', () => {
      askSheet('setExcelDisplayMode', { mode, scope: byId('display-scope').value });
    });
  }
  byId('apply-all').addEventListener('click', () => askSheet('applyAll'));
  byId('restore-all').addEventListener('click', () => askSheet('restoreAll'));
  onLanguage(draw);
}

/** @returns {boolean} whether the add-in would refuse a change, or let it wait */
export const areChangesHeld = () => waits || runs;

/** @param {() => void} listener called when `areChangesHeld` may have changed */
export function onHeld(listener) {
  heldListeners.push(listener);
}

/** @param {boolean} busy whether a run goes on */
export function holdForRun(busy) {
  if (busy === runs) return;
  runs = busy;
  // The start of a run ends what was under way.
  if (busy) setWaiting(false);
  else draw();
}

/**
 * Asks for a change that the add-in answers; without effect while another one is under way.
 * @param {keyof typeof import('./bridge.js').ACTIONS} action
 * @param {object} [fields]
 */
export function askSheet(action, fields) {
  if (areChangesHeld()) return;
  post(action, fields);
  setWaiting(true);
  timer = setTimeout(() => {
    setWaiting(false);
    showToast(t('display.noAnswer'), 'warn');
  }, LIMIT_MS);
}

function answered(answer, textOf) {
  setWaiting(false);
  showToast(answer.ok ? textOf(answer) : failureText(answer), answer.ok && !answer.failed ? 'info' : 'warn');
}

function displayText({ applied = 0, failed = 0 }) {
  return failed > 0 ? t('results.partly', { count: applied, failed }) : t('display.done', { count: applied });
}

function styleText({ applied = 0, failed = 0, skipped = 0 }) {
  return t('results.styled', { count: applied, failed, skipped });
}

/** A message that has no words of its own is better than none. */
function failureText({ message }) {
  const key = cellsText(message);
  return key ? t(key) : message || t('display.failed');
}

function setWaiting(value) {
  clearTimeout(timer);
  waits = value;
  draw();
}

/** The buttons keep the focus, so they are not disabled outright. */
function draw() {
  const held = areChangesHeld();
  for (const button of document.querySelectorAll('.sheet-change')) button.ariaDisabled = held ? 'true' : null;
  byId('results-reason').textContent = runs ? t('results.running') : waits ? t('results.working') : '';
  for (const listener of heldListeners) listener();
}
