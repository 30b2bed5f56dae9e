/** The selection's text as the text to translate: it is taken over until the user writes another one. */
import { onEvents, post } from './bridge.js';
import { byId } from './dom.js';
import { onLanguage } from './i18n.js';
import { takeQuickText } from './quick_text.js';
import { previewLine } from './selection_text.js';

/** The add-in's last word on the selection. */
let preview = null;
/** What was taken over last; a field that holds anything else is the user's. */
let taken = '';

/** @param {() => void} changed called when the text is another one */
export function openQuickSelection(changed) {
  const take = (text) => {
    taken = byId('text').value = text;
    draw();
    changed();
  };
  onEvents({
    onSelectionPreview: (seen) => {
      preview = seen;
      if (seen.quickText && isFree()) take(seen.quickText);
      draw();
    },
  });
  byId('take').addEventListener('click', () => {
    take(preview.quickText);
    byId('text').focus();
  });
  byId('text').addEventListener('input', draw);
  onLanguage(draw);
  const handedOver = takeQuickText();
  if (handedOver) take(handedOver);
}

/** The add-in tells of later selections by itself. */
export function askForSelection() {
  post('requestSelectionPreview');
}

/** Nothing is taken from under the user's fingers. */
function isFree() {
  const field = byId('text');
  const writes = document.activeElement === field && document.hasFocus();
  return !writes && (field.value === '' || field.value === taken);
}

function draw() {
  byId('selected').hidden = preview === null;
  byId('selected').textContent = preview === null ? '' : previewLine(preview);
  const text = preview?.quickText ?? '';
  byId('take').hidden = text === '' || text === byId('text').value;
}
