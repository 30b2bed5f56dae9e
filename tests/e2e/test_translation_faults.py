"""What users and hosts do between a run and its restore, and in the middle of both: nothing of theirs may be lost."""

import zipfile

import pytest

from book_differences import differences
from conftest import save_sheets
from panel import wait_until
from panel_driver import SLOW_TEXTS, column, sentences, slow_down, translate_requests, translated
from run_driver import LogTail, argument, display, end_of_run, event, run, start, switched

TEXTS, OTHERS = sentences(4), sentences(3, "harbour")
BOTH = [translated(text) for text in TEXTS]
PROTECTED = "切换显示模式失败，请检查工作表是否受保护"
NOTHING_LEFT = "没有可还原的单元格"


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    return tmp_path_factory.mktemp("faults")


@pytest.fixture(scope="module")
def running_host(echo_host, folder):
    host = echo_host(save_sheets({"Sheet": ["first"]}, folder / "first.xlsx"))
    host.wait('"action":"accessToken"', timeout=20)
    host.do("close-workbook")
    return host


def open_book(host, folder, name, sheets):
    """Opens a new workbook, with a pane whose page can be posted to."""
    open_file(host, save_sheets(sheets, folder / name))


def open_file(host, path):
    host.do("window", open=str(path))
    host.do("open-pane")
    # The add-in's first word to a page that is loaded; what is posted earlier is lost.
    host.wait('"action":"accessToken"', timeout=20)


@pytest.fixture
def host(running_host, running_echo_service, folder, request):
    """A host with a workbook of its own for the test: a sheet of TEXTS, which is active, and one of OTHERS."""
    running_echo_service.reset()
    open_book(running_host, folder, f"{request.node.name}.xlsx", {"Sheet": TEXTS, "Other": OTHERS})
    yield running_host
    running_host.do("fault", fault={"clear": True})
    while running_host.do("window")["windows"]:
        running_host.do("close-workbook")


@pytest.fixture
def translated_host(host):
    run(host)
    assert column(host, 4) == BOTH
    return host


# --- between a run and its restore -----------------------------------------------------------------------------------

def test_rows_inserted_above_are_left_alone_unasked(translated_host):
    host, log = translated_host, LogTail(translated_host)
    host.do("insert-rows", sheet="Sheet", row=1, count=2)
    host.do("set-cell", sheet="Sheet", address="A1", text="A line of the user's own")
    run(host)
    assert log.line("Excel restore before collect") == \
        "Excel restore before collect sheet=Sheet candidates=4 restored=0 failed=4"
    # What had moved was read by its lines, so that nothing is translated twice.
    assert column(host, 6) == [translated("A line of the user's own"), None, *BOTH]
    assert display(host, "original") == switched("original", 5)
    assert column(host, 6) == ["A line of the user's own", None, *TEXTS]


def test_rows_inserted_above_count_for_nothing_when_the_user_restores(translated_host):
    host = translated_host
    host.do("insert-rows", sheet="Sheet", row=1)
    # Cells are known by their places, and the user asked for those.
    assert display(host, "original") == switched("original", 4)
    assert column(host, 5) == [*TEXTS, BOTH[3]]


def test_a_retyped_cell_is_the_users_own_until_they_restore_it(translated_host, running_echo_service):
    host, log = translated_host, LogTail(translated_host)
    host.do("set-cell", sheet="Sheet", address="A2", text="My own words")
    host.do("set-cell", sheet="Sheet", address="A3", text="'")
    running_echo_service.reset()
    run(host)
    assert log.line("Excel restore before collect").endswith("candidates=4 restored=2 failed=2")
    body, = translate_requests(running_echo_service)
    assert body["texts"] == [TEXTS[0], "My own words", TEXTS[3]]
    host.do("set-cell", sheet="Sheet", address="A1", text="Other words")
    assert display(host, "original") == switched("original", 3)
    assert column(host, 4) == [TEXTS[0], "My own words", None, TEXTS[3]]


def test_a_renamed_sheet_keeps_its_marks_until_it_has_its_name_again(translated_host):
    host = translated_host
    host.do("sheet", rename="Sheet", to="Renamed")
    assert display(host, "original") == switched("original", 0, 4, PROTECTED)
    assert column(host, 4, "Renamed") == BOTH and column(host, 3, "Other") == OTHERS
    host.do("sheet", rename="Renamed", to="Sheet")
    assert display(host, "original") == switched("original", 4)
    assert column(host, 4) == TEXTS


