import { ProgramError, runProgram } from './child_program.js';
import { ServiceError } from './errors.js';
import { primarySubtag } from './translate/languages.js';

/** The largest picture, as a file; a page of a document at 300 dpi takes a tenth of it. */
export const MAX_PICTURE_BYTES = 20 * 1024 * 1024;
/** A full page takes a few seconds. */
const TIMEOUT_MS = 60000;
/** Recognition gets slower with each language. */
const MAX_AUTO_LANGUAGES = 4;

/** Two-letter codes and the names of Tesseract's data; Chinese has two, by its script. */
const DATA_NAMES = {
  ar: 'ara',
  bg: 'bul',
  ca: 'cat',
  cs: 'ces',
  da: 'dan',
  de: 'deu',
  el: 'ell',
  en: 'eng',
  es: 'spa',
  et: 'est',
  fa: 'fas',
  fi: 'fin',
  fr: 'fra',
  he: 'heb',
  hi: 'hin',
  hr: 'hrv',
  hu: 'hun',
  id: 'ind',
  it: 'ita',
  ja: 'jpn',
  ko: 'kor',
  lt: 'lit',
  lv: 'lav',
  ms: 'msa',
  nb: 'nor',
  nl: 'nld',
  nn: 'nor',
  no: 'nor',
  pl: 'pol',
  pt: 'por',
  ro: 'ron',
  ru: 'rus',
  sk: 'slk',
  sl: 'slv',
  sr: 'srp',
  sv: 'swe',
  th: 'tha',
  tr: 'tur',
  uk: 'ukr',
  vi: 'vie',
};

/** How Tesseract divides a picture: by itself, as one block of lines, or as words anywhere. */
const SEGMENTATION = { page: '3', block: '6', sparse: '11' };

/**
 * @typedef {object} Word
 * @property {string} text without blanks
 * @property {number} confidence 0 to 100
 * @property {number} left in pixels of the picture, as the other three
 * @property {number} top
 * @property {number} width
 * @property {number} height
 * @property {number} block 1-based, in reading order
 * @property {number} paragraph 1-based within its block
 * @property {number} line 1-based within its paragraph
 */

/**
 * Finds the words of a picture, with Tesseract.
 * @param {Buffer} picture a PNG, JPEG or TIFF file
 * @param {object} [options]
 * @param {string} [options.language] such as "en" or "zh-CN"; "auto" takes the languages that are installed
 * @param {'page' | 'block' | 'sparse'} [options.layout] what to expect of the picture
 * @param {AbortSignal} [options.signal] gives up
 * @param {string} [options.program] stands in for Tesseract in tests
 * @returns {Promise<{width: number, height: number, words: Word[]}>} the picture's size, and its words in reading order
 * @throws {ServiceError} "recognition_unavailable" without Tesseract, "recognition_language_missing" without the data
 *   of the language, "unreadable_picture", "content_too_long", "recognition_timeout"
 */
export async function recognizeWords(picture, options = {}) {
  const { language = 'auto', layout = 'page', signal, program = 'tesseract' } = options;
  if (picture.length > MAX_PICTURE_BYTES) throw new ServiceError(413, 'content_too_long', 'The picture is too large');
  const data = chooseData(await installedData(program), language);
  const args = ['stdin', 'stdout', '-l', data, '--psm', SEGMENTATION[layout], 'tsv'];
  // Several threads help one picture little and hinder each other when the machine is busy.
  const run = { input: picture, timeoutMs: TIMEOUT_MS, signal, env: { OMP_THREAD_LIMIT: '1' } };
  return readTable((await runProgram(program, args, run).catch(refuse)).toString('utf8'));
}

/** @returns {Promise<string[]>} names of the languages' data that are installed, such as "eng" */
async function installedData(program) {
  const listed = await runProgram(program, ['--list-langs']).catch(refuse);
  return listed
    .toString('utf8')
    .split('\n')
    .slice(1)
    .map((line) => line.trim())
    .filter((name) => name && name !== 'osd');
}

function refuse(error) {
  if (!(error instanceof ProgramError)) throw error;
  const answers = {
    missing: [503, 'recognition_unavailable', 'Tesseract is not installed: text in pictures cannot be recognised'],
    timeout: [504, 'recognition_timeout', 'Recognising the text took too long'],
    too_long: [413, 'content_too_long', 'The picture holds too many words'],
    failed: [422, 'unreadable_picture', 'The picture cannot be read'],
    aborted: [499, 'aborted', 'The request was given up'],
  };
  throw new ServiceError(...answers[error.reason]);
}

/**
 * @param {string[]} installed
 * @param {string} language
 * @returns {string} what "-l" takes
 */
export function chooseData(installed, language) {
  if (primarySubtag(language) === 'auto') {
    const ordered = [...installed].sort((a, b) => Number(b === 'eng') - Number(a === 'eng'));
    if (ordered.length > 0) return ordered.slice(0, MAX_AUTO_LANGUAGES).join('+');
  }
  const wanted = dataName(language);
  if (!installed.includes(wanted)) {
    const message = `Tesseract has no data for the language "${language}"`;
    throw new ServiceError(503, 'recognition_language_missing', message);
  }
  return wanted;
}

function dataName(language) {
  const primary = primarySubtag(language);
  if (primary === 'zh') return /(tw|hk|hant)$/i.test(language) ? 'chi_tra' : 'chi_sim';
  return DATA_NAMES[primary] ?? primary;
}

/**
 * Reads Tesseract's table: one row a page, block, paragraph, line and word (levels 1 to 5).
 * @param {string} table
 */
export function readTable(table) {
  const rows = table
    .split('\n')
    .slice(1)
    .map((line) => line.split('\t'))
    .filter((row) => row.length >= 12);
  const page = rows.find(([level]) => level === '1') ?? [];
  const words = rows
    .filter(([level]) => level === '5')
    .map(readWord)
    .filter(({ text }) => text !== '');
  return { width: Number(page[8] ?? 0), height: Number(page[9] ?? 0), words };
}

function readWord(row) {
  const [, , block, paragraph, line, , left, top, width, height, confidence] = row.map(Number);
  return { text: row[11].trim(), confidence, left, top, width, height, block, paragraph, line };
}
