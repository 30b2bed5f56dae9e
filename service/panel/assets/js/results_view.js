/** What a run has left in the sheet, and what can be done with it. */
import { byId } from './dom.js';
import { hasEnded, isBusy } from './run_state.js';
import { writtenOnSheet } from './selection_preview.js';
import { holdForRun, openSheetChanges } from './sheet_changes.js';
import { knownUnits } from './unit_store.js';
import { openUnitView } from './unit_view.js';

/** @param {() => void} changed called when there is something else to show */
export function openResults(changed) {
  openSheetChanges();
  openUnitView(() => {
    if (byId('results').hidden) changed();
  });
}

/** @param {import('./run_state.js').Run} run */
export function drawResults(run) {
  byId('results').hidden = !hasResults(run);
  holdForRun(isBusy(run));
}

/** A run that was left unfinished has changed the sheet as well, and so may have one that this page never saw. */
function hasResults(run) {
  return knownUnits().length > 0 || writtenOnSheet() > 0 || (hasEnded(run) && run.done > run.skipped);
}
