"""Values of cells in Excel's terms, one at a time and in bulk."""

from office import calc, formulas, range_geometry, typed_text, wps
from office.calc import format_type
from office.com_object import (NULL, Array, Date, DISP_E_TYPEMISMATCH, E_OUTOFMEMORY, ErrorValue,
                               HResultError)

# com.sun.star.sheet.FormulaResult
VALUE_RESULT, STRING_RESULT, ERROR_RESULT = 1, 2, 4
# com.sun.star.util.NumberFormat
DATE_OR_TIME, LOGICAL = 2 | 4, 1024
# com.sun.star.i18n.NumberFormatIndex.BOOLEAN
BOOLEAN_INDEX = 48
GENERAL = 0

DIV0, VALUE_ERROR, REF, NAME, NUM, NA = (0x800A0000 + n for n in (2007, 2015, 2023, 2029, 2036, 2042))
# Calc's error numbers. 502 stands for both #VALUE! and #NUM!; Excel shows the first far more often.
ERRORS = {502: VALUE_ERROR, 503: NUM, 519: VALUE_ERROR, 524: REF, 525: NAME, 532: DIV0, 32767: NA}
ERROR_TEXTS = {
    0x800A07D0: "#NULL!",
    DIV0: "#DIV/0!",
    VALUE_ERROR: "#VALUE!",
    REF: "#REF!",
    NAME: "#NAME?",
    NUM: "#NUM!",
    NA: "#N/A",
}

# Requests above this many cells are cut to the used area first, and padded again by the client.
LARGE = 20000
# About 200 MB as VARIANTs; Excel gives up on far larger reads as well.
LARGEST_READ = 8 * 1024 * 1024


def error_value(number):
    scode = ERRORS.get(number, VALUE_ERROR)
    if wps.is_wps():
        # WPS hands errors out as plain numbers.
        return scode - (1 << 32)
    return ErrorValue(scode)


def shown_text(document, cell):
    """The text that the cell shows."""
    number = cell.getError()
    return ERROR_TEXTS[ERRORS.get(number, VALUE_ERROR)] if number else cell.String


def read(document, block, dates=False):
    """The value of one cell, or the Array of a larger block."""
    address = block.RangeAddress
    rows = address.EndRow - address.StartRow + 1
    columns = address.EndColumn - address.StartColumn + 1
    if rows == columns == 1:
        return _read_cell(document, block.getCellByPosition(0, 0), dates)
    if rows * columns > LARGEST_READ:
        raise HResultError(E_OUTOFMEMORY)
    if rows * columns > LARGE:
        block = _within_used_area(block, address)
        if block is None:
            return Array([], rows, columns)
    return Array(_read_block(document, block, dates), rows, columns)


def _within_used_area(block, address):
    used = range_geometry.used_area(block.Spreadsheet).RangeAddress
    last_row, last_column = min(address.EndRow, used.EndRow), min(address.EndColumn, used.EndColumn)
    if last_row < address.StartRow or last_column < address.StartColumn:
        return None
    return block.Spreadsheet.getCellRangeByPosition(address.StartColumn, address.StartRow, last_column, last_row)


def _read_cell(document, cell, dates):
    kind = cell.Type.value
    if kind == "EMPTY":
        return None
    if kind == "TEXT":
        return cell.String
    if kind == "FORMULA":
        error = cell.getError()
        if error:
            return error_value(error)
        if cell.FormulaResultType2 == STRING_RESULT:
            return cell.String
    return _number(document, cell, dates)


def _number(document, cell, dates):
    value = cell.Value
    shape = format_type(document, cell.NumberFormat)
    if shape & LOGICAL or (value in (0.0, 1.0) and cell.String in ("TRUE", "FALSE")):
        return bool(value)
    return Date(value) if dates and shape & DATE_OR_TIME else value


def _read_block(document, block, dates):
    rows = [[None if value == "" else value for value in row] for row in block.getDataArray()]
    _mark_formula_texts(block, rows)
    _mark_errors(block, rows)
    _mark_formats(document, block, rows, dates)
    return rows


def positions(origin, addresses):
    """(row, column) of every cell of the areas, counted from the corner of `origin`."""
    for address in addresses:
        for row in range(address.StartRow - origin.StartRow, address.EndRow - origin.StartRow + 1):
            for column in range(address.StartColumn - origin.StartColumn, address.EndColumn - origin.StartColumn + 1):
                yield row, column


def _mark_formula_texts(block, rows):
    # An empty text is no empty cell, and only a formula can give one.
    for row, column in positions(block.RangeAddress, block.queryFormulaCells(STRING_RESULT).RangeAddresses):
        if rows[row][column] is None:
            rows[row][column] = ""


def _mark_errors(block, rows):
    for row, column in positions(block.RangeAddress, block.queryFormulaCells(ERROR_RESULT).RangeAddresses):
        rows[row][column] = error_value(block.getCellByPosition(column, row).getError())


