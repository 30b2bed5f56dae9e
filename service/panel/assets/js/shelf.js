/**
 * The user's items of one kind: choosing one, and making, renaming and deleting them. A page has one shelf and draws the
 * contents of the chosen item below it; whatever changes is saved at once.
 */
import { confirmInWords, askName } from './dialogs.js';
import { byId, fillSelect } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { showToast } from './page.js';
import { deleteItem, fetchItem, fetchItems, outlivesPage, putItem } from './service_api.js';
import { dropToken, onSession, token } from './session.js';
import { Saver } from './saver.js';
import { newTraceId as newId } from './start_message.js';
import { load, save } from './storage.js';
import { onTerminologyChanged, tellTerminologyChanged } from './terminology_news.js';

/** How long the user may go on typing before what is there is sent. */
const PAUSE_MS = 500;

/** What is said about a refusal, by its status; `0` is no answer. */
const REFUSALS = { 0: 'error.network', 401: 'terms.failExpired', 409: 'terms.failFull', 413: 'terms.failLarge' };

export class Shelf {
  /** The chosen item with its contents. @type {object | null} */
  item = null;
  #options;
  /** @type {{id: string, name: string}[]} */
  #items = [];
  #loaded = false;
  #failed = false;
  #owner = token();
  #asked = 0;
  #timer = 0;
  #saver = new Saver((item) => this.#send(item), (state, error) => this.#drawState(state, error));

  /**
   * @param {object} options
   * @param {import('./service_api.js').Kind} options.kind
   * @param {object} options.empty contents of a new item
   * @param {string} options.newTitle key of the words above the name of a new item
   * @param {() => {title: string, text: string}} options.deletion what is asked before the chosen item is deleted
   * @param {() => void} options.draw draws the chosen item's contents anew
   */
  constructor(options) {
    this.#options = options;
  }

