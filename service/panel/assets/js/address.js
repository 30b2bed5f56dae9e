/** The page's own address: what the add-in put into it, and the addresses of its neighbours. */

const ROOT = '/panel/excel';
const parameters = new URLSearchParams(location.search);

/** Whether this page is shown in the workspace window rather than in a pane. */
export const inWorkspace = parameters.get('surface') === 'workspace';

/** "full" or "selection" when a ribbon button asked for it, else null. */
export const askedMode = ['full', 'selection'].find((mode) => mode === parameters.get('mode')?.toLowerCase()) ?? null;

/** Tells the pages of one pane from those of others. */
export const paneKey = `${parameters.get('host')} ${parameters.get('pane')}`;

export const askedLanguage = parameters.get('uiLang');

/** The page's name, such as "login"; the root is "translate". */
export const pageName = /\/([^/]+)\.html$/.exec(location.pathname)?.[1] ?? 'translate';

/**
 * @param {string} name of a page
 * @param {string} uiLang language that it is to open in
 * @returns {string} its address; all the add-in said stays in it but the mode, which only the first page was opened for
 */
export function addressOf(name, uiLang) {
  const query = new URLSearchParams(parameters);
  query.delete('mode');
  query.set('uiLang', uiLang);
  const path = name === 'translate' ? ROOT : `${ROOT}/${name}.html`;
  return `${path}?${query}`;
}

/** @param {string} uiLang so that a reload opens in it */
export function rememberLanguage(uiLang) {
  parameters.set('uiLang', uiLang);
  history.replaceState(null, '', `${location.pathname}?${parameters}`);
}
