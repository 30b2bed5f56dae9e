"""Interior and Borders of a Range."""

from office import formulas, guards, units
from office.com_object import NULL, ComError, ComObject, as_integer

NONE = -4142
SOLID = 1
AUTOMATIC = -4105
WHITE = 16777215.0


class Interior(ComObject):
    TYPE = "Interior"

    def __init__(self, owner):
        self._owner = owner

    def _common(self, translate):
        found = set()
        for area in self._owner.areas:
            if area.getPropertyState("CellBackColor").value == "AMBIGUOUS_VALUE":
                return NULL
            found.add(translate(area.CellBackColor))
        return found.pop() if len(found) == 1 else NULL

    def _fill(self, colour):
        guards.require_format_change(self._owner.sheet, self._owner.document)
        for area in self._owner.areas:
            area.CellBackColor = colour

    def get_color(self):
        return self._common(lambda colour: WHITE if colour < 0 else float(units.swap_colour(colour)))

    def put_color(self, value):
        self._fill(units.swap_colour(as_integer(value) & 0xFFFFFF))

    def get_color_index(self):
        return self._common(lambda colour: NONE if colour < 0 else SOLID)

    def put_color_index(self, value):
        if as_integer(value) not in (NONE, AUTOMATIC, 0):
            raise ComError("Unable to set the ColorIndex property of the Interior class")
        self._fill(-1)

    def get_pattern(self):
        return self._common(lambda colour: NONE if colour < 0 else SOLID)

    def put_pattern(self, value):
        if as_integer(value) == NONE:
            self._fill(-1)


class Borders(ComObject):
    """All borders of a Range at once, or one of them by its XlBordersIndex through Item."""

    TYPE = "Borders"
    DEFAULT = "Item"

    def __init__(self, owner):
        self._owner = owner

    def get_count(self):
        return 6

    def get_item(self, index):
        return Border(self._owner, formulas.excel_range(self._owner.first).Borders(as_integer(index)))

    def _edges(self):
        # Left, top, bottom, right, and the lines between the cells.
        return [self.get_item(index) for index in range(7, 13)]

    def get_line_style(self):
        return self._edges()[0].get_line_style()

    def put_line_style(self, value):
        for edge in self._edges():
            edge.put_line_style(value)

    def get_weight(self):
        return self._edges()[0].get_weight()

    def put_weight(self, value):
        for edge in self._edges():
            edge.put_weight(value)

    def get_color(self):
        return self._edges()[0].get_color()

    def put_color(self, value):
        for edge in self._edges():
            edge.put_color(value)


class Border(ComObject):
    TYPE = "Border"

    def __init__(self, owner, border):
        self._owner = owner
        self._border = border

    def _require(self):
        guards.require_format_change(self._owner.sheet, self._owner.document)

    def get_line_style(self):
        return self._border.LineStyle

    def put_line_style(self, value):
        self._require()
        self._border.LineStyle = as_integer(value)

    def get_weight(self):
        return self._border.Weight

    def put_weight(self, value):
        self._require()
        self._border.Weight = as_integer(value)

    def get_color(self):
        return float(self._border.Color)

    def put_color(self, value):
        self._require()
        self._border.Color = as_integer(value)
