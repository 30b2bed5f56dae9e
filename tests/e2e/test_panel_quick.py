"""One text at a time: from the sheet into the panel, to the service, and back into the sheet."""

from panel import wait_until
from panel_driver import column, open_signed_in, sentences, translated

ANSWER = "document.querySelector('#answers [data-state=done] .answer')?.textContent"


def open_quick(host):
    """The page of quick translation in the panel of the active window, with somebody signed in."""
    panel = open_signed_in(host)
    host.do("press", button="btnQuickTranslate")
    panel.wait_for_page("quicktranslate")
    panel.wait_for("!document.getElementById('start').hidden && document.getElementById('target').value === 'es'")
    return panel


def test_the_selected_text_is_translated_and_put_into_its_cell_by_clicks(start_window, make_book):
    texts = sentences(2)
    host = start_window(make_book(texts))
    panel = open_quick(host)
    host.do("select", sheet="Sheet", address="A1")
    panel.wait_for(f"document.getElementById('text').value === '{texts[0]}'")
    panel.click("#start")
    panel.wait_for(f"{ANSWER} === 'ES:{texts[0]}'")
    panel.click("#answers button:nth-of-type(3)")
    wait_until(host, lambda: column(host, 2) == [translated(texts[0]), texts[1]], "the translation below")
    panel.click("#answers button:nth-of-type(2)")
    wait_until(host, lambda: column(host, 2) == [f"ES:{texts[0]}", texts[1]], "the translation in its place")


def test_the_texts_of_a_run_go_out_of_the_sheet_and_in_again_one_by_one_and_all(start_window, make_book):
    texts = sentences(3)
    host = start_window(make_book(texts))
    panel = open_signed_in(host)
    panel.start()
    panel.wait_for_phase("done")
    both = [translated(text) for text in texts]
    panel.click("#units summary")
    panel.click("#unit-rows li:nth-child(2) [data-change=restoreParagraph]")
    wait_until(host, lambda: column(host, 3) == [both[0], texts[1], both[2]], "one source text")
    panel.click("#unit-rows li:nth-child(2) [data-change=applyParagraph]")
    wait_until(host, lambda: column(host, 3) == both, "its translation")
    for button, cells in (("restore-all", texts), ("apply-all", both)):
        panel.click(f"#{button}")
        wait_until(host, lambda: column(host, 3) == cells, button)
        panel.wait_for(f"!document.getElementById('{button}').ariaDisabled")
