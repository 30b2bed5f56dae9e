"""The development host's line protocol: one answer a line, and a bad line changes nothing."""

import json
import os

import pytest
from devhost_client import Devhost, DevhostError

NOWHERE = "http://127.0.0.1:9"

BAD_LINES = [
    # not JSON, not an object
    ("", "the line is not JSON"),
    ("{", "the line is not JSON"),
    ('{"do":"quit"} {"do":"quit"}', "the line is not JSON"),
    ('{"do":"cell","address":"\\ud800"}', "the line is not JSON"),
    ("[]", "not a JSON object"),
    # no command
    ('{"a":1}', '"do" is missing'),
    ('{"do":7}', '"do" must be a text'),
    ('{"do":"fly"}', 'unknown command "fly"'),
    # members missing, mistyped, out of range, unknown
    ('{"do":"post"}', '"message" in "post" is missing'),
    ('{"do":"post","message":"start"}', '"message" in "post" must be an object'),
    ('{"do":"post","message":{},"pane":0}', '"pane" in "post" must be a pane number'),
    ('{"do":"wait","script":"x","timeoutMs":-1}', "from 0 to 600000"),
    ('{"do":"wait","script":"x","timeoutMs":600001}', "from 0 to 600000"),
    ('{"do":"wait","script":"x","timeoutMs":1.5}', "from 0 to 600000"),
    ('{"do":"wait","script":"x","timeoutMs":99999999999999999999}', "from 0 to 600000"),
    ('{"do":"protect","on":1}', '"on" in "protect" must be true or false'),
    ('{"do":"select","address":"B1","shet":"Data"}', 'unknown member "shet" in "select"'),
    ('{"do":"insert-rows","row":0}', '"row" in "insert-rows" must be a whole number from 1 to 1048576'),
    ('{"do":"sheet","delete":"Data","activate":"Data"}', '"sheet" takes one of'),
    ('{"do":"sheet","rename":"Data"}', '"rename" and "to" go together'),
    # well-formed, but there is no such thing
    ('{"do":"post","message":{"action":"trace"},"pane":99}', "no open pane 99"),
    ('{"do":"close-pane","pane":99}', "no open pane 99"),
    ('{"do":"cell","sheet":"Nowhere","address":"A1"}', "Nowhere"),
    ('{"do":"sheet","delete":"Data"}', "the host refuses"),
    ('{"do":"sheet","activate":"Nowhere"}', "Nowhere"),
    ('{"do":"set-cell","address":"A1:B2","text":"x"}', "not one cell"),
    ('{"do":"close-workbook","name":"Nowhere"}', "no such workbook: Nowhere"),
    ('{"do":"fault","fault":{"fail":"*","on":"never"}}', "unknown word for on"),
    ('{"do":"save","path":"/nonexistent/copy.json"}', "nonexistent"),
    # too deep, too long
    ("[" * 100_000, "nested deeper than 64 levels"),
    ('{"do":"post","message":' + '{"a":' * 64 + "1" + "}" * 64 + "}", "nested deeper than 64 levels"),
    ('{"do":"fly","x":"' + "x" * (4 << 20) + '"}', "longer than 4194304 bytes"),
]


def start(tmp_path, *arguments):
    workbook = tmp_path / "book.json"
    workbook.write_text(json.dumps({"sheets": [{"name": "Data", "cells": {"A1": "Hello", "B1": 5}}]}))
    return Devhost("--workbook", workbook, "--engine", "memory", "--service", NOWHERE, *arguments,
                   log_path=tmp_path / "devhost.log", env={"QV_SKIP_BUILD": "1"})


@pytest.fixture(scope="module")
def shared_host(tmp_path_factory):
    with start(tmp_path_factory.mktemp("protocol")) as host:
        yield host


def state(host):
    return host.scripts(), host.cell("Data", "A1"), host.do("panes")["panes"]


@pytest.mark.parametrize("line, part", BAD_LINES, ids=lambda value: value[:40])
def test_bad_line_says_what_is_wrong_and_changes_nothing(shared_host, line, part):
    before = state(shared_host)
    shared_host.send(line)
    answer = shared_host.receive()
    assert answer["ok"] is False
    assert part in answer["error"]
    assert state(shared_host) == before


def test_deepest_allowed_message_is_taken(shared_host):
    shared_host.send('{"do":"post","message":' + '{"a":' * 62 + "{}" + "}" * 62 + "}")
    assert shared_host.receive() == {"ok": True}


def test_lines_sent_together_are_answered_in_order_and_a_wait_holds_the_rest(shared_host):
    shared_host.send('{"do":"wait","script":"never","timeoutMs":300}\n{"do":"log"}\n{"do":"fly"}')
    answers = [shared_host.receive() for _ in range(3)]
    assert answers[0] == {"ok": False, "error": 'timed out after 300 ms waiting for "never"'}
    assert answers[1]["ok"] and answers[1]["paths"]
    assert answers[2]["error"] == 'unknown command "fly"'


def test_wait_gives_each_posted_json_once(shared_host):
    token = {"action": "setAccessToken", "accessToken": "dev-é-𝄞"}
    shared_host.post(**token)
    shared_host.post(action="requestAccessToken")
    assert "dev-é-𝄞" in shared_host.wait("dev-é")
    with pytest.raises(DevhostError, match="timed out"):
        shared_host.wait("dev-é", timeout=0.1)


def test_message_of_a_foreign_page_is_not_answered(shared_host):
    shared_host.do("post", message={"action": "requestAccessToken"}, source="http://elsewhere.test/")
    shared_host.do("post", message={"action": "requestAccessToken"}, asJson=True)
    with pytest.raises(DevhostError, match="timed out"):
        shared_host.wait("accessToken", timeout=0.3)


def test_quit_reports_a_clean_end(tmp_path):
    with start(tmp_path) as host:
        host.do("open-pane")
        answer = host.quit()
        assert answer["liveObjects"] == 0 and answer["canUnload"]
        assert host.exit_code == 0


def test_end_of_input_is_a_quit(tmp_path):
    with start(tmp_path) as host:
        host.do("panes")
        host.close()
        assert host.exit_code == 0


@pytest.mark.parametrize("arguments, text", [
    (["--fly", "x"], "unknown option --fly"),
    (["--host"], "--host needs excel or wps"),
    (["--host", "word"], '--host needs excel or wps, not "word"'),
    (["--service", "ftp://127.0.0.1"], "--service needs http"),
    (["--calc-port", "70000"], "--calc-port needs a port"),
])
def test_wrong_command_line_is_one_clear_line_and_status_2(tmp_path, arguments, text):
    with start(tmp_path, *arguments) as host:
        with pytest.raises(DevhostError, match="status 2"):
            host.receive()
    log = (tmp_path / "devhost.log").read_text().strip().splitlines()
    assert text in log[-1]
    assert len([line for line in log if line.startswith("devhost:")]) == 1
