"""Document windows on LibreOffice, and the pictures of them that the development host paints."""

import shutil

import pytest

from calc_office import BAD_INDEX, DISCONNECTED, CallFailed, cell, refused
from conftest import SAMPLE

A1 = {"row": 1, "column": 1, "rows": 1, "columns": 1}


@pytest.fixture
def report(office, tmp_path):
    """The window of a workbook with several sheets; everything is closed afterwards."""
    path = tmp_path / "report.xlsx"
    shutil.copy(SAMPLE, path)
    yield office.engine("open", path=str(path))
    office.engine("close")


def captions(office):
    return [window["caption"] for window in office.engine("windows")]


def active(office):
    return [window["id"] for window in office.engine("windows") if window["active"]]


def grid(office, window, row=1, column=1, rows=60, columns=20):
    return office.engine("grid", window=window, row=row, column=column, rows=rows, columns=columns)


def at(shown, row, column):
    return next((one for one in shown["cells"] if (one["row"], one["column"]) == (row, column)), None)


def style(shown, one):
    return shown["styles"][one["style"]]


def test_a_second_window_numbers_both_and_goes_its_own_way(office, report):
    second = office.engine("newWindow")
    assert captions(office) == ["report.xlsx:1", "report.xlsx:2"] and active(office) == [second]
    office.engine("activateSheet", window=second, sheet="Notes")
    office.engine("selectCells", window=second, row=5, column=2, rows=2, columns=1)
    office.engine("activateWindow", window=report)
    application = office.application
    assert (application.ActiveWindow.Caption, application.ActiveSheet.Name) == ("report.xlsx:1", "Overview")
    other = application.ActiveWorkbook.Windows.get("Item", "REPORT.XLSX:2")
    assert (other.ActiveSheet.Name, other.Selection.Address) == ("Notes", "$B$5:$B$6")
    assert application.Windows.get("Item", 1).Caption == "report.xlsx:1"
    refused(application.Windows.get, "Item", 3, code=BAD_INDEX)


def test_the_last_window_takes_its_workbook_along(office, report):
    second = office.engine("newWindow")
    first = office.engine("windowObject", window=report)
    application = office.application
    application.ActiveWorkbook.Worksheets.get("Item", 1).get("Range", "A1").put("Value2", "changed")
    window = application.Windows.get("Item", 2)
    office.engine("closeWindow", window=report)
    assert captions(office) == ["report.xlsx"] and active(office) == [second]
    refused(window.get, "Caption", code=DISCONNECTED)
    assert first["type"] == "Window"
    office.engine("closeWindow", window=second)
    assert application.Workbooks.Count == application.Windows.Count == 0
    with pytest.raises(CallFailed, match="no such window"):
        office.engine("activateWindow", window=second)


def test_an_open_file_keeps_its_window_and_comes_to_the_front(office, report, tmp_path):
    other = office.application.Workbooks.call("Add")
    assert active(office) != [report]
    reply = office.request(op="engine", do="open", **{"with": {"path": str(tmp_path / "report.xlsx")}})
    assert (reply["r"], reply["events"]) == (report, ["window"]) and active(office) == [report]
    office.application.ActiveWorkbook.call("Close", False)
    assert office.application.ActiveWindow.Caption == other.Name


def test_handles_are_those_that_were_given(office, report):
    application = office.application
    own = application.ActiveWindow.Hwnd
    office.engine("setHandle", window=report, handle=4711)
    assert application.ActiveWindow.Hwnd == application.Hwnd == 4711
    office.engine("setHandle", handle=815)
    assert (application.ActiveWindow.Hwnd, application.Hwnd) == (4711, 815)
    office.engine("setHandle", window=report, handle=0)
    office.engine("setHandle", handle=0)
    assert application.ActiveWindow.Hwnd == own


