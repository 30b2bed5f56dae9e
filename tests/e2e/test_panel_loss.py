"""Panes and browsers that go away in the middle of a run."""

from panel import wait_until
from panel_driver import SLOW_TEXTS, column, open_signed_in, translate_entries, translated
from run_driver import LogTail

LOST = ("BrowserProcessExited", "ProcessFailed")


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


def test_a_lost_browser_ends_the_run_with_one_notice_and_the_next_pane_works(slow_run, echo_service):
    host, panel = slow_run
    log = LogTail(host)
    host.do("kill-browser")
    box = host.do("messagebox", timeoutMs=10000)["box"]
    assert box["title"] == "AI Assistant"
    host.do("answer", button="OK")
    # Nobody could stop the run any more: it ends, and the answer that was under way is dropped.
    wait_until(host, lambda: all(entry["endMs"] for entry in translate_entries(echo_service)), "the second answer")
    assert len([line for line in log.lines() if any(word in line for word in LOST)]) == 1
    again = open_signed_in(host)
    assert again.pane != panel.pane
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS[:20]] + SLOW_TEXTS[20:]
    assert len(translate_entries(echo_service)) == 2
    assert host.do("messagebox", timeoutMs=0)["box"] is None
    again.start()
    again.wait_for_phase("done")
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    host.quit()
