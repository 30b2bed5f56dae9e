/** Draws the calls of tools: what is done, with which arguments, and what came of it. */
import { make } from './dom.js';
import { t } from './i18n.js';
import { makePicture } from './picture.js';
import { TOOLS } from './tool_actions.js';

const WORDS = {
  excelReadRange: 'chat.toolRead',
  excelRangeHasContent: 'chat.toolRead',
  excelGetWriteContext: 'chat.toolLook',
  excelWriteRange: 'chat.toolWrite',
  excelFormatRange: 'chat.toolFormat',
  excelSetSize: 'chat.toolFormat',
  excelMergeCells: 'chat.toolFormat',
  excelUnmergeCells: 'chat.toolFormat',
  excelListSheets: 'chat.toolSheets',
  excelSetActiveSheet: 'chat.toolSheets',
  excelAddSheet: 'chat.toolSheets',
  excelRenameSheet: 'chat.toolSheets',
  excelDeleteSheet: 'chat.toolDeleteSheet',
  excelInsertRowsCols: 'chat.toolInsert',
  excelDeleteRowsCols: 'chat.toolDelete',
  excelRemoveDuplicates: 'chat.toolDuplicates',
  excelCalcSetMode: 'chat.toolCalc',
  excelCalculateNow: 'chat.toolCalc',
  excelCalcGetMode: 'chat.toolCalc',
  excelChartCreate: 'chat.toolChart',
  excelScreenshotRange: 'chat.toolPicture',
};

const STATES = {
  told: 'chat.callWaiting',
  asking: 'chat.callAsking',
  running: 'chat.callRunning',
  done: 'chat.callDone',
  failed: 'chat.callFailed',
  refused: 'chat.callRefused',
  stopped: 'chat.callStopped',
};

/** @param {string} name of a tool @returns {string} what it does, in words */
export const toolWords = (name) => t(Object.hasOwn(WORDS, name) ? WORDS[name] : 'chat.toolOther');

/** @returns {object} empty for arguments that are no object */
function parsed(text) {
  try {
    return JSON.parse(text) ?? {};
  } catch {
    return {};
  }
}

/** @param {string} text JSON @returns {string} the same to be read, or the text itself */
function readable(text) {
  try {
    return JSON.stringify(JSON.parse(text), null, 1);
  } catch {
    return text;
  }
}

/** @param {object} given arguments @returns {string} what a tool works on, as short as it can be said */
export function targetOf(given) {
  const { range, source, name, new_name: newName, index, indices, mode } = given;
  const list = Array.isArray(indices) ? indices.join(', ') : '';
  const target = range ?? source ?? name ?? (list || index) ?? newName ?? mode ?? '';
  return typeof target === 'object' ? '' : String(target);
}

/** @param {import('./chat_conversation.js').Call} call that waits for a yes @returns {string} the question in words */
export function questionOf(call) {
  const given = parsed(call.arguments);
  return t(TOOLS[call.name].asks, { target: targetOf(given), mode: t(MODES[given.mode] ?? 'chat.rows') });
}

const MODES = { rows: 'chat.rows', columns: 'chat.columns' };

/** One call, drawn anew only where it changed: what the user has opened stays open. */
export class CallView {
  #state = '';
  #details;
  #summary = make('summary');
  #body = make('div', { class: 'call-body' });
  #question = make('div', { class: 'question', role: 'group' });

  /** @param {(yes: boolean) => void} answer called with what the user says to a question */
  constructor(answer) {
    this.#details = make('details', { class: 'call' }, [this.#summary, this.#body]);
    this.element = make('div', { class: 'call-frame' }, [this.#details, this.#question]);
    this.answer = answer;
  }

  /** @param {import('./chat_conversation.js').Call} call @param {string} language */
  draw(call, language) {
    const state = `${language} ${call.state}`;
    if (state === this.#state) return;
    this.#state = state;
    this.element.dataset.state = call.state;
    const target = targetOf(parsed(call.arguments));
    this.#summary.replaceChildren(
      make('span', { class: 'what', textContent: toolWords(call.name) }),
      make('bdi', { class: 'target', textContent: target }),
      make('span', { class: 'state', textContent: t(STATES[call.state]) }),
    );
    this.#body.replaceChildren(...this.#parts(call));
    this.#drawQuestion(call);
  }

  #parts(call) {
    const parts = [
      make('code', { dir: 'ltr', textContent: call.name }),
      ...titled('chat.arguments', readable(call.arguments || '{}')),
    ];
    if (call.result) parts.push(...titled('chat.result', readable(call.result)));
    if (call.picture) {
      this.#details.open = true;
      parts.push(makePicture(call.picture, `${t('chat.toolPicture')} ${targetOf(parsed(call.arguments))}`));
    }
    return parts;
  }

  #drawQuestion(call) {
    this.#question.hidden = call.state !== 'asking';
    if (this.#question.hidden) return this.#question.replaceChildren();
    const words = questionOf(call);
    this.#question.setAttribute('aria-label', words);
    const no = makeButton('chat.refuse', '', () => this.answer(false));
    const yes = makeButton('chat.allow', 'primary', () => this.answer(true));
    this.#question.replaceChildren(
      make('strong', { dir: 'auto', textContent: words }),
      make('p', { textContent: t('chat.askText') }),
      make('div', { class: 'buttons' }, [no, yes]),
    );
    // Yes is never what a hurried Enter says.
    no.focus();
  }
}

function titled(key, text) {
  const title = make('p', { class: 'quiet', textContent: t(key) });
  return [title, make('pre', { dir: 'ltr', tabIndex: 0 }, [make('code', { textContent: text })])];
}

function makeButton(key, kind, act) {
  const button = make('button', { type: 'button', class: kind, textContent: t(key) });
  button.addEventListener('click', act);
  return button;
}
