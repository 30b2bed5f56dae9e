/** The pages in a real browser: signing in, languages, account, support, and getting around. */
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';

import { PAGE_FILES } from '../panel.js';
import { LANGUAGES } from '../panel/assets/js/i18n.js';
import english from '../panel/assets/js/languages/en.js';
import { PanelBrowser, PanelPage } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

const SESSION = "JSON.parse(localStorage.getItem('quorvantis.session'))";
/** What the browser itself says of an answer that is a refusal. */
const REFUSED = /^Failed to load resource/;

test('who is not signed in is asked to, and comes back signed in', async () => {
  const view = await panel.open('translate', { token: null });
  assert.equal(await view.text('reason'), 'Sign in first.');
  assert.ok(await view.id('start').isDisabled());
  await view.id('sign-in').getByRole('link').click();
  await view.ready();
  assert.match(view.page.url(), /\/panel\/excel\/login\.html\?host=excel&pane=xl1&uiLang=en$/);

  await view.id('login-button').click();
  assert.equal(await view.text('login-error'), 'Please enter a name or an e-mail address.');
  await view.id('who').fill('ada@example.org');
  await view.id('who').press('Enter');
  await view.page.waitForURL(/\/panel\/excel\?/);
  await view.ready();
  const { token } = await view.run(SESSION);
  assert.match(token, /^dev-/);
  await view.id('start').and(view.page.locator(':enabled')).waitFor();
  assert.equal(await view.text('sign-in'), '');

  // The add-in, which has no token yet, is given this one.
  await view.posted();
  await view.say({ action: 'accessToken', accessToken: '' });
  assert.deepEqual(await view.posted(), [{ action: 'setAccessToken', accessToken: token }]);
  await view.goTo('account', 'host=excel&pane=xl1&uiLang=en');
  await view.id('account').waitFor();
  assert.equal(await view.text('account-email'), 'ada@example.org');
  await view.close();
});

test('a service without this kind of sign-in, and one that is away, are told apart', async () => {
  const view = await panel.open('login', { token: null });
  for (const [respond, words] of [
    [(route) => route.fulfill({ status: 404, body: '{}' }), /does not offer/],
    [(route) => route.abort(), /did not work/],
  ]) {
    await view.page.route('**/v1/auth/dev-token', respond);
    await view.id('who').fill('Ada');
    await view.id('login-button').click();
    await view.id('login-error').getByText(words).waitFor();
    await view.page.unroute('**/v1/auth/dev-token');
  }
  await view.close(REFUSED);
});

test("the add-in's token signs in a browser that has none", async () => {
  const view = await panel.open('translate', { token: null });
  assert.deepEqual((await view.posted())[0], { action: 'requestAccessToken' });
  await view.say({ action: 'accessToken', accessToken: 'dev-from-addin' });
  await view.id('start').and(view.page.locator(':enabled')).waitFor();
  await view.close();
});

test('signing out holds although the pane still has its copy of the token', async () => {
  const token = await panel.signIn();
  const view = await panel.open('account', { token });
  await view.id('account').waitFor();
  assert.equal(await view.text('account-usage'), '0 of 1,000,000');
  await view.posted();
  await view.id('sign-out').click();
  await view.id('signed-out').waitFor();
  assert.deepEqual(await view.posted(), [{ action: 'clearAccessToken' }]);
  // The service has signed it out; even one that had not would not bring the user back.
  await view.page.waitForFunction(
    async (old) => (await fetch('/v1/account', { headers: { Authorization: `Bearer ${old}` } })).status === 401,
    token,
  );
  await view.page.route('**/v1/account', (route) => route.fulfill({ json: {} }));
  await view.say({ action: 'accessToken', accessToken: token });
  assert.deepEqual(await view.run(SESSION), { token: '', signedOut: true });
  await view.close(REFUSED);
});

