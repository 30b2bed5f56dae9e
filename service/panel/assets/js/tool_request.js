/** Requests for the add-in's workbook tools, on behalf of the language model. */
import { request } from './bridge.js';

/** The add-in takes its time with large ranges, and waits while the user edits a cell. */
const TOOL_LIMIT_MS = 180000;

/** Arguments that no tool takes, a tool that does not exist, an answer that never came: told to the model. */
export class ToolFailure extends Error {}

/** @returns {Promise<any>} the tool's result, also one that tells of a failure */
export async function ask(action, fields = {}) {
  try {
    return await request(action, fields, { limitMs: TOOL_LIMIT_MS });
  } catch (error) {
    if (error.data !== undefined) return error.data;
    throw new ToolFailure('the spreadsheet program did not answer; it may have done it all the same');
  }
}

/** @returns {Promise<any>} of `promise`, rejected as soon as the user stops */
export function orStopped(signal, promise) {
  signal.throwIfAborted();
  return new Promise((resolve, reject) => {
    const stop = () => reject(signal.reason);
    signal.addEventListener('abort', stop, { once: true });
    promise.then(resolve, reject).finally(() => signal.removeEventListener('abort', stop));
  });
}
