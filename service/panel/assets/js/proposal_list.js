/** Draws what is proposed for the fields of a form, each with a box to choose it. */
import { make } from './dom.js';
import { SURE_ENOUGH } from './form_fields.js';
import { t } from './i18n.js';

/**
 * @param {import('./form_fields.js').Proposal[]} proposals
 * @param {(chosen: number[]) => void} onChange called after each change of the choice
 * @returns {{element: HTMLElement, chosen: () => number[]}} chosen: positions among the proposals
 */
export function makeProposalList(proposals, onChange) {
  const boxes = proposals.map(({ confidence }) =>
    make('input', { type: 'checkbox', checked: confidence >= SURE_ENOUGH }),
  );
  const all = make('input', { type: 'checkbox' });
  const chosen = () => boxes.flatMap((box, index) => (box.checked ? [index] : []));
  const changed = () => {
    const count = chosen().length;
    all.checked = count === boxes.length;
    all.indeterminate = count > 0 && count < boxes.length;
    onChange(chosen());
  };
  all.addEventListener('change', () => {
    for (const box of boxes) box.checked = all.checked;
    changed();
  });
  for (const box of boxes) box.addEventListener('change', changed);
  const rows = proposals.map((proposal, index) => make('li', {}, [make('label', {}, [boxes[index], words(proposal)])]));
  const choice = make('label', { class: 'all' }, [all, make('span', { textContent: t('chat.fillAll') })]);
  const element = make('div', { class: 'proposals' }, [choice, make('ul', {}, rows)]);
  changed();
  return { element, chosen };
}

function words({ field, value, confidence }) {
  const percent = Math.round(confidence * 100);
  return make('span', { class: 'proposal' }, [
    make('strong', { dir: 'auto', textContent: field.label || field.context?.left || field.context?.above || '' }),
    make('bdi', { class: 'target', textContent: field.address }),
    make('span', { class: 'quiet', textContent: confidence === undefined ? '' : t('chat.fillSure', { percent }) }),
    make('span', { class: 'change' }, [
      shown('del', field.currentValue),
      make('span', { 'aria-hidden': 'true', class: 'arrow', textContent: '→' }),
      shown('ins', String(value)),
    ]),
  ]);
}

const shown = (tag, text) =>
  text.trim() === ''
    ? make(tag, { class: 'nothing', textContent: t('chat.fillNothing') })
    : make(tag, { dir: 'auto', textContent: text });
