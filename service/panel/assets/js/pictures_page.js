/** Translates the text in pictures of the active sheet: one, several or all, shown first or put in at once. */
import { isHosted, onEvents, post } from './bridge.js';
import { loadChoices, saveChoices } from './choices.js';
import { byId, chosenRadio } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { drawLanguageFields, openLanguageFields } from './language_fields.js';
import { openPage } from './page.js';
import { cancel, noteSelection, noteSheet, replace, scan, translate, undo, undoAll } from './pictures_jobs.js';
import { change, isBusy, isCancelled, items, onChanged, setItem, setItems, state } from './pictures_model.js';
import { chooseAll, isSamePicture } from './pictures_state.js';
import { batchSize } from './pictures_undo.js';
import { drawItems, failureText, forgetDrawn, makeThumbnail } from './pictures_view.js';
import { onActiveSheet } from './run_events.js';
import { onSession, token } from './session.js';

const choices = loadChoices();

/** Why nothing can be translated, empty when it can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  if (!isHosted()) return 'reason.host';
  if (!choices.targetLang) return 'reason.target';
  return choices.sourceLang === choices.targetLang ? 'reason.same' : '';
}

/** Does one thing; the focus goes to where it can be ended, and back when it has ended. */
async function run(job) {
  if (isBusy()) return;
  const use = document.activeElement?.dataset.use;
  const before = document.activeElement;
  const done = job();
  if (state.work) byId('cancel').focus();
  await done;
  if ([byId('cancel'), document.body].includes(document.activeElement)) focusAgain(before, use);
  byId('announcer').textContent = [outcomeWords(), staleWords()].filter(Boolean).join(' ') || listWords();
}

function focusAgain(before, use) {
  const item = use && byId('list').querySelector(`[data-use="${CSS.escape(use)}"]`);
  const box = use && byId('list').querySelector(`[data-use="${CSS.escape(use.replace(/ .*/, ' choose'))}"]`);
  const places = [item, box, ...['replace-all', 'undo-all'].map(byId), before, byId('start'), byId('scan')];
  places.find((place) => place?.isConnected && !place.hidden && !place.disabled && place !== document.body)?.focus();
}

function translateChosen(chosen) {
  if (obstacle() || chosen.length === 0) return;
  const { sourceLang, targetLang } = choices;
  void run(() => translate(chosen, { sourceLang, targetLang }, chosenRadio('then') === 'replace'));
}

/** The picture that is selected in the sheet, in its place in the list when it is there. */
function translateSelected() {
  const isSelected = ({ anchor }) => isSamePicture(anchor, state.selected.anchor);
  if (!items().some(isSelected)) setItems([...items(), state.selected]);
  translateChosen([items().find(isSelected)]);
}

const USES = {
  choose: ({ id }, chosen) => setItem(id, { chosen }),
  replace: (item) => void run(() => replace([item])),
  undo: (item) => void run(() => undo(item)),
  enlarge: ({ anchor, translated }) => {
    const title = anchor.shapeName;
    post('openImagePreview', { imageBase64: translated, mediaType: 'image/png', title, downloadName: `${title}.png` });
  },
};

const readyItems = () => items().filter((item) => item.state === 'ready');
const chosenItems = () => items().filter((item) => item.chosen);

function listWords() {
  if (state.scanFailure) return failureText(state.scanFailure);
  if (state.scanning || !state.scan) return state.scanning ? t('pictures.scanning') : '';
  const count = items().length;
  return count === 0 ? t('pictures.none') : t('pictures.found', { count, chosen: chosenItems().length });
}

function staleWords() {
  if (state.openSheet) return t('pictures.otherSheet', { open: state.openSheet, sheet: state.scan.sheetName });
  return state.stale ? t(state.stale) : '';
}

/** The notice says it already where the sheet is another one. */
function outcomeWords() {
  const { outcome, stoppedBy } = state;
  const why = stoppedBy && !stoppedBy.rescan ? failureText(stoppedBy) : '';
  const what = outcome?.() ?? '';
  return what.includes(why) ? what : `${what} ${why}`.trim();
}

/** Puts text into an element that takes no room without it. */
function fill(id, words) {
  byId(id).textContent = words;
  byId(id).hidden = words === '';
}

