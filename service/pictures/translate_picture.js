import { recognizeWords } from '../recognition.js';
import { letter } from './lettering.js';
import { passagesOf } from './passages.js';
import { PictureThread } from './picture_thread.js';

/**
 * @typedef {object} TranslatedText
 * @property {string} source
 * @property {string} translation
 * @property {import('./passages.js').Box} box in which pixels may have changed
 * @property {boolean} drawn false where the translation found no room; the picture shows the source there
 */

/**
 * Puts translations in the place of a picture's texts. What is no text, and a text that stays the same, keeps its pixels.
 * @param {Buffer} file a PNG
 * @param {object} options
 * @param {(texts: string[]) => Promise<string[]>} options.translate
 * @param {string} options.sourceLang "auto" or a code
 * @param {string} options.targetLang
 * @param {AbortSignal} [options.signal]
 * @returns {Promise<{file: Uint8Array, width: number, height: number, texts: TranslatedText[]}>} a PNG of the same
 *   size; the very file that came when nothing was to be changed
 */
export async function translatePicture(file, { translate, sourceLang, targetLang, signal }) {
  const picture = new PictureThread();
  const stop = () => void picture.close();
  signal?.addEventListener('abort', stop, { once: true });
  try {
    const { width, height, ...enlarged } = await picture.open(file);
    const passages = await recognize(enlarged, { language: sourceLang, signal });
    const translations = passages.length > 0 ? await translate(passages.map(({ text }) => text)) : [];
    const changes = passages
      .map((passage, i) => ({ ...passage, translation: translations[i].trim() }))
      .filter(({ text, translation }) => translation !== '' && translation !== text);
    const texts = await compose(picture, changes, { lang: targetLang, signal });
    const drawn = texts.filter(({ lettering }) => lettering);
    return {
      file: drawn.length > 0 ? await picture.paint(drawn) : file,
      width,
      height,
      texts: texts.map(({ text, translation, surroundings, lettering }) => ({
        source: text,
        translation,
        box: lettering ? changedBox(surroundings, lettering) : surroundings.erased,
        drawn: lettering !== null,
      })),
    };
  } finally {
    signal?.removeEventListener('abort', stop);
    await picture.close();
  }
}

function changedBox({ erased }, { left, top, width, height }) {
  return {
    left: Math.min(erased.left, left),
    top: Math.min(erased.top, top),
    right: Math.max(erased.right, left + width),
    bottom: Math.max(erased.bottom, top + height),
  };
}

/** @returns {Promise<import('./passages.js').Passage[]>} in pixels of the picture itself */
async function recognize({ factor, file }, { language, signal }) {
  const { words } = await recognizeWords(Buffer.from(file), { language, layout: 'sparse', signal });
  const scaled = words.map((word) => ({
    ...word,
    left: word.left / factor,
    top: word.top / factor,
    width: word.width / factor,
    height: word.height / factor,
  }));
  return passagesOf(scaled);
}

/** Finds the room for each translation, and its letters there. */
async function compose(picture, passages, { lang, signal }) {
  const found = await picture.survey(passages.map(({ box, size }) => ({ box, size })));
  const items = passages.map(({ translation, size, baseline, align }, i) => {
    const { left, top, right, bottom } = found[i].room;
    const room = { width: right - left, height: bottom - top };
    return { text: translation, lang, ...room, size, baseline: baseline - top, align };
  });
  const letterings = await letter(items, signal);
  return passages.map((passage, i) => {
    const { left, top } = found[i].room;
    const lettering = letterings[i] && {
      ...letterings[i],
      left: letterings[i].left + left,
      top: letterings[i].top + top,
    };
    return { ...passage, surroundings: found[i], lettering };
  });
}
