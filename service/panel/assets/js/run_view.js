/** Draws the run: its progress, its end, what went wrong, and what can be done next. */
import { byId, make } from './dom.js';
import { errorRow, unwrittenText } from './errors.js';
import { formatDuration, formatNumber, formatPercent, t } from './i18n.js';
import { hasEnded, isBusy, partDone } from './run_state.js';

const TITLES = {
  starting: 'run.starting',
  scanning: 'run.scanning',
  translating: 'run.translating',
  paused: 'run.paused',
  done: 'done.title',
  cancelled: 'done.cancelled',
  failed: 'done.failed',
};

/** @param {import('./run_state.js').Run} run @param {number} now milliseconds since 1970 */
export function drawRun(run, now) {
  byId('run').hidden = run.phase === 'idle';
  byId('run').dataset.phase = run.phase;
  if (run.phase === 'idle') return;
  byId('run-title').textContent = t(TITLES[run.phase]);
  byId('run-sheet').textContent = run.sheet && isBusy(run) ? t('run.sheet', { sheet: run.sheet }) : '';
  drawProgress(run, now);
  drawButtons(run);
  drawMoved(run);
  drawUnwritten(run);
  drawError(run);
  drawSummary(run);
}

/** @param {import('./run_state.js').Run} run @param {number} now */
export function drawElapsed(run, now) {
  byId('run-elapsed').textContent = t('run.elapsed', { time: formatDuration(now - run.startedAt) });
}

function drawProgress(run, now) {
  byId('progress').hidden = !isBusy(run);
  if (!isBusy(run)) return;
  const bar = byId('run-bar');
  const share = run.scan ? run.scan.current / Math.max(1, run.scan.total) : partDone(run);
  if (run.scan === null && run.units === 0) bar.removeAttribute('value');
  else bar.value = share;
  bar.classList.toggle('reading', run.scan !== null);
  byId('run-count').textContent = countText(run);
  byId('run-percent').textContent = run.units > 0 ? formatPercent(partDone(run)) : '';
  byId('run-last').hidden = run.last === null;
  byId('run-original').textContent = run.last?.original ?? '';
  byId('run-translated').textContent = run.last?.translated ?? '';
  drawElapsed(run, now);
}

/** @param {import('./run_state.js').Run} run @returns {string} how far it is, empty before anything is known */
export function countText(run) {
  if (run.scan) return t('run.scanned', run.scan);
  return run.units > 0 ? t('run.count', { done: run.done, total: run.units }) : '';
}

function drawButtons(run) {
  byId('pause').hidden = !['scanning', 'translating'].includes(run.phase);
  byId('resume').hidden = run.phase !== 'paused';
  byId('run-buttons').hidden = !isBusy(run);
}

function drawMoved(run) {
  byId('moved').hidden = run.movedTo === '';
  byId('moved').textContent = run.sheet
    ? t('run.blocked', { source: run.sheet })
    : t('run.moved', { sheet: run.movedTo });
}

function drawUnwritten(run) {
  byId('unwritten').hidden = run.unwritten === '';
  byId('unwritten-text').textContent = run.unwritten ? t(unwrittenText(run.unwritten)) : '';
}

function drawError(run) {
  const row = errorRow(run.error?.code ?? '');
  byId('error').hidden = run.error === null;
  byId('error-text').textContent = run.error ? t(row.text) : '';
  // A code that has no words of its own: what the add-in said is better than nothing.
  const detail = run.error && row.text === 'error.unknown' ? run.error.message : '';
  byId('error-detail').textContent = detail;
  byId('error-detail').hidden = detail === '';
  byId('error-sign-in').hidden = row.remedy !== 'signIn';
  byId('error-account').hidden = row.remedy !== 'account';
  const again = row.remedy === 'tryAgain';
  byId('error-again').hidden = !again;
  // Another run would take the cells with their translations for its source.
  byId('error-partly').hidden = !again || !run.dual || run.done - run.skipped === 0;
}

/** Rows of the summary: label and number; those that are 0 are left out but the first. */
function summaryRows(run) {
  // What was translated is not in the sheet where cells refused it.
  const rows = [[run.unwritten ? 'done.received' : 'done.translated', run.done - run.skipped]];
  if (run.phase !== 'done' && run.units > run.done) rows.push(['done.left', run.units - run.done]);
  if (run.skipped > 0) rows.push(['done.blank', run.skipped]);
  // A cell may hold several texts, so the difference is a number of cells only while there are more of them.
  if (run.cells > run.units) rows.push(['done.noText', run.cells - run.units]);
  return rows.map(([key, count]) => [t(key), formatNumber(count)]);
}

function drawSummary(run) {
  const ended = hasEnded(run);
  const somethingRead = run.units > 0 || run.phase === 'done';
  byId('summary').hidden = !ended || !somethingRead;
  byId('dismiss').hidden = !ended;
  if (!ended) return;
  const rows = [...summaryRows(run), [t('done.time'), formatDuration(run.elapsed)]];
  byId('summary').replaceChildren(
    ...rows.map(([label, value]) =>
      make('div', {}, [make('dt', { textContent: label }), make('dd', { textContent: value })]),
    ),
  );
}
