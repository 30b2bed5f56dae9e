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
  recognition_unavailable: { text: 'pictures.failRecognition', remedy: '' },
  recognition_language_missing: { text: 'pictures.failLanguage', remedy: '' },
  recognition_timeout: row('timeout'),
  drawing_unavailable: { text: 'pictures.failDrawing', remedy: '' },
  unreadable_picture: { text: 'pictures.failUnreadable', remedy: '' },
};

/**
 * @param {string} code may be empty or unknown
 * @returns {ErrorRow}
 */
export function errorRow(code) {
  return Object.hasOwn(ERRORS, code) ? ERRORS[code] : row('unknown');
}

/** The add-in's texts for a change of translated cells that came to nothing. */
const CELLS = {
  'Excel 未连接': 'error.notConnected',
  未知的显示模式: 'error.internal',
  无法读取当前选区: 'error.selectionUnreadable',
  请先选中要切换的单元格: 'results.selectFirst',
  '选中的单元格没有翻译结果，请先翻译或重新选择': 'results.noneInSelection',
  '当前工作表没有翻译结果，请切换到已翻译的工作表': 'results.noneOnSheet',
  没有可还原的单元格: 'results.nothingLeft',
  '切换显示模式失败，请检查工作表是否受保护': 'display.failed',
  '应用译文样式失败，请检查工作表是否受保护': 'results.styleFailed',
  '正在翻译，请稍候再试': 'results.running',
};

/**
 * @param {string} message as the add-in sent it
 * @returns {string} key of the words, empty when it has none
 */
export function cellsText(message) {
  return Object.hasOwn(CELLS, message) ? CELLS[message] : '';
}

/** The add-in's texts for a selection of which it cannot tell anything. */
const PREVIEW = { 无法读取选区: 'selection.failed', '读取 Excel 选区异常': 'preview.unexpected' };

/**
 * @param {string} message as the add-in sent it
 * @returns {string} key of the words
 */
export function previewErrorText(message) {
  return PREVIEW[message] ?? 'selection.failed';
}

/** What quick translation tells is a text alone; the first row that it holds a part of. */
const QUICK = [
  [/积分不足|insufficient_credits/, 'insufficient_credits'],
  [/登录|not signed in|unauthorized/i, 'unauthorized'],
  [/内容过长|too large/i, 'content_too_long'],
  [/^(HTTP request failed|WinHttp)/, 'network_error'],
  [/^No translation from /, 'unsupported_language_pair'],
  [/count mismatch|^Empty translation/, 'batch_mismatch'],
  [/^The language model /, 'engine_failed'],
  [/^(Translation worker|CreateThread) failed/, 'internal_error'],
];

/**
 * @param {string} message as the add-in sent it
 * @returns {string} the error code that it stands for, empty when it is not known
 */
export function quickErrorCode(message) {
  return QUICK.find(([part]) => part.test(message))?.[1] ?? '';
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
