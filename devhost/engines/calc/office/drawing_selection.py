"""What Selection gives while drawing objects are selected, and the shapes behind it as a ShapeRange."""

from office import drawing_kinds, sheets
from office.com_object import ComObject
from office.shapes import ShapeCollection


class ShapeRange(ShapeCollection):
    TYPE = "ShapeRange"

    def __init__(self, document, found):
        self.document = document
        self._shapes = found

    def _found(self):
        return self._shapes


class Drawing(ComObject):
    """One selected shape or several. Its class is that of the one shape, "Picture" for instance."""

    TYPE = "Drawing"

    def __init__(self, document, sheet, found):
        """`found` are Shape objects, at least one."""
        self.document = document
        self._sheet = sheet
        self._shapes = found

    def get_shape_range(self):
        return ShapeRange(self.document, self._shapes)

    def get_parent(self):
        return sheets.Worksheet(self.document, self._sheet)

    def get_count(self):
        return len(self._shapes)

    def get_name(self):
        return self._shapes[0].get_name()

    def get_left(self):
        return self._shapes[0].get_left()

    def get_top(self):
        return self._shapes[0].get_top()

    def get_width(self):
        return self._shapes[0].get_width()

    def get_height(self):
        return self._shapes[0].get_height()

    def call_copy_picture(self, appearance=1, format_=-4147):
        return self._shapes[0].call_copy_picture(appearance, format_)

    def call_delete(self):
        for found in self._shapes:
            found.call_delete()


CLASSES = {kind: type(name, (Drawing,), {"TYPE": name, "__doc__": Drawing.__doc__})
           for kind, name in drawing_kinds.SELECTED_CLASSES.items()}


class DrawingObjects(Drawing):
    TYPE = "DrawingObjects"


class Rectangle(Drawing):
    TYPE = "Rectangle"


def of(document, sheet, found):
    """The object for such a selection."""
    if len(found) > 1:
        return DrawingObjects(document, sheet, found)
    return CLASSES.get(found[0].get_type(), Rectangle)(document, sheet, found)
