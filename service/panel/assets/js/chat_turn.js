/** One message of the user, on its way: the model answers, its calls are run, it answers again. */
import { complete } from './chat_service.js';
import { endTurn, toMessages } from './chat_conversation.js';
import { ChatFailure } from './chat_stream.js';
import { TOOL_CATALOG } from './tool_actions.js';
import { runCall } from './tool_runner.js';

/** A model that goes round in circles is stopped. */
export const MAX_ROUNDS = 40;

/**
 * Carries the last of the turns to its end, in whatever way it ends.
 * @param {import('./chat_conversation.js').Turn[]} turns
 * @param {object} page
 * @param {string} page.token
 * @param {AbortSignal} page.signal the user's Stop
 * @param {() => void} page.changed called after each change of the turn
 * @param {(call: object) => Promise<any>} page.allows
 */
export async function runTurn(turns, page) {
  const turn = turns.at(-1);
  try {
    if (turn.form) await findFields(turns, turn, page);
    await answerInRounds(turns, turn, page);
    endTurn(turn, 'done');
  } catch (error) {
    if (page.signal.aborted) endTurn(turn, 'stopped');
    else if (error instanceof ChatFailure) endTurn(turn, 'failed', describe(error));
    else {
      console.error(error);
      endTurn(turn, 'failed', describe(new ChatFailure({ code: 'broken' })));
    }
  }
  page.changed();
}

const describe = ({ status, code, message }) => ({ status, code, message });

/** Calls the model's tool before the model is asked at all: without fields there is nothing to ask. */
async function findFields(turns, turn, page) {
  const id = `form_${turns.length}_${turn.rounds.length}`;
  const call = { id, name: 'autofillScan', arguments: '{}', state: 'told', result: '' };
  turn.rounds.push({ text: '', calls: [call] });
  await runCall(turns, call, page);
  page.signal.throwIfAborted();
  if (call.state !== 'done') throw new ChatFailure({ code: 'scan_failed' });
  if (JSON.parse(call.result).fields.length === 0) throw new ChatFailure({ code: 'no_fields' });
  turn.form = false;
}

async function answerInRounds(turns, turn, page) {
  for (let count = 0; count < MAX_ROUNDS; count++) {
    const calls = await answerOnce(turns, turn, page);
    if (calls.length === 0) return;
    for (const call of calls) {
      page.signal.throwIfAborted();
      await runCall(turns, call, page);
    }
  }
  throw new ChatFailure({ code: 'too_many_steps' });
}

/** @returns {Promise<import('./chat_conversation.js').Call[]>} what the model wants to be done */
async function answerOnce(turns, turn, { token, signal, changed }) {
  const messages = toMessages(turns);
  const round = { text: '', calls: [] };
  turn.rounds.push(round);
  const onProgress = ({ text }) => {
    round.text = text;
    changed();
  };
  const { calls } = await complete({ messages, tools: TOOL_CATALOG }, { token, signal, onProgress });
  // Calls are taken only once they are whole.
  round.calls = calls.map((call, index) => ({ ...call, id: call.id || `call_${index}`, state: 'told', result: '' }));
  changed();
  return round.calls;
}
