"""The document windows: which are open, their order from front to back, what each is called.

Every window is a view of its own in the office, so that it keeps its own active sheet, selection and frozen panes.
"""

import time

from com.sun.star.util import URL

from office import calc
from office.calc import Host
from office.com_object import ComError

# The office makes a further view when it gets to it.
NEW_VIEW_LIMIT = 10.0


class OpenWindow:
    """`number` stays the same while the window is open and is never given again."""

    def __init__(self, number, document, controller):
        self.number = number
        self.document = document
        self.controller = controller
        # What Hwnd was told to answer; 0 for a number of our own.
        self.handle = 0
        # Rows and columns that the part that scrolls has room for; None while nobody shows it.
        self.room = None


def from_front():
    """All windows, the active one first."""
    documents = calc.documents()
    alive = {document.RuntimeUID for document in documents}
    Host.windows = [window for window in Host.windows if window[0] in alive]
    known = {uid for uid, _ in Host.windows}
    for document in documents:
        # A window that has just come up is in front, as in Excel.
        if document.RuntimeUID not in known:
            _add(document, document.CurrentController)
    return [window for _, window in Host.windows]


def _add(document, controller):
    Host.last_window += 1
    window = OpenWindow(Host.last_window, document, controller)
    Host.windows.insert(0, (document.RuntimeUID, window))
    return window


def opened():
    """All windows in the order in which they were opened."""
    return sorted(from_front(), key=lambda window: window.number)


def front():
    """The active window, or None."""
    windows = from_front()
    return windows[0] if windows else None


def active_document():
    window = front()
    return window.document if window else None


def of(document):
    """The windows on one workbook in the order in which they were opened."""
    return [window for window in opened() if window.document == document]


def front_of(document):
    """The workbook's window that is nearest the front."""
    return next(window for window in from_front() if window.document == document)


def by_number(number):
    for window in from_front():
        if window.number == number:
            return window
    raise ComError("no such window: %r" % number)


def is_open(window):
    return any(other is window for other in from_front())


def handle_of(window):
    # Without one from outside a number of its own, as every Excel window has.
    return window.handle or Host.window_handle + 2 * opened().index(window)


def activate(window):
    changes = front() is not window
    Host.windows.sort(key=lambda entry: entry[1] is not window)
    if window.document.CurrentController != window.controller:
        window.document.setCurrentController(window.controller)
    frame = window.controller.Frame
    frame.activate()
    Host.desktop.setActiveFrame(frame)
    if changes:
        calc.note("window")


def add(document):
    """One more window on the workbook, active, that begins as a copy of the frontmost one."""
    before = _controllers(document)
    source = front_of(document).controller
    command = URL(Complete=".uno:NewWindow", Main=".uno:NewWindow", Protocol=".uno:", Path="NewWindow")
    source.Frame.queryDispatch(command, "", 0).dispatch(command, ())
    deadline = time.monotonic() + NEW_VIEW_LIMIT
    while time.monotonic() < deadline:
        for controller in _controllers(document):
            if controller not in before:
                controller.setActiveSheet(source.ActiveSheet)
                window = _add(document, controller)
                activate(window)
                calc.note("window")
                return window
        time.sleep(0.005)
    raise ComError("The window could not be opened.")


def _controllers(document):
    found = []
    controllers = document.getControllers()
    while controllers.hasMoreElements():
        found.append(controllers.nextElement())
    return found


def close(window):
    """Closes one of several windows of a workbook."""
    was_front = front() is window
    Host.windows = [entry for entry in Host.windows if entry[1] is not window]
    window.controller.Frame.close(True)
    following = front_of(window.document)
    window.document.setCurrentController(following.controller)
    if was_front:
        settle()


def settle():
    """After the active window has gone: the next one is the active one."""
    window = front()
    if window is not None:
        activate(window)
        calc.note("window")
