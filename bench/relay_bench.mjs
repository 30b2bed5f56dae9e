/**
 * What the proxy for language models adds to a stream of events: to its first byte, to each chunk, and to a large
 * stream's throughput. The same stream comes directly, through nginx where its program is given, and through the
 * proxy, in turns. Prints rows like the other programs.
 *
 *   node relay_bench.mjs WINE_SCRIPT PROXY_PROGRAM [NGINX_PROGRAM]
 */
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import http from 'node:http';
import net from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { setTimeout as sleep } from 'node:timers/promises';
import { Worker, isMainThread, parentPort } from 'node:worker_threads';

const ROUNDS = 4;
const CHUNKS_A_ROUND = 100;
/** About the rhythm of a fast model. */
const CHUNK_PAUSE_MS = 5;
const FIRST_BYTES_A_ROUND = 15;
const FLOOD_BYTES = 50 * 1024 * 1024;
const FLOOD_PIECE = Buffer.alloc(64 * 1024, 'data: word word word word word\n\n');
const ANSWER_LIMIT_MS = 30000;
const START_TRIES = 200;
const START_PAUSE_MS = 25;

const now = () => Number(process.hrtime.bigint() / 1000n);

// The source of the stream, on a thread of its own, so that it is not held up by who reads it.

function sayChunks(response) {
  let left = CHUNKS_A_ROUND;
  const timer = setInterval(() => {
    response.write(`data: {"us":${now()},"words":"about as much as a model says at a time, in the usual JSON"}\n\n`);
    left -= 1;
    if (left > 0) return;
    clearInterval(timer);
    response.end();
  }, CHUNK_PAUSE_MS);
  response.on('close', () => clearInterval(timer));
}

async function sayFlood(response) {
  for (let left = FLOOD_BYTES; left > 0; left -= FLOOD_PIECE.length) {
    if (!response.write(FLOOD_PIECE)) await once(response, 'drain');
  }
  response.end();
}

const TELLERS = { chunks: sayChunks, flood: sayFlood, first: (response) => response.end('data: 1\n\n') };

async function serve() {
  const server = http.createServer(async (request, response) => {
    let wanted = '';
    for await (const piece of request) wanted += piece;
    response.socket.setNoDelay(true);
    response.setHeader('Content-Type', 'text/event-stream');
    // Ends with its connection: Wine hands the last byte of a chunk on with the next chunk only.
    response.removeHeader('Transfer-Encoding');
    response.shouldKeepAlive = false;
    response.flushHeaders();
    await TELLERS[JSON.parse(wanted).tell](response);
  });
  server.listen(0, '127.0.0.1');
  await once(server, 'listening');
  parentPort.postMessage(server.address().port);
}

// Who reads it.

/** Asks for a stream and hands each piece that comes to `take`; ends with the connection. */
async function read({ port, key }, tell, take) {
  const body = JSON.stringify({ tell, stream: true });
  const socket = net.connect(port, '127.0.0.1').setNoDelay(true);
  socket.setTimeout(ANSWER_LIMIT_MS, () => socket.destroy(new Error('the stream has stopped')));
  socket.on('data', take);
  socket.write(
    `POST /v1/chat/completions HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer ${key}\r\n` +
      `Connection: close\r\nContent-Length: ${body.length}\r\n\r\n${body}`,
  );
  await once(socket, 'close');
}

/** Microseconds from the moment that each chunk was said to the moment that it came. */
async function chunkDelays(way) {
  const delays = [];
  await read(way, 'chunks', (piece) => {
    for (const [, said] of piece.toString('latin1').matchAll(/"us":(\d+)/g)) delays.push(now() - Number(said));
  });
  if (delays.length !== CHUNKS_A_ROUND) throw new Error(`${delays.length} chunks came`);
  return delays;
}

/** Microseconds from the request to the answer's first byte. */
async function firstByte(way) {
  const start = now();
  let first = 0;
  await read(way, 'first', () => (first ||= now() - start));
  return first;
}

/** Megabytes of 10^6 bytes a second. */
async function throughput(way) {
  const start = now();
  let bytes = 0;
  await read(way, 'flood', (piece) => (bytes += piece.length));
  if (bytes < FLOOD_BYTES) throw new Error(`${bytes} bytes came`);
  return bytes / (now() - start);
}

