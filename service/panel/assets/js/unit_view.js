/** The list of a run's texts: each with its translation, to be put into the sheet again or taken out. */
import { post } from './bridge.js';
import { byId, make } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { areChangesHeld, onHeld } from './sheet_changes.js';
import { knownUnits, onUnits } from './unit_store.js';
import { matchesOf, pageOf } from './unit_filter.js';

let page = 0;
let drawing = 0;

/** @param {() => void} changed called when there are other units than before */
export function openUnitView(changed) {
  const turn = (by) => {
    page += by;
    draw();
    byId('unit-rows').scrollTop = 0;
  };
  const restart = () => {
    page = 0;
    draw();
  };
  byId('units-filter').addEventListener('input', restart);
  byId('units-kind').addEventListener('change', restart);
  byId('units-previous').addEventListener('click', (event) => event.currentTarget.ariaDisabled || turn(-1));
  byId('units-next').addEventListener('click', (event) => event.currentTarget.ariaDisabled || turn(1));
  byId('units').addEventListener('toggle', draw);
  byId('unit-rows').addEventListener('click', change);
  byId('unit-rows').addEventListener('keydown', (event) => turnByKey(event, turn));
  onUnits(() => {
    changed();
    drawSoon();
  });
  onHeld(draw);
  onLanguage(draw);
}

/** Texts come by the hundred: once a picture is enough. */
function drawSoon() {
  drawing ||= requestAnimationFrame(draw);
}

function draw() {
  cancelAnimationFrame(drawing);
  drawing = 0;
  const units = knownUnits();
  byId('units').hidden = units.length === 0;
  byId('units-title').textContent = t('units.title', { count: units.length });
  if (!byId('units').open || units.length === 0) return;
  const matches = matchesOf(units, { words: byId('units-filter').value, kind: byId('units-kind').value });
  const shown = pageOf(matches, page);
  page = shown.page;
  drawPager(shown, matches.length);
  drawRows(shown.rows, units);
}

function drawPager({ page: at, from, rows, isLast }, total) {
  const range = { from: from + 1, to: from + rows.length, total };
  byId('units-range').textContent = total === 0 ? t('units.none') : t('units.range', range);
  byId('units-pager').hidden = total <= rows.length;
  // They keep the focus at the ends of the list, so they are not disabled outright.
  byId('units-previous').ariaDisabled = at === 0 ? 'true' : null;
  byId('units-next').ariaDisabled = isLast ? 'true' : null;
}

function drawRows(rows, units) {
  const focused = document.activeElement?.closest('#unit-rows button');
  const { index, change: kind } = focused?.dataset ?? {};
  byId('unit-rows').replaceChildren(...rows.map((row) => makeRow(row, units[row])));
  if (focused) byId('unit-rows').querySelector(`[data-index="${index}"][data-change="${kind}"]`)?.focus();
}

function makeRow(index, { original, translated, skipped }) {
  const texts = [make('p', { id: `unit-${index}`, dir: 'auto', class: 'quiet', textContent: original })];
  if (!skipped) texts.push(make('p', { dir: 'auto', textContent: translated }));
  const below = skipped
    ? make('p', { class: 'mark', textContent: t('units.skipped') })
    : make('div', { class: 'row' }, [
        makeButton(index, 'applyParagraph', 'units.apply'),
        makeButton(index, 'restoreParagraph', 'units.restore'),
      ]);
  return make('li', { value: index + 1 }, [...texts, below]);
}

function makeButton(index, action, key) {
  return make('button', {
    type: 'button',
    textContent: t(key),
    ariaDisabled: areChangesHeld() ? 'true' : null,
    'aria-describedby': `unit-${index} results-reason`,
    'data-change': action,
    'data-index': String(index),
  });
}

/** The add-in answers nothing; the sheet shows it. */
function change({ target }) {
  const button = target.closest('button');
  if (button && !button.ariaDisabled) post(button.dataset.change, { index: Number(button.dataset.index) });
}

function turnByKey(event, turn) {
  const by = { PageUp: -1, PageDown: 1 }[event.key];
  if (!by) return;
  event.preventDefault();
  turn(by);
  (byId('unit-rows').querySelector('button') ?? byId('unit-rows')).focus();
}
