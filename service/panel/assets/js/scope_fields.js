/** What is translated: the sheet, all sheets, or the selection. */
import { askedMode } from './address.js';
import { onEvents, onMessages, post } from './bridge.js';
import { byId, chooseRadio, chosenRadio } from './dom.js';

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
  onEvents({ quorvantisSetMode: setMode });
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
}
