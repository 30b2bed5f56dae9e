import { tokenRefusal } from './auth.js';
import { choosePages } from './documents/page_choice.js';
import { MAX_PDF_BYTES, countPages, drawPage, readLayout, wordsIn } from './documents/pdf.js';
import { wordsOfPicture } from './documents/picture_words.js';
import { findTables } from './documents/tables.js';
import { ServiceError } from './errors.js';
import { MAX_PICTURE_BYTES } from './recognition.js';
import { bad } from './validation.js';

/** Of all tables of one answer. */
const MAX_CELLS = 100000;
/** Recognising the words of a page that is a picture takes seconds. */
const MAX_PICTURE_PAGES = 10;
const MAX_CHOICE_LENGTH = 200;

/**
 * Finds tables in pictures and PDF files.
 * @param {import('fastify').FastifyInstance} app
 * @param {import('./accounts.js').Accounts} accounts
 */
export function registerTables(app, accounts) {
  const onRequest = async (request) => refuseStranger(request, accounts);
  app.post('/v1/tables/picture', { onRequest, bodyLimit: MAX_PICTURE_BYTES }, async (request, reply) => {
    const file = readFile(request);
    const words = await wordsOfPicture(file, { language: languageOf(request), signal: goneSignal(reply) });
    return { tables: tablesOf([{ page: 1, words }]) };
  });
  app.post('/v1/tables/pdf', { onRequest, bodyLimit: MAX_PDF_BYTES }, async (request, reply) => {
    const source = { file: readFile(request), signal: goneSignal(reply) };
    const pageCount = await countPages(source);
    const pages = choosePages(queryText(request, 'pages', MAX_CHOICE_LENGTH), pageCount);
    return { pageCount, tables: tablesOf(await readPages(source, pages, languageOf(request))) };
  });
}

/**
 * Lets signed-in users pass whose credits are not used up.
 * @param {import('fastify').FastifyRequest} request
 * @param {import('./accounts.js').Accounts} accounts
 */
export function refuseStranger(request, accounts) {
  const refusal = tokenRefusal(request.headers.authorization, accounts);
  if (refusal?.status === 401) throw new ServiceError(401, 'unauthorized', 'not signed in');
  if (refusal) throw new ServiceError(refusal.status, refusal.body.code, refusal.body.message);
}

/** @param {import('fastify').FastifyRequest} request @returns {Buffer} its body, which is a file */
export function readFile(request) {
  if (!request.body?.length) throw bad('the body must be a file');
  return request.body;
}

/** @param {import('fastify').FastifyReply} reply @returns {AbortSignal} of a client that leaves before the answer */
export function goneSignal(reply) {
  const gone = new AbortController();
  reply.raw.once('close', () => gone.abort());
  return gone.signal;
}

/** @param {import('fastify').FastifyRequest} request @returns {string} a parameter of the address, empty without it */
export function queryText(request, name, maxLength) {
  const value = request.query[name] ?? '';
  if (typeof value !== 'string' || value.length > maxLength) throw bad(`"${name}" is too long, or stands twice`);
  return value;
}

const languageOf = (request) => queryText(request, 'language', 35) || 'auto';

/** Pages without a text are pictures, as a scanner makes them. */
async function readPages(source, pages, language) {
  const read = (await readLayout(source, pages)).map(({ page, body }) => ({ page, words: wordsIn(body) }));
  const pictures = read.filter(({ words }) => words.length === 0).slice(0, MAX_PICTURE_PAGES);
  for (const entry of pictures) {
    const picture = await drawPage(source, entry.page);
    entry.words = await wordsOfPicture(picture, { language, signal: source.signal });
  }
  return read;
}

function tablesOf(pages) {
  const tables = findTables(pages);
  const cells = tables.reduce((sum, { rows }) => sum + rows.length * rows[0].length, 0);
  if (cells > MAX_CELLS) throw new ServiceError(413, 'content_too_long', 'The tables are too large');
  if (tables.length === 0) throw new ServiceError(422, 'no_table', 'There is no table');
  return tables;
}
