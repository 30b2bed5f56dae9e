/** A table to mend by hand: fields for its cells, a page of rows at a time. */
import { columnName } from './cell_address.js';
import { byId, make } from './dom.js';
import { t } from './i18n.js';

const PAGE_SIZE = 50;

/** Keys that lead to another row. */
const STEPS = { ArrowUp: -1, ArrowDown: 1, Enter: 1 };

export class CellGrid {
  /** @type {string[][]} */
  #rows = [];
  /** 0-based. */
  #page = 0;
  #isNumber;

  /** @param {(text: string) => boolean} isNumber whether a text will be a number in the sheet */
  constructor(isNumber) {
    this.#isNumber = isNumber;
  }

  /** Registers what it listens to. */
  open() {
    byId('cells').addEventListener('input', ({ target }) => {
      const { row, column } = target.dataset;
      this.#rows[row][column] = target.value;
      this.#mark(target);
    });
    byId('cells').addEventListener('keydown', (event) => this.#pressed(event));
    byId('previous').addEventListener('click', () => this.#turnTo(this.#page - 1));
    byId('next').addEventListener('click', () => this.#turnTo(this.#page + 1));
  }

  /** @param {string[][]} rows edited in place */
  show(rows) {
    if (rows !== this.#rows) this.#page = 0;
    this.#rows = rows;
    this.draw();
  }

  draw() {
    const first = this.#page * PAGE_SIZE;
    const shown = this.#rows.slice(first, first + PAGE_SIZE);
    const columns = (this.#rows[0] ?? []).map((_, column) => columnName(column + 1));
    const heads = columns.map((name) => make('th', { scope: 'col', textContent: name }));
    const head = make('tr', {}, [make('td'), ...heads]);
    byId('cells').replaceChildren(head, ...shown.map((texts, i) => this.#drawRow(texts, first + i, columns)));
    byId('paging').hidden = this.#rows.length <= PAGE_SIZE;
    const [from, to, total] = [first + 1, first + shown.length, this.#rows.length];
    byId('range').textContent = t('units.range', { from, to, total });
    byId('previous').disabled = first === 0;
    byId('next').disabled = to >= total;
  }

  #drawRow(texts, row, columns) {
    const cells = texts.map((value, column) => {
      const field = make('input', { type: 'text', value, dir: 'auto', 'aria-label': columns[column] + (row + 1) });
      Object.assign(field.dataset, { row, column });
      const cell = make('td', {}, [field]);
      this.#mark(field);
      return cell;
    });
    return make('tr', {}, [make('th', { scope: 'row', textContent: String(row + 1) }), ...cells]);
  }

  #mark(field) {
    field.parentElement.classList.toggle('number', this.#isNumber(field.value));
  }

  #pressed(event) {
    if (!Object.hasOwn(STEPS, event.key) || event.isComposing) return;
    const { row, column } = event.target.dataset;
    const next = this.#fieldAt(Number(row) + STEPS[event.key], column);
    event.preventDefault();
    next?.focus();
    next?.select();
  }

  #fieldAt = (row, column) => byId('cells').querySelector(`input[data-row="${row}"][data-column="${column}"]`);

  #turnTo(page) {
    this.#page = page;
    this.draw();
    byId('cells').querySelector('input')?.focus();
  }
}
