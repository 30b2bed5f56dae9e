/** The page of coding agents in a real browser, with the add-in played by the test. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, test } from 'node:test';

import { failureIn } from '../panel/assets/js/agents_state.js';
import english from '../panel/assets/js/languages/en.js';
import { PanelBrowser } from '../testing/panel_browser.js';

let panel;
before(async () => {
  panel = await PanelBrowser.start();
});
after(() => panel.close());

const OPENCODE = {
  id: 'opencode',
  name: 'OpenCode (Quorvantis)',
  command: 'opencode',
  path: '',
  version: '',
  installed: false,
  bundled: false,
  installable: true,
  mcpConfigured: false,
  configPath: 'C:\\Users\\Ada\\Quorvantis\\opencode-workspace\\opencode.json',
};
const CLAUDE = {
  ...OPENCODE,
  id: 'claude',
  name: 'Claude Code',
  path: 'C:\\Tools\\claude.cmd',
  version: '2.0.1 (Claude Code)',
  installed: true,
  installable: false,
  configPath: 'C:\\Users\\Ada\\.claude.json',
};
const CODEX = { ...OPENCODE, id: 'codex', name: 'Codex CLI', installable: false };
const AGENTS = { agents: [OPENCODE, CLAUDE, CODEX] };
const server = (owner) => ({ ok: true, owner, running: owner === 'self', port: 7878 });

/** What is asked of the add-in next, by its action. */
async function take(view, ...actions) {
  const found = {};
  for (let left = actions; left.length > 0; left = actions.filter((action) => !found[action])) {
    await view.page.waitForFunction(() => window.posted.some((text) => text.includes('"requestId"')));
    for (const message of await view.posted()) found[message.action] = message;
  }
  return actions.map((action) => found[action]);
}

async function answerBoth(view, agents = AGENTS, owner = 'none') {
  const [status, detect] = await take(view, 'getMcpServerStatus', 'detectAgents');
  await view.answer(status, server(owner));
  await view.answer(detect, agents);
}

async function openAgents(options) {
  const view = await panel.open('agents', options);
  await answerBoth(view);
  await card(view, 'claude').waitFor();
  return view;
}

const card = (view, id) => view.page.locator(`#list li[data-id="${id}"]`);
const press = (view, id, name) => card(view, id).getByRole('button', { name, exact: true }).click();
const names = (view, id) => card(view, id).getByRole('button').allInnerTexts();

test('each agent shows what it is, and offers what can be done', async () => {
  const view = await openAgents();
  assert.deepEqual(await names(view, 'opencode'), ['Install']);
  assert.deepEqual(await names(view, 'claude'), ['Connect', 'Launch']);
  assert.deepEqual(await names(view, 'codex'), []);
  const claude = await card(view, 'claude').innerText();
  for (const part of ['Installed', 'Not connected', '2.0.1 (Claude Code)', 'C:\\Tools\\claude.cmd', '.claude.json']) {
    assert.ok(claude.includes(part), part);
  }
  assert.match(await card(view, 'codex').innerText(), /Not installed[^]*its maker/);
  await view.id('again').click();
  const own = { ...OPENCODE, installed: true, bundled: true };
  await view.answer(await view.postedNow('detectAgents'), { agents: [own, { ...CLAUDE, mcpConfigured: true }] });
  await card(view, 'claude').getByText('Connected', { exact: true }).waitFor();
  assert.deepEqual(await names(view, 'claude'), ['Connect again', 'Launch']);
  assert.match(await card(view, 'opencode').innerText(), /Installed\s+Add-in’s own copy/);
  await view.close();
});

test('connecting posts the id, and tells where the earlier configuration is', async () => {
  const view = await openAgents();
  await press(view, 'claude', 'Connect');
  const { requestId, ...message } = await view.postedNow('installAgentMcp');
  assert.deepEqual(message, { action: 'installAgentMcp', id: 'claude' });
  assert.ok(await card(view, 'claude').getByRole('button', { name: 'Launch' }).isDisabled());
  const backupPath = `${CLAUDE.configPath}.backup.20260102_030405`;
  await view.answer({ requestId }, { success: true, configPath: CLAUDE.configPath, backupPath });
  await answerBoth(view, { agents: [{ ...CLAUDE, mcpConfigured: true }] });
  await card(view, 'claude').getByText(`The earlier configuration is kept in ${backupPath}`).waitFor();
  assert.match(await view.id('announcer').innerText(), /^Connected\. Configuration: C:\\/);
  await view.close();
});

test('every error that the protocol has is said in words', () => {
  const protocol = readFileSync(new URL('../../docs/protocol.md', import.meta.url), 'utf8');
  const from = protocol.indexOf('What is asked about agents');
  const section = protocol.slice(from, protocol.indexOf('A start message carries'));
  const errors = [...section.matchAll(/"([^"]*[\u4e00-\u9fff][^"]*)"/g)].map(([, error]) => error.replace('…', ''));
  assert.ok(errors.length > 20);
  for (const error of errors) {
    const { key } = failureIn({ success: false, error });
    assert.ok(key !== 'agents.failed' || error === '内部错误', error);
  }
});

