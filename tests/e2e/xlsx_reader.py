"""Reads .xlsx files for the tests, by itself: it shares no code with the product or the development host.

`load_book` gives what a saved workbook holds, `expected_units` what a run over a whole sheet has to translate.
"""

import dataclasses
import posixpath
import unicodedata
import zipfile
from typing import NamedTuple, Optional
from xml.etree import ElementTree

import openpyxl
from openpyxl.utils import get_column_letter

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
DRAWING = "{http://schemas.openxmlformats.org/drawingml/2006/main}"
CHART = "{http://schemas.openxmlformats.org/drawingml/2006/chart}"
RELATION = "{http://schemas.openxmlformats.org/package/2006/relationships}Relationship"
RELATION_ID = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}id"

# A longer text is not sent; counted in UTF-16 code units.
MAX_UNIT_LENGTH = 20000


class Run(NamedTuple):
    """A piece of a cell's text in one font. `color` is "RRGGBB", or None for an automatic or theme colour."""
    text: str
    color: Optional[str]
    font: Optional[str]
    size: Optional[float]
    bold: bool


@dataclasses.dataclass
class Cell:
    """`value` is the saved (for a formula: cached) value, `type` one of text, number, bool, date, error, empty; `formula`
    begins with "="; a covered cell of a merge names the top-left one in `merged_into`; `row_height` is in points."""
    row: int
    column: int
    value: object
    formula: Optional[str]
    type: str
    number_format: str
    runs: list
    row_height: Optional[float]
    wrap: bool
    locked: bool
    merged_into: Optional[str]


class Sheet(dict):
    """{address: Cell} in row order, and what belongs to the sheet as a whole."""

    def __init__(self, name):
        super().__init__()
        self.name = name
        self.protected = self.hidden = False
        self.freeze = None
        self.merges = []
        self.chart_titles = []


def load_book(path):
    """{sheet name: Sheet} in tab order. Raises what zipfile, ElementTree or openpyxl raise for a damaged file."""
    formulas, values = openpyxl.load_workbook(path), openpyxl.load_workbook(path, data_only=True)
    book = {}
    with zipfile.ZipFile(path) as package:
        shared = _shared_strings(package)
        parts = sheet_parts(package)
        for worksheet in formulas.worksheets:
            sheet = book[worksheet.title] = Sheet(worksheet.title)
            sheet.hidden = worksheet.sheet_state != "visible"
            sheet.protected = bool(worksheet.protection.sheet)
            sheet.freeze = worksheet.freeze_panes
            sheet.merges = sorted(str(area) for area in worksheet.merged_cells.ranges)
            sheet.chart_titles = _chart_titles(package, parts[worksheet.title])
            rich = _rich_texts(package, parts[worksheet.title], shared)
            covered = _covered_cells(worksheet)
            for line in worksheet.iter_rows():
                for cell in line:
                    sheet[cell.coordinate] = _cell(worksheet, cell, values[worksheet.title][cell.coordinate],
                                                   rich.get(cell.coordinate), covered.get(cell.coordinate))
    return book


def _cell(worksheet, cell, cached, rich, merged_into):
    formula = cell.value if cell.data_type == "f" else None
    if formula is not None and not isinstance(formula, str):
        formula = formula.text  # an array formula
    kinds = {"s": "text", "inlineStr": "text", "str": "text", "b": "bool", "d": "date", "e": "error", "n": "number"}
    kind = "empty" if cached.value is None else kinds[cached.data_type]
    font = cell.font
    plain = Run(str(cached.value), _rgb(font.color.rgb if font.color is not None else None), font.name, font.sz,
                bool(font.b))
    runs = [plain] if kind == "text" else []
    if kind == "text" and rich and formula is None:
        runs = [Run(text, *_run_font(properties, plain)) for text, properties in rich]
    return Cell(cell.row, cell.column, cached.value, formula, kind, cell.number_format, runs,
                worksheet.row_dimensions[cell.row].height, bool(cell.alignment.wrap_text), bool(cell.protection.locked),
                merged_into)


def _rgb(color):
    return color[-6:].upper() if isinstance(color, str) and len(color) in (6, 8) else None


def _run_font(properties, plain):
    """Color, font, size and bold of a run; one without properties of its own has the cell's."""
    if properties is None:
        return plain[1:]

    def value(name, attribute="val"):
        element = properties.find(MAIN + name)
        return None if element is None else element.get(attribute)

    bold = properties.find(MAIN + "b")
    size = value("sz")
    return (_rgb(value("color", "rgb")), value("rFont"), None if size is None else float(size),
            bold is not None and bold.get("val", "1") not in ("0", "false"))


