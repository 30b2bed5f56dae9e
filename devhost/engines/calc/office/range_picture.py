"""What a range looks like on the screen, as Calc itself puts it on the clipboard."""

import uno
from com.sun.star.datatransfer import DataFlavor, UnsupportedFlavorException

from office import window_list
from office.com_object import ComError

PNG = DataFlavor("image/png", "PNG", uno.getTypeByName("[]byte"))


def draw(document, area):
    """The bytes of a PNG file. Sheet, selection and what is in view are the user's again afterwards."""
    window = window_list.front_of(document)
    controller = window.controller
    sheet, selection = controller.ActiveSheet, controller.getSelection()
    pane = window_list.scrolling_pane(window)
    row, column = pane.getFirstVisibleRow(), pane.getFirstVisibleColumn()
    elsewhere = sheet.Name != area.Spreadsheet.Name
    try:
        if elsewhere:
            controller.setActiveSheet(area.Spreadsheet)
        controller.select(area)
        return controller.getTransferable().getTransferData(PNG).value
    except UnsupportedFlavorException:
        raise ComError("CopyPicture method of Range class failed") from None
    finally:
        if elsewhere:
            controller.setActiveSheet(sheet)
        controller.select(selection)
        pane.setFirstVisibleRow(row)
        pane.setFirstVisibleColumn(column)
