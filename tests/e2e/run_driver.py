"""Runs without a form: what a page may post beyond its own fields and buttons, and the add-in's answers as values."""

import json
import re
import uuid

from devhost_client import unix_path
from panel import wait_until

RUN_ENDS = re.compile(r"onComplete\(\{|onError\(\{|onCancelled\(\)")
# The members of an event's argument stand without quotes.
MEMBER_OR_TEXT = re.compile(r'"(?:[^"\\]|\\.)*"|(\w+)(?=:)')


def argument(script):
    """The object that an event's script hands over."""
    begin = script.index("({") + 1
    quoted = MEMBER_OR_TEXT.sub(lambda found: f'"{found[1]}"' if found[1] else found[0], script[begin:])
    return json.JSONDecoder().raw_decode(quoted)[0]


def event(host, name, timeout=60.0):
    """The argument of the next call of a page's function."""
    return argument(host.wait(f"{name}(", timeout))


def start_message(**members):
    return {"action": "start", "panelMode": "full", "sourceLang": "en", "targetLang": "es", "excelBilingualBelow": True,
            "clientTraceId": str(uuid.uuid4()), **members}


def start(host, **members):
    host.post(action="setAccessToken", accessToken="dev-test")
    host.post(**start_message(**members))


def post_from(panel, **message):
    """Posts a message from the real page itself."""
    panel.value(f"chrome.webview.postMessage({json.dumps(json.dumps(message))})")


def run_from(panel, **members):
    """A whole run that the real page starts for whoever is signed in there: what onComplete says."""
    post_from(panel, **start_message(accessToken=token_of(panel), **members))
    last = end_of_run(panel.host)
    assert "onComplete({" in last, last
    return argument(last)


def token_of(panel):
    return panel.value("JSON.parse(localStorage['quorvantis.session']).token")


def end_of_run(host):
    """The last script of the run that goes on."""
    while True:
        script = host.wait("", timeout=120)
        if RUN_ENDS.search(script):
            return script


def run_to_end(host, **members):
    """A run, however it ends: its last script."""
    start(host, **members)
    return end_of_run(host)


def run(host, **members):
    """A run that completes: what onComplete says."""
    last = run_to_end(host, **members)
    assert "onComplete({" in last, last
    return argument(last)


def display(host, mode, scope="session"):
    """Switches the display: the answer."""
    host.post(action="setExcelDisplayMode", mode=mode, scope=scope)
    return event(host, "onExcelDisplayModeDone")


def switched(mode, applied, failed=0, message=""):
    """What a switch answers."""
    return {"ok": message == "", "mode": mode, "applied": applied, "failed": failed, "message": message}


class LogTail:
    """What the pane's log has got since this was made."""

    def __init__(self, host):
        self._path = unix_path(host.do("log")["paths"][0])
        self._start = self._path.stat().st_size if self._path.exists() else 0

    def lines(self):
        return self._path.read_bytes()[self._start:].decode("utf-16-le").splitlines()

    def line(self, part):
        """The first line that holds `part`, without its time; waits for it."""
        def look():
            return next((line[line.index(part):] for line in self.lines() if part in line), None)

        return wait_until(None, look, f"a line with {part!r} in the log")
