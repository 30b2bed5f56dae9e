/**
 * Takes pictures out of the sheet, has them translated and puts them back, one after the other. Nothing here touches
 * the page: what it needs of the add-in and of the service is given to it.
 */
import { addinFailure, serviceFailure } from './pictures_failures.js';

/**
 * @typedef {import('./pictures_state.js').Item} Item
 * @typedef {import('./pictures_failures.js').PictureFailure} Failure
 */

/**
 * @typedef {object} Means
 * @property {(anchor: object) => Promise<any>} extract the add-in's answer
 * @property {(imageBase64: string) => Promise<{imageBase64: string, texts: {drawn: boolean}[]}>} translate rejected
 *   with the service's error
 * @property {(anchor: object, imageBase64: string) => Promise<any>} replace the add-in's answer
 * @property {(id: number, fields: Partial<Item>) => void} report what has become of a picture
 * @property {() => boolean} cancelled
 */

/**
 * @param {Item[]} items
 * @param {boolean} atOnce replaces each as soon as it is translated; else it is "ready"
 * @param {Means} means
 * @returns {Promise<Failure | null>} what stopped the work before its end, null when nothing did
 */
export const translateAll = (items, atOnce, means) =>
  forEach(items, means, async (item, settle) => {
    const translated = await translateOne(item, means, settle);
    if (!translated) return;
    if (!atOnce || means.cancelled()) settle({ ...translated, state: 'ready' });
    else await replaceOne({ ...item, ...translated }, means, settle);
  });

/**
 * @param {Item[]} items that are "ready"
 * @param {Means} means
 * @returns {Promise<Failure | null>} as above
 */
export const replaceAll = (items, means) => forEach(items, means, (item, settle) => replaceOne(item, means, settle));

const GIVEN_UP = { imageBase64: '', texts: [] };

async function forEach(items, means, work) {
  for (const item of items) {
    if (means.cancelled()) return null;
    let failure = null;
    await work(item, (fields) => {
      failure = fields.failure ?? null;
      means.report(item.id, fields);
    });
    if (failure?.stops) return failure;
  }
  return null;
}

/** @returns {Promise<Partial<Item> | null>} null when there is nothing to go on with */
async function translateOne(item, { extract, translate, report, cancelled }, settle) {
  report(item.id, { state: 'extracting', failure: null });
  const extracted = await extract(item.anchor);
  const failure = addinFailure(extracted);
  if (failure) {
    settle({ state: 'failed', failure });
    return null;
  }

  report(item.id, { state: 'translating' });
  try {
    const { imageBase64, texts } = cancelled() ? GIVEN_UP : await translate(extracted.data);
    const count = texts.filter(({ drawn }) => drawn).length;
    const found = { count, crowded: texts.length - count };
    if (count > 0) return { ...found, original: extracted.data, translated: imageBase64 };
    settle(cancelled() ? { state: 'idle' } : { ...found, state: 'nothing' });
  } catch (error) {
    // A request that was given up failed for no other reason.
    settle(cancelled() ? { state: 'idle' } : { state: 'failed', failure: serviceFailure(error) });
  }
  return null;
}

async function replaceOne(item, { replace, report }, settle) {
  report(item.id, { ...item, state: 'replacing', failure: null });
  const answer = await replace(item.anchor, item.translated);
  const failure = addinFailure(answer);
  // The translation stays, for another try.
  if (failure) settle({ state: 'failed', failure });
  else settle({ state: 'replaced', anchor: answer.anchor, ...(answer.thumbnail && { thumbnail: answer.thumbnail }) });
}
