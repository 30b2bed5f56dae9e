#!/usr/bin/python3
"""Makes samples/quarterly-report.xlsx with LibreOffice: the workbook that the demo and the end-to-end tests translate.

The content is fixed; two runs give the same bytes. Usage: make_sample.py [FILE]
"""

import contextlib
import datetime
import re
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

import uno
from com.sun.star.awt import Rectangle
from com.sun.star.awt.FontWeight import BOLD
from com.sun.star.beans import PropertyValue
from com.sun.star.connection import NoConnectException
from com.sun.star.drawing.FillStyle import NONE
from com.sun.star.lang import Locale
from com.sun.star.table import BorderLine2
from com.sun.star.table.CellHoriJustify import CENTER, RIGHT
from com.sun.star.table.CellVertJustify2 import CENTER as MIDDLE

OFFICE = "/usr/lib/libreoffice/program/soffice.bin"
OFFICE_START_SECONDS = 90
# What soffice.bin ends with when a fresh profile wants it to be started again.
RESTART_EXIT_CODE = 81
SAMPLE = Path(__file__).resolve().parent.parent / "samples" / "quarterly-report.xlsx"
FIXED_TIME = "2025-01-15T09:00:00Z"

NAVY, HEADER, PALE, BAND, GREY = 0x1F3864, 0xBDD3EE, 0xDEEAF6, 0xF5F8FC, 0x7F7F7F
GREEN, AMBER, RED, ORANGE = 0xE2EFDA, 0xFFF2CC, 0xFBE0DD, 0xED7D31
STATUS_COLORS = {"On time": GREEN, "Completed": GREEN, "At risk": AMBER, "Delayed": RED, "Not started": None}

OVERVIEW_HEAD = ["Area", "Initiative", "Manager", "Status", "Budget", "Actual", "Variance", "Deadline", "Approved",
                 "Comment"]
OVERVIEW_WIDTHS = [3300, 5600, 3900, 2700, 2600, 2400, 2400, 2500, 2300, 10800]
# area, initiative, responsible, status, budget and actual in thousands, due date, approved, comment
OVERVIEW = [
    ("Sales", "New customer program", "Sales director", "On time", 420, 398.5, "2025-03-31", True,
     "The number of new customers grew for the third month."),
    ("Sales", "Price list review", "Price team", "Completed", 85, 79.2, "2025-01-31", True,
     "The new prices are valid for two years."),
    ("Sales", "Partner network", "Channel manager", "At risk", 260, 284.0, "2025-06-30", True,
     "Two partners have not signed the contract."),
    ("Sales", "Online shop", "Digital team", "Delayed", 540, 611.3, "2025-05-15", False,
     "The payment module needs more tests."),
    ("Production", "Second assembly line", "Plant manager", "On time", 1250, 1190.0, "2025-09-30", True,
     "The machines arrive in the summer."),
    ("Production", "Energy savings", "Facility team", "On time", 310, 287.6, "2025-12-15", True,
     "The consumption fell by 8% compared with last year."),
    ("Production", "Quality control", "Quality manager", "Completed", 140, 138.9, "2025-02-28", True,
     "The error rate is lower than the target."),
    ("Production", "Spare parts warehouse", "Logistics team", "At risk", 375, 402.1, "2025-07-31", True,
     "The rent is higher than expected."),
    ("Development", "New materials", "Development director", "On time", 680, 655.0, "2025-11-30", True,
     "The first samples are in the laboratory."),
    ("Development", "Battery tests", "Test laboratory", "Delayed", 455, 497.8, "2025-08-31", False,
     "The supplier sent the wrong cells."),
    ("Development", "Patent applications", "Legal department", "On time", 95, 61.4, "2025-10-31", True,
     "Four applications are ready; see [[QV_REF_1]] for the list."),
    ("Development", "University projects", "Development director", "Not started", 120, 0, "2025-12-31", False,
     "The contract begins in the autumn."),
    ("Marketing", "Advertising campaign", "Marketing team", "Completed", 230, 241.7, "2025-04-30", True,
     "More visitors than in any other year."),
    ("Marketing", "Trade fair", "Project manager", "On time", 180, 96.3, "2025-06-10", True,
     "The stand is larger than last year."),
    ("Marketing", "Customer survey", "Market studies", "Completed", 45, 43.8, "2025-02-15", True,
     "The answers are positive: nine of ten customers would buy again."),
    ("Marketing", "Website translation", "Content editor", "At risk", 70, 82.5, "2025-05-31", False,
     "Three languages are missing."),
    ("Finance", "Annual closing", "Chief accountant", "Completed", 60, 58.1, "2025-02-10", True,
     "The auditors did not find errors."),
    ("Finance", "Cash planning", "Treasury", "On time", 35, 30.0, "2025-03-15", True,
     "The forecast is updated every week."),
    ("Finance", "Travel policy", "Human resources", "Not started", 20, 0, "2025-09-01", False,
     "Waiting for the decision of the board."),
    ("Finance", "Insurance contracts", "Legal department", "On time", 150, 147.2, "2025-12-31", True,
     "The costs are stable."),
    ("Services", "Support center", "Service manager", "On time", 330, 318.4, "2025-10-15", True,
     "The waiting time is shorter than two minutes."),
    ("Services", "Training for partners", "Training team", "At risk", 110, 126.9, "2025-06-15", True,
     "There are not enough teachers."),
    ("Services", "Repair workshop", "Service manager", "Completed", 205, 198.0, "2025-03-01", True,
     "The new workshop has twenty employees."),
    ("Services", "Mobile application", "Digital team", "Delayed", 390, 428.6, "2025-08-15", False,
     "The second version comes after the summer."),
]

