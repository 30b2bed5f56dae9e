import { Worker } from 'node:worker_threads';

import { ServiceError } from '../errors.js';

/** The largest picture takes a few seconds a job. */
const JOB_LIMIT_MS = 60000;

/** A picture in a thread of its own, so that the service goes on answering while it is worked on. One job at a time. */
export class PictureThread {
  #worker = new Worker(new URL('picture_worker.js', import.meta.url));

  /** @param {Buffer} file @returns {Promise<{width: number, height: number, factor: number, file: Uint8Array}>} */
  open(file) {
    return this.#do('open', file);
  }

  /**
   * @param {{box: import('./passages.js').Box, size: number}[]} passages
   * @returns {Promise<import('./surroundings.js').Surroundings[]>}
   */
  survey(passages) {
    return this.#do('survey', passages);
  }

  /** @param {Parameters<typeof import('./painting.js').paint>[1]} texts @returns {Promise<Uint8Array>} a PNG */
  paint(texts) {
    return this.#do('paint', texts);
  }

  /** Ends the thread; a job under way fails. */
  async close() {
    await this.#worker.terminate();
  }

  #do(job, argument) {
    return new Promise((resolve, reject) => {
      const worker = this.#worker;
      const heard = {
        message: ({ result, failure }) => (failure ? reject(asError(failure)) : resolve(result)),
        error: reject,
        exit: () => reject(new Error('the work on the picture was ended')),
      };
      const timer = setTimeout(() => void worker.terminate(), JOB_LIMIT_MS);
      for (const [event, hear] of Object.entries(heard)) {
        heard[event] = (value) => {
          clearTimeout(timer);
          for (const [other, listener] of Object.entries(heard)) worker.off(other, listener);
          hear(value);
        };
        worker.on(event, heard[event]);
      }
      worker.postMessage({ job, argument });
    });
  }
}

function asError({ status, code, message, stack }) {
  return status ? new ServiceError(status, code, message) : Object.assign(new Error(message), { stack });
}
