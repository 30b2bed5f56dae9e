"""The proxy for language models between OpenAI's own client and the local service over https, with a scripted model behind
it."""

import os
import socket
import urllib.error
import urllib.request
import uuid
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest

from llm_proxy import LlmProxy, ask

HELLO = [{"role": "user", "content": "Hello"}]
WHOLE = {"model": "quorvantis/any", "messages": HELLO}
STREAM = {**WHOLE, "stream": True}
# A user of this run alone, to be looked for in what it leaves behind.
USER = f"dev-{uuid.uuid4().hex}"


@pytest.fixture(scope="module")
def running_proxy(model_service):
    with LlmProxy(model_service.url, model_service.authority) as started:
        yield started


@pytest.fixture
def proxy(running_proxy):
    """The proxy, listening for a user who is signed in."""
    running_proxy.prepare(USER)
    return running_proxy


def words(answer):
    return [piece["delta"]["content"] for piece in answer["pieces"] if "content" in piece["delta"]]


def fetch(proxy, path, method="GET", body=None, headers=None):
    request = urllib.request.Request(f"http://127.0.0.1:{proxy.port}{path}", method=method, data=body,
                                     headers=headers or {})
    try:
        with urllib.request.urlopen(request, timeout=30) as answer:
            return answer.status, dict(answer.headers), answer.read()
    except urllib.error.HTTPError as error:
        return error.code, dict(error.headers), error.read()


def test_an_answer_in_one_piece(proxy, start_model):
    start_model([{"say": "Good morning"}])
    [answer] = ask(proxy.base_url, proxy.key, WHOLE)
    assert answer["message"]["content"] == "Good morning"
    assert answer["finish"] == "stop"


@pytest.mark.parametrize("framing", ["close", "comments"])
def test_a_stream_brings_each_word_while_the_next_is_not_said_yet(proxy, start_model, framing):
    said = [f" word{index}" for index in range(20)]
    start_model([{"say": "".join(said), "everyMs": 50}], framing=framing)
    [answer] = ask(proxy.base_url, proxy.key, STREAM)
    assert words(answer) == said
    assert answer["finish"] == "stop"
    times = [piece["ms"] for piece in answer["pieces"]]
    # The model takes at least 50 ms between two words. A relay that collected them would bring many at once.
    gaps = [later - earlier for earlier, later in zip(times, times[1:20])]
    assert sum(gap > 10 for gap in gaps) >= 15, gaps


def test_calls_of_tools_pass_whole_and_in_pieces(proxy, start_model):
    call = {"call": "excelReadRange", "arguments": {"range": "A1:B2", "text": "\"ä\n"}}
    start_model([call, call], [{"say": "I look."}, call])
    tools = {"tools": [{"type": "function", "function": {"name": "excelReadRange", "parameters": {"type": "object"}}}]}
    whole, stream = ask(proxy.base_url, proxy.key, {**WHOLE, **tools}, {**STREAM, **tools})
    expected = '{"range":"A1:B2","text":"\\"ä\\n"}'
    assert [each["function"] for each in whole["message"]["tool_calls"]] == [
        {"name": "excelReadRange", "arguments": expected}] * 2
    assert whole["finish"] == stream["finish"] == "tool_calls"
    pieces = [tool["function"].get("arguments", "") for piece in stream["pieces"]
              for tool in piece["delta"].get("tool_calls", [])]
    assert len(pieces) == 3 and "".join(pieces) == expected


@pytest.mark.parametrize("request_", [WHOLE, STREAM], ids=["whole", "stream"])
def test_the_models_errors_are_the_agents(proxy, start_model, request_):
    statuses = [400, 401, 429, 500]
    start_model(*([{"fail": status, "message": f"no {status}"}] for status in statuses))
    answers = ask(proxy.base_url, proxy.key, *([request_] * 4))
    assert [answer["status"] for answer in answers] == statuses
    assert [answer["message"] for answer in answers] == [f"{status} no {status}" for status in statuses]


def test_the_services_own_refusals_are_the_agents(proxy, start_model):
    start_model()
    proxy.set_token("nobody")
    [answer] = ask(proxy.base_url, proxy.key, WHOLE)
    assert (answer["status"], answer["message"]) == (401, "401 not signed in")


def test_a_model_that_dies_in_its_stream_leaves_what_it_said_and_the_next_is_served(proxy, start_model):
    start_model([{"say": "one two"}, {"stall": 100}, {"die": True}], [{"say": "alive"}])
    broken, whole = ask(proxy.base_url, proxy.key, STREAM, WHOLE)
    assert words(broken) == ["one", " two"]
    assert "finish" not in broken
    assert whole["message"]["content"] == "alive"


