/** The instruction that goes with a text: written here, or one of those that the user keeps at the service. */
import { byId, fillSelect } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { fetchItem, fetchItems } from './service_api.js';
import { onSession, token } from './session.js';

/** @type {{id: string, name: string}[]} */
let saved = [];
/** Key of what went wrong, empty when nothing did. */
let problem = '';
let chosen = '';
let loads = 0;

/** @returns {string} empty for none */
export const chosenInstruction = () => byId('instruction').value.trim();

/** @param {string} text */
export function setInstruction(text) {
  byId('instruction').value = text;
  chosen = '';
  draw();
}

export function openInstructionFields() {
  byId('saved').addEventListener('change', () => void choose(byId('saved').value));
  // What is written over is no longer what was saved.
  byId('instruction').addEventListener('input', () => {
    chosen = '';
    draw();
  });
  byId('instruction-fields').addEventListener('toggle', () => {
    if (byId('instruction-fields').open) void list();
  });
  onSession(() => {
    if (byId('instruction-fields').open) void list();
  });
  onLanguage(draw);
}

async function list() {
  await attempt(async (isLast) => {
    const found = token() ? await fetchItems(token(), 'instructions') : [];
    if (isLast()) saved = found;
  });
}

async function choose(id) {
  chosen = id;
  await attempt(async (isLast) => {
    const content = id ? (await fetchItem(token(), 'instructions', id)).content : '';
    if (isLast()) byId('instruction').value = content;
  });
}

/** Of several questions at a time the last one counts. */
async function attempt(act) {
  const number = ++loads;
  const isLast = () => number === loads;
  let failed = false;
  await act(isLast).catch(() => {
    failed = true;
  });
  if (!isLast()) return;
  problem = failed ? 'quick.savedFailed' : '';
  if (failed) chosen = '';
  draw();
}

function draw() {
  const none = { value: '', text: t('quick.none') };
  fillSelect(byId('saved'), [none, ...saved.map(({ id, name }) => ({ value: id, text: name }))], chosen);
  byId('saved-failed').textContent = problem ? t(problem) : '';
}
