"""The local service by itself, over real HTTP and with real machine translation."""

import http.client
import json
import os
import re
import signal
import socket
import subprocess
import time
from pathlib import Path
from urllib.parse import urlsplit

import pytest

SERVER = Path(__file__).resolve().parent.parent.parent / "service" / "server.js"


def ask(service, verb, path, body=None, token="dev-test", timeout=30):
    """One request; gives status, body text and headers. `body` may be bytes or anything that JSON can hold."""
    address = urlsplit(service.url)
    if address.scheme == "https":
        connection = http.client.HTTPSConnection(address.netloc, timeout=timeout, context=service.trust)
    else:
        connection = http.client.HTTPConnection(address.netloc, timeout=timeout)
    headers = {"Content-Type": "application/json"}
    if token is not None:
        headers["Authorization"] = f"Bearer {token}"
    data = body if body is None or isinstance(body, bytes) else json.dumps(body).encode("utf-8")
    try:
        connection.request(verb, path, data, headers)
        answer = connection.getresponse()
        return answer.status, answer.read().decode("utf-8"), answer.headers
    finally:
        connection.close()


def job(*texts, source="en", target="es", **more):
    return {"texts": list(texts), "unitIds": [f"R{i}C1" for i in range(1, len(texts) + 1)],
            "sourceLang": source, "targetLang": target, **more}


def translate(service, *texts, **more):
    status, body, _ = ask(service, "POST", "/v1/translate", job(*texts, **more))
    assert status == 200, body
    return json.loads(body)["translations"]


@pytest.fixture(autouse=True)
def clean(service):
    service.reset()
    yield
    service.reset()


def test_translates_both_ways_and_echoes_the_unit_ids(service):
    status, body, _ = ask(service, "POST", "/v1/translate", job("The house is red.", "Quarterly report"))
    assert status == 200
    assert json.loads(body) == {"translations": ["La casa es roja.", "Informe trimestral"], "unitIds": ["R1C1", "R2C1"]}
    assert translate(service, "La casa es roja.", source="es", target="en-GB") == ["The house is red."]
    assert translate(service, "¿Dónde está la casa?", source="auto", target="en")[0].endswith("house?")


def test_offers_the_installed_pairs(service):
    pairs = service.call("GET", "/v1/languages")["pairs"]
    assert ["en", "es"] in pairs and ["es", "en"] in pairs


@pytest.mark.parametrize("text, pattern", [
    ("First line\nSecond line\r\n\nThe end", r"Primera línea\nSegunda línea\r\n\nEl fin"),
    ("  Revenue by region. \t", r"  Ingresos por región\. \t"),
    ("See [[QV_REF_1]] and [[qv__07]].", r"\w+ \[\[QV_REF_1\]\] y \[\[qv__07\]\]\."),
    ("[[QV_A_1]][[QV_B_2]]", r"\[\[QV_A_1\]\]\[\[QV_B_2\]\]"),
    ("12,345.6", r"12,345\.6"),
    ("", ""),
    ("Costs ~ $5/unit ^ [net] {gross} \\ <b> @", r".* ~ \$5/unidad \^ \[.*\] \{.*\} \\ <b> @"),
    ("Write to jane.doe@example.com today.", r".*jane\.doe@example\.com.*\."),
    ("Total: N/A", "Total: N/A"),
    ("四半期の売上", "四半期の売上"),
    ("تقرير الربع الثالث", "تقرير الربع الثالث"),
    ("The 🚀 house", r".*🚀.*casa.*"),
    ("TOTAL REVENUE", "INGRESOS TOTALES"),
    ("The forecast is updated every week.", r"(?!.* \.).*\."),
    ("Zorbal's growth was strong.", r"(?!.*  )Zorbal .*\."),
    ("a\u0000b", "a\u0000b"),
])
def test_leaves_alone_what_is_no_language(service, text, pattern):
    translated, neighbour = translate(service, text, "The house")
    assert re.fullmatch(pattern, translated), translated
    assert neighbour == "La casa"


def test_honours_the_glossary_by_whole_words_longest_first_and_in_their_case(service):
    glossary = [{"source": "sales", "target": "comercio"}, {"source": "net sales", "target": "ventas limpias"},
                {"source": "US", "target": "EE. UU.", "note": "country"}]
    translated = translate(service, "Net sales in the US", "SALES", "salesman", "They sold us", glossary=glossary)
    assert translated[0].startswith("Ventas limpias") and translated[0].endswith("EE. UU.")
    assert translated[1] == "COMERCIO"
    assert "comercio" not in translated[2].lower()
    assert "EE" not in translated[3]


