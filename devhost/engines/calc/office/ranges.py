"""Range, put together from its parts, and Areas."""

from office import range_edit, range_geometry
from office.com_object import DISP_E_BADINDEX, ComObject, HResultError, as_integer
from office.range_content import RangeContent
from office.range_edit import RangeEdit
from office.range_format import RangeFormat
from office.range_geometry import RangeGeometry

used_area = range_geometry.used_area
select = range_edit.select


class Range(RangeGeometry, RangeContent, RangeFormat, RangeEdit, ComObject):
    """One or more rectangular areas of a sheet. `kind` is "cells", "rows" or "columns": what Count and Item count."""

    TYPE = "Range"
    DEFAULT = "Item"

    def __init__(self, document, areas, kind="cells"):
        self.document = document
        self.areas = areas
        self.kind = kind

    def get_areas(self):
        return Areas(self)


class Areas(ComObject):
    TYPE = "Areas"
    DEFAULT = "Item"

    def __init__(self, owner):
        self._owner = owner

    def get_count(self):
        return len(self._owner.areas)

    def get_item(self, index):
        number = as_integer(index)
        if not 1 <= number <= len(self._owner.areas):
            raise HResultError(DISP_E_BADINDEX)
        return Range(self._owner.document, [self._owner.areas[number - 1]], self._owner.kind)
