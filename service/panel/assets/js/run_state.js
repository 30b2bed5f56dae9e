/**
 * What the page knows of the run, as one value, and what each message of the add-in makes of it. Nothing here touches
 * the page: the view draws the value.
 */

/**
 * @typedef {object} Run
 * @property {'idle'|'starting'|'scanning'|'translating'|'paused'|'done'|'failed'|'cancelled'} phase
 * @property {number} runId of this run, or of the one before until the add-in has told it
 * @property {boolean} allSheets
 * @property {boolean} dual it writes below the source text
 * @property {string} trace the start's own id, which no other program's run has; empty while unknown
 * @property {string} startedBy mark of the token that it was started with, empty while unknown
 * @property {{current: number, total: number} | null} scan rows of the range being read
 * @property {number} cells that were read
 * @property {number} units texts to translate
 * @property {number} done texts that are finished; they finish in order
 * @property {number} skipped finished texts that held nothing to translate
 * @property {{original: string, translated: string} | null} last
 * @property {number} startedAt milliseconds since 1970
 * @property {number} elapsed milliseconds, once it has ended
 * @property {string} sheet that is being translated, empty while unknown
 * @property {string} movedTo the other sheet for which the run waits, empty when it does not
 * @property {string} unwritten the add-in's words for cells that it could not write, empty without any
 * @property {{code: string, message: string} | null} error
 */

/** @returns {Run} */
export function noRun() {
  return {
    phase: 'idle',
    runId: 0,
    allSheets: false,
    dual: false,
    trace: '',
    startedBy: '',
    scan: null,
    cells: 0,
    units: 0,
    done: 0,
    skipped: 0,
    last: null,
    startedAt: 0,
    elapsed: 0,
    sheet: '',
    movedTo: '',
    unwritten: '',
    error: null,
  };
}

const GOES_ON = ['scanning', 'translating', 'paused'];
const BUSY = ['starting', ...GOES_ON];

/** @param {Run} run */
export const isBusy = (run) => BUSY.includes(run.phase);

/** @param {Run} run */
export const hasEnded = (run) => ['done', 'failed', 'cancelled'].includes(run.phase);

/** @param {Run} run @returns {number} 0 to 1 */
export const partDone = (run) => (run.units > 0 ? run.done / run.units : 0);

const ended = (run, phase, now) => ({ ...run, phase, movedTo: '', elapsed: now - run.startedAt });

/** Whether a message is about an earlier run, or about the last one after its end. */
const isStale = (run, { runId }) =>
  runId !== undefined && (runId < run.runId || (runId === run.runId && !GOES_ON.includes(run.phase)));

const STEPS = {
  /** The user has pressed Start; the add-in has not answered yet. */
  startPosted: (run, { allSheets, dual, trace, startedBy, sheet }, now) => ({
    ...noRun(),
    phase: 'starting',
    runId: run.runId,
    allSheets,
    dual,
    trace,
    startedBy,
    sheet,
    startedAt: now,
  }),

  runStarted: (run, { runId, startedBy }, now) => {
    if (run.runId === runId && isBusy(run)) return run;
    const known = run.phase === 'starting' ? run : { ...noRun(), startedBy, startedAt: now };
    return { ...known, phase: 'scanning', runId };
  },

  /** The page that has started the run tells of it; the first word counts. */
  described: (run, { dual, trace }) => (run.trace ? run : { ...run, dual, trace }),

  scanned: (run, { runId, current, total }) => ({
    ...run,
    phase: run.phase === 'paused' ? 'paused' : 'scanning',
    runId,
    scan: { current, total },
  }),

  ready: (run, { runId, total, translatable }) => ({
    ...run,
    phase: run.phase === 'paused' ? 'paused' : 'translating',
    runId,
    scan: null,
    cells: total,
    units: translatable,
  }),

  progressed: (run, { runId, wordIndex, total, translatable, skipped, original, translated }) => ({
    ...run,
    phase: run.phase === 'paused' ? 'paused' : 'translating',
    runId,
    scan: null,
    cells: total,
    units: translatable,
    done: Math.max(run.done, wordIndex + 1),
    skipped: run.skipped + (skipped ? 1 : 0),
    last: { original, translated },
  }),

  completed: (run, { total, elapsed, allSheets }) => ({
    ...run,
    phase: 'done',
    cells: total,
    done: run.units,
    movedTo: '',
    elapsed,
    allSheets,
  }),

  cancelled: (run, message, now) => ended(run, 'cancelled', now),

  failed: (run, { code, message }, now) => {
    // A refused start that another page has posted: the run before it has ended long since.
    const own = isBusy(run) ? run : { ...noRun(), runId: run.runId, startedAt: now };
    if (code === 'cancelled') return ended(own, 'cancelled', now);
    return { ...ended(own, 'failed', now), error: { code: code ?? '', message: message ?? '' } };
  },

  pausePosted: (run) => ({ ...run, phase: 'paused' }),

  /** Nothing tells of a resume that was not needed, so it is taken as done until it is refused. */
  resumePosted: (run) => ({ ...run, phase: run.units > 0 ? 'translating' : 'scanning', movedTo: '' }),

  resumeRefused: (run, { sheetName, sourceSheetName }) => ({
    ...run,
    phase: 'paused',
    sheet: sourceSheetName,
    movedTo: sheetName,
  }),

  /** A run over one sheet pauses by itself when the user opens another one. */
  sheetOpened: (run, { sheetName }) => {
    if (!isBusy(run) || run.allSheets) return run;
    if (sheetName === run.sheet) return { ...run, movedTo: '' };
    // Which sheet is the run's own is not known: the first one that was opened is certainly another.
    if (run.sheet === '' && run.movedTo !== '') return run;
    return { ...run, phase: 'paused', movedTo: sheetName };
  },

  /** A run over all sheets has come to the next one. */
  sheetChanged: (run, { sheetName }) => ({ ...run, sheet: sheetName, allSheets: true }),

  writeBlocked: (run, { message }) => ({ ...run, unwritten: message || ' ' }),

  dismissed: (run) => ({ ...noRun(), runId: run.runId }),
};

/** Steps that only mean something while a run is on; the rest may begin or replace one. */
const NEEDS_BUSY = [
  'completed',
  'cancelled',
  'pausePosted',
  'resumePosted',
  'resumeRefused',
  'sheetChanged',
  'progressed',
  'described',
];

/**
 * @param {Run} run
 * @param {keyof typeof STEPS} step
 * @param {object} message
 * @param {number} now milliseconds since 1970
 * @returns {Run} the same object when nothing has changed
 */
export function advance(run, step, message = {}, now = 0) {
  if (isStale(run, message)) return run;
  if (NEEDS_BUSY.includes(step) && !isBusy(run)) return run;
  return STEPS[step](run, message, now);
}

/**
 * @param {any} value a run that was kept or came from another page
 * @returns {Run | null} null when it is none
 */
export function readRun(value) {
  const fields = noRun();
  const fits =
    value !== null &&
    typeof value === 'object' &&
    Object.entries(fields).every(
      ([name, initial]) => name in value && (initial === null || typeof value[name] === typeof initial),
    ) &&
    (value.phase === 'idle' || isBusy(value) || hasEnded(value));
  return fits ? Object.fromEntries(Object.keys(fields).map((name) => [name, value[name]])) : null;
}