def test_answers_the_same_in_any_order_and_alone(service):
    texts = [f"{who} {what}{end}" for who in ("The board", "Our team", "Revenue", "A new plant", "don't")
             for what in ("approved the plan", "of the", "grew by 5%", "in order", "sum of all")
             for end in ("", ".", "…", "?")]
    together = translate(service, *texts)
    assert translate(service, *reversed(texts)) == together[::-1]
    assert [translate(service, text)[0] for text in texts[:10]] == together[:10]


def test_a_batch_costs_far_less_than_a_program_start_a_text(service):
    translate(service, "warm up")
    texts = [f"The revenue of branch {n} rose." for n in range(20)]
    start = time.monotonic()
    translate(service, *texts)
    assert time.monotonic() - start < 1.5


def test_concurrent_batches_do_not_mix(service):
    from concurrent.futures import ThreadPoolExecutor
    batches = [[f"The house number {b} and {n}" for n in range(20)] for b in range(8)]
    with ThreadPoolExecutor(8) as pool:
        for b, answer in enumerate(pool.map(lambda texts: translate(service, *texts), batches)):
            assert [re.findall(r"\d+", text) for text in answer] == [[str(b), str(n)] for n in range(20)]


@pytest.mark.parametrize("token, status, body", [
    (None, 401, ""),
    ("prod-1", 401, ""),
    ("dev-broke", 402, '{"code":"insufficient_credits","message":"insufficient_credits"}'),
])
def test_refuses_tokens(service, token, status, body):
    answer = ask(service, "POST", "/v1/translate", job("The house"), token=token)
    assert answer[:2] == (status, body)
    assert answer[2]["Content-Length"] == str(len(body))


@pytest.mark.parametrize("body", [
    b"", b"{", b"[]", b"\xff\xfe", b"null", {"texts": []}, {"texts": "The house", "targetLang": "es"},
    {"texts": [1], "targetLang": "es"}, {"texts": ["The house"]},
    {"texts": ["The house"], "unitIds": [], "targetLang": "es"},
    {"texts": ["The house"], "targetLang": "es", "glossary": [{"source": "house"}]},
    {"texts": ["The house"], "targetLang": "es", "instruction": 7},
])
def test_refuses_broken_bodies(service, body):
    status, answer, _ = ask(service, "POST", "/v1/translate", body)
    assert status == 400 and json.loads(answer)["code"] == "bad_request"


@pytest.mark.parametrize("source, target", [("en", "fr"), ("zh-CN", "es"), ("en", "no such")])
def test_an_unknown_pair_is_named(service, source, target):
    status, answer, _ = ask(service, "POST", "/v1/translate", job("The house", source=source, target=target))
    assert status == 400 and json.loads(answer)["code"] == "unsupported_language_pair"


@pytest.mark.parametrize("fault, status, body", [
    ({"status": 500}, 500, ""),
    ({"status": 401, "body": {"error": "expired"}}, 401, '{"error":"expired"}'),
    ({"status": 429, "body": None}, 429, ""),
    ({"raw": '{"translations":["'}, 200, '{"translations":["'),
    ({"status": 502, "raw": "<html>"}, 502, "<html>"),
])
def test_a_fault_answers_once_in_place_of_the_service(service, fault, status, body):
    service.fail_next(fault)
    assert ask(service, "POST", "/v1/translate", job("The house"))[:2] == (status, body)
    assert translate(service, "The house") == ["La casa"]


def test_faults_match_by_text_last_as_long_as_told_and_can_be_cleared(service):
    service.fail_next({"status": 500, "match": "red", "times": 2}, {"status": 503, "times": -1})
    statuses = [ask(service, "POST", "/v1/translate", job("The house", text))[0]
                for text in ("red one", "blue one", "red two", "red three")]
    assert statuses == [500, 503, 500, 503]
    service.call("DELETE", "/control/faults")
    assert translate(service, "red") == ["rojo"]


def test_faults_spoil_good_answers(service):
    service.fail_next({"countMismatch": True}, {"dropPlaceholders": True}, {"delayMs": 300})
    assert len(translate(service, "The house", "red")) == 3
    assert "[[" not in translate(service, "See [[QV_REF_1]] now")[0]
    start = time.monotonic()
    assert translate(service, "The house") == ["La casa"]
    assert time.monotonic() - start >= 0.3


def test_a_connection_breaks_off_in_the_middle_of_the_body(service):
    service.fail_next({"dropMidBody": True})
    with pytest.raises(http.client.IncompleteRead):
        ask(service, "POST", "/v1/translate", job("The house"))


def test_a_hanging_request_holds_up_nobody_else(service):
    service.fail_next({"hang": True, "match": "never"})
    with pytest.raises(socket.timeout):
        ask(service, "POST", "/v1/translate", job("never"), timeout=0.5)
    assert translate(service, "The house") == ["La casa"]


