"""Windows and Window. Excel's Window names its workbook only as its parent."""

from office import drawing_kinds, drawing_selection, ranges, shape, sheets, units, window_list, workbooks
from office.com_object import (DISP_E_BADINDEX, MISSING, NOTHING, RPC_E_DISCONNECTED, ComError, ComObject, HResultError,
                               as_boolean, as_integer)

CELLS = "com.sun.star.sheet.SheetCellRange"
AREAS = "com.sun.star.sheet.SheetCellRanges"
SHAPES = "com.sun.star.drawing.Shapes"
NORMAL_WINDOW = -4143


class Windows(ComObject):
    """The windows of one workbook, or of all of them, the active one first."""

    TYPE = "Windows"
    DEFAULT = "Item"

    def __init__(self, document=None):
        self._document = document

    def _all(self):
        windows = window_list.from_front()
        return [window for window in windows if self._document is None or window.document == self._document]

    def get_count(self):
        return len(self._all())

    def get_item(self, index):
        found = [Window(window) for window in self._all()]
        if isinstance(index, str):
            for window in found:
                if window.get_caption().lower() == index.lower():
                    return window
        elif 1 <= as_integer(index) <= len(found):
            return found[as_integer(index) - 1]
        raise HResultError(DISP_E_BADINDEX)


class Window(ComObject):
    TYPE = "Window"
    DEFAULT = "Caption"

    def __init__(self, window):
        self._window = window
        self.document = window.document

    def _require_open(self):
        if not window_list.is_open(self._window):
            raise HResultError(RPC_E_DISCONNECTED, "The window has been closed.")

    @property
    def _controller(self):
        self._require_open()
        return self._window.controller

    def get_parent(self):
        self._require_open()
        return workbooks.Workbook(self.document)

    def get_caption(self):
        self._require_open()
        name = workbooks.Workbook(self.document).get_name()
        windows = window_list.of(self.document)
        return name if len(windows) == 1 else "%s:%d" % (name, windows.index(self._window) + 1)

    def get_hwnd(self):
        self._require_open()
        return window_list.handle_of(self._window)

    def get_index(self):
        self._require_open()
        return window_list.from_front().index(self._window) + 1

    def call_new_window(self):
        self._require_open()
        return Window(window_list.add(self.document))

    def call_close(self, save_changes=MISSING, filename=MISSING):
        """The workbook goes with its last window."""
        self._require_open()
        if len(window_list.of(self.document)) == 1:
            workbooks.Workbook(self.document).call_close(save_changes, filename)
        else:
            window_list.close(self._window)
        return True

    def get_visible(self):
        return True

    def get_window_state(self):
        return NORMAL_WINDOW

    def get_active_sheet(self):
        return sheets.Worksheet(self.document, self._controller.ActiveSheet)

    def get_active_cell(self):
        selected = self.get_range_selection()
        return selected.get_item(1, 1)

    def get_selection(self):
        selected = self._controller.getSelection()
        if selected is None:
            return NOTHING
        if selected.supportsService(SHAPES):
            sheet = self._controller.ActiveSheet
            found = [shape.Shape(self.document, sheet, one, one.Parent) for one in drawing_kinds.members(selected)]
            return drawing_selection.of(self.document, sheet, found)
        return self._as_range(selected) or NOTHING

    def get_range_selection(self):
        selected = self._controller.getSelection()
        found = self._as_range(selected) if selected is not None else None
        return found or ranges.Range(self.document, [self._controller.ActiveSheet.getCellByPosition(0, 0)])

    def _as_range(self, selected):
        if selected.supportsService(AREAS):
            return ranges.Range(self.document, [selected.getByIndex(i) for i in range(selected.Count)])
        if selected.supportsService(CELLS):
            return ranges.Range(self.document, [selected])
        return None

    def call_activate(self):
        self._require_open()
        window_list.activate(self._window)

    def get_freeze_panes(self):
        return bool(self._controller.hasFrozenPanes())

    def put_freeze_panes(self, value):
        if as_boolean(value):
            cell = self.get_range_selection()
            self._controller.freezeAtPosition(cell.get_column() - 1, cell.get_row() - 1)
        else:
            self._controller.freezeAtPosition(0, 0)

    def get_split(self):
        return bool(self._controller.getSplitRow() or self._controller.getSplitColumn())

    def get_split_row(self):
        return window_list.frozen(self._controller)[0] if self.get_freeze_panes() else self._controller.getSplitRow()

    def put_split_row(self, value):
        self._controller.freezeAtPosition(self.get_split_column(), as_integer(value))

    def get_split_column(self):
        return window_list.frozen(self._controller)[1] if self.get_freeze_panes() else self._controller.getSplitColumn()

    def put_split_column(self, value):
        self._controller.freezeAtPosition(as_integer(value), self.get_split_row())

    def get_zoom(self):
        return self._controller.ZoomValue

    def put_zoom(self, value):
        percent = as_integer(value)
        if not 10 <= percent <= 400:
            raise ComError("Unable to set the Zoom property of the Window class")
        self._controller.ZoomValue = percent

    @property
    def _scrolling_pane(self):
        self._require_open()
        return window_list.scrolling_pane(self._window)

    def get_scroll_row(self):
        return self._scrolling_pane.getFirstVisibleRow() + 1

    def put_scroll_row(self, value):
        row = as_integer(value)
        if row < 1:
            raise ComError("Unable to set the ScrollRow property of the Window class")
        self._scrolling_pane.setFirstVisibleRow(max(row - 1, self.get_split_row()))

    def get_scroll_column(self):
        return self._scrolling_pane.getFirstVisibleColumn() + 1

    def put_scroll_column(self, value):
        column = as_integer(value)
        if column < 1:
            raise ComError("Unable to set the ScrollColumn property of the Window class")
        self._scrolling_pane.setFirstVisibleColumn(max(column - 1, self.get_split_column()))

    def get_visible_range(self):
        area = self._scrolling_pane.getVisibleRange()
        last_row, last_column = area.EndRow, area.EndColumn
        if self._window.room is not None:
            rows, columns = self._window.room
            last_row = min(area.StartRow + rows, units.MAX_ROWS) - 1
            last_column = min(area.StartColumn + columns, units.MAX_COLUMNS) - 1
        return ranges.Range(self.document, [
            self._controller.ActiveSheet.getCellRangeByPosition(area.StartColumn, area.StartRow, last_column, last_row)
        ])
