/** Which glossaries and which instruction runs use: one choice for each document, and one for all that have none. */
import { load, save } from './storage.js';

/** @typedef {{glossaryIds: string[], instructionId: string}} Choice `instructionId` is empty for none */

const NAME = 'terminology';
/** Documents whose choice is kept; the one changed longest ago goes first. */
const MAX_DOCUMENTS = 200;
/** Keys of no document in particular. */
const NO_DOCUMENT = ['', '_unsaved', '_no_doc'];

/** @param {any} value @returns {Choice | null} null for what is none */
function readChoice(value) {
  const ids = value?.glossaryIds;
  if (!Array.isArray(ids) || !ids.every((id) => typeof id === 'string')) return null;
  return { glossaryIds: ids, instructionId: typeof value.instructionId === 'string' ? value.instructionId : '' };
}

function readAll() {
  const kept = load(localStorage, NAME);
  const documents = Array.isArray(kept?.documents) ? kept.documents.filter((each) => readChoice(each?.choice)) : [];
  return { usual: readChoice(kept?.usual) ?? { glossaryIds: [], instructionId: '' }, documents };
}

/** @returns {Choice} for documents without one of their own */
export const usualChoice = () => readAll().usual;

/** @param {string} docKey may name no document @returns {Choice} the document's own, else the usual one */
export function choiceFor(docKey) {
  const { usual, documents } = readAll();
  return readChoice(documents.find(({ key }) => key === docKey)?.choice) ?? usual;
}

/** Keeps a choice for a document; where there is none, for all. @param {string} docKey @param {Choice} choice */
export function keepChoice(docKey, choice) {
  const { usual, documents } = readAll();
  const others = documents.filter(({ key }) => key !== docKey);
  if (NO_DOCUMENT.includes(docKey)) save(localStorage, NAME, { usual: choice, documents });
  else save(localStorage, NAME, { usual, documents: [...others, { key: docKey, choice }].slice(-MAX_DOCUMENTS) });
}

/** The document has no choice of its own any more. @param {string} docKey @param {Choice} [usual] the new usual one */
export function followUsual(docKey, usual = usualChoice()) {
  const documents = readAll().documents.filter(({ key }) => key !== docKey);
  save(localStorage, NAME, { usual, documents });
}

/** @param {Choice} a @param {Choice} b @returns {boolean} */
export const sameChoice = (a, b) =>
  a.instructionId === b.instructionId &&
  [...a.glossaryIds].sort().join('\n') === [...b.glossaryIds].sort().join('\n');

/** @param {Choice} choice @returns {object} its fields of a start message */
export function choiceFields({ glossaryIds, instructionId }) {
  return {
    ...(glossaryIds.length > 0 ? { glossaryIds } : {}),
    ...(instructionId ? { globalInstructionId: instructionId } : {}),
  };
}
