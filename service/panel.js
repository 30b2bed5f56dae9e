import { fileURLToPath } from 'node:url';

import fastifyStatic from '@fastify/static';

const PAGES_FOLDER = fileURLToPath(new URL('panel/pages/', import.meta.url));
const ASSETS_FOLDER = fileURLToPath(new URL('panel/assets/', import.meta.url));

export const PANEL_PATH = '/panel/excel';

/** The file behind each page of the panel. */
export const PAGE_FILES = {
  account: 'account.html',
  login: 'login.html',
  glossary: 'glossary.html',
  instruction: 'instruction.html',
  quicktranslate: 'quicktranslate.html',
  grammar: 'grammar.html',
  chat: 'chat.html',
  agents: 'agents.html',
  support: 'support.html',
  imagetranslate: 'imagetranslate.html',
  imagetotable: 'totable.html',
  pdf2table: 'totable.html',
};
const ROOT_FILE = 'translate.html';

/** The page that the ribbon opens in the user's own browser, with no add-in around it. */
export const WEB_PAGE_PATH = '/panel/web/webtranslate.html';
const WEB_PAGE_FILE = 'webtranslate.html';

/** Everything from this service alone, nothing inline, no frame around it. */
const CONTENT_SECURITY_POLICY = [
  "default-src 'none'",
  "script-src 'self'",
  "style-src 'self'",
  "img-src 'self'",
  "connect-src 'self'",
  "base-uri 'none'",
  "form-action 'none'",
  "frame-ancestors 'none'",
].join('; ');

const HEADERS = {
  'Content-Security-Policy': CONTENT_SECURITY_POLICY,
  'X-Content-Type-Options': 'nosniff',
  'Referrer-Policy': 'no-referrer',
};

/**
 * Serves the panel's pages, and below "assets/" what they load.
 * @param {import('fastify').FastifyInstance} app
 */
export function registerPanel(app) {
  app.register(fastifyStatic, {
    root: ASSETS_FOLDER,
    prefix: `${PANEL_PATH}/assets/`,
    index: false,
    // Files may change at any time: the browser asks each time and mostly gets "not modified".
    cacheControl: false,
    setHeaders: (response) => {
      for (const [name, value] of Object.entries(HEADERS)) response.setHeader(name, value);
      if (!response.getHeader('Cache-Control')) response.setHeader('Cache-Control', 'no-cache');
    },
  });
  app.get(PANEL_PATH, sendPage(ROOT_FILE));
  app.get(`${PANEL_PATH}/`, sendPage(ROOT_FILE));
  app.get(WEB_PAGE_PATH, sendPage(WEB_PAGE_FILE));
  for (const [name, file] of Object.entries(PAGE_FILES)) app.get(`${PANEL_PATH}/${name}.html`, sendPage(file));
}

/** Pages differ by their query only and hold who is signed in: none is kept. */
function sendPage(file) {
  return (request, reply) => reply.header('Cache-Control', 'no-store').sendFile(file, PAGES_FOLDER);
}
