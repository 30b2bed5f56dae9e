"""Forms through the real add-in on LibreOffice: scanned, filled in and taken back; the saved files are compared."""

import datetime

import openpyxl
import pytest
from openpyxl.styles import Border, Protection, Side

from book_differences import differences
from conftest import hosts_with
from panel import wait_until
from panel_driver import open_signed_in
from tool_driver import ToolDriver

LINE = Border(*(Side(style="thin"),) * 4)
ROWS, COLUMNS = 500, 400

# Address: kind and label.
FIELDS = {
    "A3": ("empty", "Name"), "B3": ("empty", "Birth date"), "C3": ("empty", "Remark"),
    "B5": ("empty", "Postal code"),
    "B6": ("example_placeholder", "E-mail"), "B7": ("example_placeholder", "姓名"),
    "B8": ("example_placeholder", "Phone"),
    "B9": ("underline_placeholder", "Signature"), "C9": ("underline_placeholder", ""),
    "B12": ("empty", "Address"), "B17": ("empty", "Town"),
}
# What is filled in, and what a reader of the file then finds.
FILLED = {
    "A3": ("Ann Example", "Ann Example"), "B3": ("1990-05-06", datetime.datetime(1990, 5, 6)), "C3": ("12.5", 12.5),
    "B5": ("01067", "01067"), "B6": ("ann@example.com", "ann@example.com"), "B7": ("李四", "李四"),
    "B8": ("+49 351 123", "+49 351 123"), "B9": ("110101199003077758", "110101199003077758"),
    "B12": ("1 Long Road\nSecond floor", "1 Long Road\nSecond floor"), "B17": ("=\"Dres\"&\"den\"", '="Dres"&"den"'),
}


def make_form(path):
    book = openpyxl.Workbook()
    form = book.active
    form.title = "Form"
    texts = {
        "A1": "REGISTRATION", "A2": "Name", "B2": "Birth date", "C2": "Remark",
        "A5": "Postal code", "C5": "*", "A6": "E-mail", "B6": "e.g.: ann@example.com", "A7": "姓名", "B7": "示例：张三",
        "A8": "Phone", "B8": " E.G.: 0170 ", "A9": "Signature", "B9": "_____ _____", "C9": "— —",
        "A10": "Sum", "B10": "=SUM(E1:E2)", "A11": "Shows nothing", "B11": '=IF(E1=1,"x","")', "A12": "Address",
        "A13": 5, "A14": "-", "A15": "Not seen", "A16": "A text of its own", "B16": "____ (date)", "C16": "*", "A17": "Town",
        "C17": "*", "E1": 1.5, "E2": 2,
    }
    for address, text in texts.items():
        form[address] = text
    for row in form["A3:C3"]:
        for cell in row:
            cell.border = LINE
    form.merge_cells("A1:C1")
    form.merge_cells("B12:C14")
    form.row_dimensions[15].hidden = True
    form.column_dimensions["D"].hidden = True
    locked = book.create_sheet("Locked")
    for row, label in enumerate(("Open", "Shut", "Open too"), 1):
        locked.append([label, None, "*"])
        locked.cell(row, 2).protection = Protection(locked=label == "Shut")
    locked.protection.sheet = True
    book.save(path)
    return path


@pytest.fixture
def ask(start_host, tmp_path):
    return ToolDriver(start_host(make_form(tmp_path / "form.xlsx")))


def found(scan):
    return {field["address"]: (field["kind"], field["label"]) for field in scan["fields"]}


def fill(address, value, action="fill"):
    row, column = openpyxl.utils.cell.coordinate_to_tuple(address)
    return {"row": row, "col": column, "action": action, "value": value, "confidence": 0.9}


def save(ask, path):
    ask.host.do("save", path=str(path))
    return path


def changes(before, after):
    """All but what the office does by itself: rows grow with their text, a default alignment is spelled out."""
    return [change for change in differences(before, after)
            if "height" not in change.kind and (change.kind, change.after) != ("alignment", ("general", "bottom"))]


