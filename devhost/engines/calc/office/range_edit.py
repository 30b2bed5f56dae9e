"""What a Range does to the sheet and the selection: select, insert, delete, clear, copy, remove duplicates."""

import uno

from office import calc, cell_values, guards, range_picture, window_list
from office.com_object import MISSING, ComError, HResultError, Picture, DISP_E_TYPEMISMATCH, as_integer

SHIFT_DOWN, SHIFT_RIGHT, SHIFT_UP, SHIFT_LEFT = -4121, -4161, -4162, -4159
SCREEN, PRINTER = 1, 2
PICTURE, BITMAP = -4147, 2
HAS_HEADER = 1
ALL_CONTENT = 1023


def _mode(enumeration, name):
    return uno.Enum("com.sun.star.sheet." + enumeration, name)


class RangeEdit:
    def call_select(self):
        controller = self.document.CurrentController
        if controller.ActiveSheet.Name != self.sheet.Name:
            raise ComError("Select method of Range class failed")
        select(self.document, self.areas)
        return True

    def call_activate(self):
        return self.call_select()

    def call_insert(self, shift=MISSING, copy_origin=MISSING):
        guards.require_unprotected(self.sheet)
        rows, columns = self.size()
        if self._is_whole("rows"):
            mode = "ROWS"
        elif self._is_whole("columns"):
            mode = "COLUMNS"
        elif shift is MISSING:
            mode = "RIGHT" if rows > columns else "DOWN"
        else:
            mode = "RIGHT" if as_integer(shift) == SHIFT_RIGHT else "DOWN"
        self.sheet.insertCells(self.first.RangeAddress, _mode("CellInsertMode", mode))
        return True

    def call_delete(self, shift=MISSING):
        guards.require_unprotected(self.sheet)
        rows, columns = self.size()
        if self._is_whole("rows"):
            mode = "ROWS"
        elif self._is_whole("columns"):
            mode = "COLUMNS"
        elif shift is MISSING:
            mode = "LEFT" if rows > columns else "UP"
        else:
            mode = "LEFT" if as_integer(shift) == SHIFT_LEFT else "UP"
        self.sheet.removeRange(self.first.RangeAddress, _mode("CellDeleteMode", mode))
        return True

    def call_clear(self):
        self._require_content_change()
        self._require_format_change()
        for area in self.areas:
            area.clearContents(ALL_CONTENT)
        return True

    def call_copy(self, destination):
        if not isinstance(destination, RangeEdit):
            raise HResultError(DISP_E_TYPEMISMATCH)
        destination._require_content_change()  # pylint: disable=protected-access
        corner = destination.corner().getCellAddress()
        destination.sheet.copyRange(corner, self.first.RangeAddress)
        return True

    def call_copy_picture(self, appearance=1, format_=PICTURE):
        if as_integer(appearance) not in (SCREEN, PRINTER) or as_integer(format_) not in (PICTURE, BITMAP):
            raise ComError("CopyPicture method of Range class failed")
        return Picture(range_picture.draw(self.document, self.first), as_integer(format_) == BITMAP)

    def call_remove_duplicates(self, columns=MISSING, header=2):
        """Drops the rows whose compared columns repeat an earlier row; text is compared without regard to case."""
        self._require_content_change()
        width = self.size()[1]
        compared = [columns] if isinstance(columns, (int, float)) else columns
        compared = range(1, width + 1) if columns is MISSING else [as_integer(number) for number in compared]
        if not all(1 <= number <= width for number in compared):
            raise ComError("RemoveDuplicates method of Range class failed")
        rows = cell_values.read(self.document, self.first).rows
        top = 1 if as_integer(header) == HAS_HEADER else 0
        seen, kept = set(), rows[:top]
        for row in rows[top:]:
            key = tuple(_comparable(row[number - 1]) for number in compared)
            if key not in seen:
                seen.add(key)
                kept.append(row)
        kept += [[None] * width for _ in range(len(rows) - len(kept))]
        cells = ["" if value is None else value for row in kept for value in row]
        grid = [tuple(cells[index:index + width]) for index in range(0, len(cells), width)]
        self.first.setDataArray(tuple(tuple(_plain(value) for value in row) for row in grid))


def _comparable(value):
    return value.lower() if isinstance(value, str) else value


def _plain(value):
    return float(value) if isinstance(value, (bool, int)) else value if isinstance(value, (float, str)) else "#N/A"


def select(document, areas):
    """Selects the areas on the active sheet."""
    window = window_list.front_of(document)
    chosen = areas[0]
    if len(areas) > 1:
        chosen = document.createInstance("com.sun.star.sheet.SheetCellRanges")
        chosen.addRangeAddresses(tuple(area.RangeAddress for area in areas), False)
    window_list.select_in_view(window, areas[0].RangeAddress, lambda: window.controller.select(chosen))
    calc.note("selection")
