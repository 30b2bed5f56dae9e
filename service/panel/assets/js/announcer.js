/** Tells screen readers how a run goes: each phase, and progress in steps of ten percent rather than each text. */
import { byId } from './dom.js';
import { formatPercent, language, t } from './i18n.js';
import { partDone } from './run_state.js';

const STEPS = 10;
let said = '';

/** @param {import('./run_state.js').Run} run */
export function announce(run) {
  const step = Math.floor(partDone(run) * STEPS);
  const now = `${language()} ${run.phase} ${run.phase === 'translating' ? `${step} ${sheetOf(run)}` : ''}`;
  if (now === said) return;
  said = now;
  byId('announcer').textContent = words(run, step);
}

/** A run over all sheets tells where it is. */
const sheetOf = ({ allSheets, sheet }) => (allSheets && sheet ? t('run.sheet', { sheet }) : '');

function words(run, step) {
  switch (run.phase) {
    case 'scanning':
      return t('run.scanning');
    case 'translating':
      return `${t('run.translating')} ${formatPercent(step / STEPS)} ${sheetOf(run)}`.trim();
    case 'paused':
      return t('run.paused');
    case 'done':
      return t('done.title');
    case 'cancelled':
      return t('done.cancelled');
    // The error itself is an alert.
    default:
      return '';
  }
}
