"""The panel's page in a window of its own."""

from panel_driver import TWO_BATCHES, column, open_signed_in, sentences, slow_down, translated

SCOPE = "document.querySelector('input[name=scope]:checked').value"
WINDOW_BUTTON = "document.getElementById('window').getAttribute('aria-label')"


def test_a_run_in_the_workspace_window_takes_the_choices_along_and_brings_them_back(start_window, echo_service, make_book):
    texts = sentences(TWO_BATCHES)
    host = start_window(make_book(texts))
    pane = open_signed_in(host)
    # The scope is kept nowhere but in the page.
    pane.click("input[name=scope][value=selection]")
    pane.wait_for(f"{SCOPE} === 'selection'")
    pane.click("#window")
    workspace = pane.workspace()
    workspace.wait_for(f"document.getElementById('target').value === 'es' && {SCOPE} === 'selection'")
    pane.wait_for(f"{WINDOW_BUTTON} === 'Show the larger window'")

    workspace.click("input[name=scope][value=full]")
    workspace.choose_target("German", "de")
    slow_down(echo_service, texts[20])
    workspace.start()
    workspace.wait_for_count(20)
    pane.wait_for_count(20)
    workspace.click("#window")
    pane.wait_for(f"{WINDOW_BUTTON} === 'Open in a larger window'")
    assert pane.phase() == "translating"
    pane.wait_for(f"{SCOPE} === 'full' && document.getElementById('target').value === 'de'")
    pane.wait_for_phase("done", timeout=90)
    assert column(host, TWO_BATCHES) == [translated(text, "DE") for text in texts]
    host.quit()
