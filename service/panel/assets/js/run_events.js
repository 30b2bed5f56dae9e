/** Keeps the run: turns what the add-in says into steps of its state, and keeps that over reloads and windows. */
import { paneKey } from './address.js';
import { onEvents, onMessages } from './bridge.js';
import { sayNoMore } from './page.js';
import { advance, isBusy, noRun, readRun } from './run_state.js';
import { dropToken, token } from './session.js';
import { load, save } from './storage.js';

const NAME = 'run';
const VIA_PAGE = 'viaPage';
/** Enough of a token to tell two apart, too little to be one. */
const MARK_LENGTH = 4;
const markOf = (text) => text.slice(-MARK_LENGTH);

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
  step('startPosted', { allSheets, startedBy: markOf(token()), sheet: activeSheet });
}

/** @returns {boolean} whether the page shall perform the requests of the next run */
export const goesThroughPage = () => load(sessionStorage, VIA_PAGE) === true;

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
      step('runStarted', { ...message, startedBy: markOf(token()) });
    },
    onScanProgress: (message) => step('scanned', message),
    onReady: (message) => step('ready', message),
    onProgress: (message) => step('progressed', message),
    onComplete: (message) => step('completed', message),
    onCancelled: () => step('cancelled'),
    onError: (message) => {
      const before = run;
      step('failed', message);
      if (run !== before) learnFrom(run);
    },
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

/** What the next run needs to know of a failure; a failed run that was only taken over teaches nothing. */
function learnFrom({ error, startedBy }) {
  // The add-in's own requests pass by the proxies that the browser knows.
  if (error?.code === 'network_error') save(sessionStorage, VIA_PAGE, true);
  // Somebody else may have signed in since the run began.
  if (error?.code === 'unauthorized' && token() && markOf(token()) === startedBy) dropToken();
}

/** After a reload the add-in tells of the run that goes on; the counts until then were kept. */
function resumeKept({ runId }) {
  const kept = readRun(load(sessionStorage, NAME));
  save(sessionStorage, NAME, null);
  if (run.phase === 'idle' && kept?.runId === runId) setRun(kept);
}
