/** The items of the add-in's local store as the service keeps them. */

/** The service's own rule; the local store takes any file name. */
const ID = /^[\w-]{1,64}$/;

/** @typedef {{kind: import('./service_api.js').Kind, item: {id: string, name: string}}} OwnItem */

/**
 * @param {{glossaries?: object[], instructions?: object[]}} snapshot the add-in's answer to "exportLocalSnapshot"
 * @returns {OwnItem[]}
 */
export function accountItems({ glossaries = [], instructions = [] }) {
  return [
    ...glossaries.map(({ id, name, entries }) => ({
      kind: 'glossaries',
      // Without a source there is nothing to find in a text, and the service takes none.
      item: { id: accountId(id), name: name || id, entries: entries.filter(({ source }) => source.trim() !== '') },
    })),
    ...instructions.map(({ id, name, content }) => ({
      kind: 'instructions',
      item: { id: accountId(id), name: name || id, content },
    })),
  ];
}

/**
 * @param {OwnItem[]} items
 * @param {string[]} known ids
 * @returns {OwnItem[]}
 */
export const missingItems = (items, known) => items.filter(({ item }) => !known.includes(item.id));

/** @returns {string} the id itself when the service takes it, else one made from its characters: always the same */
function accountId(id) {
  if (ID.test(id)) return id;
  // 64-bit FNV-1a over UTF-16 code units.
  let hash = 0xcbf29ce484222325n;
  for (let at = 0; at < id.length; at += 1) {
    hash = BigInt.asUintN(64, (hash ^ BigInt(id.charCodeAt(at))) * 0x100000001b3n);
  }
  return `local-${hash.toString(16).padStart(16, '0')}`;
}
