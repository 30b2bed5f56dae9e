"""What a Range holds: values, formulas, texts."""

from office import cell_values, characters, formulas, guards
from office.com_object import MISSING, NULL, Array, as_integer

FORMULAS_FLAG = 16  # com.sun.star.sheet.CellFlags.FORMULA


class RangeContent:
    def get_value2(self):
        return cell_values.read(self.document, self.first)

    def put_value2(self, value):
        self._require_content_change()
        for area in self.areas:
            cell_values.write(self.document, area, value)

    def get_value(self, range_value_data_type=MISSING):
        return cell_values.read(self.document, self.first, dates=True)

    def put_value(self, value):
        self.put_value2(value)

    def get_formula(self):
        if self.is_one_cell():
            return formulas.read(self.document, self.corner())
        return Array(formulas.read_block(self.document, self.first))

    def put_formula(self, value):
        self.put_value2(value)

    get_formula_local, put_formula_local = get_formula, put_formula

    def get_has_formula(self):
        if self.is_one_cell():
            return self.corner().Type.value == "FORMULA"
        holding = 0
        for area in self.areas:
            for address in area.queryContentCells(FORMULAS_FLAG).RangeAddresses:
                holding += (address.EndRow - address.StartRow + 1) * (address.EndColumn - address.StartColumn + 1)
        if not holding:
            return False
        return True if holding == self._cell_count() else NULL

    def get_text(self):
        if self.is_one_cell():
            return cell_values.shown_text(self.document, self.corner())
        shown = {cell_values.shown_text(self.document, area.getCellByPosition(column, row))
                 for area in self.areas if self._cell_count() <= 256
                 for row in range(area.Rows.Count) for column in range(area.Columns.Count)}
        return shown.pop() if len(shown) == 1 else NULL

    def get_prefix_character(self):
        return ""

    def get_characters(self, start=1, length=MISSING):
        return characters.Characters(self, as_integer(start),
                                     None if length is MISSING else as_integer(length))

    def call_clear_contents(self):
        self._require_content_change()
        for area in self.areas:
            # VALUE | DATETIME | STRING | FORMULA of com.sun.star.sheet.CellFlags
            area.clearContents(1 | 2 | 4 | FORMULAS_FLAG)

    def _require_content_change(self):
        for area in self.areas:
            guards.require_content_change(area)
