"""The sample workbook holds what the demo and the other tests rely on, and the reader sees it."""

import openpyxl
import pytest
from openpyxl.styles import Alignment, Font, Protection

from conftest import SAMPLE
from xlsx_reader import MAX_UNIT_LENGTH, expected_units, load_book, too_long_cells


@pytest.fixture(scope="module")
def sample():
    return load_book(SAMPLE)


def test_the_sample_has_every_kind_of_cell_and_sheet(sample):
    assert [name for name, sheet in sample.items() if not sheet.hidden] == ["Overview", "Regions", "Notes", "Targets"]
    assert [name for name, sheet in sample.items() if sheet.hidden] == ["Archive"]
    assert [name for name, sheet in sample.items() if sheet.protected] == ["Targets"]
    assert {cell.locked for cell in sample["Targets"].values() if cell.type == "text"} == {True, False}
    cells = [cell for sheet in sample.values() for cell in sheet.values()]
    assert {cell.type for cell in cells} == {"text", "number", "bool", "date", "error", "empty"}
    assert {cell.type for cell in cells if cell.formula} >= {"text", "number", "error"}
    assert sample["Overview"].freeze == "A5" and "A1:J1" in sample["Overview"].merges
    assert sample["Overview"].chart_titles == ["Budget and actual costs by area"]
    texts = [cell.value for cell in cells if cell.type == "text" and not cell.formula]
    assert len([text for text in texts if text.isascii() and any(char.isalpha() for char in text)]) >= 150
    assert sum(text.count("[[QV_") for text in texts) == 4


def test_the_sample_is_collected_as_the_rules_say(sample):
    overview, notes = expected_units(sample, "Overview"), expected_units(sample, "Notes")
    assert list(overview)[:3] == ["A1", "A2", "A4"]
    assert overview["I5"] == "TRUE" and overview["J29"] == "The budget is sufficient"
    assert not {"E5", "G5", "H5", "B1", "E29"} & set(overview)
    assert notes["B5"] == ("This report shows the results of the year by area and region.\n"
                           "All amounts are in thousands of euros.")
    assert notes["B19"] == "Important: the second half of this line is bold." and "四" not in notes["B10"]
    assert not {"B15", "B16", "B17", "B20"} & set(notes)
    assert too_long_cells(sample, "Notes") == ["B20"] and too_long_cells(sample, "Overview") == []
    assert not {"D21", "D22", "D23"} & set(expected_units(sample, "Regions"))


def test_rich_text_is_read_run_by_run(sample):
    runs = sample["Notes"]["B19"].runs
    assert [run.text for run in runs if run.bold] == ["Important: ", "bold"]
    assert "".join(run.text for run in runs) == sample["Notes"]["B19"].value
    assert [run.bold for run in sample["Notes"]["A19"].runs] == [True]


@pytest.fixture
def book_of(tmp_path):
    def save(values, **cell_settings):
        workbook = openpyxl.Workbook()
        for address, value in values.items():
            workbook.active[address] = value
            for name, setting in cell_settings.items():
                setattr(workbook.active[address], name, setting)
        workbook.save(tmp_path / "book.xlsx")
        return load_book(tmp_path / "book.xlsx")
    return save


@pytest.mark.parametrize("value, source", [
    ("12,345.6", None), ("-3", None), ("+1 000", None), ("2024/01/02", None), ("abc", "abc"), ("漢字", "漢字"),
    ("", None), ("   ", None), (12, None), (True, "TRUE"), (False, "FALSE"), ("5 kg", "5 kg"), ("🚀", None),
    ("one\ntwo", "one"), ("one\ntwo\nthree", "one\ntwo"), ("one  \n", "one"), ("5\nfive", None), ("five\n5", "five"),
    ("  x  ", "  x"), ("a" * MAX_UNIT_LENGTH, "a" * MAX_UNIT_LENGTH), ("a" * (MAX_UNIT_LENGTH + 1), None),
    ("a" * (MAX_UNIT_LENGTH + 1) + "\nb", None), ("a" * MAX_UNIT_LENGTH + "\nb", "a" * MAX_UNIT_LENGTH),
])
def test_single_values_are_collected_or_not(book_of, value, source):
    book = book_of({"B2": value, "C3": "neighbour"})
    assert expected_units(book, "Sheet").get("B2") == source


def test_reads_formats(book_of):
    book = book_of({"A1": "x"}, font=Font(name="Arial", size=9, bold=True, color="FF00AA11"),
                   alignment=Alignment(wrap_text=True), protection=Protection(locked=False), number_format="@")
    cell = book["Sheet"]["A1"]
    assert cell.runs == [("x", "00AA11", "Arial", 9, True)]
    assert (cell.wrap, cell.locked, cell.number_format) == (True, False, "@")
