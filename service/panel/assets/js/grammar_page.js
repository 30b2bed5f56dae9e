/** Grammar check: the language model proofreads what is selected; corrections go into the cells one by one, or all. */
import { isHosted } from './bridge.js';
import { failureRow } from './chat_failures.js';
import { complete, hasModel } from './chat_service.js';
import { ChatFailure } from './chat_stream.js';
import { byId } from './dom.js';
import { batchesOf, questionAbout, suggestionsIn, textsOf } from './grammar_rules.js';
import { accept, readSelection } from './grammar_sheet.js';
import { drawSuggestions } from './grammar_view.js';
import { language, onLanguage, t } from './i18n.js';
import { openPage } from './page.js';
import { dropToken, onSession, token } from './session.js';
import { takeBack } from './sheet_writer.js';

/** Stops the check that is under way. @type {AbortController | null} */
let checking = null;
let writing = false;
let modelMissing = false;
/** What was proofread, null before the first check. @type {{sheetName: string, range: string} | null} */
let place = null;
/** @type {import('./grammar_rules.js').Suggestion[]} */
let suggestions = [];
/** Texts that were proofread, of as many. */
let progress = { done: 0, total: 0 };
/** What can be taken back, the last one first. @type {{depth: number, accepted: object[]}[]} */
let markers = [];
/** Says what went wrong, or what came of the last thing. */
let problem = () => '';
let outcome = () => '';

const busy = () => checking !== null || writing;
const open = () => suggestions.filter(({ state }) => state === 'open');

/** Why nothing can be checked, empty when it can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  return isHosted() ? '' : 'reason.host';
}

async function check() {
  if (obstacle() || busy()) return;
  checking = new AbortController();
  const { signal } = checking;
  [suggestions, progress, place] = [[], { done: 0, total: 0 }, null];
  [problem, outcome] = [() => '', () => ''];
  draw();
  const asked = token();
  try {
    await proofread(asked, signal);
  } catch (error) {
    if (!signal.aborted) failed(error, asked);
  }
  checking = null;
  draw();
  byId('announcer').textContent = outcome();
}

async function proofread(asked, signal) {
  const read = await readSelection();
  if (read.problem) {
    problem = () => t(read.problem);
    return;
  }
  place = { sheetName: read.sheetName, range: read.range };
  const texts = textsOf(read.cells);
  progress.total = texts.length;
  draw();
  for (const batch of batchesOf(texts)) {
    signal.throwIfAborted();
    const messages = questionAbout(batch, englishName(language()));
    const { text } = await complete({ messages }, { token: asked, signal, onProgress: () => {} });
    suggestions.push(...suggestionsIn(text, batch));
    progress.done += batch.length;
    draw();
  }
  outcome = summary;
}

function summary() {
  if (progress.total === 0) return t('grammar.noTexts');
  return suggestions.length === 0 ? t('grammar.allGood') : t('grammar.found', { count: suggestions.length });
}

const englishName = (code) => new Intl.DisplayNames(['en'], { type: 'language' }).of(code);

function failed(error, asked) {
  if (!(error instanceof ChatFailure)) console.error(error);
  const { status = 0, code = 'broken', message = '' } = error instanceof ChatFailure ? error : {};
  modelMissing = code === 'model_not_configured';
  // Somebody else may have signed in meanwhile.
  if (code === 'not_signed_in' && asked === token()) dropToken();
  const words = failureRow({ status, code }).text;
  problem = () => (message ? `${t(words)} (${message})` : t(words));
}

async function take(chosen) {
  if (busy() || chosen.length === 0) return;
  writing = true;
  draw();
  const { depth, failed: broke } = await accept(place, chosen);
  const accepted = chosen.filter(({ state }) => state === 'accepted');
  if (depth > 0) markers.unshift({ depth, accepted });
  writing = false;
  problem = () => (broke ? t('totable.writeFailed') : '');
  outcome = () => t('grammar.written', { count: accepted.length });
  settled();
}

async function undo() {
  if (busy() || markers.length === 0) return;
  writing = true;
  draw();
  const { undone, restored } = await takeBack(markers[0].depth);
  if (undone) for (const one of markers.shift().accepted) one.state = 'open';
  writing = false;
  problem = () => (undone ? '' : t('chat.undoFailed'));
  outcome = () => (undone ? t('chat.undone', { count: restored }) : '');
  settled();
}

/** The pressed button may be gone: the focus goes to what comes next. */
function settled() {
  draw();
  byId('announcer').textContent = outcome();
  (byId('suggestions').querySelector('button') ?? byId('check')).focus();
}

const USES = {
  accept: (one) => void take([one]),
  dismiss: (one) => {
    one.state = 'dismissed';
    settled();
  },
};

function draw() {
  const reason = obstacle();
  byId('sign-in').hidden = token() !== '';
  byId('no-model').hidden = !modelMissing;
  byId('reason').textContent = reason ? t(reason) : '';
  byId('check').disabled = reason !== '' || busy();
  byId('check').hidden = checking !== null;
  byId('checking').hidden = checking === null;
  byId('checked').textContent = t('run.count', progress);
  Object.assign(byId('progress'), { max: Math.max(1, progress.total), value: progress.done });
  byId('problem').textContent = problem();
  byId('outcome').textContent = outcome();
  byId('undo').hidden = markers.length === 0;
  byId('undo').disabled = busy();
  byId('result').hidden = suggestions.length === 0 && markers.length === 0;
  byId('where').textContent = place ? t('grammar.where', { range: place.range, sheet: place.sheetName }) : '';
  byId('accept-all').hidden = open().length < 2;
  byId('accept-all').disabled = busy();
  drawSuggestions(suggestions, { ...USES, busy: busy() });
}

async function checkModel() {
  if (token()) modelMissing = !(await hasModel(token()));
  draw();
}

byId('form').addEventListener('submit', (event) => {
  event.preventDefault();
  void check();
});
byId('stop').addEventListener('click', () => checking?.abort());
byId('accept-all').addEventListener('click', () => void take(open()));
byId('undo').addEventListener('click', () => void undo());
byId('model-again').addEventListener('click', () => void checkModel());
onLanguage(draw);
onSession(draw);
await openPage();
await checkModel();
