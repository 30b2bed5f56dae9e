"""Workbooks and Workbook."""

import os
import zipfile

import uno
from com.sun.star.io import IOException
from com.sun.star.util import CloseVetoException

from office import calc, sheets, window_list, windows
from office.calc import Host, properties
from office.com_object import (DISP_E_BADINDEX, MISSING, ComError, ComObject, HResultError, as_boolean, as_integer,
                               as_text)

XLSX = 51
SAVE_FILTERS = {
    XLSX: "Calc MS Excel 2007 XML",
    52: "Calc MS Excel 2007 VBA XML",
    56: "MS Excel 97",
    60: "calc8",
}
ZIPPED = (".xlsx", ".xlsm", ".xltx", ".xltm", ".ods")
COMPOUND = (".xls", ".xlt")
COMPOUND_MAGIC = b"\xd0\xcf\x11\xe0"
BOOLEAN_FORMULAS = {"=TRUE()": 1.0, "=FALSE()": 0.0}
FORMULA_RESULT_VALUE = 1
# com.sun.star.i18n.NumberFormatIndex.BOOLEAN
LOGICAL_INDEX = 48


def open_document(path, read_only=False):
    """Loads a workbook in a window of its own. Calc would take any file for some text; those are refused here."""
    path = calc.system_path(path)
    if not os.path.isfile(path):
        raise ComError("Sorry, we couldn't find %s." % path)
    if not _looks_like_workbook(path):
        raise ComError("%s is not a workbook, or it is damaged." % path)
    document = Host.desktop.loadComponentFromURL(
        uno.systemPathToFileUrl(path), "_blank", 0, properties(MacroExecutionMode=0, ReadOnly=read_only))
    if not calc.is_spreadsheet(document):
        if document is not None:
            document.close(True)
        raise ComError("%s could not be opened as a workbook." % path)
    _restore_boolean_constants(document)
    document.setModified(False)
    if not Host.screen_updating:
        document.lockControllers()
    return document


def _looks_like_workbook(path):
    extension = os.path.splitext(path)[1].lower()
    if extension in ZIPPED:
        return zipfile.is_zipfile(path)
    if extension in COMPOUND:
        with open(path, "rb") as file:
            return file.read(4) == COMPOUND_MAGIC
    return extension == ".csv"


def _restore_boolean_constants(document):
    """Calc reads a boolean constant of an .xlsx as the formula =TRUE(); Excel's model knows it as a value."""
    logical = document.NumberFormats.getFormatIndex(LOGICAL_INDEX, calc.english())
    for sheet in document.Sheets:
        for address in sheet.queryFormulaCells(FORMULA_RESULT_VALUE).RangeAddresses:
            block = sheet.getCellRangeByPosition(address.StartColumn, address.StartRow, address.EndColumn,
                                                 address.EndRow)
            for row, formulas in enumerate(block.FormulaArray):
                for column, formula in enumerate(formulas):
                    if formula in BOOLEAN_FORMULAS:
                        cell = block.getCellByPosition(column, row)
                        cell.Value = BOOLEAN_FORMULAS[formula]
                        cell.NumberFormat = logical


def _shown(document):
    window_list.settle()
    return Workbook(document)


class Workbooks(ComObject):
    TYPE = "Workbooks"
    DEFAULT = "Item"

    def get_count(self):
        return len(calc.documents())

    def get_item(self, index):
        found = [Workbook(document) for document in calc.documents()]
        if isinstance(index, str):
            for workbook in found:
                if workbook.get_name().lower() == index.lower():
                    return workbook
        elif 1 <= as_integer(index) <= len(found):
            return found[as_integer(index) - 1]
        raise HResultError(DISP_E_BADINDEX)

    def call_open(self, filename, update_links=MISSING, read_only=False):
        return _shown(open_document(as_text(filename), as_boolean(read_only)))

    def call_add(self, template=MISSING):
        return _shown(Host.desktop.loadComponentFromURL("private:factory/scalc", "_blank", 0, ()))

    def call_close(self):
        for document in calc.documents():
            Workbook(document).call_close(False)


class Workbook(ComObject):
    TYPE = "Workbook"

    def __init__(self, document):
        self.document = document

    def get_name(self):
        if self.document.URL:
            return os.path.basename(uno.fileUrlToSystemPath(self.document.URL))
        return "Book%s" % (self.document.RuntimeUID or "1")

    def get_full_name(self):
        if self.document.URL:
            return calc.host_path(uno.fileUrlToSystemPath(self.document.URL))
        return self.get_name()

    def get_path(self):
        if self.document.URL:
            return calc.host_path(os.path.dirname(uno.fileUrlToSystemPath(self.document.URL)))
        return ""

    def get_parent(self):
        return self.get_application()

    def get_read_only(self):
        return bool(self.document.isReadonly())

    def get_saved(self):
        return not self.document.isModified()

    def put_saved(self, value):
        self.document.setModified(not as_boolean(value))

    def get_active_sheet(self):
        return sheets.Worksheet(self.document, self.document.CurrentController.ActiveSheet)

    def get_worksheets(self):
        return sheets.Sheets(self.document)

    get_sheets = get_worksheets

    def get_windows(self):
        return windows.Windows(self.document)

    def call_new_window(self):
        return windows.Window(window_list.add(self.document))

    def call_activate(self):
        window_list.activate(window_list.front_of(self.document))

    def call_save(self):
        if not self.document.URL:
            raise ComError("The workbook has no file yet.")
        self.document.store()

    def call_save_as(self, filename, file_format=XLSX):
        path = calc.system_path(as_text(filename))
        self._store(path, self.document.storeAsURL, self._filter(file_format))

    def call_save_copy_as(self, filename):
        path = calc.system_path(as_text(filename))
        if any(document.URL == uno.systemPathToFileUrl(path) for document in calc.documents()):
            raise ComError("%s is open and cannot be written over." % path)
        self._store(path, self.document.storeToURL, self._filter(XLSX))

    @staticmethod
    def _filter(file_format):
        try:
            name = SAVE_FILTERS[as_integer(file_format)]
        except KeyError:
            raise ComError("The file format %r is not supported." % file_format) from None
        return properties(FilterName=name, Overwrite=True)

    @staticmethod
    def _store(path, store, options):
        # Calc would make missing folders.
        if not os.path.isdir(os.path.dirname(path)):
            raise ComError("There is no folder %s." % os.path.dirname(path))
        try:
            store(uno.systemPathToFileUrl(path), options)
        except IOException as error:
            raise ComError("The workbook could not be saved: %s" % error.Message) from None

    def call_close(self, save_changes=MISSING, filename=MISSING):
        if save_changes is not MISSING and as_boolean(save_changes):
            self.call_save()
        was_active = window_list.active_document() == self.document
        calc.DocumentState.forget(self.document)
        try:
            self.document.close(True)
        except CloseVetoException:
            raise ComError("The workbook is in use and cannot be closed.") from None
        if was_active:
            window_list.settle()

    def call_export_as_fixed_format(self, type_, filename):
        path = calc.system_path(as_text(filename))
        self._store(path, self.document.storeToURL, properties(FilterName="calc_pdf_Export"))
