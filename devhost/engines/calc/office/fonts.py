"""Font of cells and of characters in a cell."""

import uno

from office import guards, units
from office.com_object import NULL, ComError, ComObject, as_boolean, as_integer, as_number, as_text

AUTOMATIC_INDEX = -4105
NO_UNDERLINE, SINGLE, DOUBLE, SINGLE_ACCOUNTING, DOUBLE_ACCOUNTING = -4142, 2, -4119, 4, 5
BOLD, NORMAL = 150.0, 100.0
# Weights above this count as bold.
SEMI_BOLD = 110.0
LARGEST_COLOUR = 0xFFFFFF
# Calc keeps the same property three times, for Western, Asian and complex scripts; Excel has one.
SCRIPTS = ("", "Asian", "Complex")


class Font(ComObject):
    """Base: `_values` gives the distinct values of a character property, `_assign` sets it."""

    TYPE = "Font"

    def _values(self, name):
        raise NotImplementedError

    def _assign(self, name, value):
        raise NotImplementedError

    def _common(self, name, translate):
        found = {translate(value) for value in self._values(name)}
        return found.pop() if len(found) == 1 else NULL

    def _assign_all(self, name, value):
        for script in SCRIPTS:
            self._assign(name + script, value)

    def get_name(self):
        return self._common("CharFontName", lambda value: value)

    def put_name(self, value):
        for script in SCRIPTS:
            self._assign("CharFontName" + script, as_text(value))

    def get_size(self):
        return self._common("CharHeight", lambda value: round(float(value), 2))

    def put_size(self, value):
        size = as_number(value)
        if not 1 <= size <= 409:
            raise ComError("Unable to set the Size property of the Font class")
        self._assign_all("CharHeight", size)

    def get_bold(self):
        return self._common("CharWeight", lambda value: value > SEMI_BOLD)

    def put_bold(self, value):
        self._assign_all("CharWeight", BOLD if as_boolean(value) else NORMAL)

    def get_italic(self):
        return self._common("CharPosture", lambda value: value.value != "NONE")

    def put_italic(self, value):
        self._assign_all("CharPosture",
                         uno.Enum("com.sun.star.awt.FontSlant", "ITALIC" if as_boolean(value) else "NONE"))

    def get_underline(self):
        return self._common("CharUnderline", lambda value: {0: NO_UNDERLINE, 2: DOUBLE}.get(value, SINGLE))

    def put_underline(self, value):
        wanted = SINGLE if value is True else NO_UNDERLINE if value is False else as_integer(value)
        lines = {NO_UNDERLINE: 0, SINGLE: 1, SINGLE_ACCOUNTING: 1, DOUBLE: 2, DOUBLE_ACCOUNTING: 2}
        if wanted not in lines:
            raise ComError("Unable to set the Underline property of the Font class")
        self._assign("CharUnderline", lines[wanted])

    def get_strikethrough(self):
        return self._common("CharStrikeout", lambda value: value != 0)

    def put_strikethrough(self, value):
        self._assign("CharStrikeout", 1 if as_boolean(value) else 0)

    def get_color(self):
        # An automatic colour reads as black.
        return self._common("CharColor", lambda value: float(units.swap_colour(max(value, 0))))

    def put_color(self, value):
        colour = as_integer(value)
        if not 0 <= colour <= LARGEST_COLOUR:
            raise ComError("Unable to set the Color property of the Font class")
        self._assign("CharColor", units.swap_colour(colour))

    def get_color_index(self):
        return self._common("CharColor", lambda value: AUTOMATIC_INDEX if value < 0 else 1)

    def put_color_index(self, value):
        if as_integer(value) != AUTOMATIC_INDEX:
            raise ComError("Unable to set the ColorIndex property of the Font class")
        self._assign("CharColor", -1)


class CellFont(Font):
    def __init__(self, owner):
        self._owner = owner

    def _values(self, name):
        if self._owner.is_one_cell() and self._owner.corner().Type.value == "TEXT":
            return text_values(self._owner.corner(), name)
        values = []
        for area in self._owner.areas:
            if area.getPropertyState(name).value == "AMBIGUOUS_VALUE":
                return ()
            values.append(area.getPropertyValue(name))
        return values

    def _assign(self, name, value):
        guards.require_format_change(self._owner.sheet, self._owner.document)
        for area in self._owner.areas:
            area.setPropertyValue(name, value)
        if self._owner.is_one_cell() and is_rich(self._owner.corner()):
            # Formats of single characters would hide the new one.
            cursor = self._owner.corner().createTextCursor()
            cursor.gotoEnd(True)
            cursor.setPropertyValue(name, value)


class CharactersFont(Font):
    def __init__(self, owner):
        self._owner = owner

    def _values(self, name):
        return self._owner.portion_values(name)

    def _assign(self, name, value):
        guards.require_format_change(self._owner.sheet, self._owner.document)
        cursor = self._owner.cursor()
        if cursor is not None:
            cursor.setPropertyValue(name, value)


def portions(cell):
    """(text, portion) of a text cell in order; a line feed between paragraphs belongs to the portion before it."""
    found = []
    paragraphs = cell.createEnumeration()
    while paragraphs.hasMoreElements():
        runs = paragraphs.nextElement().createEnumeration()
        while runs.hasMoreElements():
            run = runs.nextElement()
            found.append([run.String, run])
        if paragraphs.hasMoreElements() and found:
            found[-1][0] += "\n"
    return found


def text_values(cell, name):
    """The distinct values of a character property inside one text cell."""
    values = [run.getPropertyValue(name) for text, run in portions(cell) if text]
    return values or [cell.getPropertyValue(name)]


def is_rich(cell):
    return cell.Type.value == "TEXT" and len(portions(cell)) > 1
