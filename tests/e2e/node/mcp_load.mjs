// Loads the tool server for measurements. Reads one JSON object from standard input:
// {"url", "sessionCalls": n, "loads": [{"name", "path", "body", "seconds" or "amount", "connections"}],
//  "calls": [{"name", "tool", "arguments"}]}
// and prints {"loads": [{"name", "perSecond", "failed", "p50", "p99"}], "calls": [{"name", "p50", "p99"}]}: requests a second as the
// load program counts them, and milliseconds of single requests, one after the other: of the calls through the official
// client, of the loads by a bare connection.

import { Agent as HttpAgent, request } from "node:http";
import { text } from "node:stream/consumers";
import autocannon from "autocannon";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StreamableHTTPClientTransport } from "@modelcontextprotocol/sdk/client/streamableHttp.js";

const WARM_UP = 20;
const plan = JSON.parse(await text(process.stdin));
const connection = new HttpAgent({ keepAlive: true, maxSockets: 1 });

function bareRequest({ path, body }) {
  return new Promise((resolve, reject) => {
    const sent = request(plan.url + path, { method: "POST", agent: connection }, (answer) => {
      answer.resume().on("end", resolve).on("error", reject);
    });
    sent.on("error", reject).end(body);
  });
}

async function latencies(once) {
  const times = [];
  for (let i = -WARM_UP; i < plan.sessionCalls; i += 1) {
    const begin = performance.now();
    await once();
    if (i >= 0) times.push(performance.now() - begin);
  }
  times.sort((a, b) => a - b);
  return { p50: times[Math.floor(times.length * 0.5)], p99: times[Math.floor(times.length * 0.99)] };
}

async function load({ name, path, body, seconds, amount, connections }) {
  const extent = amount ? { amount } : { duration: seconds };
  const result = await autocannon({ url: plan.url + path, method: "POST", body, connections, ...extent });
  return { name, perSecond: result.requests.total / result.duration, failed: result.errors + result.non2xx };
}

const client = new Client({ name: "quorvantis-bench", version: "1.0.0" });
await client.connect(new StreamableHTTPClientTransport(new URL(`${plan.url}/mcp`)));

const loads = [];
for (const each of plan.loads) {
  loads.push({ ...(await load(each)), ...(each.amount ? {} : await latencies(() => bareRequest(each))) });
}
const calls = [];
for (const { name, tool, arguments: members } of plan.calls) {
  calls.push({ name, ...(await latencies(() => client.callTool({ name: tool, arguments: members }))) });
}
await client.close();
connection.destroy();
process.stdout.write(JSON.stringify({ loads, calls }));
