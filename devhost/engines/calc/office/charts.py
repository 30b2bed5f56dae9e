"""ChartObjects, ChartObject, Chart and its titles."""

import uno
from com.sun.star.awt import Point, Rectangle

from office import chart_kinds, drawing_kinds, graphics, guards, ranges, shape as shape_model, sheets, units
from office.com_object import (MISSING, ComError, ComObject, HResultError, ImageFile, DISP_E_BADINDEX,
                               DISP_E_TYPEMISMATCH, as_boolean, as_integer, as_number, as_text)

PLOT_BY_ROWS = 1
# com.sun.star.sheet.FormulaResult.STRING
TEXT_RESULT = 2
EXPORT_TYPES = {"PNG": "image/png", "JPG": "image/jpeg", "JPEG": "image/jpeg", "GIF": "image/gif", "BMP": "image/bmp"}
NO_TITLE = "This object has no title."


def add(document, sheet, kind, left, top, width, height):
    """A chart without data as a new shape, which is on top and has the next free name."""
    guards.require_unprotected(sheet)
    chart_kinds.require(kind)
    place = Rectangle(*(units.hundredths(as_number(length)) for length in (left, top, width, height)))
    names = {shape.Name for shape in chart_shapes(sheet)} | set(sheet.Charts.ElementNames)
    number = len(chart_shapes(sheet)) + 1
    while "Chart %d" % number in names:
        number += 1
    # A chart that begins without cells keeps data of its own for good.
    first_cell = sheet.getCellByPosition(0, 0).RangeAddress
    sheet.Charts.addNewByName("Chart %d" % number, place, (first_cell,), False, False)
    shape = next(shape for shape in chart_shapes(sheet) if shape.PersistName == "Chart %d" % number)
    shape.Name = "Chart %d" % number
    chart_kinds.set_kind(drawing_kinds.chart_of(shape), kind)
    return shape


def _part_in_use(source):
    """A range without what lies beyond the used area of its sheet."""
    used = ranges.used_area(source.sheet).RangeAddress
    area = source.first.RangeAddress
    right, bottom = min(area.EndColumn, used.EndColumn), min(area.EndRow, used.EndRow)
    if right < area.StartColumn or bottom < area.StartRow:
        return source.first
    return source.sheet.getCellRangeByPosition(area.StartColumn, area.StartRow, right, bottom)


def _is_label(area, column, row):
    cell = area.getCellByPosition(column, row)
    return cell.Type.value == "TEXT" or (cell.Type.value == "FORMULA" and cell.FormulaResultType2 == TEXT_RESULT)


def chart_shapes(sheet):
    """The shapes of a sheet that hold charts, from the bottom to the top."""
    return [shape for shape in drawing_kinds.members(sheet.DrawPage) if drawing_kinds.chart_of(shape) is not None]


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

    def call_add(self, left, top, width, height):
        add(self.document, self._sheet, chart_kinds.COLUMN, left, top, width, height)
        return self._all()[-1]

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
        return Chart(self._sheet, drawing_kinds.chart_of(self._shape), self, self._shape.PersistName)

    def call_delete(self):
        guards.require_unprotected(self._sheet)
        self._sheet.DrawPage.remove(self._shape)
        return True

    def call_activate(self):
        return True

    def call_copy_picture(self, appearance=shape_model.SCREEN, format_=shape_model.PICTURE):
        return graphics.draw(self._shape, shape_model.require_copy(appearance, format_, "ChartObject"))

    def call_copy(self):
        return graphics.draw(self._shape, True)

    def export(self, path, media_type):
        graphics.save(self._shape, path, media_type)

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

    def __init__(self, sheet, chart, owner, stored_name):
        self._sheet = sheet
        self._chart = chart
        self._owner = owner
        self._stored_name = stored_name

    def get_name(self):
        return "%s %s" % (self._sheet.Name, self._owner.get_name())

    def get_parent(self):
        return self._owner

    def get_chart_type(self):
        return chart_kinds.number_of(self._chart)

    def put_chart_type(self, value):
        guards.require_unprotected(self._sheet)
        chart_kinds.set_kind(self._chart, value)

    def call_set_source_data(self, source, plot_by=MISSING):
        """Series stand in the columns unless there are more of these than rows, as with Excel's own choice."""
        guards.require_unprotected(self._sheet)
        if not isinstance(source, ranges.Range):
            raise HResultError(DISP_E_TYPEMISMATCH)
        area = _part_in_use(source)
        rows, columns = area.Rows.Count, area.Columns.Count
        table = self._sheet.Charts.getByName(self._stored_name)
        table.HasColumnHeaders = rows > 1 and _is_label(area, columns - 1, 0)
        table.HasRowHeaders = columns > 1 and _is_label(area, 0, rows - 1)
        by_rows = columns > rows if plot_by is MISSING else as_integer(plot_by) == PLOT_BY_ROWS
        table.Ranges = (area.RangeAddress,)
        self._chart.Diagram.DataRowSource = uno.Enum("com.sun.star.chart.ChartDataRowSource",
                                                     "ROWS" if by_rows else "COLUMNS")

    def call_paste(self, type_=MISSING, clipboard=MISSING):
        """Puts a picture into the top left corner, in its own size. `clipboard` comes from the client, not from its caller."""
        guards.require_unprotected(self._sheet)
        if not isinstance(clipboard, ImageFile):
            raise ComError("Paste method of Chart class failed")
        graphic = graphics.load_bytes(clipboard.content)
        pasted = self._chart.createInstance("com.sun.star.drawing.GraphicObjectShape")
        self._chart.DrawPage.add(pasted)
        pasted.Graphic = graphic
        pasted.Size, pasted.Position = graphics.natural_size(graphic), Point(0, 0)

    def call_export(self, filename, filter_name="PNG", interactive=False):
        media_type = EXPORT_TYPES.get(as_text(filter_name).upper())
        if media_type is None:
            raise ComError("Export method of Chart class failed")
        self._owner.export(as_text(filename), media_type)
        return True

    def call_copy_picture(self, appearance=shape_model.SCREEN, format_=shape_model.PICTURE, size=MISSING):
        return self._owner.call_copy_picture(appearance, format_)

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