function drawList() {
  const { scan: found, selected } = state;
  byId('list-title').textContent = found?.sheetName
    ? t('pictures.onSheet', { sheet: found.sheetName })
    : t('pictures.title');
  byId('list-state').textContent = listWords();
  byId('list-state').className = state.scanFailure ? 'problem' : 'quiet';
  fill('unsupported', found?.unsupported ? t('pictures.unsupported', { count: found.unsupported }) : '');
  byId('moved-text').textContent = staleWords();
  byId('moved').hidden = staleWords() === '';
  byId('list').setAttribute('aria-busy', String(state.scanning));
  byId('all-row').hidden = items().length < 2;
  const chosen = chosenItems().length;
  byId('all').checked = chosen > 0 && chosen === items().length;
  byId('all').indeterminate = chosen > 0 && chosen < items().length;
  drawItems(items(), selected?.anchor ?? null, USES);
}

function drawSelected() {
  byId('selected').hidden = state.selected === null;
  if (state.selected === null) return;
  byId('selected-name').textContent = state.selected.anchor.shapeName;
  const shown = byId('selected-picture');
  if (shown.dataset.id === String(state.selected.id)) return;
  shown.dataset.id = state.selected.id;
  shown.replaceChildren(...makeThumbnail(state.selected).childNodes);
}

function drawWork() {
  const { work, outcome, stoppedBy, undos } = state;
  byId('work').hidden = work === null;
  if (work) {
    const current = Math.min(work.done + 1, work.total);
    byId('work-title').textContent = isCancelled()
      ? t('pictures.stopping')
      : t('pictures.progress', { current, total: work.total });
    Object.assign(byId('progress'), { max: work.total, value: work.done });
  }
  byId('cancel').disabled = isCancelled();
  fill('outcome-text', outcome?.() ?? '');
  const why = stoppedBy ? failureText(stoppedBy) : '';
  fill('outcome-problem', why === outcome?.() ? '' : why);
  const ready = readyItems().length;
  const batch = batchSize(undos);
  fill('replace-all', ready > 1 ? t('pictures.replaceAll', { count: ready }) : '');
  fill('undo-all', batch > 0 ? t('pictures.undoAll', { count: batch }) : '');
  byId('outcome').hidden = work !== null || !(outcome || stoppedBy || ready > 1 || batch > 0);
}

function draw() {
  const busy = isBusy();
  const reason = obstacle();
  const unchosen = items().length > 0 && chosenItems().length === 0;
  const words = reason || (unchosen ? 'pictures.chooseFirst' : '');
  byId('sign-in').hidden = token() !== '';
  byId('reason').textContent = words && !busy ? t(words) : '';
  byId('start').disabled = busy || reason !== '' || chosenItems().length === 0;
  byId('selected-translate').disabled = busy || reason !== '';
  for (const id of ['scan', 'rescan']) byId(id).disabled = busy || !isHosted();
  for (const id of ['replace-all', 'undo-all']) byId(id).disabled = busy;
  drawSelected();
  drawList();
  // After the list, which keeps its focus by itself.
  byId('choices').disabled = busy;
  drawWork();
}

/** The add-in draws the selected picture each time that it is asked. */
const LOOK_AGAIN_MS = 2000;
let lastLook = -LOOK_AGAIN_MS;

function askForSelection() {
  if (isBusy() || performance.now() - lastLook < LOOK_AGAIN_MS) return;
  lastLook = performance.now();
  post('requestImageSelectionPreview');
}

byId('form').addEventListener('submit', (event) => {
  event.preventDefault();
  translateChosen(chosenItems());
});
byId('all').addEventListener('change', () => setItems(chooseAll(items())));
for (const id of ['scan', 'rescan']) byId(id).addEventListener('click', () => void run(scan));
byId('selected-translate').addEventListener('click', translateSelected);
byId('replace-all').addEventListener('click', () => void run(() => replace(readyItems())));
byId('undo-all').addEventListener('click', () => void run(undoAll));
byId('cancel').addEventListener('click', cancel);
onChanged(draw);
onEvents({ onImageSelectionPreview: (preview) => void noteSelection(preview) });
onActiveSheet(noteSheet);
onLanguage(() => {
  drawLanguageFields(choices);
  forgetDrawn();
  draw();
});
onSession(draw);
await openPage();
openLanguageFields(choices, () => {
  saveChoices(choices);
  draw();
});
if (isHosted()) {
  askForSelection();
  // A host tells of selected cells by itself, but not always of a selected picture: the user comes here with the pointer.
  addEventListener('focus', askForSelection);
  document.documentElement.addEventListener('pointerenter', askForSelection);
  await run(scan);
}
