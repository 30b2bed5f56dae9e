/** What the user reads when the language model gives no answer, and what can be done about it. */

/**
 * @typedef {object} FailureRow
 * @property {string} text key of the words
 * @property {'tryAgain' | 'signIn' | 'account' | ''} remedy
 */

const row = (text, remedy = 'tryAgain') => ({ text, remedy });

/** The page's own codes, the service's, then those of endpoints. */
const BY_CODE = {
  network_error: row('error.network'),
  broken: row('chat.failBroken'),
  answer_too_long: row('chat.failAnswerLong', ''),
  too_many_steps: row('chat.failSteps'),
  no_fields: row('chat.failNoFields'),
  scan_failed: row('chat.failScan'),
  not_signed_in: row('terms.failExpired', 'signIn'),
  insufficient_credits: row('error.noCredits', 'account'),
  model_not_configured: row('chat.noModel'),
  model_unreachable: row('chat.failModel'),
  context_length_exceeded: row('chat.failLong', ''),
  content_too_long: row('chat.failLong', ''),
};

const BY_STATUS = {
  401: row('chat.failKey'),
  403: row('chat.failKey'),
  413: row('chat.failLong', ''),
  429: row('chat.failBusy'),
};

/**
 * @param {{status: number, code: string}} failure
 * @returns {FailureRow}
 */
export function failureRow({ status, code }) {
  if (Object.hasOwn(BY_CODE, code)) return BY_CODE[code];
  return BY_STATUS[status] ?? row(status >= 400 && status < 500 ? 'chat.failRefused' : 'error.service');
}
