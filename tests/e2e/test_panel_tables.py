"""Tables out of PDF files and pictures: the panel's page finds them, the sheet holds exactly them, one undo takes them
back."""

import base64

import openpyxl
import pytest

from conftest import hosts_with
from panel import wait_until
from panel_driver import open_signed_in
from paper import PASSWORD, picture_of, table_pdf

TABLE = [["Item", "Units", "Price", "Code"],
         ["Left screw", "120", "1,250.50", "007"],
         ["Washer", "8", "0.35", "123456789012345678"],
         ["=A1", "", "-12.00", "B-17"]]
# A formula would show "mine", which is in A1.
VALUES = [["Item", "Units", "Price", "Code"],
          ["Left screw", 120, 1250.5, "007"],
          ["Washer", 8, 0.35, "123456789012345678"],
          ["=A1", None, -12, "B-17"]]
PAGES = {"btnPdfToTable": "pdf2table", "btnImageToTable": "imagetotable"}


@pytest.fixture
def open_page(echo_service, settings_file, tmp_path):
    """Opens one of the pages over a workbook with a text in A1 and one in D4, C3 selected."""
    with hosts_with(echo_service, tmp_path, "--window", "--browser", "chromium") as start:
        def open_over(button, prepare=lambda sheet: None):
            book = openpyxl.Workbook()
            book.active["A1"], book.active["D4"] = "mine", "keep"
            prepare(book.active)
            book.save(tmp_path / "book.xlsx")
            host = start(tmp_path / "book.xlsx")
            panel = open_signed_in(host)
            host.do("select", address="C3")
            host.do("press", button=button)
            panel.wait_for_page(PAGES[button])
            return panel
        yield open_over


def choose(panel, path, kind):
    """Puts a file into the page's field, as the file dialog does."""
    data = base64.b64encode(path.read_bytes()).decode()
    panel.value(f"""(() => {{
        const bytes = Uint8Array.from(atob('{data}'), (letter) => letter.charCodeAt(0));
        const chosen = new DataTransfer();
        chosen.items.add(new File([bytes], '{path.name}', {{ type: '{kind}' }}));
        const field = document.getElementById('file');
        field.files = chosen.files;
        field.dispatchEvent(new Event('change', {{ bubbles: true }}));
    }})()""")


def wait_for_table(panel):
    shown = "[...document.querySelectorAll('#cells tr:has(td input)')].map((row) => " \
            "[...row.querySelectorAll('input')].map((field) => field.value))"
    panel.wait_for("!document.getElementById('result').hidden && document.getElementById('cell').value", 90)
    return panel.value(shown)


def write(panel, yes=True):
    panel.click("#write")
    panel.wait_for("document.querySelector('dialog')?.innerText.includes('C3:F6')")
    panel.click("#dialog-yes" if yes else "#dialog-no")


def cells(panel):
    """The values of C3:F6."""
    return [[panel.host.cell("Sheet", f"{column}{row}")["value"] for column in "CDEF"] for row in range(3, 7)]


def undo(panel):
    panel.click("#undo")
    panel.wait_for("document.getElementById('written-text').textContent.startsWith('Undone')", 30)


BEFORE = [[None] * 4, [None, "keep", None, None], [None] * 4, [None] * 4]


@pytest.mark.parametrize("button", PAGES)
def test_the_sheet_holds_exactly_the_table_and_one_undo_takes_it_back(open_page, tmp_path, button):
    pdf = table_pdf(TABLE, tmp_path)
    panel = open_page(button)
    if button == "btnPdfToTable":
        choose(panel, pdf, "application/pdf")
    else:
        choose(panel, picture_of(pdf), "image/png")
    assert wait_for_table(panel) == TABLE
    assert panel.value("document.getElementById('cell').value") == "C3"

    write(panel, yes=False)
    panel.wait_for("!document.getElementById('write').disabled")
    assert cells(panel) == BEFORE
    write(panel)
    panel.wait_for("document.getElementById('written-text').textContent.startsWith('Written: C3:F6')", 60)
    assert cells(panel) == VALUES
    assert panel.host.cell("Sheet", "A1")["value"] == "mine"
    undo(panel)
    wait_until(panel.host, lambda: cells(panel) == BEFORE, "the table taken back")


def test_cells_whose_format_is_text_show_no_apostrophes(open_page, tmp_path):
    def format_as_text(sheet):
        for row in sheet["C3:F5"]:
            for cell in row:
                cell.number_format = "@"

    panel = open_page("btnPdfToTable", format_as_text)
    choose(panel, table_pdf(TABLE, tmp_path), "application/pdf")
    wait_for_table(panel)
    write(panel)
    panel.wait_for("document.getElementById('written-text').textContent.startsWith('Written: C3:F6')", 60)
    assert [row[3] for row in cells(panel)] == [row[3] for row in VALUES]
    undo(panel)
    assert cells(panel) == BEFORE


def test_a_locked_pdf_and_one_without_a_table_are_told_apart(open_page, tmp_path):
    panel = open_page("btnPdfToTable")
    choose(panel, table_pdf(TABLE, tmp_path, PASSWORD), "application/pdf")
    panel.wait_for("document.getElementById('problem').textContent.includes('protected by a password')", 30)
    choose(panel, table_pdf([["Only a line"]], tmp_path), "application/pdf")
    panel.wait_for("document.getElementById('problem').textContent.includes('No table was found')", 30)
    assert cells(panel) == BEFORE
