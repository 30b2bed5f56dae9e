"""What Excel makes of a text that is put into a cell: the same as when it is typed."""

import re

from com.sun.star.util import NotNumericException

from office import calc
from office.com_object import ComError

LONGEST_TEXT = 32767
TEXT_FORMAT = 256  # com.sun.star.util.NumberFormat.TEXT
# A longer text with a digit is no number, date or time.
LONGEST_NUMBER = 40
GENERAL = 0
_DIGIT = re.compile(r"[0-9]")
_NUMBER_LIKE = re.compile(r"^[\s0-9A-Za-z+\-.,:/%$()€£¥]+$")
_WORD = re.compile(r"[A-Za-z]+")
_MONTHS = ("january", "february", "march", "april", "may", "june", "july", "august", "september", "october", "november",
           "december")
# The words that may stand in a number, a date or a time.
_WORDS = {"e", "a", "p", "am", "pm", *_MONTHS, *(month[:3] for month in _MONTHS)}


class Typed:
    """The meaning of a typed text. `kind` is "text", "number", "boolean" or "formula"."""

    def __init__(self, kind, value, number_format=None):
        self.kind = kind
        self.value = value
        self.number_format = number_format


def interpret(document, text, cell_format_is_text):
    """The meaning of `text` in a cell. Raises ComError for a text that Excel does not accept."""
    if len(text) > LONGEST_TEXT:
        raise ComError("The text is too long for a cell.")
    if cell_format_is_text:
        return Typed("text", text)
    if text.startswith("'"):
        return Typed("text", text[1:])
    if text.startswith("=") and len(text) > 1:
        return Typed("formula", text)
    if text.strip().upper() in ("TRUE", "FALSE"):
        return Typed("boolean", text.strip().upper() == "TRUE")
    number = _number(document, text)
    if number:
        return number
    if text[:1] in "+-" and len(text) > 1:
        # A sign opens a formula as "=" does; what follows decides whether it is one.
        return Typed("formula", "=" + text)
    if text.startswith("@") and len(text) > 1:
        raise ComError("That function isn't valid.")
    return Typed("text", text)


def _number(document, text):
    if len(text) > LONGEST_NUMBER or not _DIGIT.search(text) or not _NUMBER_LIKE.match(text):
        return None
    if not all(word.lower() in _WORDS for word in _WORD.findall(text)):
        return None
    formatter = _formatter(document)
    try:
        key = formatter.detectNumberFormat(GENERAL, text)
        return Typed("number", formatter.convertStringToNumber(key, text), key)
    except NotNumericException:
        return None


def _formatter(document):
    state = calc.DocumentState.of(document)
    if state.formatter is None:
        state.formatter = calc.service("com.sun.star.util.NumberFormatter")
        state.formatter.attachNumberFormatsSupplier(document)
    return state.formatter
