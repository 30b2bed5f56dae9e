"""Shape: a drawing object of a sheet."""

from com.sun.star.awt import Point, Size

from office import charts, drawing_kinds, graphics, guards, ranges, shape_parts, shapes, sheets, units
from office.calc import DocumentState
from office.com_object import ComError, ComObject, as_boolean, as_integer, as_number, as_text

YES, NO = -1, 0
# Placement: XlPlacement.
MOVE_AND_SIZE, MOVE, FREE = 1, 2, 3
BRING_TO_FRONT, SEND_TO_BACK, BRING_FORWARD, SEND_BACKWARD = range(4)
# Appearances and formats of CopyPicture.
SCREEN, PRINTER, PICTURE, BITMAP = 1, 2, -4147, 2
OBJECT_REQUIRED = 0x800A01A8


def require_copy(appearance, format_, what):
    """Whether the picture is to be a bitmap; refuses what CopyPicture refuses."""
    if as_integer(appearance) not in (SCREEN, PRINTER) or as_integer(format_) not in (PICTURE, BITMAP):
        raise ComError("CopyPicture method of %s class failed" % what)
    return as_integer(format_) == BITMAP


class Shape(ComObject):
    TYPE = "Shape"

    def __init__(self, document, sheet, shape, container):
        """`container` is the sheet's page or the group that holds the shape."""
        self.document = document
        self._sheet = sheet
        self._there = shape
        self._container = container

    @property
    def _shape(self):
        if self._there.Parent is None:
            raise ComError("The shape has been deleted.", OBJECT_REQUIRED)
        return self._there

    def _require(self):
        guards.require_unprotected(self._sheet)

    def get_type(self):
        return drawing_kinds.kind_of(self._shape)

    def get_name(self):
        return drawing_kinds.name_of(self._shape, drawing_kinds.members(self._container))

    def put_name(self, value):
        self._require()
        self._shape.Name = as_text(value)

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
        return YES if drawing_kinds.chart_of(self._shape) is not None else NO

    def get_chart(self):
        for number, found in enumerate(charts.chart_shapes(self._sheet), 1):
            if found == self._shape:
                return charts.ChartObject(self.document, self._sheet, found, number).get_chart()
        raise ComError("This shape holds no chart.")

    def get_group_items(self):
        if self.get_type() != drawing_kinds.GROUP:
            raise ComError("This member can only be accessed for a group.")
        return shapes.GroupShapes(self.document, self._sheet, self._shape)

    def get_parent_group(self):
        """The outermost group; those inside it are not seen from outside."""
        page, group = self._sheet.DrawPage, self._container
        if group == page:
            raise ComError("This member can only be accessed for a shape in a group.")
        while group.Parent != page:
            group = group.Parent
        return Shape(self.document, self._sheet, group, page)

    def get_left(self):
        return units.exact_points(self._shape.Position.X)

    def put_left(self, value):
        self._move(Point(units.hundredths(as_number(value)), self._shape.Position.Y))

    def get_top(self):
        return units.exact_points(self._shape.Position.Y)

    def put_top(self, value):
        self._move(Point(self._shape.Position.X, units.hundredths(as_number(value))))

    def _move(self, position):
        self._require()
        self._shape.Position = position

    def get_width(self):
        return units.exact_points(self._shape.Size.Width)

    def put_width(self, value):
        size, width = self._shape.Size, units.hundredths(as_number(value))
        self._resize(Size(width, self._along(size.Height, width, size.Width)))

    def get_height(self):
        return units.exact_points(self._shape.Size.Height)

    def put_height(self, value):
        size, height = self._shape.Size, units.hundredths(as_number(value))
        self._resize(Size(self._along(size.Width, height, size.Height), height))

    def _along(self, length, new, old):
        """The other side's length when one changes from `old` to `new`."""
        return round(length * new / old) if old and self.get_lock_aspect_ratio() else length

    def _resize(self, size):
        self._require()
        self._shape.Size = size

    def get_lock_aspect_ratio(self):
        """Calc does not keep it with the shape."""
        changed = DocumentState.of(self.document).aspect_ratios.get(self.get_name())
        return changed if changed is not None else YES if self.get_type() == drawing_kinds.PICTURE else NO

    def put_lock_aspect_ratio(self, value):
        self._require()
        DocumentState.of(self.document).aspect_ratios[self.get_name()] = YES if as_boolean(value) else NO

    def get_placement(self):
        if not self._shape.Anchor.supportsService("com.sun.star.sheet.SheetCell"):
            return FREE
        return MOVE_AND_SIZE if self._shape.ResizeWithCell else MOVE

    def put_placement(self, value):
        self._require()
        placement = as_integer(value)
        if placement not in (MOVE_AND_SIZE, MOVE, FREE):
            raise ComError("Unable to set the Placement property of the Shape class")
        position, size = self._shape.Position, self._shape.Size
        # The cell that holds the corner is found by Calc when the shape is put back in its place.
        self._shape.Anchor = self._sheet if placement == FREE else self._sheet.getCellByPosition(0, 0)
        self._shape.ResizeWithCell = placement == MOVE_AND_SIZE
        self._shape.Position, self._shape.Size = position, size

    def get_z_order_position(self):
        return self._shape.ZOrder + 1

    def call_z_order(self, z_order_cmd):
        self._require()
        command, place, last = as_integer(z_order_cmd), self._shape.ZOrder, self._container.Count - 1
        places = {BRING_TO_FRONT: last, SEND_TO_BACK: 0, BRING_FORWARD: min(place + 1, last),
                  SEND_BACKWARD: max(place - 1, 0)}
        if command not in places:
            raise ComError("The specified value is out of range.")
        self._shape.ZOrder = places[command]

    def get_top_left_cell(self):
        anchor = self._shape.Anchor
        if not anchor.supportsService("com.sun.star.sheet.SheetCell"):
            raise ComError("The shape is not anchored to a cell.")
        return ranges.Range(self.document, [anchor])

    def get_text_frame(self):
        return shape_parts.TextFrame(self._sheet, self._shape)

    get_text_frame2 = get_text_frame

    def get_fill(self):
        return shape_parts.FillFormat(self.document, self._sheet, self._shape)

    def get_picture_format(self):
        if self.get_type() != drawing_kinds.PICTURE:
            raise ComError("This member can only be accessed for a picture.")
        return shape_parts.PictureFormat(self._sheet, self._shape)

    def call_copy_picture(self, appearance=SCREEN, format_=PICTURE):
        return graphics.draw(self._shape, require_copy(appearance, format_, "Shape"))

    def call_copy(self):
        # Who pastes it finds a picture, which is as much as can leave the office.
        return graphics.draw(self._shape, True)

    def call_delete(self):
        self._require()
        self._container.remove(self._shape)

    def call_select(self, replace=True):
        self.document.CurrentController.select(self._shape)
