"""What a user does with a translated sheet afterwards: the other displays, and back."""

from panel import wait_until
from panel_driver import column, open_signed_in, sentences, translated


def test_the_sheet_goes_through_its_displays_by_clicks(start_window, make_book):
    texts = sentences(3)
    host = start_window(make_book(texts))
    panel = open_signed_in(host)
    panel.start()
    panel.wait_for_phase("done")
    both = [translated(text) for text in texts]
    assert column(host, 3) == both

    for display, cells in (("target", [f"ES:{text}" for text in texts]), ("original", texts), ("dual", both)):
        panel.click(f"#display button[data-display={display}]")
        wait_until(host, lambda: column(host, 3) == cells, f"the display {display}")
        panel.wait_for("!document.querySelector('#display button').ariaDisabled")

    host.do("select", address="A1,A3")
    panel.click("label[for=display-scope]")
    panel.type("Sel")
    panel.wait_for("document.getElementById('display-scope').value === 'selection'")
    panel.click("#display button[data-display=original]")
    wait_until(host, lambda: column(host, 3) == [texts[0], both[1], texts[2]], "the selection's source texts")
