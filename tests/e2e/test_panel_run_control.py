"""Pausing, resuming, cancelling and reloading in the middle of a run."""

import pytest

from devhost_client import DevhostError
from panel import wait_until
from panel_driver import SLOW_TEXTS, column, translate_entries, translated


def requests_ended(service):
    return sum(entry["endMs"] is not None for entry in translate_entries(service))


def test_a_paused_run_waits_and_goes_on(slow_run, echo_service):
    host, panel = slow_run
    panel.click("#pause")
    panel.wait_for_phase("paused")
    assert panel.text("run-title") == "Paused"
    # The answer that was under way comes; nothing of it is written, and nothing more is asked for.
    wait_until(host, lambda: requests_ended(echo_service) == 2, "the second answer")
    with pytest.raises(DevhostError, match="waited"):
        wait_until(host, lambda: panel.phase() != "paused" or requests_ended(echo_service) > 2 or
                   host.cell("Sheet", "A21")["value"] != SLOW_TEXTS[20], "anything to happen", timeout=1.0)
    panel.reload()
    panel.wait_for_phase("paused")
    assert panel.text("run-title") == "Paused" and panel.value("document.getElementById('run-bar').value") == 20 / 60
    panel.click("#resume")
    panel.wait_for_phase("done")
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    host.quit()


def test_a_cancelled_run_keeps_what_was_written(slow_run):
    host, panel = slow_run
    panel.click("#cancel")
    panel.wait_for_phase("cancelled", timeout=5)
    assert panel.text("run-title") == "Translation cancelled"
    label, count, other_label, other_count = panel.text("summary").split("\n")[:4]
    assert (label, other_label) == ("Texts translated", "Not translated")
    # The cell that was being written when the click came is finished.
    done = int(count)
    assert 20 <= done < 60 and int(other_count) == 60 - done
    expected = [translated(text) for text in SLOW_TEXTS[:done]] + SLOW_TEXTS[done:]
    assert column(host, len(SLOW_TEXTS)) == expected
    # The form is there for the next run.
    panel.click("#dismiss")
    panel.wait_for("!document.getElementById('start').disabled && document.getElementById('run').hidden")
    host.quit()


def test_a_reloaded_page_follows_the_run_to_its_end(slow_run, echo_service):
    host, panel = slow_run
    panel.reload()
    panel.wait_for_phase("translating", timeout=5)
    panel.wait_for_count(20, timeout=5)
    assert panel.text("run-title") == "Translating…"
    panel.wait_for_phase("done")
    assert panel.text("summary").split("\n")[:2] == ["Texts translated", "60"]
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    assert len(translate_entries(echo_service)) == 3
    host.quit()
