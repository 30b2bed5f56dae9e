/** What the sheet shows after a run: source and translation, the translation alone, or the source text. */
import { onEvents, post } from './bridge.js';
import { t } from './i18n.js';
import { showToast } from './page.js';

/** How long the add-in may take; large sheets take seconds. */
const LIMIT_MS = 30000;

const buttons = document.querySelectorAll('[data-display]');
let timer = 0;

export function openDisplaySwitch() {
  onEvents({ onExcelDisplayModeDone: cellsChanged });
  for (const button of buttons) button.addEventListener('click', () => switchTo(button));
}

/**
 * Tells what came of a change of translated cells.
 * @param {{ok: boolean, applied?: number}} answer of the add-in
 */
export function cellsChanged({ ok, applied }) {
  setWaiting(false);
  showToast(ok ? t('display.done', { count: applied ?? 0 }) : t('display.failed'), ok ? 'info' : 'warn');
}

/** One switch at a time. The buttons keep the focus, so they are not disabled outright. */
function setWaiting(waits) {
  clearTimeout(timer);
  for (const button of buttons) button.ariaDisabled = waits ? 'true' : null;
}

function switchTo(button) {
  if (button.ariaDisabled) return;
  post('setExcelDisplayMode', { mode: button.dataset.display, scope: 'session' });
  setWaiting(true);
  timer = setTimeout(() => {
    setWaiting(false);
    showToast(t('display.noAnswer'), 'warn');
  }, LIMIT_MS);
}
