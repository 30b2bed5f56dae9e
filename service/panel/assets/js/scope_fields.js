/** What is translated: the sheet, all sheets, or the selection with a preview of it. */
import { askedMode } from './address.js';
import { onEvents, onMessages, post } from './bridge.js';
import { byId, chooseRadio, chosenRadio } from './dom.js';
import { t } from './i18n.js';

/** The add-in's last word on the selection. */
let preview = null;

/** @returns {'full' | 'selection'} */
export const scopeMode = () => (chosenRadio('scope') === 'selection' ? 'selection' : 'full');

/**
 * @param {import('./choices.js').Choices} choices
 * @param {() => void} changed
 */
export function openScopeFields(choices, changed) {
  const react = () => {
    if (scopeMode() === 'selection') post('requestSelectionPreview');
    drawScopeFields(choices);
    changed();
  };
  const setMode = (mode) => {
    if (mode !== 'full' && mode !== 'selection') return;
    chooseRadio('scope', mode);
    react();
  };
  onMessages({ setMode: ({ mode }) => setMode(mode) });
  onEvents({
    quorvantisSetMode: setMode,
    onSelectionPreview: (seen) => {
      preview = seen;
      drawScopeFields(choices);
    },
  });
  for (const radio of document.querySelectorAll('input[name="scope"]')) radio.addEventListener('change', react);
  byId('all-sheets').addEventListener('change', (event) => {
    choices.allSheets = event.target.checked;
    changed();
  });
  setMode(askedMode ?? 'full');
}

/** @param {import('./choices.js').Choices} choices */
export function drawScopeFields(choices) {
  const selection = scopeMode() === 'selection';
  byId('all-sheets').checked = choices.allSheets;
  byId('all-sheets-row').hidden = selection;
  byId('preview').hidden = !selection || preview === null;
  byId('preview').textContent = preview === null ? '' : previewText(preview);
}

function previewText({ error, fragments, chars, rangeAddress }) {
  if (error) return t('selection.failed');
  if (!fragments) return t('selection.empty');
  const range = String(rangeAddress ?? '').replaceAll('$', '');
  return t('selection.summary', { range, count: fragments, chars: chars ?? 0 });
}
