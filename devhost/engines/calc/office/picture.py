"""A picture of a sheet: one page of the used area's size, through PDF."""

import os
import shutil
import subprocess
import tempfile

import uno

from office import calc, range_geometry
from office.com_object import ComError

DOTS_PER_INCH = 110
# A page may not be longer than this, in 1/100 mm; a larger sheet is scaled down to it.
LONGEST_PAGE = 250000
MARGIN = 300
# Room for the row numbers at the left and the column letters at the top, in 1/100 mm.
HEADINGS_WIDTH, HEADINGS_HEIGHT = 1300, 600
CONVERT_LIMIT = 60


def take(document, sheet, path):
    if not shutil.which("pdftoppm"):
        raise ComError("pdftoppm is not installed")
    folder = tempfile.mkdtemp(prefix="qv-shot-")
    try:
        pdf = os.path.join(folder, "sheet.pdf")
        _export(document, sheet, pdf)
        stem = os.path.join(folder, "sheet")
        # "shape" draws the grid as thin as it is meant, which comes out grey.
        command = ["pdftoppm", "-png", "-singlefile", "-thinlinemode", "shape", "-r", str(DOTS_PER_INCH), pdf, stem]
        done = subprocess.run(command, capture_output=True, timeout=CONVERT_LIMIT, check=False)
        if done.returncode or not os.path.exists(stem + ".png"):
            raise ComError("pdftoppm failed: %s" % done.stderr.decode("utf-8", "replace").strip())
        shutil.move(stem + ".png", path)
    except OSError as error:
        raise ComError("the picture could not be written: %s" % error) from None
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def _export(document, sheet, pdf):
    """Prints the sheet on a page made for it, and leaves the document as it was."""
    was_modified = document.isModified()
    style = document.StyleFamilies.getByName("PageStyles").getByName(sheet.PageStyle)
    area = extent(sheet)
    page = _page_settings(area)
    before = {name: style.getPropertyValue(name) for name in page}
    areas_before = sheet.getPrintAreas()
    try:
        for name, value in page.items():
            style.setPropertyValue(name, value)
        sheet.setPrintAreas((area.RangeAddress,))
        selection = uno.Any("com.sun.star.uno.XInterface", area)
        data = uno.Any("[]com.sun.star.beans.PropertyValue",
                       calc.properties(Selection=selection, SinglePageSheets=False))
        document.storeToURL(uno.systemPathToFileUrl(pdf),
                            calc.properties(FilterName="calc_pdf_Export", FilterData=data))
    finally:
        sheet.setPrintAreas(areas_before)
        for name, value in before.items():
            style.setPropertyValue(name, value)
        document.setModified(was_modified)


def extent(sheet):
    """The used area from A1 on, widened to hold the shapes."""
    used = range_geometry.used_area(sheet).RangeAddress
    right, bottom = used.EndColumn, used.EndRow
    page = sheet.DrawPage
    for index in range(page.Count):
        shape = page.getByIndex(index)
        while _edge(sheet, right, bottom).X < shape.Position.X + shape.Size.Width:
            right += 1
        while _edge(sheet, right, bottom).Y < shape.Position.Y + shape.Size.Height:
            bottom += 1
    return sheet.getCellRangeByPosition(0, 0, right, bottom)


def _edge(sheet, column, row):
    cell = sheet.getCellByPosition(column + 1, row + 1)
    return cell.Position


def _page_settings(area):
    width = area.Size.Width + HEADINGS_WIDTH + 2 * MARGIN
    height = area.Size.Height + HEADINGS_HEIGHT + 2 * MARGIN
    return {
        "HeaderIsOn": False,
        "FooterIsOn": False,
        "IsLandscape": width > height,
        "Width": min(width, LONGEST_PAGE),
        "Height": min(height, LONGEST_PAGE),
        "LeftMargin": MARGIN,
        "RightMargin": MARGIN,
        "TopMargin": MARGIN,
        "BottomMargin": MARGIN,
        "CenterHorizontally": False,
        "CenterVertically": False,
        "PrintGrid": True,
        "PrintHeaders": True,
        "ScaleToPagesX": 1,
        "ScaleToPagesY": 1,
    }
