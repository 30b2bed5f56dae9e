import { ServiceError } from '../errors.js';
import { readLanguageModel } from '../language_model.js';

/** Below the 120 seconds after which the panel gives a request up. */
const ANSWER_LIMIT_MS = 110000;
/** A model that miscounts is asked once more. */
const ATTEMPTS = 2;

/** Translation by a language model behind any endpoint that speaks OpenAI's chat completions. */
export class OpenAiEngine {
  #settings;
  #closed = new AbortController();

  /** @param {import('../language_model.js').LanguageModel} settings */
  constructor(settings) {
    this.#settings = settings;
  }

  /**
   * @param {NodeJS.ProcessEnv} environment
   * @returns {OpenAiEngine}
   */
  static fromEnvironment(environment) {
    const settings = readLanguageModel(environment);
    if (!settings) throw new Error('QV_LLM_BASE_URL and QV_LLM_MODEL name the language model');
    return new OpenAiEngine(settings);
  }

  languages() {
    return 'any';
  }

  async translate(job) {
    const messages = [
      { role: 'system', content: systemPrompt(job) },
      { role: 'user', content: JSON.stringify(job.texts) },
    ];
    for (let attempt = 0; attempt < ATTEMPTS; attempt++) {
      const translations = readList(await this.#complete(messages));
      if (translations?.length === job.texts.length) return translations;
    }
    throw new ServiceError(502, 'engine_failed', 'The language model did not answer one translation a text');
  }

  close() {
    this.#closed.abort();
  }

  async #complete(messages) {
    const { baseUrl, apiKey, model } = this.#settings;
    const headers = { 'Content-Type': 'application/json' };
    if (apiKey) headers.Authorization = `Bearer ${apiKey}`;
    const limit = new AbortController();
    const giveUp = () => limit.abort();
    const timer = setTimeout(giveUp, ANSWER_LIMIT_MS);
    this.#closed.signal.addEventListener('abort', giveUp);
    try {
      const answer = await fetch(`${baseUrl}/chat/completions`, {
        method: 'POST',
        headers,
        body: JSON.stringify({ model, messages, temperature: 0 }),
        signal: limit.signal,
      });
      if (!answer.ok) throw new Error(`status ${answer.status}`);
      return (await answer.json())?.choices?.[0]?.message?.content;
    } catch (error) {
      throw new ServiceError(502, 'engine_failed', `The language model failed: ${error.message}`);
    } finally {
      clearTimeout(timer);
      this.#closed.signal.removeEventListener('abort', giveUp);
    }
  }
}

function systemPrompt({ sourceLang, targetLang, glossary, instruction }) {
  const rules = [
    'You translate the cells of a spreadsheet.',
    `Translate from ${sourceLang === 'auto' ? 'the language of each text' : sourceLang} to ${targetLang}.`,
    'The user sends a JSON array of strings. Answer only a JSON array of as many strings, in the same order.',
    'Keep line breaks, numbers, leading and trailing blanks, and tokens such as [[QV_REF_1]] exactly as they are.',
  ];
  if (glossary.length > 0) {
    rules.push('Always translate these terms as given:');
    rules.push(...glossary.map(({ source, target, note }) => `- ${source} = ${target}${note ? ` (${note})` : ''}`));
  }
  if (instruction) rules.push(`Also follow this instruction of the user: ${instruction}`);
  return rules.join('\n');
}

/** The array in an answer that may have prose or a code fence around it; null when there is none. */
function readList(content) {
  if (typeof content !== 'string') return null;
  try {
    const list = JSON.parse(content.slice(content.indexOf('['), content.lastIndexOf(']') + 1));
    return Array.isArray(list) && list.every((item) => typeof item === 'string') ? list : null;
  } catch {
    return null;
  }
}
