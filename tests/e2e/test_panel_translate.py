"""Signing in and translating by clicks, in Excel and in WPS."""

from panel import press
from panel_driver import column, open_signed_in, sentences, translate_requests, translated


def test_a_new_user_signs_in_and_translates_the_sheet(start_window, echo_service, make_book):
    texts = sentences(30)
    host = start_window(make_book(texts))
    assert host.do("panes")["panes"] == []
    panel = press(host, "btnTranslateFullDoc")
    assert panel.value("document.getElementById('start').disabled")
    assert panel.text("reason") == "Sign in first."
    panel.sign_in("Ada Lovelace")
    panel.choose_target("Spanish", "es")
    panel.start()
    panel.wait_for_phase("done")
    assert panel.text("run-title") == "Translation finished"
    assert panel.text("summary").split("\n")[:2] == ["Texts translated", "30"]
    assert column(host, 30) == [translated(text) for text in texts]
    assert [text for body in translate_requests(echo_service) for text in body["texts"]] == texts
    press(host, "btnAccount")
    panel.wait_for_page("account")
    panel.wait_for("document.getElementById('account-name').textContent === 'Ada Lovelace'")
    assert len(host.do("panes")["panes"]) == 1
    host.quit()


def test_wps_translates_a_selection(start_window, echo_service, make_book):
    texts = sentences(4)
    host = start_window(make_book(texts), "--host", "wps")
    panel = open_signed_in(host)
    assert "&host=wps-excel&" in "&" + panel.value("location.search")[1:]
    host.do("select", address="A2:A3")
    press(host, "btnTranslateSelection")
    panel.wait_for("document.querySelector('input[name=scope]:checked').value === 'selection'")
    panel.start()
    panel.wait_for_phase("done")
    assert column(host, 4) == [texts[0], translated(texts[1]), translated(texts[2]), texts[3]]
    assert {body["usageKind"] for body in translate_requests(echo_service)} == {"translate_selection"}
    host.quit()
