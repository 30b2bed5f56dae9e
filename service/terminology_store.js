import { forgetOldest } from './accounts.js';
import { ServiceError } from './errors.js';
import { bad, isObject, MAX_INSTRUCTION_LENGTH, optionalText } from './validation.js';

/** Far more than one developer signs in as; who has changed nothing for longest is forgotten first. */
const KEPT_USERS = 200;
const MAX_ITEMS = 50;
const MAX_ENTRIES = 2000;
const MAX_NAME_LENGTH = 200;
const MAX_TERM_LENGTH = 1000;
const MAX_NOTE_LENGTH = 2000;
/** The add-in keeps an item under its id as a file name. */
const ID = /^[\w-]{1,64}$/;

/** The kinds of items, and what each holds beside "name": a reader of the body that was sent. */
const CONTENTS = {
  glossaries: (body) => ({ entries: readEntries(body.entries) }),
  instructions: (body) => ({ content: optionalText(body, 'content', MAX_INSTRUCTION_LENGTH) }),
};
export const KINDS = Object.keys(CONTENTS);

/** @typedef {{source: string, target: string, note: string, enabled: boolean}} Entry */
/** @typedef {{id: string, name: string, updatedAt: string, entries?: Entry[], content?: string}} Item */

/** Each user's glossaries and instructions. Kept in memory: a restart forgets them. */
export class TerminologyStore {
  /** @type {Map<string, Record<string, Map<string, Item>>>} */
  #byUser = new Map();

  /** @param {string} user @param {string} kind one of KINDS @returns {Item[]} in the order in which they came */
  list(user, kind) {
    return [...(this.#byUser.get(user)?.[kind].values() ?? [])];
  }

  /** @param {string} user @param {string} kind @param {string} id @returns {Item | undefined} */
  find(user, kind, id) {
    return this.#byUser.get(user)?.[kind].get(id);
  }

  /**
   * Adds or replaces an item.
   * @param {string} user
   * @param {string} kind
   * @param {string} id
   * @param {unknown} body its name and content; what does not fit is a ServiceError, and changes nothing
   * @returns {Item}
   */
  put(user, kind, id, body) {
    if (!ID.test(id)) throw bad('an id has 1 to 64 letters, digits, "_" and "-"');
    if (!isObject(body)) throw bad('the body must be an object');
    const name = optionalText(body, 'name', MAX_NAME_LENGTH);
    const item = { id, name, updatedAt: new Date().toISOString(), ...CONTENTS[kind](body) };
    const items = this.#byUser.get(user) ?? Object.fromEntries(KINDS.map((each) => [each, new Map()]));
    if (!items[kind].has(id) && items[kind].size === MAX_ITEMS) {
      throw new ServiceError(409, 'bad_request', `there are ${MAX_ITEMS} ${kind} already`);
    }
    items[kind].set(id, item);
    this.#byUser.delete(user);
    this.#byUser.set(user, items);
    forgetOldest(this.#byUser, KEPT_USERS);
    return item;
  }

  /** @param {string} user @param {string} kind @param {string} id @returns {boolean} false when there was none */
  remove(user, kind, id) {
    return this.#byUser.get(user)?.[kind].delete(id) ?? false;
  }
}

function readEntries(value = []) {
  if (!Array.isArray(value) || value.length > MAX_ENTRIES || !value.every(isObject)) {
    throw bad(`"entries" must be a list of ${MAX_ENTRIES} objects at most`);
  }
  return value.map((entry) => {
    const enabled = entry.enabled ?? true;
    if (typeof enabled !== 'boolean') throw bad('"enabled" must be true or false');
    const source = optionalText(entry, 'source', MAX_TERM_LENGTH);
    if (source.trim() === '') throw bad('an entry needs a "source"');
    const target = optionalText(entry, 'target', MAX_TERM_LENGTH);
    return { source, target, note: optionalText(entry, 'note', MAX_NOTE_LENGTH), enabled };
  });
}
