"""Interior and Borders of a Range."""

import uno

from office import guards, units
from office.com_object import NULL, ComError, ComObject, as_integer

NONE = -4142
SOLID = 1
AUTOMATIC = -4105
WHITE = 16777215.0
NO_COLOUR = -1


def _differs(area):
    return area.getPropertyState("CellBackColor").value == "AMBIGUOUS_VALUE"


class Interior(ComObject):
    TYPE = "Interior"

    def __init__(self, owner):
        self._owner = owner

    def _common(self, translate):
        found = set()
        for area in self._owner.areas:
            if _differs(area):
                return NULL
            found.add(translate(area.CellBackColor))
        return found.pop() if len(found) == 1 else NULL

    def _fill(self, colour):
        guards.require_format_change(self._owner.sheet, self._owner.document)
        cells = self._owner.first
        if len(self._owner.areas) > 1:
            # Each put has Calc fit rows and draw anew, so that one for all areas is far quicker.
            cells = self._owner.document.createInstance("com.sun.star.sheet.SheetCellRanges")
            cells.addRangeAddresses(tuple(area.RangeAddress for area in self._owner.areas), False)
        if colour == NO_COLOUR:
            # A cell that never had a fill says nothing of it. Only a style's fill has to be overruled.
            cells.setPropertyToDefault("CellBackColor")
            if not _differs(cells) and cells.CellBackColor == NO_COLOUR:
                return
        cells.CellBackColor = colour

    def get_color(self):
        return self._common(lambda colour: WHITE if colour < 0 else float(units.swap_colour(colour)))

    def put_color(self, value):
        self._fill(units.swap_colour(as_integer(value) & 0xFFFFFF))

    def get_color_index(self):
        return self._common(lambda colour: NONE if colour < 0 else SOLID)

    def put_color_index(self, value):
        if as_integer(value) not in (NONE, AUTOMATIC, 0):
            raise ComError("Unable to set the ColorIndex property of the Interior class")
        self._fill(NO_COLOUR)

    def get_pattern(self):
        return self._common(lambda colour: NONE if colour < 0 else SOLID)

    def put_pattern(self, value):
        if as_integer(value) == NONE:
            self._fill(NO_COLOUR)


EDGES = {7: "LeftLine", 8: "TopLine", 9: "BottomLine", 10: "RightLine", 11: "VerticalLine", 12: "HorizontalLine"}
BETWEEN_COLUMNS, BETWEEN_ROWS = 11, 12
# com.sun.star.table.BorderLineStyle by Excel's XlLineStyle; a slanted dash is shown as a dash and a dot.
LINE_STYLES = {1: 0, -4118: 1, -4115: 2, -4119: 3, 4: 16, 13: 16, 5: 17}
FROM_LINE_STYLE = {0: 1, 1: -4118, 2: -4115, 3: -4119, 14: -4115, 16: 4, 17: 5}
# Hundredths of a millimetre by Excel's XlBorderWeight, as Calc itself draws the borders of an .xlsx file.
WIDTHS = {1: 2, 2: 35, -4138: 88, 4: 141}
THIN = 2


class Borders(ComObject):
    """All borders of a Range at once, or one of them by its XlBordersIndex through Item."""

    TYPE = "Borders"
    DEFAULT = "Item"

    def __init__(self, owner):
        self._owner = owner

    def get_count(self):
        return len(EDGES)

    def get_item(self, index):
        edge = as_integer(index)
        if edge not in EDGES:
            raise ComError("Unable to get the Item property of the Borders class")
        return Border(self._owner, edge)

    def _edges(self):
        rows, columns = self._owner.size()
        missing = {BETWEEN_COLUMNS: columns == 1, BETWEEN_ROWS: rows == 1}
        return [self.get_item(edge) for edge in EDGES if not missing.get(edge)]

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
    """One edge of a Range, or the lines between its columns or rows."""

    TYPE = "Border"

    def __init__(self, owner, edge):
        self._owner = owner
        self._edge = edge

    def _line(self):
        """The line, or null where the cells along the edge differ."""
        border = self._owner.first.TableBorder2
        return getattr(border, EDGES[self._edge]) if getattr(border, "Is%sValid" % EDGES[self._edge]) else None

    def _require(self, what):
        guards.require_format_change(self._owner.sheet, self._owner.document)
        rows, columns = self._owner.size()
        if (self._edge == BETWEEN_COLUMNS and columns == 1) or (self._edge == BETWEEN_ROWS and rows == 1):
            raise ComError("Unable to set the %s property of the Border class" % what)

    def _change(self, style=None, width=None, colour=None):
        line = self._line() or uno.createUnoStruct("com.sun.star.table.BorderLine2")
        # A weight or a colour makes a line where there was none.
        line.LineWidth = line.OuterLineWidth = width or line.LineWidth or WIDTHS[THIN]
        line.InnerLineWidth = line.LineDistance = 0
        if style is not None:
            line.LineStyle = style
        if colour is not None:
            line.Color = colour
        self._put(line)

    def _put(self, line):
        # Only what is marked as valid is changed.
        border = uno.createUnoStruct("com.sun.star.table.TableBorder2")
        setattr(border, EDGES[self._edge], line)
        setattr(border, "Is%sValid" % EDGES[self._edge], True)
        for area in self._owner.areas:
            area.TableBorder2 = border

    def get_line_style(self):
        line = self._line()
        if line is None:
            return NULL
        return FROM_LINE_STYLE.get(line.LineStyle, SOLID) if line.LineWidth else NONE

    def put_line_style(self, value):
        self._require("LineStyle")
        wanted = as_integer(value)
        if wanted == NONE:
            self._put(uno.createUnoStruct("com.sun.star.table.BorderLine2"))
        elif wanted in LINE_STYLES:
            self._change(style=LINE_STYLES[wanted])
        else:
            raise ComError("Unable to set the LineStyle property of the Border class")

    def get_weight(self):
        line = self._line()
        if line is None:
            return NULL
        return min(WIDTHS, key=lambda weight: abs(WIDTHS[weight] - (line.LineWidth or WIDTHS[THIN])))

    def put_weight(self, value):
        self._require("Weight")
        width = WIDTHS.get(as_integer(value))
        if width is None:
            raise ComError("Unable to set the Weight property of the Border class")
        self._change(width=width)

    def get_color(self):
        line = self._line()
        return NULL if line is None else float(units.swap_colour(line.Color))

    def put_color(self, value):
        self._require("Color")
        self._change(colour=units.swap_colour(as_integer(value) & 0xFFFFFF))
