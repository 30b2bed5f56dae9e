"""The host around the cells on LibreOffice: switches, sheets, refusals, files, the office itself."""

import os
import signal
import time
from pathlib import Path

import pytest

from calc_office import (BAD_INDEX, BAD_PARAMETER_COUNT, DISCONNECTED, MEMBER_NOT_FOUND, CallFailed, Office, cell, kinds,
                         refused, values)


def test_host_switches_read_back_what_was_put(office, book):
    application = office.application
    switches = {"DisplayAlerts": True, "ScreenUpdating": True, "Calculation": -4105, "EnableEvents": True}
    assert {name: application.get(name) for name in switches} == switches
    for name, put, read in (("DisplayAlerts", 0, False), ("ScreenUpdating", False, False), ("ScreenUpdating", -1, True),
                            ("Calculation", -4135, -4135)):
        application.put(name, put)
        assert application.get(name) == read
    refused(application.put, "Calculation", 1)
    assert application.LanguageSettings.get("LanguageID", 2) == 1033


def test_a_window_leads_to_its_workbook_only_as_parent(office, book, sheet):
    window = office.application.ActiveWindow
    assert window.Parent.Name == window.Caption == book.Name
    refused(window.get, "Workbook", code=MEMBER_NOT_FOUND)
    assert "workbook" not in office.members["Window"]
    assert window.Hwnd == office.application.Hwnd != 0


def test_frozen_panes_and_scrolling(office, sheet):
    window = office.application.ActiveWindow
    assert (window.FreezePanes, window.SplitRow) == (False, 0)
    cell(sheet, "B3").call("Select")
    window.put("FreezePanes", True)
    assert (window.FreezePanes, window.SplitRow, window.SplitColumn) == (True, 2, 1)
    window.put("ScrollRow", 40)
    assert window.ScrollRow == 40 and window.VisibleRange.Row == 40


def test_sheets_by_name_and_number_with_excels_refusals(office, book, sheet):
    sheets = book.Worksheets
    added = sheets.call("Add", After=sheet)
    added.put("Name", "Second")
    assert [sheets.get("Item", index).Name for index in (1, 2)] == ["Sheet1", "Second"]
    assert (sheets.get("Item", "SECOND").Index, office.application.ActiveSheet.Name) == (2, "Second")
    for index in (0, 3, "none"):
        refused(sheets.get, "Item", index, code=BAD_INDEX)
    for name in ("a/b", "", "x" * 32, "sheet1"):
        refused(added.put, "Name", name)
    added.put("Visible", 2)
    assert added.Visible == 2
    refused(added.call, "Activate")
    refused(sheet.put, "Visible", 0)
    refused(sheet.call, "Delete")
    added.put("Visible", -1)
    office.application.put("DisplayAlerts", False)
    assert added.call("Delete") is True
    assert sheets.Count == 1


def test_names_arguments_and_members_are_checked(office, book, sheet):
    assert sheet.get("rANGE", "a1").get("value2") is None
    assert "value2" in office.members["Range"] and "_default" in office.members["Range"]
    refused(sheet.get, "Frobnicate", code=MEMBER_NOT_FOUND)
    refused(book.Worksheets.get, "Item", code=BAD_PARAMETER_COUNT)
    refused(sheet.get, "Range", "not an address")
    refused(sheet.put, "UsedRange", 1)
    for line in (b"{", b"[]", b'{"op":"nonsense"}', b'{"op":"invoke","object":999,"member":"x","kind":"get"}'):
        assert office.raw(line)["hr"]
    assert office.application.Name == "Microsoft Excel"


def test_a_closed_workbook_answers_that_it_is_gone(office, book, sheet):
    one = cell(sheet, "A1")
    book.call("Close", False)
    refused(one.get, "Value2", code=DISCONNECTED)
    nothing = {"nothing": True}
    assert [office.application.get(name) for name in ("ActiveWorkbook", "ActiveSheet", "Selection")] == [nothing] * 3


