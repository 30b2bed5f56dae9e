"""Whole runs through the real add-in, LibreOffice and the local service, judged by an independent reader."""

import hashlib
import json
import os
import re
import subprocess

import pytest

from conftest import ROOT, SAMPLE
from devhost_client import Devhost
from run_driver import run_to_end as run
from run_driver import start
from xlsx_reader import expected_units, load_book

TRANSLATION_COLOR = "5A6E8C"
DEFAULT_HEIGHT = 15.0


def texts_of(host):
    return [entry["text"] for entry in host.scripts() if entry["kind"] in ("script", "json")]


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def translations_of(service, sources):
    """What the service says of each text, asked on its own."""
    known = {}
    for begin in range(0, len(sources), 20):
        part = sources[begin:begin + 20]
        answer = service.call("POST", "/v1/translate", token="dev-test",
                              body={"texts": part, "sourceLang": "en", "targetLang": "es"})
        known.update(zip(part, answer["translations"]))
    return known


@pytest.fixture(scope="module")
def whole_workbook(running_service, tmp_path_factory):
    """The sample, all sheets, both languages in each cell: the books before and after and what the page heard."""
    folder = tmp_path_factory.mktemp("whole")
    running_service.reset()
    original = digest(SAMPLE)
    with Devhost("--workbook", SAMPLE, "--engine", "calc", "--service", running_service.url,
                 "--authority", running_service.authority,
                 log_path=folder / "devhost.log", env={"QV_SKIP_BUILD": "1"}) as host:
        last = run(host, panelMode="full", excelTranslateAllSheets=True, excelBilingualBelow=True)
        host.do("save", path=str(folder / "after.xlsx"))
        texts = texts_of(host)
        ending = host.quit()
    assert digest(SAMPLE) == original
    return {"before": load_book(SAMPLE), "after": load_book(folder / "after.xlsx"), "path": folder / "after.xlsx",
            "last": last, "texts": texts, "ending": ending}


def units_of_visible_sheets(book):
    return {(name, address): source for name, sheet in book.items() if not sheet.hidden
            for address, source in expected_units(book, name).items()}


def is_refused(book, place):
    sheet, address = place
    return book[sheet].protected and book[sheet][address].locked


def test_every_unit_holds_source_and_translation_and_nothing_else_changed(whole_workbook, running_service):
    before, after = whole_workbook["before"], whole_workbook["after"]
    units = units_of_visible_sheets(before)
    translated = {place: source for place, source in units.items() if not is_refused(before, place)}
    assert len(translated) >= 150 and len(translated) < len(units)
    known = translations_of(running_service, sorted(set(translated.values())))
    for (sheet, address), source in translated.items():
        assert after[sheet][address].value == source.rstrip() + "\n" + known[source], (sheet, address)
        assert after[sheet][address].wrap
    for sheet in before:
        for address, cell in before[sheet].items():
            now = after[sheet][address]
            if cell.type != "bool":  # Calc spells a boolean's own look as a number format
                assert now.number_format == cell.number_format, (sheet, address)
            if (sheet, address) not in translated:
                assert (now.value, now.formula, now.type) == (cell.value, cell.formula, cell.type), (sheet, address)


def test_only_the_translation_is_styled(whole_workbook):
    before, after = whole_workbook["before"], whole_workbook["after"]
    for (sheet, address), source in units_of_visible_sheets(before).items():
        if before[sheet].protected:  # a protected sheet takes texts into unlocked cells, but no formats
            continue
        runs = after[sheet][address].runs
        styled = "".join(part.text for part in runs if part.color == TRANSLATION_COLOR)
        plain = "".join(part.text for part in runs if part.color != TRANSLATION_COLOR)
        assert styled.lstrip("\n") == after[sheet][address].value[len(source.rstrip()) + 1:], (sheet, address)
        assert plain.rstrip("\n") == source.rstrip(), (sheet, address)


def test_rows_grow_and_frozen_rows_keep_their_height(whole_workbook):
    before, after = whole_workbook["before"], whole_workbook["after"]
    frozen = int(re.sub(r"\D", "", before["Overview"].freeze)) - 1
    heights = {sheet: {cell.row: (cell.row_height or DEFAULT_HEIGHT, after[sheet][address].row_height or DEFAULT_HEIGHT)
                       for address, cell in before[sheet].items()} for sheet in ("Overview", "Regions")}
    assert all(old == new for row, (old, new) in heights["Overview"].items() if row <= frozen)
    grown = [row for row, (old, new) in heights["Overview"].items() if row > frozen and new > old + 0.4]
    assert len(grown) >= 20
    assert all(new >= old - 0.4 for rows in heights.values() for old, new in rows.values())


def test_the_chart_title_is_translated_and_hidden_sheets_are_left(whole_workbook, running_service):
    before, after = whole_workbook["before"], whole_workbook["after"]
    title = before["Overview"].chart_titles[0]
    assert after["Overview"].chart_titles == [translations_of(running_service, [title])[title]]
    assert after["Archive"] == before["Archive"] and after["Archive"].hidden


