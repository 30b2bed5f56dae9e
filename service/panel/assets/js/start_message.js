/** The message that starts a run, from what the user has chosen. */

/** Version of what the page sends; the add-in logs it. */
export const SCRIPT_REVISION = '1';

/** The add-in's own colour for translations, a muted slate blue, as the page's colour field holds it. */
export const DEFAULT_COLOR = '#5a6e8c';

/** @returns {string} 32 random hexadecimal digits */
export function newTraceId() {
  return Array.from(crypto.getRandomValues(new Uint8Array(16)), (byte) => byte.toString(16).padStart(2, '0')).join('');
}

/**
 * @param {import('./choices.js').Choices} choices
 * @returns {object} the style fields of a message; only what the user has set
 */
export function styleFields({ font, fontSize, weight, color }) {
  const fields = {};
  if (font) fields.targetFont = font;
  if (fontSize > 0) fields.targetFontSize = fontSize;
  if (weight) fields.targetFontBold = weight === 'bold';
  if (color !== DEFAULT_COLOR) fields.targetFontColor = hostColor(color);
  return fields;
}

/**
 * @param {string} color "#rrggbb"
 * @returns {number} the host's number, blue in the highest byte
 */
export function hostColor(color) {
  const [red, green, blue] = [1, 3, 5].map((at) => Number.parseInt(color.slice(at, at + 2), 16));
  return red + 256 * green + 65536 * blue;
}

/**
 * @param {import('./choices.js').Choices} choices
 * @param {{mode: 'full' | 'selection', accessToken: string, clientTraceId: string, viaPage: boolean}} start
 * @returns {{action: 'start' | 'startSelection', fields: object}}
 */
export function startMessage(choices, { mode, accessToken, clientTraceId, viaPage }) {
  const selection = mode === 'selection';
  const dual = choices.layout === 'dual';
  return {
    action: selection ? 'startSelection' : 'start',
    fields: {
      accessToken,
      sourceLang: choices.sourceLang,
      targetLang: choices.targetLang,
      panelMode: mode,
      panelIsRestart: false,
      panelScriptRev: SCRIPT_REVISION,
      clientTraceId,
      excelTranslateAllSheets: !selection && choices.allSheets,
      excelBilingualBelow: dual,
      nativeTranslateViaJs: viaPage,
      // A translation that stands alone keeps the cell's own font.
      ...(dual ? styleFields(choices) : {}),
    },
  };
}
