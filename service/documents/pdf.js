/** What a PDF holds, by Poppler's programs. */
import { ProgramError, runProgram } from '../child_program.js';
import { ServiceError } from '../errors.js';

/** The largest PDF, as a file. */
export const MAX_PDF_BYTES = 20 * 1024 * 1024;
const TIMEOUT_MS = 30000;
const MAX_OUTPUT_BYTES = 64 * 1024 * 1024;
/** Enough for letters of 8 points. */
const PICTURE_DPI = 200;

/**
 * @typedef {object} PdfSource
 * @property {Buffer} file
 * @property {AbortSignal} [signal] gives up
 * @property {string} [folder] of programs that stand in for Poppler's in tests, with a slash at its end
 */

/**
 * @param {PdfSource} source
 * @returns {Promise<number>} how many pages it has
 * @throws {ServiceError} as all functions here: "pdf_unavailable" without Poppler, "pdf_encrypted", "unreadable_pdf",
 *   "content_too_long", "pdf_timeout"
 */
export async function countPages(source) {
  if (source.file.length > MAX_PDF_BYTES) throw new ServiceError(413, 'content_too_long', 'The PDF is too large');
  const facts = (await run(source, 'pdfinfo', ['-'])).toString('utf8');
  return Number(/^Pages:\s+(\d+)/m.exec(facts)?.[1] ?? 0);
}

/** @param {number[]} pages 1-based @returns {[number, number][]} runs of neighbours, first and last */
export function runsOf(pages) {
  const runs = [];
  for (const page of pages) {
    if (runs.at(-1)?.[1] === page - 1) runs.at(-1)[1] = page;
    else runs.push([page, page]);
  }
  return runs;
}

/**
 * @param {PdfSource} source
 * @param {number[]} pages 1-based, in order
 * @returns {Promise<{page: number, body: string}[]>} each page's blocks, lines and words in Poppler's XML
 */
export async function readLayout(source, pages) {
  const read = [];
  for (const [first, last] of runsOf(pages)) {
    const args = ['-bbox-layout', '-f', String(first), '-l', String(last), '-', '-'];
    const xml = (await run(source, 'pdftotext', args)).toString('utf8');
    const bodies = [...xml.matchAll(/<page\b[^>]*>(.*?)<\/page>/gs)].map(([, body]) => body);
    read.push(...bodies.map((body, i) => ({ page: first + i, body })));
  }
  return read;
}

const WORD = /<word xMin="([-\d.]+)" yMin="([-\d.]+)" xMax="([-\d.]+)" yMax="([-\d.]+)">(.*?)<\/word>/gs;
const ENTITIES = { amp: '&', lt: '<', gt: '>', quot: '"', apos: "'" };

const unescaped = (text) => text.replace(/&(amp|lt|gt|quot|apos);/g, (_, name) => ENTITIES[name]);

/**
 * @param {string} xml of a page, a block or a line
 * @returns {import('./lines.js').PlacedWord[]} in points from the page's top left corner
 */
export function wordsIn(xml) {
  const words = [...xml.matchAll(WORD)].map(([, left, top, right, bottom, text]) => ({
    text: unescaped(text).trim(),
    left: Number(left),
    top: Number(top),
    width: Number(right) - Number(left),
    height: Number(bottom) - Number(top),
  }));
  return words.filter(({ text }) => text !== '');
}

/** @param {PdfSource} source @param {number} page 1-based @returns {Promise<Buffer>} a PNG of the page */
export function drawPage(source, page) {
  const number = String(page);
  return run(source, 'pdftoppm', ['-f', number, '-l', number, '-r', String(PICTURE_DPI), '-png', '-singlefile', '-']);
}

async function run({ file, signal, folder = '' }, program, args) {
  const options = { input: file, timeoutMs: TIMEOUT_MS, maxOutputBytes: MAX_OUTPUT_BYTES, signal };
  try {
    return await runProgram(folder + program, args, options);
  } catch (error) {
    throw error instanceof ProgramError ? refusal(error) : error;
  }
}

const NEEDS_PASSWORD = /Incorrect password|not allowed/;
const REFUSALS = {
  missing: [503, 'pdf_unavailable', 'poppler-utils is not installed: PDF files cannot be read'],
  timeout: [504, 'pdf_timeout', 'Reading the PDF took too long'],
  too_long: [413, 'content_too_long', 'The PDF holds too much'],
  failed: [422, 'unreadable_pdf', 'The PDF cannot be read'],
  aborted: [499, 'aborted', 'The request was given up'],
};
const ENCRYPTED = [422, 'pdf_encrypted', 'The PDF is protected by a password'];

const refusal = ({ reason, message }) =>
  new ServiceError(...(reason === 'failed' && NEEDS_PASSWORD.test(message) ? ENCRYPTED : REFUSALS[reason]));
