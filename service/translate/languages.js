/** Two-letter codes and the three-letter ones by which Apertium names its pairs. */
const THREE_LETTER = {
  af: 'afr', an: 'arg', ar: 'ara', be: 'bel', bg: 'bul', br: 'bre', ca: 'cat', cs: 'ces', cy: 'cym', da: 'dan',
  de: 'deu', el: 'ell', en: 'eng', eo: 'epo', es: 'spa', et: 'est', eu: 'eus', fa: 'pes', fi: 'fin', fr: 'fra',
  gl: 'glg', he: 'heb', hi: 'hin', hr: 'hrv', id: 'ind', is: 'isl', it: 'ita', ja: 'jpn', ko: 'kor', mk: 'mkd',
  ms: 'msa', nl: 'nld', nb: 'nob', nn: 'nno', oc: 'oci', pl: 'pol', pt: 'por', ro: 'ron', ru: 'rus', sc: 'srd',
  sk: 'slk', sl: 'slv', sr: 'srp', sv: 'swe', tr: 'tur', uk: 'ukr', ur: 'urd', vi: 'vie', zh: 'zho',
};
const TWO_LETTER = Object.fromEntries(Object.entries(THREE_LETTER).map(([two, three]) => [three, two]));

/** Source languages that are written in the scripts which isForeignScript takes for foreign. */
const WRITTEN_OTHERWISE = new Set(['ara', 'heb', 'pes', 'urd', 'jpn', 'kor', 'zho']);

const OTHER_SCRIPTS = new RegExp(
  `[${['Han', 'Hiragana', 'Katakana', 'Hangul', 'Arabic', 'Hebrew', 'Syriac', 'Thaana']
    .map((script) => `\\p{Script=${script}}`)
    .join('')}]`,
  'gu',
);

const SPANISH_WORDS = new Set(
  'el la los las de del que y en un una por para con se su es como más al lo este esta son está sin sobre entre'.split(
    ' ',
  ),
);
const ENGLISH_WORDS = new Set(
  'the of and to in a is for on with by at from as this that are be it not or an was will per all each our'.split(' '),
);

/**
 * @param {string} code such as "en", "en-US", "zh_CN"
 * @returns {string} the language alone, lower case
 */
export function primarySubtag(code) {
  return code.trim().toLowerCase().split(/[-_]/)[0];
}

/**
 * @param {string} code as the panel sends it
 * @returns {string} Apertium's code of the language
 */
export function toApertium(code) {
  const language = primarySubtag(code);
  return THREE_LETTER[language] ?? language;
}

/**
 * @param {string} code of one side of a pair, such as "eng" or "eng_US"
 * @returns {string} the short code, such as "en" or "en-US"
 */
export function fromApertium(code) {
  const [language, variant] = code.split('_');
  const short = TWO_LETTER[language] ?? language;
  return variant ? `${short}-${variant}` : short;
}

/**
 * Finds the pair for two codes; a pair made for the asked variant of the target comes before the plain one.
 * @param {string[]} pairs such as "eng-spa", "spa-eng_US"
 * @param {string} sourceLang
 * @param {string} targetLang
 * @returns {string | null}
 */
export function findPair(pairs, sourceLang, targetLang) {
  const plain = `${toApertium(sourceLang)}-${toApertium(targetLang)}`;
  const variant = targetLang.trim().split(/[-_]/)[1];
  const wanted = variant ? [`${plain}_${variant.toUpperCase()}`, plain] : [plain];
  return wanted.find((name) => pairs.includes(name)) ?? null;
}

/**
 * Guesses between English and Spanish by their commonest words and Spanish letters; English when nothing tells.
 * @param {string[]} texts
 * @returns {string} "en" or "es"
 */
export function guessLanguage(texts) {
  let spanish = 0;
  for (const text of texts) {
    for (const word of text.toLowerCase().match(/\p{L}+/gu) ?? []) {
      if (ENGLISH_WORDS.has(word)) spanish -= 1;
      if (SPANISH_WORDS.has(word) || /[ñáéíóú]/.test(word)) spanish += 1;
    }
    if (/[¿¡]/.test(text)) spanish += 2;
  }
  return spanish > 0 ? 'es' : 'en';
}

/**
 * Whether a text is mostly Chinese, Japanese, Korean or written from right to left although the source language is not.
 * @param {string} text
 * @param {string} source Apertium's code of the source language
 * @returns {boolean}
 */
export function isForeignScript(text, source) {
  if (WRITTEN_OTHERWISE.has(source)) return false;
  const others = text.match(OTHER_SCRIPTS)?.length ?? 0;
  return others > 0 && 2 * others >= (text.match(/\p{L}/gu)?.length ?? 0);
}
