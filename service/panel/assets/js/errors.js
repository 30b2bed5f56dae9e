/** What the user reads for each error code, and what can be done about it. */

/**
 * @typedef {object} ErrorRow
 * @property {string} text key of the words: what happened, and what to do
 * @property {'signIn' | 'account' | 'tryAgain' | ''} remedy
 */

const row = (text, remedy = 'tryAgain') => ({ text: `error.${text}`, remedy });

/** Codes of the add-in, then those that only the service gives. Several mean the same to the user. */
export const ERRORS = {
  sheet_empty: row('sheetEmpty', ''),
  no_active_sheet: row('noSheet'),
  no_active_document: row('noSheet'),
  app_not_connected: row('notConnected'),
  workbook_unavailable: row('workbookUnavailable'),
  workbook_busy: row('workbookBusy'),
  used_range_read_failed: row('readFailed'),
  range_read_failed: row('readFailed'),
  cells_batch_read_failed: row('readFailed'),
  cells_batch_parse_failed: row('readFailed'),
  selection_read_failed: row('selectionUnreadable'),
  used_range_too_large: row('sheetTooLarge', ''),
  selection_too_large: row('selectionTooLarge', ''),
  content_too_long: row('contentTooLong', ''),
  no_selection: row('noSelection'),
  selection_empty: row('selectionEmpty', ''),
  com_error: row('hostFailed'),
  scan_inconsistent: row('changedMeanwhile'),
  batch_mismatch: row('badAnswer'),
  unauthorized: row('unauthorized', 'signIn'),
  insufficient_credits: row('noCredits', 'account'),
  network_error: row('network'),
  request_timeout: row('timeout'),
  internal_error: row('internal'),

  bad_request: row('internal'),
  not_found: row('network'),
  engine_failed: row('service'),
  unsupported_language_pair: row('languagePair', ''),
};

/**
 * @param {string} code may be empty or unknown
 * @returns {ErrorRow}
 */
export function errorRow(code) {
  return Object.hasOwn(ERRORS, code) ? ERRORS[code] : row('unknown');
}

/** The add-in's three texts for cells that it could not write, in its own language. */
const UNWRITTEN = {
  '目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。': 'unwritten.locked',
  '无法写入该单元格（工作表保护或单元格已锁定）。请解锁后重试。': 'unwritten.protected',
};

/**
 * @param {string} message as the add-in sent it
 * @returns {string} key of the words
 */
export function unwrittenText(message) {
  return UNWRITTEN[message] ?? 'unwritten.some';
}