def test_a_deleted_sheet_costs_only_itself(host):
    run(host, excelTranslateAllSheets=True)
    host.do("sheet", delete="Other")
    assert display(host, "target") == switched("target", 4, 3)
    assert display(host, "original") == switched("original", 4, 3)
    assert column(host, 4) == TEXTS
    assert display(host, "original") == switched("original", 0, 3, PROTECTED)


def test_a_sheet_of_the_same_name_in_another_workbook_is_not_meant(translated_host, folder):
    host = translated_host
    host.do("close-workbook")
    open_book(host, folder, "same-names.xlsx", {"Sheet": TEXTS, "Other": OTHERS})
    assert display(host, "original") == switched("original", 0, message=NOTHING_LEFT)
    assert display(host, "dual", "sheet") == switched(
        "dual", 0, message="当前工作表没有翻译结果，请切换到已翻译的工作表")
    assert column(host, 4) == TEXTS
    host.do("close-workbook")
    # The first one was not saved.
    host.do("window", open=str(folder / "test_a_sheet_of_the_same_name_in_another_workbook_is_not_meant.xlsx"))
    assert column(host, 4) == TEXTS


def test_a_protected_sheet_keeps_every_mark_for_later(translated_host):
    host = translated_host
    host.do("protect", sheet="Sheet", on=True)
    for mode in ("original", "target", "original"):
        assert display(host, mode) == switched(mode, 0, 4, PROTECTED)
    assert column(host, 4) == BOTH
    host.do("protect", sheet="Sheet", on=False)
    assert display(host, "original") == switched("original", 4)
    assert column(host, 4) == TEXTS
    assert display(host, "original") == switched("original", 0, message=NOTHING_LEFT)


def test_one_refused_cell_does_not_stop_the_others(translated_host):
    host = translated_host
    # The last unit is the first one to be put back, with Value2 and then Value.
    host.do("fault", fault={"fail": "Range.Value2", "on": "put", "after": 1, "times": 1})
    host.do("fault", fault={"fail": "Range.Value", "on": "put", "times": 1})
    assert display(host, "original") == switched("original", 3, 1)
    assert column(host, 4) == [*TEXTS[:2], BOTH[2], TEXTS[3]]
    assert display(host, "original") == switched("original", 1)
    assert column(host, 4) == TEXTS


def test_a_busy_host_is_asked_again(translated_host):
    translated_host.do("fault", fault={"busy": 3, "member": "Range.Value2"})
    assert display(translated_host, "original") == switched("original", 4)
    assert column(translated_host, 4) == TEXTS


def test_a_read_only_workbook_is_translated_and_restored_like_any_other(running_host, running_echo_service, folder):
    host = running_host
    open_file(host, recommend_read_only(save_sheets({"Sheet": TEXTS}, folder / "plain.xlsx")))
    host.do("save", path=str(folder / "untouched.xlsx"))
    run(host)
    assert column(host, 4) == BOTH
    assert display(host, "original") == switched("original", 4)
    host.do("save", path=str(folder / "restored.xlsx"))
    changed = {difference.kind for difference in differences(folder / "untouched.xlsx", folder / "restored.xlsx")}
    assert changed <= {"fixed height"} and column(host, 4) == TEXTS
    host.do("close-workbook")


def recommend_read_only(path):
    """Makes the file one that is opened read-only, and gives its path."""
    with zipfile.ZipFile(path) as package:
        parts = {name: package.read(name) for name in package.namelist()}
    mark = b'<fileSharing readOnlyRecommended="1"/><workbookPr'
    parts["xl/workbook.xml"] = parts["xl/workbook.xml"].replace(b"<workbookPr", mark, 1)
    with zipfile.ZipFile(path, "w") as package:
        for name, content in parts.items():
            package.writestr(name, content)
    return path


def set_style(host, **style):
    host.post(action="setTargetStyle", **style)
    return event(host, "onTargetStyleDone")


