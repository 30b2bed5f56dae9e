/** The text on its way from the translation page to the one of quick translation. */
import { load, save } from './storage.js';

const NAME = 'quickText';

/** @param {string} text */
export const keepQuickText = (text) => save(sessionStorage, NAME, text);

/** @returns {string} empty when there is none; it is given once */
export function takeQuickText() {
  const text = load(sessionStorage, NAME);
  save(sessionStorage, NAME, null);
  return typeof text === 'string' ? text : '';
}
