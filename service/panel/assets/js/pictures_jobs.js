/** What is done with pictures, one thing at a time: the sheet is one, and so is the user. */
import { request } from './bridge.js';
import { t } from './i18n.js';
import { thumbnailOf } from './picture.js';
import { addinFailure } from './pictures_failures.js';
import { change, isBusy, isCancelled, items, setItem, setItems, setUndos, state } from './pictures_model.js';
import { fresh, isSamePicture, makeItem, outcomeOf, readAnchor, readScan } from './pictures_state.js';
import {
  batchSize,
  withBatchForgotten,
  withBatchUndone,
  withNothing,
  withReplaced,
  withUndone,
} from './pictures_undo.js';
import { stateText } from './pictures_view.js';
import { replaceAll, translateAll } from './pictures_work.js';
import { translatePicture } from './service_api.js';
import { dropToken, token } from './session.js';

/** Pictures of many megabytes, and sheets with hundreds of them, take their time. */
const ADDIN_LIMIT_MS = 180000;
const SERVICE_LIMIT_MS = 180000;
/** As large as the add-in's own. */
const THUMBNAIL_PIXELS = 160;

/** Asks the add-in; undefined when it does not answer. */
const ask = (action, fields = {}) => request(action, fields, { limitMs: ADDIN_LIMIT_MS }).catch((error) => error.data);

const thumbnail = (base64) => thumbnailOf(base64, THUMBNAIL_PIXELS).catch(() => '');

/** Looks at the active sheet again. */
export async function scan() {
  if (isBusy()) return;
  change({ scanning: true });
  const data = await ask('imageTranslateScan');
  change({ scanning: false, scanFailure: addinFailure(data) });
  const found = readScan(data, items());
  if (!found) return;
  change({ scan: found, openSheet: '', stale: '' });
  setItems(found.items);
}

/** The user has gone to a sheet; nothing is said while it is that of the list. @param {string} name */
export function noteSheet(name) {
  const isOther = state.scan && name && name !== state.scan.sheetName;
  if (state.openSheet !== (isOther ? name : '')) change({ openSheet: isOther ? name : '' });
}

const looksAlike = (a, b) => a?.thumbnail === b?.thumbnail && (a === b || isSamePicture(a.anchor, b.anchor));

let selections = 0;

/** The add-in tells of each selection at rest; of cells it does not say on which sheet. */
export async function noteSelection({ scope, anchor, thumbBase64 }) {
  const number = ++selections;
  const selected = scope === 'shape' ? makeItem({ ...anchor, thumbBase64 }) : null;
  if (!looksAlike(selected, state.selected)) change({ selected });
  if (selected) return noteSheet(selected.anchor.sheetName);
  if (!state.scan) return;
  const where = await ask('excelGetWriteContext');
  if (number === selections) noteSheet(where?.sheetName ?? '');
}

/** @param {number} total pictures @param {() => Promise<void>} job */
async function workOn(total, job) {
  if (isBusy()) return;
  change({ work: { done: 0, total }, stop: new AbortController(), outcome: null, stoppedBy: null });
  try {
    await job();
  } finally {
    change({ work: null });
  }
}

const ENDS = ['ready', 'replaced', 'nothing', 'failed'];

/** What the work needs. Pictures of a batch are not kept once they are in the sheet, for they can be many. */
function meansFor(languages, inBatch) {
  const asked = token();
  return {
    cancelled: isCancelled,
    extract: (anchor) => ask('imageTranslateExtract', { anchor }),
    translate: async (imageBase64) => {
      const signal = AbortSignal.any([state.stop.signal, AbortSignal.timeout(SERVICE_LIMIT_MS)]);
      try {
        return await translatePicture(asked, { imageBase64, ...languages }, signal);
      } catch (error) {
        // Somebody else may have signed in meanwhile.
        if (error.code === 'unauthorized' && asked === token()) dropToken();
        throw error;
      }
    },
    replace: async (anchor, imageBase64) => {
      const answer = await ask('imageTranslateReplace', { anchor, imageBase64, batchMode: inBatch });
      const now = readAnchor(answer?.anchor);
      if (now && answer.hasUndo) setUndos(withReplaced(state.undos, anchor, now, inBatch));
      return now ? { ...answer, anchor: now, thumbnail: await thumbnail(imageBase64) } : answer;
    },
    report: (id, fields) => {
      if (ENDS.includes(fields.state)) state.work.done += 1;
      if (fields.failure?.rescan) state.stale = fields.failure.key;
      setItem(id, fields.state === 'replaced' && inBatch ? { ...fields, original: '', translated: '' } : fields);
    },
  };
}