def test_selecting_tells_what_changed(office, book, sheet):
    book.Worksheets.call("Add", After=sheet)
    reply = office.request(op="engine", do="select", **{"with": {"sheet": "Sheet1", "address": "B2,D4:E5"}})
    assert reply["events"] == ["sheet", "selection"]
    selection = office.application.Selection
    assert (selection.Address, selection.Areas.Count, selection.Count) == ("$B$2,$D$4:$E$5", 2, 5)
    assert office.application.ActiveCell.Address == "$B$2"


def test_edits_of_the_user_tell_what_they_changed(office, book, sheet):
    def changed(operation, **options):
        reply = office.request(op="engine", do=operation, **{"with": options})
        return reply["r"] and [reply["r"][name]["type"] for name in ("sheet", "range")], reply.get("events", [])

    both = ["Worksheet", "Range"]
    assert changed("type", sheet="", address="B3", text="=1+1") == (both, [])
    assert (cell(sheet, "B3").Value2, cell(sheet, "B3").Formula) == (2.0, "=1+1")
    assert changed("insertRows", sheet="", row=2, count=2) == (both, [])
    assert cell(sheet, "B3").Value2 is None and cell(sheet, "B5").Value2 == 2.0
    office.application.put("EnableEvents", False)
    assert changed("type", sheet="", address="A1", text="unheard") == (None, [])
    office.application.put("EnableEvents", True)
    book.Worksheets.call("Add", After=sheet).put("Name", "Other")
    sheet.call("Protect")
    office.engine("renameSheet", sheet="sheet1", name="First")
    assert sheet.Name == "First" and sheet.ProtectContents is True
    for operation, options in (("type", {"sheet": "First", "address": "A1", "text": "x"}),
                               ("insertRows", {"sheet": "First", "row": 1, "count": 1}),
                               ("insertRows", {"sheet": "Other", "row": 1048576, "count": 2}),
                               ("renameSheet", {"sheet": "First", "name": "other"})):
        refused(lambda: office.engine(operation, **options))
    assert changed("deleteSheet", sheet="Other") == (None, ["sheet"])
    refused(lambda: office.engine("deleteSheet", sheet=""))


def test_only_calls_that_may_change_something_say_so(office, book, sheet):
    def changes(target, kind, member, *args):
        return "changed" in office.request(op="invoke", object=target.handle, kind=kind, member=member, args=list(args))

    one = cell(sheet, "A1")
    assert not any(changes(one, kind, "Value2") for kind in ("get", "any"))
    assert not any(changes(book.Worksheets, kind, "Item", 1) for kind in ("get", "any"))
    assert not changes(sheet, "any", "ChartObjects")
    assert changes(one, "put", "Value2", 1) and changes(one, "any", "Select")


def test_released_objects_are_forgotten(office, sheet):
    before = office.request(op="count")["r"]
    one = cell(sheet, "A1")
    assert office.request(op="count")["r"] == before + 1
    assert office.request(op="count", release=[one.handle])["r"] == before


def test_wps_names_itself_and_has_its_own_ways(office, book):
    try:
        office.connect("wps")
        application = office.application
        assert application.Name == "WPS Spreadsheets" and "WPS" in application.Path
        sheets = application.ActiveWorkbook.Worksheets
        refused(sheets.get, "Item", 1, code=MEMBER_NOT_FOUND)
        assert sheets.call("Item", 1).Name == "Sheet1"
        assert "countlarge" not in office.members["Range"] and "value2" in office.members["Range"]
        one = application.ActiveSheet.get("Range", "A1")
        one.put("Value2", "=1/0")
        assert one.Value2 == -2146826281
    finally:
        office.connect("excel")


# --- files -----------------------------------------------------------------------------------------------------------

