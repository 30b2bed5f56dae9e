"""Protection. Calc lets its API write to locked cells; Excel does not."""

from office.calc import DocumentState
from office.com_object import ComError

REFUSAL = "The cell or chart you're trying to change is on a protected sheet."


def locked_state(cells):
    """True or False when all the cells agree, otherwise None."""
    if cells.getPropertyState("CellProtection").value == "AMBIGUOUS_VALUE":
        return None
    return bool(cells.CellProtection.IsLocked)


def require_content_change(cells):
    """Refuses unless every one of the cells may take a new value."""
    if cells.Spreadsheet.isProtected() and locked_state(cells) is not False:
        raise ComError(REFUSAL)


def require_format_change(sheet, document, what="cells"):
    """Refuses formats on a protected sheet, also of unlocked cells, unless the protection allows them."""
    if sheet.isProtected() and \
            not DocumentState.of(document).protection_allows.get(sheet.Name, {}).get(what, False):
        raise ComError(REFUSAL)


def require_unprotected(sheet):
    if sheet.isProtected():
        raise ComError(REFUSAL)
