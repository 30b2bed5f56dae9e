#!/usr/bin/env node
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { parseArgs } from 'node:util';

import { buildApp } from './app.js';
import { readLanguageModel } from './language_model.js';
import { logLine } from './log.js';
import { isLoopback } from './own_machine.js';
import { createEngine, ENGINE_NAMES } from './translate/engines.js';

const USAGE = `usage: node server.js [--port N] [--host ADDRESS] [--engine ${ENGINE_NAMES.join('|')}] [--tls FOLDER]
       [--faults] [--leash]
  --port    0 takes a free one (default 8080)
  --host    address to listen on (default 127.0.0.1); developers sign in on a loopback address only
  --tls     serves https with localhost.pem and localhost.key of this folder
  --engine  default: openai when QV_LLM_BASE_URL is set, else apertium
  --faults  adds /control/…: faults on demand and a record of the requests
  --leash   ends when standard input closes, so that the service never outlives its parent
The environment names the language model of the chat and of coding agents, any endpoint that speaks OpenAI's chat
completions: QV_LLM_BASE_URL (such as http://127.0.0.1:11434/v1), QV_LLM_MODEL, and QV_LLM_API_KEY where one is needed`;

/** How long requests in flight may delay the end. */
const STOP_LIMIT_MS = 2000;

function readOptions() {
  const { values } = parseArgs({
    options: {
      port: { type: 'string', default: '8080' },
      host: { type: 'string', default: '127.0.0.1' },
      engine: { type: 'string', default: process.env.QV_LLM_BASE_URL ? 'openai' : 'apertium' },
      tls: { type: 'string' },
      faults: { type: 'boolean', default: false },
      leash: { type: 'boolean', default: false },
    },
  });
  if (!/^\d{1,5}$/.test(values.port) || Number(values.port) > 65535) throw new Error(`no port: ${values.port}`);
  if (!ENGINE_NAMES.includes(values.engine)) throw new Error(`no engine: ${values.engine}`);
  return { ...values, port: Number(values.port) };
}

/** Key and certificates for https, or nothing for http. */
function readCertificates(folder) {
  if (!folder) return null;
  return { key: readFileSync(join(folder, 'localhost.key')), cert: readFileSync(join(folder, 'localhost.pem')) };
}

async function main() {
  let options;
  try {
    options = readOptions();
  } catch (error) {
    process.stderr.write(`${error.message}\n${USAGE}\n`);
    process.exit(2);
  }

  const engine = await createEngine(options.engine);
  const app = buildApp({
    engine,
    faults: options.faults,
    devSignIn: isLoopback(options.host),
    languageModel: readLanguageModel(process.env),
    https: readCertificates(options.tls),
  });

  let stopping = false;
  const stop = async () => {
    if (stopping) return;
    stopping = true;
    setTimeout(() => process.exit(0), STOP_LIMIT_MS).unref();
    await app.close();
    process.exit(0);
  };
  process.on('SIGTERM', stop);
  process.on('SIGINT', stop);
  if (options.leash) {
    process.stdin.on('end', stop).on('close', stop).on('error', stop).resume();
  }

  await app.listen({ host: options.host, port: options.port });
  // The certificate is for the name, not for the address.
  const origin = options.tls ? 'https://localhost' : `http://${options.host}`;
  logLine(`listening ${origin}:${app.server.address().port}`);
}

main().catch((error) => {
  process.stderr.write(`${error.message}\n`);
  process.exit(1);
});
