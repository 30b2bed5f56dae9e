/** Offers to take the glossaries and instructions of this computer's own store into the account. */
import { isHosted, request } from './bridge.js';
import { byId } from './dom.js';
import { MAX_ENTRIES } from './entries.js';
import { onLanguage, t } from './i18n.js';
import { accountItems, missingItems } from './local_items.js';
import { showToast } from './page.js';
import { fetchItems, putItem } from './service_api.js';
import { onSession, token } from './session.js';
import { load, save } from './storage.js';
import { tellTerminologyChanged } from './terminology_news.js';

/** Ids that were taken over or refused; what was deleted afterwards is not offered again. */
const NAME = 'localSettled';
const MAX_SETTLED = 500;

/** @type {{kind: import('./service_api.js').Kind, item: object}[]} */
let offered = [];

/**
 * @param {() => void} taken called when items have come into the account
 * @returns {{look: () => Promise<void>}} `look` asks the add-in and the service once
 */
export function openLocalOffer(taken) {
  byId('local-take').addEventListener('click', () => void take(taken));
  byId('local-later').addEventListener('click', () => settle(offered));
  onLanguage(draw);
  onSession(() => show([]));
  return { look };
}

async function look() {
  const asked = token();
  if (!asked || !isHosted()) return;
  try {
    const [snapshot, glossaries, instructions] = await Promise.all([
      request('exportLocalSnapshot'),
      fetchItems(asked, 'glossaries'),
      fetchItems(asked, 'instructions'),
    ]);
    const settled = load(localStorage, NAME);
    const known = [...glossaries, ...instructions].map(({ id }) => id).concat(Array.isArray(settled) ? settled : []);
    if (token() === asked) show(missingItems(accountItems(snapshot), known));
  } catch {
    // An offer only: without an answer there is none.
  }
}

async function take(taken) {
  const items = offered;
  const asked = token();
  show([]);
  const failed = [];
  for (const { kind, item } of items) {
    const fits = !item.entries || item.entries.length <= MAX_ENTRIES;
    const kept = fits && (await putItem(asked, kind, item).catch(() => null));
    if (!kept) failed.push({ kind, item });
  }
  settle(items.filter((each) => !failed.includes(each)));
  tellTerminologyChanged();
  if (failed.length === 0) showToast(t('terms.localTaken', { count: items.length }));
  else showToast(t('terms.localFailed', { names: failed.map(({ item }) => item.name).join(', ') }), 'warn');
  taken();
}

function settle(items) {
  const settled = load(localStorage, NAME);
  const all = [...(Array.isArray(settled) ? settled : []), ...items.map(({ item }) => item.id)];
  save(localStorage, NAME, [...new Set(all)].slice(-MAX_SETTLED));
  show([]);
}

function show(items) {
  offered = items;
  draw();
}

function draw() {
  byId('local-offer').hidden = offered.length === 0;
  byId('local-names').textContent = offered.map(({ item }) => item.name).join(' · ');
}