def test_a_form_is_scanned_filled_in_and_taken_back(ask, tmp_path):
    before = save(ask, tmp_path / "before.xlsx")
    scan = ask("autofillScan")
    assert found(scan) == FIELDS
    assert scan["usedRange"] == {"rows": 17, "cols": 5, "row0": 1, "col0": 1}
    phone = next(field for field in scan["fields"] if field["address"] == "B8")
    assert phone["currentValue"] == " E.G.: 0170 " and phone["placeholderText"] == "E.G.: 0170"
    assert phone["context"] == {"left": "Phone", "above": "示例：张三", "rowText": "Phone | E.G.: 0170"}

    fills = [fill(address, value) for address, (value, _) in FILLED.items()]
    # A formula, a clearing, and what changes nothing.
    fills += [fill("B10", "0"), fill("C9", "", "clear"), fill("A16", "x", "FILL"), fill("C13", "unseen")]
    result = ask("autofillApply", fills=fills)
    statuses = [item["status"] for item in result["results"]]
    assert statuses == ["applied"] * (len(FILLED) + 2) + ["skipped", "failed"]
    assert result["applied"] == len(FILLED) + 2
    after = save(ask, tmp_path / "after.xlsx")
    sheet = openpyxl.load_workbook(after)["Form"]
    assert {address: sheet[address].value for address in FILLED} == {key: value for key, (_, value) in FILLED.items()}
    assert (sheet["B10"].value, sheet["C9"].value) == (0, None)
    changed = {(change.sheet, change.place) for change in changes(before, after)}
    assert changed == {("Form", address) for address in (*FILLED, "B10", "C9")}

    assert ask("autofillUndo") == {"restored": len(FILLED) + 2}
    assert changes(before, save(ask, tmp_path / "undone.xlsx")) == []
    assert found(ask("autofillScan")) == FIELDS
    assert ask("autofillUndo") == {"restored": 0}


def test_locked_cells_of_a_protected_sheet_are_left_alone(ask, tmp_path):
    ask.host.do("sheet", activate="Locked")
    before = save(ask, tmp_path / "before.xlsx")
    assert found(ask("autofillScan")) == {"B1": ("empty", "Open"), "B3": ("empty", "Open too")}
    result = ask("autofillApply", fills=[fill(f"B{row}", "filled") for row in (1, 2, 3)])
    assert [item["status"] for item in result["results"]] == ["applied", "skipped", "applied"]
    after = save(ask, tmp_path / "after.xlsx")
    values = {(change.place, change.after) for change in changes(before, after) if change.kind == "value"}
    assert values == {("B1", "filled"), ("B3", "filled")}
    # The user has gone on to another sheet.
    ask.host.do("sheet", activate="Form")
    assert ask("autofillUndo") == {"restored": 2}
    assert changes(before, save(ask, tmp_path / "undone.xlsx")) == []


def test_two_hundred_thousand_cells_are_scanned_and_no_more(start_host, tmp_path):
    book = openpyxl.Workbook()
    for row in range(1, ROWS + 1):
        book.active.cell(row, 2, f"Label {row}")
    book.active["A1"] = book.active.cell(ROWS, COLUMNS).value = 1
    book.save(tmp_path / "large.xlsx")
    ask = ToolDriver(start_host(tmp_path / "large.xlsx"))
    scan = ask("autofillScan")
    assert found(scan) == {f"C{row}": ("empty", f"Label {row}") for row in range(1, ROWS + 1)}
    assert (scan["usedRange"]["rows"], scan["usedRange"]["cols"]) == (ROWS, COLUMNS)
    ask.host.do("set-cell", address="OK500", text="1")
    assert ask("autofillScan") == \
        {"fields": [], "scanUnavailable": True, "scanError": "已用区域过大，请缩小填写范围"}


def test_the_chat_proposes_the_user_chooses_and_undo_takes_it_back(model_service, settings_file, tmp_path, start_model):
    with hosts_with(model_service, tmp_path, "--window", "--browser", "chromium") as start:
        host = start(make_form(tmp_path / "form.xlsx"))
        panel = open_signed_in(host)
        host.do("press", button="btnAiChat")
        panel.wait_for_page("chat")
        fills = [fill("B7", "李四"), fill("B9", "Ann Example"), {**fill("B12", "1 Long Road"), "confidence": 0.2},
                 fill("B10", "99")]
        start_model([{"call": "proposeFills", "arguments": {"fills": fills}}], [{"say": "Filled in as you chose."}])
        before = {address: host.cell("Form", address) for address in ("B7", "B9", "B10", "B12")}
        panel.click("#fill-form")
        panel.wait_for("document.querySelectorAll('.proposals li').length === 3", 60)
        assert panel.value("[...document.querySelectorAll('.proposals li input')].map((box) => box.checked)") == \
            [True, True, False]
        assert {address: host.cell("Form", address) for address in before} == before, "nothing without a yes"
        panel.click(".proposals li:nth-child(2) input")
        panel.click(".proposals li:nth-child(3) input")
        panel.click(".question .primary")
        panel.wait_for("document.getElementById('turns').innerText.includes('Filled in as you chose.')", 60)
        assert [host.cell("Form", address)["value"] for address in before] == \
            ["李四", before["B9"]["value"], before["B10"]["value"], "1 Long Road"]
        panel.click(".call-foot button")
        wait_until(host, lambda: host.cell("Form", "B12")["value"] == before["B12"]["value"], "the form as it was")
        assert host.cell("Form", "B7")["value"] == before["B7"]["value"]
