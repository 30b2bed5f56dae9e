/** Where a table goes: the cell that is selected, or another one; and the way back. */
import { cellName, fits, rangeName, readCell } from './cell_address.js';
import { cellValue } from './cell_values.js';
import { confirmInWords } from './dialogs.js';
import { byId } from './dom.js';
import { isHosted } from './bridge.js';
import { t } from './i18n.js';
import { filledCells, selectedPlace, takeBack, writeBlocks } from './sheet_writer.js';

export class TableTarget {
  #source;
  /** Empty as long as the add-in has not told. */
  #sheetName = '';
  /** Key of what is wrong with the cell, empty when nothing is. */
  #problem = '';
  #busy = false;
  /** What can be taken back, the last one first: the add-in's markers. @type {number[]} */
  #markers = [];
  /** Says what came of the last thing that was done. @type {(() => string) | null} */
  #outcome = null;

  /** @param {() => {rows: string[][], style: string}} source the table to write */
  constructor(source) {
    this.#source = source;
  }

  /** Registers what it listens to. */
  open() {
    byId('target').addEventListener('submit', (event) => {
      event.preventDefault();
      void this.#alone(() => this.#write());
    });
    byId('cell').addEventListener('input', () => this.#tell(''));
    byId('take').addEventListener('click', () => void this.takeSelection());
    byId('undo').addEventListener('click', () => void this.#alone(() => this.#undo()));
  }

  /** Goes to where the user is in the sheet. */
  async takeSelection() {
    const place = isHosted() ? await selectedPlace() : null;
    if (place) {
      this.#sheetName = place.sheetName;
      byId('cell').value = cellName(place.row, place.col);
    }
    this.#tell(place ? '' : isHosted() ? 'totable.noPlace' : 'reason.host');
  }

  draw() {
    byId('place').textContent = this.#sheetName ? t('totable.onSheet', { sheet: this.#sheetName }) : '';
    byId('target-problem').textContent = this.#problem ? t(this.#problem) : '';
    byId('cell').setAttribute('aria-invalid', String(this.#problem !== ''));
    byId('write').disabled = this.#busy || !isHosted();
    byId('written').hidden = this.#outcome === null;
    byId('written-text').textContent = this.#outcome?.() ?? '';
    byId('undo').hidden = this.#markers.length === 0;
    byId('undo').disabled = this.#busy;
  }

  #tell(key) {
    this.#problem = key;
    this.draw();
  }

  /** One thing at a time: the add-in takes what was written back in the order in which it came. */
  async #alone(act) {
    if (this.#busy) return;
    this.#busy = true;
    this.#tell('');
    try {
      await act();
    } finally {
      this.#busy = false;
      this.draw();
    }
  }

  async #write() {
    const { rows, style } = this.#source();
    const place = readCell(byId('cell').value);
    if (!place) return this.#tell('totable.badCell');
    if (!fits(place, rows.length, rows[0].length)) return this.#tell('totable.noRoom');
    if (!this.#sheetName) await this.takeSelection();
    if (!this.#sheetName) return;
    const range = rangeName(place, rows.length, rows[0].length);
    if (!(await this.#mayOverwrite(range))) return;
    const values = rows.map((row) => row.map((text) => cellValue(text, style)));
    this.#came(await writeBlocks(this.#sheetName, [{ ...place, values }]), range);
  }

  async #mayOverwrite(range) {
    const count = await filledCells(this.#sheetName, range);
    if (Number.isNaN(count)) {
      this.#tell('totable.noPlace');
      return false;
    }
    if (count === 0) return true;
    const text = count > 0 ? t('totable.overwriteCount', { count }) : t('totable.overwriteMany');
    return confirmInWords({ title: t('totable.overwrite', { range }), text, accept: t('totable.overwriteNow') });
  }

  #came({ depth, applied, refused, failed }, range) {
    const sheet = this.#sheetName;
    if (depth > 0) this.#markers.unshift(depth);
    this.#outcome = () => {
      if (failed) return t('totable.writeFailed');
      if (applied === 0) return t('totable.allRefused');
      const done = t('totable.written', { range, sheet });
      return refused > 0 ? `${done} ${t('totable.refused', { count: refused })}` : done;
    };
  }

  async #undo() {
    const { undone, restored } = await takeBack(this.#markers[0]);
    if (undone) this.#markers.shift();
    this.#outcome = () => (undone ? t('chat.undone', { count: restored }) : t('chat.undoFailed'));
  }
}
