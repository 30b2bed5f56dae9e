"""Coding agents for the tests: the official client library in a process of its own, and bare HTTP."""

import json
import select
import subprocess
import urllib.request
from pathlib import Path

NODE = Path(__file__).resolve().parent / "node"
URL = "http://127.0.0.1:7878/mcp"


class Agent:
    """A client of the tool server. Use it as a context manager."""

    def __init__(self):
        self._process = subprocess.Popen(["node", NODE / "mcp_agent.mjs"], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        try:
            self._process.wait(10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()

    def begin(self, method, **argument):
        self._process.stdin.write(json.dumps({"method": method, **argument}) + "\n")
        self._process.stdin.flush()

    def end(self, timeout=90):
        """The result of what was begun; raises with the client's own words when it failed."""
        assert select.select([self._process.stdout], [], [], timeout)[0], "the agent got no answer"
        answer = json.loads(self._process.stdout.readline())
        if "error" in answer:
            raise RuntimeError(answer["error"])
        return answer["result"]

    def ask(self, method, **argument):
        self.begin(method, **argument)
        return self.end()

    def connect(self):
        return self.ask("connect", url=URL)

    def begin_tool(self, tool, action, /, **arguments):
        self.begin("call", name=tool, arguments={"action": action, **arguments})

    def end_tool(self):
        """What the tool says."""
        result = self.end()
        assert [item["type"] for item in result["content"]] == ["text"] and "isError" not in result
        return json.loads(result["content"][0]["text"])

    def tool(self, name, action, /, **arguments):
        self.begin_tool(name, action, **arguments)
        return self.end_tool()


def post(body, path="/mcp", headers=None, timeout=60):
    """The body of the answer to a bare POST, as text."""
    request = urllib.request.Request(URL.removesuffix("/mcp") + path, data=body.encode("utf-8"),
                                     headers={"Content-Type": "application/json", **(headers or {})})
    with urllib.request.urlopen(request, timeout=timeout) as answer:
        assert answer.status == 200
        return answer.read().decode("utf-8")
