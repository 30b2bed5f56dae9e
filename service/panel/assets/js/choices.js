/** What the user has chosen on the translation page; remembered from one time to the next. */
import { DEFAULT_COLOR } from './start_message.js';
import { load, save } from './storage.js';

/**
 * @typedef {object} Choices
 * @property {string} sourceLang "auto" lets the service find out
 * @property {string} targetLang empty until one is known
 * @property {'dual' | 'target'} layout translation below the source text, or in its place
 * @property {boolean} allSheets
 * @property {string} font empty: the cell's own
 * @property {number} fontSize points; 0: the cell's own
 * @property {'' | 'bold' | 'regular'} weight empty: the cell's own
 * @property {string} color "#rrggbb"
 */

const NAME = 'choices';
const SMALLEST_FONT = 1;
const LARGEST_FONT = 409;

const isText = (value) => typeof value === 'string';
const isFlag = (value) => typeof value === 'boolean';

const MEMBERS = {
  sourceLang: { initial: 'auto', fits: (value) => isText(value) && value !== '' },
  targetLang: { initial: '', fits: isText },
  layout: { initial: 'dual', fits: (value) => value === 'dual' || value === 'target' },
  allSheets: { initial: false, fits: isFlag },
  font: { initial: '', fits: isText },
  fontSize: { initial: 0, fits: (value) => value === 0 || (value >= SMALLEST_FONT && value <= LARGEST_FONT) },
  weight: { initial: '', fits: (value) => ['', 'bold', 'regular'].includes(value) },
  color: { initial: DEFAULT_COLOR, fits: (value) => /^#[0-9a-f]{6}$/.test(value) },
};

/**
 * @param {any} value from storage or from another page; whatever does not fit is left at its initial value
 * @returns {Choices}
 */
export function readChoices(value) {
  return Object.fromEntries(
    Object.entries(MEMBERS).map(([name, { initial, fits }]) => [name, fits(value?.[name]) ? value[name] : initial]),
  );
}

export const loadChoices = () => readChoices(load(localStorage, NAME));

/** @param {Choices} choices */
export const saveChoices = (choices) => save(localStorage, NAME, choices);
