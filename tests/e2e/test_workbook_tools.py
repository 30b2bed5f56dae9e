"""Workbook tools through the real add-in on LibreOffice: what the page asks for, and what the saved file then holds."""

import base64
import datetime
import zipfile

import openpyxl
import pytest

from png_reader import Picture
from tool_driver import ToolDriver


@pytest.fixture
def ask(start_host, make_book):
    """Runs a tool on a small workbook and gives the data of its reply."""
    return ToolDriver(start_host(make_book(["one", "two"])))


def test_a_block_is_written_read_and_taken_back(ask):
    assert ask("excelPushUndoMarker") == {"ok": True, "depth": 1}
    written = ask("excelWriteRange", range="A1:B3", values=[["new", 1.5], ["=B1*2", True], ["12", None]])
    assert written["applied"] == 6 and {item["status"] for item in written["results"]} == {"applied"}
    cells = ask("excelReadRange", range="A1:B3")["cells"]
    assert [cell["value"] for cell in cells] == ["new", "1.5", "3", "TRUE", "12", ""]
    assert cells[2]["formula"] == "=B1*2"
    assert ask("excelRangeHasContent", range="A:B")["nonEmptyCount"] == 5
    assert ask("excelUndoMessage") == {"restored": 6, "depth": 0}
    cells = ask("excelReadRange", range="A1:B3")["cells"]
    assert [cell["value"] for cell in cells] == ["one", "", "two", "", "", ""]
    assert ask("excelReadRange", range="$A$1") == {"error": "range 参数缺失或无效"}


def test_a_large_block_is_written_in_one_go_and_taken_back(ask, tmp_path):
    ask("excelPushUndoMarker")
    rows = [[f"name {row}", row / 4, row % 2 == 0, "2024-05-06", None] for row in range(40)]
    written = ask("excelWriteRange", range="A1:E40", values=rows)
    assert written["applied"] == 200 and {item["status"] for item in written["results"]} == {"applied"}
    ask.host.do("save", path=str(tmp_path / "saved.xlsx"))
    sheet = openpyxl.load_workbook(tmp_path / "saved.xlsx").active
    assert [cell.value for cell in sheet[40]] == ["name 39", 9.75, False, datetime.datetime(2024, 5, 6)]
    assert sheet["C1"].value is True and sheet["E40"].value is None
    assert ask("excelUndoMessage") == {"restored": 200, "depth": 0}
    cells = ask("excelReadRange", range="A1:E40")["cells"]
    assert [cell["value"] for cell in cells if cell["value"]] == ["one", "two"]


def test_formats_sizes_and_merges_are_in_the_saved_file(ask, tmp_path):
    assert ask("excelFormatRange", range="A1:B2", font={"bold": True, "italic": True, "underline": True, "size": 14,
                                                         "name": "Courier New", "color": "#1F4E79"},
               fill="#FFEE00", alignment={"horizontal": "center", "vertical": "top"}, wrapText=True,
               numberFormat="0.00%", border={"edges": ["top", "inside_h"], "style": "thick", "color": "#FF0000"})["ok"]
    assert ask("excelSetSize", range="C3:D4", width=20, height=40) == {"ok": True, "applied": 2}
    assert ask("excelSetSize", autofit=["columns"]) == {"ok": True, "applied": 1}
    assert ask("excelMergeCells", range="E5:F6") == {"ok": True}
    assert ask("excelMergeCells", range="E5:F6") == {"ok": True, "alreadyMerged": True}
    assert ask("excelMergeCells", range="G1:H1") == {"ok": True}
    assert ask("excelUnmergeCells", range="G1:H1") == {"ok": True}
    ask.host.do("save", path=str(tmp_path / "saved.xlsx"))
    sheet = openpyxl.load_workbook(tmp_path / "saved.xlsx").active
    cell = sheet["A1"]
    font = cell.font
    assert (font.b, font.i, font.u, font.sz, font.name) == (True, True, "single", 14, "Courier New")
    assert (font.color.rgb[-6:], cell.fill.fgColor.rgb[-6:]) == ("1F4E79", "FFEE00")
    assert (cell.alignment.horizontal, cell.alignment.vertical, cell.alignment.wrap_text) == ("center", "top", True)
    # The office names the language of the format too.
    assert cell.number_format.endswith("0.00%")
    assert (cell.border.top.style, cell.border.top.color.rgb[-6:]) == ("thick", "FF0000")
    assert "thick" in (cell.border.bottom.style, sheet["A2"].border.top.style)
    assert not cell.border.left or cell.border.left.style is None
    assert sheet.row_dimensions[3].height == pytest.approx(40, abs=0.5)
    assert [str(area) for area in sheet.merged_cells.ranges] == ["E5:F6"]


