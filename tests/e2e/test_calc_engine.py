"""The object model on LibreOffice: that it answers as Excel does where Calc by itself would not.

Talks to the office server directly, so neither Wine nor the add-in is needed.
"""

import json
import os
import re
import signal
import socket
import subprocess
import sys
import time
import zipfile
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parent.parent.parent
LAUNCHER = ROOT / "devhost" / "engines" / "calc" / "office" / "start_office.py"

EXCEPTION = 0x80020009
MEMBER_NOT_FOUND = 0x80020003
BAD_INDEX = 0x8002000B
BAD_PARAMETER_COUNT = 0x8002000E
OUT_OF_MEMORY = 0x8007000E
DISCONNECTED = 0x80010108
EXCEL_FAILURE = 0x800A03EC
NULL = {"null": True}


def error(number):
    """An error value by Excel's number of it."""
    return {"error": 0x800A0000 + number}


class CallFailed(Exception):
    def __init__(self, reply):
        super().__init__(reply)
        self.hresult = reply["hr"]
        self.scode = reply.get("scode", 0)
        self.text = reply.get("text", "")


class Remote:
    """A late-bound object: properties are read by attribute, called with arguments, set with `put`."""

    def __init__(self, office, handle, type_name):
        self._office, self.handle, self.type_name = office, handle, type_name

    def __getattr__(self, name):
        return self._office.invoke(self.handle, "get", name, (), {})

    def get(self, name, *args):
        return self._office.invoke(self.handle, "get", name, args, {})

    def call(self, name, *args, **named):
        return self._office.invoke(self.handle, "call", name, args, named)

    def put(self, name, *args):
        return self._office.invoke(self.handle, "put", name, args, {})


