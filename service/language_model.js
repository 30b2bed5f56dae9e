/** Variables of the environment that name the language model; the key only where the endpoint wants one. */
export const MODEL_VARIABLES = ['QV_LLM_BASE_URL', 'QV_LLM_MODEL', 'QV_LLM_API_KEY'];

/**
 * @typedef {object} LanguageModel an endpoint that speaks OpenAI's chat completions
 * @property {string} baseUrl usually ends in "/v1", never in a slash
 * @property {string} model the endpoint's own name of it
 * @property {string} [apiKey]
 */

/**
 * @param {NodeJS.ProcessEnv} environment
 * @returns {LanguageModel | null} null when none is named
 */
export function readLanguageModel(environment) {
  const [baseUrl, model, apiKey] = MODEL_VARIABLES.map((name) => environment[name]);
  return baseUrl && model ? { baseUrl: baseUrl.replace(/\/+$/, ''), model, apiKey } : null;
}
