/** Draws the conversation; only what has changed is made anew. */
import { CallView } from './call_view.js';
import { undoableTurn } from './chat_conversation.js';
import { failureRow } from './chat_failures.js';
import { byId, make } from './dom.js';
import { undoableFill } from './form_fields.js';
import { language, t } from './i18n.js';
import { drawMarkdown } from './markdown_view.js';

/**
 * @typedef {object} Uses
 * @property {(call: import('./chat_conversation.js').Call, answer: boolean | number[]) => void} answer
 * @property {(call: import('./chat_conversation.js').Call) => void} undoFill
 * @property {(turn: import('./chat_conversation.js').Turn) => void} undo
 * @property {() => void} again
 * @property {(page: string) => string} addressOf
 */

/** @type {WeakMap<object, TurnView>} */
const views = new WeakMap();

/**
 * @param {import('./chat_conversation.js').Turn[]} turns
 * @param {{busy: boolean, uses: Uses}} options busy: nothing can be undone or tried again
 */
export function drawConversation(turns, options) {
  const list = byId('turns');
  const lastFill = undoableFill(turns);
  const elements = turns.map((turn, index) => {
    if (!views.has(turn)) views.set(turn, new TurnView(options.uses));
    const last = index === turns.length - 1;
    return views.get(turn).draw(turn, { ...options, last, undoable: turn === undoableTurn(turns), lastFill });
  });
  for (const child of [...list.children]) if (!elements.includes(child)) child.remove();
  elements.forEach((element, index) => {
    if (list.children[index] !== element) list.append(element);
  });
}

class TurnView {
  #rounds = make('div', { class: 'rounds' });
  #foot = make('div', { class: 'foot' });
  #footState = '';
  #roundViews = [];

  constructor(uses) {
    this.uses = uses;
    this.question = make('p', { class: 'asked', dir: 'auto' });
    this.heads = [make('h2', { class: 'offscreen' }), make('h2', { class: 'offscreen' })];
    this.element = make('li', {}, [this.heads[0], this.question, this.heads[1], this.#rounds, this.#foot]);
  }

  draw(turn, options) {
    this.heads[0].textContent = t('chat.you');
    this.heads[1].textContent = t('chat.assistant');
    this.question.textContent = turn.question;
    this.element.dataset.state = turn.state;
    while (this.#roundViews.length > turn.rounds.length) this.#roundViews.pop().remove();
    turn.rounds.forEach((round, index) => {
      this.#roundViews[index] ??= new RoundView(this.#rounds, this.uses);
      this.#roundViews[index].draw(round, options);
    });
    this.#drawFoot(turn, options);
    return this.element;
  }

  #drawFoot(turn, { busy, last, undoable, uses }) {
    const state = JSON.stringify([language(), turn.state, turn.failure, turn.undo, busy, last, undoable]);
    if (state === this.#footState) return;
    this.#footState = state;
    this.#foot.replaceChildren(
      ...statusParts(turn),
      ...failureParts(turn, { busy, last, uses }),
      ...undoParts(turn, { busy, undoable, uses }),
    );
  }
}

class RoundView {
  #calls = [];

  constructor(place, uses) {
    this.uses = uses;
    this.text = make('div', { class: 'markdown' });
    this.list = make('div', { class: 'calls' });
    this.element = make('div', { class: 'round' }, [this.text, this.list]);
    place.append(this.element);
  }

  remove() {
    this.element.remove();
  }

  draw({ text, calls }, { busy, lastFill }) {
    drawMarkdown(this.text, text);
    calls.forEach((call, index) => {
      if (!this.#calls[index]) {
        const { answer, undoFill } = this.uses;
        this.#calls[index] = new CallView({ answer: (given) => answer(call, given), undo: () => undoFill(call) });
        this.list.append(this.#calls[index].element);
      }
      this.#calls[index].draw(call, { language: language(), busy, undoable: call === lastFill });
    });
  }
}

function statusParts({ state }) {
  if (state === 'running') return [make('p', { class: 'quiet working', textContent: t('chat.answering') })];
  return state === 'stopped' ? [make('p', { class: 'quiet', textContent: t('chat.stopped') })] : [];
}

function failureParts({ failure }, { busy, last, uses }) {
  if (!failure) return [];
  const { text, remedy } = failureRow(failure);
  const parts = [make('p', { class: 'problem', textContent: t(text) })];
  if (failure.message && failure.status >= 400) {
    parts.push(make('p', { class: 'quiet', dir: 'auto', textContent: failure.message }));
  }
  if (!last) return parts;
  if (remedy === 'tryAgain') parts.push(makeButton('common.tryAgain', busy, uses.again));
  if (remedy === 'signIn') parts.push(makeLink('auth.signIn', uses.addressOf('login')));
  if (remedy === 'account') parts.push(makeLink('page.account', uses.addressOf('account')));
  return parts;
}

function undoParts(turn, { busy, undoable, uses }) {
  const { undo } = turn;
  if (!undo?.wrote || turn.state === 'running') return [];
  if (undo.undone) return [make('p', { class: 'quiet', textContent: t('chat.undone', { count: undo.restored }) })];
  const parts = undo.failed ? [make('p', { class: 'problem', textContent: t('chat.undoFailed') })] : [];
  if (!undoable) return parts;
  const button = makeButton('chat.undo', busy, () => uses.undo(turn));
  button.title = t('chat.undoHint');
  return [...parts, button, make('p', { class: 'quiet', textContent: t('chat.undoHint') })];
}

function makeButton(key, disabled, act) {
  const button = make('button', { type: 'button', disabled, textContent: t(key) });
  button.addEventListener('click', act);
  return button;
}

const makeLink = (key, href) => make('a', { class: 'button', href, textContent: t(key) });
