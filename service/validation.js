import { ServiceError } from './errors.js';

/** Far above what one batch of the add-in holds (20 texts, 18000 characters, or one text of 20000). */
const MAX_TEXTS = 500;
const MAX_CHARACTERS = 500000;
/** The longest language tag that RFC 5646 asks everybody to take. */
const MAX_LANGUAGE_LENGTH = 35;
export const MAX_INSTRUCTION_LENGTH = 20000;

/** @param {string} message @returns {ServiceError} what a body is refused with */
export function bad(message) {
  return new ServiceError(400, 'bad_request', message);
}

/**
 * Reads a body as JSON; bytes that are no UTF-8 are refused like any other broken body.
 * @param {Buffer | undefined} body
 * @returns {unknown}
 */
export function parseJson(body) {
  try {
    return JSON.parse(new TextDecoder('utf-8', { fatal: true }).decode(body));
  } catch {
    throw bad('the body is not valid JSON');
  }
}

/**
 * @param {object} body
 * @param {string} name
 * @param {number} maxLength in UTF-16 code units
 * @returns {string} empty when the member is absent or null
 */
export function optionalText(body, name, maxLength) {
  const value = body[name] ?? '';
  if (typeof value !== 'string' || value.length > maxLength) {
    throw bad(`"${name}" must be a string of ${maxLength} characters at most`);
  }
  return value;
}

function readGlossary(value = []) {
  const isEntry = (entry) =>
    entry && typeof entry.source === 'string' && typeof entry.target === 'string' &&
    (entry.note === undefined || typeof entry.note === 'string');
  if (!Array.isArray(value) || !value.every(isEntry)) throw bad('"glossary" must hold source and target texts');
  return value.filter((entry) => entry.source.trim() !== '');
}

/** @param {unknown} value @returns {boolean} */
export const isObject = (value) => value !== null && typeof value === 'object' && !Array.isArray(value);

/** @param {unknown} value @returns {boolean} */
export const isTextList = (value) => Array.isArray(value) && value.every((item) => typeof item === 'string');

/**
 * @typedef {object} TranslateJob
 * @property {string[]} texts
 * @property {string[] | undefined} unitIds one a text
 * @property {string} sourceLang
 * @property {string} targetLang
 * @property {{source: string, target: string, note?: string}[]} glossary
 * @property {string} instruction
 */

/**
 * Checks the body of a translation request.
 * @param {any} body
 * @returns {TranslateJob}
 */
export function readTranslateRequest(body) {
  if (!isObject(body)) throw bad('the body must be an object');
  const { texts, unitIds } = body;
  if (!isTextList(texts) || texts.length === 0) throw bad('"texts" must be a list of strings');
  if (unitIds !== undefined && (!isTextList(unitIds) || unitIds.length !== texts.length)) {
    throw bad('"unitIds" must hold one string a text');
  }
  const characters = texts.reduce((sum, text) => sum + text.length, 0);
  if (texts.length > MAX_TEXTS || characters > MAX_CHARACTERS) {
    throw new ServiceError(413, 'content_too_long', 'Request too large');
  }
  const sourceLang = optionalText(body, 'sourceLang', MAX_LANGUAGE_LENGTH) || 'auto';
  const targetLang = optionalText(body, 'targetLang', MAX_LANGUAGE_LENGTH);
  if (targetLang === '') throw bad('"targetLang" is missing');
  return {
    texts,
    unitIds,
    sourceLang,
    targetLang,
    glossary: readGlossary(body.glossary),
    instruction: optionalText(body, 'instruction', MAX_INSTRUCTION_LENGTH),
  };
}
