"""Workbooks with drawings on their sheets, written part by part: pictures, groups, charts, shapes and lines."""

import struct
import zipfile
import zlib
from itertools import count
from xml.sax.saxutils import escape, quoteattr

EMU_PER_POINT = 12700
CELL_NAMESPACE = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
LINK_NAMESPACE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PART_NAMESPACE = "http://schemas.openxmlformats.org/package/2006/relationships"
TYPES_NAMESPACE = "http://schemas.openxmlformats.org/package/2006/content-types"
DRAWING_NAMESPACES = " ".join([
    'xmlns:xdr="http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"',
    'xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main"',
    f'xmlns:r="{LINK_NAMESPACE}"',
])
CHART_NAMESPACE = "http://schemas.openxmlformats.org/drawingml/2006/chart"
CONTENT = "application/vnd.openxmlformats-officedocument."
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'


def png(width, height, colour_at):
    """A PNG file of `colour_at(x, y)`, which gives three or four channels of 0 to 255."""
    channels = len(colour_at(0, 0))
    rows = b"".join(b"\0" + bytes(channel for x in range(width) for channel in colour_at(x, y)) for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, {3: 2, 4: 6}[channels], 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(rows)) + _chunk(b"IEND", b"")


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def quarters(width, height, *colours):
    """A PNG file of four rectangles: top left, top right, bottom left, bottom right."""
    return png(width, height, lambda x, y: colours[2 * (2 * y >= height) + (2 * x >= width)])


class PictureBook:
    """What stands on the sheets; lengths and places are in points. Every method gives XML for `place` or `group`."""

    def __init__(self):
        self._sheets = {}
        self._media = []
        self._charts = []
        self._ids = count(2)

    def sheet(self, name, *drawings, texts=()):
        """Adds a sheet with drawings from the bottom to the top, and one text a row in column A."""
        self._sheets[name] = (drawings, texts)
        return self

    def picture(self, name, image, left, top, width, height, description=""):
        """A picture of the bytes of a PNG file."""
        self._media.append(image)
        return (f'<xdr:pic><xdr:nvPicPr>{self._named(name, description)}<xdr:cNvPicPr/></xdr:nvPicPr>'
                f'<xdr:blipFill><a:blip r:embed="m{len(self._media)}"/><a:stretch><a:fillRect/></a:stretch></xdr:blipFill>'
                f'<xdr:spPr>{_frame(left, top, width, height)}<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></xdr:spPr>'
                f'</xdr:pic>'), (left, top, width, height)

    def box(self, name, fill, left, top, width, height):
        """A rectangle in a colour like "FF0000", or filled with the bytes of a PNG file."""
        return (f'<xdr:sp macro="" textlink=""><xdr:nvSpPr>{self._named(name)}<xdr:cNvSpPr/></xdr:nvSpPr><xdr:spPr>'
                f'{_frame(left, top, width, height)}<a:prstGeom prst="rect"><a:avLst/></a:prstGeom>'
                f'{self._fill(fill)}<a:ln><a:noFill/></a:ln></xdr:spPr>'
                f'</xdr:sp>'), (left, top, width, height)

    def _fill(self, fill):
        if isinstance(fill, str):
            return f'<a:solidFill><a:srgbClr val="{fill}"/></a:solidFill>'
        self._media.append(fill)
        return f'<a:blipFill><a:blip r:embed="m{len(self._media)}"/><a:stretch><a:fillRect/></a:stretch></a:blipFill>'

    def line(self, name, left, top, width, height):
        return (f'<xdr:cxnSp macro=""><xdr:nvCxnSpPr>{self._named(name)}<xdr:cNvCxnSpPr/></xdr:nvCxnSpPr><xdr:spPr>'
                f'{_frame(left, top, width, height)}<a:prstGeom prst="line"><a:avLst/></a:prstGeom>'
                f'<a:ln w="12700"><a:solidFill><a:srgbClr val="000000"/></a:solidFill></a:ln></xdr:spPr>'
                f'</xdr:cxnSp>'), (left, top, width, height)

    def chart(self, name, left, top, width, height, cells):
        """A column chart over cells like "Sheet!$B$1:$B$3"."""
        self._charts.append(cells)
        return (f'<xdr:graphicFrame macro=""><xdr:nvGraphicFramePr>{self._named(name)}<xdr:cNvGraphicFramePr/>'
                f'</xdr:nvGraphicFramePr>{_frame(left, top, width, height, "xdr")}<a:graphic>'
                f'<a:graphicData uri="{CHART_NAMESPACE}"><c:chart xmlns:c="{CHART_NAMESPACE}" r:id="c{len(self._charts)}"/>'
                f'</a:graphicData></a:graphic></xdr:graphicFrame>'), (left, top, width, height)

    def group(self, name, *members):
        """Members keep their places; a member may be a group."""
        left, top = (min(place[side] for _, place in members) for side in (0, 1))
        width, height = (max(place[side] + place[side + 2] for _, place in members) - start
                         for side, start in ((0, left), (1, top)))
        return (f'<xdr:grpSp><xdr:nvGrpSpPr>{self._named(name)}<xdr:cNvGrpSpPr/></xdr:nvGrpSpPr><xdr:grpSpPr>'
                f'{_frame(left, top, width, height, inside=True)}</xdr:grpSpPr>{"".join(xml for xml, _ in members)}'
                f'</xdr:grpSp>'), (left, top, width, height)

    def _named(self, name, description=""):
        text = f" descr={quoteattr(description)}" if description else ""
        return f"<xdr:cNvPr id=\"{next(self._ids)}\" name={quoteattr(name)}{text}/>"

    def save(self, path):
        """Writes the workbook. Gives the path."""
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as book:
            for name, content in self._parts().items():
                book.writestr(name, content if isinstance(content, bytes) else HEAD + content)
        return path

    def _parts(self):
        sheets = list(enumerate(self._sheets.items(), 1))
        parts = {
            "[Content_Types].xml": self._content_types(),
            "_rels/.rels": _links(("book", "officeDocument", "xl/workbook.xml")),
            "xl/workbook.xml": _workbook([name for _, (name, _) in sheets]),
            "xl/_rels/workbook.xml.rels": _links(*((f"s{number}", "worksheet", f"worksheets/sheet{number}.xml")
                                                   for number, _ in sheets)),
        }
        for number, (_, (drawings, texts)) in sheets:
            parts[f"xl/worksheets/sheet{number}.xml"] = _worksheet(texts)
            parts[f"xl/worksheets/_rels/sheet{number}.xml.rels"] = _links(
                ("drawing", "drawing", f"../drawings/drawing{number}.xml"))
            parts[f"xl/drawings/drawing{number}.xml"] = _drawing(drawings)
            parts[f"xl/drawings/_rels/drawing{number}.xml.rels"] = _links(
                *((f"m{at}", "image", f"../media/image{at}.png") for at in range(1, len(self._media) + 1)),
                *((f"c{at}", "chart", f"../charts/chart{at}.xml") for at in range(1, len(self._charts) + 1)))
        parts.update((f"xl/media/image{at}.png", image) for at, image in enumerate(self._media, 1))
        parts.update((f"xl/charts/chart{at}.xml", _chart(cells)) for at, cells in enumerate(self._charts, 1))
        return parts

    def _content_types(self):
        parts = [("workbook", f"{CONTENT}spreadsheetml.sheet.main+xml")]
        for number in range(1, len(self._sheets) + 1):
            parts += [(f"worksheets/sheet{number}", f"{CONTENT}spreadsheetml.worksheet+xml"),
                      (f"drawings/drawing{number}", f"{CONTENT}drawing+xml")]
        parts += [(f"charts/chart{number}", f"{CONTENT}drawingml.chart+xml")
                  for number in range(1, len(self._charts) + 1)]
        overrides = "".join(f'<Override PartName="/xl/{part}.xml" ContentType="{kind}"/>' for part, kind in parts)
        return (f'<Types xmlns="{TYPES_NAMESPACE}"><Default Extension="png" ContentType="image/png"/>'
                f'<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
                f'{overrides}</Types>')


