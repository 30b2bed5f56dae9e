/** The pages of a PDF, each as its text or, where it has none, as what is recognised in its picture. */
import { choosePages } from './page_choice.js';
import { countPages, drawPage, readLayout } from './pdf.js';

/** Recognising the words of a page takes seconds. */
const MAX_PICTURE_PAGES = 10;

/**
 * @template T
 * @param {import('./pdf.js').PdfSource} source
 * @param {string} choice of pages, see `choosePages`
 * @param {object} readers
 * @param {(body: string) => T[]} readers.ofText what is on a page, by Poppler's XML
 * @param {(picture: Buffer) => Promise<T[]>} readers.ofPicture the same by a PNG of the page, for pages without a text
 * @returns {Promise<{pageCount: number, pages: {page: number, content: T[]}[]}>}
 */
export async function readPdfPages(source, choice, { ofText, ofPicture }) {
  const pageCount = await countPages(source);
  const layout = await readLayout(source, choosePages(choice, pageCount));
  const pages = layout.map(({ page, body }) => ({ page, content: ofText(body) }));
  for (const entry of pages.filter(({ content }) => content.length === 0).slice(0, MAX_PICTURE_PAGES)) {
    entry.content = await ofPicture(await drawPage(source, entry.page));
  }
  return { pageCount, pages };
}