def _mark_formats(document, block, rows, dates):
    """Booleans are numbers with a format in Calc, or formulas whose result shows as a word."""
    origin = block.RangeAddress
    formats = block.getUniqueCellFormatRanges()
    for index in range(formats.Count):
        alike = formats.getByIndex(index)
        shape = format_type(document, alike.getByIndex(0).NumberFormat)
        if shape & LOGICAL:
            convert = bool
        elif dates and shape & DATE_OR_TIME:
            convert = Date
        else:
            continue
        for row, column in positions(origin, alike.RangeAddresses):
            if isinstance(rows[row][column], float):
                rows[row][column] = convert(rows[row][column])
    for row, column in positions(origin, block.queryFormulaCells(VALUE_RESULT).RangeAddresses):
        value = rows[row][column]
        if isinstance(value, float) and value in (0.0, 1.0) and \
                block.getCellByPosition(column, row).String in ("TRUE", "FALSE"):
            rows[row][column] = bool(value)


def write(document, block, value):
    """Puts one value into every cell of the block, or an Array over it."""
    address = block.RangeAddress
    rows = address.EndRow - address.StartRow + 1
    columns = address.EndColumn - address.StartColumn + 1
    if isinstance(value, list):
        value = Array([value])
    if not isinstance(value, Array):
        if rows == columns == 1:
            _write_cell(document, block.getCellByPosition(0, 0), value)
            return
        value = Array([[value]])
    at = _element(value)
    _write_block(document, block, [[at(row, column) for column in range(columns)] for row in range(rows)])


def _element(array):
    """Element lookup with Excel's rules: a single row or column repeats, what lies outside is #N/A."""

    def at(row, column):
        row = 0 if array.row_count == 1 else row
        column = 0 if array.column_count == 1 else column
        if row >= array.row_count or column >= array.column_count:
            return ErrorValue(NA)
        return array.rows[row][column] if row < len(array.rows) and column < len(array.rows[row]) else None

    return at


def _write_block(document, block, rows):
    """Numbers and plain texts go in at once, what Excel would interpret goes in cell by cell."""
    # In cells of these formats a text or number does not mean the same as elsewhere.
    delicate = any(format_type(document, key) & (LOGICAL | typed_text.TEXT_FORMAT) for key in _format_keys(block))
    special = []

    def plain(row, column, value):
        if isinstance(value, (int, float)) and not isinstance(value, bool) and not delicate:
            return float(value)
        if isinstance(value, str) and not delicate:
            typed = typed_text.interpret(document, value, False)
            if typed.kind == "text" and typed.value[:1] != "=":
                return typed.value
        if value is not None:
            special.append((row, column, value))
        # A void here makes Calc 7.4 crash when the block lies right of all content.
        return ""

    block.setDataArray(tuple(tuple(plain(row, column, value) for column, value in enumerate(values))
                             for row, values in enumerate(rows)))
    for row, column, value in special:
        _write_cell(document, block.getCellByPosition(column, row), value)


def _format_keys(block):
    formats = block.getUniqueCellFormatRanges()
    return {formats.getByIndex(index).getByIndex(0).NumberFormat for index in range(formats.Count)}


def _write_cell(document, cell, value):
    if value is None or value is NULL:
        cell.Formula = ""
    elif isinstance(value, bool):
        _write_boolean(document, cell, value)
    elif isinstance(value, (int, float)):
        leave_boolean_format(document, cell)
        cell.Value = float(value)
    elif isinstance(value, str):
        _write_text(document, cell, value)
    elif isinstance(value, Date):
        cell.Value = value.serial
        if cell.NumberFormat == GENERAL:
            cell.NumberFormat = document.NumberFormats.getStandardFormat(2, calc.english())
    elif isinstance(value, ErrorValue):
        formulas.enter(cell, "=" + ERROR_TEXTS.get(value.scode & 0xFFFFFFFF, "#N/A"))
    else:
        raise HResultError(DISP_E_TYPEMISMATCH)


def _write_text(document, cell, text):
    is_text_format = bool(format_type(document, cell.NumberFormat) & typed_text.TEXT_FORMAT)
    typed = typed_text.interpret(document, text, is_text_format)
    if typed.kind == "boolean":
        _write_boolean(document, cell, typed.value)
        return
    if typed.kind == "formula":
        formulas.enter(cell, typed.value)
        return
    leave_boolean_format(document, cell)
    if typed.kind == "text":
        _write_plain_text(cell, typed.value)
        return
    cell.Value = typed.value
    if cell.NumberFormat == GENERAL and typed.number_format != GENERAL:
        cell.NumberFormat = typed.number_format


def _write_plain_text(cell, text):
    before = cell.NumberFormat
    cell.String = text
    if cell.NumberFormat != before:
        # Calc protects a text that looks like something else with the text format; Excel leaves the format alone.
        cell.NumberFormat = before


def _write_boolean(document, cell, value):
    cell.Value = 1.0 if value else 0.0
    cell.NumberFormat = document.NumberFormats.getFormatIndex(BOOLEAN_INDEX, calc.english())


def leave_boolean_format(document, cell):
    """The format is Calc's way of keeping a boolean; it must not outlive the value."""
    if format_type(document, cell.NumberFormat) & LOGICAL:
        cell.NumberFormat = GENERAL
