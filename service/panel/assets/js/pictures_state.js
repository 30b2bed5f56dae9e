/** The pictures of a sheet as a list, and what became of each. Nothing here touches the page. */

/** What an anchor consists of; the add-in matches a picture by it. */
const ANCHOR = [
  'v',
  'host',
  'kind',
  'sheetName',
  'shapeName',
  'shapeIndex',
  'childPath',
  'widthPt',
  'heightPt',
  'leftPt',
  'topPt',
];

/** Points by which two positions of the same picture may differ in the add-in's words. */
const TOLERANCE_PT = 0.1;

/**
 * @typedef {Record<string, any>} Anchor with the members of ANCHOR
 *
 * @typedef {'idle' | 'extracting' | 'translating' | 'replacing' | 'undoing' | 'ready' | 'replaced' | 'nothing' | 'failed'
 *   } State "ready" has a translation that is not in the sheet, "nothing" no text to translate
 *
 * @typedef {object} Item one picture
 * @property {number} id of this page
 * @property {Anchor} anchor of the picture that is in the sheet now
 * @property {string} thumbnail a PNG in base64; empty without one
 * @property {boolean} chosen
 * @property {State} state
 * @property {string} original the picture as the sheet showed it, in base64; empty when it is not kept
 * @property {string} translated its translation
 * @property {number} count of texts translated
 * @property {number} crowded texts that were left for lack of room
 * @property {number} undos how often it can be put back
 * @property {{key: string, message: string} | null} failure
 */

let lastId = 0;

/** @param {any} value @returns {Anchor | null} without whatever else lies in the value; null when it is no anchor */
export function readAnchor(value) {
  if (typeof value?.sheetName !== 'string' || typeof value.shapeName !== 'string') return null;
  return Object.fromEntries(ANCHOR.map((name) => [name, value[name]]));
}

/** @param {any} entry anchor and thumbnail as the add-in gives them @returns {Item | null} */
export function makeItem(entry) {
  const anchor = readAnchor(entry);
  const thumbnail = typeof entry?.thumbBase64 === 'string' ? entry.thumbBase64 : '';
  return anchor && { ...fresh(), id: ++lastId, anchor, thumbnail, chosen: false, undos: 0 };
}

/** @returns {Partial<Item>} what is known of a picture that nothing was done with */
export const fresh = () => ({
  state: 'idle',
  original: '',
  translated: '',
  count: 0,
  crowded: 0,
  failure: null,
});

/**
 * @typedef {object} Scan
 * @property {string} sheetName
 * @property {number} unsupported drawings that are no pictures
 * @property {Item[]} items
 */

/**
 * @param {any} data the add-in's answer
 * @param {Item[]} [before] items of the scan before: what was chosen and done stays with the same pictures
 * @returns {Scan | null} null when it is no scan
 */
export function readScan(data, before = []) {
  if (!Array.isArray(data?.sheetSummary)) return null;
  const found = data.sheetSummary
    .flatMap(({ anchors }) => anchors ?? [])
    .map(makeItem)
    .filter(Boolean);
  const items = found.map((item) => {
    const known = before.find(({ anchor }) => isSamePicture(anchor, item.anchor));
    return known ? { ...known, anchor: item.anchor, thumbnail: item.thumbnail || known.thumbnail } : item;
  });
  // Of one picture there is nothing to choose.
  if (items.length === 1 && !before.includes(items[0])) items[0] = { ...items[0], chosen: true };
  return { sheetName: data.sheetSummary[0]?.sheetName ?? '', unsupported: data.skippedUnsupported ?? 0, items };
}

/** @param {Anchor} a @param {Anchor} b @returns {boolean} whether both mean the same picture at the same place */
export function isSamePicture(a, b) {
  const same = (name) => JSON.stringify(a[name] ?? null) === JSON.stringify(b[name] ?? null);
  const near = (name) => Math.abs((a[name] ?? 0) - (b[name] ?? 0)) <= TOLERANCE_PT;
  return ['sheetName', 'shapeName', 'childPath'].every(same) && ['leftPt', 'topPt', 'widthPt', 'heightPt'].every(near);
}

/** @param {Item[]} items @param {number} id @param {Partial<Item>} fields @returns {Item[]} */
export const changeItem = (items, id, fields) => items.map((item) => (item.id === id ? { ...item, ...fields } : item));

/** What a click on "choose all" does: all, and none once all are. */
export function chooseAll(items) {
  const chosen = !items.every((item) => item.chosen);
  return items.map((item) => ({ ...item, chosen }));
}

/** @param {Item[]} items @returns {Record<'replaced' | 'ready' | 'nothing' | 'failed', number>} */
export function outcomeOf(items) {
  const count = (wanted) => items.filter(({ state }) => state === wanted).length;
  return { replaced: count('replaced'), ready: count('ready'), nothing: count('nothing'), failed: count('failed') };
}
