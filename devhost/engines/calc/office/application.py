"""The Application object."""

from office import calc, ranges, window_list, windows, workbooks, wps
from office.calc import Host
from office.com_object import (DISP_E_BADINDEX, DISP_E_TYPEMISMATCH, MISSING, NOTHING, ComError, ComObject,
                               HResultError, as_boolean, as_integer)

CALCULATION_MODES = (-4105, -4135, 2)
MANUAL = -4135
US_ENGLISH = 1033

NAMES = {"excel": "Microsoft Excel", "wps": "WPS Spreadsheets"}
VERSIONS = {"excel": "16.0", "wps": "12.0"}
PATHS = {
    "excel": r"C:\Program Files\Microsoft Office\root\Office16",
    "wps": r"C:\Program Files\Kingsoft\WPS Office\12.1.0\office6",
}


class Application(ComObject):
    TYPE = "Application"
    DEFAULT = "Name"

    def get_name(self):
        return NAMES[Host.style]

    def get_version(self):
        return VERSIONS[Host.style]

    def get_build(self):
        return 16731

    def get_path(self):
        return PATHS[Host.style]

    def get_caption(self):
        # WPS names itself, not the document, in its title.
        if wps.is_wps():
            return "WPS Office"
        document = window_list.active_document()
        return workbooks.Workbook(document).get_name() + " - Excel" if document else "Excel"

    def get_hwnd(self):
        if Host.application_handle:
            return Host.application_handle
        # One top-level window a document in Excel, one for all of them in WPS.
        window = None if wps.is_wps() else window_list.front()
        return window_list.handle_of(window) if window else Host.window_handle

    def get_parent(self):
        return self

    def get_workbooks(self):
        return workbooks.Workbooks()

    def get_windows(self):
        return windows.Windows()

    def get_active_workbook(self):
        document = window_list.active_document()
        return workbooks.Workbook(document) if document else NOTHING

    def get_active_window(self):
        window = window_list.front()
        return windows.Window(window) if window else NOTHING

    def get_active_sheet(self):
        document = window_list.active_document()
        return workbooks.Workbook(document).get_active_sheet() if document else NOTHING

    def get_active_cell(self):
        window = window_list.front()
        return windows.Window(window).get_active_cell() if window else NOTHING

    def get_selection(self):
        window = window_list.front()
        return windows.Window(window).get_selection() if window else NOTHING

    def get_worksheets(self):
        return self._require_workbook().get_worksheets()

    def get_sheets(self):
        return self._require_workbook().get_sheets()

    def get_range(self, cell1, cell2=MISSING):
        return self._require_workbook().get_active_sheet().get_range(cell1, cell2)

    def get_cells(self):
        return self._require_workbook().get_active_sheet().get_cells()

    def _require_workbook(self):
        workbook = self.get_active_workbook()
        if workbook is NOTHING:
            raise ComError("There is no active workbook.")
        return workbook

    def get_display_alerts(self):
        return Host.display_alerts

    def put_display_alerts(self, value):
        Host.display_alerts = as_boolean(value)

    def get_enable_events(self):
        return Host.enable_events

    def put_enable_events(self, value):
        Host.enable_events = as_boolean(value)

    def get_screen_updating(self):
        return Host.screen_updating

    def put_screen_updating(self, value):
        Host.screen_updating = as_boolean(value)
        for document in calc.documents():
            if not Host.screen_updating:
                if not document.hasControllersLocked():
                    document.lockControllers()
            else:
                while document.hasControllersLocked():
                    document.unlockControllers()

    def get_calculation(self):
        self._require_workbook()
        return Host.calculation

    def put_calculation(self, value):
        self._require_workbook()
        mode = as_integer(value)
        if mode not in CALCULATION_MODES:
            raise ComError("Unable to set the Calculation property of the Application class")
        Host.calculation = mode
        for document in calc.documents():
            document.enableAutomaticCalculation(mode != MANUAL)

    def call_calculate(self):
        for document in calc.documents():
            document.calculateAll()

    def call_union(self, first, second, *more):
        """All areas of ranges on one sheet, in their order; neighbours are not joined."""
        chosen = [range_ for range_ in (first, second) + more if range_ is not MISSING]
        if not all(isinstance(range_, ranges.Range) for range_ in chosen):
            raise HResultError(DISP_E_TYPEMISMATCH)
        if len({(id(range_.document), range_.sheet.Name) for range_ in chosen}) != 1:
            raise ComError("Method 'Union' of object '_Global' failed")
        return ranges.Range(chosen[0].document, [area for range_ in chosen for area in range_.areas])

    def get_interactive(self):
        return True

    def get_ready(self):
        return True

    def get_visible(self):
        return True

    def get_language_settings(self):
        return LanguageSettings()


class LanguageSettings(ComObject):
    TYPE = "LanguageSettings"

    def get_language_id(self, id_):
        if not 1 <= as_integer(id_) <= 5:
            raise HResultError(DISP_E_BADINDEX)
        return US_ENGLISH
