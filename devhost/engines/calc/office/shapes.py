"""Shapes and GroupShapes, the collections of a sheet's drawing objects."""

from com.sun.star.awt import Point, Size

from office import chart_kinds, charts, drawing_kinds, graphics, guards, shape, units
from office.com_object import E_INVALIDARG, ComError, ComObject, HResultError, as_boolean, as_integer, as_number, as_text


class ShapeCollection(ComObject):
    """What can be counted and looked up by name or by number. `_found` gives the Shape objects in their order."""

    DEFAULT = "Item"

    def _found(self):
        raise NotImplementedError

    def get_count(self):
        return len(self._found())

    def call_item(self, index):
        found = self._found()
        if isinstance(index, str):
            for item in found:
                if item.get_name().lower() == index.lower():
                    return item
        elif 1 <= as_integer(index) <= len(found):
            return found[as_integer(index) - 1]
        raise HResultError(E_INVALIDARG, "The index into the specified collection is out of bounds.")


class Shapes(ShapeCollection):
    TYPE = "Shapes"

    def __init__(self, document, sheet):
        self.document = document
        self._sheet = sheet

    def _found(self):
        return [self._shape(found) for found in drawing_kinds.members(self._sheet.DrawPage)]

    def _shape(self, found):
        return shape.Shape(self.document, self._sheet, found, self._sheet.DrawPage)

    def call_add_chart2(self, style=-1, xl_chart_type=chart_kinds.COLUMN, left=150, top=100, width=360, height=216,
                        new_layout=False):
        return self._shape(charts.add(self.document, self._sheet, xl_chart_type, left, top, width, height))

    def call_add_picture(self, filename, link_to_file, save_with_document, left, top, width, height):
        """-1 as width or height keeps the picture's own."""
        guards.require_unprotected(self._sheet)
        if as_boolean(link_to_file) or not as_boolean(save_with_document):
            raise ComError("This host keeps every picture in the workbook.")
        graphic = graphics.load(as_text(filename))
        natural = graphics.natural_size(graphic)
        size = Size(_length(width, natural.Width), _length(height, natural.Height))
        place = Point(units.hundredths(as_number(left)), units.hundredths(as_number(top)))
        added = self.document.createInstance("com.sun.star.drawing.GraphicObjectShape")
        added.Name = self._free_name()
        self._sheet.DrawPage.add(added)
        added.Graphic = graphic
        added.Size, added.Position = size, place
        result = self._shape(added)
        result.put_placement(shape.MOVE)
        return result

    def _free_name(self):
        """Like Excel's: as many as there are shapes, or the next number that no shape has."""
        taken = {found.get_name().lower() for found in self._found()}
        number = len(taken) + 1
        while "picture %d" % number in taken:
            number += 1
        return "Picture %d" % number


def _length(asked, natural):
    return natural if as_number(asked) < 0 else units.hundredths(as_number(asked))


class GroupShapes(ShapeCollection):
    """The shapes of a group, with those of groups inside it in their place, as Excel lists them."""

    TYPE = "GroupShapes"

    def __init__(self, document, sheet, group):
        self.document = document
        self._sheet = sheet
        self._group = group

    def _found(self):
        return [shape.Shape(self.document, self._sheet, found, container)
                for found, container in _leaves(self._group)]


def _leaves(group):
    for found in drawing_kinds.members(group):
        if drawing_kinds.kind_of(found) == drawing_kinds.GROUP:
            yield from _leaves(found)
        else:
            yield found, group
