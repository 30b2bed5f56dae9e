"""Draws texts as large as fits, as masks.

Reads a JSON list from standard input, one object a text, and writes one answer a text, as a list:

in:   text, lang; width and height of the room in pixels; size of the letters (the em, in pixels) that is wanted;
      baseline of the first line, from the room's top; align: "left" or "center"
out:  left and top within the room, width and height of what is inked, mask: base64 of one byte a pixel, size that
      was taken; null for a text that does not fit at any size
"""

import base64
import json
import sys

import cairo
import gi

gi.require_version("Pango", "1.0")
gi.require_version("PangoCairo", "1.0")
from gi.repository import Pango, PangoCairo  # noqa: E402  (the versions come first)

FAMILIES = "Segoe UI, Arial, Liberation Sans, sans-serif"
SMALLEST = 5
STEP = 0.5


def make_layout(context, item, size):
    """The text in the room's width, at a size in pixels."""
    layout = PangoCairo.create_layout(context)
    layout.get_context().set_language(Pango.Language.from_string(item["lang"]))
    font = Pango.FontDescription(FAMILIES)
    font.set_absolute_size(size * Pango.SCALE)
    layout.set_font_description(font)
    layout.set_text(item["text"], -1)
    layout.set_alignment(Pango.Alignment.CENTER if item["align"] == "center" else Pango.Alignment.LEFT)
    layout.set_width(item["width"] * Pango.SCALE)
    layout.set_wrap(Pango.WrapMode.WORD)
    return layout


def top_of(layout, item):
    """Where the layout begins so that all ink is inside the room; None when it does not fit.

    The first baseline is that of the original unless the ink would go out of the room.
    """
    ink, _ = layout.get_pixel_extents()
    if ink.width > item["width"] or ink.height > item["height"]:
        return None
    top = round(item["baseline"] - layout.get_baseline() / Pango.SCALE)
    top = min(top, item["height"] - ink.y - ink.height)
    return max(top, -ink.y)


def largest(context, item):
    """The layout of the largest size that fits, its top and the size."""
    best = None
    low = round(SMALLEST / STEP)
    high = max(low, round(item["size"] / STEP))
    while low <= high:
        middle = (low + high) // 2
        layout = make_layout(context, item, middle * STEP)
        top = top_of(layout, item)
        if top is None:
            high = middle - 1
        else:
            best = (layout, top, middle * STEP)
            low = middle + 1
    return best


def draw(item):
    context = cairo.Context(cairo.ImageSurface(cairo.FORMAT_A8, 1, 1))
    found = largest(context, item)
    if found is None:
        return None
    layout, top, size = found
    ink, _ = layout.get_pixel_extents()
    surface = cairo.ImageSurface(cairo.FORMAT_A8, max(1, ink.width), max(1, ink.height))
    context = cairo.Context(surface)
    context.move_to(-ink.x, -ink.y)
    PangoCairo.update_context(context, layout.get_context())
    PangoCairo.show_layout(context, layout)
    surface.flush()
    stride, data = surface.get_stride(), bytes(surface.get_data())
    rows = (data[y * stride : y * stride + surface.get_width()] for y in range(surface.get_height()))
    return {
        "left": min(max(ink.x, 0), item["width"] - ink.width),
        "top": top + ink.y,
        "width": surface.get_width(),
        "height": surface.get_height(),
        "size": size,
        "mask": base64.b64encode(b"".join(rows)).decode(),
    }


json.dump([draw(item) for item in json.load(sys.stdin)], sys.stdout)
