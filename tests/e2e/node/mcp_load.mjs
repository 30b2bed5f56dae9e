// Loads the tool server for measurements. Reads one JSON object from standard input:
// {"url", "loads": [{"name", "path", "body", "seconds" or "amount", "connections", "times"}],
//  "calls": [{"name", "tool", "arguments", "times"}]}
// and prints {"loads": [{"name", "perSecond", "failed", "p50", "p99"}], "calls": [{"name", "p50", "p99"}]}: requests a second as the
// load program counts them, and milliseconds of single requests, one after the other: of the calls through the official
// client, of the loads by a bare connection, in turn, so that a busy moment of the machine meets all of them. The first
// of ten is not counted.

import { Agent as HttpAgent, request } from "node:http";
import { text } from "node:stream/consumers";
import autocannon from "autocannon";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StreamableHTTPClientTransport } from "@modelcontextprotocol/sdk/client/streamableHttp.js";

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

/** Runs each once in every round; the latencies of each. */
async function latencies(rounds, each) {
  const times = each.map(() => []);
  for (let round = -Math.ceil(rounds / 10); round < rounds; round += 1) {
    for (const [index, once] of each.entries()) {
      const begin = performance.now();
      await once();
      if (round >= 0) times[index].push(performance.now() - begin);
    }
  }
  return times.map((all) => {
    const sorted = all.sort((a, b) => a - b);
    return { p50: sorted[Math.floor(sorted.length * 0.5)], p99: sorted[Math.floor(sorted.length * 0.99)] };
  });
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
  loads.push(await load(each));
}
const rounds = plan.loads[0]?.times ?? 0;
const single = await latencies(rounds, plan.loads.map((each) => () => bareRequest(each)));
loads.forEach((each, index) => Object.assign(each, single[index]));
const calls = [];
for (const { name, tool, arguments: members, times } of plan.calls) {
  const once = async () => {
    const said = (await client.callTool({ name: tool, arguments: members })).content[0].text;
    if (said.startsWith('{"error"')) throw new Error(`${name}: ${said}`);
  };
  calls.push({ name, ...(await latencies(times, [once]))[0] });
}
await client.close();
connection.destroy();
process.stdout.write(JSON.stringify({ loads, calls }));
