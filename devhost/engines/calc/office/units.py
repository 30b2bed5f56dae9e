"""Lengths, colours, cell addresses and text positions, between Calc's ways and Excel's."""

import re

MAX_ROWS = 1048576
MAX_COLUMNS = 16384


def points(hundredths):
    """Points of a length in 1/100 mm, on the grid of twentieths of a point that row heights are kept in."""
    return round(hundredths * 1440 / 2540) / 20


def exact_points(hundredths_of_millimetre):
    """Points of a length in 1/100 mm, exact enough that `hundredths` gives it back."""
    return round(hundredths_of_millimetre * 72 / 2540, 4)


def hundredths(length):
    """1/100 mm of a length in points."""
    return round(length * 2540 / 72)


def swap_colour(colour):
    """Red-green-blue to blue-green-red and back."""
    return (colour & 0xFF) << 16 | colour & 0xFF00 | colour >> 16 & 0xFF


def column_letters(column):
    """Letters of a 0-based column."""
    letters = ""
    column += 1
    while column:
        column, rest = divmod(column - 1, 26)
        letters = chr(65 + rest) + letters
    return letters


def column_number(letters):
    """0-based column of its letters."""
    number = 0
    for letter in letters.upper():
        number = number * 26 + ord(letter) - 64
    return number - 1


_CELL = re.compile(r"^\$?([A-Za-z]{1,3})\$?([1-9][0-9]{0,6})$")
_COLUMN = re.compile(r"^\$?([A-Za-z]{1,3})$")
_ROW = re.compile(r"^\$?([1-9][0-9]{0,6})$")


def _corner(text, pattern):
    match = pattern.match(text)
    return match.groups() if match else None


def parse_area(text):
    """(first column, first row, last column, last row), 0-based, of A1, A1:B2, A:B or 1:2; None when it is none."""
    first, colon, second = text.strip().partition(":")
    second = second if colon else first
    cells = [_corner(part.strip(), _CELL) for part in (first, second)]
    if all(cells):
        columns = [column_number(cell[0]) for cell in cells]
        rows = [int(cell[1]) - 1 for cell in cells]
    elif not colon:
        return None
    elif all(parts := [_corner(part.strip(), _COLUMN) for part in (first, second)]):
        columns, rows = [column_number(part[0]) for part in parts], [0, MAX_ROWS - 1]
    elif all(parts := [_corner(part.strip(), _ROW) for part in (first, second)]):
        columns, rows = [0, MAX_COLUMNS - 1], [int(part[0]) - 1 for part in parts]
    else:
        return None
    area = (min(columns), min(rows), max(columns), max(rows))
    return area if area[2] < MAX_COLUMNS and area[3] < MAX_ROWS else None


def utf16_length(text):
    return len(text.encode("utf-16-le", "surrogatepass")) // 2
