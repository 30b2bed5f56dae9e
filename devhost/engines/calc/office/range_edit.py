"""What a Range does to the sheet and the selection: select, insert, delete, clear, copy, remove duplicates."""

import uno

from office import calc, cell_values, guards, range_geometry, range_picture, window_list
from office.com_object import (DISP_E_TYPEMISMATCH, MISSING, Array, ComError, ErrorValue, HResultError, List, Picture,
                               as_integer)

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
        compared = _compared_columns(columns, self.size()[1])
        block = self._used_part()
        if block is None:
            return
        rows = cell_values.read(self.document, block)
        if not isinstance(rows, Array):
            return
        rows = [[_unmistakable(value) for value in row] for row in rows.rows]
        top = 1 if as_integer(header) == HAS_HEADER else 0
        seen, kept = set(), rows[:top]
        for row in rows[top:]:
            # What lies outside the used area is empty in every row.
            key = tuple(_comparable(row[number - 1]) for number in compared if number <= len(row))
            if key not in seen:
                seen.add(key)
                kept.append(row)
        if len(kept) < len(rows):
            kept += [[None] * len(rows[0]) for _ in range(len(rows) - len(kept))]
            self._replace_moved(block, rows, kept)

    def _used_part(self):
        """The first area as far as the sheet is in use, from its own corner on; None where it is not."""
        area, used = self.first.RangeAddress, range_geometry.used_area(self.sheet).RangeAddress
        last_row, last_column = min(area.EndRow, used.EndRow), min(area.EndColumn, used.EndColumn)
        if last_row < area.StartRow or last_column < area.StartColumn:
            return None
        return self.sheet.getCellRangeByPosition(area.StartColumn, area.StartRow, last_column, last_row)

    def _replace_moved(self, block, before, after):
        """Writes the rows from the first one on that changes."""
        first = next(index for index, row in enumerate(before) if row is not after[index])
        address, moved = block.RangeAddress, after[first:]
        target = self.sheet.getCellRangeByPosition(address.StartColumn, address.StartRow + first, address.EndColumn,
                                                   address.EndRow)
        target.setDataArray(tuple(tuple(_plain(value) for value in row) for row in moved))
        for row, values in enumerate(moved):
            for column, value in enumerate(values):
                if isinstance(value, (bool, ErrorValue)):
                    cell_values.write(self.document, target.getCellByPosition(column, row), value)
                elif isinstance(before[first + row][column], bool):
                    cell_values.leave_boolean_format(self.document, target.getCellByPosition(column, row))


def _compared_columns(columns, width):
    """The 1-based columns of an argument; all of them when it was left out. A list counts from 0, as in Excel."""
    if columns is MISSING:
        return range(1, width + 1)
    if isinstance(columns, List) and columns.low != 0:
        raise ComError("RemoveDuplicates method of Range class failed")
    compared = [as_integer(number) for number in (columns if isinstance(columns, list) else [columns])]
    if not all(1 <= number <= width for number in compared):
        raise ComError("RemoveDuplicates method of Range class failed")
    return compared


def _unmistakable(value):
    """The whole numbers that stand for errors in WPS as errors; all other numbers are floating."""
    is_whole = isinstance(value, int) and not isinstance(value, bool)
    return ErrorValue(value + (1 << 32)) if is_whole else value


def _comparable(value):
    """What two cells are compared by: TRUE is not 1, and text has no case."""
    if isinstance(value, ErrorValue):
        return "error", value.scode
    return type(value), value.lower() if isinstance(value, str) else value


def _plain(value):
    return value if isinstance(value, (float, str)) else ""


def select(document, areas):
    """Selects the areas on the active sheet."""
    window = window_list.front_of(document)
    chosen = areas[0]
    if len(areas) > 1:
        chosen = document.createInstance("com.sun.star.sheet.SheetCellRanges")
        chosen.addRangeAddresses(tuple(area.RangeAddress for area in areas), False)
    window_list.select_in_view(window, areas[0].RangeAddress, lambda: window.controller.select(chosen))
    calc.note("selection")