REGIONS_HEAD = ["Region", "Customers", "Main product", "Period 1", "Period 2", "Period 3", "Period 4", "Year", "Percentage",
                "Trend", "Target reached", "Remark"]
REGIONS_WIDTHS = [4000, 3300, 3900, 2300, 2300, 2300, 2300, 2500, 2500, 2300, 3100, 7600]
REGIONS = [
    ("Northern region", "Household", "Heat pumps", 812.4, 790.1, 845.0, 902.3, True, "The winter was long and cold."),
    ("Northern region", "Industry", "Control units", 455.0, 470.2, 468.9, 481.7, True, "Two new factories are customers."),
    ("Northern region", "Public sector", "Street lights", 120.5, 98.7, 130.2, 141.0, False, "The city pays late."),
    ("Southern region", "Household", "Air conditioning", 530.8, 910.4, 1104.6, 488.2, True, "The best summer in ten years."),
    ("Southern region", "Industry", "Water pumps", 388.1, 402.5, 399.0, 375.6, False, "Strong competition from abroad."),
    ("Southern region", "Public sector", "Solar panels", 275.9, 310.3, 342.8, 367.4, True, "All schools have solar panels now."),
    ("Eastern region", "Household", "Heat pumps", 642.2, 598.8, 611.5, 590.4, False, "The subsidy ended in June."),
    ("Eastern region", "Industry", "Control units", 701.3, 742.9, 760.0, 798.5, True, "The order book is full."),
    ("Eastern region", "Public sector", "Electric cars", 88.6, 120.4, 155.1, 203.7, True, "One hundred cars are in use."),
    ("Western region", "Household", "Solar panels", 498.7, 560.2, 602.9, 571.3, True, "The demand is stable."),
    ("Western region", "Industry", "Water pumps", 310.0, 305.8, 322.4, 340.9, True, "The new model sells well."),
    ("Western region", "Public sector", "Street lights", 142.3, 139.9, 151.6, 148.8, False, "Fewer projects than planned."),
    ("Overseas", "Household", "Air conditioning", 201.4, 288.0, 301.2, 240.6, True, "First full year in this market."),
    ("Overseas", "Industry", "Control units", 166.9, 181.3, 190.5, 214.2, True, "The new office has five employees."),
    ("Overseas", "Public sector", "Electric cars", 0, 0, 34.5, 61.8, False, "The sales began in July."),
]

PARAGRAPH = ("This appendix repeats the minutes of the annual meeting so that the workbook holds one cell that is too long "
             "for a single request. ")

