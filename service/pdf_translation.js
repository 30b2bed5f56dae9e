import { bearerToken } from './auth.js';
import { paragraphsOf, paragraphsOfWords } from './documents/paragraphs.js';
import { MAX_PDF_BYTES } from './documents/pdf.js';
import { readPdfPages } from './documents/pdf_pages.js';
import { goneSignal, queryText, readFile, refuseStranger } from './file_requests.js';
import { recognizeWords } from './recognition.js';
import { readTranslateRequest } from './validation.js';

/** What an engine is given at a time. */
const MAX_BATCH_TEXTS = 100;
const MAX_BATCH_CHARACTERS = 20000;

/**
 * Translates the text of PDF files, by paragraphs.
 * @param {import('fastify').FastifyInstance} app
 * @param {import('./accounts.js').Accounts} accounts
 * @param {import('./translate/engines.js').Engine} engine
 */
export function registerPdfTranslation(app, accounts, engine) {
  const onRequest = async (request) => refuseStranger(request, accounts);
  app.post('/v1/translate/pdf', { onRequest, bodyLimit: MAX_PDF_BYTES }, async (request, reply) => {
    const signal = goneSignal(reply);
    const sourceLang = queryText(request, 'sourceLang') || 'auto';
    const languages = { sourceLang, targetLang: queryText(request, 'targetLang') };
    const { pageCount, pages } = await readPdfPages({ file: readFile(request), signal }, queryText(request, 'pages'), {
      ofText: paragraphsOf,
      ofPicture: async (picture) =>
        paragraphsOfWords((await recognizeWords(picture, { language: sourceLang, signal })).words),
    });
    const paragraphs = pages.flatMap(({ content }) => content);
    await translateAll(paragraphs, { engine, languages, signal });
    accounts.charge(bearerToken(request.headers.authorization), lengthOf(paragraphs));
    return { pageCount, pages: pages.map(({ page, content }) => ({ page, paragraphs: content })) };
  });
}

const lengthOf = (paragraphs) => paragraphs.reduce((sum, { text }) => sum + text.length, 0);

/** Gives each paragraph its `translation`. */
async function translateAll(paragraphs, { engine, languages, signal }) {
  for (const batch of batchesOf(paragraphs)) {
    if (signal.aborted) return;
    const job = readTranslateRequest({ ...languages, texts: batch.map(({ text }) => text) });
    const translations = await engine.translate(job);
    batch.forEach((paragraph, i) => {
      paragraph.translation = translations[i];
    });
  }
}

function batchesOf(paragraphs) {
  const batches = [];
  let room = 0;
  for (const paragraph of paragraphs) {
    room -= paragraph.text.length;
    if (room < 0 || batches.at(-1)?.length === MAX_BATCH_TEXTS || batches.length === 0) {
      batches.push([]);
      room = MAX_BATCH_CHARACTERS - paragraph.text.length;
    }
    batches.at(-1).push(paragraph);
  }
  return batches;
}
