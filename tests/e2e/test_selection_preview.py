"""The preview of what is selected: it follows the host's events, counts what a run would translate, and says what is there."""

import re

import pytest

from conftest import save_sheets
from panel_driver import open_signed_in, sentences
from run_driver import argument, display, event, run_from

TEXTS = sentences(70)
SIDE = [12, '=A1&"!"', "  padded  ", "12,5", "two\nlines", None, "漢字 😀"]


@pytest.fixture(scope="module")
def panel(echo_window, tmp_path_factory):
    path = save_sheets({"Sheet": TEXTS, "Side": SIDE}, tmp_path_factory.mktemp("preview") / "book.xlsx")
    return open_signed_in(echo_window(path))


def select(panel, address, sheet="Sheet"):
    """Selects as the user does: the preview that the host's events bring."""
    panel.host.do("select", sheet=sheet, address=address)
    fixed = re.sub(r"([A-Z]+)(\d+)", r"$\1$\2", address)
    return argument(panel.host.wait(f'rangeAddress:"{fixed}"', timeout=10))


def counts(texts, on_sheet=0, in_selection=0):
    """What a preview says of the texts that a run would translate, beside the address and the quick text."""
    return {"fragments": len(texts), "chars": sum(len(text.encode("utf-16-le")) // 2 for text in texts),
            "translatedCellsOnSheet": on_sheet, "translatedCellsInSelection": in_selection}


def without_place(preview):
    return {name: value for name, value in preview.items() if name not in ("rangeAddress", "quickText")}


@pytest.mark.parametrize("sheet, address, texts, quick", [
    ("Sheet", "A1", TEXTS[:1], TEXTS[0]),
    ("Sheet", "A2:B3", TEXTS[1:3], "\n".join(TEXTS[1:3])),
    ("Sheet", "A1:A64", TEXTS[:64], "\n".join(TEXTS[:64])),
    ("Sheet", "A1:A65", TEXTS[:65], None),
    ("Sheet", "A1:A2,A9,C3:D4", [*TEXTS[:2], TEXTS[8]], "\n".join([*TEXTS[:2], TEXTS[8]])),
    ("Side", "A1", [], ""),
    # One cell tells that it is a formula; it is shown, and would not be translated.
    ("Side", "A2", [], "12!"),
    ("Side", "A3:A5", ["  padded", "two"], "padded\n12,5\ntwo\nlines"),
    ("Side", "A6:A7", ["漢字 😀"], "漢字 😀"),
])
def test_what_is_selected_is_counted_and_small_selections_are_quoted(panel, sheet, address, texts, quick):
    preview = select(panel, address, sheet)
    assert without_place(preview) == counts(texts)
    assert preview.get("quickText") == quick


def test_the_page_shows_it_beside_the_selection_choice(panel):
    panel.click("input[name=scope][value=selection]")
    select(panel, "A3:A4")
    panel.wait_for(f"/A3:A4/.test(document.getElementById('preview').innerText.replaceAll('$', ''))")
    panel.wait_for(f"document.getElementById('preview').innerText.includes('{len(TEXTS[2]) + len(TEXTS[3])}')")
    panel.click("input[name=scope][value=full]")


def test_written_cells_are_counted_on_their_sheet_and_in_the_selection(panel):
    host = panel.host
    host.do("select", sheet="Sheet", address="A2:A5")
    run_from(panel, action="startSelection", panelMode="selection")
    assert without_place(select(panel, "A1:A3"))["translatedCellsInSelection"] == 2
    preview = select(panel, "A4,A6:B7")
    assert (preview["translatedCellsOnSheet"], preview["translatedCellsInSelection"]) == (4, 1)
    # A bilingual text counts with its source alone, and is quoted as it stands.
    assert preview["quickText"].startswith(f"{TEXTS[3]}\nES:{TEXTS[3]}\n")
    assert preview["chars"] == sum(len(TEXTS[row]) for row in (3, 5, 6))
    assert without_place(select(panel, "A3", "Side"))["translatedCellsOnSheet"] == 0
    display(host, "original")
    assert without_place(select(panel, "A1:A6")) == counts(TEXTS[:6])


def test_changed_contents_bring_a_new_preview(panel):
    select(panel, "C1")
    panel.host.do("set-cell", sheet="Sheet", address="C1", text="now there is text")
    preview = event(panel.host, "onSelectionPreview", timeout=10)
    assert (preview["fragments"], preview["quickText"]) == (1, "now there is text")


@pytest.mark.parametrize("address, faults", [
    # More cells than a run would take; and a host that does not say what is selected.
    ("A:A", []),
    ("A8:A9", [{"fail": "Window.Selection"}]),
])
def test_a_selection_that_cannot_be_read_is_told_as_such(panel, address, faults):
    for fault in faults:
        panel.host.do("fault", fault=fault)
    try:
        panel.host.do("select", sheet="Sheet", address=address)
        assert event(panel.host, "onSelectionPreview", timeout=10) == {"error": "无法读取选区"}
    finally:
        panel.host.do("fault", fault={"clear": True})
    assert without_place(select(panel, "A2")) == counts(TEXTS[1:2])


def test_a_busy_host_is_left_alone_and_the_next_selection_is_shown(panel):
    panel.host.do("fault", fault={"busy": 1000})
    panel.host.do("select", sheet="Sheet", address="A5")
    panel.host.do("fault", fault={"clear": True})
    assert select(panel, "A6")["quickText"] == TEXTS[5]
