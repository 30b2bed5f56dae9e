/** Which pages of a document are wanted. */
import { ServiceError } from '../errors.js';

/** One request reads no more pages. */
export const MAX_PAGES = 50;

/**
 * @param {string} choice such as "1-3, 5"; empty for the first ones, as many as are read at a time
 * @param {number} count of the document's pages
 * @returns {number[]} 1-based, in order, each once
 * @throws {import('../errors.js').ServiceError} for what is no choice, and for none of the document's pages
 */
export function choosePages(choice, count) {
  const text = choice.replace(/\s/g, '');
  const parts = text === '' ? [`1-${Math.min(count, MAX_PAGES)}`] : text.split(',');
  const pages = new Set();
  for (const part of parts) {
    const [, first, last = first] = /^(\d{1,6})(?:-(\d{1,6}))?$/.exec(part) ?? [];
    if (first === undefined || Number(first) < 1 || Number(last) < Number(first)) {
      throw badPages('"pages" must be page numbers and ranges such as 1-3,5');
    }
    for (let page = Number(first); page <= Math.min(Number(last), count); page++) pages.add(page);
  }
  if (pages.size === 0) throw badPages(`the document has ${count} pages, and none of those that were chosen`);
  if (pages.size > MAX_PAGES) throw badPages(`no more than ${MAX_PAGES} pages are read at a time`);
  return [...pages].sort((a, b) => a - b);
}

const badPages = (message) => new ServiceError(400, 'bad_pages', message);
