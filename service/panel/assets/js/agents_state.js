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

/** The add-in's own texts. @type {Record<string, string>} */
export const ERRORS = {
  端口已被其他表格占用: 'agents.portTaken',
  'MCP server 启动失败': 'agents.startFailed',
  'MCP 服务未能启动': 'agents.startFailed',
  'LLM 代理未能启动': 'agents.proxyFailed',
  '未安装该 Agent': 'agents.notInstalled',
  '未找到该 Agent': 'agents.unknown',
  '无法启动该 Agent': 'agents.launchFailed',
  无法确定用户目录: 'agents.noConfigPath',
  '无法确定该 Agent 的配置文件路径': 'agents.noConfigPath',
  '无法读取该 Agent 的配置文件': 'agents.configUnreadable',
  备份原配置文件失败: 'agents.backupFailed',
  '配置文件的格式无法识别，或 qv-excel 以其他写法定义，文件未修改': 'agents.configUnknown',
  '配置文件正被其他程序修改，请稍候再试': 'agents.configBusy',
  '正在安装 OpenCode，请稍候': 'agents.installing',
  无法创建临时文件: 'agents.folderFailed',
  无法创建安装目录: 'agents.folderFailed',
  '下载 OpenCode 安装包失败': 'agents.downloadFailed',
  '解压 OpenCode 安装包失败': 'agents.packageFailed',
  '安装包中未找到 opencode.exe': 'agents.packageFailed',
  内部错误: 'agents.failed',
  unknown_agent_action: 'agents.notOffered',
};

/** The add-in's texts that end with what they are about. @type {Record<string, string>} */
export const ERROR_STARTS = {
  '旧版本正在使用，未作修改：': 'agents.inUse',
  '没有权限删除旧版本，未作修改：': 'agents.noRights',
  '旧版本未能完全删除：': 'agents.notDeleted',
  '写入配置文件失败 ': 'agents.writeFailed',
};

/**
 * @param {any} data of an answer
 * @returns {{key: string, detail: string} | null} why it came to nothing; null when it did not
 */
export function failureIn(data) {
  const error = typeof data?.error === 'string' ? data.error : '';
  const worked = data?.success === true || data?.ok === true || Array.isArray(data?.agents);
  if (worked && error === '') return null;
  if (Object.hasOwn(ERRORS, error)) return { key: ERRORS[error], detail: '' };
  const start = Object.keys(ERROR_STARTS).find((text) => error.startsWith(text));
  if (start) return { key: ERROR_STARTS[start], detail: error.slice(start.length) };
  return { key: 'agents.failed', detail: error };
}
