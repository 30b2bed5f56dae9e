"""Values as they travel: one JSON line for a request, one for its answer.

null VT_EMPTY, true and false VT_BOOL, a text VT_BSTR, a number with a point VT_R8, without one VT_I4 (VT_I8 when it
needs more); {"null":true} VT_NULL, {"nothing":true} a VT_DISPATCH that holds null, {"missing":true} an argument left
out, {"error":scode}, {"date":serial}, {"picture":"PNG in base64","bitmap":flag,"size":[width,height]} what belongs on the
clipboard (size, in pixels, when only that much from the top left corner is meant), {"image":"file in base64"} an argument
that the client read from there, {"long64":n}, {"object":handle,"type":"Range"}, {"list":[...],"low":n} an array of one
dimension and its lower bound (0 when left out), {"array":[[...]],"rows":n,"columns":n} one of two (lower bounds 1, cells not given are empty).
"""

import base64
import json

from office.com_object import (MISSING, NOTHING, NULL, Array, ComObject, Date, E_INVALIDARG, ErrorValue, HResultError,
                               ImageFile, List, Long64, Picture)


class Handles:
    """The objects that one client holds, by number. 1 is the Application and stays."""

    def __init__(self, application):
        self._objects = {1: application}
        self._next = 2

    def add(self, item):
        handle = self._next
        self._next += 1
        self._objects[handle] = item
        return handle

    def get(self, handle):
        try:
            return self._objects[handle]
        except KeyError:
            raise HResultError(E_INVALIDARG, "no object %r" % handle) from None

    def release(self, handles):
        for handle in handles:
            if handle != 1:
                self._objects.pop(handle, None)

    def __len__(self):
        return len(self._objects)


def decode(value, handles):
    if not isinstance(value, dict):
        return value
    if "object" in value:
        return handles.get(value["object"])
    if "array" in value:
        return Array([[decode(cell, handles) for cell in row] for row in value["array"]])
    if "list" in value:
        return List((decode(item, handles) for item in value["list"]), value.get("low", 0))
    if "error" in value:
        return ErrorValue(value["error"])
    if "date" in value:
        return Date(value["date"])
    if "image" in value:
        return ImageFile(base64.b64decode(value["image"]))
    return NULL if "null" in value else MISSING


def encode_line(answer, handles):
    """One answer as UTF-8 with its line end. A lone surrogate, which UTF-8 cannot hold, becomes a question mark."""

    def encode(value):
        if isinstance(value, ComObject):
            return {"object": handles.add(value), "type": value.TYPE}
        if isinstance(value, Array):
            return {"array": value.rows, "rows": value.row_count, "columns": value.column_count}
        if isinstance(value, ErrorValue):
            return {"error": value.scode}
        if isinstance(value, Date):
            return {"date": value.serial}
        if isinstance(value, Long64):
            return {"long64": value.number}
        if isinstance(value, Picture):
            whole = {"picture": base64.b64encode(value.png).decode(), "bitmap": value.as_bitmap}
            return whole if value.size is None else {**whole, "size": value.size}
        if value is NULL:
            return {"null": True}
        if value is NOTHING:
            return {"nothing": True}
        raise TypeError("%r cannot travel" % type(value))

    line = json.dumps(answer, ensure_ascii=False, separators=(",", ":"), default=encode)
    return line.encode("utf-8", "replace") + b"\n"
