/** Translates PDF files in the user's own browser, where no add-in is. */
import { askedLanguage } from './address.js';
import { loadChoices, saveChoices } from './choices.js';
import { byId, make } from './dom.js';
import { fileErrorText } from './file_errors.js';
import { language, onLanguage, setLanguage, t } from './i18n.js';
import { drawLanguageFields, openLanguageFields } from './language_fields.js';
import { asFile, drawPages } from './pdf_text.js';
import { signInAsDeveloper, translatePdf } from './service_api.js';
import { dropToken, onSession, openSession, signIn, token } from './session.js';

const choices = loadChoices();
/** Stops the translation that is under way. @type {AbortController | null} */
let working = null;
/** Keys of what went wrong, empty when nothing did. */
let problem = '';
let loginProblem = '';
/** @type {{name: string, pageCount: number, pages: object[], source: string, target: string} | null} */
let result = null;

const chosenFile = () => byId('file').files[0] ?? null;

/** Why nothing can be translated, empty when something can. */
function obstacle() {
  if (!token()) return 'reason.signIn';
  if (!chosenFile()) return 'totable.chooseFirst';
  if (!choices.targetLang) return 'reason.target';
  return choices.sourceLang === choices.targetLang ? 'reason.same' : '';
}

async function translate() {
  if (obstacle() || working) return;
  const own = new AbortController();
  working = own;
  problem = '';
  draw();
  const asked = token();
  const file = chosenFile();
  const { sourceLang, targetLang } = choices;
  try {
    const wanted = { pages: byId('pages').value, sourceLang, targetLang };
    const answer = await translatePdf(asked, file, wanted, own.signal);
    result = { ...answer, name: file.name, source: sourceLang, target: targetLang };
    if (result.pages.every(({ paragraphs }) => paragraphs.length === 0)) problem = 'webpdf.noText';
    drawResult();
  } catch (error) {
    if (own.signal.aborted) return;
    if (error.status === 401 && asked === token()) dropToken();
    problem = fileErrorText(error.code);
  } finally {
    if (working === own) working = null;
    draw();
  }
  byId('announcer').textContent = result && !problem ? byId('result-title').textContent : '';
}

async function logIn() {
  const who = byId('who').value.trim();
  loginProblem = who ? '' : 'login.empty';
  draw();
  if (!who) return;
  try {
    signIn((await signInAsDeveloper(who.includes('@') ? { email: who } : { name: who })).token);
    byId('file').focus();
  } catch (error) {
    loginProblem = error.status === 404 ? 'login.unavailable' : 'login.failed';
  }
  draw();
}

function draw() {
  byId('login').hidden = token() !== '';
  byId('login-error').textContent = loginProblem ? t(loginProblem) : '';
  byId('who').setAttribute('aria-invalid', String(loginProblem === 'login.empty'));
  const reason = obstacle();
  byId('reason').textContent = reason && !problem ? t(reason) : '';
  byId('start').disabled = reason !== '';
  byId('start').hidden = working !== null;
  byId('working').hidden = working === null;
  byId('problem').textContent = problem ? t(problem) : '';
}

function drawResult() {
  byId('result').hidden = result === null || result.pages.every(({ paragraphs }) => paragraphs.length === 0);
  if (result === null) return;
  const { name, pageCount, pages } = result;
  byId('result-title').textContent = t('webpdf.result', { name, pages: pages.length, total: pageCount });
  byId('text').replaceChildren(...drawPages(pages, result, (page) => t('webpdf.page', { page })));
}

function download() {
  const title = result.name.replace(/\.pdf$/i, '');
  const file = asFile(byId('text'), { title, language: result.target });
  const address = URL.createObjectURL(file);
  make('a', { href: address, download: `${title}.${result.target}.html` }).click();
  setTimeout(() => URL.revokeObjectURL(address), 60000);
}

function redraw() {
  document.title = `${t('webpdf.title')} · Quorvantis`;
  drawLanguageFields(choices);
  draw();
  drawResult();
}

byId('form').addEventListener('submit', (event) => {
  event.preventDefault();
  void translate();
});
byId('login').addEventListener('submit', (event) => {
  event.preventDefault();
  void logIn();
});
byId('file').addEventListener('change', () => {
  problem = '';
  draw();
});
byId('stop').addEventListener('click', () => {
  working?.abort();
  working = null;
  draw();
  byId('start').focus();
});
byId('both').addEventListener('change', ({ target }) => byId('text').classList.toggle('alone', !target.checked));
byId('download').addEventListener('click', download);
byId('print').addEventListener('click', () => print());
onLanguage(redraw);
onSession(draw);
await setLanguage(askedLanguage ?? navigator.language);
openSession();
document.documentElement.removeAttribute('data-loading');
openLanguageFields(choices, () => {
  saveChoices(choices);
  draw();
});
