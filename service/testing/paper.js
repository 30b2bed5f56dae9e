/** Makes PDF files and pictures out of HTML, for what reads them. */

/** At twice the size, as on most screens. */
const SCALE = 2;
const WIDTH = 640;

/**
 * @param {import('playwright-core').Browser} browser
 * @param {string} html of the body
 * @returns {Promise<{pdf: Buffer, png: Buffer}>} the same on A4 pages, and as one picture
 */
export async function print(browser, html) {
  const context = await browser.newContext({ viewport: { width: WIDTH, height: 200 }, deviceScaleFactor: SCALE });
  const page = await context.newPage();
  await page.setContent(`<!doctype html><meta charset="utf-8"><style>${STYLE}</style>${html}`);
  const pdf = await page.pdf({ format: 'A4', printBackground: true, margin: MARGINS });
  const png = await page.screenshot({ fullPage: true });
  await context.close();
  return { pdf, png };
}

const MARGINS = { top: '2cm', bottom: '2cm', left: '2cm', right: '2cm' };
const STYLE = `
  body { margin: 24px; font: 15px/1.35 'Liberation Sans', sans-serif; background: #fff; }
  table { border-collapse: collapse; } td, th { padding: 3px 6px; text-align: left; }
  .ruled td, .ruled th { border: 1px solid #b0b0b0; } .dark th { background: #1f3f7a; color: #fff; }
  .wide td, .wide th { padding-inline: 14px; } .right { text-align: right; }`;

/**
 * @param {string[][]} rows the first one is the heading; numbers stand at the right
 * @param {string} [look] classes of the table
 * @returns {string} HTML
 */
export function tableOf(rows, look = 'wide') {
  const cell = (text, tag) => `<${tag}${/^-?[\d.,]+$/.test(text) ? ' class="right"' : ''}>${escaped(text)}</${tag}>`;
  const row = (texts, tag) => `<tr>${texts.map((text) => cell(text, tag)).join('')}</tr>`;
  const body = rows.slice(1).map((texts) => row(texts, 'td'));
  return `<table class="${look}"><thead>${row(rows[0], 'th')}</thead><tbody>${body.join('')}</tbody></table>`;
}

const escaped = (text) => text.replaceAll('&', '&amp;').replaceAll('<', '&lt;');
