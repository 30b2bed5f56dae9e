/** The table of a glossary's entries: fields to write in, a page of them at a time, and the last removal to undo. */
import { byId, make } from './dom.js';
import { duplicatesAmong, entriesWith, MAX_ENTRIES, MAX_LENGTHS } from './entries.js';
import { t } from './i18n.js';

const PAGE_SIZE = 50;
const FIELDS = ['source', 'target', 'note'];
const WORDS = { source: 'terms.source', target: 'terms.target', note: 'terms.note' };

/** @typedef {import('./entries.js').Entry} Entry */

export class EntryTable {
  /** @type {Entry[]} */
  #entries = [];
  /** Those that the search finds. @type {Entry[]} */
  #shown = [];
  /** 0-based. */
  #page = 0;
  #duplicatesOnly = false;
  /** @type {{entries: Entry[], entry: Entry, index: number} | null} */
  #removed = null;
  #changed;

  /** @param {() => void} changed called after every change of the entries */
  constructor(changed) {
    this.#changed = changed;
  }

  /** Registers what it listens to. */
  open() {
    const rows = byId('rows');
    rows.addEventListener('input', (event) => this.#edit(event.target));
    rows.addEventListener('focusin', ({ target }) => {
      target.dataset.before = target.value;
    });
    rows.addEventListener('focusout', ({ target }) => this.#finishField(target));
    rows.addEventListener('keydown', (event) => this.#pressed(event));
    rows.addEventListener('click', ({ target }) => target.matches('.remove') && this.#remove(target.closest('tr')));
    byId('search').addEventListener('input', () => this.#filter());
    byId('duplicates').addEventListener('click', () => {
      this.#duplicatesOnly = !this.#duplicatesOnly;
      this.#filter();
    });
    byId('previous').addEventListener('click', () => this.#turnTo(this.#page - 1));
    byId('next').addEventListener('click', () => this.#turnTo(this.#page + 1));
    byId('undo').addEventListener('click', () => this.#undo());
    byId('add').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#add();
    });
    byId('new-source').addEventListener('input', () => this.#tellOfAdding(''));
    document.addEventListener('keydown', (event) => {
      const undoes = (event.ctrlKey || event.metaKey) && !event.shiftKey && event.key.toLowerCase() === 'z';
      if (!undoes || !this.#removed || event.target.matches('input:not([type="checkbox"]), textarea, dialog *')) return;
      event.preventDefault();
      this.#undo();
    });
  }

  /** @param {Entry[]} entries of a glossary; edited in place. Other ones than before are shown from their beginning. */
  show(entries) {
    if (entries !== this.#entries) [this.#page, this.#removed] = [0, null];
    this.#entries = entries;
    this.#find();
    this.draw();
  }

  draw() {
    this.#page = Math.max(0, Math.min(this.#page, Math.ceil(this.#shown.length / PAGE_SIZE) - 1));
    const first = this.#page * PAGE_SIZE;
    byId('rows').replaceChildren(...this.#shown.slice(first, first + PAGE_SIZE).map((entry) => this.#row(entry)));
    const last = Math.min(first + PAGE_SIZE, this.#shown.length);
    byId('paging').hidden = this.#shown.length <= PAGE_SIZE;
    byId('range').textContent = t('terms.range', { from: first + 1, to: last, total: this.#shown.length });
    byId('previous').disabled = first === 0;
    byId('next').disabled = last === this.#shown.length;
    byId('table').hidden = this.#shown.length === 0;
    byId('no-match').hidden = this.#shown.length > 0 || this.#entries.length === 0;
    this.#drawUndo();
    this.#mark();
  }

  #drawUndo() {
    byId('undo').hidden = this.#removed === null;
    byId('removed').textContent = this.#removed ? t('terms.removed', { source: this.#removed.entry.source }) : '';
  }

  /** Says how many there are, and what is wrong with which. */
  #mark() {
    const duplicates = duplicatesAmong(this.#entries);
    const [total, count] = [this.#entries.length, this.#shown.length];
    byId('count').textContent =
      count === total ? t('terms.count', { count }) : t('terms.found', { count, total });
    byId('duplicates').hidden = duplicates.size === 0 && !this.#duplicatesOnly;
    byId('duplicates').textContent = t('terms.duplicates', { count: duplicates.size });
    byId('duplicates').setAttribute('aria-pressed', String(this.#duplicatesOnly));
    for (const row of byId('rows').rows) this.#markRow(row, duplicates);
  }

  #markRow(row, duplicates) {
    const field = row.querySelector('.source');
    const blank = field.value.trim() === '';
    const words = blank
      ? t('terms.sourceMissing', { source: row.entry.source })
      : duplicates.has(row.entry)
        ? t('terms.duplicate')
        : '';
    field.setAttribute('aria-invalid', String(blank));
    row.classList.toggle('doubled', !blank && words !== '');
    row.classList.toggle('unused', !row.entry.enabled);
    const problem = row.querySelector('.problem');
    if (problem.textContent !== words) problem.textContent = words;
  }

  #row(entry) {
    const used = make('input', { type: 'checkbox', class: 'enabled', checked: entry.enabled });
    used.setAttribute('aria-label', t('terms.enabled'));
    used.title = t('terms.enabled');
    const remove = make('button', { type: 'button', class: 'icon close remove' });
    remove.setAttribute('aria-label', t('terms.remove', { source: entry.source }));
    remove.setAttribute('aria-keyshortcuts', 'Control+Delete');
    remove.title = `${t('terms.remove', { source: entry.source })} (Ctrl+Del)`;
    const cell = (name, child) => make('td', { class: `cell-${name}`, role: 'cell' }, [child]);
    const row = make('tr', { role: 'row' }, [
      cell('used', used),
      ...FIELDS.map((name) => cell(name, this.#field(name, entry[name]))),
      cell('remove', remove),
      cell('problem', make('p', { class: 'problem', role: 'status' })),
    ]);
    row.entry = entry;
    return row;
  }

  #field(name, value) {
    const field = make('input', { type: 'text', class: name, value, dir: 'auto', maxLength: MAX_LENGTHS[name] });
    field.spellcheck = false;
    field.setAttribute('aria-label', t(WORDS[name]));
    field.placeholder = name === 'note' ? t(WORDS.note) : '';
    return field;
  }

  #edit(target) {
    const { entry } = target.closest('tr');
    if (target.matches('.enabled')) entry.enabled = target.checked;
    const name = FIELDS.find((each) => target.classList.contains(each));
    // A source that is being emptied stays what it was until there is another one.
    if (name && (name !== 'source' || target.value.trim() !== '')) entry[name] = target.value;
    this.#mark();
    this.#changed();
  }

  /** What is not kept is not left standing there either. */
  #finishField(field) {
    if (!field.matches('.source') || field.value.trim() !== '') return;
    field.value = field.closest('tr').entry.source;
    this.#mark();
  }

  /** Enter and the arrows go from row to row, as in a sheet. While a word is being composed they belong to that. */
  #pressed(event) {
    const { target, key } = event;
    const row = target.closest('tr');
    if (event.isComposing || !row) return;
    const up = key === 'ArrowUp' || (key === 'Enter' && event.shiftKey);
    const down = key === 'ArrowDown' || (key === 'Enter' && !event.shiftKey);
    if ((up || down) && target.matches('input')) this.#step(row, target.className, up ? -1 : 1);
    else if (key === 'Escape' && target.matches('input[type="text"]')) this.#takeBack(target);
    else if (key === 'Delete' && event.ctrlKey) this.#remove(row);
    else return;
    event.preventDefault();
  }

  #step(row, name, by) {
    const wanted = this.#shown.indexOf(row.entry) + by;
    if (wanted < 0 || wanted >= this.#shown.length) return;
    const page = Math.floor(wanted / PAGE_SIZE);
    if (page !== this.#page) this.#turnTo(page);
    this.#focus(this.#shown[wanted], name);
  }

  #takeBack(field) {
    field.value = field.dataset.before ?? field.value;
    this.#edit(field);
  }

  #focus(entry, name) {
    const row = [...byId('rows').rows].find((each) => each.entry === entry);
    const field = row?.querySelector(`.${name}`);
    field?.focus();
    if (field?.type === 'text') field.select();
  }

  #turnTo(page) {
    this.#page = page;
    this.draw();
  }

  #filter() {
    this.#page = 0;
    this.#find();
    this.draw();
  }

  #find() {
    const found = entriesWith(this.#entries, byId('search').value);
    const duplicates = this.#duplicatesOnly ? duplicatesAmong(this.#entries) : null;
    this.#shown = duplicates ? found.filter((entry) => duplicates.has(entry)) : found;
  }

  #add() {
    const [source, target] = ['new-source', 'new-target'].map((id) => byId(id).value.trim());
    const problem = source === '' ? 'terms.sourceEmpty' : this.#entries.length === MAX_ENTRIES ? 'terms.full' : '';
    this.#tellOfAdding(problem);
    byId('new-source').focus();
    if (problem) return;
    for (const id of ['new-source', 'new-target', 'search']) byId(id).value = '';
    this.#duplicatesOnly = false;
    // Where the user sees it.
    this.#entries.unshift({ source, target, note: '', enabled: true });
    this.#filter();
    this.#changed();
  }

  #tellOfAdding(problem) {
    byId('new-source').setAttribute('aria-invalid', String(problem === 'terms.sourceEmpty'));
    byId('add-problem').textContent = problem && t(problem, { limit: MAX_ENTRIES });
  }

  #remove(row) {
    const index = this.#entries.indexOf(row.entry);
    const place = this.#shown.indexOf(row.entry);
    this.#removed = { entry: row.entry, index };
    this.#entries.splice(index, 1);
    this.#find();
    this.draw();
    const next = this.#shown[Math.min(place, this.#shown.length - 1)];
    if (next) this.#focus(next, 'remove');
    else byId('undo').focus();
    this.#changed();
  }

  #undo() {
    if (this.#entries.length === MAX_ENTRIES) return this.#tellOfAdding('terms.full');
    const { entry, index } = this.#removed;
    this.#removed = null;
    this.#tellOfAdding('');
    this.#entries.splice(index, 0, entry);
    this.#find();
    if (!this.#shown.includes(entry)) {
      byId('search').value = '';
      this.#duplicatesOnly = false;
      this.#find();
    }
    this.#page = Math.floor(this.#shown.indexOf(entry) / PAGE_SIZE);
    this.draw();
    this.#focus(entry, 'source');
    this.#changed();
  }
}