test('what does not work is said in words', async () => {
  const cases = [
    [{ success: false, error: '备份原配置文件失败' }, english['agents.backupFailed']],
    [{ success: false, error: '无法确定该 Agent 的配置文件路径' }, english['agents.noConfigPath']],
    [{ success: false, error: '未找到该 Agent' }, english['agents.unknown']],
    [{ error: 'unknown_agent_action' }, english['agents.notOffered'], false],
    [{ success: false, error: '写入配置文件失败 (5)' }, 'The configuration could not be written. (5)'],
    [{ success: false, error: 'disk full' }, 'It did not work. disk full'],
    [null, 'It did not work.', false],
  ];
  const view = await openAgents();
  for (const [data, words, ok = true] of cases) {
    await press(view, 'claude', 'Connect');
    await view.answer(await view.postedNow('installAgentMcp'), data, ok);
    await answerBoth(view);
    assert.equal((await card(view, 'claude').locator('.problem').innerText()).trim(), words);
  }
  await view.close();
});

test('an answer counts however late it comes, and other agents wait for nobody', async () => {
  const view = await panel.open('agents');
  await view.page.clock.install();
  await view.page.reload();
  await view.ready();
  await answerBoth(view);
  await press(view, 'opencode', 'Install');
  const install = await view.postedNow('installOpencode');
  assert.deepEqual(Object.keys(install).sort(), ['action', 'requestId']);
  await view.page.clock.fastForward(29000);
  assert.doesNotMatch(await card(view, 'opencode').innerText(), /longer than usual/);
  await view.page.clock.fastForward(2000);
  assert.match(await card(view, 'opencode').innerText(), /longer than usual/);
  await press(view, 'claude', 'Launch');
  const launch = await view.postedNow('launchAgent');
  assert.equal(launch.id, 'claude');
  await view.answer(launch, { success: true });
  await answerBoth(view);
  assert.match(await card(view, 'claude').innerText(), /window of its own/);
  await view.page.clock.fastForward(3600000);
  await view.answer(install, { success: true, exePath: 'C:\\Q\\opencode.exe' });
  await answerBoth(view);
  assert.match(await card(view, 'opencode').innerText(), /Installed: C:\\Q\\opencode\.exe/);
  assert.doesNotMatch(await card(view, 'opencode').innerText(), /longer than usual/);
  await view.close();
});

test('of two detections the newer one counts', async () => {
  const view = await openAgents();
  await press(view, 'claude', 'Launch');
  await view.answer(await view.postedNow('launchAgent'), { success: true });
  const [, older] = await take(view, 'getMcpServerStatus', 'detectAgents');
  await press(view, 'claude', 'Connect');
  await view.answer(await view.postedNow('installAgentMcp'), { success: true, configPath: 'C:\\c' });
  const [, newer] = await take(view, 'getMcpServerStatus', 'detectAgents');
  await view.answer(newer, { agents: [{ ...CLAUDE, mcpConfigured: true }] });
  await view.answer(older, { agents: [CLAUDE] });
  assert.deepEqual(await names(view, 'claude'), ['Connect again', 'Launch']);
  await view.close();
});

test('the server is turned on, taken over and turned off, and its address copied', async () => {
  const view = await openAgents();
  const state = () => view.text('server-state');
  assert.equal(await state(), english['agents.serverNone']);
  await view.page.getByRole('button', { name: 'Turn on' }).click();
  assert.ok(await view.id('start').isDisabled());
  await view.answer(await view.postedNow('ensureMcpServer'), { ...server('self'), mode: 'external' });
  assert.equal(await state(), english['agents.serverSelf']);
  await view.page.getByRole('button', { name: 'Turn off' }).click();
  await view.answer(await view.postedNow('stopMcpServer'), { ok: true, owner: 'none', running: false, port: 7878 });
  assert.equal(await state(), english['agents.serverNone']);
  await view.run("dispatchEvent(new Event('focus'))");
  await view.answer(await view.postedNow('getMcpServerStatus'), server('other'));
  assert.equal(await state(), english['agents.serverOther']);
  await view.page.getByRole('button', { name: 'Take over' }).click();
  const taken = { ok: false, owner: 'other', running: false, error: '端口已被其他表格占用' };
  await view.answer(await view.postedNow('ensureMcpServer'), taken, false);
  assert.equal(await view.text('server-problem'), english['agents.portTaken']);
  await view.id('start').click();
  const failed = { ok: false, owner: 'none', running: false, error: 'MCP server 启动失败' };
  await view.answer(await view.postedNow('ensureMcpServer'), failed, false);
  assert.equal(await view.text('server-problem'), english['agents.startFailed']);
  await view.page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await view.id('copy').click();
  await view.id('toast').getByText('Copied').waitFor();
  assert.equal(await view.run('navigator.clipboard.readText()'), 'http://127.0.0.1:7878/mcp');
  await view.close();
});

test('an add-in that does not know agents, and none at all, are told of', async () => {
  const view = await panel.open('agents');
  const [status, detect] = await take(view, 'getMcpServerStatus', 'detectAgents');
  for (const asked of [status, detect]) await view.answer(asked, { error: 'unknown_agent_action' }, false);
  assert.equal(await view.text('list-problem'), english['agents.notOffered']);
  assert.equal(await view.text('server-state'), english['agents.serverUnknown']);
  await view.close();
  const bare = await panel.open('agents', { hosted: false });
  assert.equal(await bare.text('no-addin'), english['reason.host']);
  await bare.close();
});

test('the language changes live, with what is under way', async () => {
  const view = await openAgents();
  await press(view, 'opencode', 'Install');
  await view.say({ action: 'uiLangChanged', uiLang: 'ar' });
  await view.page.waitForSelector('html[dir="rtl"]');
  const arabic = (await import('../panel/assets/js/languages/ar.js')).default;
  assert.match(await card(view, 'opencode').innerText(), new RegExp(arabic['agents.installing']));
  await view.close();
});
