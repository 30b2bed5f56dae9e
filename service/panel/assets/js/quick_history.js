/** What was translated on the page of quick translation, as a list, newest first. Nothing here touches the page. */

/**
 * @typedef {object} Entry
 * @property {string} requestId matches the answer, which may come in any order
 * @property {string} text
 * @property {string} sourceLang "auto" or a code
 * @property {string} targetLang
 * @property {string} instruction
 * @property {'waiting' | 'done' | 'failed'} state
 * @property {string} translation
 * @property {string} error the add-in's words; empty when it gave no answer at all
 * @property {number} at milliseconds since 1970
 */

const LONGEST = 50;
/** The add-in's own request has ended long before. */
export const ANSWER_LIMIT_MS = 180000;

/**
 * @param {Entry[]} entries
 * @param {object} question the fields of the message
 * @param {number} now milliseconds since 1970
 * @returns {Entry[]}
 */
export function ask(entries, { requestId, text, sourceLang, targetLang, instruction = '' }, now) {
  const languages = { sourceLang, targetLang };
  const entry = { requestId, text, ...languages, instruction, state: 'waiting', translation: '', error: '', at: now };
  return [entry, ...entries].slice(0, LONGEST);
}

/**
 * @param {Entry[]} entries
 * @param {{requestId: string, ok: boolean, translation?: string, error?: string}} answer
 * @returns {Entry[]} the same list when nothing waits for the answer
 */
export function settle(entries, { requestId, ok, translation = '', error = '' }) {
  const isMeant = (entry) => entry.requestId === requestId && entry.state === 'waiting';
  if (!entries.some(isMeant)) return entries;
  const fields = ok ? { state: 'done', translation } : { state: 'failed', error };
  return entries.map((entry) => (isMeant(entry) ? { ...entry, ...fields } : entry));
}

/** @param {Entry[]} entries @param {number} now @returns {Entry[]} the same list when nothing has waited too long */
export function giveUp(entries, now) {
  const isLate = ({ state, at }) => state === 'waiting' && now - at >= ANSWER_LIMIT_MS;
  if (!entries.some(isLate)) return entries;
  return entries.map((entry) => (isLate(entry) ? { ...entry, state: 'failed' } : entry));
}

const STATES = ['waiting', 'done', 'failed'];
const TEXTS = ['requestId', 'text', 'sourceLang', 'targetLang', 'instruction', 'translation', 'error'];

/** @param {any} value that was kept or came from another page @returns {Entry[]} what of it fits */
export function readHistory(value) {
  const fits = (entry) =>
    TEXTS.every((name) => typeof entry?.[name] === 'string') &&
    STATES.includes(entry.state) &&
    Number.isFinite(entry.at);
  return Array.isArray(value) ? value.filter(fits).slice(0, LONGEST) : [];
}
