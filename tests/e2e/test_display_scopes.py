"""Switching the display of a part of the cells, and runs over cells that hold translations already."""

import pytest

from conftest import save_sheets
from panel import wait_until
from panel_driver import column, sentences, translate_requests, translated
from run_driver import LogTail, display, event, run, switched

FIRST, SECOND = sentences(6, "garden"), sentences(3, "harbour")
TEXTS = {"First": FIRST, "Second": SECOND}
WRITTEN = len(FIRST) + len(SECOND)


@pytest.fixture(scope="module")
def two_sheets(echo_host, tmp_path_factory):
    host = echo_host(save_sheets({**TEXTS, "Third": []}, tmp_path_factory.mktemp("scopes") / "book.xlsx"))
    run(host, excelTranslateAllSheets=True)
    return host


@pytest.fixture
def host(two_sheets):
    """All texts of both sheets with their translations below; the first sheet is the active one."""
    two_sheets.do("select", sheet="First", address="A1")
    assert display(two_sheets, "dual") == switched("dual", WRITTEN)
    return two_sheets


LOOKS = {"original": lambda text: text, "target": lambda text: f"ES:{text}", "dual": translated}


def shown(host, sheet):
    """How each cell of column A looks: "original", "target" or "dual"."""
    return [next((name for name, look in LOOKS.items() if look(text) == value), value)
            for text, value in zip(TEXTS[sheet], column(host, len(TEXTS[sheet]), sheet))]


@pytest.mark.parametrize("mode", ["target", "original"])
def test_a_selection_counts_with_all_its_areas_and_nothing_else_changes(host, mode):
    host.do("select", sheet="First", address="A1:B2,C4,A5")
    assert display(host, mode, "selection") == switched(mode, 3)
    assert shown(host, "First") == [mode, mode, "dual", "dual", mode, "dual"] and set(shown(host, "Second")) == {"dual"}
    host.do("select", sheet="First", address="A5:A6")
    assert display(host, "dual", "selection") == switched("dual", 2)
    assert shown(host, "First") == [mode, mode, "dual", "dual", "dual", "dual"]


def test_a_sheet_is_the_active_one(host):
    host.do("select", sheet="Second", address="F9")
    assert display(host, "original", "sheet") == switched("original", len(SECOND))
    assert set(shown(host, "First")) == {"dual"} and set(shown(host, "Second")) == {"original"}
    assert display(host, "original", "sheet") == switched("original", 0, message="没有可还原的单元格")
    assert display(host, "original") == switched("original", len(FIRST))
    assert set(shown(host, "First")) == {"original"}


@pytest.mark.parametrize("mode, scope, place, message", [
    ("both", "session", ("First", "A1"), "未知的显示模式"),
    ("target", "selection", ("First", "B1:C9"), "选中的单元格没有翻译结果，请先翻译或重新选择"),
    ("original", "selection", ("Third", "A1"), "选中的单元格没有翻译结果，请先翻译或重新选择"),
    ("target", "sheet", ("Third", "A1"), "当前工作表没有翻译结果，请切换到已翻译的工作表"),
])
def test_what_cannot_be_switched_is_answered_with_the_reason(host, mode, scope, place, message):
    host.do("select", sheet=place[0], address=place[1])
    assert display(host, mode, scope) == switched(mode, 0, message=message)
    assert set(shown(host, "First")) == {"dual"} == set(shown(host, "Second"))


def test_two_runs_in_a_row_collect_the_source(host, running_echo_service):
    for texts, members in ((FIRST, {}), (FIRST + SECOND, {"excelTranslateAllSheets": True})):
        log = LogTail(host)
        running_echo_service.reset()
        run(host, **members)
        assert [text for body in translate_requests(running_echo_service) for text in body["texts"]] == texts
        assert set(shown(host, "First")) == {"dual"} == set(shown(host, "Second"))
        name = "<all>" if members else "First"
        # The first of the runs forgets the other sheet's session; the next finds its own six cells.
        line = f"Excel restore before collect sheet={name} candidates={len(FIRST)} restored={len(FIRST)} failed=0"
        assert log.line("Excel restore before collect") == line


def test_single_texts_are_restored_and_applied(host):
    # The session may be of the first sheet alone; its units come first either way.
    host.post(action="restoreParagraph", index=1)
    host.post(action="restoreParagraph", index=3)
    # Neither is answered.
    looks = ["dual", "original", "dual", "original", "dual", "dual"]
    wait_until(host, lambda: shown(host, "First") == looks, "two texts restored")
    host.post(action="applyParagraph", index=3)
    looks[3] = "dual"
    wait_until(host, lambda: shown(host, "First") == looks, "one of them applied again")
    for action, look in (("restoreAll", "original"), ("applyAll", "dual")):
        host.post(action=action)
        assert event(host, "onBatchDone") == {"action": action}
        assert set(shown(host, "First")) == {look}
