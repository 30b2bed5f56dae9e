/** Questions that the page waits for: a name, a yes. */
import { make } from './dom.js';
import { t } from './i18n.js';

/** The longest name that the service keeps. */
const MAX_NAME_LENGTH = 200;

/**
 * Shows a form over the page; the browser keeps the focus in it, and gives it back.
 * @param {HTMLElement[]} children
 * @param {object} options
 * @param {string} options.title
 * @param {string} options.accept words on the button that says yes
 * @param {() => boolean} [options.check] whether the answer can be taken
 * @param {boolean} [options.careful] Enter shall not say yes by itself
 * @returns {Promise<boolean>} whether it was
 */
export function askInDialog(children, { title, accept, check = () => true, careful = false }) {
  const heading = make('h2', { id: 'dialog-title', textContent: title });
  const yes = make('button', { type: 'submit', class: 'primary', id: 'dialog-yes', textContent: accept });
  const no = make('button', { type: 'button', id: 'dialog-no', textContent: t('terms.cancel') });
  const form = make('form', { noValidate: true }, [heading, ...children, make('div', { class: 'buttons' }, [yes, no])]);
  const dialog = make('dialog', { 'aria-labelledby': 'dialog-title' }, [form]);
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    if (!yes.disabled && check()) dialog.close('yes');
  });
  no.addEventListener('click', () => dialog.close());
  document.body.append(dialog);
  dialog.showModal();
  (careful ? no : yes).focus();
  return new Promise((resolve) => {
    dialog.addEventListener('close', () => {
      dialog.remove();
      resolve(dialog.returnValue === 'yes');
    });
  });
}

/**
 * @param {{title: string, accept: string, name: string, taken: string[]}} question
 * @returns {Promise<string>} trimmed; empty when there is none
 */
export async function askName({ title, accept, name, taken }) {
  const field = make('input', { type: 'text', id: 'dialog-name', maxLength: MAX_NAME_LENGTH, value: name, dir: 'auto' });
  field.setAttribute('aria-describedby', 'dialog-problem');
  const problem = make('p', { id: 'dialog-problem', class: 'problem', role: 'alert' });
  const check = () => {
    const text = field.value.trim();
    const wrong = text === '' ? 'terms.nameEmpty' : taken.includes(text) ? 'terms.nameTaken' : '';
    problem.textContent = wrong && t(wrong);
    field.setAttribute('aria-invalid', String(wrong !== ''));
    if (wrong) field.focus();
    return wrong === '';
  };
  const label = make('label', { htmlFor: 'dialog-name', textContent: t('account.name') });
  const asked = askInDialog([label, field, problem], { title, accept, check });
  field.focus();
  field.select();
  return (await asked) ? field.value.trim() : '';
}

/** @param {{title: string, text: string, accept: string}} question @returns {Promise<boolean>} */
export const confirmInWords = ({ title, text, accept }) =>
  askInDialog([make('p', { textContent: text })], { title, accept, careful: true });
