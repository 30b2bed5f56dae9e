"""Compares two .xlsx files cell by cell and reads both by itself: no code in common with what wrote them."""

import zipfile
from typing import NamedTuple
from xml.etree import ElementTree

import openpyxl

from xlsx_reader import MAIN, load_book

# As the host makes rows of the default font; a row of that height need not be named in the file.
DEFAULT_HEIGHT = 15.0
# Points: heights are kept as whole pixels or twips on the way through a file.
SAME_HEIGHT = 0.4
TRUE = ("1", "true")
SIDES = ("left", "right", "top", "bottom")


class Difference(NamedTuple):
    """`kind` says what of the place (a cell's address, a row's number, or nothing for a sheet) is not the same."""
    kind: str
    sheet: str
    place: str
    before: object
    after: object


def differences(before, after):
    """Everything in which the second file differs from the first, by sheet."""
    return [Difference(kind, sheet, place, old, new)
            for (kind, sheet, place), old, new in _changes(_facts(before), _facts(after))]


def _changes(before, after):
    for key in sorted(before.keys() | after.keys(), key=str):
        old, new = before.get(key), after.get(key)
        same = _is_same_height(old, new) if key[0] == "height" else old == new
        if not same:
            yield key, old, new


def _is_same_height(old, new):
    old, new = (DEFAULT_HEIGHT if height is None else height for height in (old, new))
    return abs(old - new) <= SAME_HEIGHT


def _facts(path):
    """{(kind, sheet, place): value} of all that a reader of the file would see."""
    read = load_book(path)
    facts = {("sheets", "", ""): list(read)}
    styled = openpyxl.load_workbook(path)
    for (name, sheet), part in zip(read.items(), _sheet_roots(path, len(read))):
        facts["charts", name, ""] = sheet.chart_titles
        facts["sheet", name, ""] = (sheet.hidden, sheet.protected, sheet.freeze, tuple(sheet.merges))
        hidden = {row.get("r") for row in part.iter(MAIN + "row") if row.get("hidden") in TRUE}
        for row in part.iter(MAIN + "row"):
            facts["hidden row", name, row.get("r")] = row.get("r") in hidden
            facts["fixed height", name, row.get("r")] = row.get("customHeight") in TRUE
        arrays = {cell.get("r") for cell in part.iter(MAIN + "c")
                  if any(formula.get("t") == "array" for formula in cell.findall(MAIN + "f"))}
        for address, cell in sheet.items():
            # The height of a row that nobody sees is the writer's own affair.
            facts["height", name, str(cell.row)] = 0.0 if str(cell.row) in hidden else cell.row_height
            facts["array", name, address] = address in arrays
            facts.update(((kind, name, address), value)
                         for kind, value in _cell_facts(cell, styled[name][address]).items())
    return facts


def _sheet_roots(path, count):
    with zipfile.ZipFile(path) as package:
        return [ElementTree.fromstring(package.read(f"xl/worksheets/sheet{number}.xml")) for number in range(1, count + 1)]


def _cell_facts(cell, styled):
    font = styled.font
    return {
        "value": cell.value, "formula": cell.formula, "type": cell.type, "number format": cell.number_format,
        "fonts in the text": [tuple(run) for run in cell.runs] if len(cell.runs) > 1 else None,
        "font": (font.name, font.sz, bool(font.b), bool(font.i), font.u), "color": _color(font.color),
        "wrap": cell.wrap, "locked": cell.locked,
        "fill": (styled.fill.fill_type, _color(styled.fill.fgColor)),
        "alignment": (styled.alignment.horizontal, styled.alignment.vertical),
        "border": tuple(getattr(getattr(styled.border, side), "style", None) for side in SIDES),
        "link": getattr(getattr(styled, "hyperlink", None), "target", None),
    }


def _color(color):
    """What the file says of a colour: ("rgb", "FF0000"), ("theme", 1), …; automatic is None."""
    if color is None or color.type == "auto":
        return None
    value = getattr(color, color.type)
    return color.type, value[-6:] if color.type == "rgb" else value