@pytest.fixture
def workbook_file(tmp_path):
    """A workbook made by another program: charts, merged and hidden things, frozen rows."""
    openpyxl = pytest.importorskip("openpyxl")
    made = openpyxl.Workbook()
    data = made.active
    data.title = "Data"
    data.append(["Title", None, None])
    data.merge_cells("A1:C1")
    for row in range(2, 8):
        data.append([f"Region {row}", row * 1.5, row % 2 == 0])
    data.freeze_panes = "A2"
    chart = openpyxl.chart.BarChart()
    chart.title = "Sales by region"
    chart.add_data(openpyxl.chart.Reference(data, min_col=2, min_row=2, max_row=7))
    data.add_chart(chart, "E3")
    made.create_sheet("Hidden").sheet_state = "hidden"
    locked = made.create_sheet("Locked")
    locked["B2"] = True
    locked.protection.sheet = True
    path = tmp_path / "input.xlsx"
    made.save(path)
    return path


def test_a_file_is_seen_as_excel_sees_it(office, workbook_file):
    office.engine("open", path=str(workbook_file))
    book = office.application.ActiveWorkbook
    assert book.FullName == "Z:" + str(workbook_file).replace("/", "\\")
    sheets = [book.Worksheets.get("Item", index) for index in (1, 2, 3)]
    assert [(s.Name, s.Visible, s.ProtectContents) for s in sheets] == \
        [("Data", -1, False), ("Hidden", 0, False), ("Locked", -1, True)]
    data = sheets[0]
    assert kinds(values(data, "A1:C2")) == kinds([["Title", None, None], ["Region 2", 3.0, True]])
    assert data.UsedRange.HasFormula is False
    assert cell(sheets[2], "B2").HasFormula is False and cell(sheets[2], "B2").Value2 is True
    assert office.application.ActiveWindow.SplitRow == 1
    charts = data.call("ChartObjects")
    assert (charts.Count, charts.call("Item", 1).Name) == (1, "Chart 1")
    chart = data.call("ChartObjects", 1).Chart
    assert (chart.HasTitle, chart.ChartTitle.Text) == (True, "Sales by region")
    chart.ChartTitle.put("Text", "Ventas por región")
    assert data.call("ChartObjects", "Chart 1").Chart.ChartTitle.Text == "Ventas por región"
    shape = data.Shapes.call("Item", 1)
    assert (shape.Type, shape.Name, shape.HasChart) == (3, "Chart 1", -1)
    office.engine("close")
    assert not list(workbook_file.parent.glob(".~lock*"))


def test_a_picture_is_one_page_and_leaves_the_workbook_unchanged(office, workbook_file, tmp_path):
    office.engine("open", path=str(workbook_file))
    picture = tmp_path / "sheet.png"
    office.engine("shot", path=str(picture))
    head = picture.read_bytes()[:24]
    assert head[:8] == b"\x89PNG\r\n\x1a\n"
    width, height = int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")
    # The chart reaches right of column K and below row 15.
    assert 800 < width < 2000 and 200 < height < 1000
    assert office.application.ActiveWorkbook.Saved is True
    office.engine("close")


@pytest.mark.parametrize("content", [None, b"plain text, no workbook"])
def test_what_is_no_workbook_is_refused(office, tmp_path, content):
    path = tmp_path / "broken.xlsx"
    if content is not None:
        path.write_bytes(content)
    with pytest.raises(CallFailed) as failure:
        office.engine("open", path=str(path))
    assert str(path) in failure.value.text
    assert office.application.Workbooks.Count == 0


def test_the_office_ends_with_its_launcher(tmp_path):
    started = Office(tmp_path)
    command = Path("/proc") / str(started.ready["pid"]) / "cmdline"
    started.process.kill()
    started.process.wait(10)
    deadline = time.monotonic() + 10
    while command.exists() and command.read_bytes():
        if time.monotonic() > deadline:
            os.kill(started.ready["pid"], signal.SIGKILL)
            pytest.fail("the office was still running")
        time.sleep(0.01)