test('signing out and in reaches the add-in through every open page', async () => {
  const acting = await panel.open('account', { token: await panel.signIn() });
  const other = new PanelPage(await acting.page.context().newPage(), panel.origin);
  await other.goTo('translate', 'host=excel&pane=xl2&uiLang=en');
  await other.posted();
  await acting.id('sign-out').click();
  assert.deepEqual(await other.postedNow('clearAccessToken'), { action: 'clearAccessToken' });
  await other.id('sign-in').waitFor();
  const token = await panel.signIn('Grace');
  await acting.run(`localStorage.setItem('quorvantis.session', '{"token":"${token}","signedOut":false}')`);
  assert.deepEqual(await other.postedNow('setAccessToken'), { action: 'setAccessToken', accessToken: token });
  await acting.close(REFUSED);
  await other.close(REFUSED);
});

test('a late answer does not bring back the account of who has signed out', async () => {
  const view = await panel.open('support', { token: await panel.signIn() });
  let slow;
  const reached = new Promise((resolve) => {
    slow = resolve;
  });
  await view.page.route('**/v1/account', (route) => slow(route));
  await view.page.goto(`${panel.origin}/panel/excel/account.html?host=excel&pane=xl1&uiLang=en`);
  const route = await reached;
  await view.id('sign-out').waitFor({ state: 'attached' });
  await view.run("document.getElementById('sign-out').click()");
  await view.id('signed-out').waitFor();
  await route.fulfill({ json: { name: 'Ada', email: '', plan: 'x', creditsUsed: 0, creditsLimit: 1 } });
  await view.page.evaluate(() => fetch('/v1/languages'));
  assert.equal(await view.id('account-name').textContent(), '');
  await view.close(REFUSED);
});

test('an account without a name, and the plan, are put in words', async () => {
  const view = await panel.open('account', { token: 'dev-nobody', lang: 'de' });
  await view.id('account').waitFor();
  assert.deepEqual([await view.text('account-name'), await view.text('account-plan')], ['Ohne Namen', 'Entwicklung']);
  await view.close();
});

test('a token that the service has forgotten is dropped before it is needed', async () => {
  const view = await panel.open('translate', { token: 'stranger' });
  await view.id('sign-in').waitFor();
  assert.ok((await view.posted()).some(({ action }) => action === 'clearAccessToken'));
  await view.close(REFUSED);
});

test('the language changes while the page is open, and stays for the next page and a reload', async () => {
  const view = await panel.open('translate');
  await view.run('onError({code:"workbook_busy",message:"m"})');
  assert.match(await view.text('error-text'), /^Another window/);
  await view.say({ action: 'uiLangChanged', uiLang: 'de' });
  await view.page.waitForSelector('html[lang="de"]');
  assert.match(await view.text('error-text'), /^Ein anderes Fenster/);
  assert.equal(await view.text('start'), 'Übersetzen');
  assert.match(await view.id('target').innerText(), /Spanisch/);
  assert.match(view.page.url(), /uiLang=de$/);
  await view.page.reload();
  await view.ready();
  await view.page.getByRole('link', { name: 'Konto' }).click();
  await view.page.waitForSelector('html[lang="de"]:not([data-loading])');
  assert.equal(await view.page.title(), 'Konto · Quorvantis');
  await view.close();
});

test('a language that cannot be loaded leaves a page that works', async () => {
  const view = await panel.open('translate', { lang: 'en' });
  await view.page.route(/languages\/(de|fr|ja)\.js/, (route) => route.abort());
  await view.goTo('translate', 'host=excel&pane=xl1&uiLang=de');
  assert.equal(await view.text('start'), 'Translate');
  await view.postedNow('requestAccessToken');
  await view.say({ action: 'uiLangChanged', uiLang: 'es' });
  await view.page.waitForSelector('html[lang="es"]');
  const failed = view.page.waitForEvent('requestfailed');
  await view.say({ action: 'uiLangChanged', uiLang: 'ja' });
  await failed;
  assert.equal(await view.text('start'), 'Traducir');
  await view.close(REFUSED);
});

