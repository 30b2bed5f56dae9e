"""The add-in's proxy for language models in a process of its own, and what talks to either side of it."""

import json
import os
import socket
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def free_port():
    """A port of 127.0.0.1 that nothing listens on."""
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class _Program:
    """A program that ends when its standard input does."""

    def __init__(self, *command):
        self._process = subprocess.Popen(list(map(str, command)), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         text=True)

    def _read(self):
        return self._process.stdout.readline().rstrip("\r\n")

    def close(self):
        self._process.stdin.close()
        try:
            self._process.wait(20)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class LlmProxy(_Program):
    """Listens from `prepare` to `stop`, on a port that was free."""

    def __init__(self, service_url, authority=None):
        self.port = free_port()
        bin_folder = Path(os.environ.get("QV_BIN", ROOT / "build" / "windows" / "bin"))
        super().__init__(ROOT / "scripts" / "wine.sh", bin_folder / "qv_llm_proxy.exe", service_url, self.port,
                         *([authority] if authority else []))
        self.key = None

    @property
    def base_url(self):
        return f"http://127.0.0.1:{self.port}/v1"

    def _do(self, line):
        self._process.stdin.write(line + "\n")
        self._process.stdin.flush()
        return self._read()

    def prepare(self, token):
        """Starts listening for the user with the token; the key that agents must show is `key` from then on."""
        answer = self._do(f"prepare {token}")
        if not answer.startswith("key "):
            raise RuntimeError(f"The proxy does not listen: {answer or 'it has ended'}")
        self.key = answer[4:]

    def set_token(self, token):
        self._do(f"token {token}")

    def stop(self):
        self._do("stop")


class ScriptedModel(_Program):
    """A language model that tells the answers of the script, a list of steps each, one a request."""

    def __init__(self, script_path, answers, port=0, framing="close"):
        Path(script_path).write_text(json.dumps(answers))
        super().__init__("node", ROOT / "service" / "scripted_model.js", "--script", script_path, "--port", port,
                         "--framing", framing, "--leash")
        self.base_url = self._read().split()[-1]


def ask(base_url, key, *calls):
    """Each call by OpenAI's own client; service/testing/ask_model.js says what is asked and answered."""
    ended = subprocess.run(["node", str(ROOT / "service" / "testing" / "ask_model.js")], text=True, timeout=120,
                           input=json.dumps({"baseURL": base_url, "apiKey": key, "calls": calls}),
                           stdout=subprocess.PIPE, check=True)
    return [json.loads(line) for line in ended.stdout.splitlines()]