# What fits into one line of the text column.
NOTES_LINE_LENGTH = 80
# label, text
NOTES = [
    ("Purpose", "This report shows the results of the year by area and region.\nAll amounts are in thousands of euros.\n"
                "The figures are final."),
    ("Method", "The variance is the budget minus the actual amount.\nA negative variance means that the costs are higher."),
    ("Next steps", "1. Review all projects.\n2. Decide the travel policy.\n3. Prepare the new budget.\n"
                   "4. Inform the regions."),
    ("References", "The lists [[QV_REF_1]] and [[QV_REF_2]] are in the appendix; formula [[QV_FORMULA_3]] explains the "
                   "percentage."),
    ("Contact", "Send questions to controlling@example.com before the end of the month."),
    ("Tokyo office", "東京支店の売上は前年同期比で12%増加しました。"),
    ("Beijing office", "北京分公司第四季度的销售额超过了目标。"),
    ("Seoul office", "서울 사무소는 새로운 고객 세 곳을 확보했습니다."),
    ("Cairo office", "ارتفعت المبيعات في الربع الأخير من السنة."),
    ("Tel Aviv office", "המכירות עלו ברבעון האחרון של השנה."),
    ("Article number", "4711-08/15"),
    ("Phone", "+1 000 555"),
    ("Old amount as text", "12,345.6"),
    ("Special characters", "Prices < 5 $ & > 2 €: 100% \"net\" [gross] {total} ~ 7 * 3 ^ 2 \\ @ # 🚀"),
]

TARGETS = [("Sales growth", 0.06), ("Gross margin", 0.41), ("Energy costs", 0.09), ("Delivery on time", 0.97),
           ("Customer satisfaction", 0.92), ("Employee training", 0.85), ("Error rate", 0.012), ("Development share", 0.11)]

ARCHIVE = [("Old targets", "These targets were replaced in January."), ("Old regions", "The central region was divided."),
           ("Old products", "Oil heaters are not sold any more.")]


def property_value(name, value):
    result = PropertyValue()
    result.Name, result.Value = name, value
    return result


@contextlib.contextmanager
def running_office():
    """A private LibreOffice without a window; gives its desktop and ends it again."""
    with tempfile.TemporaryDirectory() as profile:
        pipe = f"quorvantis-sample-{Path(profile).name}"
        command = [OFFICE, "--headless", "--invisible", "--norestore", "--nologo", "--nodefault", "--nofirststartwizard",
                   f"--accept=pipe,name={pipe};urp;", f"-env:UserInstallation=file://{profile}"]
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL)
        try:
            context = uno.getComponentContext()
            resolver = context.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", context)
            deadline = time.monotonic() + OFFICE_START_SECONDS
            while True:
                try:
                    remote = resolver.resolve(f"uno:pipe,name={pipe};urp;StarOffice.ComponentContext")
                    break
                except NoConnectException:
                    if process.poll() == RESTART_EXIT_CODE:
                        process = subprocess.Popen(command, stdin=subprocess.DEVNULL)
                    elif process.poll() is not None or time.monotonic() > deadline:
                        raise RuntimeError("LibreOffice did not start") from None
                    time.sleep(0.05)
            desktop = remote.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", remote)
            yield desktop
            with contextlib.suppress(Exception):  # the connection breaks with the office's end
                desktop.terminate()
            process.wait(30)
        finally:
            if process.poll() is None:
                process.kill()
                process.wait()


