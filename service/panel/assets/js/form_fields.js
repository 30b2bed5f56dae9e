/** The fields of a form and what is proposed for them. Nothing here touches the page or the add-in. */

/**
 * @typedef {object} Field a cell that waits for input, as the language model is told of it
 * @property {string} address
 * @property {number} row
 * @property {number} col
 * @property {string} kind
 * @property {string} label
 * @property {string} currentValue
 * @property {{left: string, above: string, rowText: string}} context
 *
 * @typedef {object} Proposal
 * @property {Field} field
 * @property {'fill' | 'clear'} action
 * @property {string | number | boolean} value
 * @property {number} [confidence] 0 to 1; absent where the model does not say
 *
 * @typedef {object} Filled what the add-in has written and can take back
 * @property {number} count of cells
 * @property {boolean} [isGuess] the add-in has not said how many
 * @property {number} restored
 * @property {boolean} undone
 * @property {boolean} failed the last try to undo
 */

/** Proposals that the model is less sure of are not chosen beforehand. */
export const SURE_ENOUGH = 0.5;

const placeOf = ({ row, col }) => `${row},${col}`;

/** @param {any} scan result of the add-in @returns {Field[]} without what the model has no use for */
export const fieldsOf = (scan) =>
  (Array.isArray(scan?.fields) ? scan.fields : []).map(({ address, row, col, kind, label, currentValue, context }) => ({
    address,
    row,
    col,
    kind,
    label,
    currentValue,
    context,
  }));

/**
 * @param {import('./chat_conversation.js').Turn[]} turns
 * @returns {{sheetName: string, fields: Field[], workbookKey?: string} | null} what the last scan found
 */
export function lastScan(turns) {
  const calls = turns.flatMap(({ rounds }) => rounds).flatMap((round) => round.calls);
  const scan = calls.findLast(({ name, state }) => name === 'autofillScan' && state === 'done');
  return scan ? { ...JSON.parse(scan.result), workbookKey: scan.workbookKey } : null;
}

/** A number stays one: as a text it would depend on the user's decimal point. */
const valueOf = (value) => (['string', 'number', 'boolean'].includes(typeof value) ? value : '');

/** What the add-in knows. @returns {'fill' | 'clear' | undefined} */
const actionOf = (action) => ['fill', 'clear'].find((known) => known === (action ?? 'fill'));

/** Some models mean percent. @returns {number | undefined} 0 to 1 */
function shareOf(confidence) {
  if (typeof confidence !== 'number' || !(confidence >= 0 && confidence <= 100)) return undefined;
  return confidence > 1 ? confidence / 100 : confidence;
}

/**
 * @param {any} fills the model's
 * @param {Field[]} fields
 * @returns {{proposals: Proposal[], unknown: any[]}} in the order of the model, the last of several for one cell
 */
export function matchProposals(fills, fields) {
  const known = new Map(fields.map((field) => [placeOf(field), field]));
  const byPlace = new Map();
  const unknown = [];
  for (const fill of Array.isArray(fills) ? fills : []) {
    const field = known.get(placeOf(fill ?? {}));
    const value = valueOf(fill?.value);
    const action = actionOf(fill?.action);
    if (!field || !action || (action === 'fill' && value === '')) unknown.push(fill);
    else {
      const confidence = shareOf(fill.confidence);
      byPlace.set(placeOf(field), { field, action, value: action === 'clear' ? '' : value, confidence });
    }
  }
  return { proposals: [...byPlace.values()], unknown };
}

/**
 * @param {Proposal[]} proposals
 * @param {Field[]} fields as they are now
 * @returns {{same: Proposal[], changed: Proposal[]}} the proposals whose cells still ask for the same
 */
export function compareFields(proposals, fields) {
  const now = new Map(fields.map((field) => [placeOf(field), field]));
  const isSame = ({ field }) => {
    const found = now.get(placeOf(field));
    return ['kind', 'label', 'currentValue'].every((name) => found?.[name] === field[name]);
  };
  return { same: proposals.filter(isSame), changed: proposals.filter((proposal) => !isSame(proposal)) };
}

/** @param {Proposal} proposal @returns {object} an item of the add-in's "fills" */
export const fillOf = ({ field: { row, col }, action, value, confidence }) => ({ row, col, action, value, confidence });

/**
 * @param {import('./chat_conversation.js').Turn[]} turns
 * @returns {import('./chat_conversation.js').Call | undefined} the one whose cells can be put back; the add-in knows the
 *   last only
 */
export function undoableFill(turns) {
  const calls = turns.flatMap(({ rounds }) => rounds).flatMap((round) => round.calls);
  const last = calls.findLast(({ filled }) => filled);
  return last && last.filled.count > 0 && !last.filled.undone ? last : undefined;
}
