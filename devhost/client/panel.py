"""Drives the panel as a user does, by presses, clicks and keys, and looks at what its page shows."""

import time

from devhost_client import DevhostError

POLL_S = 0.05

FORM_READY = "document.getElementById('target')?.value"


def wait_until(host, look, what, timeout=15.0):
    """The first true value of `look()`. What the host refuses meanwhile counts as not there yet: a page between two loads
    has no answer."""
    deadline = time.monotonic() + timeout
    while True:
        try:
            seen = look()
        except DevhostError as refusal:
            if host.exit_code is not None:
                raise
            seen, last = None, refusal
        else:
            last = seen
        if seen:
            return seen
        if time.monotonic() >= deadline:
            raise DevhostError(f"waited {timeout:g} s for {what}; the last look gave: {last}")
        time.sleep(POLL_S)


def active_window(host):
    return next(window["window"] for window in host.do("window")["windows"] if window["active"])


def press(host, button):
    """Presses a ribbon button in the active window; the window's panel, once its page can be used."""
    host.do("press", button=button)
    window = active_window(host)
    pane = max(entry["pane"] for entry in host.do("panes")["panes"] if entry["window"] == window)
    panel = Panel(host, pane)
    panel.wait_for_page()
    return panel


class Panel:
    """The page of one pane, or of the workspace window that is open."""

    def __init__(self, host, pane=1, surface="pane"):
        self.host, self.pane, self.surface = host, pane, surface

    def workspace(self):
        """The page of the workspace window, once it can be used."""
        other = Panel(self.host, self.pane, "workspace")
        other.wait_for_page()
        return other

    def do(self, command, **members):
        return self.host.do(command, pane=self.pane, surface=self.surface, **members)

    def value(self, script):
        return self.do("page", eval=script, timeoutMs=5000)["value"]

    def text(self, element):
        """What a reader sees of an element, by its id; empty while it is hidden."""
        return self.value(f"document.getElementById('{element}')?.innerText ?? ''")

    def wait_for(self, condition, timeout=15.0):
        """The first true value of a JavaScript expression."""
        return wait_until(self.host, lambda: self.value(condition), condition, timeout)

    def wait_for_page(self, name=None):
        """`name` is that of a page other than the translation page; without one any page will do."""
        on_page = f"location.pathname.endsWith('/{name}.html')" if name else "location.pathname.startsWith('/panel/excel')"
        self.wait_for(f"{on_page} && document.readyState === 'complete' && "
                      "!document.documentElement.hasAttribute('data-loading')", timeout=20.0)

    def reload(self):
        self.value("window.isOld = true, setTimeout(() => location.reload()), 0")
        self.wait_for("!window.isOld")
        self.wait_for_page()

    def click(self, selector):
        """Clicks an element as soon as it can be seen and nothing covers it."""
        wait_until(self.host, lambda: self.do("click", selector=selector), f"a click on {selector}")

    def type(self, text):
        self.do("type", text=text)

    def sign_in(self, who="Ada"):
        """From the translation page's notice, over the sign-in page, to the translation page."""
        self.click("#sign-in a")
        self.wait_for_page("login")
        self.click("#who")
        self.type(who)
        self.click("#login-button")
        self.wait_for(f"location.pathname === '/panel/excel' && {FORM_READY}")
        self.wait_for_page()

    def choose_target(self, name, code):
        """Goes to the field by its label and types the language's name, as it stands in the list."""
        self.click("label[for=target]")
        self.type(name)
        self.wait_for(f"document.getElementById('target').value === '{code}'")

    def start(self):
        self.click("#start")

    def phase(self):
        return self.value("document.getElementById('run').dataset.phase")

    def wait_for_phase(self, phase, timeout=30.0):
        self.wait_for(f"document.getElementById('run').dataset.phase === '{phase}'", timeout)

    def wait_for_count(self, least, timeout=30.0):
        """Waits until the page counts at least that many finished cells of a run that goes on."""
        self.wait_for(f"parseInt(document.getElementById('run-count').textContent.match(/\\d+/)) >= {least}", timeout)
