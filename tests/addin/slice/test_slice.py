"""The main way through the real DLL on the memory engine, as Excel and as WPS Spreadsheets: created through COM, driven
by panel messages, translating over HTTP, and everything put back."""

import json
import sys
import uuid
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "devhost" / "client"))

from devhost_client import Devhost  # noqa: E402
from local_service import LocalService  # noqa: E402

BOOK = {"sheets": [
    {"name": "Data", "frozenRows": 1, "merges": ["A1:B1"], "charts": [{"title": "Sales"}],
     "cells": {"A1": "Heading", "A2": "First text", "B2": 12.5, "A3": "First text", "B3": True, "A4": "two\nlines",
               "A5": {"v": "kept", "f": "=D1"}, "A6": "=not a formula", "A7": "12,345.6"}},
    {"name": "Locked", "protected": True, "cells": {"A1": "Locked text"}},
    {"name": "Hidden", "hidden": True, "cells": {"A1": "Hidden text"}},
]}


@pytest.fixture(scope="module")
def service():
    started = LocalService("--engine", "echo")
    yield started
    started.close()


@pytest.fixture(params=["excel", "wps"])
def host(request, service, tmp_path):
    service.reset()
    path = tmp_path / "book.json"
    path.write_text(json.dumps(BOOK), encoding="utf-8")
    with Devhost("--workbook", path, "--engine", "memory", "--host", request.param, "--service", service.url,
                 log_path=tmp_path / "devhost.log", env={"QV_SKIP_BUILD": "1"}) as started:
        started.post(action="setAccessToken", accessToken="dev-test")
        yield started


def start(host, **members):
    host.post(**{"action": "start", "panelMode": "full", "sourceLang": "en", "targetLang": "es",
                 "clientTraceId": str(uuid.uuid4()), **members})


def values(host, *addresses, sheet="Data"):
    return [host.cell(sheet, address)["value"] for address in addresses]


def ends_clean(host):
    counters = host.do("counters")
    assert counters["live"] == 0 and counters["wrongThread"] == 0
    ending = host.quit()
    assert ending["ok"] and ending["liveObjects"] == 0
    return True


def test_both_layouts(host):
    start(host, excelBilingualBelow=True)
    host.wait("onComplete({")
    assert values(host, "A1", "A2", "A3", "A4") == [
        "Heading\nES:Heading", "First text\nES:First text", "First text\nES:First text", "two\nES:two"]
    assert values(host, "B2", "A7") == [12.5, "12,345.6"]
    assert values(host, "B3") == ["TRUE\nES:TRUE"]
    runs = host.cell("Data", "A2")["runs"]
    assert [run["color"] for run in runs][-1] == 9203290 and runs[-1]["text"] == "ES:First text"
    start(host, excelTranslateAllSheets=True)
    host.wait("onComplete({")
    assert values(host, "A2") == ["ES:First text"]  # its last line was the earlier translation
    assert values(host, "A1", sheet="Locked") == ["Locked text"]
    assert values(host, "A1", sheet="Hidden") == ["Hidden text"]
    notices = [entry for entry in host.scripts() if '"sheetWriteBlocked"' in entry["text"]]
    assert len(notices) == 1
    assert ends_clean(host)


def test_text_that_looks_like_a_formula_stays_text(host):
    start(host)
    host.wait("onComplete({")
    cell = host.cell("Data", "A6")
    assert cell["value"] == "ES:=not a formula" and not cell["formula"].startswith("=")
    assert ends_clean(host)


def test_a_busy_host_is_asked_again(host):
    start(host, excelBilingualBelow=True)
    host.wait("onReady({")
    host.do("fault", fault={"busy": 3, "member": "Range.Value2"})
    host.wait("onComplete({")
    assert values(host, "A2") == ["First text\nES:First text"]
    assert not [entry for entry in host.scripts() if "sheetWriteBlocked" in entry["text"]]
    assert ends_clean(host)


def test_a_service_that_recovers_and_one_that_mixes_up_counts(host, service):
    service.fail_next({"status": 500, "body": {"message": "down"}}, {"countMismatch": True},
                      {"status": 429, "body": None})
    start(host, excelBilingualBelow=True)
    host.wait("onComplete({")
    assert values(host, "A2") == ["First text\nES:First text"]
    assert ends_clean(host)


def test_a_pane_closed_in_a_run_and_opened_again(host, service):
    service.fail_next({"delayMs": 500})
    start(host)
    host.wait("onReady({")
    host.do("close-pane", pane=1)
    host.do("open-pane")
    assert values(host, "A2") == ["First text"]
    assert ends_clean(host)
