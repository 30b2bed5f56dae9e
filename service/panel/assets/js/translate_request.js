/** A batch as the service takes it, and its answer as the add-in takes it. */

/**
 * @param {object} request the add-in's message, in which every member is present
 * @returns {object} the body, like that of the add-in's own requests but for what those tell of the client: empty members
 *   are left out
 */
export function requestBody(request) {
  const { texts, sourceLang, targetLang, usageKind, clientProduct, glossary, instruction, trace, batchSeq } = request;
  const body = { texts, sourceLang, targetLang };
  if (usageKind) body.usageKind = usageKind;
  if (clientProduct) body.clientProduct = clientProduct;
  if (glossary?.length) body.glossary = glossary;
  if (instruction) body.instruction = instruction;
  body.trace = { ...trace, batchSeq };
  return body;
}

/**
 * @param {number} status
 * @param {string} text of the answer's body
 * @returns {object} the fields of "translateBatchResult" but the id
 */
export function readAnswer(status, text) {
  const body = parse(text);
  if (Array.isArray(body?.translations) && body.translations.length > 0) {
    return { ok: true, translations: body.translations };
  }
  if (text === '') {
    const code = codeOfStatus(status);
    return code ? failure(code, '') : failure('network_error', 'HTTP request failed');
  }
  const message = textOf(body?.message) || textOf(body?.error) || 'Empty translation response';
  const code = textOf(body?.code) || textOf(body?.error) || codeOfStatus(status) || codeOfMessage(message);
  return failure(code, message);
}

/** @param {string} code @param {string} message @returns {object} the fields of a refusal */
export const failure = (code, message) => ({ ok: false, code, message });

const textOf = (value) => (typeof value === 'string' ? value : '');

function codeOfStatus(status) {
  return { 401: 'unauthorized', 402: 'insufficient_credits' }[status] ?? '';
}

function codeOfMessage(message) {
  return message.includes('insufficient_credits') || message.includes('积分不足') ? 'insufficient_credits' : '';
}

function parse(text) {
  try {
    return JSON.parse(text);
  } catch {
    return null;
  }
}
