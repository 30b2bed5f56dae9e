/** Coding agents: which are here, how they get to the workbook, and the server that they reach it by. */
import { addressOfServer, failureIn, PORT, readAgents, readServer } from './agents_state.js';
import { drawAgents, drawServer } from './agents_view.js';
import { isHosted, request } from './bridge.js';
import { byId, copyText } from './dom.js';
import { onLanguage, t } from './i18n.js';
import { openPage, showToast } from './page.js';

/** After this time the page says that it takes long. It waits on: an answer counts whenever it comes. */
const SLOW_MS = 30000;

const state = {
  /** @type {import('./agents_state.js').Agent[] | null} null before the first answer */
  agents: null,
  /** @type {import('./agents_state.js').Server | null} */
  server: null,
  detecting: false,
  /** What is under way with an agent, by its id: an action. @type {Map<string, string>} */
  working: new Map(),
  /** What came of the last action, by the agent's id or "server" or "list". @type {Map<string, Outcome>} */
  outcomes: new Map(),
  serverBusy: false,
  /** Of what is under way, what takes long: ids as above. @type {Set<string>} */
  slow: new Set(),
};

/** @typedef {{failed: boolean, lines: {key: string, values: object}[]}} Outcome */

function draw() {
  byId('no-addin').hidden = isHosted();
  byId('content').hidden = !isHosted();
  byId('again').disabled = state.detecting;
  drawServer(state);
  drawAgents(state, { install, connect, launch });
}

/** Newer questions of the same kind make older answers useless. */
const asked = new Map();

/**
 * Asks the add-in and waits for as long as it takes.
 * @param {string} place that says so when it takes long
 * @returns {Promise<any>} the answer's data, of refusals too; undefined when a newer question was asked meanwhile
 */
async function ask(place, action, fields = {}) {
  const number = (asked.get(place) ?? 0) + 1;
  asked.set(place, number);
  const timer = setTimeout(() => {
    state.slow.add(place);
    draw();
  }, SLOW_MS);
  const data = await request(action, fields, { limitMs: Infinity }).catch((error) => error.data ?? {});
  clearTimeout(timer);
  if (asked.get(place) !== number) return undefined;
  state.slow.delete(place);
  return data;
}

function tell(place, data, lines) {
  const failure = failureIn(data);
  const outcome = failure
    ? { failed: true, lines: [{ key: failure.key, values: { message: failure.detail } }] }
    : { failed: false, lines };
  state.outcomes.set(place, outcome);
  byId('announcer').textContent = outcome.lines.map(({ key, values }) => t(key, values)).join(' ');
}

async function detect() {
  state.detecting = true;
  draw();
  const data = await ask('list', 'detectAgents');
  if (data === undefined) return;
  state.detecting = false;
  const agents = readAgents(data);
  if (agents) {
    state.agents = agents;
    state.outcomes.delete('list');
  } else {
    tell('list', data, []);
  }
  draw();
}

/** What the add-in does with one agent, one thing at a time. */
async function work(agent, action, fields, linesOf) {
  if (state.working.has(agent.id)) return;
  state.working.set(agent.id, action);
  state.outcomes.delete(agent.id);
  draw();
  const data = await ask(agent.id, action, fields);
  state.working.delete(agent.id);
  tell(agent.id, data, linesOf(data));
  draw();
  // What the list says may have changed with it.
  await Promise.all([detect(), askServer('getMcpServerStatus')]);
}

const line = (key, path) => ({ key, values: { path } });

const install = (agent) =>
  work(agent, 'installOpencode', {}, ({ exePath }) => [line('agents.installDone', exePath ?? '')]);

const connect = (agent) =>
  work(agent, 'installAgentMcp', { id: agent.id }, ({ configPath, backupPath }) => [
    line('agents.connectDone', configPath ?? ''),
    ...(backupPath ? [line('agents.backup', backupPath)] : []),
  ]);

const launch = (agent) =>
  work(agent, 'launchAgent', { id: agent.id }, () => [{ key: 'agents.launchDone', values: {} }]);

async function askServer(action) {
  const changes = action !== 'getMcpServerStatus';
  if (state.serverBusy && !changes) return;
  state.serverBusy = changes;
  if (changes) draw();
  const data = await ask('server', action);
  if (data === undefined) return;
  state.serverBusy = false;
  state.server = readServer(data) ?? state.server;
  if (changes && !failureIn(data)) state.outcomes.delete('server');
  else if (changes || !readServer(data)) tell('server', data, []);
  draw();
}

byId('again').addEventListener('click', () => {
  byId('announcer').textContent = t('agents.detecting');
  void detect();
});
byId('start').addEventListener('click', () => void askServer('ensureMcpServer'));
byId('stop').addEventListener('click', () => void askServer('stopMcpServer'));
byId('copy').addEventListener('click', async () => {
  const copied = await copyText(byId('address').textContent);
  showToast(t(copied ? 'common.copied' : 'common.notCopied'), copied ? 'info' : 'warn');
});
// Another window may have taken it over meanwhile.
addEventListener('focus', () => isHosted() && void askServer('getMcpServerStatus'));
byId('address').textContent = addressOfServer({ port: PORT });
onLanguage(draw);
await openPage();
if (isHosted()) await Promise.all([askServer('getMcpServerStatus'), detect()]);
