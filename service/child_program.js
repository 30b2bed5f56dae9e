import { spawn } from 'node:child_process';

/** What a child program may say about itself when it fails; the rest is dropped. */
const MESSAGE_LIMIT_BYTES = 16 * 1024;

/** A program that gave no result: it is not there, failed, took too long or said too much. */
export class ProgramError extends Error {
  /**
   * @param {'missing' | 'failed' | 'timeout' | 'too_long' | 'aborted'} reason
   * @param {string} message
   */
  constructor(reason, message) {
    super(message);
    this.reason = reason;
  }
}

/**
 * Runs a program without a shell, within bounds, and gives what it wrote.
 * @param {string} program looked for on the PATH
 * @param {string[]} args
 * @param {object} [options]
 * @param {Uint8Array | string} [options.input] its standard input; empty without
 * @param {number} [options.timeoutMs] after which it is killed
 * @param {number} [options.maxOutputBytes] above which it is killed
 * @param {AbortSignal} [options.signal] kills it
 * @param {Record<string, string>} [options.env] added to the environment
 * @returns {Promise<Buffer>} its standard output
 * @throws {ProgramError} unless it ended with status 0
 */
export function runProgram(program, args, options = {}) {
  const { input = '', timeoutMs = 30000, maxOutputBytes = 16 * 1024 * 1024, signal, env } = options;
  return new Promise((resolve, reject) => {
    if (signal?.aborted) return reject(new ProgramError('aborted', `${program} was not started`));
    const child = spawn(program, args, { stdio: 'pipe', env: { ...process.env, ...env } });
    let end = null; // why we killed it
    const kill = (reason, message) => {
      end ??= new ProgramError(reason, `${program} ${message}`);
      child.kill('SIGKILL');
    };
    const timer = setTimeout(() => kill('timeout', `did not end within ${timeoutMs} ms`), timeoutMs);
    const onAbort = () => kill('aborted', 'is not needed any more');
    signal?.addEventListener('abort', onAbort, { once: true });

    const output = collect(child.stdout, maxOutputBytes, () => kill('too_long', 'wrote too much'));
    const messages = collect(child.stderr, MESSAGE_LIMIT_BYTES, () => {});
    const settle = () => {
      clearTimeout(timer);
      signal?.removeEventListener('abort', onAbort);
    };
    child.on('error', (error) => {
      settle();
      reject(new ProgramError(error.code === 'ENOENT' ? 'missing' : 'failed', `${program}: ${error.message}`));
    });
    child.on('close', (status) => {
      settle();
      if (end) reject(end);
      else if (status !== 0) reject(new ProgramError('failed', `${program}: ${messages().toString().trim()}`));
      else resolve(output());
    });
    child.stdin.on('error', () => {}); // a program that read enough; its status tells
    child.stdin.end(input);
  });
}

/** Keeps what a stream brings up to a limit and tells once when there is more. */
function collect(stream, limit, onMore) {
  const chunks = [];
  let bytes = 0;
  stream.on('data', (chunk) => {
    if (bytes > limit) return;
    bytes += chunk.length;
    if (bytes > limit) onMore();
    else chunks.push(chunk);
  });
  return () => Buffer.concat(chunks);
}
