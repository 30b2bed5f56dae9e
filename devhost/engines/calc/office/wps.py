"""Where WPS Spreadsheets differs from Excel, as far as the differences matter to an add-in."""

from office.calc import Host
from office.com_object import DISP_E_MEMBERNOTFOUND, HResultError, plain_name

# Members of Excel that WPS does not have; the object model there ends with Excel 2013's.
ABSENT = {
    ("Range", "countlarge"),
    ("Application", "ready"),
    ("Application", "interactive"),
}

# Collections whose Item answers only when it is called, not when it is read as a property.
ITEM_IS_METHOD = {"Workbooks", "Sheets", "Windows"}


def is_wps():
    return Host.style == "wps"


def offers(type_name, member):
    return not (is_wps() and (type_name, plain_name(member)) in ABSENT)


def check_kind(type_name, member, kind):
    """Refuses the calls that WPS refuses. Excel takes a property read and a method call alike."""
    if is_wps() and kind == "get" and type_name in ITEM_IS_METHOD and plain_name(member) in ("item", "default"):
        raise HResultError(DISP_E_MEMBERNOTFOUND, member)
