"""Where a Range is: corners, sizes, addresses, and the ranges that are reached from it."""

import re

from office import ranges, sheets, units, workbooks
from office.com_object import (DISP_E_TYPEMISMATCH, EXCEL_OVERFLOW, MISSING, ComError, HResultError, Long64,
                               as_boolean, as_integer)
from office.units import MAX_COLUMNS, MAX_ROWS

A1_STYLE = 1
LARGEST_COUNT = 0x7FFFFFFF
DIRECTIONS = {-4121: (0, 1), -4162: (0, -1), -4161: (1, 0), -4159: (-1, 0)}


def used_area(sheet):
    """Everything that holds content or a format of its own; A1 in an empty sheet, as in Excel."""
    cursor = sheet.createCursor()
    cursor.gotoStartOfUsedArea(False)
    cursor.gotoEndOfUsedArea(True)
    area = cursor.RangeAddress
    return sheet.getCellRangeByPosition(area.StartColumn, area.StartRow, area.EndColumn, area.EndRow)


class RangeGeometry:
    @property
    def first(self):
        """The first area: what everything but counts, addresses and formats is about."""
        return self.areas[0]

    @property
    def sheet(self):
        return self.first.Spreadsheet

    def corner(self):
        return self.first.getCellByPosition(0, 0)

    def size(self):
        """Rows and columns of the first area."""
        area = self.first.RangeAddress
        return area.EndRow - area.StartRow + 1, area.EndColumn - area.StartColumn + 1

    def is_one_cell(self):
        return len(self.areas) == 1 and self.size() == (1, 1)

    def _cell_count(self):
        total = 0
        for area in self.areas:
            address = area.RangeAddress
            total += (address.EndRow - address.StartRow + 1) * (address.EndColumn - address.StartColumn + 1)
        return total

    def get_row(self):
        return self.first.RangeAddress.StartRow + 1

    def get_column(self):
        return self.first.RangeAddress.StartColumn + 1

    def get_count(self):
        count = self._counted()
        if count > LARGEST_COUNT:
            raise ComError("Overflow", EXCEL_OVERFLOW)
        return count

    def get_count_large(self):
        return Long64(self._counted())

    def _counted(self):
        rows, columns = self.size()
        return {"rows": rows, "columns": columns}.get(self.kind) or self._cell_count()

    def get_worksheet(self):
        return sheets.Worksheet(self.document, self.sheet)

    get_parent = get_worksheet

    def block(self, column, row, last_column, last_row, kind="cells"):
        """The range of these 0-based corners on the same sheet; leaving the sheet fails as in Excel."""
        if column < 0 or row < 0 or last_column >= MAX_COLUMNS or last_row >= MAX_ROWS:
            raise ComError("Application-defined or object-defined error")
        return ranges.Range(self.document,
                            [self.sheet.getCellRangeByPosition(column, row, last_column, last_row)], kind)

    def get_item(self, row_index=MISSING, column_index=MISSING):
        if row_index is MISSING:
            return ranges.Range(self.document, self.areas, self.kind)
        area = self.first.RangeAddress
        if self.kind == "rows" and column_index is MISSING:
            row = area.StartRow + self._index(row_index) - 1
            return self.block(area.StartColumn, row, area.EndColumn, row, "rows")
        if self.kind == "columns" and column_index is MISSING:
            column = area.StartColumn + self._index(row_index) - 1
            return self.block(column, area.StartRow, column, area.EndRow, "columns")
        if column_index is MISSING:
            width = self.size()[1]
            row, column = divmod(self._index(row_index) - 1, width)
        else:
            row, column = self._index(row_index) - 1, self._index(column_index) - 1
        return self.block(area.StartColumn + column, area.StartRow + row, area.StartColumn + column,
                          area.StartRow + row)

    @staticmethod
    def _index(value):
        if isinstance(value, str) and re.fullmatch("[A-Za-z]{1,3}", value):
            return units.column_number(value) + 1
        return as_integer(value)

    def get_cells(self):
        return ranges.Range(self.document, self.areas)

    def get_range(self, cell1, cell2=MISSING):
        if not isinstance(cell1, str):
            return self.get_worksheet().get_range(cell1, cell2)
        # Addresses are relative to this range's own top-left cell.
        area = self.first.RangeAddress
        parts = [units.parse_area(text) for text in (cell1, cell2) if isinstance(text, str)]
        if not parts or not all(parts):
            raise HResultError(DISP_E_TYPEMISMATCH)
        return self.block(area.StartColumn + min(part[0] for part in parts),
                          area.StartRow + min(part[1] for part in parts),
                          area.StartColumn + max(part[2] for part in parts),
                          area.StartRow + max(part[3] for part in parts))

    def get_rows(self):
        return ranges.Range(self.document, self.areas, "rows")

    def get_columns(self):
        return ranges.Range(self.document, self.areas, "columns")

    def get_entire_row(self):
        area = self.first.RangeAddress
        return self.block(0, area.StartRow, MAX_COLUMNS - 1, area.EndRow, "rows")

    def get_entire_column(self):
        area = self.first.RangeAddress
        return self.block(area.StartColumn, 0, area.EndColumn, MAX_ROWS - 1, "columns")

    def get_offset(self, row_offset=0, column_offset=0):
        down, right = as_integer(row_offset), as_integer(column_offset)
        area = self.first.RangeAddress
        return self.block(area.StartColumn + right, area.StartRow + down, area.EndColumn + right, area.EndRow + down)

    def get_resize(self, row_size=MISSING, column_size=MISSING):
        rows, columns = self.size()
        rows = rows if row_size is MISSING else as_integer(row_size)
        columns = columns if column_size is MISSING else as_integer(column_size)
        if rows < 1 or columns < 1:
            raise ComError("Application-defined or object-defined error")
        area = self.first.RangeAddress
        return self.block(area.StartColumn, area.StartRow, area.StartColumn + columns - 1, area.StartRow + rows - 1)

    def get_end(self, direction):
        """The edge of the block of filled cells, as Ctrl with an arrow key finds it."""
        if as_integer(direction) not in DIRECTIONS:
            raise ComError("End property of Range class failed")
        right, down = DIRECTIONS[as_integer(direction)]
        area = self.first.RangeAddress
        used = used_area(self.sheet).RangeAddress
        column, row = area.StartColumn, area.StartRow

        def filled(x, y):
            return self.sheet.getCellByPosition(x, y).Type.value != "EMPTY"

        def inside(x, y):
            return 0 <= x <= used.EndColumn and 0 <= y <= used.EndRow

        in_block = inside(column, row) and filled(column, row) and \
            inside(column + right, row + down) and filled(column + right, row + down)
        while inside(column + right, row + down):
            if in_block and not filled(column + right, row + down):
                return self.block(column, row, column, row)
            column, row = column + right, row + down
            if not in_block and filled(column, row):
                return self.block(column, row, column, row)
        if not in_block:
            column = 0 if right < 0 else MAX_COLUMNS - 1 if right > 0 else column
            row = 0 if down < 0 else MAX_ROWS - 1 if down > 0 else row
        return self.block(column, row, column, row)

    def get_merge_area(self):
        if not self.is_one_cell():
            raise ComError("Unable to get the MergeArea property of the Range class")
        cursor = self.sheet.createCursorByRange(self.corner())
        cursor.collapseToMergedArea()
        area = cursor.RangeAddress
        return self.block(area.StartColumn, area.StartRow, area.EndColumn, area.EndRow)

    def get_address(self, row_absolute=True, column_absolute=True, reference_style=A1_STYLE, external=False,
                    relative_to=MISSING):
        row_mark = "$" if as_boolean(row_absolute) else ""
        column_mark = "$" if as_boolean(column_absolute) else ""
        write = _a1_address if as_integer(reference_style) == A1_STYLE else _r1c1_address
        text = ",".join(write(area.RangeAddress, row_mark, column_mark) for area in self.areas)
        if as_boolean(external):
            owner = "[%s]%s" % (workbooks.Workbook(self.document).get_name(), self.sheet.Name)
            if re.search(r"[^A-Za-z0-9_\[\].]", owner):
                owner = "'%s'" % owner.replace("'", "''")
            text = owner + "!" + text
        return text

    get_address_local = get_address

    def get_left(self):
        return self.first.Position.X * 72 / 2540

    def get_top(self):
        return self.first.Position.Y * 72 / 2540

    def get_width(self):
        return self.first.Size.Width * 72 / 2540

    def get_height(self):
        return self.first.Size.Height * 72 / 2540


def _a1_address(area, row_mark, column_mark):
    def column(number):
        return column_mark + units.column_letters(number)

    def row(number):
        return row_mark + str(number + 1)

    if area.StartColumn == 0 and area.EndColumn == MAX_COLUMNS - 1:
        return row(area.StartRow) + ":" + row(area.EndRow)
    if area.StartRow == 0 and area.EndRow == MAX_ROWS - 1:
        return column(area.StartColumn) + ":" + column(area.EndColumn)
    first = column(area.StartColumn) + row(area.StartRow)
    last = column(area.EndColumn) + row(area.EndRow)
    return first if first == last else first + ":" + last


def _r1c1_address(area, row_mark, column_mark):
    if not row_mark or not column_mark:
        raise ComError("Relative R1C1 addresses need a cell that they are relative to.")
    first = "R%dC%d" % (area.StartRow + 1, area.StartColumn + 1)
    last = "R%dC%d" % (area.EndRow + 1, area.EndColumn + 1)
    return first if first == last else first + ":" + last
