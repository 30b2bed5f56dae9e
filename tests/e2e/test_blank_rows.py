"""The ribbon's button that removes blank rows, on LibreOffice: what it asks and tells, and what the saved file then holds."""

import json

import openpyxl
import pytest
from openpyxl.styles import PatternFill
from openpyxl.styles.colors import Color

from book_differences import differences

BUTTON = "btnDeleteBlankRows"
HINT = ("\n\nInside the used range, a row is removed only when every cell is empty and has no formula. A multi-row selection "
        "limits the scan to those rows. A single cell or single row scans the whole used range.")


def make_sheet(path):
    """Rows 2 to 17. Blank are 4; 6 and 7, which is hidden; 9, of several fills; 12 and 13, under a merge of A11:A13; 15."""
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = "Data"
    for row in (2, 3, 5, 8, 10, 11, 14, 16, 17):
        sheet.cell(row, 2, f"row {row}")
        sheet.cell(row, 4, row)
    # A formula that gives an empty text keeps its row; a text of nothing but a blank is content as well.
    sheet["B16"], sheet["D16"] = None, '=IF(D17>0,"","x")'
    sheet["B17"], sheet["D17"] = " ", None
    sheet.row_dimensions[7].hidden = True
    sheet.merge_cells("A11:A13")
    sheet["A11"] = "three rows"
    sheet["B4"].fill = PatternFill("solid", fgColor="FF00B050")
    sheet["B9"].fill = PatternFill("solid", fgColor=Color(theme=5, tint=0.4))
    sheet["C9"].fill = PatternFill("solid", fgColor="FFFFC000")
    sheet["D9"].fill = PatternFill("lightGrid", fgColor="FFFF0000", bgColor="FFFFFFFF")
    sheet["C15"].fill = PatternFill("solid", fgColor="FFFFEB9C")
    book.save(path)
    return path


def changes(before, after):
    """What differs in two files but for heights: Calc fits a row's automatic height anew when its format was touched, and
    then names the row in the file."""
    return [found for found in differences(before, after)
            if "height" not in found.kind and (found.before or False) != (found.after or False)]


def speak(settings, language):
    """The display language, as the user's settings name it."""
    known = json.loads(settings.read_bytes()) if settings.exists() else {}
    settings.write_text(json.dumps({**known, "uiLang": language}))


class Presser:
    """Presses the button in a host, answers what it asks, and looks at the file that the host saves."""

    def __init__(self, host, folder):
        self.host, self._folder, self._saved = host, folder, 0

    def press(self):
        self.host.press(BUTTON)
        return self.host.box()

    def remove(self, answer="Yes"):
        """The question, and the report after it, if there is one."""
        question = self.press()
        assert question["icon"] == "question" and question["buttons"] == ["Yes", "No"]
        self.host.answer(answer)
        return question, self.host.box(timeout=0.5)

    def save(self):
        self._saved += 1
        path = self._folder / f"saved-{self._saved}.xlsx"
        self.host.do("save", path=str(path))
        return path

    def column(self):
        """Column B of the saved file, from the top."""
        return [cell.value for cell in openpyxl.load_workbook(self.save()).active["B"]]


@pytest.fixture
def presser(start_host, settings_file, tmp_path):
    def start(language="en"):
        host = start_host(make_sheet(tmp_path / "rows.xlsx"), "--no-pane")
        speak(settings_file, language)
        return Presser(host, tmp_path)

    return start


LEFT = [None, "row 2", "row 3", "row 5", "row 8", "row 10", "row 11", "row 14", None, " "]
BLANK = 7


def test_a_no_leaves_the_file_as_it_was(presser):
    user = presser()
    user.host.do("select", address="C3")
    before = user.save()
    user.host.do("reset-counters")
    question, report = user.remove("No")
    # The rows were shown, and all that looked at them was little.
    calls = user.host.do("counters")["calls"]
    assert calls["Interior.Color"] > 0 and calls["Range.Select"] == 2
    assert (question["title"], question["text"]) == ("Delete blank rows", f"Found {BLANK} blank rows. Delete them?")
    assert report is None
    assert changes(before, user.save()) == []
    assert user.host.quit()["liveObjects"] == 0