class SheetWriter:
    """Cells of one sheet by 0-based row and column."""

    def __init__(self, document, sheet):
        self._formats, self._locale = document.NumberFormats, Locale()
        self.sheet = sheet

    def range(self, row, column, last_row=None, last_column=None):
        return self.sheet.getCellRangeByPosition(column, row, column if last_column is None else last_column,
                                                 row if last_row is None else last_row)

    def format_key(self, code):
        key = self._formats.queryKey(code, self._locale, False)
        return key if key >= 0 else self._formats.addNew(code, self._locale)

    def put(self, row, column, value, number_format=None, **properties):
        cell = self.sheet.getCellByPosition(column, row)
        if isinstance(value, bool):
            cell.Value, number_format = float(value), "BOOLEAN"
        elif isinstance(value, (int, float)):
            cell.Value = value
        elif isinstance(value, datetime.date):
            cell.Value = (value - datetime.date(1899, 12, 30)).days
            number_format = number_format or "YYYY-MM-DD"
        elif value.startswith("="):
            cell.Formula = value
        else:
            cell.String = value
        if number_format:
            cell.NumberFormat = self.format_key(number_format)
        for name, setting in properties.items():
            setattr(cell, name, setting)
        return cell

    def title(self, text, subtitle, last_column):
        for row, (line, size, color, height) in enumerate(((text, 18, NAVY, 1700), (subtitle, 11, GREY, 1100))):
            area = self.range(row, 0, row, last_column)
            area.merge(True)
            area.HoriJustify, area.VertJustify = CENTER, MIDDLE
            self.put(row, 0, line, CharHeight=size, CharColor=color, CharWeight=BOLD if row == 0 else 100)
            self.height(row, height)

    def header(self, row, names):
        for column, name in enumerate(names):
            self.put(row, column, name)
        area = self.range(row, 0, row, len(names) - 1)
        area.CharWeight, area.CharColor, area.CellBackColor = BOLD, NAVY, HEADER
        area.HoriJustify, area.VertJustify = CENTER, MIDDLE
        self.height(row, 1050)

    def frame(self, first_row, last_row, last_column):
        line = BorderLine2()
        line.Color, line.OuterLineWidth, line.LineWidth = 0xBFBFBF, 18, 18
        area = self.range(first_row, 0, last_row, last_column)
        border = area.TableBorder2
        for side in ("TopLine", "BottomLine", "LeftLine", "RightLine", "HorizontalLine", "VerticalLine"):
            setattr(border, side, line)
            setattr(border, f"Is{side}Valid", True)
        area.TableBorder2 = border
        area.VertJustify = MIDDLE

    def widths(self, widths):
        for column, width in enumerate(widths):
            self.sheet.Columns.getByIndex(column).Width = width

    def height(self, row, height):
        self.sheet.Rows.getByIndex(row).Height = height


def fill_overview(writer):
    writer.widths(OVERVIEW_WIDTHS)
    writer.title("Quarterly report", "Projects and costs by area, in thousands of euros", 9)
    writer.header(3, OVERVIEW_HEAD)
    for i, (area, name, owner, status, budget, actual, due, approved, comment) in enumerate(OVERVIEW):
        row = 4 + i
        for column, value in enumerate((area, name, owner, status)):
            writer.put(row, column, value)
        writer.put(row, 4, budget, "#,##0.0")
        writer.put(row, 5, actual, "#,##0.0")
        writer.put(row, 6, f"=E{row + 1}-F{row + 1}", "#,##0.0;[RED]-#,##0.0")
        writer.put(row, 7, datetime.date.fromisoformat(due))
        writer.put(row, 8, approved, HoriJustify=CENTER)
        writer.put(row, 9, comment, IsTextWrapped=True)
        if i % 2:
            writer.range(row, 0, row, 9).CellBackColor = BAND
        color = STATUS_COLORS[status]
        if color is not None:
            writer.range(row, 3).CellBackColor = color
        writer.height(row, 560)
    last = 4 + len(OVERVIEW) - 1
    total = last + 1
    writer.put(total, 0, "Total")
    for column, letter in ((4, "E"), (5, "F"), (6, "G")):
        writer.put(total, column, f"=SUM({letter}5:{letter}{last + 1})", "#,##0.0;[RED]-#,##0.0")
    writer.put(total, 9, f'=IF(G{total + 1}<0;"The budget is exceeded";"The budget is sufficient")')
    area = writer.range(total, 0, total, 9)
    area.CharWeight, area.CellBackColor = BOLD, PALE
    writer.height(total, 650)
    writer.frame(3, total, 9)

    summary = total + 3
    writer.put(summary - 1, 0, "Costs by area", CharWeight=BOLD, CharColor=NAVY, CharHeight=12)
    writer.header(summary, ["Area", "Budget", "Actual"])
    areas = list(dict.fromkeys(line[0] for line in OVERVIEW))
    for i, area in enumerate(areas):
        row = summary + 1 + i
        writer.put(row, 0, area)
        for column, letter in ((1, "E"), (2, "F")):
            writer.put(row, column, f"=SUMIF($A$5:$A${last + 1};$A{row + 1};{letter}$5:{letter}${last + 1})", "#,##0")
    writer.frame(summary, summary + len(areas), 2)
    add_chart(writer.sheet, writer.range(summary, 0, summary + len(areas), 2).RangeAddress,
              writer.range(summary - 1, 3, summary + 13, 8), "Budget and actual costs by area", "Area",
              "Thousands of euros")


