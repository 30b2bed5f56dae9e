/** What was said in the chat, and what of it the language model is told. Nothing here touches the page. */

/**
 * @typedef {object} Call of a tool
 * @property {string} id
 * @property {string} name
 * @property {string} arguments JSON text
 * @property {'told' | 'asking' | 'running' | 'done' | 'failed' | 'refused' | 'stopped'} state
 * @property {string} result JSON text, empty until there is one
 * @property {import('./form_fields.js').Filled} [filled] once it has filled in a form
 * @property {string} [workbookKey] the workbook that it has scanned
 * @property {string[]} [left] addresses of cells that were to be filled in and were not
 *
 * @typedef {object} Round one answer of the model
 * @property {string} text
 * @property {Call[]} calls
 *
 * @typedef {object} Turn one message of the user, and all that followed from it
 * @property {string} question
 * @property {boolean} [form] the page looks for the fields of a form before the model is asked
 * @property {Round[]} rounds
 * @property {'running' | 'done' | 'stopped' | 'failed'} state
 * @property {{status: number, code: string, message: string} | null} failure
 * @property {Undo | null} undo null as long as no cell was written
 *
 * @typedef {object} Undo
 * @property {number} depth of the add-in's markers, with this message's on top
 * @property {boolean} wrote into a cell at least, as far as is known
 * @property {boolean} undone
 * @property {number} restored cells so far
 * @property {boolean} failed the last try
 */

/** Longer results say what was left out: they would drive everything else out of the model's memory. */
const MAX_RESULT_LENGTH = 100000;

/** @param {string} question @param {object} [more] of the turn @returns {Turn} */
export const newTurn = (question, more = {}) => ({
  question,
  ...more,
  rounds: [],
  state: 'running',
  failure: null,
  undo: null,
});

const RULES = [
  'You help the user of a spreadsheet program with the workbook that is open there, by means of the tools.',
  'Look before you act: find the sheet and read the cells in question. Do what was asked and nothing beyond it.',
  'Prefer formulas to computed numbers. Before you write over cells that hold something, make sure it was asked for.',
  'To fill in a form, find its fields with autofillScan and use proposeFills; never write into them yourself.',
  'What you are not told and cannot read in the workbook you do not invent: leave such fields out and ask.',
  'A result with "error" means that the tool did nothing, or not everything. Say so instead of claiming success.',
  'Answer briefly, in the language of the user, in plain text or simple Markdown.',
].join('\n');

const INTERRUPTED = '{"error":"interrupted before there was a result"}';
const UNDONE = '(The user has undone what you wrote into cells for the message before.)';

/**
 * @param {Turn[]} turns the last one may be under way
 * @returns {object[]} the messages of a chat completion
 */
export function toMessages(turns) {
  const messages = [{ role: 'system', content: RULES }];
  turns.forEach(({ question, rounds }, index) => {
    const undone = isUndone(turns[index - 1]) ? `${UNDONE}\n\n` : '';
    messages.push({ role: 'user', content: undone + question }, ...rounds.flatMap(roundMessages));
  });
  return messages;
}

const isUndone = (turn) =>
  turn?.undo?.undone || turn?.rounds.some(({ calls }) => calls.some(({ filled }) => filled?.undone));

function roundMessages({ text, calls }) {
  if (text === '' && calls.length === 0) return [];
  const message = { role: 'assistant', content: text || null };
  if (calls.length === 0) return [message];
  message.tool_calls = calls.map(({ id, name, arguments: given }) => ({
    id,
    type: 'function',
    function: { name, arguments: given },
  }));
  const results = calls.map(({ id, result }) => ({ role: 'tool', tool_call_id: id, content: shortened(result) }));
  return [message, ...results];
}

function shortened(result) {
  if (result === '') return INTERRUPTED;
  if (result.length <= MAX_RESULT_LENGTH) return result;
  return `${result.slice(0, MAX_RESULT_LENGTH)}… (cut off here, of ${result.length} characters; ask for less)`;
}

/**
 * @param {Turn[]} turns
 * @returns {Turn | undefined} the one that can be undone: the last that wrote into cells
 */
export const undoableTurn = (turns) => turns.findLast(({ undo }) => undo?.wrote && !undo.undone);

/** What has come of an answer that broke off is not built upon. @param {Turn} turn that has failed */
export function prepareRetry(turn) {
  if (turn.rounds.at(-1)?.calls.length === 0) turn.rounds.pop();
  Object.assign(turn, { state: 'running', failure: null });
}

/** Ends what was under way. @param {Turn} turn */
export function endTurn(turn, state, failure = null) {
  for (const call of turn.rounds.flatMap(({ calls }) => calls)) {
    if (['told', 'asking', 'running'].includes(call.state)) call.state = 'stopped';
  }
  Object.assign(turn, { state, failure });
}

const isText = (value) => typeof value === 'string';
const isCall = (call) => [call?.id, call?.name, call?.arguments, call?.state, call?.result].every(isText);
const isRound = (round) => isText(round?.text) && Array.isArray(round.calls) && round.calls.every(isCall);
const isUndo = (undo) => undo === null || Number.isInteger(undo?.depth);
const isTurn = (turn) =>
  isText(turn?.question) && isText(turn.state) && Array.isArray(turn.rounds) && turn.rounds.every(isRound) &&
  isUndo(turn.undo);

/** @param {any} value that was kept or came from another page @returns {Turn[]} what of it fits */
export function readTurns(value) {
  const turns = Array.isArray(value) ? value.filter(isTurn) : [];
  for (const turn of turns) if (turn.state === 'running') endTurn(turn, 'stopped');
  return turns;
}
