"""Runs over all sheets: which ones, in which order, and what a user who moves between sheets meets."""

import openpyxl
import pytest

from conftest import save_sheets
from panel_driver import column, sentences, slow_down, translate_entries, translate_requests, translated
from run_driver import LogTail, argument, display, end_of_run, event, run, start, switched

SHEETS = {"Zulu": sentences(25, "garden"), "Numbers": [1, 2.5], "Alpha": sentences(4, "harbour"), "Blank": [],
          "Hidden": sentences(2, "cellar"), "Very hidden": sentences(2, "vault"), "Mike": sentences(3, "market")}
VISITED = ["Zulu", "Alpha", "Mike"]
TEXTS = [text for name in VISITED for text in SHEETS[name]]


@pytest.fixture(scope="module")
def opened(echo_host, tmp_path_factory):
    path = save_sheets(SHEETS, tmp_path_factory.mktemp("sheets") / "book.xlsx")
    book = openpyxl.load_workbook(path)
    book["Hidden"].sheet_state, book["Very hidden"].sheet_state = "hidden", "veryHidden"
    book.save(path)
    return echo_host(path)


@pytest.fixture
def host(opened, running_echo_service):
    """The second sheet is the active one, and nothing is translated."""
    running_echo_service.reset()
    opened.do("select", sheet="Alpha", address="A1")
    display(opened, "original")
    return opened


def events_of(host, name, since):
    return [argument(entry["text"]) for entry in host.scripts()[since:] if f"{name}({{" in entry["text"]]


def activate(host, name):
    """Goes to a sheet as the user does, and waits until the page has heard of it."""
    host.do("sheet", activate=name)
    while event(host, "onExcelActiveSheetChanged") != {"sheetName": name}:
        pass


def test_visible_sheets_with_texts_are_visited_in_order(host, running_echo_service):
    log, since = LogTail(host), len(host.scripts())
    done = run(host, excelTranslateAllSheets=True)
    assert [text for body in translate_requests(running_echo_service) for text in body["texts"]] == TEXTS
    assert {name: column(host, len(SHEETS[name]), name) for name in SHEETS} == {
        name: [translated(text) for text in texts] if name in VISITED else texts for name, texts in SHEETS.items()}
    # The sheet that was active counts as the run's own; going there is told as well, staying is not.
    changes = events_of(host, "onExcelTranslateSheetChanged", since)
    assert changes == [{"runId": done["runId"], "sheetName": name, "sourceSheetName": "Alpha", "mode": "full"}
                       for name in VISITED]
    skipped = [line.split("sheet=")[1] for line in log.lines() if "Excel allSheets skip empty sheet=" in line]
    assert skipped == ["Numbers", "Blank"]
    assert log.line("Excel allSheets sheet=Zulu") == \
        f"Excel allSheets sheet=Zulu cells=25 charts=0 workbookChars={sum(map(len, SHEETS['Zulu']))}"
    assert done["allSheets"] is True
    # The user's own sheet is still the one that is shown.
    assert host.do("sheet")["active"] == "Alpha"


def test_the_next_run_restores_all_sheets_before_it_collects(host, running_echo_service):
    run(host, excelTranslateAllSheets=True)
    log = LogTail(host)
    running_echo_service.reset()
    run(host, excelTranslateAllSheets=True, excelBilingualBelow=False)
    assert log.line("Excel restore before collect") == \
        f"Excel restore before collect sheet=<all> candidates={len(TEXTS)} restored={len(TEXTS)} failed=0"
    assert [text for body in translate_requests(running_echo_service) for text in body["texts"]] == TEXTS
    assert column(host, 3, "Mike") == [f"ES:{text}" for text in SHEETS["Mike"]]


def test_a_run_over_all_sheets_goes_on_whatever_sheet_is_shown(host, running_echo_service):
    slow_down(running_echo_service, TEXTS[0], delay_ms=4000)
    start(host, excelTranslateAllSheets=True)
    event(host, "onRunStarted")
    activate(host, "Mike")
    assert "onComplete({" in end_of_run(host)
    assert column(host, 25, "Zulu") == [translated(text) for text in SHEETS["Zulu"]]


def test_a_run_over_one_sheet_pauses_while_another_one_is_shown(host, running_echo_service):
    activate(host, "Zulu")
    slow_down(running_echo_service, SHEETS["Zulu"][0], delay_ms=4000)
    start(host)
    event(host, "onRunStarted")
    activate(host, "Mike")
    host.post(action="resume")
    assert event(host, "onExcelTranslateResumeBlocked") == {"sheetName": "Mike", "sourceSheetName": "Zulu"}
    while translate_entries(running_echo_service)[-1]["endMs"] is None:
        host.do("sync")
    assert column(host, 25, "Zulu") == SHEETS["Zulu"]
    activate(host, "Zulu")
    host.post(action="resume")
    assert event(host, "onExcelTranslateResumed") == {"reason": "sheet_changed"}
    assert "onComplete({" in end_of_run(host)
    assert column(host, 25, "Zulu") == [translated(text) for text in SHEETS["Zulu"]]
    assert column(host, 4, "Alpha") == SHEETS["Alpha"]


def test_a_pause_by_the_user_is_resumed_as_such(host, running_echo_service):
    activate(host, "Zulu")
    slow_down(running_echo_service, SHEETS["Zulu"][0], delay_ms=4000)
    start(host)
    host.post(action="pause")
    host.post(action="resume")
    assert event(host, "onExcelTranslateResumed") == {"reason": "manual"}
    assert "onComplete({" in end_of_run(host)
    assert display(host, "original", "sheet") == switched("original", 25)
