/** Draws the coding agents and the server of tools. */
import { addressOfServer } from './agents_state.js';
import { byId, make } from './dom.js';
import { t } from './i18n.js';

const OWNERS = { self: 'agents.serverSelf', other: 'agents.serverOther', none: 'agents.serverNone' };
const WORKING = {
  installOpencode: 'agents.installing',
  installAgentMcp: 'agents.connecting',
  launchAgent: 'agents.launching',
};

/** Puts text into an element that takes no room without it. */
function say(id, text) {
  byId(id).textContent = text;
  byId(id).hidden = text === '';
}

const wordsOf = (outcome) => (outcome ? outcome.lines.map(({ key, values }) => t(key, values)).join(' ') : '');

export function drawServer({ server, serverBusy, outcomes, slow }) {
  const outcome = outcomes.get('server');
  byId('server').dataset.owner = server?.owner ?? '';
  const unknown = outcome?.failed ? 'agents.serverUnknown' : 'agents.serverChecking';
  byId('server-state').textContent = t(server ? OWNERS[server.owner] : unknown);
  byId('start').hidden = server?.owner === 'self';
  byId('start').textContent = t(server?.owner === 'other' ? 'agents.takeOver' : 'agents.turnOn');
  byId('stop').hidden = server?.owner !== 'self';
  byId('start').disabled = serverBusy;
  byId('stop').disabled = serverBusy;
  if (server) byId('address').textContent = addressOfServer(server);
  say('server-slow', slow.has('server') ? t('agents.slow') : '');
  say('server-problem', wordsOf(outcome));
}

/**
 * @param {object} state
 * @param {Record<'install' | 'connect' | 'launch', (agent: import('./agents_state.js').Agent) => void>} uses
 */
export function drawAgents(state, uses) {
  const { agents, detecting, outcomes, slow } = state;
  const focused = document.activeElement?.dataset.use;
  byId('list').replaceChildren(...(agents ?? []).map((agent) => makeAgent(agent, state, uses)));
  if (focused) byId('list').querySelector(`[data-use="${CSS.escape(focused)}"]:enabled`)?.focus();
  byId('list').setAttribute('aria-busy', String(detecting));
  say('detecting', detecting ? t(slow.has('list') ? 'agents.slow' : 'agents.detecting') : '');
  say('list-problem', wordsOf(outcomes.get('list')));
}

function makeAgent(agent, { working, outcomes, slow }, uses) {
  const title = make('h3', { id: `agent-${agent.id}`, dir: 'auto', textContent: agent.name || agent.id });
  const parts = [make('div', { class: 'row heading' }, [title, ...makeTags(agent)]), makeFacts(agent)];
  const action = working.get(agent.id);
  if (!agent.installed && !agent.installable) {
    parts.push(make('p', { class: 'quiet', textContent: t('agents.installHint') }));
  }
  const buttons = makeButtons(agent, action !== undefined, uses);
  if (buttons.length > 0) parts.push(make('div', { class: 'buttons' }, buttons));
  if (action) parts.push(make('p', { class: 'quiet', textContent: t(WORKING[action]) }));
  if (slow.has(agent.id)) parts.push(make('p', { class: 'quiet', textContent: t('agents.slow') }));
  parts.push(...makeOutcome(outcomes.get(agent.id)));
  return make('li', { 'data-id': agent.id, 'aria-labelledby': title.id }, parts);
}

function makeTags({ installed, bundled, mcpConfigured }) {
  const tags = [makeTag(installed ? 'agents.installed' : 'agents.notInstalled', installed)];
  if (bundled) tags.push(makeTag('agents.bundled', true));
  if (installed) tags.push(makeTag(mcpConfigured ? 'agents.connected' : 'agents.notConnected', mcpConfigured));
  return [make('p', { class: 'tags' }, tags)];
}

const makeTag = (key, good) => make('span', { class: good ? 'tag good' : 'tag', textContent: t(key) });

function makeFacts({ version, path, configPath }) {
  const facts = [
    ['agents.version', version],
    ['agents.path', path],
    ['agents.config', configPath],
  ].filter(([, value]) => value !== '');
  return make(
    'dl',
    { class: 'facts wide' },
    facts.map(([key, value]) =>
      make('div', {}, [make('dt', { textContent: t(key) }), make('dd', { dir: 'ltr', textContent: value })]),
    ),
  );
}

function makeButtons(agent, busy, uses) {
  const { installed, installable, mcpConfigured } = agent;
  const offers = [];
  if (installable && !installed) offers.push(['install', 'agents.install']);
  if (installed) {
    offers.push(['connect', mcpConfigured ? 'agents.connectAgain' : 'agents.connect'], ['launch', 'agents.launch']);
  }
  return offers.map(([use, key]) => {
    const button = make('button', {
      type: 'button',
      disabled: busy,
      textContent: t(key),
      'data-use': `${agent.id} ${use}`,
      'aria-describedby': `agent-${agent.id}`,
    });
    button.addEventListener('click', () => uses[use](agent));
    return button;
  });
}

const makeOutcome = (outcome) =>
  (outcome?.lines ?? []).map(({ key, values }) =>
    make('p', { class: outcome.failed ? 'problem' : '', dir: 'auto', textContent: t(key, values) }),
  );