  /** Registers what it listens to; call it before `openPage`, and `load` after that. */
  open() {
    byId('item').addEventListener('change', () => void this.#choose(byId('item').value));
    byId('new').addEventListener('click', () => void this.create());
    byId('rename').addEventListener('click', () => void this.#rename());
    byId('delete').addEventListener('click', () => void this.#delete());
    byId('shelf-again').addEventListener('click', () => void this.load());
    byId('save-again').addEventListener('click', () => void this.#saver.run());
    onLanguage(() => this.#draw());
    onSession(() => void this.#meetUser());
    onTerminologyChanged(() => {
      if (!this.#isBehind) void this.load();
    });
    addEventListener('pagehide', () => this.#flush());
    addEventListener('beforeunload', (event) => {
      // What has failed, or is too large to go on without the page, would be lost.
      const failed = byId('save-state').dataset.state === 'failed';
      if (this.#isBehind && (failed || !outlivesPage(this.item))) event.preventDefault();
    });
  }

  get #isBehind() {
    return this.#timer !== 0 || this.#saver.isBehind;
  }

  /** Reads the list, and the item that was chosen last. */
  async load() {
    const asked = ++this.#asked;
    if (!token()) return this.#take([], null);
    const chosen = this.item?.id ?? load(localStorage, this.#memory);
    try {
      const items = await fetchItems(token(), this.#options.kind);
      const { id } = items.find((each) => each.id === chosen) ?? items[0] ?? {};
      const item = id ? await fetchItem(token(), this.#options.kind, id) : null;
      // Changed meanwhile: what the user sees is newer.
      if (asked === this.#asked && !this.#isBehind) this.#take(items, item);
    } catch (error) {
      if (asked === this.#asked) this.#meetFailure(error);
    }
  }

  /** The contents of the chosen item have changed. */
  changed() {
    this.#drawState('saving');
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => this.#flush(), PAUSE_MS);
  }

  /**
   * Makes an item whose name the user is asked for.
   * @param {object} [contents]
   * @returns {Promise<boolean>} whether there is one
   */
  async create(contents = this.#options.empty) {
    const name = await this.#askName(this.#options.newTitle, 'terms.create', '');
    if (!name) return false;
    this.#flush();
    const item = { id: newId(), name, ...structuredClone(contents) };
    this.#asked += 1;
    this.#take([...this.#items, { id: item.id, name }], item);
    this.#saver.save(item);
    return true;
  }

  async #rename() {
    const { item } = this;
    const name = await this.#askName('terms.rename', 'terms.rename', item.name);
    if (!name || item !== this.item) return;
    item.name = name;
    this.#items = this.#items.map((each) => (each.id === item.id ? { ...each, name } : each));
    this.#draw();
    this.changed();
  }

  async #delete() {
    const { item } = this;
    if (!(await confirmInWords({ ...this.#options.deletion(), accept: t('terms.deleteNow') }))) return;
    clearTimeout(this.#timer);
    this.#timer = 0;
    this.#saver.forget(item.id);
    // A late change would bring it back.
    await this.#saver.settled();
    this.#saver.forget(item.id);
    try {
      await deleteItem(token(), this.#options.kind, item.id);
    } catch (error) {
      // Gone is gone, whoever deleted it.
      if (error.status !== 404) {
        showToast(t(REFUSALS[error.status] ?? 'error.service'), 'warn');
        return this.changed();
      }
    }
    tellTerminologyChanged();
    this.#drawState('saved');
    this.item = null;
    await this.load();
    (this.item ? byId('item') : byId('new')).focus();
  }

  #askName(title, accept, name) {
    const taken = this.#items.map((each) => each.name).filter((each) => each !== name);
    return askName({ title: t(title), accept: t(accept), name, taken });
  }

  async #choose(id) {
    this.#flush();
    const asked = ++this.#asked;
    try {
      const item = this.#saver.unsaved(id) ?? (await fetchItem(token(), this.#options.kind, id));
      if (asked === this.#asked) this.#take(this.#items, item);
    } catch (error) {
      if (asked === this.#asked) this.#meetFailure(error);
    }
  }

  #flush() {
    if (this.#timer === 0) return;
    clearTimeout(this.#timer);
    this.#timer = 0;
    if (this.item) this.#saver.save(this.item);
  }

  async #send(item) {
    await putItem(token(), this.#options.kind, item);
    tellTerminologyChanged();
  }

  /** Whoever signs in again goes on; nobody writes into the account of another. */
  async #meetUser() {
    if (token() === this.#owner) return;
    this.#owner = token();
    clearTimeout(this.#timer);
    this.#timer = 0;
    this.#saver.clear();
    this.#drawState('saved');
    this.item = null;
    await this.load();
  }

  #take(items, item) {
    [this.#items, this.item, this.#loaded, this.#failed] = [items, item, true, false];
    if (item) save(localStorage, this.#memory, item.id);
    this.#draw();
  }

  #meetFailure(error) {
    if (error.status === 401) return dropToken();
    this.#failed = true;
    this.#draw();
  }

  get #memory() {
    return `shelf.${this.#options.kind}`;
  }

  #draw() {
    const signedIn = token() !== '';
    byId('signed-out').hidden = signedIn;
    byId('shelf-failed').hidden = !signedIn || !this.#failed;
    byId('shelf').hidden = !signedIn || !this.#loaded;
    byId('none').hidden = this.#items.length > 0;
    byId('item-row').hidden = this.item === null;
    byId('contents').hidden = !signedIn || this.item === null;
    for (const id of ['rename', 'delete']) byId(id).hidden = this.item === null;
    fillSelect(byId('item'), this.#items.map(({ id, name }) => ({ value: id, text: name || id })), this.item?.id ?? '');
    if (this.item) this.#options.draw();
  }

  #drawState(state, error) {
    const words = { saved: 'terms.saved', saving: 'terms.saving', failed: 'terms.notSaved' };
    byId('save-state').dataset.state = state;
    const reason = error ? t(REFUSALS[error.status] ?? 'error.service') : '';
    byId('save-text').textContent = `${t(words[this.#timer && !error ? 'saving' : state])} ${reason}`.trim();
    byId('save-again').hidden = state !== 'failed';
  }
}
