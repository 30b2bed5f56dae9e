"""Sheets (also as Worksheets) and Worksheet."""

import re

from office import calc, charts, ranges, shapes, units, workbooks
from office.calc import DocumentState
from office.com_object import (DISP_E_BADINDEX, DISP_E_TYPEMISMATCH, MISSING, ComError, ComObject, HResultError,
                               as_boolean, as_integer, as_text)

WORKSHEET_TYPE = -4167
VISIBLE, HIDDEN, VERY_HIDDEN = -1, 0, 2
LONGEST_NAME = 31
LONGEST_ADDRESS = 255
BAD_NAME = re.compile(r"[\\/?*\[\]:]|^'|'$")


def require_open_structure(document):
    """Calc lets its API change the sheets of a protected workbook; Excel does not."""
    if document.isProtected():
        raise ComError("Workbook is protected and cannot be changed.")


class Sheets(ComObject):
    TYPE = "Sheets"
    DEFAULT = "Item"

    def __init__(self, document):
        self.document = document

    def get_count(self):
        return self.document.Sheets.Count

    def get_parent(self):
        return workbooks.Workbook(self.document)

    def get_item(self, index):
        found = self.document.Sheets
        if isinstance(index, str):
            for name in found.ElementNames:
                if name.lower() == index.lower():
                    return Worksheet(self.document, found.getByName(name))
        elif 1 <= as_integer(index) <= found.Count:
            return Worksheet(self.document, found.getByIndex(as_integer(index) - 1))
        raise HResultError(DISP_E_BADINDEX)

    def call_add(self, before=MISSING, after=MISSING, count=1, type_=MISSING):
        require_open_structure(self.document)
        given = [sheet for sheet in (before, after) if sheet is not MISSING]
        if len(given) > 1 or not all(isinstance(sheet, Worksheet) for sheet in given):
            raise ComError("Method 'Add' of object 'Sheets' failed")
        found = self.document.Sheets
        position = self.document.CurrentController.ActiveSheet.RangeAddress.Sheet
        if isinstance(before, Worksheet):
            position = before.position()
        elif isinstance(after, Worksheet):
            position = after.position() + 1
        for _ in range(as_integer(count)):
            number = 1
            while found.hasByName("Sheet%d" % number):
                number += 1
            found.insertNewByName("Sheet%d" % number, position)
        added = Worksheet(self.document, found.getByIndex(position))
        added.call_activate()
        return added


