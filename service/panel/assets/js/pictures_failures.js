/** What the user reads when a picture could not be translated or replaced, and what that means for the others. */
import { errorRow } from './errors.js';

/**
 * @typedef {object} PictureFailure
 * @property {string} key of the words
 * @property {string} message that stands in the words
 * @property {boolean} stops the same would become of the pictures after it
 * @property {boolean} rescan the list does not fit the sheet any more
 */

const row = (key, { stops = false, rescan = false } = {}) => ({ key, stops, rescan });

/** The add-in's errors. */
const ADDIN = {
  anchor_stale: row('pictures.failStale', { rescan: true }),
  sheet_changed: row('pictures.failSheet', { stops: true, rescan: true }),
  no_sheet: row('error.noSheet', { stops: true, rescan: true }),
  export_failed: row('pictures.failExport'),
  encode_failed: row('pictures.failExport'),
  decode_failed: row('pictures.failReplace'),
  replace_failed: row('pictures.failReplace'),
  nothing_to_undo: row('pictures.failUndo'),
  group_child_inplace_only: row('pictures.failGroup'),
};

/** The service's codes that mean something else for pictures than for texts, or nothing there. */
const SERVICE = {
  recognition_unavailable: row('pictures.failRecognition', { stops: true }),
  recognition_language_missing: row('pictures.failLanguage', { stops: true }),
  drawing_unavailable: row('pictures.failDrawing', { stops: true }),
  recognition_timeout: row('error.timeout'),
  unreadable_picture: row('pictures.failUnreadable'),
  content_too_long: row('pictures.failLarge'),
  request_timeout: row('error.timeout'),
  unauthorized: row('terms.failExpired', { stops: true }),
};

/** What becomes of every other picture as well, beside the above. */
const STOPPING = ['insufficient_credits', 'network_error', 'unsupported_language_pair', 'engine_failed'];

/**
 * @param {{error?: string, detail?: string} | undefined} data the add-in's answer, nothing when none came
 * @returns {PictureFailure | null} null when it is no failure
 */
export function addinFailure(data) {
  if (data === undefined || data === null) return { ...row('display.noAnswer', { stops: true }), message: '' };
  if (!data.error) return null;
  const found = [data.detail, data.error].find((name) => Object.hasOwn(ADDIN, name ?? ''));
  return found ? { ...ADDIN[found], message: '' } : { ...row('agents.failed'), message: data.detail || data.error };
}

/** @param {{code: string, message: string}} error of the service @returns {PictureFailure} */
export function serviceFailure({ code, message }) {
  const found = Object.hasOwn(SERVICE, code) ? SERVICE[code] : row(errorRow(code).text);
  return { ...found, stops: found.stops || STOPPING.includes(code), message };
}
