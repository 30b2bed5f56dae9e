/** Sends changed items to the service: one at a time, and of several changes to an item only the last. */

/** @typedef {'saved' | 'saving' | 'failed'} SaveState */

export class Saver {
  /** @type {Map<string, object>} what is still to be sent, by id */
  #waiting = new Map();
  #send;
  #told;
  /** What is on its way. @type {object | null} */
  #sending = null;
  #running = Promise.resolve();

  /**
   * @param {(item: object) => Promise<void>} send
   * @param {(state: SaveState, error?: Error) => void} told
   */
  constructor(send, told) {
    this.#send = send;
    this.#told = told;
  }

  /** Whether something is not at the service yet. */
  get isBehind() {
    return this.#sending !== null || this.#waiting.size > 0;
  }

  /** @param {{id: string}} item read when its turn comes */
  save(item) {
    this.#waiting.set(item.id, item);
    void this.run();
  }

  /** @param {string} id @returns {object | undefined} the item as it will be at the service */
  unsaved(id) {
    return this.#waiting.get(id) ?? (this.#sending?.id === id ? this.#sending : undefined);
  }

  /** @returns {Promise<void>} once nothing is on its way */
  settled() {
    return this.#running;
  }

  /** @param {string} id of an item that is gone */
  forget(id) {
    this.#waiting.delete(id);
  }

  /** Nothing that waits is wanted any more. */
  clear() {
    this.#waiting.clear();
  }

  /** Sends what waits, again after a failure. */
  run() {
    if (!this.#sending && this.#waiting.size > 0) this.#running = this.#sendAll();
    return this.#running;
  }

  async #sendAll() {
    this.#told('saving');
    let failure = null;
    while (!failure && this.#waiting.size > 0) failure = await this.#sendFirst();
    this.#told(failure ? 'failed' : 'saved', failure ?? undefined);
  }

  /** @returns {Promise<Error | null>} */
  async #sendFirst() {
    const [[id, item]] = this.#waiting;
    this.#waiting.delete(id);
    this.#sending = item;
    try {
      await this.#send(item);
      return null;
    } catch (error) {
      if (!this.#waiting.has(id)) this.#waiting.set(id, item);
      return error;
    } finally {
      this.#sending = null;
    }
  }
}