test('of two languages asked for at a time the last one stays, whichever is loaded first', async () => {
  const view = await panel.open('translate');
  let slow;
  const reached = new Promise((resolve) => {
    slow = resolve;
  });
  await view.page.route('**/languages/de.js', (route) => slow(route));
  await view.say({ action: 'uiLangChanged', uiLang: 'de' });
  const route = await reached;
  await view.say({ action: 'uiLangChanged', uiLang: 'fr' });
  await view.page.waitForSelector('html[lang="fr"]');
  const answered = view.page.waitForResponse('**/languages/de.js');
  await route.continue();
  await (await answered).finished();
  await view.run("import('/panel/excel/assets/js/languages/de.js').then(() => {})");
  assert.equal(await view.page.locator('html').getAttribute('lang'), 'fr');
  await view.close();
});

test('Arabic is laid out from right to left', async () => {
  const view = await panel.open('translate', { lang: 'ar' });
  assert.equal(await view.page.locator('html').getAttribute('dir'), 'rtl');
  await view.run('onRunStarted({runId:1});onReady({total:4,translatable:4,runId:1})');
  await view.run('onExcelTranslateResumeBlocked({sheetName:"B",sourceSheetName:"Q3 (final)"})');
  const [moved, pause, cancel] = await Promise.all(
    ['run-title', 'resume', 'cancel'].map((id) => view.id(id).boundingBox()),
  );
  assert.ok(pause.x > cancel.x, 'the first button is at the right');
  assert.ok(moved.x >= 0);
  // A name in Latin letters keeps to itself.
  assert.match(await view.text('moved'), /\u2068Q3 \(final\)\u2069/);
  await view.say({ action: 'uiLangChanged', uiLang: 'en' });
  await view.page.waitForSelector('html[dir="ltr"]');
  await view.close();
});

test('support shows the versions, and copies diagnostics without the token', async () => {
  const view = await panel.open('support', { token: 'dev-secret' });
  const { requestId } = await view.postedNow('clientInfoGet');
  const data = {
    version: '1.4.2',
    hostAppName: 'Microsoft Excel',
    hostAppVersion: '16.0',
    os: 'Windows_NT x64',
    installId: 'i',
  };
  await view.run(`QuorvantisTerminology._onResponse(${JSON.stringify({ requestId, ok: true, data })})`);
  await view.id('versions').waitFor();
  assert.deepEqual([await view.text('version'), await view.text('host')], ['1.4.2', 'Microsoft Excel 16.0']);
  const diagnostics = JSON.parse(await view.id('diagnostics').inputValue());
  assert.deepEqual(diagnostics.addin, data);
  assert.deepEqual(diagnostics.service, { origin: panel.origin, answers: true });
  assert.ok(!JSON.stringify(diagnostics).includes('secret'));
  await view.page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await view.id('copy-contact').click();
  await view.id('toast').getByText('Copied').waitFor();
  assert.equal(await view.run('navigator.clipboard.readText()'), 'support@quorvantis.example');
  await view.close();
});

test('support says when no add-in answers', async () => {
  const view = await panel.open('support', { hosted: false });
  await view.id('no-addin').waitFor();
  assert.equal(JSON.parse(await view.id('diagnostics').inputValue()).addin, 'no answer');
  await view.close();
});

test('every page has its own title, and a header that leads to the others', async () => {
  const view = await panel.open('glossary');
  for (const name of Object.keys(PAGE_FILES)) {
    await view.goTo(name, 'host=excel&pane=xl1&uiLang=en');
    assert.equal(await view.page.title(), `${english[`page.${name}`]} · Quorvantis`);
    assert.equal(await view.page.locator('h1').innerText(), english[`page.${name}`], name);
  }
  await view.page.getByRole('link', { name: 'Translate', exact: true }).click();
  await view.page.waitForURL(/\/panel\/excel\?host=excel&pane=xl1/);
  await view.close(REFUSED);
});

