"""What the development host does with document windows beside the object model, and what each of them shows."""

import os

import uno

from office import calc, grid, ranges, sheets, units, window_list, windows, workbooks
from office.calc import Host
from office.com_object import ComError


def open_window(path):
    """The number of the window; a file that is open already keeps its own."""
    url = uno.systemPathToFileUrl(calc.system_path(os.path.realpath(path)))
    for document in calc.documents():
        if document.URL == url:
            window = window_list.front_of(document)
            window_list.activate(window)
            return window.number
    workbooks.open_document(path)
    window_list.settle()
    return window_list.front().number


def list_windows():
    front = window_list.front()
    return [{
        "id": window.number,
        "caption": windows.Window(window).get_caption(),
        "workbook": workbooks.Workbook(window.document).get_name(),
        "active": window is front,
    } for window in window_list.opened()]


def new_window():
    document = window_list.active_document()
    if document is None:
        raise ComError("no workbook is open")
    return window_list.add(document).number


def activate_window(window):
    window_list.activate(window_list.by_number(window))


def closing(window):
    """The workbook that an event about its closing is about; none while events are off."""
    shown = window_list.by_number(window)
    return workbooks.Workbook(shown.document) if Host.enable_events else None


def close_window(window):
    windows.Window(window_list.by_number(window)).call_close(False)


def window_object(window):
    return windows.Window(window_list.by_number(window))


def set_handle(handle, window=None):
    """Without a window it is the Application's."""
    if window is None:
        Host.application_handle = handle
    else:
        window_list.by_number(window).handle = handle


def show_grid(window, row, column, rows, columns):
    return grid.snapshot(window_list.by_number(window), row, column, rows, columns)


def activate_sheet(window, sheet):
    shown = window_list.by_number(window)
    found = shown.document.Sheets
    name = next((known for known in found.ElementNames if known.lower() == sheet.lower()), None)
    if name is None or not found.getByName(name).IsVisible:
        raise ComError("no such sheet: %s" % sheet)
    window_list.activate(shown)
    sheets.Worksheet(shown.document, found.getByName(name)).call_activate()


def select_cells(window, row, column, rows, columns):
    shown = window_list.by_number(window)
    _require_cells(row, column, rows, columns)
    window_list.activate(shown)
    sheet = shown.controller.ActiveSheet
    ranges.select(shown.document,
                  [sheet.getCellRangeByPosition(column - 1, row - 1, column + columns - 2, row + rows - 2)])


def show_area(window, row, column, rows, columns):
    shown = window_list.by_number(window)
    _require_cells(row, column, rows, columns)
    shown.room = rows, columns
    windows.Window(shown).put_scroll_row(row)
    windows.Window(shown).put_scroll_column(column)


def _require_cells(row, column, rows, columns):
    if min(row, column, rows, columns) < 1 or row + rows - 1 > units.MAX_ROWS or \
            column + columns - 1 > units.MAX_COLUMNS:
        raise ComError("no such cells")


OPERATIONS = {
    "open": open_window,
    "windows": list_windows,
    "newWindow": new_window,
    "activateWindow": activate_window,
    "closing": closing,
    "closeWindow": close_window,
    "windowObject": window_object,
    "setHandle": set_handle,
    "grid": show_grid,
    "activateSheet": activate_sheet,
    "selectCells": select_cells,
    "showArea": show_area,
}