def add_chart(sheet, source, place, title, axis, value_axis):
    frame = Rectangle(place.Position.X + 500, place.Position.Y, place.Size.Width - 500, 7600)
    sheet.Charts.addNewByName("Spending", frame, (source,), True, True)
    chart = sheet.Charts.getByName("Spending").EmbeddedObject
    chart.HasMainTitle = True
    chart.Title.String = title
    chart.Diagram.HasXAxisTitle = chart.Diagram.HasYAxisTitle = True
    chart.Diagram.Wall.FillStyle = NONE
    for row, color in enumerate((NAVY, ORANGE)):
        chart.Diagram.getDataRowProperties(row).FillColor = color
    chart.Diagram.XAxisTitle.String, chart.Diagram.YAxisTitle.String = axis, value_axis


def fill_regions(writer):
    writer.widths(REGIONS_WIDTHS)
    writer.title("Sales by region", "Net sales of the year, in thousands of euros", 11)
    writer.header(3, REGIONS_HEAD)
    last = 4 + len(REGIONS) - 1
    for i, (region, market, product, *quarters, met, remark) in enumerate(REGIONS):
        row = 4 + i
        for column, value in enumerate((region, market, product, *quarters)):
            writer.put(row, column, value, "#,##0.0" if column > 2 else None)
        writer.put(row, 7, f"=SUM(D{row + 1}:G{row + 1})", "#,##0.0", CharWeight=BOLD)
        writer.put(row, 8, f"=H{row + 1}/H${last + 2}", "0.0%")
        writer.put(row, 9, f'=IF(G{row + 1}>D{row + 1};"Rising";"Falling")', HoriJustify=CENTER)
        writer.put(row, 10, met, HoriJustify=CENTER)
        writer.put(row, 11, remark)
        if i % 2:
            writer.range(row, 0, row, 11).CellBackColor = BAND
        writer.height(row, 560)
    total = last + 1
    writer.put(total, 0, "All regions")
    for column, letter in enumerate("DEFGH", 3):
        writer.put(total, column, f"=SUM({letter}5:{letter}{last + 1})", "#,##0.0")
    writer.put(total, 8, f"=H{total + 1}/H${total + 1}", "0.0%")
    area = writer.range(total, 0, total, 11)
    area.CharWeight, area.CellBackColor = BOLD, PALE
    writer.height(total, 650)
    writer.frame(3, total, 11)

    for i, (label, formula) in enumerate((("Growth without a first period", f"=G{last + 1}/D{last + 1}"),
                                          ("Budget of the old region", "=NA()"),
                                          ("Exchange rate", '="n/a"*1'))):
        writer.put(total + 2 + i, 0, label, CharColor=GREY)
        writer.put(total + 2 + i, 3, formula, HoriJustify=RIGHT)


