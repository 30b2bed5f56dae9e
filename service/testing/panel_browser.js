/** Opens the panel's pages in a real browser, with the add-in's side of the bridge played by the test. */
import assert from 'node:assert/strict';
import { existsSync } from 'node:fs';

import { chromium } from 'playwright-core';

import { buildApp } from '../app.js';
import { EchoEngine } from '../translate/echo.js';

/** Where Debian's chromium is; the second one is a wrapper around the first. */
const BROWSERS = [process.env.QV_CHROMIUM, '/usr/lib/chromium/chromium', '/usr/bin/chromium'];
const WAIT_MS = 10000;

/** @returns {Promise<import('playwright-core').Browser>} without anything open in it */
export function launchBrowser() {
  const executablePath = BROWSERS.find((path) => path && existsSync(path));
  assert.ok(executablePath, 'Chromium is missing: scripts/setup.sh installs it');
  return chromium.launch({ executablePath, chromiumSandbox: process.getuid() !== 0 });
}

/** Runs in the page before its own scripts: keeps what is posted, and posts what the test says. */
function playAddin() {
  const listeners = [];
  window.posted = [];
  window.say = (data) => listeners.forEach((listener) => listener({ data }));
  window.chrome ??= {};
  window.chrome.webview = {
    postMessage: (text) => window.posted.push(text),
    addEventListener: (type, listener) => type === 'message' && listeners.push(listener),
  };
}

/** The service and a browser; close both with `close`. */
export class PanelBrowser {
  /** @param {{engine?: object, languageModel?: object}} [options] the echo engine unless another is given */
  static async start({ engine = new EchoEngine(), languageModel = null } = {}) {
    const browser = await launchBrowser();
    const app = buildApp({ engine, languageModel });
    await app.listen({ host: '127.0.0.1', port: 0 });
    return new PanelBrowser(app, browser);
  }

  constructor(app, browser) {
    this.app = app;
    this.browser = browser;
    this.origin = `http://127.0.0.1:${app.server.address().port}`;
  }

  async close() {
    await this.browser.close();
    await this.app.close();
  }

  /** @returns {Promise<string>} a token as signing in gives it */
  async signIn(name = 'Ada') {
    const answer = await fetch(`${this.origin}/v1/auth/dev-token`, {
      method: 'POST',
      headers: { 'Content-Type': 'application/json' },
      body: JSON.stringify({ name }),
    });
    return (await answer.json()).token;
  }

  /**
   * Opens a page in a profile of its own.
   * @param {string} name of the page; "translate" is the root
   * @param {object} [options]
   * @param {string} [options.query] more parameters of the address, such as "mode=selection"
   * @param {string} [options.lang] of the page
   * @param {string} [options.pane] that the add-in says it is
   * @param {string | null} [options.token] that is in the browser's storage already; none with null
   * @param {boolean} [options.hosted] an add-in shows the page
   * @param {number} [options.width] @param {number} [options.height] @param {'light' | 'dark'} [options.scheme]
   * @returns {Promise<PanelPage>}
   */
  async open(
    name,
    {
      query = '',
      lang = 'en',
      pane = 'xl1',
      token = 'dev-ada',
      hosted = true,
      width = 320,
      height = 720,
      scheme = 'light',
    } = {},
  ) {
    const context = await this.browser.newContext({
      viewport: { width, height },
      colorScheme: scheme,
      reducedMotion: 'reduce',
    });
    context.setDefaultTimeout(WAIT_MS);
    if (hosted) await context.addInitScript(playAddin);
    if (token) {
      await context.addInitScript((value) => {
        if (!localStorage.getItem('quorvantis.session')) {
          localStorage.setItem('quorvantis.session', JSON.stringify({ token: value, signedOut: false }));
        }
      }, token);
    }
    const page = new PanelPage(await context.newPage(), this.origin);
    await page.goTo(name, `host=excel&pane=${pane}${query && `&${query}`}&uiLang=${lang}`);
    return page;
  }
}

/** One open page, and what went wrong in it. */
export class PanelPage {
  /** @param {import('playwright-core').Page} page @param {string} origin */
  constructor(page, origin) {
    this.page = page;
    this.origin = origin;
    /** Errors of scripts, of the console and of the content security policy. */
    this.problems = [];
    page.on('pageerror', (error) => this.problems.push(String(error)));
    page.on('console', (message) => {
      if (message.type() === 'error') this.problems.push(message.text());
    });
  }

  async goTo(name, query) {
    const path = name === 'translate' ? '/panel/excel' : `/panel/excel/${name}.html`;
    await this.page.goto(`${this.origin}${path}?${query}`);
    await this.ready();
  }

  /** Waits until the words are in place. */
  ready() {
    return this.page.waitForSelector('html:not([data-loading])');
  }

  /** Chooses a file in the field "file" as a user does. */
  choose(name, mimeType, buffer) {
    return this.id('file').setInputFiles({ name, mimeType, buffer });
  }

  /** @param {string} id @returns {import('playwright-core').Locator} */
  id(id) {
    return this.page.locator(`#${id}`);
  }

  /** @param {string} id @returns {Promise<string>} what is shown there, empty while hidden */
  async text(id) {
    return (await this.id(id).isVisible()) ? (await this.id(id).innerText()).trim() : '';
  }

  /** Answers a request as the add-in does. */
  answer({ requestId }, data, ok = true) {
    return this.page.evaluate((answer) => window.QuorvantisTerminology._onResponse(answer), { requestId, ok, data });
  }

  /** Posts an object as the add-in does. */
  say(message) {
    return this.page.evaluate((data) => window.say(data), message);
  }

  /** Runs a script as the add-in does. */
  run(script) {
    return this.page.evaluate(script);
  }

  /** @returns {Promise<object[]>} what the page has posted since the last call, the log lines left out */
  async posted() {
    const texts = await this.page.evaluate(() => window.posted.splice(0));
    assert.ok(
      texts.every((text) => typeof text === 'string'),
      'messages are posted as strings',
    );
    return texts.map((text) => JSON.parse(text)).filter(({ action }) => action !== 'trace');
  }

  /** Waits until something was posted, and takes it. */
  async postedNow(action) {
    await this.page.waitForFunction(
      (name) => window.posted.some((text) => text.includes(`"action":"${name}"`)),
      action,
    );
    return (await this.posted()).find((message) => message.action === action);
  }

  /** Closes the page, in which nothing may have gone wrong but what `expected` fits. */
  async close(expected = /^$/) {
    await this.page.context().close();
    assert.deepEqual(
      this.problems.filter((text) => !expected.test(text)),
      [],
    );
  }
}
