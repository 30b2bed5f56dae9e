"""The pictures of a saved workbook: where each is, and what its part of the file shows."""

import zipfile
from typing import NamedTuple
from xml.etree import ElementTree

from png_reader import Picture
from xlsx_reader import DRAWING, RELATION_ID, relations, sheet_parts

SHEET_DRAWING = "{http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing}"
EMBEDDED = RELATION_ID.replace("}id", "}embed")
EMU_PER_POINT = 12700


class Drawn(NamedTuple):
    """`kind` is "pic", or "sp" for a shape that is filled with a picture; lengths are in points."""
    kind: str
    description: str
    left: float
    top: float
    width: float
    height: float
    image: Picture

    def place(self):
        return [round(length, 1) for length in (self.left, self.top, self.width, self.height)]


def drawn_pictures(path, sheet):
    """{name: Drawn} of a sheet, from the bottom to the top, those in groups among them."""
    with zipfile.ZipFile(path) as package:
        part = next(part for kind, part in relations(package, sheet_parts(package)[sheet]).values()
                    if kind.endswith("/drawing"))
        images = {name: package.read(target) for name, (kind, target) in relations(package, part).items()
                  if kind.endswith("/image")}
        root = ElementTree.fromstring(package.read(part))
    found = {}
    for element in root.iter():
        blip = element.find(f"{SHEET_DRAWING}blipFill/{DRAWING}blip")
        if blip is None:
            blip = element.find(f"{SHEET_DRAWING}spPr/{DRAWING}blipFill/{DRAWING}blip")
        if blip is not None:
            named = element.find(f"*/{SHEET_DRAWING}cNvPr")
            found[named.get("name")] = _drawn(element, named.get("descr", ""), images[blip.get(EMBEDDED)])
    return found


def _drawn(element, description, image):
    frame = element.find(f"{SHEET_DRAWING}spPr/{DRAWING}xfrm")
    offset, extent = frame.find(DRAWING + "off"), frame.find(DRAWING + "ext")
    lengths = [int(node.get(name)) / EMU_PER_POINT for node, name in
               ((offset, "x"), (offset, "y"), (extent, "cx"), (extent, "cy"))]
    return Drawn(element.tag.removeprefix(SHEET_DRAWING), description, *lengths, Picture(image))
