import { bearerToken, tokenRefusal } from './auth.js';
import { ServiceError } from './errors.js';
import { translatePicture } from './pictures/translate_picture.js';
import { MAX_PICTURE_BYTES } from './recognition.js';
import { bad, isObject, optionalText, parseJson } from './validation.js';

/** A picture is a third longer in base64. */
const BODY_LIMIT_BYTES = Math.ceil((MAX_PICTURE_BYTES * 4) / 3) + 4096;
const MAX_LANGUAGE_LENGTH = 35;
const BASE64 = /^[A-Za-z0-9+/]+={0,2}$/;

/**
 * Translates the text in pictures.
 * @param {import('fastify').FastifyInstance} app
 * @param {object} options
 * @param {import('./translate/engines.js').Engine} options.engine
 * @param {import('./accounts.js').Accounts} options.accounts
 */
export function registerPictures(app, { engine, accounts }) {
  app.post('/v1/images/translate', { bodyLimit: BODY_LIMIT_BYTES }, async (request, reply) => {
    const refusal = tokenRefusal(request.headers.authorization, accounts);
    if (refusal)
      return reply.code(refusal.status).send(refusal.body ?? { code: 'unauthorized', message: 'not signed in' });

    const { file, sourceLang, targetLang } = readRequest(parseJson(request.body));
    let characters = 0;
    const translate = (texts) => {
      characters = texts.join('').length;
      return engine.translate({ texts, sourceLang, targetLang, glossary: [], instruction: '' });
    };
    const signal = goneSignal(reply);
    const { texts, ...picture } = await translatePicture(file, { translate, sourceLang, targetLang, signal });
    accounts.charge(bearerToken(request.headers.authorization), characters);
    request.note = `${texts.length} texts in a picture`;
    return {
      mediaType: 'image/png',
      width: picture.width,
      height: picture.height,
      imageBase64: Buffer.from(picture.file).toString('base64'),
      texts,
    };
  });
}

function readRequest(body) {
  if (!isObject(body)) throw bad('the body must be an object');
  const { imageBase64 } = body;
  if (typeof imageBase64 !== 'string' || !BASE64.test(imageBase64)) throw bad('"imageBase64" must be a PNG in base64');
  const file = Buffer.from(imageBase64, 'base64');
  if (file.length > MAX_PICTURE_BYTES) throw new ServiceError(413, 'content_too_long', 'The picture is too large');
  const sourceLang = optionalText(body, 'sourceLang', MAX_LANGUAGE_LENGTH) || 'auto';
  const targetLang = optionalText(body, 'targetLang', MAX_LANGUAGE_LENGTH);
  if (targetLang === '') throw bad('"targetLang" is missing');
  return { file, sourceLang, targetLang };
}

/** Aborts when the client leaves before its answer. */
function goneSignal(reply) {
  const controller = new AbortController();
  reply.raw.once('close', () => {
    if (!reply.raw.writableFinished) controller.abort();
  });
  return controller.signal;
}