class Office:
    def __init__(self, profile):
        self.process = subprocess.Popen([sys.executable, str(LAUNCHER), "--profile", str(profile)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.ready = json.loads(self.process.stdout.readline())
        self._connections = []
        self.connect()

    def connect(self, style="excel"):
        connection = socket.create_connection(("127.0.0.1", self.ready["port"]), timeout=60)
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._connections.append(connection)
        self._socket, self._lines = connection, connection.makefile("rb")
        self.members = self.request(op="hello", style=style)["r"]
        self.application = Remote(self, 1, "Application")

    def raw(self, line):
        self._socket.sendall(line + b"\n")
        return json.loads(self._lines.readline())

    def request(self, **request):
        return self.raw(json.dumps(request).encode())

    def engine(self, operation, **options):
        reply = self.request(op="engine", do=operation, **{"with": options})
        if "hr" in reply:
            raise CallFailed(reply)
        return reply["r"]

    def invoke(self, handle, kind, member, args, named):
        def wire(value):
            return {"object": value.handle} if isinstance(value, Remote) else value

        reply = self.request(op="invoke", object=handle, kind=kind, member=member, args=[wire(a) for a in args],
                             named={key: wire(value) for key, value in named.items()})
        if "hr" in reply:
            raise CallFailed(reply)
        result = reply["r"]
        if isinstance(result, dict) and "object" in result:
            return Remote(self, result["object"], result["type"])
        return result

    def close(self):
        for connection in self._connections:
            connection.close()
        self.process.stdin.close()
        return self.process.wait(30)


@pytest.fixture(scope="module")
def office(tmp_path_factory):
    started = Office(tmp_path_factory.mktemp("office"))
    yield started
    assert started.close() == 0


@pytest.fixture
def book(office):
    """A new workbook as the active one; everything is closed and reset afterwards."""
    yield office.application.Workbooks.call("Add")
    office.engine("close")


@pytest.fixture
def sheet(office, book):
    return office.application.ActiveSheet


def kinds(value):
    """A form in which 1, 1.0 and True differ."""
    return json.dumps(value, ensure_ascii=False)


def cell(sheet, address):
    return sheet.get("Range", address)


def values(sheet, address):
    return cell(sheet, address).Value2["array"]


def refused(action, *args, code=EXCEPTION, scode=EXCEL_FAILURE):
    with pytest.raises(CallFailed) as failure:
        action(*args)
    assert failure.value.hresult == code
    if code == EXCEPTION:
        assert failure.value.scode == scode


# --- what is put into a cell -----------------------------------------------------------------------------------------

@pytest.mark.parametrize("put, value, has_formula, number_format", [
    ("hello", "hello", False, "General"),
    ("a\nb", "a\nb", False, "General"),
    ("Q1 2024", "Q1 2024", False, "General"),
    ("12", 12.0, False, "General"),
    ("-3", -3.0, False, "General"),
    ("(5)", -5.0, False, "General"),
    ("50%", 0.5, False, "0.00%"),
    ("2024-01-02", 45293.0, False, "yyyy-mm-dd"),
    ("true", True, False, "General"),
    (True, True, False, "General"),
    (7, 7.0, False, "General"),
    (None, None, False, "General"),
    ("=", "=", False, "General"),
    ("=1+1", 2.0, True, "General"),
    ('="a"&""', "a", True, "General"),
    ('=""', "", True, "General"),
    ("=2>1", True, True, "General"),
    # A sign opens a formula.
    ("-hola", error(2029), True, "General"),
    ("'=x", "=x", False, "General"),
    ("'-hola", "-hola", False, "General"),
    ("'12", "12", False, "General"),
    ("你好 😀", "你好 😀", False, "General"),
    ("=1/0", error(2007), True, "General"),
    ("=NA()", error(2042), True, "General"),
    ("=NOSUCHNAME", error(2029), True, "General"),
    ('="x"+1', error(2015), True, "General"),
])
def test_text_put_into_a_cell_means_what_it_means_when_typed(sheet, put, value, has_formula, number_format):
    one = cell(sheet, "C3")
    one.put("Value2", put)
    assert kinds([one.Value2, one.HasFormula, one.NumberFormat]) == kinds([value, has_formula, number_format])


@pytest.mark.parametrize("put", ["=SUM(", "=1 +* 2", "- uno dos", "+1 000", "@name", "x" * 32768])
def test_a_text_that_is_no_formula_is_refused_and_changes_nothing(sheet, put):
    one = cell(sheet, "C3")
    one.put("Value2", "before")
    refused(one.put, "Value2", put)
    assert one.Value2 == "before"


def test_text_format_keeps_everything_as_text(sheet):
    one = cell(sheet, "A1")
    one.put("NumberFormat", "@")
    for text in ("=1+1", "12", "TRUE"):
        one.put("Value2", text)
        assert (one.Value2, one.HasFormula) == (text, False)


def test_a_boolean_leaves_no_format_behind(sheet):
    one = cell(sheet, "A1")
    one.put("Value2", True)
    one.put("Value2", 1)
    assert type(one.Value2) is float
    one.put("Value2", True)
    one.put("Value2", "VERDADERO")
    assert (one.Value2, one.NumberFormat) == ("VERDADERO", "General")


# --- bulk values -----------------------------------------------------------------------------------------------------

def test_bulk_values_keep_their_kinds(sheet):
    block = cell(sheet, "B2:D5")
    block.put("Value2", {"array": [[1, 2.5, "text"], ["=B2+1", True, None], ["12", "50%", "2024-01-02"],
                                   ["=1/0", '=""', "=B2=1"]]})
    assert kinds(block.Value2["array"]) == kinds([[1.0, 2.5, "text"], [2.0, True, None], [12.0, 0.5, 45293.0],
                                                  [error(2007), "", True]])
    assert block.Value["array"][2][2] == {"date": 45293.0}
    assert block.Formula["array"][1] == ["=B2+1", "TRUE", ""]


def test_one_value_fills_a_range_and_a_short_array_leaves_not_available(sheet):
    cell(sheet, "A1:B2").put("Value2", "q")
    assert values(sheet, "A1:B2") == [["q", "q"], ["q", "q"]]
    cell(sheet, "D1:D3").put("Value2", {"array": [["x"], ["y"]]})
    assert values(sheet, "D1:D3") == [["x"], ["y"], [error(2042)]]


def test_a_whole_column_is_read_without_its_empty_end(sheet):
    cell(sheet, "A3").put("Value2", "last")
    column = cell(sheet, "A:A").Value2
    assert (len(column["array"]), column["rows"], column["columns"]) == (3, 1048576, 1)
    refused(sheet.Cells.get, "Value2", code=OUT_OF_MEMORY)


@pytest.mark.parametrize("rows, limit", [(500, 0.3), (5000, 3.0)])
def test_bulk_reads_stay_fast(sheet, rows, limit):
    # Ten times what an idle machine needs; a read cell by cell would take far longer still.
    block = cell(sheet, "A1").get("Resize", rows, 20)
    block.put("Value2", {"array": [["text of a cell", 1.5] * 10] * rows})
    start = time.monotonic()
    assert block.Value2["rows"] == rows
    assert time.monotonic() - start < limit


# --- answers for several cells ---------------------------------------------------------------------------------------

def test_mixed_properties_of_several_cells_are_null_and_never_an_array(sheet):
    cell(sheet, "A1").put("Value2", "=1+1")
    cell(sheet, "C1:D1").call("Merge")
    cell(sheet, "A1").put("WrapText", True)
    cell(sheet, "A1").put("Locked", False)
    cell(sheet, "A1").Font.put("Bold", True)
    cell(sheet, "A1").Interior.put("Color", 255)
    cell(sheet, "A1").put("RowHeight", 30)
    for name in ("HasFormula", "WrapText", "Locked"):
        answers = [cell(sheet, address).get(name) for address in ("A1", "A2", "A2:B3", "A1:A2")]
        assert answers[1] == answers[2] == (not answers[0]) and answers[3] == NULL, name
    merged = {"C1": True, "D1": True, "C1:D1": True, "A2": False, "A1:B2": False, "B1:C1": NULL, "A1:D2": NULL}
    assert {address: cell(sheet, address).MergeCells for address in merged} == merged
    mixed = cell(sheet, "A1:A2")
    assert (mixed.Font.Bold, mixed.Font.Name, mixed.Interior.Color) == (NULL, cell(sheet, "B1").Font.Name, NULL)
    assert mixed.RowHeight == NULL


def test_the_used_range_holds_formatted_cells_too(sheet):
    assert sheet.UsedRange.Address == "$A$1"
    cell(sheet, "B2").put("Value2", "x")
    assert sheet.UsedRange.Address == "$B$2"
    cell(sheet, "F9").Interior.put("Color", 255)
    assert sheet.UsedRange.Address == "$B$2:$F$9"


@pytest.mark.parametrize("path, address", [
    ([("Cells", 3, 2)], "$B$3"),
    ([("Range", "A1", "C3")], "$A$1:$C$3"),
    ([("Range", "A1,C3:D4")], "$A$1,$C$3:$D$4"),
    ([("Range", "A1,C3:D4"), ("Areas", 2)], "$C$3:$D$4"),
    ([("Range", "B2:D4"), ("Cells", 2, 2)], "$C$3"),
    ([("Range", "B2:D4"), ("Item", 4)], "$B$3"),
    ([("Range", "B2:D4"), ("Rows", 2)], "$B$3:$D$3"),
    ([("Range", "B2:D4"), ("Columns", 2)], "$C$2:$C$4"),
    ([("Range", "B2"), ("EntireRow",)], "$2:$2"),
    ([("Range", "B2"), ("EntireColumn",)], "$B:$B"),
    ([("Range", "B2:C3"), ("Offset", 1, -1)], "$A$3:$B$4"),
    ([("Rows", 5)], "$5:$5"),
    ([("Columns", "C")], "$C:$C"),
])
def test_ranges_lead_to_ranges(sheet, path, address):
    target = sheet
    for name, *arguments in path:
        target = target.get(name, *arguments)
    assert target.Address == address


def test_counts_and_their_limits(sheet):
    block = cell(sheet, "A1:C4")
    assert (block.Rows.Count, block.Columns.Count, block.Count, block.Row, block.Column) == (4, 3, 12, 1, 1)
    assert sheet.Cells.CountLarge == {"long64": 1048576 * 16384}
    refused(sheet.Cells.get, "Count", scode=0x800A0006)


# --- rows, columns, characters ---------------------------------------------------------------------------------------

def test_row_heights_are_points_between_0_and_409(sheet):
    row = cell(sheet, "A1").EntireRow
    for height in (50, 15.75, 409):
        row.put("RowHeight", height)
        assert row.RowHeight == height
    for height in (409.5, -1):
        refused(row.put, "RowHeight", height)
    assert row.RowHeight == 409


def test_autofit_makes_room_for_every_line(sheet):
    one = cell(sheet, "A1")
    before = one.RowHeight
    one.put("Value2", "first\nsecond\nthird")
    one.put("WrapText", True)
    assert one.EntireRow.call("AutoFit") is True
    assert one.RowHeight > 2 * before
    refused(one.call, "AutoFit")


def test_characters_style_a_part_and_the_rest_keeps_its_look(sheet):
    one = cell(sheet, "A1")
    one.put("Value2", "你好 😀\nHola")
    font = one.get("Characters", 7, 99).Font
    for name, value in (("Color", 9203290), ("Bold", True), ("Name", "Carlito"), ("Size", 14), ("Italic", True),
                        ("Underline", 2)):
        font.put(name, value)
        assert font.get(name) == value
        assert one.Font.get(name) == NULL, name
        assert one.get("Characters", 1, 6).Font.get(name) != value
    assert one.get("Characters", 7, 4).Text == "Hola"
    one.Font.put("Color", 255)
    assert one.Font.Color == 255


def test_partial_styling_booleans_and_protection_survive_a_saved_file(office, sheet, tmp_path):
    one = cell(sheet, "A1")
    one.put("Value2", "Hello\nHola")
    one.put("WrapText", True)
    one.get("Characters", 7, 4).Font.put("Color", 9203290)
    cell(sheet, "B1").put("Value2", True)
    cell(sheet, "B2").put("Value2", "=B1")
    cell(sheet, "C1").put("Locked", False)
    sheet.call("Protect")
    path = tmp_path / "saved.xlsx"
    office.engine("save", path=str(path))
    with zipfile.ZipFile(path) as saved:
        strings = saved.read("xl/sharedStrings.xml").decode()
        cells = saved.read("xl/worksheets/sheet1.xml").decode()
    coloured = re.search(r"<r><rPr>(?:(?!</r>).)*?5A6E8C(?:(?!</r>).)*?<t[^>]*>([^<]*)</t></r>", strings, re.S)
    assert coloured and coloured.group(1) == "Hola"
    assert re.search(r'<c r="B1"[^>]* t="b"><v>1</v>', cells)

    office.engine("open", path=str(path))
    again = office.application.ActiveSheet
    one = cell(again, "A1")
    assert (one.Value2, one.WrapText, one.Font.Color) == ("Hello\nHola", True, NULL)
    assert one.get("Characters", 7, 4).Font.Color == 9203290
    runs = office.engine("cell", sheet="", address="A1")["runs"]
    assert [(run["start"], run["length"], run["text"]) for run in runs] == [(1, 6, "Hello\n"), (7, 4, "Hola")]
    assert kinds(values(again, "B1:C2")) == kinds([[True, None], [True, None]])
    assert [cell(again, address).HasFormula for address in ("B1", "B2")] == [False, True]
    assert (again.ProtectContents, cell(again, "C1").Locked, office.application.ActiveWorkbook.Saved) == \
        (True, False, True)
    with pytest.raises(CallFailed):
        office.engine("save", path=str(path))


# --- protection ------------------------------------------------------------------------------------------------------

WRITES = {
    "value": lambda one: one.put("Value2", "z"),
    "formula": lambda one: one.put("Formula", "=1"),
    "bulk": lambda one: one.get("Resize", 1, 2).put("Value2", {"array": [["a", "b"]]}),
    "font": lambda one: one.Font.put("Bold", True),
    "characters": lambda one: one.get("Characters", 1, 2).Font.put("Color", 1),
    "row height": lambda one: one.put("RowHeight", 20),
    "autofit": lambda one: one.EntireRow.call("AutoFit"),
    "merge": lambda one: one.get("Resize", 1, 2).call("Merge"),
    "wrap": lambda one: one.put("WrapText", True),
    "number format": lambda one: one.put("NumberFormat", "0"),
    "fill": lambda one: one.Interior.put("Color", 1),
    "unlock": lambda one: one.put("Locked", False),
    "clear": lambda one: one.call("ClearContents"),
    "insert": lambda one: one.EntireRow.call("Insert"),
}
CONTENT_WRITES = {"value", "formula", "clear"}


@pytest.mark.parametrize("write", WRITES)
def test_a_protected_sheet_refuses(sheet, write):
    for address in ("A1", "A2"):
        cell(sheet, address).put("Value2", "text")
    cell(sheet, "A2").put("Locked", False)
    sheet.call("Protect", "pw")
    before = cell(sheet, "A1").RowHeight
    refused(WRITES[write], cell(sheet, "A1"))
    assert (cell(sheet, "A1").Value2, cell(sheet, "A1").RowHeight) == ("text", before)
    # An unlocked cell takes content; formats need a permission of their own.
    if write in CONTENT_WRITES:
        WRITES[write](cell(sheet, "A2"))
    elif write != "bulk":
        refused(WRITES[write], cell(sheet, "A2"))
    refused(sheet.call, "Unprotect", "wrong")
    sheet.call("Unprotect", "pw")
    assert sheet.ProtectContents is False
    WRITES[write](cell(sheet, "A1"))


# --- application, windows, sheets ------------------------------------------------------------------------------------

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
