/** Small values that outlive the page. A browser that forbids storage only means that nothing is remembered. */

const PREFIX = 'quorvantis.';

/**
 * @param {Storage} store localStorage, or sessionStorage for what belongs to this pane alone
 * @param {string} name
 * @returns {any} null when there is nothing, or nothing readable
 */
export function load(store, name) {
  try {
    return JSON.parse(store.getItem(PREFIX + name));
  } catch {
    return null;
  }
}

/**
 * @param {Storage} store
 * @param {string} name
 * @param {any} value null removes it
 */
export function save(store, name, value) {
  try {
    if (value === null) store.removeItem(PREFIX + name);
    else store.setItem(PREFIX + name, JSON.stringify(value));
  } catch {
    // Full or forbidden.
  }
}

/**
 * @param {string} name in localStorage
 * @param {() => void} listener called when another page changed it
 */
export function onChangedElsewhere(name, listener) {
  addEventListener('storage', (event) => {
    if (event.key === PREFIX + name || event.key === null) listener();
  });
}