class Worksheet(ComObject):
    TYPE = "Worksheet"

    def __init__(self, document, sheet):
        self.document = document
        self.sheet = sheet

    def position(self):
        """0-based place among the sheets."""
        return self.sheet.RangeAddress.Sheet

    def get_name(self):
        return self.sheet.Name

    def put_name(self, value):
        require_open_structure(self.document)
        name = as_text(value)
        taken = any(other.lower() == name.lower() and other != self.sheet.Name
                    for other in self.document.Sheets.ElementNames)
        if not name or units.utf16_length(name) > LONGEST_NAME or BAD_NAME.search(name) or taken:
            raise ComError("That name is already taken or not allowed for a sheet.")
        state = DocumentState.of(self.document)
        if self.sheet.Name in state.very_hidden:
            state.very_hidden.remove(self.sheet.Name)
            state.very_hidden.add(name)
        if self.sheet.Name in state.protection_allows:
            state.protection_allows[name] = state.protection_allows.pop(self.sheet.Name)
        self.sheet.Name = name

    def get_code_name(self):
        return self.sheet.CodeName

    def get_index(self):
        return self.position() + 1

    def get_type(self):
        return WORKSHEET_TYPE

    def get_parent(self):
        return workbooks.Workbook(self.document)

    def get_visible(self):
        if self.sheet.IsVisible:
            return VISIBLE
        return VERY_HIDDEN if self.sheet.Name in DocumentState.of(self.document).very_hidden else HIDDEN

    def put_visible(self, value):
        wanted = as_integer(value)
        if wanted not in (VISIBLE, HIDDEN, VERY_HIDDEN, 1):
            raise ComError("Unable to set the Visible property of the Worksheet class")
        show = wanted in (VISIBLE, 1)
        if not show and self._is_only_visible():
            raise ComError("A workbook must contain at least one visible worksheet.")
        very_hidden = DocumentState.of(self.document).very_hidden
        very_hidden.discard(self.sheet.Name)
        if wanted == VERY_HIDDEN:
            very_hidden.add(self.sheet.Name)
        self.sheet.IsVisible = show

    def _is_only_visible(self):
        return self.sheet.IsVisible and sum(1 for sheet in self.document.Sheets if sheet.IsVisible) == 1

    def get_used_range(self):
        return ranges.Range(self.document, [ranges.used_area(self.sheet)])

    def get_cells(self):
        return ranges.Range(self.document, [self.sheet])

    def get_rows(self):
        return ranges.Range(self.document, [self.sheet], "rows")

    def get_columns(self):
        return ranges.Range(self.document, [self.sheet], "columns")

    def get_range(self, cell1, cell2=MISSING):
        areas = self._areas(cell1)
        if cell2 is not MISSING:
            corners = [area.RangeAddress for area in areas + self._areas(cell2)]
            areas = [
                self.sheet.getCellRangeByPosition(
                    min(c.StartColumn for c in corners), min(c.StartRow for c in corners),
                    max(c.EndColumn for c in corners), max(c.EndRow for c in corners))
            ]
        return ranges.Range(self.document, areas)

    def _areas(self, reference):
        if isinstance(reference, ranges.Range):
            return list(reference.areas)
        if not isinstance(reference, str):
            raise HResultError(DISP_E_TYPEMISMATCH)
        if len(reference) > LONGEST_ADDRESS:
            raise ComError("Method 'Range' of object '_Worksheet' failed")
        parsed = [units.parse_area(part) for part in reference.split(",")]
        if not all(parsed):
            named = self._named_area(reference)
            if named is None:
                raise ComError("Method 'Range' of object '_Worksheet' failed")
            return [named]
        return [self.sheet.getCellRangeByPosition(*area) for area in parsed]

    def _named_area(self, name):
        names = self.document.NamedRanges
        return names.getByName(name).getReferredCells() if names.hasByName(name) else None

    def get_protect_contents(self):
        return bool(self.sheet.isProtected())

    get_protect_drawing_objects = get_protect_contents

    def call_protect(self, password=MISSING, drawing_objects=True, contents=True, scenarios=True,
                     user_interface_only=False, allow_formatting_cells=False, allow_formatting_columns=False,
                     allow_formatting_rows=False):
        if self.sheet.isProtected():
            return
        allowed = {
            "cells": as_boolean(allow_formatting_cells),
            "columns": as_boolean(allow_formatting_columns),
            "rows": as_boolean(allow_formatting_rows),
        }
        DocumentState.of(self.document).protection_allows[self.sheet.Name] = allowed
        self.sheet.protect("" if password is MISSING else as_text(password))

    def call_unprotect(self, password=MISSING):
        if not self.sheet.isProtected():
            return
        try:
            self.sheet.unprotect("" if password is MISSING else as_text(password))
        except Exception:  # pylint: disable=broad-except
            pass
        if self.sheet.isProtected():
            raise ComError("The password you supplied is not correct.")

    def call_activate(self):
        if not self.sheet.IsVisible:
            raise ComError("Activate method of Worksheet class failed")
        controller = self.document.CurrentController
        if controller.ActiveSheet.Name != self.sheet.Name:
            controller.setActiveSheet(self.sheet)
            calc.note("sheet")

    def call_select(self, replace=MISSING):
        self.call_activate()

    def call_delete(self):
        # The host would ask; nobody is here to say yes.
        return self.delete(agreed=not calc.Host.display_alerts)

    def delete(self, agreed):
        """False, and nothing done, unless whoever deletes the sheet has agreed to it."""
        require_open_structure(self.document)
        if self.document.Sheets.Count < 2 or self._is_only_visible():
            raise ComError("A workbook must contain at least one visible worksheet.")
        if agreed:
            self.document.Sheets.removeByName(self.sheet.Name)
        return agreed

    def call_calculate(self):
        self.document.calculate()

    def get_shapes(self):
        return shapes.Shapes(self.document, self.sheet)

    def call_chart_objects(self, index=MISSING):
        found = charts.ChartObjects(self.document, self.sheet)
        return found if index is MISSING else found.call_item(index)
