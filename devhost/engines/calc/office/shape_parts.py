"""What hangs below a Shape: its text, its fill, and what is done to its picture."""

import uno

from office import drawing_kinds, graphics, guards
from office.com_object import ComError, ComObject, as_number, as_text

YES, NO = -1, 0
# MsoFillType by com.sun.star.drawing.FillStyle; without a fill Excel still tells the solid one.
FILL_TYPES = {"NONE": 1, "SOLID": 1, "GRADIENT": 3, "HATCH": 2, "BITMAP": 6}


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


class FillFormat(ComObject):
    """The fill, which a picture covers where it is not transparent."""

    TYPE = "FillFormat"

    def __init__(self, document, sheet, shape):
        self.document = document
        self._sheet = sheet
        self._shape = shape

    def _require_fill(self):
        # A group has none of its own, and a chart keeps its in its document.
        if drawing_kinds.chart_of(self._shape) is not None or \
                not self._shape.PropertySetInfo.hasPropertyByName("FillBitmapName"):
            raise ComError("The shape has no fill.")

    def get_type(self):
        self._require_fill()
        return FILL_TYPES[self._shape.FillStyle.value]

    def get_visible(self):
        self._require_fill()
        return NO if self._shape.FillStyle.value == "NONE" else YES

    def call_user_picture(self, picture_file):
        """Stretches the picture of a file over the shape."""
        guards.require_unprotected(self._sheet)
        self._require_fill()
        graphic = graphics.load(as_text(picture_file))
        bitmaps = self.document.createInstance("com.sun.star.drawing.BitmapTable")
        number = 1
        while bitmaps.hasByName("Picture fill %d" % number):
            number += 1
        bitmaps.insertByName("Picture fill %d" % number, graphic)
        self._shape.FillStyle = uno.Enum("com.sun.star.drawing.FillStyle", "BITMAP")
        self._shape.FillBitmapName = "Picture fill %d" % number
        self._shape.FillBitmapMode = uno.Enum("com.sun.star.drawing.BitmapMode", "STRETCH")


class PictureFormat(ComObject):
    """Excel's has more of this kind, and like it nothing that takes another picture."""

    TYPE = "PictureFormat"

    def __init__(self, sheet, shape):
        self._sheet = sheet
        self._shape = shape

    def get_brightness(self):
        return _fraction(self._shape.AdjustLuminance)

    def put_brightness(self, value):
        self._put("AdjustLuminance", value)

    def get_contrast(self):
        return _fraction(self._shape.AdjustContrast)

    def put_contrast(self, value):
        self._put("AdjustContrast", value)

    def _put(self, name, value):
        guards.require_unprotected(self._sheet)
        fraction = as_number(value)
        if not 0 <= fraction <= 1:
            raise ComError("The specified value is out of range.")
        setattr(self._shape, name, round(fraction * 200) - 100)


def _fraction(percent):
    """-100 to 100 as 0 to 1, where a half changes nothing."""
    return (percent + 100) / 200
