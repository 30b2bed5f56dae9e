#!/usr/bin/env node
/**
 * Works the page that a development host shows in its own Chromium, as a user would: signs in, translates the active
 * sheet from English to Spanish, looks at the account. Prints what the page said as JSON.
 *   node drive_panel.js FOLDER ORIGIN addin|page
 * FOLDER is the TMPDIR that the host was started with; the last one says who performs the requests.
 */
import { readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';

import { chromium } from 'playwright-core';

const BROWSER_FOLDER = /^quorvantis-browser-/;
const STEP_LIMIT_MS = 60000;

/** The browser keeps its port in its profile. */
function portOf(folder) {
  const name = readdirSync(folder).find((entry) => BROWSER_FOLDER.test(entry));
  if (!name) throw new Error(`no browser was started in ${folder}`);
  return readFileSync(join(folder, name, 'profile', 'DevToolsActivePort'), 'utf8').split('\n')[0];
}

async function signIn(page, name) {
  await page.click('#sign-in a');
  await page.fill('#who', name);
  await page.press('#who', 'Enter');
  await page.waitForSelector('#start:enabled');
}

/** @returns {Promise<{title: string, translated: string, error: string}>} how it ended, in the page's words */
async function translate(page, source, target) {
  await page.waitForFunction(() => document.querySelectorAll('#target option').length > 0);
  await page.selectOption('#source', source);
  await page.selectOption('#target', target);
  await page.click('#start');
  await page.waitForSelector('#run:is([data-phase="done"], [data-phase="failed"])');
  return page.evaluate(() => ({
    title: document.getElementById('run-title').textContent,
    translated: document.querySelector('#summary dd')?.textContent,
    error: document.getElementById('error-text').textContent,
  }));
}

const [folder, origin, performer] = process.argv.slice(2);
const browser = await chromium.connectOverCDP(`http://127.0.0.1:${portOf(folder)}`);
const pages = browser.contexts().flatMap((context) => context.pages());
const page = pages.find((candidate) => candidate.url().startsWith(`${origin}/panel/excel`));
if (!page) throw new Error(`no page of ${origin}: ${pages.map((candidate) => candidate.url()).join(', ')}`);
page.setDefaultTimeout(STEP_LIMIT_MS);
const problems = [];
page.on('pageerror', (error) => problems.push(String(error)));
page.on('console', (message) => message.type() === 'error' && problems.push(message.text()));

await signIn(page, 'Ada Lovelace');
if (performer === 'page') await page.evaluate(() => sessionStorage.setItem('quorvantis.viaPage', 'true'));
const run = await translate(page, 'en', 'es');
await page.click('a[data-page="account"]');
await page.waitForSelector('#account:not([hidden])');
const account = await page.innerText('#account-name');
process.stdout.write(`${JSON.stringify({ ...run, account, problems })}\n`);
// The browser belongs to the host: it is left, not closed.
process.exit(0);