def test_a_picture_shows_the_sheet_as_a_reader_sees_it(office, report):
    shown = grid(office, report)
    assert (shown["sheets"], shown["activeSheet"]) == (["Overview", "Regions", "Notes", "Targets"], 0)
    assert (shown["frozen"], shown["scroll"]) == ([4, 0], [5, 1])
    title = at(shown, 1, 1)
    assert (title["text"], title["span"], at(shown, 1, 2)) == ("Quarterly report", [1, 10], None)
    look = style(shown, title)
    assert (look["font"]["size"], look["font"]["bold"], look["horizontal"]) == (18, True, "center")
    header = style(shown, at(shown, 4, 1))
    assert "fill" in header and header["borders"][3][0] > 0
    budget = at(shown, 5, 5)
    assert (budget["text"], budget["content"]) == ("420.0", "number")
    assert at(shown, 5, 9)["content"] == "logical"
    chart = next(shape for shape in shown["shapes"] if shape["chart"])
    assert chart["title"] == "Budget and actual costs by area"
    # The chart lies below the last cell.
    assert shown["used"] == [45, 10]


def test_a_picture_knows_hidden_lines_runs_and_merges_from_outside(office, book, sheet):
    window = active(office)[0]
    cell(sheet, "3:3").EntireRow.put("Hidden", True)
    cell(sheet, "B1").EntireColumn.put("Hidden", True)
    cell(sheet, "A1").put("Value2", "Hello\nHola")
    cell(sheet, "A1").get("Characters", 7, 4).Font.put("Color", 0x8C6E5A)
    cell(sheet, "C4:D6").call("Merge")
    cell(sheet, "C4").put("Value2", "wide")
    cell(sheet, "A2").Interior.put("Color", 0x0000FF)
    shown = grid(office, window, rows=8, columns=6)
    assert shown["heights"][2] == 0 == shown["widths"][1] and shown["widths"][0] > 0
    runs = at(shown, 1, 1)["runs"]
    assert [(start, length, font["color"]) for start, length, font in runs] == [(0, 6, 0), (6, 4, 0x8C6E5A)]
    assert style(shown, at(shown, 2, 1))["fill"] == 0x0000FF and at(shown, 2, 1).get("text") is None
    # From the merge's last cell on: its first one is there, and what lies outside is told.
    height, width = shown["heights"][3], shown["widths"][2]
    part = grid(office, window, row=6, column=4, rows=2, columns=2)
    merged = at(part, 4, 3)
    assert (merged["text"], merged["span"]) == ("wide", [3, 2])
    assert merged["outside"] == [width, 2 * height, 0, 0]
    assert grid(office, window, row=1048576, column=16384)["area"] == [1048576, 16384, 1, 1]


def test_what_the_user_does_in_a_window_tells_what_changed(office, report):
    other = office.engine("newWindow")

    def events(operation, **options):
        return office.request(op="engine", do=operation, **{"with": options}).get("events", [])

    assert events("activateSheet", window=report, sheet="regions") == ["window", "sheet"]
    assert events("activateSheet", window=report, sheet="Regions") == []
    assert events("selectCells", window=other, **A1) == ["window", "selection"]
    for sheet in ("Archive", "none"):
        with pytest.raises(CallFailed, match="no such sheet"):
            office.engine("activateSheet", window=report, sheet=sheet)
    with pytest.raises(CallFailed, match="no such cells"):
        office.engine("selectCells", window=other, row=1048576, column=1, rows=2, columns=1)
    # Refused without becoming active.
    assert active(office) == [other]


def test_a_window_stays_where_it_is_scrolled_while_cells_in_view_are_selected(office, report):
    office.engine("showArea", window=report, row=20, column=1, rows=20, columns=9)
    window = office.application.ActiveWindow
    assert window.VisibleRange.Address == "$A$20:$I$39"
    for row in (38, 2):
        office.engine("selectCells", window=report, row=row, column=9, rows=1, columns=1)
        assert (window.ScrollRow, window.ScrollColumn) == (20, 1)
    office.engine("selectCells", window=report, row=200, column=1, rows=1, columns=1)
    assert window.ScrollRow > 20
