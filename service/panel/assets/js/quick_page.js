/** Quick translation: one text at a time, whatever a run does; its answer can be put into the selected cell. */
import { addressOf } from './address.js';
import { isHosted, onEvents, post } from './bridge.js';
import { loadChoices, saveChoices } from './choices.js';
import { byId, copyText } from './dom.js';
import { quickErrorCode, unwrittenText } from './errors.js';
import { language, onLanguage, t } from './i18n.js';
import { drawLanguageFields, openLanguageFields } from './language_fields.js';
import { openPage, showToast } from './page.js';
import { ANSWER_LIMIT_MS, ask, giveUp, readHistory, settle } from './quick_history.js';
import { chosenInstruction, openInstructionFields, setInstruction } from './quick_instruction.js';
import { askForSelection, openQuickSelection } from './quick_selection.js';
import { drawHistory, failureText, forgetDrawn } from './quick_view.js';
import { onWriteBlocked } from './run_events.js';
import { dropToken, onSession, token } from './session.js';
import { newTraceId } from './start_message.js';
import { load, save } from './storage.js';

const NAME = 'quick';

const choices = loadChoices();
let entries = readHistory(load(sessionStorage, NAME));
/** The token of each text that waits. @type {Map<string, string>} */
const askedWith = new Map();
/** The add-in's words for a cell that it could not write, empty without any. */
let unwritten = '';

/** Why nothing can be translated, empty when it can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  if (!isHosted()) return 'reason.host';
  if (!choices.targetLang) return 'reason.target';
  if (choices.sourceLang === choices.targetLang) return 'reason.same';
  return byId('text').value.trim() === '' ? 'quick.empty' : '';
}

function translateText() {
  if (obstacle()) return;
  const { sourceLang, targetLang } = choices;
  const question = { requestId: newTraceId(), text: byId('text').value, sourceLang, targetLang };
  const instruction = chosenInstruction();
  if (instruction) question.instruction = instruction;
  setEntries(ask(entries, question, Date.now()));
  setTimeout(checkTime, ANSWER_LIMIT_MS);
  byId('announcer').textContent = t('run.translating');
  askedWith.set(question.requestId, token());
  post('quickTranslate', { ...question, accessToken: token() });
}

function answered(answer) {
  const before = entries;
  setEntries(settle(entries, answer));
  if (entries === before) return;
  const entry = entries.find(({ requestId }) => requestId === answer.requestId);
  byId('announcer').textContent = answer.ok ? entry.translation : failureText(entry);
  const asked = askedWith.get(answer.requestId);
  askedWith.delete(answer.requestId);
  // Somebody else may have signed in meanwhile.
  if (quickErrorCode(entry.error) === 'unauthorized' && asked === token()) dropToken();
}

function checkTime() {
  setEntries(giveUp(entries, Date.now()));
}

function setEntries(next) {
  if (next === entries) return;
  entries = next;
  save(sessionStorage, NAME, entries);
  drawAnswers();
}

function drawAnswers() {
  drawHistory(entries, { ...USES, signInAddress: addressOf('login', language()) });
}

const write = (mode) => (entry) => {
  setUnwritten('');
  post('quickTranslateWrite', { mode, text: entry.translation });
};

const USES = {
  copy: async ({ translation }) => {
    const copied = await copyText(translation);
    showToast(t(copied ? 'common.copied' : 'common.notCopied'), copied ? 'info' : 'warn');
  },
  replace: write('replace'),
  insert: write('insert'),
  again: ({ text, sourceLang, targetLang, instruction }) => {
    byId('text').value = text;
    setInstruction(instruction);
    Object.assign(choices, { sourceLang, targetLang });
    drawLanguageFields(choices);
    drawForm();
    translateText();
  },
};

function setUnwritten(message) {
  unwritten = message;
  byId('unwritten').hidden = unwritten === '';
  byId('unwritten-text').textContent = unwritten ? t(unwrittenText(unwritten)) : '';
}

function drawForm() {
  const reason = obstacle();
  byId('start').disabled = reason !== '';
  byId('reason').textContent = reason ? t(reason) : '';
  byId('sign-in').hidden = token() !== '';
}

function redraw() {
  drawLanguageFields(choices);
  drawForm();
  setUnwritten(unwritten);
  forgetDrawn();
  drawAnswers();
}

function changed() {
  saveChoices(choices);
  drawForm();
}

byId('form').addEventListener('submit', (event) => {
  event.preventDefault();
  translateText();
});
byId('form').addEventListener('keydown', (event) => {
  if (event.key !== 'Enter' || !(event.ctrlKey || event.metaKey)) return;
  event.preventDefault();
  translateText();
});
byId('text').addEventListener('input', drawForm);
byId('clear').addEventListener('click', () => {
  // Answers that are still to come belong to nobody then.
  setEntries([]);
  byId('text').focus();
});
openInstructionFields();
openQuickSelection(drawForm);
onEvents({ onQuickTranslateResult: answered });
onWriteBlocked(setUnwritten);
onLanguage(redraw);
onSession(drawForm);
await openPage();
openLanguageFields(choices, changed);
askForSelection();
checkTime();
