"""Shapes and Shape."""

from com.sun.star.awt import Point, Size

from office import calc, chart_kinds, charts, guards, ranges, sheets, units
from office.com_object import (E_INVALIDARG, ComError, ComObject, HResultError, as_integer, as_number, as_text)

AUTO_SHAPE, CHART, GROUP, LINE, PICTURE, TEXT_BOX, OLE_OBJECT = 1, 3, 6, 9, 13, 17, 7
TYPES = {
    "com.sun.star.drawing.GraphicObjectShape": PICTURE,
    "com.sun.star.drawing.GroupShape": GROUP,
    "com.sun.star.drawing.LineShape": LINE,
    "com.sun.star.drawing.TextShape": TEXT_BOX,
    "com.sun.star.drawing.OLE2Shape": OLE_OBJECT,
}
NAMES = {PICTURE: "Picture", CHART: "Chart", TEXT_BOX: "TextBox", GROUP: "Group", OLE_OBJECT: "Object"}
YES, NO = -1, 0


def chart_of(shape):
    """The chart document inside a shape, or None."""
    if shape.ShapeType != "com.sun.star.drawing.OLE2Shape":
        return None
    model = shape.Model
    return model if model is not None and model.supportsService(charts.CHART_DOCUMENT) else None


class Shapes(ComObject):
    TYPE = "Shapes"
    DEFAULT = "Item"

    def __init__(self, document, sheet):
        self.document = document
        self._sheet = sheet

    def get_count(self):
        return self._sheet.DrawPage.Count

    def call_item(self, index):
        page = self._sheet.DrawPage
        found = [Shape(self.document, self._sheet, page.getByIndex(number)) for number in range(page.Count)]
        if isinstance(index, str):
            for shape in found:
                if shape.get_name().lower() == index.lower():
                    return shape
        elif 1 <= as_integer(index) <= len(found):
            return found[as_integer(index) - 1]
        raise HResultError(E_INVALIDARG, "The index into the specified collection is out of bounds.")

    def call_add_chart2(self, style=-1, xl_chart_type=chart_kinds.COLUMN, left=150, top=100, width=360, height=216,
                        new_layout=False):
        return Shape(self.document, self._sheet,
                     charts.add(self.document, self._sheet, xl_chart_type, left, top, width, height))

    def call_add_picture(self, filename, link_to_file, save_with_document, left, top, width, height):
        guards.require_unprotected(self._sheet)
        provider = calc.service("com.sun.star.graphic.GraphicProvider")
        graphic = provider.queryGraphic(calc.properties(URL=calc.file_url(as_text(filename))))
        if graphic is None:
            raise ComError("The specified file wasn't found.")
        shape = self.document.createInstance("com.sun.star.drawing.GraphicObjectShape")
        self._sheet.DrawPage.add(shape)
        shape.Graphic = graphic
        natural = _natural_size(graphic)
        shape.Size = Size(_length(width, natural.Width), _length(height, natural.Height))
        shape.Position = Point(units.hundredths(as_number(left)), units.hundredths(as_number(top)))
        return Shape(self.document, self._sheet, shape)


def _natural_size(graphic):
    size = graphic.Size100thMM
    if size.Width and size.Height:
        return size
    pixels = graphic.SizePixel
    return Size(round(pixels.Width * 2540 / 96), round(pixels.Height * 2540 / 96))


def _length(asked, natural):
    # -1 keeps the picture's own size.
    return natural if as_number(asked) < 0 else units.hundredths(as_number(asked))


class Shape(ComObject):
    TYPE = "Shape"

    def __init__(self, document, sheet, shape):
        self.document = document
        self._sheet = sheet
        self._shape = shape

    def get_type(self):
        if chart_of(self._shape) is not None:
            return CHART
        return TYPES.get(self._shape.ShapeType, AUTO_SHAPE)

    def get_name(self):
        if self._shape.Name:
            return self._shape.Name
        kind = self.get_type()
        page = self._sheet.DrawPage
        number = 0
        for index in range(page.Count):
            other = Shape(self.document, self._sheet, page.getByIndex(index))
            number += other.get_type() == kind
            if page.getByIndex(index) == self._shape:
                break
        return "%s %d" % (NAMES.get(kind, "Shape"), number)

    def put_name(self, value):
        self._require()
        self._shape.Name = as_text(value)

    def _require(self):
        guards.require_unprotected(self._sheet)

    def get_parent(self):
        return sheets.Worksheet(self.document, self._sheet)

    def get_visible(self):
        return YES if self._shape.Visible else NO

    def get_alternative_text(self):
        return self._shape.Description

    def put_alternative_text(self, value):
        self._require()
        self._shape.Description = as_text(value)

    def get_has_chart(self):
        return YES if chart_of(self._shape) is not None else NO

    def get_chart(self):
        for index in range(1, charts.ChartObjects(self.document, self._sheet).get_count() + 1):
            item = charts.ChartObjects(self.document, self._sheet).call_item(index)
            if item.get_name() == self.get_name():
                return item.get_chart()
        raise ComError("This shape holds no chart.")

    def get_left(self):
        return units.points(self._shape.Position.X)

    def put_left(self, value):
        self._move(Point(units.hundredths(as_number(value)), self._shape.Position.Y))

    def get_top(self):
        return units.points(self._shape.Position.Y)

    def put_top(self, value):
        self._move(Point(self._shape.Position.X, units.hundredths(as_number(value))))

    def _move(self, position):
        self._require()
        self._shape.Position = position

    def get_width(self):
        return units.points(self._shape.Size.Width)

    def put_width(self, value):
        self._resize(Size(units.hundredths(as_number(value)), self._shape.Size.Height))

    def get_height(self):
        return units.points(self._shape.Size.Height)

    def put_height(self, value):
        self._resize(Size(self._shape.Size.Width, units.hundredths(as_number(value))))

    def _resize(self, size):
        self._require()
        self._shape.Size = size

    def get_top_left_cell(self):
        anchor = self._shape.Anchor
        if not anchor.supportsService("com.sun.star.sheet.SheetCell"):
            raise ComError("The shape is not anchored to a cell.")
        return ranges.Range(self.document, [anchor])

    def get_text_frame(self):
        return TextFrame(self._sheet, self._shape)

    get_text_frame2 = get_text_frame

    def call_delete(self):
        self._require()
        self._sheet.DrawPage.remove(self._shape)


class TextFrame(ComObject):
    """Stands for TextFrame, TextFrame2 and what hangs below them, as far as the text goes."""

    TYPE = "TextFrame"

    def __init__(self, sheet, shape):
        self._sheet = sheet
        self._shape = shape

    def get_has_text(self):
        return YES if getattr(self._shape, "String", "") else NO

    def get_text_range(self):
        return self

    def call_characters(self):
        return self

    def get_text(self):
        return getattr(self._shape, "String", "")

    def put_text(self, value):
        guards.require_unprotected(self._sheet)
        self._shape.String = as_text(value)