/** The add-in keeps one batch. */
async function beginBatch(inBatch) {
  if (!inBatch) return;
  await ask('imageTranslateClearBatchUndo');
  setUndos(withBatchForgotten(state.undos));
}

/**
 * @param {import('./pictures_state.js').Item[]} chosen
 * @param {{sourceLang: string, targetLang: string}} languages
 * @param {boolean} atOnce puts each translation into the sheet
 */
export const translate = (chosen, languages, atOnce) =>
  workOn(chosen.length, async () => {
    const inBatch = atOnce && chosen.length > 1;
    await beginBatch(inBatch);
    const stoppedBy = await translateAll(chosen, atOnce, meansFor(languages, inBatch));
    change({ stoppedBy, outcome: outcomeWords(chosen) });
  });

/** @param {import('./pictures_state.js').Item[]} chosen that have translations */
export const replace = (chosen) =>
  workOn(chosen.length, async () => {
    const inBatch = chosen.length > 1;
    await beginBatch(inBatch);
    const stoppedBy = await replaceAll(chosen, meansFor({}, inBatch));
    change({ stoppedBy, outcome: outcomeWords(chosen) });
  });

/** @returns {() => string} what has become of some pictures, in the language of the moment */
function outcomeWords(chosen) {
  const ids = new Set(chosen.map(({ id }) => id));
  const done = items().filter(({ id }) => ids.has(id));
  const stopped = isCancelled();
  const words = () => (done.length === 1 ? stateText(done[0]) : t('pictures.summary', outcomeOf(done)));
  return () => [stopped ? t('chat.stopped') : '', words()].filter(Boolean).join(' ');
}

/** @param {import('./pictures_state.js').Item} item whose last replacement is put back */
export const undo = (item) =>
  workOn(1, async () => {
    setItem(item.id, { state: 'undoing', failure: null });
    const data = await ask('imageTranslateUndoReplace', { anchor: item.anchor });
    const failure = addinFailure(data);
    if (failure) {
      if (failure.rescan) state.stale = failure.key;
      setItem(item.id, { state: item.state, failure });
      if (data?.error === 'nothing_to_undo') setUndos(withNothing(state.undos, item.anchor));
      return;
    }
    const anchor = readAnchor(data.anchor) ?? item.anchor;
    setItem(item.id, { ...fresh(), anchor, thumbnail: await thumbnail(data.imageBase64) });
    setUndos(withUndone(state.undos, item.anchor, anchor));
    change({ outcome: () => t('pictures.putBack') });
  });

/** Puts the last batch back, on whichever sheets it was. */
export async function undoAll() {
  await workOn(batchSize(state.undos), async () => {
    const data = await ask('imageTranslateBatchUndo');
    const stoppedBy = addinFailure(data);
    if (stoppedBy) return change({ stoppedBy });
    const { restored = 0, failed = 0 } = data;
    // Which ones failed is not told; all of them may be tried again.
    if (failed === 0) {
      const batch = state.undos.filter(({ inBatch }) => inBatch);
      const isOfBatch = (item) => batch.some(({ anchor }) => isSamePicture(anchor, item.anchor));
      setItems(items().map((item) => (isOfBatch(item) ? { ...item, ...fresh() } : item)));
      setUndos(withBatchUndone(state.undos));
    }
    change({ outcome: () => t('pictures.undone', { restored, failed }) });
  });
  await scan();
}

/** What is under way ends with the picture that is being put into the sheet, if any. */
export function cancel() {
  state.stop.abort();
  change({});
}
