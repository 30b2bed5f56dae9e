"""Cells on LibreOffice: that they answer as Excel's do where Calc by itself would not."""

import re
import time
import zipfile

import pytest

from calc_office import CallFailed, NULL, OUT_OF_MEMORY, cell, error, kinds, refused, values

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
    for lines, some in (("EntireRow", ("A2", "A3:A4", "A1:A3")), ("EntireColumn", ("B1", "C1:D1", "A1:C1"))):
        cell(sheet, some[0]).get(lines).put("Hidden", True)
        assert [cell(sheet, address).get(lines).Hidden for address in some] == [True, False, NULL], lines


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
    row.put("Hidden", True)
    assert row.RowHeight == 0


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


def test_borders_are_put_and_read_edge_by_edge(sheet):
    """Thin and thick lines around a block, lines inside it, and none again; colours are the host's numbers."""
    block = sheet.get("Range", "B2:C3")
    for edge, weight in ((7, 2), (8, 4), (11, 2), (12, 4)):
        border = block.Borders.get("Item", edge)
        border.put("LineStyle", 1)
        border.put("Weight", weight)
        border.put("Color", 255)
    for edge, weight in ((7, 2), (8, 4), (11, 2), (12, 4)):
        border = block.Borders.get("Item", edge)
        assert (edge, border.LineStyle, border.Weight, border.Color) == (edge, 1, weight, 255)
    assert block.Borders.get("Item", 10).LineStyle == -4142
    # What lies inside the block is drawn between its cells.
    assert sheet.get("Range", "B2").Borders.get("Item", 10).LineStyle == 1
    assert sheet.get("Range", "B2").Borders.get("Item", 9).Weight == 4
    block.Borders.get("Item", 8).put("LineStyle", -4115)
    assert block.Borders.get("Item", 8).LineStyle == -4115
    for edge in range(7, 13):
        block.Borders.get("Item", edge).put("LineStyle", -4142)
    assert {block.Borders.get("Item", edge).LineStyle for edge in range(7, 13)} == {-4142}
