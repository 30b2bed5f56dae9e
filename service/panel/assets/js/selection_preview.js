/** What is selected in the sheet at the moment, as the add-in tells it of its own accord. */
import { onEvents } from './bridge.js';
import { byId } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { keepQuickText } from './quick_text.js';
import { previewLine } from './selection_text.js';

/** The add-in's last word on the selection. */
let preview = null;

/** @returns {number} cells of the active sheet that hold translations, as far as the add-in has told */
export const writtenOnSheet = () => preview?.translatedCellsOnSheet ?? 0;

/** @param {() => void} changed called whenever the add-in has told of a selection */
export function openSelectionPreview(changed) {
  onEvents({
    onSelectionPreview: (seen) => {
      preview = seen;
      draw();
      changed();
    },
  });
  byId('preview-quick').addEventListener('click', () => keepQuickText(preview.quickText));
  onLanguage(draw);
}

function draw() {
  byId('selection').hidden = preview === null;
  if (preview === null) return;
  byId('preview').textContent = previewLine(preview);
  const { translatedCellsOnSheet: sheet = 0, translatedCellsInSelection: selection = 0, quickText = '' } = preview;
  byId('preview-written').textContent = sheet > 0 ? t('preview.written', { sheet, selection }) : '';
  byId('preview-quick-row').hidden = quickText === '';
  byId('preview-quick-text').textContent = quickText;
}