test('the pane opens the workspace window, and the window closes itself', async () => {
  const pane = await panel.open('account');
  await pane.posted();
  await pane.id('window').click();
  assert.deepEqual(await pane.posted(), [{ action: 'openWorkspace', page: 'account' }]);
  await pane.run('quorvantisOnWorkspaceOpen()');
  assert.equal(await pane.id('window').getAttribute('aria-label'), 'Show the larger window');
  await pane.id('window').click();
  assert.deepEqual(await pane.posted(), [{ action: 'focusWorkspace' }]);
  await pane.run('quorvantisOnWorkspaceClosed()');
  assert.equal(await pane.id('window').getAttribute('aria-label'), 'Open in a larger window');
  await pane.close();

  const workspace = await panel.open('translate', { query: 'surface=workspace', width: 1000 });
  await workspace.posted();
  await workspace.id('window').click();
  assert.deepEqual(await workspace.posted(), [{ action: 'closeWorkspace' }]);
  await workspace.page.getByRole('link', { name: 'Account' }).click();
  await workspace.page.waitForURL(/surface=workspace/);
  await workspace.close();
});

test('toasts of the add-in are shown on every page', async () => {
  const view = await panel.open('quicktranslate');
  await view.run("QuorvantisTerminology.showToast('Careful', 'warn')");
  assert.equal(await view.text('toast'), 'Careful');
  assert.equal(await view.id('toast').getAttribute('class'), 'toast warn');
  await view.close();
});

const QUESTION = {
  action: 'terminologyResolveRequest',
  requestId: 'term-1',
  glossaryIds: ['g'],
  instructionId: '',
  corpusTexts: ['Tax rate'],
};

test('terminology is resolved by the page of the pane, whichever it is, and not by the workspace', async () => {
  const token = await panel.signIn('Terms');
  const entry = { source: 'tax', target: 'impuesto', note: 'n', enabled: true };
  const stored = await fetch(`${panel.origin}/v1/glossaries/g`, {
    method: 'PUT',
    headers: { Authorization: `Bearer ${token}` },
    body: JSON.stringify({ name: 'G', entries: [entry, { source: 'absent', target: 'x' }] }),
  });
  assert.equal(stored.status, 200);
  for (const name of ['translate', 'pdf2table']) {
    const view = await panel.open(name, { token });
    const asked = view.page.waitForRequest('**/v1/terminology/resolve');
    await view.say(QUESTION);
    assert.deepEqual((await asked).postDataJSON(), {
      glossaryIds: ['g'],
      instructionId: null,
      corpusTexts: ['Tax rate'],
      maxEntries: 200,
    });
    const { result, ...rest } = await view.postedNow('terminologyResolveResult');
    assert.deepEqual(rest, { action: 'terminologyResolveResult', requestId: 'term-1' });
    assert.deepEqual(JSON.parse(result), { entries: [entry], instruction: '' });
    await view.close();
  }
  const workspace = await panel.open('pdf2table', { token, query: 'surface=workspace' });
  await workspace.say(QUESTION);
  await workspace.page.evaluate(() => fetch('/v1/languages'));
  assert.ok((await workspace.posted()).every(({ action }) => action !== 'terminologyResolveResult'));
  await workspace.close();
});

