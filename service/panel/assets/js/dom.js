/** Small helpers for the elements of a page. */

/** @param {string} id @returns {HTMLElement} */
export const byId = (id) => document.getElementById(id);

/**
 * @param {string} tag
 * @param {Record<string, any>} [properties] of the element; "class" and "data-…" and "aria-…" are attributes
 * @param {(Node | string)[]} [children]
 * @returns {HTMLElement}
 */
export function make(tag, properties = {}, children = []) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (name === 'class' || name.includes('-')) element.setAttribute(name, value);
    else element[name] = value;
  }
  element.append(...children);
  return element;
}

/**
 * Fills a list of choices and keeps what was chosen, when it is still there.
 * @param {HTMLSelectElement} select
 * @param {{value: string, text: string}[]} options
 * @param {string} chosen
 */
export function fillSelect(select, options, chosen) {
  select.replaceChildren(...options.map(({ value, text }) => make('option', { value, textContent: text })));
  select.value = chosen;
}

/**
 * @param {string} name of a group of radio buttons
 * @returns {string}
 */
export const chosenRadio = (name) => document.querySelector(`input[name="${name}"]:checked`)?.value ?? '';

/** @param {string} name @param {string} value */
export function chooseRadio(name, value) {
  const input = document.querySelector(`input[name="${name}"][value="${value}"]`);
  if (input) input.checked = true;
}

/**
 * Copies a text; the clipboard may be forbidden, then the older way through a text field.
 * @param {string} text
 * @returns {Promise<boolean>}
 */
export async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    const field = make('textarea', { value: text, class: 'offscreen' });
    document.body.append(field);
    field.select();
    const copied = document.execCommand('copy');
    field.remove();
    return copied;
  }
}
