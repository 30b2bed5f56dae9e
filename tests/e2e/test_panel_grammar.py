"""The grammar check in the panel's own page: what the model suggests goes into the cells once the user accepts it."""

import json

import pytest

from conftest import hosts_with
from panel import wait_until
from panel_driver import column, open_signed_in

TEXTS = ["She go home.", "All is well.", "He have a dog."]
FIXED = ["She goes home.", "All is well.", "He has a dog."]
ANSWER = [{"say": json.dumps([{"id": 0, "text": FIXED[0], "reason": "agreement"},
                              {"id": 2, "text": FIXED[2], "reason": "agreement"}])}]


@pytest.fixture
def grammar(model_service, settings_file, tmp_path, make_book):
    """The page of a host whose three texts are selected, with somebody signed in."""
    with hosts_with(model_service, tmp_path, "--window", "--browser", "chromium") as start:
        host = start(make_book(TEXTS))
        panel = open_signed_in(host)
        host.do("select", address="A1:A3")
        host.do("press", button="btnGrammar")
        panel.wait_for_page("grammar")
        yield panel


def check(panel):
    panel.click("#check")
    panel.wait_for("document.querySelectorAll('#suggestions li').length === 2", 60)


def wait_for_texts(panel, texts, what):
    wait_until(panel.host, lambda: column(panel.host, 3) == texts, what)


def test_suggestions_go_into_the_cells_one_by_one_or_all_and_are_taken_back(grammar, start_model):
    start_model(ANSWER, framing="chunked")
    check(grammar)
    assert column(grammar.host, 3) == TEXTS
    grammar.click("#suggestions li[data-cell=A3] button")
    wait_for_texts(grammar, [TEXTS[0], TEXTS[1], FIXED[2]], "the accepted one")
    grammar.wait_for("!document.getElementById('undo').disabled && !document.getElementById('undo').hidden")
    grammar.click("#undo")
    wait_for_texts(grammar, TEXTS, "the accepted one taken back")

    grammar.wait_for("!document.getElementById('accept-all').hidden && !document.getElementById('accept-all').disabled")
    grammar.click("#accept-all")
    wait_for_texts(grammar, FIXED, "all of them")
    grammar.wait_for("!document.getElementById('undo').disabled")
    grammar.click("#undo")
    wait_for_texts(grammar, TEXTS, "all taken back with one undo")


def test_a_cell_that_the_user_changed_meanwhile_is_left_alone(grammar, start_model):
    start_model(ANSWER, framing="chunked")
    check(grammar)
    grammar.host.do("set-cell", address="A1", text="Mine")
    grammar.click("#accept-all")
    wait_for_texts(grammar, ["Mine", TEXTS[1], FIXED[2]], "only the other one")
    grammar.wait_for("document.querySelector('#suggestions li[data-cell=A1]').dataset.state === 'changed'")
