/**
 * The bridge between a page and the add-in that shows it: what the pages use of docs/protocol.md.
 *
 * Page to add-in: one JSON text a message, `{"action": …}` with the fields of ACTIONS. Keys are case-sensitive, an
 * absent field counts as empty, false or 0, an unknown action is ignored.
 *
 * Add-in to page, in three ways, each also to the page of the workspace window while that is open:
 *   1. posted objects `{action: …}`, see MESSAGES;
 *   2. scripts that call a global function of the page when it exists, see EVENTS;
 *   3. answers to requests, by `QuorvantisTerminology._onResponse({requestId, ok, data})`, see `request`.
 *
 * Opened in a plain browser there is no add-in: everything posted is dropped, and nothing ever comes.
 */

import { TOOL_FIELDS } from './tool_actions.js';

/** Points; colour as red + 256 * green + 65536 * blue; an absent field leaves what the cell has. */
const STYLE = ['targetFont', 'targetFontSize', 'targetFontBold', 'targetFontColor'];
const START = [
  'accessToken',
  'sourceLang',
  'targetLang',
  'panelMode',
  'panelIsRestart',
  'panelScriptRev',
  'clientTraceId',
  'excelTranslateAllSheets',
  'excelBilingualBelow',
  'nativeTranslateViaJs',
  'glossaryIds',
  'globalInstructionId',
  ...STYLE,
];

/** What the page may post, with its fields. */
export const ACTIONS = {
  // windows: the workspace is a window of its own with "&surface=workspace" in its page's address
  openImagePreview: ['imageBase64', 'mediaType', 'title', 'downloadName'],
  openWorkspace: ['page'],
  closeWorkspace: [],
  focusWorkspace: [],
  // the signed-in user's token; an empty one never replaces the one that a pane holds
  setAccessToken: ['accessToken'],
  clearAccessToken: [],
  requestAccessToken: [], // answered by the message "accessToken"
  getFontList: [], // answered by the message "fontList"
  trace: ['phase', 'detail', 'jsTokenLen'], // one line of the add-in's log
  // runs; a start that repeats the clientTraceId of the one before within 2500 ms is ignored
  start: START,
  startSelection: START,
  cancel: [],
  pause: [],
  resume: [],
  requestSelectionPreview: [], // answered by the event onSelectionPreview
  // after a run; while one goes on these two are refused, the other four wait for its end
  setExcelDisplayMode: ['mode', 'scope'], // "dual", "target", "original"; "selection", "sheet", "session"
  setTargetStyle: STYLE,
  applyParagraph: ['index'], // from 0; the cell shows it, nothing answers
  restoreParagraph: ['index'],
  applyAll: [], // answered by the event onBatchDone
  restoreAll: [],
  // one text, whatever a run does
  // answered by the event onQuickTranslateResult
  quickTranslate: ['requestId', 'text', 'targetLang', 'sourceLang', 'accessToken', 'instruction'],
  quickTranslateWrite: ['mode', 'text'], // "replace", "insert"; only a cell that refuses it is told of
  // answers to messages of the add-in
  translateBatchResult: ['requestId', 'ok', 'translations', 'code', 'message'],
  terminologyResolveResult: ['requestId', 'result', 'code', 'message'],
  // requests, see `request`
  docKeyGet: ['requestId'], // {docKey}: names the workbook; "_unsaved" and "_no_doc" name none
  exportLocalSnapshot: ['requestId'], // {glossaries, instructions} of this computer, each with its id
  clientInfoGet: ['requestId'], // {productId, platform, version, commit, buildDate, os, installId, hostApp, …}
  // pictures of the active sheet, see pictures_state.js; an anchor says which one. A failure answers {error, detail}
  requestImageSelectionPreview: [], // answered by the event onImageSelectionPreview
  imageTranslateScan: ['requestId'], // {count, skippedUnsupported, sheetSummary: [{sheetName, count, anchors}]}
  imageTranslateExtract: ['requestId', 'anchor'], // {mediaType, width, height, data: base64}
  imageTranslateReplace: ['requestId', 'anchor', 'imageBase64', 'batchMode'], // {replaced, hasUndo, anchor: the new one}
  imageTranslateUndoReplace: ['requestId', 'anchor'], // {anchor: the new one, imageBase64}
  imageTranslateBatchUndo: ['requestId'], // {restored, failed, failedReasons}
  imageTranslateClearBatchUndo: ['requestId'],
  // coding agents and the server of tools that they work with; the first four take their time
  detectAgents: ['requestId'], // {agents: [{id, name, command, path, version, installed, bundled, …}]}
  installOpencode: ['requestId'], // {success, exePath, error}
  installAgentMcp: ['requestId', 'id'], // {success, configPath, backupPath, error}
  launchAgent: ['requestId', 'id'], // {success, error}
  getMcpServerStatus: ['requestId'], // {ok, owner: "self" | "other" | "none", running, port}
  ensureMcpServer: ['requestId'], // the same, and "error"
  stopMcpServer: ['requestId'],
  // the workbook tools; a tool that failed answers {error}, and is no refusal
  ...TOOL_FIELDS,
  excelPushUndoMarker: ['requestId'], // {ok, depth: markers}; ahead of one chat message's edits
  excelUndoMessage: ['requestId'], // {restored: cells, depth: markers left}
};

