"""Drives the development host from Python: starts scripts/devhost.sh and speaks its JSON lines."""

import json
import os
import select
import signal
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


class DevhostError(RuntimeError):
    """The host refused a command, ended early, or did not answer in time."""


class Devhost:
    """One running development host. Use it as a context manager: leaving it ends the host and all it started.

    `arguments` are those of scripts/devhost.sh. Its diagnostics go to `log_path` (default: nowhere).
    """

    def __init__(self, *arguments, log_path=None, env=None):
        self._buffer = b""
        self._log = open(log_path or os.devnull, "wb")
        self._process = subprocess.Popen(
            [str(ROOT / "scripts" / "devhost.sh"), *map(str, arguments)],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self._log, start_new_session=True,
            env={**os.environ, **(env or {})})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def send(self, line):
        """Writes one raw line and gives the answer as an object, whatever it says."""
        try:
            self._process.stdin.write(line.encode("utf-8") + b"\n")
            self._process.stdin.flush()
        except BrokenPipeError:
            raise DevhostError(self._ended()) from None

    def receive(self, timeout=120.0):
        deadline = time.monotonic() + timeout
        while b"\n" not in self._buffer:
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self._process.stdout], [], [], left)[0]:
                raise DevhostError(f"The development host did not answer within {timeout:g} s.")
            piece = os.read(self._process.stdout.fileno(), 1 << 20)
            if not piece:
                raise DevhostError(self._ended())
            self._buffer += piece
        line, self._buffer = self._buffer.split(b"\n", 1)
        return json.loads(line)

    def do(self, command, timeout=120.0, **members):
        """Runs one command; raises with the host's own words when it fails."""
        self.send(json.dumps({"do": command, **members}, ensure_ascii=False))
        answer = self.receive(timeout)
        if not answer.get("ok"):
            raise DevhostError(f"{command}: {answer.get('error', answer)}")
        return answer

    def post(self, **message):
        """Posts a panel message."""
        return self.do("post", message=message)

    def wait(self, text, timeout=60.0):
        """The first page script or posted JSON since the last wait that contains `text`."""
        return self.do("wait", timeout + 30, script=text, timeoutMs=int(timeout * 1000))["text"]

    def scripts(self):
        """Everything that was run in or posted to the page since the start, in order."""
        return self.do("scripts")["scripts"]

    def cell(self, sheet, address):
        return self.do("cell", sheet=sheet, address=address)

    def ribbon(self):
        """The ribbon's buttons by id."""
        tabs = self.do("ribbon")["tabs"]
        return {button["id"]: button for tab in tabs for group in tab["groups"] for button in group["buttons"]}

    def press(self, button):
        """Presses a ribbon button; what it opens is there after some messages."""
        self.do("press", button=button)

    def box(self, timeout=5.0):
        """The open message box or dialog, awaited for a while; None when there is none."""
        return self.do("messagebox", timeoutMs=int(timeout * 1000))["box"]

    def answer(self, button):
        """Clicks a button of the open box: "OK", "Cancel", "Yes", "No", …"""
        self.do("answer", button=button)

    def page(self, script, timeout=60.0, **where):
        """The result of a script in the real page of a pane, or with surface="workspace" of the workspace."""
        return self.do("page", timeout + 30, eval=script, timeoutMs=int(timeout * 1000), **where)["value"]

    def click(self, selector, **where):
        """Clicks an element of the real page with the mouse."""
        self.do("click", selector=selector, **where)

    def screenshot(self, path):
        self.do("screenshot", path=str(path))

    def quit(self):
        """Ends the host in good order and gives its closing answer."""
        answer = self.do("quit")
        self.close()
        return answer

    def close(self, patience=20.0):
        if self._process.poll() is None:
            try:
                self._process.stdin.close()
            except OSError:
                pass
            try:
                self._process.wait(patience)
            except subprocess.TimeoutExpired:
                os.killpg(self._process.pid, signal.SIGTERM)
                try:
                    self._process.wait(5)
                except subprocess.TimeoutExpired:
                    os.killpg(self._process.pid, signal.SIGKILL)
                    self._process.wait()
        self._process.stdout.close()
        self._log.close()

    @property
    def session(self):
        """The session id that all processes of the host share."""
        return self._process.pid

    @property
    def exit_code(self):
        return self._process.poll()

    def _ended(self):
        try:
            code = self._process.wait(5)
        except subprocess.TimeoutExpired:
            return "The development host closed its output."
        return f"The development host ended with status {code}."


def unix_path(windows_path, prefix=None):
    """Where Wine keeps a Windows path: Z: is the root, other drives are folders of the prefix."""
    prefix = Path(prefix or os.environ["WINEPREFIX"])
    drive, rest = windows_path[0].lower(), windows_path[2:].replace("\\", "/")
    return Path(rest) if drive == "z" else prefix / f"dosdevices/{drive}:" / rest.lstrip("/")
