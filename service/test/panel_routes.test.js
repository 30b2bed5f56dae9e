import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { after, test } from 'node:test';

import { buildApp } from '../app.js';
import { PAGE_FILES } from '../panel.js';
import { EchoEngine } from '../translate/echo.js';

const app = buildApp({ engine: new EchoEngine() });
after(() => app.close());
const get = (url, headers = {}) => app.inject({ url, headers });

/** The pages that the add-in knows by name. */
const NAMES = [
  'account',
  'login',
  'glossary',
  'instruction',
  'quicktranslate',
  'grammar',
  'chat',
  'agents',
  'support',
  'imagetranslate',
  'imagetotable',
  'pdf2table',
];

test('every page of the add-in is there, whatever its query', async () => {
  assert.deepEqual(Object.keys(PAGE_FILES).sort(), [...NAMES].sort());
  const urls = ['', '/', '?_=1&host=excel&pane=xl1&uiLang=de', ...NAMES.map((name) => `/${name}.html?_=5`)];
  for (const url of urls) {
    const { statusCode, headers } = await get(`/panel/excel${url}`);
    assert.equal(statusCode, 200, url);
    assert.equal(headers['content-type'], 'text/html; charset=UTF-8', url);
    assert.equal(headers['cache-control'], 'no-store', url);
  }
});

test('nothing beside the pages and their assets is served', async () => {
  const urls = [
    '/word',
    '/nothing.html',
    '/totable.html',
    '/assets/',
    '/assets/../pages/login.html',
    '/assets/%2e%2e/%2e%2e/app.js',
    '/assets/js/none.js',
  ];
  for (const url of urls) assert.notEqual((await get(`/panel/excel${url}`)).statusCode, 200, url);
});

test('assets have their type and are asked for again by their tag', async () => {
  const types = { 'js/bridge.js': /javascript/, 'css/base.css': /^text\/css/, 'icon.svg': /^image\/svg\+xml/ };
  for (const [path, type] of Object.entries(types)) {
    const url = `/panel/excel/assets/${path}`;
    const first = await get(url);
    assert.match(first.headers['content-type'], type);
    assert.equal(first.headers['cache-control'], 'no-cache');
    assert.equal((await get(url, { 'if-none-match': first.headers.etag })).statusCode, 304);
  }
});

test('pages and assets allow only what this service serves', async () => {
  for (const url of ['/panel/excel', '/panel/excel/login.html', '/panel/excel/assets/js/bridge.js']) {
    const { headers } = await get(url);
    const policy = headers['content-security-policy'];
    assert.match(policy, /^default-src 'none'; script-src 'self'; style-src 'self';/, url);
    assert.doesNotMatch(policy, /unsafe|\*|http/, url);
    assert.equal(headers['x-content-type-options'], 'nosniff', url);
  }
});

test('no page holds a script or a style of its own, or loads what is not there', async () => {
  const folder = new URL('../panel/pages/', import.meta.url);
  for (const file of readdirSync(folder)) {
    const html = readFileSync(new URL(file, folder), 'utf8');
    assert.doesNotMatch(html, /<style|\sstyle=|\son\w+=|<script(?![^>]*\ssrc=)/i, file);
    for (const [, url] of html.matchAll(/(?:src|href)="([^"]+)"/g))
      assert.equal((await get(url)).statusCode, 200, `${file} ${url}`);
  }
});
