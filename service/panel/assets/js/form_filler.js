/** The tools with which the language model fills in a form: it looks for fields, and proposes; the user chooses. */
import { compareFields, fieldsOf, fillOf, lastScan, matchProposals } from './form_fields.js';
import { ask, orStopped, ToolFailure } from './tool_request.js';

const OTHER_BOOK = 'another workbook is open than the one that was scanned; look for its fields with autofillScan first';

/**
 * @returns {Promise<object>} the fields of the sheet that is named or shown, and its name. The call keeps which
 *   workbook it was; the model is not told where that lies.
 */
export async function scanForm({ call, given, signal }) {
  const context = await orStopped(signal, ask('excelGetWriteContext'));
  if (!given.sheetName && context?.error !== undefined) return context;
  call.workbookKey = context?.workbookKey;
  return scanSheet(given.sheetName || context.sheetName, signal);
}

/** The same once more, unless another workbook is in front by now. */
async function scanAgain({ workbookKey, sheetName }, signal) {
  if (workbookKey !== undefined) {
    const context = await orStopped(signal, ask('excelGetWriteContext'));
    if (context?.error !== undefined) return context;
    if (context?.workbookKey !== workbookKey) return { error: OTHER_BOOK };
  }
  return scanSheet(sheetName, signal);
}

async function scanSheet(sheetName, signal) {
  // By its name: the user may go on to another sheet at any moment.
  const scan = await orStopped(signal, ask('autofillScan', { sheetName }));
  if (scan?.error !== undefined) return scan;
  if (scan?.scanUnavailable) return { error: scan.scanError };
  return { sheetName, fields: fieldsOf(scan) };
}

/**
 * Shows what the model proposes, and fills in what the user has chosen, as far as the cells still ask for it.
 * @returns {Promise<object | null>} null when the user wants nothing of it
 */
export async function fillForm({ turns, call, given, allows, become, signal }) {
  const scan = lastScan(turns);
  if (!scan) throw new ToolFailure('look for the fields with autofillScan first');
  const { proposals, unknown } = matchProposals(given.fills, scan.fields);
  if (proposals.length === 0) throw new ToolFailure('none of this is a value for a field of the last autofillScan');
  // Not enumerable: the arguments, which are kept, say the same.
  Object.defineProperty(call, 'proposals', { value: proposals, configurable: true });
  become('asking');
  const chosen = await orStopped(signal, allows(call));
  if (!Array.isArray(chosen)) return null;
  become('running');
  const wanted = proposals.filter((_, index) => chosen.includes(index));
  const now = await scanAgain(scan, signal);
  if (now.error !== undefined) return now;
  const { same, changed } = compareFields(wanted, now.fields);
  const result = same.length > 0 ? await apply(call, scan.sheetName, same, signal) : { applied: 0, results: [] };
  const addresses = (list) => list.map(({ field }) => field.address);
  const failed = same.filter((_, index) => result.results?.[index]?.status !== 'applied');
  call.left = addresses([...changed, ...failed]);
  return {
    ...(result.applied === 0 ? { error: 'no cell was filled in' } : {}),
    ...result,
    notChosen: addresses(proposals.filter((proposal) => !wanted.includes(proposal))),
    changedMeanwhile: addresses(changed),
    noFields: unknown,
  };
}

/** The results stand in the order of the proposals. */
async function apply(call, sheetName, proposals, signal) {
  const filled = { count: proposals.length, isGuess: true, restored: 0, undone: false, failed: false };
  // As long as nothing else is known.
  call.filled = filled;
  const data = await orStopped(signal, ask('autofillApply', { sheetName, fills: proposals.map(fillOf) }));
  filled.count = data?.applied ?? 0;
  filled.isGuess = false;
  // Then the add-in still takes back what was filled in before.
  if (filled.count === 0) delete call.filled;
  return data ?? {};
}

/** Puts back what a call has filled in. @param {import('./chat_conversation.js').Call} call the last that has */
export async function undoFill({ filled }) {
  const { restored } = (await ask('autofillUndo').catch(() => null)) ?? {};
  if (Number.isInteger(restored)) filled.restored += restored;
  // How many cells were written before somebody stopped is not known, only that the add-in puts all of them back.
  filled.undone = filled.isGuess ? filled.restored > 0 : filled.restored >= filled.count;
  filled.failed = !filled.undone;
}
