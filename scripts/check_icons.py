#!/usr/bin/env python3
"""Checks the icons in the add-in DLL: every resource there is, a sound RGBA picture of its size, none twice, and each
byte for byte the rendered drawing that belongs under its id:  check_icons.py DLL FOLDER_OF_RENDERED_DRAWINGS"""

import struct
import sys
import zlib
from pathlib import Path

RT_RCDATA = 10
SUBDIRECTORY = 0x80000000
PNG = b"\x89PNG\r\n\x1a\n"
PADDING = 2 / 32  # of the edge, left free on every side


# First resource id of each drawing, and how far apart the ids of its sizes lie. Written down here once more, apart from
# the build's table: an icon under another's id is what this is to find.
RUNS = {
    10: {120: "translate_sheet", 121: "translate_selection", 122: "quick_translate", 123: "ai_autofill",
         124: "ai_chat", 125: "glossary", 126: "instruction", 127: "account", 128: "coding_agent"},
    2: {159: "image_translate", 160: "support"},
    1: {168: "grammar", 173: "image_to_table", 178: "pdf_to_table", 183: "delete_blank_rows", 188: "document_check",
        193: "pdf_translate", 198: "settings"},
}


def expected():
    """Pixel size and drawing by resource id, as the ribbon code looks them up."""
    return {first + stride * step: (size, drawing)
            for stride, drawings in RUNS.items()
            for first, drawing in drawings.items()
            for step, size in enumerate((32, 48, 64, 96))}


def rcdata(image):
    """The RCDATA resources of a 64-bit PE file: bytes by id, in the first language of each."""
    header = struct.unpack_from("<I", image, 0x3C)[0]
    count, optional_size = struct.unpack_from("<H12xH", image, header + 6)
    root = struct.unpack_from("<I", image, header + 24 + 112 + 2 * 8)[0]
    sections = [struct.unpack_from("<4I", image, header + 24 + optional_size + 40 * i + 8) for i in range(count)]

    def offset(address):
        return next(raw + address - start for size, start, _, raw in sections if start <= address < start + size)

    def entries(node):
        base = offset(root) + (node & ~SUBDIRECTORY)
        named, numbered = struct.unpack_from("<2H", image, base + 12)
        return dict(struct.unpack_from("<2I", image, base + 16 + 8 * i) for i in range(named, named + numbered))

    def data(languages):
        leaf = next(iter(entries(languages).values()))
        address, size = struct.unpack_from("<2I", image, offset(root) + leaf)
        return image[offset(address):offset(address) + size]

    icons = entries(SUBDIRECTORY).get(RT_RCDATA)
    return {number: data(languages) for number, languages in entries(icons).items()} if icons else {}


def chunks(png):
    """Type and content of each chunk; raises ValueError where the file is damaged."""
    at = len(PNG)
    while at < len(png):
        length, kind = struct.unpack_from(">I4s", png, at)
        body = png[at + 8:at + 8 + length]
        if struct.unpack_from(">I", png, at + 8 + length)[0] != zlib.crc32(kind + body):
            raise ValueError(f"has a damaged {kind.decode('latin-1')} chunk")
        yield kind, body
        at += 12 + length


def predictor(kind, left, up, corner):
    """What a row's filter adds to a byte (PNG specification, 9.2)."""
    if kind == 4:
        return min((left, up, corner), key=lambda near: abs(left + up - corner - near))
    return (0, left, up, (left + up) // 2)[kind]


def alpha(png, size):
    """Rows of alpha values; raises ValueError when this is no picture of the size."""
    if not png.startswith(PNG):
        raise ValueError("is no PNG")
    parts = list(chunks(png))
    if parts[:1] != [(b"IHDR", struct.pack(">2I5B", size, size, 8, 6, 0, 0, 0))]:
        raise ValueError(f"is not {size} x {size} RGBA with 8 bits")
    rows = zlib.decompress(b"".join(body for kind, body in parts if kind == b"IDAT"))
    width = 4 * size
    if len(rows) != size * (1 + width):
        raise ValueError("has rows missing")
    above, result = bytes(width), []
    for start in range(0, len(rows), 1 + width):
        row = bytearray(rows[start + 1:start + 1 + width])
        for i in range(width):
            left, corner = (row[i - 4], above[i - 4]) if i >= 4 else (0, 0)
            row[i] = (row[i] + predictor(rows[start], left, above[i], corner)) & 0xFF
        above = row
        result.append(row[3::4])
    return result


def reaches_padding(rows):
    free = int(len(rows) * PADDING)
    frame = rows[:free] + rows[-free:] + [row[:free] + row[-free:] for row in rows]
    return any(any(row) for row in frame)


def problems(found, rendered):
    seen = {}
    for number, (size, drawing) in sorted(expected().items()):
        if number not in found:
            yield f"misses icon resource {number}"
            continue
        try:
            rows = alpha(found[number], size)
        except (ValueError, struct.error, zlib.error) as error:
            yield f"icon resource {number} {error}"
            continue
        if not any(any(row) for row in rows):
            yield f"icon resource {number} is empty"
        elif reaches_padding(rows):
            yield f"icon resource {number} reaches into the padding"
        if found[number] != (rendered / f"{drawing}_{size}.png").read_bytes():
            yield f"icon resource {number} is not the drawing {drawing} in {size} pixels"
        twin = seen.setdefault(found[number], number)
        if twin != number:
            yield f"icon resource {number} is the same picture as {twin}"


def main():
    path = Path(sys.argv[1])
    found = rcdata(path.read_bytes())
    wrong = list(problems(found, Path(sys.argv[2])))
    for problem in wrong:
        print(f"{path.name} {problem}.")
    if not wrong:
        print(f"{path.name}: {len(expected())} icons, {sum(len(found[i]) for i in expected())} bytes.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
