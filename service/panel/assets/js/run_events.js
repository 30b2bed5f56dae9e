/** Keeps the run: turns what the add-in says into steps of its state, and keeps that over reloads and windows. */
import { inWorkspace, paneKey } from './address.js';
import { onEvents, onMessages } from './bridge.js';
import { advance, hasEnded, isBusy, noRun, readRun } from './run_state.js';
import { dropToken, token } from './session.js';
import { load, save } from './storage.js';
import { addUnit, beginUnits, openUnits } from './unit_store.js';

const NAME = 'run';
const VIA_PAGE = 'viaPage';
/** How far a start and the twin's word of it may be apart. */
const TWIN_LIMIT_MS = 5000;
/** Enough of a token to tell two apart, too little to be one. */
const MARK_LENGTH = 4;
const markOf = (text) => text.slice(-MARK_LENGTH);

/**
 * The page of the workspace window, or of the pane: it shows the same run, and nothing tells it of a pause. Panes of other
 * programs may have the same name and the same run numbers, and are heard as well: only a start's own id tells them apart.
 */
const twin = new BroadcastChannel(`quorvantis ${paneKey}`);

/** @type {import('./run_state.js').Run} */
let run = noRun();
/** The sheet that the user looks at; empty until the add-in has told of one. */
let activeSheet = '';
let changed = () => {};
let writeBlockedListener = () => {};
let activeSheetListener = () => {};
let shown = false;
/** The last start that the twin has told of. @type {{runId: number, dual: boolean, trace: string, at: number} | null} */
let heard = null;
/** The run of the page before, until the add-in has said what became of it. @type {typeof run | null} */
let kept = null;

export const currentRun = () => run;

/** @param {keyof typeof import('./run_state.js').STEPS} step @param {object} [message] */
export function step(step, message) {
  setRun(advance(run, step, message, Date.now()));
}

/** The user has paused the run here. */
export function pausePosted() {
  step('pausePosted');
  if (run.trace) twin.postMessage({ paused: run.trace });
}

/** @param {{allSheets: boolean, dual: boolean, trace: string}} start that the page has just posted */
export function runPosted(start) {
  // The workspace is not told of every sheet that is opened.
  step('startPosted', { ...start, startedBy: markOf(token()), sheet: inWorkspace ? '' : activeSheet });
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

/** This page shows the run. @param {() => void} onChanged called after every step that changed it */
export function showRun(onChanged) {
  changed = onChanged;
  shown = true;
}

export const showsRun = () => shown;

/** Follows the run on every page, so that none of its ends is missed; call it after `showRun`. */
export function openRunEvents() {
  onEvents({
    onRunStarted: (message) => {
      resumeKept(message);
      step('runStarted', { ...message, startedBy: markOf(token()) });
      if (run.trace) twin.postMessage({ started: { runId: run.runId, dual: run.dual, trace: run.trace } });
      else describe();
    },
    onScanProgress: (message) => step('scanned', message),
    onReady: (message) => stepThen(beginUnits, 'ready', message, message.runId),
    onProgress: (message) => stepThen(addUnit, 'progressed', message, message),
    onComplete: (message) => {
      resumeKept(message);
      step('completed', message);
    },
    onCancelled: () => {
      resumeKept({});
      step('cancelled');
    },
    onError: (message) => {
      resumeKept(message);
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
      activeSheetListener(activeSheet);
    },
    onSheetWriteBlocked: writeBlocked,
  });
  // The same notice comes as a message and as a call.
  onMessages({ sheetWriteBlocked: writeBlocked });
  twin.onmessage = ({ data }) => {
    if (data.paused && data.paused === run.trace) step('pausePosted');
    if (!data.started) return;
    heard = { ...data.started, at: Date.now() };
    describe();
  };
  openUnits();
  kept = readRun(load(sessionStorage, NAME));
  save(sessionStorage, NAME, null);
  if (kept && hasEnded(kept)) setRun(kept);
  addEventListener('pagehide', keepRun);
}

/** @param {(message: string) => void} listener called with the add-in's words for cells that it could not write */
export function onWriteBlocked(listener) {
  writeBlockedListener = listener;
}

/** @param {(sheetName: string) => void} listener called when the user has gone to another sheet */
export function onActiveSheet(listener) {
  activeSheetListener = listener;
}

function writeBlocked(message) {
  step('writeBlocked', message);
  writeBlockedListener(message.message || ' ');
}

/** What an earlier run still says is not taken. */
function stepThen(act, name, message, argument) {
  const before = run;
  step(name, message);
  if (run !== before) act(argument);
}

/** For the next page: a run that goes on, and an end that nobody has seen yet. */
function keepRun() {
  const last = run.phase === 'idle' ? kept : run;
  const wanted = last && (isBusy(last) || (hasEnded(last) && !shown));
  save(sessionStorage, NAME, wanted ? last : null);
}

/** The start that the twin has told of may be heard before or after the add-in's own word. */
function describe() {
  if (heard?.runId === run.runId && Date.now() - heard.at < TWIN_LIMIT_MS) step('described', heard);
}

/** What the next run needs to know of a failure; a failed run that was only taken over teaches nothing. */
function learnFrom({ error, startedBy }) {
  // The add-in's own requests pass by the proxies that the browser knows.
  if (error?.code === 'network_error') save(sessionStorage, VIA_PAGE, true);
  // Somebody else may have signed in since the run began.
  if (error?.code === 'unauthorized' && token() && markOf(token()) === startedBy) dropToken();
}

/** After a load the add-in tells of the run that goes on; the counts until then were kept. */
function resumeKept({ runId }) {
  if (run.phase !== 'idle' || !kept) return;
  if (runId === undefined || runId === kept.runId || kept.phase === 'starting') setRun(kept);
  kept = null;
}
