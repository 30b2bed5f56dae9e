"""How a Range looks: merges, sizes, wrapping, alignment, number format, protection of cells."""

import uno

from office import calc, fills, fonts, formulas, guards, units
from office.com_object import (NULL, ComError, as_boolean, as_integer, as_number, as_text)

TALLEST_ROW = 409.0
WIDEST_COLUMN = 255.0
# Asking a million rows one by one would take minutes; the first ones stand for a longer range.
ROWS_ASKED = 4096
# Points that a character of a column width is taken for, and the padding; both as Excel has them with Calibri 11.
COLUMN_UNIT, COLUMN_PADDING = 5.25, 3.75
DATE_OR_TIME = 2 | 4
STANDARD_FORMAT = 0

HORIZONTAL = {"STANDARD": 1, "LEFT": -4131, "CENTER": -4108, "RIGHT": -4152, "BLOCK": -4130, "REPEAT": 5}
VERTICAL = {0: -4107, 1: -4160, 2: -4108, 3: -4107, 4: -4130}


def _reverse(table):
    reversed_table = {}
    for key, value in table.items():
        reversed_table.setdefault(value, key)
    return reversed_table


FROM_HORIZONTAL = _reverse(HORIZONTAL)
FROM_VERTICAL = {-4107: 3, -4160: 1, -4108: 2, -4130: 4, -4117: 4}


