/** The selection in words. */
import { previewErrorText } from './errors.js';
import { t } from './i18n.js';

/**
 * @param {{error?: string, fragments?: number, chars?: number, rangeAddress?: string}} preview as the add-in sends it
 * @returns {string} one line
 */
export function previewLine({ error, fragments, chars, rangeAddress }) {
  if (error) return t(previewErrorText(error));
  const range = String(rangeAddress ?? '').replaceAll('$', '');
  if (!fragments) return range ? `${range} · ${t('selection.empty')}` : t('selection.empty');
  return t('selection.summary', { range, count: fragments, chars: chars ?? 0 });
}
