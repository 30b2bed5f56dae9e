/** The translation page's choice of glossaries and of an instruction, for the document that the add-in names. */
import { isHosted, request } from './bridge.js';
import { byId, fillSelect, make } from './dom.js';
import { onLanguage, t, translate } from './i18n.js';
import { fetchItems } from './service_api.js';
import { onSession, token } from './session.js';
import { onChangedElsewhere } from './storage.js';
import { choiceFields, choiceFor, followUsual, keepChoice, sameChoice, usualChoice } from './terminology_choice.js';
import { onTerminologyChanged } from './terminology_news.js';

/** Empty until the add-in has named the document. */
let docKey = '';
/** The user's items; null until they are known. @type {{glossaries: object[], instructions: object[]} | null} */
let items = null;
let failed = false;

/** @returns {object} the fields of a start message; what is known to be gone is left out */
export function terminologyFields() {
  const { glossaryIds, instructionId } = choiceFor(docKey);
  const isThere = (kind) => (id) => items === null || items[kind].some((item) => item.id === id);
  return choiceFields({
    glossaryIds: glossaryIds.filter(isThere('glossaries')),
    instructionId: isThere('instructions')(instructionId) ? instructionId : '',
  });
}

/** Builds the section and keeps it up to date; call it before `openPage`, and `loadTerminology` after that. */
export function openTerminologyFields() {
  build();
  byId('terms').addEventListener('change', keep);
  byId('terms-again').addEventListener('click', () => void loadItems());
  byId('usual-set').addEventListener('click', () => {
    followUsual(docKey, chosen());
    drawAfterButton();
  });
  byId('usual-take').addEventListener('click', () => {
    followUsual(docKey);
    drawAfterButton();
  });
  onLanguage(draw);
  onSession(() => {
    items = null;
    void loadItems();
  });
  onTerminologyChanged(() => void loadItems());
  onChangedElsewhere('terminology', draw);
  // The document may have been saved under another name.
  addEventListener('focus', () => void askDocument());
}

/** Asks for the document and for the user's items. */
export async function loadTerminology() {
  await Promise.all([askDocument(), loadItems()]);
}

async function askDocument() {
  if (!isHosted()) return;
  const answer = await request('docKeyGet').catch(() => null);
  if (!answer || answer.docKey === docKey) return;
  docKey = answer.docKey;
  draw();
}

async function loadItems() {
  const asked = token();
  if (asked) {
    const lists = await Promise.all([fetchItems(asked, 'glossaries'), fetchItems(asked, 'instructions')]).catch(
      () => null,
    );
    if (token() !== asked) return;
    failed = lists === null;
    if (lists) items = { glossaries: lists[0], instructions: lists[1] };
  }
  draw();
}

function build() {
  const link = (page, words) => make('a', { 'data-page': page, 'data-t': words });
  byId('terms').append(
    make('summary', {}, [make('span', { 'data-t': 'terms.title' }), make('span', { id: 'terms-chosen', class: 'quiet' })]),
    make('div', { id: 'terms-body' }, [
      make('div', { id: 'terms-failed', class: 'row' }, [
        make('p', { 'data-t': 'terms.loadFailed' }),
        make('button', { id: 'terms-again', type: 'button', 'data-t': 'common.tryAgain' }),
      ]),
      make('div', { id: 'terms-fields' }, [
        make('fieldset', {}, [
          make('legend', { 'data-t': 'terms.glossaries' }),
          make('div', { id: 'term-glossaries' }),
          make('p', { id: 'term-none', class: 'hint', 'data-t': 'terms.noGlossaries' }),
        ]),
        make('label', { htmlFor: 'term-instruction', 'data-t': 'terms.instruction' }),
        make('select', { id: 'term-instruction' }),
      ]),
      make('div', { id: 'usual', class: 'buttons' }, [
        make('button', { id: 'usual-set', type: 'button', 'data-t': 'terms.makeUsual' }),
        make('button', { id: 'usual-take', type: 'button', 'data-t': 'terms.takeUsual' }),
      ]),
      make('p', { class: 'row' }, [
        link('glossary', 'terms.editGlossaries'),
        link('instruction', 'terms.editInstructions'),
      ]),
    ]),
  );
  translate(byId('terms'));
}

/** @returns {import('./terminology_choice.js').Choice} what the fields say */
function chosen() {
  const boxes = [...document.querySelectorAll('#term-glossaries input:checked')];
  return { glossaryIds: boxes.map(({ value }) => value), instructionId: byId('term-instruction').value };
}

function keep() {
  keepChoice(docKey, chosen());
  drawChosen();
}

/** The buttons vanish when there is nothing left to do for them. */
function drawAfterButton() {
  draw();
  byId('terms').querySelector('summary').focus();
}

function draw() {
  byId('terms').hidden = !token();
  byId('terms-failed').hidden = !failed;
  byId('terms-fields').hidden = items === null;
  const { glossaries = [], instructions = [] } = items ?? {};
  byId('term-none').hidden = glossaries.length > 0;
  const choice = choiceFor(docKey);
  drawBoxes(glossaries, choice.glossaryIds);
  const none = { value: '', text: t('terms.none') };
  fillSelect(
    byId('term-instruction'),
    [none, ...instructions.map(({ id, name }) => ({ value: id, text: name || id }))],
    instructions.some(({ id }) => id === choice.instructionId) ? choice.instructionId : '',
  );
  drawChosen();
}

/** Boxes that stay keep the focus. */
function drawBoxes(glossaries, checked) {
  const box = ({ id, name }) =>
    make('label', { class: 'check' }, [
      make('input', { type: 'checkbox', value: id }),
      make('span', { textContent: name || id, dir: 'auto' }),
    ]);
  const list = byId('term-glossaries');
  const shape = JSON.stringify(glossaries.map(({ id, name }) => [id, name]));
  if (list.dataset.shape !== shape) list.replaceChildren(...glossaries.map(box));
  list.dataset.shape = shape;
  for (const input of list.querySelectorAll('input')) input.checked = checked.includes(input.value);
}

function drawChosen() {
  const choice = chosen();
  const names = [...(items?.glossaries ?? []), ...(items?.instructions ?? [])]
    .filter(({ id }) => choice.glossaryIds.includes(id) || choice.instructionId === id)
    .map(({ id, name }) => name || id);
  byId('terms-chosen').textContent = names.join(' · ');
  byId('usual').hidden = items === null || sameChoice(choice, usualChoice());
}