def test_a_new_style_passes_over_a_cell_that_the_user_shortened(translated_host):
    host, log = translated_host, LogTail(translated_host)
    host.do("set-cell", sheet="Sheet", address="A2", text="short")
    host.do("set-cell", sheet="Sheet", address="A3", text=f"{TEXTS[2]} and more than there was of it before, by far")
    before = host.cell("Sheet", "A3")["runs"]
    assert set_style(host, targetFontColor=255, targetFontBold=True) == {
        "ok": True, "applied": 2, "failed": 0, "skipped": 2, "message": ""}
    guard = f"liveLen=5 start1Based={len(TEXTS[1]) + 2} transLen={len(TEXTS[1]) + 3}"
    assert log.line("RestyleCellIndex guard-fail row=2") == f"RestyleCellIndex guard-fail row=2 col=1 {guard}"
    assert log.line("RestyleTranslatedCells") == "RestyleTranslatedCells applied=2 skipped=2 failed=0"
    assert host.cell("Sheet", "A2")["value"] == "short" and host.cell("Sheet", "A3")["runs"] == before
    look = [(run["text"], run["color"], run["bold"]) for run in host.cell("Sheet", "A1")["runs"]]
    assert look == [(TEXTS[0] + "\n", 0, False), (f"ES:{TEXTS[0]}", 255, True)]
    # What is written from now on has it too.
    assert display(host, "dual") == switched("dual", 4)
    assert host.cell("Sheet", "A2")["runs"][-1]["color"] == 255


# --- in the middle of a run ------------------------------------------------------------------------------------------

@pytest.fixture
def slow_host(running_host, running_echo_service, folder, request):
    """A run over SLOW_TEXTS that has just begun; the service takes its time over the first batch."""
    running_echo_service.reset()
    open_book(running_host, folder, f"{request.node.name}.xlsx", {"Sheet": SLOW_TEXTS, "Other": OTHERS})
    slow_down(running_echo_service, SLOW_TEXTS[0])
    start(running_host)
    yield running_host
    while running_host.do("window")["windows"]:
        running_host.do("close-workbook")


def test_a_switch_during_a_run_is_refused_and_the_run_unharmed(slow_host):
    busy = "正在翻译，请稍候再试"
    assert display(slow_host, "original") == switched("original", 0, message=busy)
    assert set_style(slow_host, targetFontBold=True) == {"ok": False, "applied": 0, "failed": 0, "skipped": 0,
                                                         "message": busy}
    slow_host.post(action="restoreAll")
    assert "onComplete({" in end_of_run(slow_host)
    # This one waits for its turn.
    assert event(slow_host, "onBatchDone") == {"action": "restoreAll"}
    assert column(slow_host, len(SLOW_TEXTS)) == SLOW_TEXTS
    assert display(slow_host, "dual") == switched("dual", len(SLOW_TEXTS))


def test_a_sheet_deleted_in_a_run_ends_it_without_harm(slow_host):
    # Earlier tests leave such events unread.
    since = len(slow_host.scripts())
    slow_host.do("sheet", delete="Sheet")
    told = 'onExcelActiveSheetChanged({"sheetName":"Other"})'
    wait_until(slow_host, lambda: any(told in entry["text"] for entry in slow_host.scripts()[since:]), told)
    slow_host.post(action="resume")
    assert event(slow_host, "onExcelTranslateResumeBlocked") == {"sheetName": "Other", "sourceSheetName": "Sheet"}
    slow_host.post(action="cancel")
    slow_host.wait("onCancelled()")
    assert display(slow_host, "original") == switched("original", 0, message=NOTHING_LEFT)
    assert column(slow_host, 3, "Other") == OTHERS
    run(slow_host)
    assert column(slow_host, 3, "Other") == [translated(text) for text in OTHERS]


def test_a_workbook_closed_in_a_run_frees_the_next_one(slow_host, folder):
    slow_host.do("close-workbook")
    open_book(slow_host, folder, "next.xlsx", {"Sheet": TEXTS})
    run(slow_host)
    assert column(slow_host, 4) == BOTH


def test_shutting_down_with_a_paused_run_leaves_nothing_behind(echo_host, running_echo_service, folder):
    running_echo_service.reset()
    host = echo_host(save_sheets({"Sheet": SLOW_TEXTS}, folder / "shutdown.xlsx"))
    slow_down(running_echo_service, SLOW_TEXTS[0])
    start(host)
    host.post(action="pause")
    log = LogTail(host)
    ending = host.quit()
    assert ending["ok"] and ending["canUnload"]
    assert {name: count for name, count in ending.items() if name not in ("ok", "canUnload") and count} == {}
    assert sum("Excel BeginShutdownEarly" in line for line in log.lines()) == 1
