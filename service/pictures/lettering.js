import { fileURLToPath } from 'node:url';

import { ProgramError, runProgram } from '../child_program.js';
import { ServiceError } from '../errors.js';

const SCRIPT = fileURLToPath(new URL('lettering.py', import.meta.url));
/** Debian's own, which finds Debian's modules. */
const PYTHON = '/usr/bin/python3';
const TIMEOUT_MS = 30000;
/** A mask takes a third more than the pixels of its text. */
const MAX_OUTPUT_BYTES = 64 * 1024 * 1024;

/**
 * Draws texts as large as their rooms let them be.
 * @param {{text: string, lang: string, width: number, height: number, size: number, baseline: number,
 *   align: 'left' | 'center'}[]} items see lettering.py
 * @param {AbortSignal} [signal]
 * @returns {Promise<({left: number, top: number, width: number, height: number, size: number, mask: Buffer} | null)[]>}
 *   one a text, within its room; null for one that does not fit
 */
export async function letter(items, signal) {
  if (items.length === 0) return [];
  const run = { input: JSON.stringify(items), timeoutMs: TIMEOUT_MS, maxOutputBytes: MAX_OUTPUT_BYTES, signal };
  const output = await runProgram(PYTHON, [SCRIPT], run).catch((error) => {
    if (!(error instanceof ProgramError) || error.reason === 'aborted') throw error;
    throw new ServiceError(
      503,
      'drawing_unavailable',
      'The translated text cannot be drawn: Pango is missing or failed',
    );
  });
  return JSON.parse(output.toString('utf8')).map(
    (found) => found && { ...found, mask: Buffer.from(found.mask, 'base64') },
  );
}