def test_a_yes_removes_exactly_the_blank_rows_and_says_no_more(presser):
    user = presser()
    question, report = user.remove()
    assert question["text"] == f"Found {BLANK} blank rows. Delete them?" and report is None
    saved = user.save()
    sheet = openpyxl.load_workbook(saved).active
    assert [cell.value for cell in sheet["B"]] == LEFT
    assert sheet["D9"].value.startswith("=IF(")
    # The merge has lost the two of its rows, the hidden row is gone, and no fill of the preview is left.
    assert [str(area) for area in sheet.merged_cells.ranges] == []
    assert not any(dimension.hidden for dimension in sheet.row_dimensions.values())
    assert {cell.fill.fill_type for row in sheet for cell in row} == {None}
    # What is left has no blank rows.
    report = user.press()
    assert (report["title"], report["icon"], report["buttons"]) == ("AI Assistant", "information", ["OK"])
    assert report["text"] == "No blank rows were found." + HINT
    user.host.answer("OK")


def test_the_lowest_row_goes_first_and_a_failure_stops_nothing(presser):
    user = presser()
    user.host.do("fault", fault={"fail": "Range.Delete", "after": 1})
    _, report = user.remove()
    assert (report["title"], report["icon"]) == ("AI Assistant", "warning")
    assert report["text"] == "Deleted 1 blank rows.\n6 could not be deleted (the sheet may be protected)."
    user.host.answer("OK")
    user.host.do("fault", fault={"clear": True})
    assert user.host.do("counters")["calls"]["Range.Delete"] == BLANK
    # Row 15 has gone, and all above it is still there.
    column = user.column()
    assert column[:14] == [None, "row 2", "row 3", None, "row 5", None, None, "row 8", None, "row 10", "row 11", None, None,
                           "row 14"]
    assert len(column) == 16


@pytest.mark.parametrize("selection, found, left", [
    ("A3:D7", 3, 14),
    ("B14:B15", 1, 16),
    ("D6:D6", BLANK, 10),
    ("A4,A6:A7", BLANK, 10),
    ("A17:A40", 0, 17),
])
def test_several_selected_rows_are_the_scope(presser, selection, found, left):
    user = presser()
    user.host.do("select", address=selection)
    if found:
        question, report = user.remove()
        assert question["text"] == f"Found {found} blank rows. Delete them?" and report is None
    else:
        assert user.press()["icon"] == "information"
        user.host.answer("OK")
    assert len(user.column()) == left


@pytest.mark.parametrize("language, question, report", [
    ("en", "Found 7 blank rows. Delete them?",
     "Found 7 blank rows, but none were deleted (7 failed).\n\nMake sure the sheet is not protected."),
    ("zh-CN", "找到 7 个空白行。是否删除？", "找到 7 个空白行，但均未删除（7 行失败）。\n\n请确保工作表未受保护。"),
])
def test_a_protected_sheet_stays_as_it_is_in_each_language(presser, language, question, report):
    user = presser(language)
    user.host.do("protect", on=True)
    before = user.save()
    asked, told = user.remove()
    assert asked["text"] == question
    assert (told["text"], told["icon"]) == (report, "warning")
    user.host.answer("OK")
    assert changes(before, user.save()) == []


def test_the_chinese_user_reads_of_nothing_found_and_of_an_unreadable_sheet(presser):
    user = presser("zh-CN")
    user.host.do("select", address="A17:A40")
    report = user.press()
    assert report["text"].startswith("未找到空白行。\n\n") and report["icon"] == "information"
    user.host.answer("OK")
    user.host.do("fault", fault={"busy": 1, "member": "Range.Value2"})
    report = user.press()
    assert (report["text"], report["icon"]) == ("无法解析表格内容。", "error")
    user.host.answer("OK")