def fill_notes(writer):
    writer.widths([4600, 13500, 7000])
    writer.title("Notes", "Explanations for the readers of this report", 2)
    writer.header(3, ["Topic", "Text", "Status"])
    row = 4
    for label, text in NOTES:
        writer.put(row, 0, label, CharWeight=BOLD)
        cell = writer.put(row, 1, text, IsTextWrapped=True)
        if text[0] in "اה":
            cell.HoriJustify = RIGHT
        writer.put(row, 2, "Open" if label == "Next steps" else "Reviewed")
        lines = sum(1 + len(line) // NOTES_LINE_LENGTH for line in text.split("\n"))
        writer.height(row, 480 * lines + 160)
        row += 1

    cell = writer.put(row, 1, "")
    cursor = cell.createTextCursor()
    for part, bold in (("Important: ", True), ("the second half of this line is ", False), ("bold", True), (".", False)):
        cursor.CharWeight = BOLD if bold else 100
        cell.insertString(cursor, part, False)
    writer.put(row, 0, "Rich text", CharWeight=BOLD)
    number = 5 + [label for label, _ in NOTES].index("Article number")
    writer.put(row, 2, f'=IF(B{number}="4711-08/15";"Old numbering";"New numbering")')
    row += 1

    writer.put(row, 0, "Appendix", CharWeight=BOLD)
    writer.put(row, 1, (PARAGRAPH * 160)[:20500].strip(), IsTextWrapped=False)
    # A neighbour with text keeps the long line inside its cell.
    writer.put(row, 2, "Larger than one request")
    writer.height(row, 640)
    writer.frame(3, row, 2)


def fill_targets(writer):
    writer.widths([6500, 3200, 8000])
    writer.title("Targets", "Only the column with the estimates can be changed", 2)
    writer.header(3, ["Target", "Value", "Estimate of the area"])
    for i, (name, value) in enumerate(TARGETS):
        row = 4 + i
        writer.put(row, 0, name)
        writer.put(row, 1, value, "0.0%")
        cell = writer.put(row, 2, "We expect to reach the target." if i % 3 else "Write your estimate here.")
        protection = cell.CellProtection
        protection.IsLocked = False
        cell.CellProtection = protection
        cell.CellBackColor = AMBER
        writer.height(row, 560)
    writer.frame(3, 3 + len(TARGETS), 2)
    writer.sheet.protect("")


def fill_archive(writer):
    writer.widths([4500, 9000])
    writer.header(0, ["Topic", "Reason"])
    for i, line in enumerate(ARCHIVE):
        for column, text in enumerate(line):
            writer.put(1 + i, column, text)
    writer.sheet.IsVisible = False


SHEETS = {"Overview": fill_overview, "Regions": fill_regions, "Notes": fill_notes, "Targets": fill_targets,
          "Archive": fill_archive}
FROZEN_ROWS = {"Overview": 4, "Regions": 4}


def make_workbook(desktop, path):
    document = desktop.loadComponentFromURL("private:factory/scalc", "_blank", 0, ())
    style = document.StyleFamilies.getByName("CellStyles").getByName("Default")
    style.CharFontName, style.CharHeight, style.CharFontNameAsian = "Calibri", 11, "WenQuanYi Micro Hei"
    document.Sheets.getByIndex(0).Name = next(iter(SHEETS))
    for index, name in enumerate(SHEETS):
        if index:
            document.Sheets.insertNewByName(name, index)
        SHEETS[name](SheetWriter(document, document.Sheets.getByName(name)))
    page = document.StyleFamilies.getByName("PageStyles").getByName("Default")
    page.IsLandscape, page.Width, page.Height = True, 29700, 21000
    page.HeaderIsOn = page.FooterIsOn = False
    page.ScaleToPagesX = page.ScaleToPagesY = 1
    view = document.CurrentController
    for name, rows in FROZEN_ROWS.items():
        view.setActiveSheet(document.Sheets.getByName(name))
        view.freezeAtPosition(0, rows)
    view.setActiveSheet(document.Sheets.getByIndex(0))
    document.storeAsURL(path.as_uri(), (property_value("FilterName", "Calc MS Excel 2007 XML"),))
    document.close(True)


def with_numbered_axes(chart):
    """The chart's XML with its axes, which LibreOffice names at random, numbered from 1."""
    names = list(dict.fromkeys(re.findall(rb'<c:axId val="(\d+)"/>', chart)))
    return re.sub(rb'(?<=<c:axId val=")\d+|(?<=<c:crossAx val=")\d+',
                  lambda found: str(names.index(found[0]) + 1).encode(), chart)


def write_reproducibly(source, target):
    """Copies the package without what differs from run to run: times and random names."""
    with zipfile.ZipFile(source) as package, zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as copy:
        for name in package.namelist():
            data = package.read(name)
            if name == "docProps/core.xml":
                data = re.sub(rb"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", FIXED_TIME.encode(), data)
            if name.startswith("xl/charts/"):
                data = with_numbered_axes(data)
            entry = zipfile.ZipInfo(name, (2025, 1, 15, 9, 0, 0))
            entry.compress_type, entry.external_attr = zipfile.ZIP_DEFLATED, 0o644 << 16
            copy.writestr(entry, data)


def main():
    target = Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else SAMPLE
    target.parent.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder, running_office() as desktop:
        fresh = Path(folder) / "fresh.xlsx"
        make_workbook(desktop, fresh)
        write_reproducibly(fresh, target)


if __name__ == "__main__":
    main()
