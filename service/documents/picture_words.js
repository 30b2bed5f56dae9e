/** The words of a picture that shows a table. */
import { recognizeWords } from '../recognition.js';
import { flattened } from './flatten.js';
import { readGray, writeGray } from './gray.js';
import { withoutRules } from './rules.js';

/** Of 100. */
const MIN_MARK_CONFIDENCE = 40;

/**
 * @param {Buffer} picture
 * @param {{language: string, signal?: AbortSignal, program?: string}} options as of `recognizeWords`
 * @returns {Promise<import('./lines.js').PlacedWord[]>} in pixels; columns that a line parts are further apart than in
 *   the picture
 */
export async function wordsOfPicture(picture, options) {
  const gray = readGray(picture);
  const clean = gray && withoutRules(flattened(gray));
  const file = clean && clean !== gray ? writeGray(clean) : picture;
  return (await recognizeWords(file, { ...options, layout: 'block' })).words.filter(isWord);
}

/** Specks are taken for marks. */
const isWord = ({ text, confidence }) => /[\p{L}\p{N}]/u.test(text) || confidence >= MIN_MARK_CONFIDENCE;