def test_the_write_context_follows_the_selection(ask):
    ask.host.do("select", address="B2:C4")
    context = ask("excelGetWriteContext")
    assert (context["row"], context["col"], context["rangeAddress"]) == (2, 2, "$B$2:$C$4")
    assert context["sheetName"] == "Sheet"


def screenshot(ask, address):
    taken = ask("excelScreenshotRange", range=address)
    assert (taken["ok"], taken["mediaType"]) == (True, "image/png")
    picture = Picture(base64.b64decode(taken["data"]))
    assert (picture.width, picture.height) == (taken["width"], taken["height"])
    return picture


def test_a_screenshot_shows_the_cells(ask):
    assert ask("excelFormatRange", range="B2", fill="#FF0000")["ok"]
    picture = screenshot(ask, "A1:C3")
    width, height = picture.width, picture.height
    assert width > 100 and height > 30
    # The filled cell in the middle, white below it, and the dark letters of "one".
    assert picture.at(width // 2, height // 2) == (255, 0, 0)
    assert picture.at(width * 5 // 6, height * 5 // 6) == (255, 255, 255)
    assert min(sum(colour) for colour in picture.colours(4, 2, width // 3 - 4, height // 3 - 2)) < 200
    blank = screenshot(ask, "F10:H12")
    assert blank.width > 100 and blank.colours(0, 0, blank.width, blank.height) == {(255, 255, 255)}


def test_sheets_rows_duplicates_and_charts_are_in_the_saved_file(ask, tmp_path):
    assert ask("excelAddSheet", name="a/b:c") == {"ok": True, "name": "abc", "index": 2}
    rows = [["k", "v"], ["a", 1], ["b", 2], ["A", 1], ["c", 3]]
    assert ask("excelWriteRange", range="A1:B5", values=rows)["applied"] == 10
    assert ask("excelRemoveDuplicates", range="A1:B5", confirm=True) == \
        {"ok": True, "removed": 1, "rowsBefore": 4, "rowsAfter": 3}
    assert ask("excelInsertRowsCols", mode="rows", range="A3") == {"ok": True}
    assert ask("excelDeleteRowsCols", mode="columns", indices=[7, 9]) == {"ok": True, "applied": 2}
    chart = ask("excelChartCreate", type="pie", source="A1:B5", title="Shares")
    assert chart == {"ok": True, "shapeName": "Chart 1", "type": "pie"}
    assert ask("excelAddSheet", name="abc")["name"] == "abc (2)"
    assert ask("excelDeleteSheet", name="abc (2)") == {"ok": True}
    assert ask("excelRenameSheet", index=1, new_name="[First]") == {"ok": True}
    assert [sheet["name"] for sheet in ask("excelListSheets")["sheets"]] == ["First", "abc"]
    assert ask("excelCalcSetMode", mode="manual") == {"ok": True, "mode": "manual"}
    assert ask("excelCalcGetMode") == {"mode": "manual"}
    assert ask("excelCalculateNow") == {"ok": True}
    ask.host.do("save", path=str(tmp_path / "saved.xlsx"))
    book = openpyxl.load_workbook(tmp_path / "saved.xlsx")
    assert book.sheetnames == ["First", "abc"]
    cells = [[cell.value for cell in row] for row in book["abc"]["A1:B5"]]
    assert cells == [["k", "v"], ["a", 1], [None, None], ["b", 2], ["c", 3]]
    with zipfile.ZipFile(tmp_path / "saved.xlsx") as parts:
        drawn = next(parts.read(name).decode() for name in parts.namelist() if name.startswith("xl/charts/chart"))
    assert "<c:pieChart>" in drawn and "Shares" in drawn and "abc!$B$2:$B$5" in drawn
