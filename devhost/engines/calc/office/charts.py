"""ChartObjects, ChartObject, Chart and its titles."""

from office import guards, shapes, sheets, units
from office.com_object import (MISSING, ComError, ComObject, HResultError, DISP_E_BADINDEX, as_boolean, as_integer,
                               as_text)

CHART_DOCUMENT = "com.sun.star.chart.ChartDocument"
NO_TITLE = "This object has no title."


def chart_shapes(sheet):
    """The shapes of a sheet that hold charts, from the bottom to the top."""
    page = sheet.DrawPage
    found = (page.getByIndex(index) for index in range(page.Count))
    return [shape for shape in found if shapes.chart_of(shape) is not None]


class ChartObjects(ComObject):
    TYPE = "ChartObjects"
    DEFAULT = "Item"

    def __init__(self, document, sheet):
        self.document = document
        self._sheet = sheet

    def _all(self):
        return [ChartObject(self.document, self._sheet, shape, number)
                for number, shape in enumerate(chart_shapes(self._sheet), 1)]

    def get_count(self):
        return len(chart_shapes(self._sheet))

    def call_item(self, index):
        found = self._all()
        if isinstance(index, str):
            for item in found:
                if item.get_name().lower() == index.lower():
                    return item
        elif 1 <= as_integer(index) <= len(found):
            return found[as_integer(index) - 1]
        raise ComError("Unable to get the ChartObjects property of the Worksheet class")


class ChartObject(ComObject):
    TYPE = "ChartObject"

    def __init__(self, document, sheet, shape, number):
        self.document = document
        self._sheet = sheet
        self._shape = shape
        self._number = number

    def get_name(self):
        # A chart from a file has no name in Calc; Excel always gives it one.
        return self._shape.Name or "Chart %d" % self._number

    def put_name(self, value):
        guards.require_unprotected(self._sheet)
        self._shape.Name = as_text(value)

    def get_index(self):
        return self._number

    def get_parent(self):
        return sheets.Worksheet(self.document, self._sheet)

    def get_chart(self):
        return Chart(self._sheet, shapes.chart_of(self._shape), self)

    def get_left(self):
        return units.points(self._shape.Position.X)

    def get_top(self):
        return units.points(self._shape.Position.Y)

    def get_width(self):
        return units.points(self._shape.Size.Width)

    def get_height(self):
        return units.points(self._shape.Size.Height)


class Chart(ComObject):
    TYPE = "Chart"

    def __init__(self, sheet, chart, owner):
        self._sheet = sheet
        self._chart = chart
        self._owner = owner

    def get_name(self):
        return "%s %s" % (self._sheet.Name, self._owner.get_name())

    def get_parent(self):
        return self._owner

    def get_has_title(self):
        return bool(self._chart.HasMainTitle)

    def put_has_title(self, value):
        guards.require_unprotected(self._sheet)
        self._chart.HasMainTitle = as_boolean(value)

    def get_chart_title(self):
        if not self._chart.HasMainTitle:
            raise ComError(NO_TITLE)
        return ChartTitle(self._sheet, self._chart.Title)

    def get_has_axis(self, index1=1, index2=1):
        return bool(getattr(self._chart.Diagram, "Has%sAxis" % _axis_letter(index1)))

    def call_axes(self, type_=MISSING, axis_group=1):
        if type_ is MISSING:
            raise ComError("Axes method of Chart class failed")
        return Axis(self._sheet, self._chart.Diagram, _axis_letter(type_))


def _axis_letter(kind):
    letter = {1: "X", 2: "Y", 3: "Z"}.get(as_integer(kind))
    if letter is None:
        raise HResultError(DISP_E_BADINDEX)
    return letter


class Axis(ComObject):
    TYPE = "Axis"

    def __init__(self, sheet, diagram, letter):
        self._sheet = sheet
        self._diagram = diagram
        self._letter = letter

    def get_has_title(self):
        return bool(getattr(self._diagram, "Has%sAxisTitle" % self._letter))

    def put_has_title(self, value):
        guards.require_unprotected(self._sheet)
        setattr(self._diagram, "Has%sAxisTitle" % self._letter, as_boolean(value))

    def get_axis_title(self):
        if not self.get_has_title():
            raise ComError(NO_TITLE)
        return ChartTitle(self._sheet, getattr(self._diagram, "%sAxisTitle" % self._letter))


class ChartTitle(ComObject):
    TYPE = "ChartTitle"
    DEFAULT = "Caption"

    def __init__(self, sheet, title):
        self._sheet = sheet
        self._title = title

    def get_text(self):
        return self._title.String

    def put_text(self, value):
        guards.require_unprotected(self._sheet)
        self._title.String = as_text(value)

    get_caption, put_caption = get_text, put_text
