/** What the add-in tells about coding agents, made fit for the page. Nothing here touches the page. */

/**
 * @typedef {object} Agent
 * @property {string} id
 * @property {string} name
 * @property {string} path empty when it is not installed
 * @property {string} version empty when unknown
 * @property {boolean} installed
 * @property {boolean} bundled the add-in's own copy
 * @property {boolean} installable by the add-in
 * @property {boolean} mcpConfigured its configuration leads to the workbook
 * @property {string} configPath
 *
 * @typedef {object} Server of the tools that agents work with
 * @property {'self' | 'other' | 'none'} owner
 * @property {boolean} running
 * @property {number} port
 */

/** Where the add-in always listens. */
export const PORT = 7878;

const TEXTS = ['id', 'name', 'path', 'version', 'configPath'];
const FLAGS = ['installed', 'bundled', 'installable', 'mcpConfigured'];

/** @param {any} data of "detectAgents" @returns {Agent[] | null} null when it is none */
export function readAgents(data) {
  if (!Array.isArray(data?.agents)) return null;
  return data.agents
    .filter((agent) => typeof agent?.id === 'string')
    .map((agent) => ({
      ...Object.fromEntries(TEXTS.map((name) => [name, typeof agent[name] === 'string' ? agent[name] : ''])),
      ...Object.fromEntries(FLAGS.map((name) => [name, agent[name] === true])),
    }));
}

const OWNERS = ['self', 'other', 'none'];

/** @param {any} data of the three actions of the server @returns {Server | null} null when it is none */
export function readServer(data) {
  if (!OWNERS.includes(data?.owner)) return null;
  const port = Number.isInteger(data.port) ? data.port : PORT;
  return { owner: data.owner, running: data.running === true, port };
}

/** @param {Server} server @returns {string} where agents find the tools */
export const addressOfServer = ({ port }) => `http://127.0.0.1:${port}/mcp`;

/** The add-in's own texts. */
const ERRORS = {
  端口已被其他表格占用: 'agents.portTaken',
  'MCP server 启动失败': 'agents.startFailed',
  备份原配置文件失败: 'agents.backupFailed',
  '无法确定该 Agent 的配置文件路径': 'agents.noConfigPath',
  '未找到该 Agent': 'agents.unknown',
  unknown_agent_action: 'agents.notOffered',
};

/**
 * @param {any} data of an answer
 * @returns {{key: string, detail: string} | null} why it came to nothing; null when it did not
 */
export function failureIn(data) {
  const error = typeof data?.error === 'string' ? data.error : '';
  const worked = data?.success === true || data?.ok === true || Array.isArray(data?.agents);
  if (worked && error === '') return null;
  return Object.hasOwn(ERRORS, error) ? { key: ERRORS[error], detail: '' } : { key: 'agents.failed', detail: error };
}
