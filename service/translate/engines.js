import { ApertiumEngine } from './apertium.js';
import { EchoEngine } from './echo.js';
import { OpenAiEngine } from './openai.js';

/**
 * @typedef {object} Engine
 * @property {() => string[][] | 'any'} languages the pairs of source and target code that it knows
 * @property {(job: import('../validation.js').TranslateJob) => Promise<string[]>} translate one translation a text;
 *   a pair that it does not know is a ServiceError
 * @property {() => void} close ends whatever the engine keeps running
 */

const MAKERS = {
  apertium: () => ApertiumEngine.create(),
  echo: async () => new EchoEngine(),
  openai: async () => OpenAiEngine.fromEnvironment(process.env),
};

export const ENGINE_NAMES = Object.keys(MAKERS);

/**
 * @param {string} name one of ENGINE_NAMES
 * @returns {Promise<Engine>}
 */
export function createEngine(name) {
  return MAKERS[name]();
}
