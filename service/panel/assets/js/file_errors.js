/** What the user reads when a file could not be worked with. */
import { errorRow } from './errors.js';

/** The codes of the service that are about files, or mean something else for them than for texts. */
export const FILE_ERRORS = {
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
export const fileErrorText = (code) => (Object.hasOwn(FILE_ERRORS, code) ? FILE_ERRORS[code] : errorRow(code).text);
