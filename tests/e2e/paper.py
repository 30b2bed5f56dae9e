"""PDF files and pictures of known tables and texts, printed by LibreOffice."""

import subprocess

import openpyxl
from openpyxl.styles import Alignment, Border, Side

PASSWORD = ('pdf:calc_pdf_Export:{"EncryptFile":{"type":"boolean","value":"true"},'
            '"DocumentOpenPassword":{"type":"string","value":"secret"}}')
EDGE = Side(style="thin")


def _print(book, folder, how="pdf"):
    workbook = folder / "paper.xlsx"
    book.save(workbook)
    subprocess.run(["soffice", "--headless", f"-env:UserInstallation=file://{folder}/office", "--convert-to", how,
                    "--outdir", folder, workbook], check=True, timeout=120, capture_output=True)
    return folder / "paper.pdf"


def table_pdf(rows, folder, how="pdf"):
    """A PDF with a table of texts and numbers, its cells ruled; with `how=PASSWORD` it opens with a password only."""
    book = openpyxl.Workbook()
    sheet = book.active
    for row, texts in enumerate(rows, 1):
        for column, text in enumerate(texts, 1):
            cell = sheet.cell(row, column)
            # A formula must stay the text that it is.
            cell.value, cell.data_type = text, "s"
            cell.border = Border(EDGE, EDGE, EDGE, EDGE)
            cell.alignment = Alignment(horizontal="right" if column in (2, 3) else "left", indent=1)
    for column in "ABCD":
        sheet.column_dimensions[column].width = 20
    return _print(book, folder, how)


def text_pdf(paragraphs, folder):
    """A PDF with paragraphs below each other, those that begin with "#" in large letters."""
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.column_dimensions["A"].width = 80
    for row, text in enumerate(paragraphs, 1):
        cell = sheet.cell(2 * row, 1, text.removeprefix("#"))
        cell.alignment = Alignment(wrap_text=True, vertical="top")
        if text.startswith("#"):
            cell.font = openpyxl.styles.Font(size=18)
    return _print(book, folder)


def picture_of(pdf):
    """A PNG of the first page, as a screen shows it."""
    target = pdf.with_suffix("")
    subprocess.run(["pdftoppm", "-r", "110", "-png", "-singlefile", "-H", "500", pdf, target], check=True, timeout=60)
    return target.with_suffix(".png")
