"""What the development host asks for beside the object model: look at cells, select, protect, save, take a picture."""

from office import (calc, cell_values, fonts, formulas, picture, ranges, sheets, units, window_list,
                    window_operations, windows, workbooks)
from office.com_object import ComError, ErrorValue, HResultError
from office.fonts import SEMI_BOLD


def perform(name, options):
    operation = OPERATIONS.get(name)
    if operation is None:
        raise ComError("unknown engine operation %r" % name)
    return operation(**options)


def _document():
    document = window_list.active_document()
    if document is None:
        raise ComError("no workbook is open")
    return document


def _worksheet(name):
    document = _document()
    if not name:
        return sheets.Worksheet(document, document.CurrentController.ActiveSheet)
    for known in document.Sheets.ElementNames:
        if known.lower() == name.lower():
            return sheets.Worksheet(document, document.Sheets.getByName(known))
    raise ComError("no sheet named %r" % name)


def _range(sheet, address):
    parsed = [units.parse_area(part) for part in address.split(",")]
    if not all(parsed):
        raise ComError("%r is no cell address" % address)
    return _worksheet(sheet).get_range(address)


def cell(sheet, address):
    found = _range(sheet, address)
    if not found.is_one_cell():
        raise ComError("%r is not one cell" % address)
    one = found.corner()
    value = cell_values.read(found.document, one)
    return {
        "value": cell_values.shown_text(found.document, one) if isinstance(value, ErrorValue) else value,
        "formula": formulas.read(found.document, one),
        "text": cell_values.shown_text(found.document, one),
        "wrap": bool(one.IsTextWrapped),
        "rowHeight": units.points(one.Rows.getByIndex(0).Height),
        "runs": _runs(one),
    }


def _runs(one):
    """Stretches of equal formatting; neighbours that look alike are one run."""
    if one.Type.value == "EMPTY":
        return []
    portions = fonts.portions(one) if one.Type.value == "TEXT" else [(one.String, one)]
    runs = []
    start = 1
    for text, portion in portions:
        if not text:
            continue
        look = {
            "font": portion.CharFontName,
            "size": round(float(portion.CharHeight), 2),
            "bold": portion.CharWeight > SEMI_BOLD,
            "color": units.swap_colour(max(portion.CharColor, 0)),
        }
        length = units.utf16_length(text)
        if runs and all(runs[-1][key] == value for key, value in look.items()):
            runs[-1]["length"] += length
            runs[-1]["text"] += text
        else:
            runs.append({"start": start, "length": length, "text": text, **look})
        start += length
    return runs


def select(sheet, address):
    """Activates the sheet and selects; the events tell what really changed. What is no address names a shape."""
    worksheet = _worksheet(sheet)
    if not all(units.parse_area(part) for part in address.split(",")):
        _select_shape(worksheet, address)
        return
    target = _range(sheet, address)
    worksheet.call_activate()
    ranges.select(target.document, target.areas)


def _select_shape(worksheet, name):
    try:
        found = worksheet.get_shapes().call_item(name)
    except HResultError:
        raise ComError("%r is neither a cell address nor a shape" % name) from None
    worksheet.call_activate()
    found.call_select()


def type_text(sheet, address, text):
    """What the user types into a cell; gives what has changed."""
    found = _range(sheet, address)
    if not found.is_one_cell():
        raise ComError("%r is not one cell" % address)
    found.put_value2(text)
    return _changed(found)


def insert_rows(sheet, row, count):
    if row < 1 or count < 1 or row + count - 1 > units.MAX_ROWS:
        raise ComError("no such rows")
    rows = _worksheet(sheet).get_range("%d:%d" % (row, row + count - 1))
    rows.call_insert()
    # The range itself has moved down with its cells.
    return _changed(_worksheet(sheet).get_range("%d:%d" % (row, row + count - 1)))


def _changed(found):
    """The arguments of the event; none while events are off."""
    return {"sheet": found.get_worksheet(), "range": found} if calc.Host.enable_events else None


def rename_sheet(sheet, name):
    _worksheet(sheet).put_name(name)


def delete_sheet(sheet):
    worksheet = _worksheet(sheet)
    was_active = worksheet.sheet.Name == worksheet.document.CurrentController.ActiveSheet.Name
    worksheet.delete(agreed=True)
    if was_active:
        calc.note("sheet")


def selection():
    """What is active, for the arguments of events."""
    _document()
    window = windows.Window(window_list.front())
    return {
        "workbook": window.get_parent(),
        "window": window,
        "sheet": window.get_active_sheet(),
        "range": window.get_range_selection(),
    }


def protect(sheet, on):
    worksheet = _worksheet(sheet)
    if on:
        worksheet.call_protect()
    else:
        worksheet.call_unprotect()


def save(path):
    document = _document()
    was_modified = document.isModified()
    workbooks.Workbook(document).call_save_copy_as(path)
    document.setModified(was_modified)


def shot(path):
    document = _document()
    picture.take(document, document.CurrentController.ActiveSheet, calc.system_path(path))


def close_all():
    for document in calc.documents():
        workbooks.Workbook(document).call_close(False)
    calc.Host.reset()


OPERATIONS = {
    "cell": cell,
    "select": select,
    "type": type_text,
    "insertRows": insert_rows,
    "renameSheet": rename_sheet,
    "deleteSheet": delete_sheet,
    "selection": selection,
    "protect": protect,
    "save": save,
    "shot": shot,
    "close": close_all,
    **window_operations.OPERATIONS,
}