def _emu(points):
    return round(points * EMU_PER_POINT)


def _frame(left, top, width, height, prefix="a", inside=False):
    place = f'x="{_emu(left)}" y="{_emu(top)}"'
    size = f'cx="{_emu(width)}" cy="{_emu(height)}"'
    child = f"<a:chOff {place}/><a:chExt {size}/>" if inside else ""
    return f"<{prefix}:xfrm><a:off {place}/><a:ext {size}/>{child}</{prefix}:xfrm>"


def _links(*links):
    found = "".join(f'<Relationship Id="{name}" Type="{LINK_NAMESPACE}/{kind}" Target="{target}"/>'
                    for name, kind, target in links)
    return f'<Relationships xmlns="{PART_NAMESPACE}">{found}</Relationships>'


def _workbook(names):
    sheets = "".join(f"<sheet name={quoteattr(name)} sheetId=\"{number}\" r:id=\"s{number}\"/>"
                     for number, name in enumerate(names, 1))
    return f'<workbook xmlns="{CELL_NAMESPACE}" xmlns:r="{LINK_NAMESPACE}"><sheets>{sheets}</sheets></workbook>'


def _worksheet(texts):
    rows = "".join(f'<row r="{row}"><c r="A{row}" t="inlineStr"><is><t>{escape(text)}</t></is></c></row>'
                   for row, text in enumerate(texts, 1))
    return (f'<worksheet xmlns="{CELL_NAMESPACE}" xmlns:r="{LINK_NAMESPACE}"><sheetData>{rows}</sheetData>'
            f'<drawing r:id="drawing"/></worksheet>')


def _drawing(drawings):
    anchors = "".join(
        f'<xdr:absoluteAnchor><xdr:pos x="{_emu(left)}" y="{_emu(top)}"/><xdr:ext cx="{_emu(width)}" cy="{_emu(height)}"/>'
        f'{xml}<xdr:clientData/></xdr:absoluteAnchor>' for xml, (left, top, width, height) in drawings)
    return f"<xdr:wsDr {DRAWING_NAMESPACES}>{anchors}</xdr:wsDr>"


def _chart(cells):
    return (f'<c:chartSpace xmlns:c="{CHART_NAMESPACE}"><c:chart><c:autoTitleDeleted val="1"/><c:plotArea><c:barChart>'
            f'<c:barDir val="col"/><c:ser><c:idx val="0"/><c:order val="0"/><c:val><c:numRef><c:f>{cells}</c:f></c:numRef>'
            f'</c:val></c:ser><c:axId val="1"/><c:axId val="2"/></c:barChart>'
            f'<c:catAx><c:axId val="1"/><c:crossAx val="2"/></c:catAx><c:valAx><c:axId val="2"/><c:crossAx val="1"/></c:valAx>'
            f'</c:plotArea></c:chart></c:chartSpace>')
