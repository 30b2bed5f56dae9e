#!/usr/bin/env node
/**
 * Translates a PDF on the page that the ribbon opens in the user's own browser: signs in, chooses file and languages,
 * reads what comes. Prints as JSON what the page shows, and the file that it offers to keep.
 *   node translate_pdf.js ADDRESS FILE
 */
import { readFileSync } from 'node:fs';

import { launchBrowser } from './panel_browser.js';

const STEP_LIMIT_MS = 60000;

const [address, file] = process.argv.slice(2);
const browser = await launchBrowser();
// The certificate of a developer's service is not in this browser's store.
const context = await browser.newContext({ ignoreHTTPSErrors: true, locale: 'en-US' });
context.setDefaultTimeout(STEP_LIMIT_MS);
const page = await context.newPage();
const problems = [];
page.on('pageerror', (error) => problems.push(String(error)));
page.on('console', (message) => message.type() === 'error' && problems.push(message.text()));

await page.goto(address);
await page.fill('#who', 'Ada Lovelace');
await page.press('#who', 'Enter');
await page.waitForSelector('#login', { state: 'hidden' });
await page.setInputFiles('#file', file);
await page.waitForFunction(() => document.querySelectorAll('#target option').length > 0);
await page.selectOption('#source', 'en');
await page.selectOption('#target', 'es');
await page.click('#start');
await page.waitForSelector('#result:not([hidden]), #problem:not(:empty)');
const shown = await page.evaluate(() => ({
  title: document.getElementById('result-title').textContent,
  problem: document.getElementById('problem').textContent,
  pairs: [...document.querySelectorAll('.pair')].map(({ children }) => ({
    isHeading: children[0].tagName === 'H4',
    original: children[0].textContent,
    translation: children[1].textContent,
    isBeside: children[0].getBoundingClientRect().right <= children[1].getBoundingClientRect().left,
  })),
}));
const [download] = await Promise.all([page.waitForEvent('download'), page.click('#download')]);
const kept = readFileSync(await download.path(), 'utf8');
await browser.close();
process.stdout.write(`${JSON.stringify({ ...shown, kept, problems })}\n`);
