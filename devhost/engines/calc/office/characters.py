"""Characters: a part of one cell's text."""

from office import fonts, guards, units
from office.com_object import ComError, ComObject, as_text


class Characters(ComObject):
    """Positions are 1-based and count UTF-16 units; what reaches beyond the text is cut."""

    TYPE = "Characters"

    def __init__(self, owner, start, length):
        if not owner.is_one_cell():
            raise ComError("Unable to get the Characters property of the Range class")
        self._cell = owner.corner()
        self.document = owner.document
        self.sheet = owner.sheet
        self._start = max(start, 1)
        self._length = length

    def _bounds(self):
        """0-based start and length within the text as it is now."""
        total = units.utf16_length(self._cell.String)
        start = min(self._start - 1, total)
        length = total - start if self._length is None else max(0, min(self._length, total - start))
        return start, length

    def cursor(self):
        """A text cursor over the part; None when it is empty or the cell holds no text of its own."""
        start, length = self._bounds()
        if not length:
            return None
        if self._cell.Type.value != "TEXT":
            # Excel formats single characters of constant texts only.
            raise ComError("Unable to format the characters of this cell")
        cursor = self._cell.createTextCursor()
        cursor.gotoStart(False)
        _go_right(cursor, start, False)
        _go_right(cursor, length, True)
        return cursor

    def portion_values(self, name):
        start, length = self._bounds()
        if self._cell.Type.value != "TEXT":
            return [self._cell.getPropertyValue(name)]
        values = []
        position = 0
        for text, run in fonts.portions(self._cell):
            end = position + units.utf16_length(text)
            if position < start + max(length, 1) and end > start:
                values.append(run.getPropertyValue(name))
            position = end
        return values or [self._cell.getPropertyValue(name)]

    def get_parent(self):
        from office import ranges
        return ranges.Range(self.document, [self._cell])

    def get_text(self):
        start, length = self._bounds()
        text = self._cell.String.encode("utf-16-le", "surrogatepass")
        return text[2 * start:2 * (start + length)].decode("utf-16-le", "replace")

    def put_text(self, value):
        guards.require_content_change(self._cell)
        cursor = self.cursor()
        if cursor is not None:
            cursor.setString(as_text(value))

    get_caption, put_caption = get_text, put_text

    def get_count(self):
        return self._bounds()[1]

    def get_font(self):
        return fonts.CharactersFont(self)

    def call_delete(self):
        self.put_text("")
        return True


def _go_right(cursor, count, expand):
    # One step takes at most a 16-bit number.
    while count > 0:
        step = min(count, 0x7FFF)
        cursor.goRight(step, expand)
        count -= step
