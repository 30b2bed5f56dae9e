/** Runs the tools that the language model calls, through the add-in. */
import { fillForm, scanForm } from './form_filler.js';
import { TOOLS } from './tool_actions.js';
import { ask, orStopped, ToolFailure } from './tool_request.js';

/** Tools that are more than one request. Each gets what `runCall` gets, and the arguments. */
const WAYS = { autofillScan: scanForm, proposeFills: fillForm, excelWriteRange: runUndoably };

/**
 * @param {import('./chat_conversation.js').Call} call
 * @returns {object} its arguments
 */
export function readArguments(call) {
  const tool = Object.hasOwn(TOOLS, call.name) ? TOOLS[call.name] : null;
  if (!tool) throw new ToolFailure(`there is no tool "${call.name}"`);
  const given = parseObject(call.arguments);
  const unknown = Object.keys(given).filter((name) => !Object.hasOwn(tool.properties, name));
  if (unknown.length > 0) throw new ToolFailure(`${call.name} takes no argument ${unknown.join(', ')}`);
  const missing = (tool.required ?? []).filter((name) => given[name] === undefined || given[name] === null);
  if (missing.length > 0) throw new ToolFailure(`${call.name} needs the argument ${missing.join(', ')}`);
  return given;
}

function parseObject(text) {
  let value = null;
  try {
    value = JSON.parse(text.trim() || '{}');
  } catch {
    // Said below.
  }
  if (value === null || typeof value !== 'object' || Array.isArray(value)) {
    throw new ToolFailure('the arguments are no JSON object');
  }
  return value;
}

/**
 * Runs one call and keeps its state and result in it.
 * @param {import('./chat_conversation.js').Turn[]} turns the last one is that which the call belongs to
 * @param {import('./chat_conversation.js').Call} call
 * @param {object} page
 * @param {() => void} page.changed called after each change of the two
 * @param {(call: object) => Promise<any>} page.allows what the user says to a question: yes or no, or what was chosen
 * @param {AbortSignal} page.signal
 */
export async function runCall(turns, call, { changed, allows, signal }) {
  const become = (state, data) => {
    Object.assign(call, { state, result: data === undefined ? '' : JSON.stringify(data) });
    changed();
  };
  const refused = () => become('refused', { error: 'the user said no' });
  try {
    const given = readArguments(call);
    if (TOOLS[call.name].asks) {
      become('asking');
      if (!(await orStopped(signal, allows(call)))) return refused();
    }
    become('running');
    const data = await (WAYS[call.name] ?? runAsItIs)({ turns, call, given, allows, become, signal });
    if (data === null && call.name === 'proposeFills') return refused();
    become(data?.error === undefined ? 'done' : 'failed', takePicture(call, data));
  } catch (error) {
    if (signal.aborted) become('stopped', { error: 'stopped by the user; it may have been done all the same' });
    else if (error instanceof ToolFailure) become('failed', { error: error.message });
    else throw error;
  }
}

const messageFields = (name, given) => (name === 'excelRemoveDuplicates' ? { ...given, confirm: true } : given);

const runAsItIs = ({ call: { name }, given, signal }) => orStopped(signal, ask(name, messageFields(name, given)));

async function runUndoably(run) {
  const turn = run.turns.at(-1);
  await pushMarker(turn, run.signal);
  const wroteBefore = turn.undo.wrote;
  // As long as nothing else is known.
  turn.undo.wrote = true;
  const data = await runAsItIs(run);
  turn.undo.wrote = wroteBefore || (data?.error === undefined && data?.applied !== 0);
  return data;
}

/** The add-in takes back what was written since its last marker: one a message, ahead of the first cell. */
async function pushMarker(turn, signal) {
  if (turn.undo) return;
  const { depth, error } = (await orStopped(signal, ask('excelPushUndoMarker'))) ?? {};
  if (!Number.isInteger(depth)) throw new ToolFailure(error ?? 'the change could not be prepared for undoing');
  turn.undo = { depth, wrote: false, undone: false, restored: 0, failed: false };
}

/** Pictures are for the user: they are shown and forgotten, the model is told their size. */
function takePicture(call, data) {
  if (call.name !== 'excelScreenshotRange' || typeof data?.data !== 'string') return data;
  const { data: picture, ...rest } = data;
  // Not enumerable: neither kept nor handed over with the conversation.
  Object.defineProperty(call, 'picture', { value: picture, configurable: true });
  return { ...rest, note: 'the user sees the picture' };
}

/**
 * Takes back what a message wrote, and what later ones did: the add-in takes its markers off one by one, last first.
 * @param {import('./chat_conversation.js').Turn[]} turns
 * @param {import('./chat_conversation.js').Turn} turn of them
 */
export async function undoTurn(turns, { undo }) {
  const { undone, restored } = await takeMarkersOff(undo.depth);
  undo.restored += restored;
  undo.failed = !undone;
  if (!undone) return;
  for (const other of turns) if (other.undo?.depth >= undo.depth) other.undo.undone = true;
}

/**
 * Takes back what was written since a marker, and all that was written later.
 * @param {number} target depth of the markers with that one on top
 * @returns {Promise<{undone: boolean, restored: number}>} restored: cells
 */
export async function takeMarkersOff(target) {
  let restored = 0;
  for (let before = Infinity; ; ) {
    const answer = (await ask('excelUndoMessage').catch(() => null)) ?? {};
    if (Number.isInteger(answer.restored)) restored += answer.restored;
    if (answer.depth < target) return { undone: true, restored };
    // While the host is busy the marker stays, for another try.
    if (!(answer.depth < before)) return { undone: false, restored };
    before = answer.depth;
  }
}
