import { readdir } from 'node:fs/promises';
import path from 'node:path';

import { ServiceError } from '../errors.js';
import { ApertiumPipe } from './apertium_pipe.js';
import { findPair, fromApertium, guessLanguage, isForeignScript, primarySubtag, toApertium } from './languages.js';
import { capitalized, isAllCaps, Shielder } from './shields.js';

const MODES = path.join(process.env.APERTIUM_DATADIR ?? '/usr/share/apertium', 'modes');

/** Everything that ends a line; a line is what the translator sees at once. */
const LINE_ENDS = /(\r\n|[\n\r\v\f\u0085\u2028\u2029])/;

/** Machine translation by Apertium's installed pairs, without any network. */
export class ApertiumEngine {
  #pairs;
  #pipes = new Map();

  /** @param {string[]} pairs installed pairs, such as "eng-spa" */
  constructor(pairs) {
    this.#pairs = pairs;
  }

  /** @returns {Promise<ApertiumEngine>} with the pairs that are installed */
  static async create() {
    const files = await readdir(MODES).catch(() => []);
    return new ApertiumEngine(files.filter((file) => file.endsWith('.mode')).map((file) => file.slice(0, -5)).sort());
  }

  languages() {
    return this.#pairs.map((pair) => pair.split('-').map(fromApertium));
  }

  async translate({ texts, sourceLang, targetLang, glossary }) {
    const from = primarySubtag(sourceLang) === 'auto' ? guessLanguage(texts) : sourceLang;
    if (toApertium(from) === toApertium(targetLang)) return [...texts];
    const pair = findPair(this.#pairs, from, targetLang);
    if (pair === null) {
      throw new ServiceError(400, 'unsupported_language_pair', `No translation from ${from} to ${targetLang}`);
    }

    const shielder = new Shielder(glossary);
    const plans = texts.map((text) => planText(text, shielder, toApertium(from)));
    await this.#translateLines(this.#pipe(pair), plans.flat());
    return plans.map((plan) => plan.map((part) => part.before + part.result + part.after).join(''));
  }

  close() {
    for (const pipe of this.#pipes.values()) pipe.close();
  }

  /** Fills the results of all parts that have something to translate. */
  async #translateLines(pipe, parts) {
    const open = parts.filter((part) => part.shielded);
    const wires = open.map((part) => part.shielded.wire());
    const lookUp = await translateDistinct(pipe, wires);
    const broken = [];
    open.forEach((part, i) => {
      const translated = lookUp(wires[i]);
      part.result = translated === null ? null : part.shielded.restore(translated);
      if (part.result === null) broken.push(part);
    });

    // Where a stand-in got lost, the pieces between the fixed ones are translated alone: poorer, but nothing is missing.
    const pieces = broken.flatMap((part) => part.shielded.pieces.filter(isFreeWords).map((piece) => piece.text.trim()));
    const lookUpPiece = await translateDistinct(pipe, pieces);
    for (const part of broken) {
      part.result = part.shielded.pieces
        .map((piece) => {
          if (!isFreeWords(piece)) return piece.fixed ?? piece.text;
          const words = piece.text.trim();
          return piece.text.replace(words, () => lookUpPiece(words) ?? words);
        })
        .join('');
    }
  }

  #pipe(pair) {
    if (!this.#pipes.has(pair)) this.#pipes.set(pair, new ApertiumPipe(path.join(MODES, `${pair}.mode`)));
    return this.#pipes.get(pair);
  }
}

/** Cuts a text into lines with the blanks around them; a line that has words to translate carries them shielded. */
function planText(text, shielder, source) {
  const foreign = isForeignScript(text, source);
  return text.split(LINE_ENDS).map((line) => {
    const core = line.trim();
    const start = core === '' ? 0 : line.indexOf(core);
    const part = { before: line.slice(0, start), result: core, after: line.slice(start + core.length), shielded: null };
    if (core === '') return { ...part, before: line, after: '' };
    const shielded = shielder.protect(core);
    if (foreign) return part;
    if (shielded.hasLetters) return { ...part, shielded };
    return { ...part, result: shielded.replaced() };
  });
}

const isFreeWords = (piece) => piece.fixed === undefined && /\p{L}/u.test(piece.text);

/**
 * Sends each distinct line once.
 * @returns {Promise<(line: string | null) => string | null>} finds a line's translation; null where there is none
 */
async function translateDistinct(pipe, lines) {
  const distinct = [...new Set(lines.filter((line) => line !== null))];
  if (distinct.length === 0) return () => null;
  let answers;
  try {
    answers = (await pipe.translate(distinct)) ?? (await translateOneByOne(pipe, distinct));
  } catch (error) {
    throw new ServiceError(500, 'engine_failed', error.message);
  }
  const found = new Map(distinct.map((line, i) => [line, answers[i] === null ? null : tidied(line, answers[i])]));
  return (line) => found.get(line) ?? null;
}

/** For a batch in which the texts got mixed up: each text has the pipeline for itself, and at worst stays as it is. */
async function translateOneByOne(pipe, lines) {
  const answers = [];
  for (const line of lines) answers.push((await pipe.translate([line]))?.[0] ?? null);
  return answers;
}

/** Mends what the rules of a pair leave behind: stray blanks, and letter case that is not the source's. */
function tidied(source, translated) {
  let text = translated.trim();
  if (text === '') return null;
  if (!/ {2}/.test(source)) text = text.replace(/ {2,}/g, ' ');
  if (!/\s[.,;:!?]/.test(source)) text = text.replace(/ +(?=[.,;:!?])/g, '');
  if (isAllCaps(source)) return text.toUpperCase();
  const first = /\p{L}/u.exec(source)?.[0] ?? '';
  if (first !== first.toLowerCase()) return capitalized(text);
  return text.replace(/^\p{Lu}(?=\p{Ll}|$|\s)/u, (letter) => letter.toLowerCase());
}
