"""The local service in a process of its own, with its fault injection switched on."""

import json
import os
import ssl
import subprocess
import urllib.request
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


class LocalService:
    """Starts with construction, ends with `close`, and ends by itself when this process does.

    With a folder of certificates (scripts/make_authority.sh) it serves https, and `authority` is the file to
    trust and `trust` the same as an SSL context. `env` is added to the environment; it names a language model,
    for example.
    """

    def __init__(self, *arguments, tls=None, env=None):
        self.authority = Path(tls) / "authority.pem" if tls else None
        self.trust = ssl.create_default_context(cafile=self.authority) if tls else None
        if tls:
            arguments += ("--tls", str(tls))
        self._process = subprocess.Popen(
            ["node", str(ROOT / "service" / "server.js"), "--port", "0", "--leash", "--faults", *arguments],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env={**os.environ, **(env or {})})
        self.url = self._process.stdout.readline().split()[-1]

    def call(self, verb, path, body=None, token=None):
        """One request; gives the answer's JSON or None. Raises urllib's HTTPError for an error status."""
        request = urllib.request.Request(self.url + path, method=verb)
        if body is not None:
            request.data = json.dumps(body).encode("utf-8")
            request.add_header("Content-Type", "application/json")
        if token:
            request.add_header("Authorization", f"Bearer {token}")
        with urllib.request.urlopen(request, timeout=30, context=self.trust) as answer:
            text = answer.read()
        return json.loads(text) if text else None

    def fail_next(self, *faults):
        self.call("POST", "/control/faults", {"queue": list(faults)})

    def requests(self):
        """What came in since the last reset, oldest first."""
        return self.call("GET", "/control/requests")

    def reset(self):
        self.call("DELETE", "/control/faults")
        self.call("DELETE", "/control/requests")

    def close(self):
        self._process.stdin.close()
        try:
            self._process.wait(10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()
