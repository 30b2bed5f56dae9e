/** Keeps the run: turns what the add-in says into steps of its state, and keeps that over reloads and windows. */
import { paneKey } from './address.js';
import { onEvents, onMessages } from './bridge.js';
import { sayNoMore } from './page.js';
import { advance, isBusy, noRun, readRun } from './run_state.js';
import { load, save } from './storage.js';

const NAME = 'run';
/** The page of the workspace window, or of the pane: it shows the same run, and nothing tells it of a pause. */
const twin = new BroadcastChannel(`quorvantis ${paneKey}`);

/** @type {import('./run_state.js').Run} */
let run = noRun();
/** The sheet that the user looks at; empty until the add-in has told of one. */
let activeSheet = '';
let changed = () => {};

export const currentRun = () => run;

/** @param {keyof typeof import('./run_state.js').STEPS} step @param {object} [message] */
export function step(step, message) {
  setRun(advance(run, step, message, Date.now()));
}

/** The user has paused the run here. */
export function pausePosted() {
  step('pausePosted');
  twin.postMessage({ pausedRun: run.runId });
}

/** @param {{allSheets: boolean}} start that the page has just posted */
export function runPosted({ allSheets }) {
  step('startPosted', { allSheets, sheet: activeSheet });
}

/** @param {any} value a run from another page; anything else is ignored */
export function takeRun(value) {
  const other = readRun(value);
  if (other) setRun(other);
}

function setRun(next) {
  if (next === run) return;
  run = next;
  changed();
}

/** @param {() => void} onChanged called after every step that changed the run */
export function openRunEvents(onChanged) {
  changed = onChanged;
  onEvents({
    onRunStarted: (message) => {
      resumeKept(message);
      step('runStarted', message);
    },
    onScanProgress: (message) => step('scanned', message),
    onReady: (message) => step('ready', message),
    onProgress: (message) => step('progressed', message),
    onComplete: (message) => step('completed', message),
    onCancelled: () => step('cancelled'),
    onError: (message) => step('failed', message),
    onExcelTranslateResumed: () => step('resumePosted'),
    onExcelTranslateResumeBlocked: (message) => step('resumeRefused', message),
    onExcelTranslateSheetChanged: (message) => step('sheetChanged', message),
    onExcelActiveSheetChanged: (message) => {
      activeSheet = message.sheetName;
      step('sheetOpened', message);
    },
    onSheetWriteBlocked: (message) => step('writeBlocked', message),
  });
  // The same notice comes as a message and as a call.
  onMessages({
    sheetWriteBlocked: (message) => {
      sayNoMore(message.message);
      step('writeBlocked', message);
    },
  });
  twin.onmessage = ({ data }) => {
    if (data.pausedRun === run.runId) step('pausePosted');
  };
  addEventListener('pagehide', () => save(sessionStorage, NAME, isBusy(run) ? run : null));
}

/** After a reload the add-in tells of the run that goes on; the counts until then were kept. */
function resumeKept({ runId }) {
  const kept = readRun(load(sessionStorage, NAME));
  save(sessionStorage, NAME, null);
  if (run.phase === 'idle' && kept?.runId === runId) setRun(kept);
}
