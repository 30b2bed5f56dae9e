"""The office process: services, documents, and the host-wide state that Calc has no place for."""

import os
import re

import uno
from com.sun.star.beans import PropertyValue
from com.sun.star.lang import Locale

SPREADSHEET = "com.sun.star.sheet.SpreadsheetDocument"


class Host:
    """State of the one office process, shared by all clients as the windows of one Excel share it."""

    context = None
    desktop = None
    style = "excel"
    display_alerts = True
    screen_updating = True
    enable_events = True
    calculation = -4105
    window_handle = 0x00010010
    # What Application.Hwnd was told to answer; 0 for the active window's.
    application_handle = 0
    # Workbook and window of every document window, from front to back; kept by window_list.
    windows = []
    last_window = 0
    # What happened since the last answer and is worth an event: "window", "sheet", "selection".
    happened = []

    @classmethod
    def reset(cls):
        """As a host that was just started."""
        cls.display_alerts = cls.screen_updating = cls.enable_events = True
        cls.calculation = -4105
        cls.application_handle = 0
        cls.happened = []


def attach(context):
    Host.context = context
    Host.desktop = service("com.sun.star.frame.Desktop")


def service(name, *arguments):
    manager = Host.context.ServiceManager
    if arguments:
        return manager.createInstanceWithArgumentsAndContext(name, arguments, Host.context)
    return manager.createInstanceWithContext(name, Host.context)


def properties(**values):
    return tuple(PropertyValue(Name=name, Value=value) for name, value in values.items())


def english():
    return Locale("en", "US", "")


def note(event):
    if Host.enable_events and event not in Host.happened:
        Host.happened.append(event)


def take_events():
    events, Host.happened = Host.happened, []
    return events


def system_path(path):
    """A path as the add-in sees it: Wine shows the root of the file system as drive Z:."""
    path = path.replace("\\", "/")
    match = re.match(r"^[zZ]:(/.*)$", path)
    return os.path.normpath(match.group(1) if match else path)


def host_path(path):
    return "Z:" + path.replace("/", "\\")


def file_url(path):
    return uno.systemPathToFileUrl(system_path(path))


def is_spreadsheet(component):
    return component is not None and component.supportsService(SPREADSHEET)


def documents():
    # A workbook with several windows is listed once for each.
    found = {}
    components = Host.desktop.Components.createEnumeration()
    while components.hasMoreElements():
        component = components.nextElement()
        if is_spreadsheet(component):
            found[component.RuntimeUID] = component
    # The desktop lists by no promised order; the one of opening is what a host shows.
    return [found[uid] for uid in sorted(found, key=lambda uid: int(re.sub(r"\D", "", uid) or 0))]


class DocumentState:
    """What the model must remember about a document beyond what Calc keeps."""

    _known = {}

    def __init__(self):
        self.format_types = {}
        self.formatter = None
        self.very_hidden = set()
        self.protection_allows = {}
        # Whether the sides of a shape of this name change together, where that was set.
        self.aspect_ratios = {}

    @classmethod
    def of(cls, document):
        uid = document.RuntimeUID
        state = cls._known.get(uid)
        if state is None:
            state = cls._known[uid] = cls()
        return state

    @classmethod
    def forget(cls, document):
        cls._known.pop(document.RuntimeUID, None)


def format_type(document, key):
    """The com.sun.star.util.NumberFormat bits of a format, without the "user-defined" bit."""
    types = DocumentState.of(document).format_types
    if key not in types:
        types[key] = document.NumberFormats.getByKey(key).Type & ~1
    return types[key]
