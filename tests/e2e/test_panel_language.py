"""The display language, changed in the settings dialog while a page is open."""

import json

from panel import FORM_READY, press
from panel_driver import sentences

GERMAN = 8  # row of the list


def labels(host):
    return {button["id"]: button["label"] for tab in host.do("ribbon")["tabs"] for group in tab["groups"]
            for button in group["buttons"]}


def choose_language(host, row, button):
    host.do("press", button="btnSettings")
    box = host.do("messagebox", timeoutMs=5000)["box"]
    assert box["kind"] == "languages"
    host.do("choose", row=row)
    host.do("answer", button=button)
    return box


def test_ribbon_and_page_change_their_language_without_a_reload(settings_file, start_window, make_book):
    host = start_window(make_book(sentences(1)))
    panel = press(host, "btnTranslateFullDoc")
    panel.wait_for(FORM_READY)
    before = labels(host)
    panel.value("window.sameLoad = true")

    box = choose_language(host, GERMAN, "Cancel")
    assert (len(box["rows"]), box["rows"][GERMAN - 1], box["selected"]) == (14, "Deutsch", 3)
    assert labels(host) == before and "uiLang" not in json.loads(settings_file.read_bytes())

    choose_language(host, GERMAN, "OK")
    panel.wait_for("document.documentElement.lang === 'de' && document.getElementById('start').innerText === 'Übersetzen'")
    after = labels(host)
    assert after.keys() == before.keys()
    assert after["btnSettings"] == "Einstellungen" and before["btnSettings"] == "Settings"
    assert json.loads(settings_file.read_bytes())["uiLang"] == "de"
    # A page opened from now on, in the pane or by its own links, is German as well.
    assert panel.value("window.sameLoad")
    press(host, "btnSupport")
    panel.wait_for_page("support")
    assert panel.value("document.documentElement.lang") == "de"
    host.quit()