/** Objects that the add-in posts, by their "action". */
export const MESSAGES = [
  'accessToken', // {accessToken} after each navigation and on request; may be empty
  'fontList', // {fonts: [name, …]}
  'setMode', // {mode: "full" | "selection"}, followed by quorvantisSetMode(mode)
  'uiLangChanged', // {uiLang}
  'sheetWriteBlocked', // {message}, followed by onSheetWriteBlocked and a toast with the same text
  'translateBatchRequest', // see batch_transport.js
  'translateAbortForRun', // {runId}
  'terminologyResolveRequest', // see terminology_answers.js
];

/** Global functions that the add-in calls. */
export const EVENTS = [
  'onRunStarted', // {runId}; also after a reload, while a run goes on
  'onScanProgress', // {runId, current, total}: rows of the range that is being read
  'onReady', // {total: cells read, translatable: texts, runId}
  'onProgress', // {runId, wordIndex: 0-based, total, translatable, skipped, original, translated} for each text
  'onComplete', // {runId, total, elapsed: milliseconds, allSheets}
  'onCancelled', // no argument
  'onError', // {code, message, runId}; each but the message may be absent
  'onSheetWriteBlocked', // {message}; once a run
  'onExcelTranslateSheetChanged', // {runId, sheetName, sourceSheetName, mode}: a run over all sheets moved on
  'onExcelActiveSheetChanged', // {sheetName}: the user did; a run over one sheet pauses when it is another one
  'onExcelTranslateResumed', // {reason: "manual" | "sheet_changed"}
  'onExcelTranslateResumeBlocked', // {sheetName, sourceSheetName}: the wrong sheet is shown, the run stays paused
  // {fragments, chars, rangeAddress, translatedCellsOnSheet, translatedCellsInSelection, quickText} or {error};
  // quickText for 1 to 64 cells only
  'onSelectionPreview',
  // {scope: "shape", anchor, width, height, thumbBase64: may be absent, like the size} or {scope: "empty"}
  'onImageSelectionPreview',
  'onExcelDisplayModeDone', // {ok, mode, applied, failed, message}
  'onTargetStyleDone', // {ok, applied, failed, skipped, message}
  'onBatchDone', // {action: "applyAll" | "restoreAll"}
  'onQuickTranslateResult', // {requestId, ok, translation or error}, in any order
  'quorvantisOnWorkspaceOpen',
  'quorvantisOnWorkspaceClosed',
  'quorvantisSetMode', // (mode), a text
  'quorvantisExportState', // gives a JSON value, or null for "nothing"
  'quorvantisImportState', // (value) of another page's export
];

/** How long the add-in may take to answer a request that it answers from memory. */
const REQUEST_LIMIT_MS = 10000;

const webview = () => globalThis.chrome?.webview;
const messageHandlers = new Map();
const waiting = new Map();
let requestCount = 0;

/** Whether an add-in shows this page. */
export function isHosted() {
  return webview() !== undefined;
}

/**
 * @param {keyof typeof ACTIONS} action
 * @param {object} [fields]
 */
export function post(action, fields = {}) {
  for (const name of Object.keys(fields)) {
    if (!ACTIONS[action]?.includes(name)) throw new Error(`"${action}" has no field "${name}"`);
  }
  webview()?.postMessage(JSON.stringify({ action, ...fields }));
}

/** @param {Record<string, (message: any) => void>} handlers by the names of MESSAGES */
export function onMessages(handlers) {
  for (const [action, handle] of Object.entries(handlers)) {
    if (!MESSAGES.includes(action)) throw new Error(`there is no message "${action}"`);
    messageHandlers.set(action, handle);
  }
}

/** @param {Record<string, (argument: any) => any>} handlers by the names of EVENTS; they become globals of the page */
export function onEvents(handlers) {
  for (const [name, handle] of Object.entries(handlers)) {
    if (!EVENTS.includes(name)) throw new Error(`there is no event "${name}"`);
    globalThis[name] = handle;
  }
}

/** Tells this page's requests from those of other pages, which get the same answers. */
const pageId = Array.from(crypto.getRandomValues(new Uint8Array(4)), (byte) => byte.toString(16)).join('');

/**
 * Asks the add-in; the answer is matched by its id, so several may be open.
 * @param {keyof typeof ACTIONS} action that has a requestId
 * @param {object} [fields]
 * @param {{limitMs?: number}} [options] how long it may take; Infinity waits for ever
 * @returns {Promise<any>} the answer's data; rejected, with `data` where there is any, when it is a refusal, and when
 *   none came in time
 */
export function request(action, fields = {}, { limitMs = REQUEST_LIMIT_MS } = {}) {
  const requestId = `${action}-${pageId}-${++requestCount}`;
  return new Promise((resolve, reject) => {
    const giveUp = (reason, data) => {
      waiting.delete(requestId);
      reject(Object.assign(new Error(`${action}: ${reason}`), { data }));
    };
    if (!isHosted()) return giveUp('no add-in');
    const timer = Number.isFinite(limitMs) ? setTimeout(giveUp, limitMs, 'no answer') : 0;
    waiting.set(requestId, ({ ok, data }) => {
      clearTimeout(timer);
      if (ok) resolve(data);
      else giveUp('refused', data);
    });
    post(action, { requestId, ...fields });
  });
}

/**
 * Installs what every page has: the receivers of messages and answers.
 * @param {(text: string, kind: string) => void} showToast a short notice; kind is "warn" or "info"
 */
export function openBridge(showToast) {
  globalThis.QuorvantisTerminology = {
    _onResponse(answer) {
      const settle = waiting.get(answer.requestId);
      waiting.delete(answer.requestId);
      settle?.(answer);
    },
    showToast,
  };
  webview()?.addEventListener('message', ({ data }) => messageHandlers.get(data?.action)?.(data));
}