async function measure(ways) {
  for (const way of ways) Object.assign(way, { delays: [], firsts: [], rates: [] });
  for (const way of ways) await firstByte(way);
  for (let round = 0; round < ROUNDS; round += 1) {
    for (const way of ways) {
      way.delays.push(...(await chunkDelays(way)));
      for (let i = 0; i < FIRST_BYTES_A_ROUND; i += 1) way.firsts.push(await firstByte(way));
      way.rates.push(await throughput(way));
    }
  }
}

function quantile(values, share) {
  return [...values].sort((a, b) => a - b)[Math.floor(share * values.length)];
}

function print([direct, ...relays]) {
  const row = (name, value, unit) => process.stdout.write(`${name}\t${value.toFixed(2)}\t${unit}\n`);
  const added = (way, of, share) => (quantile(way[of], share) - quantile(direct[of], share)) / 1000;
  for (const [of, what] of Object.entries({ firsts: 'first byte', delays: 'each chunk' })) {
    for (const way of relays) {
      row(`stream through ${way.name}, ${what}, added`, added(way, of, 0.5), 'ms');
      row(`stream through ${way.name}, ${what}, added, 99 %`, added(way, of, 0.99), 'ms');
    }
  }
  for (const way of [direct, ...relays]) row(`stream of 50 MiB, ${way.name}`, quantile(way.rates, 0.5), 'MB/s');
}

// What stands between.

async function freePort() {
  const server = net.createServer().listen(0, '127.0.0.1');
  await once(server, 'listening');
  const { port } = server.address();
  server.close();
  await once(server, 'close');
  return port;
}

async function startNginx(program, sourcePort, folder) {
  const port = await freePort();
  const temporary = ['client_body', 'proxy', 'fastcgi', 'uwsgi', 'scgi'];
  const config = `
    daemon off; master_process off; pid ${folder}/pid; error_log stderr; events {}
    http {
      access_log off;
      ${temporary.map((of) => `${of}_temp_path ${folder}/${of};`).join(' ')}
      server {
        listen 127.0.0.1:${port};
        location / { proxy_pass http://127.0.0.1:${sourcePort}; proxy_buffering off; proxy_http_version 1.1; }
      }
    }`;
  writeFileSync(join(folder, 'nginx.conf'), config);
  const child = spawn(program, ['-p', folder, '-c', join(folder, 'nginx.conf')], { stdio: 'ignore' });
  child.on('error', () => {});
  for (let tries = 0; tries < START_TRIES; tries += 1) {
    if (await accepts(port)) return { name: 'nginx', port, child, end: () => child.kill() };
    await sleep(START_PAUSE_MS);
  }
  child.kill();
  throw new Error('nginx did not start');
}

/** Whether somebody listens on the port. */
function accepts(port) {
  return new Promise((resolve) => {
    const probe = net.connect(port, '127.0.0.1', () => resolve(true)).on('error', () => resolve(false));
    probe.on('connect', () => probe.destroy());
  });
}

async function startProxy(wine, program, sourcePort) {
  const port = await freePort();
  const stdio = ['pipe', 'pipe', 'inherit'];
  const child = spawn(wine, [program, `http://127.0.0.1:${sourcePort}`, String(port)], { stdio });
  const lines = createInterface({ input: child.stdout });
  child.stdin.write('prepare bench\n');
  const [line] = await once(lines, 'line');
  if (!line.startsWith('key ')) throw new Error(`the proxy says: ${line}`);
  return { name: 'the proxy', port, key: line.slice(4).trim(), child, end: () => child.stdin.end() };
}

async function main([wine, proxyProgram, nginxProgram]) {
  const source = new Worker(new URL(import.meta.url));
  const [sourcePort] = await once(source, 'message');
  const folder = mkdtempSync(join(tmpdir(), 'relay-bench-'));
  const relays = [];
  try {
    if (nginxProgram) relays.push(await startNginx(nginxProgram, sourcePort, folder));
    relays.push(await startProxy(wine, proxyProgram, sourcePort));
    const ways = [{ name: 'directly', port: sourcePort }, ...relays];
    await measure(ways);
    print(ways);
    process.stdout.write('end\n');
  } finally {
    for (const { child, end } of relays) {
      end();
      if (child.exitCode === null) await once(child, 'exit');
    }
    await source.terminate();
    rmSync(folder, { recursive: true });
  }
}

await (isMainThread ? main(process.argv.slice(2)) : serve());
