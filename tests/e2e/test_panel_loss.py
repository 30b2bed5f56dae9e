"""Panes and browsers that go away in the middle of a run."""

from devhost_client import unix_path
from panel_driver import SLOW_TEXTS, column, open_signed_in, translated, wait_until

LOST = ("BrowserProcessExited", "ProcessFailed")


class LogTail:
    """What the pane's log has got since this was made."""

    def __init__(self, host):
        self._path = unix_path(host.do("log")["paths"][0])
        self._start = self._path.stat().st_size

    def lines(self):
        return self._path.read_bytes()[self._start:].decode("utf-16-le").splitlines()


def test_a_closed_pane_ends_its_run_and_the_next_one_works(slow_run):
    host, panel = slow_run
    host.do("close-pane", pane=panel.pane)
    assert host.do("panes")["panes"] == []
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS[:20]] + SLOW_TEXTS[20:]
    again = open_signed_in(host)
    assert again.pane != panel.pane
    again.start()
    again.wait_for_phase("done")
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    host.quit()


def test_a_browser_that_dies_is_told_once_and_the_next_pane_has_a_living_page(slow_run):
    host, panel = slow_run
    log = LogTail(host)
    host.do("kill-browser")
    box = host.do("messagebox", timeoutMs=10000)["box"]
    assert box["title"] == "AI Assistant"
    host.do("answer", button="OK")
    # The run does not need the page to come to its end.
    wait_until(host, lambda: host.cell("Sheet", "A60")["value"] == translated(SLOW_TEXTS[-1]), "the last cell")
    assert host.do("messagebox", timeoutMs=0)["box"] is None
    assert len([line for line in log.lines() if any(word in line for word in LOST)]) == 1
    again = open_signed_in(host)
    assert again.pane != panel.pane
    again.start()
    again.wait_for_phase("done")
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    host.quit()