def _covered_cells(worksheet):
    covered = {}
    for area in worksheet.merged_cells.ranges:
        first = f"{get_column_letter(area.min_col)}{area.min_row}"
        for row, column in area.cells:
            if (row, column) != (area.min_row, area.min_col):
                covered[f"{get_column_letter(column)}{row}"] = first
    return covered


def _shared_strings(package):
    if "xl/sharedStrings.xml" not in package.namelist():
        return []
    root = ElementTree.fromstring(package.read("xl/sharedStrings.xml"))
    return [_rich_runs(item) for item in root.findall(MAIN + "si")]


def _rich_runs(item):
    """[(text, run properties or None)] of a rich text; None for a plain one."""
    runs = [("".join(text.text or "" for text in run.findall(MAIN + "t")), run.find(MAIN + "rPr"))
            for run in item.findall(MAIN + "r")]
    return runs or None


def _rich_texts(package, part, shared):
    found = {}
    for cell in ElementTree.fromstring(package.read(part)).iter(MAIN + "c"):
        if cell.get("t") == "s":
            found[cell.get("r")] = shared[int(cell.find(MAIN + "v").text)]
        elif cell.get("t") == "inlineStr" and (item := cell.find(MAIN + "is")) is not None:
            found[cell.get("r")] = _rich_runs(item)
    return found


def relations(package, part):
    """{id: (type, path of the part that is meant)}."""
    folder, name = posixpath.split(part)
    path = f"{folder}/_rels/{name}.rels"
    if path not in package.namelist():
        return {}
    return {relation.get("Id"): (relation.get("Type"),
                                 posixpath.normpath(posixpath.join("/", folder, relation.get("Target")))[1:])
            for relation in ElementTree.fromstring(package.read(path)).iter(RELATION)}


def sheet_parts(package):
    parts = relations(package, "xl/workbook.xml")
    root = ElementTree.fromstring(package.read("xl/workbook.xml"))
    return {sheet.get("name"): parts[sheet.get(RELATION_ID)][1] for sheet in root.iter(MAIN + "sheet")}


def _chart_titles(package, part):
    titles = []
    for kind, drawing in relations(package, part).values():
        if kind.endswith("/drawing"):
            for kind_of_part, chart in relations(package, drawing).values():
                if kind_of_part.endswith("/chart"):
                    title = ElementTree.fromstring(package.read(chart)).find(f"{CHART}chart/{CHART}title")
                    if title is not None:
                        titles.append("\n".join("".join(text.text or "" for text in paragraph.iter(DRAWING + "t"))
                                                for paragraph in title.iter(DRAWING + "p")))
    return titles


def expected_units(book, sheet):
    """{address: source text} of the cells that a run over the whole sheet translates, in its order.

    A range of several cells gives no answer cell by cell to which of them are formulas, so text results of formulas are
    translated as well; a used range of a single cell does tell, and a formula there is left alone.
    """
    return {address: text for address, text in _candidates(book[sheet]) if _utf16_length(text) <= MAX_UNIT_LENGTH}


def too_long_cells(book, sheet):
    """Addresses of the cells that only their length keeps from being translated."""
    return [address for address, text in _candidates(book[sheet]) if _utf16_length(text) > MAX_UNIT_LENGTH]


def _candidates(sheet):
    used = [cell for cell in sheet.values() if cell.type != "empty"]
    for address, cell in sheet.items():
        if cell.merged_into is not None or (cell.formula is not None and len(used) == 1):
            continue
        text = _translatable_text(cell)
        if text:
            yield address, text


def _translatable_text(cell):
    """The part of a cell's text that is translated; empty for none."""
    if cell.type == "bool":
        text = "TRUE" if cell.value else "FALSE"
    elif cell.type == "text":
        text = cell.value.rstrip()
    else:
        return ""
    if _says_nothing(text):
        return ""
    if "\n" in text:
        # The last line of several holds an earlier translation.
        text = text[:text.rindex("\n")].rstrip()
    return "" if _says_nothing(text) else text


def _says_nothing(text):
    if text == "":
        return True
    if all(char.isdigit() or char in "+,-. " for char in text) and any(char.isdigit() for char in text):
        return True
    return not any(_is_letter(char) for char in text)


def _is_letter(char):
    # Characters beyond the BMP are two surrogates for the add-in, and those are no letters.
    return ord(char) <= 0xFFFF and unicodedata.category(char)[0] == "L"


def _utf16_length(text):
    return len(text.encode("utf-16-le", "surrogatepass")) // 2