class RangeFormat:
    def _require_format_change(self, what="cells"):
        guards.require_format_change(self.sheet, self.document, what)

    def _common(self, name, translate=lambda value: value):
        """The property's value when all cells agree, otherwise null."""
        found = set()
        for area in self.areas:
            if area.getPropertyState(name).value == "AMBIGUOUS_VALUE":
                return NULL
            found.add(translate(area.getPropertyValue(name)))
        return found.pop() if len(found) == 1 else NULL

    def _put_all(self, name, value):
        self._require_format_change()
        for area in self.areas:
            area.setPropertyValue(name, value)

    def get_font(self):
        return fonts.CellFont(self)

    def get_interior(self):
        return fills.Interior(self)

    def get_borders(self):
        return fills.Borders(self)

    def get_wrap_text(self):
        return self._common("IsTextWrapped", bool)

    def put_wrap_text(self, value):
        self._put_all("IsTextWrapped", as_boolean(value))

    def get_shrink_to_fit(self):
        return self._common("ShrinkToFit", bool)

    def put_shrink_to_fit(self, value):
        self._put_all("ShrinkToFit", as_boolean(value))

    def get_horizontal_alignment(self):
        return self._common("HoriJustify", lambda value: HORIZONTAL.get(value.value, 1))

    def put_horizontal_alignment(self, value):
        name = FROM_HORIZONTAL.get(as_integer(value))
        if name is None:
            raise ComError("Unable to set the HorizontalAlignment property of the Range class")
        self._put_all("HoriJustify", uno.Enum("com.sun.star.table.CellHoriJustify", name))

    def get_vertical_alignment(self):
        return self._common("VertJustify", lambda value: VERTICAL.get(value, -4107))

    def put_vertical_alignment(self, value):
        number = FROM_VERTICAL.get(as_integer(value))
        if number is None:
            raise ComError("Unable to set the VerticalAlignment property of the Range class")
        self._put_all("VertJustify", number)

    def get_number_format(self):
        return self._common("NumberFormat", self._format_code)

    def _format_code(self, key):
        format_ = self.document.NumberFormats.getByKey(key)
        if format_.Type & 1024:
            # Calc's way of keeping a boolean; Excel's booleans need no format.
            return "General"
        code = format_.FormatString
        return code.lower() if format_.Type & DATE_OR_TIME and '"' not in code else code

    def put_number_format(self, value):
        code = as_text(value)
        formats = self.document.NumberFormats
        # Every language has a "General" of its own; a cell without a format has that of none.
        key = STANDARD_FORMAT if code == "General" else formats.queryKey(code, calc.english(), False)
        if key < 0:
            try:
                key = formats.addNew(code, calc.english())
            except Exception:  # pylint: disable=broad-except
                raise ComError("Unable to set the NumberFormat property of the Range class") from None
        self._put_all("NumberFormat", key)

    get_number_format_local, put_number_format_local = get_number_format, put_number_format

    def get_locked(self):
        states = {guards.locked_state(area) for area in self.areas}
        state = states.pop() if len(states) == 1 else None
        return NULL if state is None else state

    def put_locked(self, value):
        self._require_format_change()
        for area in self.areas:
            protection = area.CellProtection
            protection.IsLocked = as_boolean(value)
            area.CellProtection = protection

    def get_merge_cells(self):
        states = {self._merge_state(area) for area in self.areas}
        state = states.pop() if len(states) == 1 else None
        return NULL if state is None else state

    def _merge_state(self, area):
        """True: every cell lies in a merged block. False: none does. None: some do."""
        if self.is_one_cell():
            address = self.get_merge_area().first.RangeAddress
            return address.StartRow != address.EndRow or address.StartColumn != address.EndColumn
        state = formulas.excel_range(area).getMergeCells()
        return None if state is None else bool(state)

    def put_merge_cells(self, value):
        if as_boolean(value):
            self.call_merge()
        else:
            self.call_un_merge()

    def call_merge(self, across=False):
        guards.require_unprotected(self.sheet)
        for area in self.areas:
            if as_boolean(across):
                for row in range(area.Rows.Count):
                    area.getCellRangeByPosition(0, row, area.Columns.Count - 1, row).merge(True)
            else:
                area.merge(True)

    def call_un_merge(self):
        guards.require_unprotected(self.sheet)
        for area in self.areas:
            area.merge(False)

    def get_row_height(self):
        rows = self.first.Rows
        asked = (rows.getByIndex(index) for index in range(min(rows.Count, ROWS_ASKED)))
        # Calc keeps the height of a row that is hidden; Excel says 0.
        heights = {row.Height if row.IsVisible else 0 for row in asked}
        return units.points(heights.pop()) if len(heights) == 1 else NULL

    def put_row_height(self, value):
        height = as_number(value)
        if not 0 <= height <= TALLEST_ROW:
            raise ComError("Unable to set the RowHeight property of the Range class")
        self._require_format_change("rows")
        for area in self.areas:
            if height:
                area.Rows.IsVisible = True
                area.Rows.Height = units.hundredths(height)
            else:
                area.Rows.IsVisible = False

    def get_column_width(self):
        columns = self.first.Columns
        widths = {columns.getByIndex(index).Width for index in range(columns.Count)}
        if len(widths) != 1:
            return NULL
        return round(max(0.0, units.points(widths.pop()) - COLUMN_PADDING) / COLUMN_UNIT, 2)

    def put_column_width(self, value):
        width = as_number(value)
        if not 0 <= width <= WIDEST_COLUMN:
            raise ComError("Unable to set the ColumnWidth property of the Range class")
        self._require_format_change("columns")
        for area in self.areas:
            if width:
                area.Columns.Width = units.hundredths(width * COLUMN_UNIT + COLUMN_PADDING)
            area.Columns.IsVisible = width > 0

    def _is_whole(self, side):
        area = self.first.RangeAddress
        if side == "rows":
            return area.StartColumn == 0 and area.EndColumn == units.MAX_COLUMNS - 1
        return area.StartRow == 0 and area.EndRow == units.MAX_ROWS - 1

    def get_hidden(self):
        if self._is_whole("rows"):
            return self._hidden_state("Row")
        if self._is_whole("columns"):
            return self._hidden_state("Column")
        raise ComError("Unable to get the Hidden property of the Range class")

    def _hidden_state(self, side):
        """NULL where some lines are hidden; Calc's own answer is that of the first line."""
        def ends(address):
            return getattr(address, f"Start{side}"), getattr(address, f"End{side}")

        first, last = ends(self.first.RangeAddress)
        shown, behind = 0, first
        for start, end in sorted(map(ends, self.first.queryVisibleCells().RangeAddresses)):
            shown += max(0, end + 1 - max(start, behind))
            behind = max(behind, end + 1)
        if shown == 0:
            return True
        return False if shown == last - first + 1 else NULL

    def put_hidden(self, value):
        side = "rows" if self._is_whole("rows") else "columns"
        if not self._is_whole(side):
            raise ComError("Unable to set the Hidden property of the Range class")
        self._require_format_change(side)
        for area in self.areas:
            lines = area.Rows if side == "rows" else area.Columns
            lines.IsVisible = not as_boolean(value)

    def call_auto_fit(self):
        """Only whole rows or columns, or Rows and Columns of a range, can be fitted."""
        side = self.kind if self.kind != "cells" else \
            "rows" if self._is_whole("rows") else "columns" if self._is_whole("columns") else None
        if side is None:
            raise ComError("AutoFit method of Range class failed")
        self._require_format_change(side)
        for area in self.areas:
            if side == "rows":
                area.Rows.OptimalHeight = True
            else:
                area.Columns.OptimalWidth = True
        return True

    def call_clear_formats(self):
        self._require_format_change()
        for area in self.areas:
            # HARDATTR | STYLES | EDITATTR of com.sun.star.sheet.CellFlags
            area.clearContents(32 | 64 | 256)
