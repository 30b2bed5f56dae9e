"""Pausing, resuming, cancelling and reloading in the middle of a run."""

import pytest

from panel_driver import (THREE_BATCHES, column, open_signed_in, sentences, translate_requests, translated, wait_until)

TEXTS = sentences(THREE_BATCHES)


@pytest.fixture
def run(start_window, echo_service, make_book):
    """A run whose first batch of twenty is in the cells, while the service takes its time over the second."""
    echo_service.fail_next({"match": TEXTS[20], "delayMs": 2500})
    host = start_window(make_book(TEXTS))
    panel = open_signed_in(host)
    panel.start()
    panel.wait_for_count(20)
    return host, panel


def requests_ended(service):
    return sum(entry["path"] == "/v1/translate" and entry["endMs"] is not None for entry in service.requests())


def test_a_paused_run_waits_and_goes_on(run, echo_service):
    host, panel = run
    panel.click("#pause")
    panel.wait_for_phase("paused")
    assert panel.text("run-title") == "Paused"
    # The answer that was under way comes; nothing of it is written, and nothing more is asked for.
    wait_until(host, lambda: requests_ended(echo_service) == 2, "the second answer")
    with pytest.raises(AssertionError, match="waited"):
        wait_until(host, lambda: panel.phase() != "paused" or requests_ended(echo_service) > 2 or
                   host.cell("Sheet", "A21")["value"] != TEXTS[20], "anything to happen", timeout=1.0)
    panel.click("#resume")
    panel.wait_for_phase("done")
    assert column(host, THREE_BATCHES) == [translated(text) for text in TEXTS]
    host.quit()


def test_a_cancelled_run_keeps_what_was_written(run):
    host, panel = run
    panel.click("#cancel")
    panel.wait_for_phase("cancelled", timeout=5)
    assert panel.text("run-title") == "Translation cancelled"
    assert panel.text("summary").split("\n")[:4] == ["Translated", "20", "Not translated", "40"]
    expected = [translated(text) for text in TEXTS[:20]] + TEXTS[20:]
    assert column(host, THREE_BATCHES) == expected
    # The form is there for the next run.
    panel.click("#dismiss")
    panel.wait_for("!document.getElementById('start').disabled && document.getElementById('run').hidden")
    host.quit()


def test_a_reloaded_page_follows_the_run_to_its_end(run, echo_service):
    host, panel = run
    panel.value("window.before = true, setTimeout(() => location.reload()), 0")
    panel.wait_for("!window.before && document.getElementById('run')?.dataset.phase === 'translating'")
    panel.wait_for_count(20, timeout=5)
    assert panel.text("run-title") == "Translating…"
    panel.wait_for_phase("done")
    assert panel.text("summary").split("\n")[:2] == ["Translated", "60"]
    assert column(host, THREE_BATCHES) == [translated(text) for text in TEXTS]
    assert len(translate_requests(echo_service)) == 3
    host.quit()
