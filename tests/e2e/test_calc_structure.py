"""Sheets, rows, charts and pictures on LibreOffice: that they do what Excel's members of the same names do."""

import base64
import struct
import zipfile

import pytest

from calc_office import cell, error, refused, values

COLUMN, LINE, PIE, BAR = 51, 4, 5, 57


def fill(sheet, address, rows):
    cell(sheet, address).put("Value2", {"array": rows})


@pytest.fixture
def sales(sheet):
    fill(sheet, "A1:C4", [["Month", "North", "South"], ["Jan", 1, 5], ["Feb", 2, 6], ["Mar", 4, 3]])
    return sheet


@pytest.mark.parametrize("kind", [COLUMN, LINE, PIE, BAR])
def test_a_chart_shows_its_source_in_its_kind_and_place(sales, kind):
    shape = sales.Shapes.call("AddChart2", -1, kind, 300, 50, 400, 300, True)
    assert shape.Name == "Chart 1"
    assert [round(length) for length in (shape.Left, shape.Top, shape.Width, shape.Height)] == [300, 50, 400, 300]
    chart = shape.Chart
    chart.call("SetSourceData", cell(sales, "A1:C4"))
    assert chart.ChartType == kind
    chart.put("HasTitle", True)
    chart.ChartTitle.put("Text", "Sales")
    assert sales.call("ChartObjects").call("Item", "Chart 1").Chart.ChartTitle.Text == "Sales"
    shape.call("Delete")
    assert sales.call("ChartObjects").Count == 0


def test_the_old_way_of_adding_a_chart_works_too_and_names_differ(sales):
    first = sales.call("ChartObjects").call("Add", 10, 20, 100, 80)
    second = sales.call("ChartObjects").call("Add", 10, 120, 100, 80)
    assert [first.Name, second.Name] == ["Chart 1", "Chart 2"]
    second.Chart.put("ChartType", PIE)
    assert [first.Chart.ChartType, second.Chart.ChartType] == [COLUMN, PIE]
    first.call("Delete")
    assert sales.call("ChartObjects").Count == 1


def test_a_saved_chart_refers_to_its_cells(office, sales, tmp_path):
    sales.Shapes.call("AddChart2", -1, BAR, 300, 50, 400, 300).Chart.call("SetSourceData", cell(sales, "A:C"))
    office.engine("save", path=str(tmp_path / "chart.xlsx"))
    with zipfile.ZipFile(tmp_path / "chart.xlsx") as book:
        chart = next(book.read(name).decode() for name in book.namelist() if name.startswith("xl/charts/chart"))
    assert "Sheet1!$B$2:$B$4" in chart and "Sheet1!$A$2:$A$4" in chart
    assert 'barDir val="bar"' in chart


def test_a_chart_of_another_type_or_on_a_protected_sheet_is_refused(sales):
    refused(sales.Shapes.call, "AddChart2", -1, 9999, code=0x80070057, scode=0)
    sales.call("Protect")
    refused(sales.Shapes.call, "AddChart2", -1, COLUMN)
    assert sales.call("ChartObjects").Count == 0


def picture(sheet, address):
    answer = cell(sheet, address).call("CopyPicture", 1, 2)
    png = base64.b64decode(answer["picture"])
    assert png.startswith(b"\x89PNG") and answer["bitmap"] is True
    return png, struct.unpack(">II", png[16:24])


def test_a_picture_shows_the_range_and_leaves_the_selection(office, sales):
    cell(sales, "B2").call("Select")
    png, (width, height) = picture(sales, "A1:C4")
    assert width > 60 and height > 20
    other, size = picture(sales, "F10:H13")
    assert other != png and size == (width, height)
    assert office.application.Selection.Address == "$B$2"
    added = office.application.Worksheets.call("Add")
    assert picture(sales, "A1:C4")[0] == png
    assert office.application.ActiveSheet.Name == added.Name


def test_rows_and_columns_move_what_follows(sales):
    cell(sales, "2:2").EntireRow.call("Insert")
    assert cell(sales, "A3").Value2 == "Jan"
    cell(sales, "B1:C1").EntireColumn.call("Delete")
    cell(sales, "2:3").EntireRow.call("Delete")
    assert values(sales, "A1:B3") == [["Month", None], ["Feb", None], ["Mar", None]]
    sales.call("Protect")
    refused(cell(sales, "2:2").EntireRow.call, "Insert")


def test_duplicates_go_by_the_compared_columns(sheet):
    fill(sheet, "A1:B5", [["k", "v"], ["a", 1], ["A", 2], ["b", 1], ["a", 1]])
    cell(sheet, "A1:B5").call("RemoveDuplicates", {"list": [1, 2]}, 1)
    assert values(sheet, "A1:B5") == [["k", "v"], ["a", 1], ["A", 2], ["b", 1], [None, None]]
    cell(sheet, "A1:B5").call("RemoveDuplicates", {"list": [1]}, 1)
    assert values(sheet, "A1:B4") == [["k", "v"], ["a", 1], ["b", 1], [None, None]]


def test_duplicates_of_whole_columns_keep_errors_and_booleans_apart(sheet):
    fill(sheet, "A1:B6", [[True, "a"], [1, "a"], [True, "A"], ["=1/0", "b"], ["=2/0", "b"], [False, "c"]])
    cell(sheet, "A:B").call("RemoveDuplicates", {"list": [1, 2]}, 2)
    assert values(sheet, "A1:B6") == [[True, "a"], [1, "a"], [error(2007), "b"], [False, "c"], [None, None],
                                      [None, None]]
    assert values(sheet, "A1:A2")[0][0] is True and cell(sheet, "A4").Value2 is False
    cell(sheet, "C9").call("RemoveDuplicates", 1, 2)
    cell(sheet, "F:G").call("RemoveDuplicates", {"list": [2]}, 1)
    refused(cell(sheet, "A1:B6").call, "RemoveDuplicates", {"list": [1], "low": 1}, 2)


def test_a_new_sheet_goes_beside_a_worksheet_only(office, sheet):
    sheets = office.application.Worksheets
    for place in ("Sheet1", 1, cell(sheet, "A1")):
        refused(sheets.call, "Add", place)
    refused(sheets.call, "Add", sheet, sheet)
    assert sheets.Count == 1


def test_a_sheet_is_deleted_without_asking_only(office, sheet):
    added = office.application.Worksheets.call("Add")
    assert added.call("Delete") is False
    office.application.put("DisplayAlerts", False)
    assert added.call("Delete") is True
    office.application.put("DisplayAlerts", True)
    assert office.application.Worksheets.Count == 1


def test_a_union_holds_the_areas_of_ranges_on_one_sheet(office, sheet):
    union = office.application.call("Union", cell(sheet, "3:3,7:8"), cell(sheet, "B10"), cell(sheet, "D12:E12"))
    assert union.Address == "$3:$3,$7:$8,$B$10,$D$12:$E$12"
    union.call("Select")
    assert office.application.Selection.Areas.Count == 4
    other = office.application.Worksheets.call("Add")
    refused(office.application.call, "Union", cell(sheet, "A1"), cell(other, "A1"))
    refused(office.application.call, "Union", cell(sheet, "A1"), code=0x8002000E)


def test_an_address_of_more_than_255_characters_is_refused(sheet):
    longest = ",".join(["1000:1000"] * 25) + ",A100"
    assert len(longest) == 254 and cell(sheet, longest + "0").Areas.Count == 26
    refused(cell, sheet, longest + "00")