def test_a_model_that_dies_in_a_whole_answer_is_an_error(proxy, start_model):
    start_model([{"die": True}])
    [answer] = ask(proxy.base_url, proxy.key, WHOLE)
    assert answer["status"] == 502
    assert "message" in answer and "pieces" not in answer


def test_a_client_that_leaves_its_stream_holds_up_nobody(proxy, start_model):
    # An hour of words, were nobody to notice.
    start_model([{"say": " word" * 36_000, "everyMs": 100}], [{"say": "next"}])
    left, after = ask(proxy.base_url, proxy.key, {**STREAM, "leaveAfter": 3}, WHOLE)
    assert len(left["pieces"]) == 3
    assert after["message"]["content"] == "next"


def test_only_the_key_opens(proxy, start_model):
    start_model([{"say": "open"}])
    for key in ("qv_wrong", proxy.key.upper(), proxy.key[:-1], USER):
        [answer] = ask(proxy.base_url, key, WHOLE)
        assert (answer["status"], answer["message"], answer["type"]) == (401, "401 invalid api key", "unauthorized")
    [answer] = ask(proxy.base_url, proxy.key, WHOLE)
    assert answer["message"]["content"] == "open"


def test_a_user_who_signs_in_out_and_in_again_need_not_start_anything_anew(proxy, start_model):
    start_model([{"say": "before"}], [{"say": "after"}])
    told = []
    for token in (USER, "", "dev-bob"):
        proxy.set_token(token)
        [answer] = ask(proxy.base_url, proxy.key, WHOLE)
        told.append(answer["message"] if "status" in answer else answer["message"]["content"])
    assert told == ["before", "401 user not signed in to Quorvantis", "after"]


def test_other_requests_have_their_answers(proxy):
    status, headers, body = fetch(proxy, "/v1/chat/completions", "OPTIONS")
    assert (status, body, headers.get("Access-Control-Allow-Origin")) == (204, b"", "*")
    assert "Content-Type" not in headers
    status, _, body = fetch(proxy, "/v1/models", headers={"Authorization": f"Bearer {proxy.key}"})
    assert (status, body) == (404, b'{"error":{"message":"endpoint not found","type":"invalid_request_error"}}')


def test_eight_megabytes_pass_in_both_directions(proxy, start_model):
    start_model([{"flood": 8_000_000}], [{"flood": 8_000_000}])
    long = {**WHOLE, "messages": [{"role": "user", "content": "word " * 1_600_000}]}
    whole, stream = ask(proxy.base_url, proxy.key, long, {**long, "stream": True})
    assert len(whole["message"]["content"]) == 8_000_000
    assert sum(map(len, words(stream))) == 8_000_000


def test_requests_at_once_are_served_one_after_the_other(proxy, start_model):
    start_model(*([{"say": "a b c", "everyMs": 20}] for _ in range(4)))
    with ThreadPoolExecutor(4) as pool:
        answers = list(pool.map(lambda _: ask(proxy.base_url, proxy.key, STREAM)[0], range(4)))
    assert [words(answer) for answer in answers] == [["a", " b", " c"]] * 4


def test_a_stop_frees_the_port_and_a_new_start_keeps_the_key(proxy, start_model):
    start_model([{"say": "again"}])
    key = proxy.key
    proxy.stop()
    with pytest.raises(ConnectionRefusedError):
        socket.create_connection(("127.0.0.1", proxy.port), 5).close()
    proxy.prepare(USER)
    assert proxy.key == key
    [answer] = ask(proxy.base_url, key, WHOLE)
    assert answer["message"]["content"] == "again"


def test_nothing_that_is_left_behind_holds_the_key_or_the_users_token(proxy, start_model):
    start_model([{"say": "a word"}], [{"say": "a word"}])
    ask(proxy.base_url, proxy.key, WHOLE, STREAM)
    ask(proxy.base_url, USER, WHOLE)
    users = Path(os.environ["WINEPREFIX"]) / "drive_c" / "users"
    left = {path: path.read_bytes() for path in users.rglob("AppData/Local/Quorvantis/**/*") if path.is_file()}
    assert any("[LlmProxy] auth header".encode("utf-16-le") in content for content in left.values())
    for secret in (USER, proxy.key, proxy.key[8:]):
        for encoding in ("utf-8", "utf-16-le"):
            assert [path for path, content in left.items() if secret.encode(encoding) in content] == []
