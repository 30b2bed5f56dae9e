"""The chat in the panel's own page: what the model asks for is done in the workbook, in view of the user, who takes it back."""

import pytest

from conftest import hosts_with
from panel import wait_until
from panel_driver import column, open_signed_in

LAST = "#turns > li:last-child"


@pytest.fixture
def chat(model_service, settings_file, tmp_path, make_book):
    """The chat page of a host on a small workbook, with somebody signed in."""
    with hosts_with(model_service, tmp_path, "--window", "--browser", "chromium") as start:
        host = start(make_book(["one", "two", "three"]))
        panel = open_signed_in(host)
        host.do("press", button="btnAiChat")
        panel.wait_for_page("chat")
        yield panel


def say(panel, words):
    panel.click("#message")
    panel.type(words)
    panel.click("#send")


def wait_for_answer(panel, words):
    panel.wait_for(f"document.querySelector('{LAST}')?.innerText.includes('{words}')", 60)


def values(panel):
    return column(panel.host, 3)


def write(address, *rows):
    return {"call": "excelWriteRange", "arguments": {"range": address, "values": [list(row) for row in rows]}}


def test_what_the_model_writes_is_in_the_sheet_and_can_be_taken_back(chat, start_model):
    start_model([{"call": "excelReadRange", "arguments": {"range": "A1:A3"}}], [write("A1:A2", ["uno"], ["dos"])],
                [{"say": "Two cells are Spanish now.", "everyMs": 20}],
                [write("A3", ["tres"])], [{"say": "So is the third."}])
    say(chat, "Translate the first two")
    wait_for_answer(chat, "Two cells are Spanish now.")
    assert values(chat) == ["uno", "dos", "three"]
    calls = f"[...document.querySelectorAll('{LAST} .call-frame')].map((call) => call.dataset.state)"
    assert chat.value(calls) == ["done", "done"]
    read = chat.value(f"document.querySelector('{LAST} .call-body').textContent")
    assert all(value in read for value in ('"one"', '"two"', '"three"', "A1:A3"))

    say(chat, "And the third")
    wait_for_answer(chat, "So is the third.")
    assert values(chat) == ["uno", "dos", "tres"]
    undo = f"{LAST} .foot button"
    chat.click(undo)
    wait_until(chat.host, lambda: values(chat) == ["uno", "dos", "three"], "the second message taken back")
    chat.click("#turns > li:first-child .foot button")
    wait_until(chat.host, lambda: values(chat) == ["one", "two", "three"], "the first message taken back")


def test_what_deletes_waits_for_the_users_yes(chat, start_model):
    delete = {"call": "excelDeleteRowsCols", "arguments": {"mode": "rows", "range": "2:2"}}
    start_model([delete], [{"say": "As you like."}], [delete], [{"say": "It is gone."}])
    for button, words, left in (("first", "As you like.", ["one", "two", "three"]),
                                ("last", "It is gone.", ["one", "three"])):
        say(chat, "Delete the second row")
        chat.wait_for(f"document.querySelector('{LAST} .question:not([hidden]) button') !== null", 30)
        assert values(chat) == ["one", "two", "three"]
        chat.click(f"{LAST} .question button:{button}-child")
        wait_for_answer(chat, words)
        assert [value for value in values(chat) if value] == left


def test_a_refusal_of_the_model_is_told_and_the_question_can_be_asked_again(chat, start_model):
    start_model([{"fail": 429, "message": "too many questions"}], [{"say": "Here I am."}])
    say(chat, "Hello")
    wait_for_answer(chat, "too many questions")
    chat.click(f"{LAST} .foot button")
    wait_for_answer(chat, "Here I am.")
