/** The chat: the language model answers, and works in the open workbook with the add-in's tools. */
import { addressOf } from './address.js';
import { isHosted, onEvents } from './bridge.js';
import { questionOf } from './call_view.js';
import { newTurn, prepareRetry, readTurns } from './chat_conversation.js';
import { failureRow } from './chat_failures.js';
import { hasModel } from './chat_service.js';
import { runTurn } from './chat_turn.js';
import { drawConversation } from './chat_view.js';
import { confirmInWords } from './dialogs.js';
import { byId } from './dom.js';
import { undoFill } from './form_filler.js';
import { language, onLanguage, t } from './i18n.js';
import { openPage } from './page.js';
import { dropToken, onSession, token } from './session.js';
import { load, save } from './storage.js';
import { undoTurn } from './tool_runner.js';

const NAME = 'chat';
/** From the end of the page within which the newest words stay in sight. */
const NEAR_END_PX = 120;
const EXAMPLES = ['example1', 'example2', 'example3'];

let turns = readTurns(load(sessionStorage, NAME));
/** Stops the turn that is under way. @type {AbortController | null} */
let running = null;
let undoing = false;
let modelMissing = false;
/** Answers the question that a call waits with. @type {((answer: boolean | number[]) => void) | null} */
let settleQuestion = null;
let drawAsked = 0;

/** Why nothing can be sent, empty when it can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  return isHosted() ? '' : 'reason.host';
}

const busy = () => running !== null || undoing;

async function carryOn() {
  running = new AbortController();
  const asked = token();
  announce('chat.answering');
  drawAll();
  await runTurn(turns, { token: asked, signal: running.signal, changed, allows });
  running = null;
  settleQuestion = null;
  finished(turns.at(-1), asked);
}

function finished(turn, asked) {
  const { failure } = turn;
  modelMissing = failure?.code === 'model_not_configured';
  // Somebody else may have signed in meanwhile.
  if (failure?.code === 'not_signed_in' && asked === token()) dropToken();
  keep();
  drawAll();
  if (failure) announce(failureRow(failure).text);
  else if (turn.state === 'stopped') announce('chat.stopped');
  else byId('announcer').textContent = turn.rounds.at(-1)?.text ?? '';
}

const announce = (key) => {
  byId('announcer').textContent = t(key);
};

const typed = () => byId('message').value.trim();

function begin(turn) {
  byId('message').value = '';
  turns.push(turn);
  scrollTo({ top: document.body.scrollHeight });
  void carryOn();
}

const canSend = () => !busy() && !obstacle();

function send() {
  if (typed() !== '' && canSend()) begin(newTurn(typed()));
}

/** What the user has written says what to fill in. */
function fillForm() {
  if (!canSend()) return;
  const words = [t('chat.fillFormAsk'), typed()].filter((text) => text !== '');
  begin(newTurn(words.join('\n\n'), { form: true }));
}

const USES = {
  answer: (call, answer) => settleQuestion?.(answer),
  again: () => {
    prepareRetry(turns.at(-1));
    byId('message').focus();
    void carryOn();
  },
  undo: (turn) => takeBack(turn.undo, () => undoTurn(turns, turn)),
  undoFill: (call) => takeBack(call.filled, () => undoFill(call)),
  addressOf: (page) => addressOf(page, language()),
};

/** @param {{undone: boolean, restored: number}} what knows afterwards what has come of it */
async function takeBack(what, undo) {
  undoing = true;
  drawAll();
  await undo();
  undoing = false;
  keep();
  drawAll();
  byId('announcer').textContent = what.undone ? t('chat.undone', { count: what.restored }) : t('chat.undoFailed');
  byId('message').focus();
}

/** @returns {Promise<boolean | number[]>} what the user says; whoever stops meanwhile says nothing any more */
function allows(call) {
  byId('announcer').textContent = questionOf(call);
  return new Promise((resolve) => {
    settleQuestion = (answer) => {
      settleQuestion = null;
      byId('message').focus();
      resolve(answer);
    };
  });
}

/** Words come faster than they can be drawn. */
function changed() {
  if (drawAsked === 0) drawAsked = requestAnimationFrame(drawTurns);
}

function drawTurns() {
  cancelAnimationFrame(drawAsked);
  drawAsked = 0;
  const nearEnd = innerHeight + scrollY > document.documentElement.scrollHeight - NEAR_END_PX;
  drawConversation(turns, { busy: busy(), uses: USES });
  byId('empty').hidden = turns.length > 0;
  byId('new').hidden = turns.length === 0;
  if (nearEnd && turns.length > 0) scrollTo({ top: document.documentElement.scrollHeight });
}

function drawAll() {
  const reason = obstacle();
  byId('sign-in').hidden = token() !== '';
  byId('no-model').hidden = !modelMissing;
  byId('reason').textContent = reason ? t(reason) : '';
  byId('send').hidden = running !== null;
  byId('send').disabled = reason !== '' || undoing || typed() === '';
  byId('fill-form').disabled = reason !== '' || busy();
  byId('stop').hidden = running === null;
  byId('new').disabled = busy();
  for (const id of EXAMPLES) byId(id).disabled = reason !== '';
  drawTurns();
}

const keep = () => save(sessionStorage, NAME, turns.length > 0 ? turns : null);

async function startAnew() {
  const sure = await confirmInWords({ title: t('chat.new'), text: t('chat.newText'), accept: t('chat.new') });
  if (!sure || busy()) return;
  turns = [];
  keep();
  drawAll();
  byId('message').focus();
}

async function checkModel() {
  if (token()) modelMissing = !(await hasModel(token()));
  drawAll();
}

byId('composer').addEventListener('submit', (event) => {
  event.preventDefault();
  send();
});
byId('message').addEventListener('keydown', (event) => {
  // Enter that ends the writing of a character is not meant for the page.
  if (event.key !== 'Enter' || event.shiftKey || event.isComposing) return;
  event.preventDefault();
  send();
});
byId('message').addEventListener('input', drawAll);
byId('fill-form').addEventListener('click', fillForm);
byId('stop').addEventListener('click', () => {
  running?.abort();
  byId('message').focus();
});
byId('new').addEventListener('click', () => void startAnew());
byId('model-again').addEventListener('click', () => void checkModel());
for (const id of EXAMPLES) {
  byId(id).addEventListener('click', () => {
    byId('message').value = byId(id).textContent;
    byId('message').focus();
    drawAll();
  });
}
// What is under way belongs to the page that began it.
onEvents({
  quorvantisExportState: () => (busy() ? null : { chat: turns }),
  quorvantisImportState: (state) => {
    if (busy() || !Array.isArray(state?.chat)) return;
    turns = readTurns(state.chat);
    keep();
    drawAll();
  },
});
addEventListener('pagehide', keep);
onLanguage(drawAll);
onSession(drawAll);
await openPage();
await checkModel();
