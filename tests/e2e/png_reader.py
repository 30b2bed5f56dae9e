"""The pixels of a PNG file of eight bits a channel that is not interlaced, read without any library."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = {0: 1, 2: 3, 4: 2, 6: 4}


class Picture:
    """`at(x, y)` gives the channels of a pixel from the top left corner on."""

    def __init__(self, data):
        assert data.startswith(SIGNATURE)
        chunks = list(_chunks(data))
        header = next(body for kind, body in chunks if kind == b"IHDR")
        self.width, self.height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", header)
        assert (depth, interlaced) == (8, 0)
        self._channels = CHANNELS[colour]
        packed = zlib.decompress(b"".join(body for kind, body in chunks if kind == b"IDAT"))
        self._rows = list(_unfiltered(packed, self.width * self._channels, self._channels))

    def at(self, x, y):
        return tuple(self._rows[y][x * self._channels:(x + 1) * self._channels])[:3]

    def colours(self, left, top, right, bottom):
        return {self.at(x, y) for y in range(top, bottom) for x in range(left, right)}


def _chunks(data):
    at = len(SIGNATURE)
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        yield kind, data[at + 8:at + 8 + length]
        at += length + 12


def _unfiltered(packed, size, step):
    above = bytes(size)
    for at in range(0, len(packed), size + 1):
        kind, row = packed[at], bytearray(packed[at + 1:at + 1 + size])
        for i in range(size):
            left, corner = (row[i - step], above[i - step]) if i >= step else (0, 0)
            row[i] = (row[i] + _predicted(kind, left, above[i], corner)) & 0xFF
        yield row
        above = row


def _predicted(kind, left, up, corner):
    if kind == 3:
        return (left + up) // 2
    if kind == 4:
        estimate = left + up - corner
        return min((abs(estimate - left), 0, left), (abs(estimate - up), 1, up), (abs(estimate - corner), 2, corner))[2]
    return (0, left, up)[kind]
