/** What the user reads when a file could not be worked with. */
import { errorRow } from './errors.js';

const TEXTS = {
  recognition_unavailable: 'files.noRecognition',
  recognition_language_missing: 'files.noLanguage',
  recognition_timeout: 'error.timeout',
  unreadable_picture: 'files.badPicture',
  pdf_unavailable: 'files.noPdf',
  pdf_timeout: 'error.timeout',
  pdf_encrypted: 'files.locked',
  unreadable_pdf: 'files.badPdf',
  bad_pages: 'files.badPages',
  content_too_long: 'files.tooLarge',
  no_table: 'files.noTable',
};

/** @param {string} code of the service @returns {string} key of the words */
export const fileErrorText = (code) => (Object.hasOwn(TEXTS, code) ? TEXTS[code] : errorRow(code).text);
