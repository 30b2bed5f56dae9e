import { MAX_PDF_BYTES, wordsIn } from './documents/pdf.js';
import { readPdfPages } from './documents/pdf_pages.js';
import { wordsOfPicture } from './documents/picture_words.js';
import { findTables } from './documents/tables.js';
import { ServiceError } from './errors.js';
import { goneSignal, queryText, readFile, refuseStranger } from './file_requests.js';
import { MAX_PICTURE_BYTES } from './recognition.js';

/** Of all tables of one answer. */
const MAX_CELLS = 100000;

/**
 * Finds tables in pictures and PDF files.
 * @param {import('fastify').FastifyInstance} app
 * @param {import('./accounts.js').Accounts} accounts
 */
export function registerTables(app, accounts) {
  const onRequest = async (request) => refuseStranger(request, accounts);
  app.post('/v1/tables/picture', { onRequest, bodyLimit: MAX_PICTURE_BYTES }, async (request, reply) => {
    const words = await wordsOfPicture(readFile(request), optionsOf(request, reply));
    return { tables: tablesOf([{ page: 1, words }]) };
  });
  app.post('/v1/tables/pdf', { onRequest, bodyLimit: MAX_PDF_BYTES }, async (request, reply) => {
    const options = optionsOf(request, reply);
    const source = { file: readFile(request), signal: options.signal };
    const { pageCount, pages } = await readPdfPages(source, queryText(request, 'pages'), {
      ofText: wordsIn,
      ofPicture: (picture) => wordsOfPicture(picture, options),
    });
    return { pageCount, tables: tablesOf(pages.map(({ page, content }) => ({ page, words: content }))) };
  });
}

const optionsOf = (request, reply) => ({ language: queryText(request, 'language') || 'auto', signal: goneSignal(reply) });

function tablesOf(pages) {
  const tables = findTables(pages);
  const cells = tables.reduce((sum, { rows }) => sum + rows.length * rows[0].length, 0);
  if (cells > MAX_CELLS) throw new ServiceError(413, 'content_too_long', 'The tables are too large');
  if (tables.length === 0) throw new ServiceError(422, 'no_table', 'There is no table');
  return tables;
}
