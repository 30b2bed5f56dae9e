"""Formulas in Excel's grammar. Calc's own support for Excel macros does the translation."""

from office import cell_values
from office.calc import service
from office.com_object import ComError

NO_FORMULA = "There's a problem with this formula."
# Calc's errors that mean "this is no formula"; Excel does not accept such an entry at all.
NOT_A_FORMULA = {501, 507, 508, 509, 510, 511, 512}


def excel_range(cells):
    return service("ooo.vba.excel.Range", None, cells)


def read(document, cell):
    """The formula of a cell, or its constant as it would be typed."""
    if cell.Type.value == "FORMULA":
        formula = excel_range(cell).Formula
        # Calc puts an array formula into braces, behind a sign of its own; in Excel those are only shown.
        return formula[2:-1] if formula.startswith("={=") else formula
    value = cell_values.read(document, cell)
    if value is None:
        return ""
    if isinstance(value, bool):
        return "TRUE" if value else "FALSE"
    return "%.15g" % value if isinstance(value, float) else value


def read_block(document, block):
    return [[read(document, block.getCellByPosition(column, row)) for column in range(block.Columns.Count)]
            for row in range(block.Rows.Count)]


def _is_balanced(text):
    """Whether every parenthesis outside quotes is closed; Calc would close them silently."""
    depth = 0
    quote = None
    for character in text:
        if quote:
            quote = None if character == quote else quote
        elif character in "\"'":
            quote = character
        elif character in "()":
            depth += 1 if character == "(" else -1
            if depth < 0:
                return False
    return depth == 0 and quote is None


def enter(cell, text):
    """Makes `text`, which begins with "=", the cell's formula; puts the old content back when it is none."""
    if not _is_balanced(text):
        raise ComError(NO_FORMULA)
    before = cell.getDataArray(), cell.Type.value, cell.Formula
    try:
        excel_range(cell).Formula = text
        accepted = cell.Type.value == "FORMULA" and cell.getError() not in NOT_A_FORMULA
    except Exception:  # pylint: disable=broad-except
        accepted = False
    if not accepted:
        _put_back(cell, *before)
        raise ComError(NO_FORMULA)
    # Entered once more in Calc's own words, a comparison gets the boolean result that it has after loading a file.
    cell.Formula = cell.Formula


def _put_back(cell, data, kind, formula):
    if kind == "FORMULA":
        cell.Formula = formula
    elif kind == "TEXT":
        cell.String = data[0][0]
    elif kind == "VALUE":
        cell.Value = data[0][0]
    else:
        cell.Formula = ""