def test_the_page_hears_the_run_in_order(whole_workbook):
    texts = whole_workbook["texts"]
    order = [next(i for i, text in enumerate(texts) if part in text)
             for part in ("onRunStarted({runId:", "onScanProgress({runId:", "onReady({total:", "onProgress({runId:",
                          "onComplete({runId:")]
    assert order == sorted(order)
    units = units_of_visible_sheets(whole_workbook["before"])
    assert sum("onProgress({runId:" in text for text in texts) == len(units) + 1  # and the chart's title
    notices = [json.loads(text)["message"] for text in texts if '"sheetWriteBlocked"' in text]
    assert notices == ["目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。"]
    assert ",allSheets:true})" in whole_workbook["last"]


def test_nothing_is_left_behind(whole_workbook):
    assert whole_workbook["ending"]["liveObjects"] == 0 and whole_workbook["ending"]["ok"]


def test_the_saved_file_opens_again(whole_workbook, start_host):
    host = start_host(whole_workbook["path"])
    assert host.cell("Overview", "A1")["value"].startswith("Quarterly report\n")
    assert host.cell("Overview", "E29")["formula"].startswith("=")


def test_a_selection_run_replaces_only_the_selection(start_host, service, tmp_path):
    host = start_host()
    host.do("select", sheet="Overview", address="B5:C7,B9")
    assert "onComplete({" in run(host, action="startSelection", excelBilingualBelow=False)
    host.do("save", path=str(tmp_path / "after.xlsx"))
    before, after = load_book(SAMPLE), load_book(tmp_path / "after.xlsx")
    changed = {address for address, cell in before["Overview"].items() if after["Overview"][address].value != cell.value}
    assert changed <= {"B5", "C5", "B6", "C6", "B7", "C7", "B9"} and len(changed) >= 6
    bodies = [entry["body"] for entry in service.requests() if entry["path"] == "/v1/translate"]
    assert {body["usageKind"] for body in bodies} == {"translate_selection"}
    assert "\n" not in after["Overview"]["B5"].value


@pytest.mark.parametrize("fault, code", [
    ({"status": 402, "body": {"code": "insufficient_credits", "message": "insufficient_credits"}, "times": -1},
     "insufficient_credits"),
    ({"status": 401, "body": None, "times": -1}, "unauthorized"),
])
def test_a_fatal_answer_ends_the_run_without_a_retry(start_host, service, fault, code):
    service.fail_next(fault)
    host = start_host()
    assert f'code:"{code}"' in run(host, panelMode="full", excelBilingualBelow=True)
    assert len([entry for entry in service.requests() if entry["path"] == "/v1/translate"]) == 1
    assert host.cell("Overview", "B5")["value"] == load_book(SAMPLE)["Overview"]["B5"].value
    assert host.quit()["liveObjects"] == 0


def test_a_cancelled_run_leaves_whole_cells(start_host, tmp_path):
    host = start_host()
    start(host, panelMode="full", excelBilingualBelow=True)
    host.wait("onProgress({")
    host.post(action="cancel")
    host.wait("onCancelled()")
    host.do("save", path=str(tmp_path / "after.xlsx"))
    before, after = load_book(SAMPLE), load_book(tmp_path / "after.xlsx")
    for address, source in expected_units(before, "Overview").items():
        value = after["Overview"][address].value
        assert value == before["Overview"][address].value or value.startswith(source.rstrip() + "\n"), address
    assert host.quit()["liveObjects"] == 0


def test_closing_the_pane_in_a_run_leaves_the_host_clean(start_host):
    host = start_host()
    start(host, panelMode="full", excelBilingualBelow=True)
    host.wait("onProgress({")
    host.do("close-pane", pane=1)
    assert host.quit()["liveObjects"] == 0


def test_wps_translates_the_same(start_host):
    host = start_host(SAMPLE, "--host", "wps")
    assert "onComplete({" in run(host, panelMode="full", excelBilingualBelow=True)
    assert host.cell("Overview", "A1")["value"].startswith("Quarterly report\n")
    assert "&host=wps-excel&" in next(e["text"] for e in host.scripts() if e["kind"] == "navigate")
    assert host.quit()["liveObjects"] == 0


@pytest.mark.parametrize("make, arguments, words", [
    (None, ["missing.xlsx"], "There is no file"),
    (b"not a workbook", ["file.xlsx"], "is no .xlsx workbook"),
    (SAMPLE.read_bytes(), ["file.xlsx", "--to", "xx"], "cannot translate en to xx"),
])
def test_the_demo_refuses_in_one_line(tmp_path, make, arguments, words):
    if make is not None:
        (tmp_path / "file.xlsx").write_bytes(make)
    command = [str(ROOT / "scripts" / "demo.sh"), str(tmp_path / arguments[0]), *arguments[1:],
               "--out", str(tmp_path / "out")]
    ended = subprocess.run(command, capture_output=True, text=True, timeout=300, env=dict(os.environ), check=False)
    assert ended.returncode not in (0, 1)
    assert words in ended.stderr and ended.stderr.count("\n") == 1