@pytest.mark.parametrize("queue", [{}, [{"statsu": 500}], [{"status": "500"}], [{"times": 0}], ["hang"]])
def test_refuses_misspelt_faults(service, queue):
    assert ask(service, "POST", "/control/faults", {"queue": queue})[0] == 400
    assert translate(service, "The house") == ["La casa"]


def test_records_requests_with_their_times(service):
    before = time.time() * 1000
    translate(service, "The house", usageKind="translate_full", trace={"runId": "7"})
    ask(service, "POST", "/v1/translate", b"{broken")
    first, second = service.requests()
    assert first["body"]["trace"] == {"runId": "7"} and first["headers"]["authorization"] == "Bearer …test"
    assert (first["method"], first["path"], first["status"]) == ("POST", "/v1/translate", 200)
    assert before <= first["startMs"] <= first["endMs"] <= second["startMs"] <= time.time() * 1000
    assert second["body"] == "{broken" and second["status"] == 400


def test_takes_analytics_events(service):
    event = {"event": "addin:loaded", "context": {"installId": "x"}, "outcome": "ok", "props": {"source": "client"}}
    assert ask(service, "POST", "/v1/analytics/events", {"events": [event]}, token=None)[:2] == (204, "")
    assert service.call("GET", "/v1/analytics/events")[-1] == event
    assert ask(service, "POST", "/v1/analytics/events", {"event": 1})[0] == 400


class Started:
    """A service of the test's own, to end it in every way."""

    def __init__(self, *arguments):
        self.process = subprocess.Popen(["node", str(SERVER), "--port", "0", *arguments], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)
        self.url = self.process.stdout.readline().split()[-1]

    def finish(self):
        with self.process:
            return self.process.communicate(timeout=5)[0]


def children_of(pid):
    return Path(f"/proc/{pid}/task/{pid}/children").read_text().split()


@pytest.mark.parametrize("end", [
    lambda started: started.process.send_signal(signal.SIGTERM),
    lambda started: started.process.send_signal(signal.SIGINT),
    lambda started: started.process.stdin.close(),
], ids=["SIGTERM", "SIGINT", "leash"])
def test_ends_at_once_with_its_pipelines_even_while_a_request_hangs(end):
    started = Started("--leash", "--faults")
    translate(started, "The house")
    pipelines = children_of(started.process.pid)
    assert pipelines
    ask(started, "POST", "/control/faults", {"queue": [{"hang": True}]})
    waiting = socket.create_connection(("127.0.0.1", urlsplit(started.url).port))
    body = json.dumps(job("The house")).encode()
    waiting.sendall(b"POST /v1/translate HTTP/1.1\r\nHost: x\r\nAuthorization: Bearer dev-x\r\n"
                    b"Content-Type: application/json\r\nContent-Length: %d\r\n\r\n%s" % (len(body), body))
    start = time.monotonic()
    end(started)
    if started.process.stdin.closed:
        started.process.stdin = None
    started.finish()
    assert started.process.returncode == 0 and time.monotonic() - start < 3
    waiting.close()
    # Killed is not yet gone, on a busy machine.
    deadline = time.monotonic() + 2
    while any(map(is_alive, pipelines)) and time.monotonic() < deadline:
        time.sleep(0.01)
    assert not [pid for pid in pipelines if is_alive(pid)]


def is_alive(pid):
    """A killed pipeline that nobody has reaped yet is not alive."""
    try:
        return Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


def test_a_lost_pipeline_comes_back_for_the_next_request():
    started = Started("--leash")
    assert translate(started, "The house") == ["La casa"]
    for pid in children_of(started.process.pid):
        os.killpg(int(pid), signal.SIGKILL)
    assert translate(started, "The house") == ["La casa"]
    log = started.finish()
    assert len(re.findall(r"^POST /v1/translate 200 1 texts \d+ ms$", log, re.M)) == 2


def test_offers_no_control_without_being_told_and_keeps_serving_a_parent_that_does_not_read():
    started = Started("--leash", "--engine", "echo")
    assert ask(started, "POST", "/control/faults", {"queue": []})[0] == 404
    for n in range(3000):
        assert translate(started, f"text {n}") == [f"ES:text {n}"]
    started.finish()


@pytest.mark.parametrize("arguments", [["--port", "x"], ["--engine", "none"], ["--nonsense"]])
def test_refuses_options_that_it_does_not_know(arguments):
    done = subprocess.run(["node", str(SERVER), *arguments], capture_output=True, text=True, timeout=20)
    assert done.returncode == 2 and "usage:" in done.stderr
