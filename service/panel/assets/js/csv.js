/** Comma-separated values (RFC 4180), with what spreadsheet programs make of them: semicolons, tabs, byte order marks. */

/** In this order when a file does not tell them apart. */
const DELIMITERS = [',', ';', '\t'];
/** Enough of a file to hold its first record. */
const SAMPLE_LENGTH = 65536;
/** What spreadsheet programs take for a formula, also in the wide forms of East Asian keyboards. */
const FORMULA_START = '[=+\\-@\\t\\r\\n＝＋－＠]';
const RISKY = new RegExp(`^'*${FORMULA_START}`);
const GUARDED = new RegExp(`^'+${FORMULA_START}`);

/** @typedef {{line: number, fields: string[]}} CsvRecord `line` is 1-based, where the record begins */

/** A file that cannot be read. */
export class CsvError extends Error {
  /**
   * @param {'encoding' | 'openQuote' | 'afterQuote'} kind
   * @param {number} [line] 1-based
   */
  constructor(kind, line = 0) {
    super(`${kind} ${line}`);
    this.kind = kind;
    this.line = line;
  }
}

/**
 * @param {Uint8Array} bytes UTF-8, or UTF-16 with a byte order mark
 * @returns {string} without the mark; anything else is a CsvError
 */
export function decodeCsv(bytes) {
  const mark = (bytes[0] << 8) | bytes[1];
  const encoding = { 0xfffe: 'utf-16le', 0xfeff: 'utf-16be' }[mark] ?? 'utf-8';
  let text = '';
  try {
    text = new TextDecoder(encoding, { fatal: true }).decode(bytes);
  } catch {
    throw new CsvError('encoding');
  }
  // No text holds this; workbooks and pictures do.
  if (text.includes('\0')) throw new CsvError('encoding');
  return text;
}

/**
 * @param {string} text
 * @returns {CsvRecord[]} blank lines are left out; a broken file is a CsvError
 */
export function parseCsv(text) {
  const told = /^sep=([,;\t])(?:\r\n|[\r\n]|$)/i.exec(text);
  const records = told
    ? readRecords(text.slice(told[0].length), told[1], 2)
    : readRecords(text, likelyDelimiter(text), 1);
  return [...records].filter(({ fields }) => fields.some((field) => field.trim() !== ''));
}

/** The one that parts the first record most often. */
function likelyDelimiter(text) {
  const unquoted = text.slice(0, SAMPLE_LENGTH).replace(/(^|[,;\t\r\n])"(?:[^"]|"")*(?:"|$)/g, '$1');
  const [first] = unquoted.trimStart().split(/[\r\n]/, 1);
  const counts = DELIMITERS.map((delimiter) => first.split(delimiter).length);
  return DELIMITERS[counts.indexOf(Math.max(...counts))];
}

/** Each pass reads a field and what ends it. */
function* readRecords(text, delimiter, firstLine) {
  const plain = new RegExp(`[^${delimiter}\r\n]*`, 'y');
  let line = firstLine;
  let record = { line, fields: [] };
  let at = 0;
  while (at < text.length) {
    const quoted = text[at] === '"';
    const end = quoted ? endOfQuoted(text, at) : endOf(plain, text, at);
    if (end < 0) throw new CsvError('openQuote', line);
    record.fields.push(quoted ? text.slice(at + 1, end - 1).replaceAll('""', '"') : text.slice(at, end));
    if (quoted) line += text.slice(at, end).split(/\r\n|[\r\n]/).length - 1;
    at = end;
    if (text[at] === delimiter) {
      at += 1;
      // Nothing after the last delimiter is a field as well.
      if (at === text.length) record.fields.push('');
    } else if (text[at] === '\r' || text[at] === '\n') {
      yield record;
      at += text.startsWith('\r\n', at) ? 2 : 1;
      line += 1;
      record = { line, fields: [] };
    } else if (at < text.length) {
      throw new CsvError('afterQuote', line);
    }
  }
  if (record.fields.length > 0) yield record;
}

function endOf(pattern, text, at) {
  pattern.lastIndex = at;
  return at + pattern.exec(text)[0].length;
}

/** @returns {number} behind the closing quotation mark, -1 without one */
function endOfQuoted(text, at) {
  let mark = text.indexOf('"', at + 1);
  while (mark >= 0 && text[mark + 1] === '"') mark = text.indexOf('"', mark + 2);
  return mark < 0 ? -1 : mark + 1;
}

/**
 * @param {string[][]} rows
 * @returns {string} with a byte order mark, without which Excel does not expect UTF-8, and nothing in it that Excel would
 *   calculate; `unguarded` takes the apostrophe away again
 */
export function writeCsv(rows) {
  const quoted = (field) => (/[",;\t\r\n]/.test(field) ? `"${field.replaceAll('"', '""')}"` : field);
  const guarded = (field) => (RISKY.test(field) ? `'${field}` : field);
  return `\ufeff${rows.map((fields) => `${fields.map((field) => quoted(guarded(field))).join(',')}\r\n`).join('')}`;
}

/** @param {string} field as `writeCsv` wrote it @returns {string} as it was */
export const unguarded = (field) => (GUARDED.test(field) ? field.slice(1) : field);