test('terminology that cannot be resolved is answered with code and message', async () => {
  const answers = [
    [(route) => route.continue(), 'unauthorized', 'not signed in'],
    [(route) => route.abort(), 'network_error', /./],
    [(route) => route.fulfill({ status: 502, body: '<html>' }), 'network_error', ''],
    [(route) => route.fulfill({ status: 200, body: '<html>' }), 'network_error', 'The answer holds no entries'],
  ];
  const view = await panel.open('pdf2table', { token: 'stranger' });
  for (const [answer, code, message] of answers) {
    await view.page.unroute('**/v1/terminology/resolve');
    await view.page.route('**/v1/terminology/resolve', answer);
    await view.say(QUESTION);
    const { message: told, ...rest } = await view.postedNow('terminologyResolveResult');
    assert.deepEqual(rest, { action: 'terminologyResolveResult', requestId: 'term-1', code });
    if (message instanceof RegExp) assert.match(told, message);
    else assert.equal(told, message);
  }
  await view.close(/^Failed to load resource/);
});

test('a page that is left answers nothing for the terminology that it breaks off', async () => {
  const view = await panel.open('pdf2table');
  let stalled;
  const reached = new Promise((resolve) => {
    stalled = resolve;
  });
  await view.page.route('**/v1/terminology/resolve', (route) => stalled(route));
  await view.say(QUESTION);
  const route = await reached;
  await view.posted();
  await view.run("dispatchEvent(new PageTransitionEvent('pagehide'))");
  await route.abort();
  await view.page.evaluate(() => fetch('/v1/languages'));
  assert.deepEqual(await view.posted(), []);
  await view.close(/^Failed to load resource/);
});

/** Elements that reach beyond the page, or whose label does not fit into them. */
const OVERFLOWING = `[...document.querySelectorAll('body *')].filter((element) => {
  if (!element.checkVisibility() || element.closest('.offscreen, .sample, option')) return false;
  const { left, right } = element.getBoundingClientRect();
  const labelled =
    element.matches('button, a, label, summary, legend') && getComputedStyle(element).display !== 'inline';
  return right > innerWidth + 1 || left < -1 || (labelled && element.scrollWidth > element.clientWidth + 1);
}).map((element) => element.id || element.tagName + ' ' + element.textContent)`;

test('nothing overflows in the narrowest pane, in any language, on any page', async () => {
  const problems = [];
  const view = await panel.open('translate', { width: 240 });
  for (const lang of LANGUAGES) {
    for (const name of ['translate', 'quicktranslate', 'login', 'account', 'support', 'pdf2table']) {
      await view.goTo(name, `host=excel&pane=xl1&uiLang=${lang}`);
      if (name === 'translate') {
        // All there is at once.
        await view.run(
          "onRunStarted({runId:1});onReady({total:9000,translatable:4000,runId:1});onSheetWriteBlocked({message:'x'})",
        );
        await view.run("for (const element of document.querySelectorAll('main [hidden]')) element.hidden = false");
        await view.run(
          `for (let i = 0; i < 30; i++) onProgress({runId:1,wordIndex:i,total:9000,translatable:4000,skipped:i === 1,
             original:'O' + i,translated:'T'})`,
        );
        await view.run(
          `onSelectionPreview({fragments:2000,chars:90000,rangeAddress:'$A$1:$XFD$1048576',translatedCellsOnSheet:9000,
             translatedCellsInSelection:4000,quickText:'A text'})`,
        );
        await view.run("for (const fold of document.querySelectorAll('details')) fold.open = true");
        await view.page.locator('#unit-rows li').first().waitFor();
      }
      if (name === 'quicktranslate') {
        await view.run("for (const element of document.querySelectorAll('main [hidden]')) element.hidden = false");
        await view.run("document.getElementById('instruction-fields').open = true");
        await view.id('text').fill('Text');
        for (const ok of [true, false]) {
          await view.posted();
          await view.id('start').click();
          const { requestId } = await view.postedNow('quickTranslate');
          await view.run(
            `onQuickTranslateResult({requestId:'${requestId}',ok:${ok},translation:'T',error:'HTTP request failed'})`,
          );
        }
      }
      const wide = await view.run(OVERFLOWING);
      if (wide.length > 0) problems.push(`${lang} ${name}: ${wide.join(', ')}`);
    }
  }
  assert.deepEqual(problems, []);
  await view.close();
});
