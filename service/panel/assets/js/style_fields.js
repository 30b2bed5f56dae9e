/** How translations are styled below their source text, and restyling those that are in the sheet already. */
import { onMessages } from './bridge.js';
import { byId, chooseRadio, chosenRadio, fillSelect } from './dom.js';
import { t } from './i18n.js';
import { readChoices } from './choices.js';
import { askSheet } from './sheet_changes.js';
import { styleFields } from './start_message.js';

let fonts = [];

/**
 * @param {import('./choices.js').Choices} choices
 * @param {() => void} changed
 */
export function openStyleFields(choices, changed) {
  const read = () => {
    const size = Number(byId('font-size').value);
    Object.assign(
      choices,
      readChoices({
        ...choices,
        layout: chosenRadio('layout'),
        font: byId('font').value,
        fontSize: size,
        weight: byId('weight').value,
        color: byId('color').value,
      }),
    );
    drawStyleFields(choices);
    changed();
  };
  for (const field of document.querySelectorAll('#layout-fields input, #style input, #style select')) {
    field.addEventListener('change', read);
  }
  onMessages({
    fontList: (message) => {
      fonts = message.fonts;
      drawStyleFields(choices);
    },
  });
  byId('apply-style').addEventListener('click', () => askSheet('setTargetStyle', styleFields(choices)));
}

/** @param {import('./choices.js').Choices} choices */
export function drawStyleFields(choices) {
  chooseRadio('layout', choices.layout);
  byId('style').hidden = choices.layout !== 'dual';
  // A font chosen on another machine stays a choice although it is not in the list.
  const names = choices.font && !fonts.includes(choices.font) ? [choices.font, ...fonts] : fonts;
  const kept = { value: '', text: t('style.keep') };
  fillSelect(byId('font'), [kept, ...names.map((name) => ({ value: name, text: name }))], choices.font);
  byId('font-size').value = choices.fontSize > 0 ? choices.fontSize : '';
  byId('font-size').placeholder = '–';
  byId('weight').value = choices.weight;
  byId('color').value = choices.color;
}
