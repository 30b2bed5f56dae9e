"""Pictures as Calc holds and draws them: read from files and bytes, drawn as they look on the screen, written to files."""

import uno
from com.sun.star.awt import Size

from office import calc
from office.com_object import ComError, Picture

PNG = "image/png"
HUNDREDTHS_PER_INCH, PIXELS_PER_INCH = 2540, 96
READ_AT_ONCE = 1 << 20
# com.sun.star.graphic.GraphicType.PIXEL
PIXELS = 1
# What is zero while a picture is shown as it is.
CHANGES = ("RotateAngle", "ShearAngle", "IsMirrored", "Transparency", "AdjustLuminance", "AdjustContrast", "AdjustRed",
           "AdjustGreen", "AdjustBlue")


def load(path):
    """The picture of a file, which is read to its end."""
    return _query(URL=calc.file_url(path)) or _refuse("The specified file wasn't found.")


def load_bytes(content):
    """The picture that a file of these bytes would hold."""
    stream = calc.service("com.sun.star.io.SequenceInputStream", uno.ByteSequence(content))
    return _query(InputStream=stream) or _refuse("The clipboard holds no picture that can be shown.")


def _query(**source):
    return calc.service("com.sun.star.graphic.GraphicProvider").queryGraphic(calc.properties(**source))


def _refuse(text):
    raise ComError(text)


def natural_size(graphic):
    """Its own size, in 1/100 mm."""
    size = graphic.Size100thMM
    if size.Width and size.Height:
        return size
    pixels = graphic.SizePixel
    return Size(_hundredths(pixels.Width), _hundredths(pixels.Height))


def _hundredths(pixels):
    return round(pixels * HUNDREDTHS_PER_INCH / PIXELS_PER_INCH)


def _pixels(hundredths):
    return max(1, round(hundredths * PIXELS_PER_INCH / HUNDREDTHS_PER_INCH))


def draw(shape, as_bitmap):
    """The shape as the screen shows it at its full size, with what it shows of its lines."""
    width, height = _size_on_screen(shape)
    file = calc.service("com.sun.star.io.TempFile")
    if _is_plain_picture(shape):
        # Scaled in one step, so that a picture of this very size comes out pixel by pixel.
        calc.service("com.sun.star.graphic.GraphicProvider").storeGraphic(
            shape.Graphic, calc.properties(MimeType=PNG, FilterData=_filter_data(width, height),
                                           OutputStream=file.OutputStream))
    else:
        # Calc draws what is no embedded object one pixel smaller than it was told.
        spare = 0 if shape.ShapeType == "com.sun.star.drawing.OLE2Shape" else 1
        _export(shape, PNG, width + spare, height + spare, OutputStream=file.OutputStream)
    file.seek(0)
    return Picture(_read(file.InputStream), as_bitmap, (width, height))


def save(shape, path, media_type):
    _export(shape, media_type, *_size_on_screen(shape), URL=calc.file_url(path))


def _size_on_screen(shape):
    # The bounds are told with the point after the last one.
    bounds = shape.BoundRect
    return _pixels(bounds.Width - 1), _pixels(bounds.Height - 1)


def _is_plain_picture(shape):
    """Whether the sheet shows the picture's own pixels and nothing else."""
    if shape.ShapeType != "com.sun.star.drawing.GraphicObjectShape" or shape.Graphic is None:
        return False
    if shape.Graphic.GraphicType != PIXELS or (shape.Graphic.Transparent and shape.FillStyle.value != "NONE"):
        return False
    crop = shape.GraphicCrop
    return not any((crop.Left, crop.Top, crop.Right, crop.Bottom, *(getattr(shape, name) for name in CHANGES))) and \
        shape.GraphicColorMode.value == "STANDARD" and shape.Gamma == 1 and shape.LineStyle.value == "NONE"


def _export(shape, media_type, width, height, **target):
    exporter = calc.service("com.sun.star.drawing.GraphicExportFilter")
    exporter.setSourceDocument(shape)
    if not exporter.filter(calc.properties(MediaType=media_type, FilterData=_filter_data(width, height), **target)):
        raise ComError("The picture could not be written.")


def _filter_data(width, height):
    return uno.Any("[]com.sun.star.beans.PropertyValue", calc.properties(PixelWidth=width, PixelHeight=height))


def _read(stream):
    content = b""
    while True:
        count, piece = stream.readBytes(None, READ_AT_ONCE)
        content += piece.value
        if count < READ_AT_ONCE:
            return content
