/** Draws Markdown with elements alone: nothing that a language model writes is ever read as HTML. */
import { make } from './dom.js';
import { parseBlocks, parseSpans } from './markdown.js';

/** What each drawn block was made of. @type {WeakMap<Element, string>} */
const sources = new WeakMap();

/**
 * @param {HTMLElement} place
 * @param {string} text that may still grow: what is drawn already stays, and with it what the user has selected
 */
export function drawMarkdown(place, text) {
  const blocks = parseBlocks(text);
  blocks.forEach((block, index) => {
    const before = place.children[index];
    if (before && sources.get(before) === block.source) return;
    const element = MAKERS[block.kind](block);
    sources.set(element, block.source);
    if (before) before.replaceWith(element);
    else place.append(element);
  });
  while (place.children.length > blocks.length) place.lastElementChild.remove();
}

const MAKERS = {
  paragraph: ({ text }) => make('p', { dir: 'auto' }, spans(text)),
  // The page's own headings are above these.
  heading: ({ text, level }) => make(`h${Math.min(level + 2, 6)}`, { dir: 'auto' }, spans(text)),
  code: ({ text }) => make('pre', { dir: 'ltr', tabIndex: 0 }, [make('code', { textContent: text })]),
  quote: ({ text }) => make('blockquote', { dir: 'auto' }, spans(text)),
  rule: () => make('hr'),
  list: ({ items, start }) => {
    const list = start === null ? make('ul', { dir: 'auto' }) : make('ol', { start, dir: 'auto' });
    list.append(...items.map(({ text, depth }) => makeItem(text, depth)));
    return list;
  },
  table: ({ rows: [head, ...rows] }) =>
    make('div', { class: 'table', tabIndex: 0 }, [
      make('table', {}, [
        make('thead', {}, [makeRow('th', head)]),
        make('tbody', {}, rows.map((row) => makeRow('td', row))),
      ]),
    ]),
};

const makeItem = (text, depth) => make('li', { 'data-depth': Math.min(depth, 3) }, spans(text));
const makeRow = (tag, cells) => make('tr', {}, cells.map((cell) => make(tag, { dir: 'auto' }, spans(cell))));

const spans = (text) => parseSpans(text).flatMap((span) => SPANS[span.kind](span));

const SPANS = {
  text: ({ text }) => [text],
  code: ({ text }) => [make('code', { dir: 'ltr', textContent: text })],
  strong: ({ text }) => [make('strong', {}, spans(text))],
  em: ({ text }) => [make('em', {}, spans(text))],
  // No link: it would take the pane away from the chat, to wherever the model says.
  link: ({ text, address }) => (text === address ? [text] : [`${text} (`, make('bdi', { textContent: address }), ')']),
};
