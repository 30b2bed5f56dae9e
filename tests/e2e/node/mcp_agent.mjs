// An agent of the official client library, driven by JSON lines: each line names a method of the client and its
// argument, each answer is {"result":…} or {"error":…}. Ends with its input.

import { createInterface } from "node:readline";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StreamableHTTPClientTransport } from "@modelcontextprotocol/sdk/client/streamableHttp.js";

const client = new Client({ name: "quorvantis-test-agent", version: "1.0.0" });
const failures = [];
client.onerror = (error) => failures.push(error.message);

const methods = {
  async connect({ url }) {
    await client.connect(new StreamableHTTPClientTransport(new URL(url)));
    return { server: client.getServerVersion(), instructions: client.getInstructions(), failures };
  },
  list: () => client.listTools(),
  call: ({ timeoutMs = 60_000, ...call }) => client.callTool(call, undefined, { timeout: timeoutMs }),
};

for await (const line of createInterface({ input: process.stdin })) {
  const { method, ...argument } = JSON.parse(line);
  let answer;
  try {
    answer = { result: await methods[method](argument) };
  } catch (error) {
    answer = { error: error.message };
  }
  process.stdout.write(`${JSON.stringify(answer)}\n`);
}
await client.close();
