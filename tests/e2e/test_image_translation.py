"""Translated pictures through the real add-in on LibreOffice: found, taken, replaced and restored, and the file that is saved."""

import base64
import itertools
import json
import re
from typing import NamedTuple

import pytest

from drawing_reader import drawn_pictures
from picture_book import PictureBook, png, quarters
from png_reader import Picture

REPLY = re.compile(r"_onResponse\((.*)\);$", re.S)
PREVIEW = re.compile(r"onImageSelectionPreview\((\{.*\})\)$", re.S)

RED, GREEN, BLUE, YELLOW, WHITE, BLACK = \
    (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0), (255, 255, 255), (0, 0, 0)
# As large as its place on the sheet, 75 by 37.5 points, is on the screen.
SMALL = png(100, 50, lambda x, y: (2 * x, 5 * y, 7 * (x + y) % 256))
LARGE = quarters(160, 90, RED, GREEN, BLUE, YELLOW)
MEMBER = quarters(10, 10, YELLOW, BLUE, RED, GREEN)
TRANSLATED = quarters(30, 20, BLACK, WHITE, GREEN, RED)
CLIPBOARD = "what the user has copied \u4e2d\u6587"


def art_book(path):
    book = PictureBook()
    return book.sheet(
        "Art",
        book.picture("Photo", LARGE, 300, 20, 1200, 675, "a photo"),
        book.box("Square", "123456", 200, 20, 48, 24),
        book.picture("Small", SMALL, 20, 40, 75, 37.5, "a small one"),
        book.group("Pair", book.picture("Member", MEMBER, 20, 200, 60, 30),
                   book.group("Inner", book.box("Frame", MEMBER, 100, 200, 60, 30), book.box("Box", "00FF00", 170, 200, 30, 30))),
        book.chart("Sales", 20, 300, 150, 75, "Art!$B$1:$B$3"),
        book.line("Rule", 20, 250, 100, 1),
        texts=["one", "two"],
    ).sheet("Other", book.picture("Small", MEMBER, 10, 10, 75, 37.5)).save(path)


class Image(NamedTuple):
    size: tuple
    pixels: Picture

    @classmethod
    def of(cls, text):
        picture = Picture(base64.b64decode(text))
        return cls((picture.width, picture.height), picture)

    def corners(self):
        width, height = self.size
        return [self.pixels.at(x, y) for y in (0, height - 1) for x in (0, width - 1)]

    def rows(self):
        width, height = self.size
        return [[self.pixels.at(x, y) for x in range(width)] for y in range(height)]


class Sheet:
    """A host with the pictures' workbook, asked as the page asks."""

    def __init__(self, host):
        self.host = host
        self._numbers = itertools.count(1)

    def ask(self, action, **arguments):
        request = f"image-{next(self._numbers)}"
        self.host.post(action=action, requestId=request, **arguments)
        reply = json.loads(REPLY.search(self.host.wait(f'"requestId":"{request}"')).group(1))
        assert reply["ok"] is True
        return reply["data"]

    def anchors(self, **arguments):
        """The scan's anchors by the pictures' names, without thumbnails."""
        found = self.ask("imageTranslateScan", **arguments)["sheetSummary"][0]["anchors"]
        return {anchor["shapeName"]: {key: value for key, value in anchor.items()
                                      if key not in ("thumbBase64", "width", "height")} for anchor in found}

    def anchor(self, name):
        return self.anchors()[name]

    def extract(self, anchor):
        answer = self.ask("imageTranslateExtract", anchor=anchor)
        image = Image.of(answer["data"])
        assert (answer["ok"], answer["mediaType"]) == (True, "image/png")
        assert (answer["width"], answer["height"]) == image.size
        return image

    def replace(self, anchor, image=TRANSLATED, batch=False):
        return self.ask("imageTranslateReplace", anchor=anchor, imageBase64=base64.b64encode(image).decode(),
                        batchMode=batch)

    def fail(self, member, **how):
        self.host.do("fault", fault={"fail": member, **how})

    def mend(self):
        self.host.do("fault", fault={"clear": True})


@pytest.fixture
def sheet(start_host, tmp_path):
    host = start_host(art_book(tmp_path / "art.xlsx"))
    host.do("clipboard", text=CLIPBOARD)
    yield Sheet(host)
    # Whatever was done, the user's clipboard is what it was.
    assert host.do("clipboard")["text"] == CLIPBOARD


@pytest.fixture
def saved(sheet, tmp_path):
    """Saves, and gives the pictures of the sheet in the file."""

    def read():
        sheet.host.do("save", path=str(tmp_path / "saved.xlsx"))
        return drawn_pictures(tmp_path / "saved.xlsx", "Art")

    return read


def test_a_scan_tells_every_picture_with_its_place_and_a_thumbnail(sheet):
    found = sheet.ask("imageTranslateScan")
    assert (found["ok"], found["count"], found["skippedUnsupported"]) == (True, 5, 3)
    [summary] = found["sheetSummary"]
    assert (summary["sheetName"], summary["count"]) == ("Art", 5)
    assert [(anchor["shapeName"], anchor["shapeIndex"], anchor["childPath"]) for anchor in summary["anchors"]] == [
        ("Photo", 1, []), ("Small", 3, []), ("Member", 4, [1]), ("Frame", 4, [2]), ("Sales", 5, [])]
    for anchor in summary["anchors"]:
        assert list(anchor) == ["v", "host", "kind", "sheetName", "shapeName", "shapeIndex", "childPath", "widthPt",
                                "heightPt", "leftPt", "topPt", "thumbBase64", "width", "height"]
        assert (anchor["host"], anchor["kind"], anchor["sheetName"]) == ("excel", "excel_shape", "Art")
        assert Image.of(anchor["thumbBase64"]).size == (anchor["width"], anchor["height"])
    photo, small, member, frame, _ = summary["anchors"]
    assert [round(photo[key]) for key in ("leftPt", "topPt", "widthPt", "heightPt")] == [300, 20, 1200, 675]
    assert [(one["width"], one["height"]) for one in summary["anchors"]] == [
        (160, 90), (100, 50), (80, 40), (80, 40), (160, 80)]
    assert Image.of(photo["thumbBase64"]).corners() == [RED, GREEN, BLUE, YELLOW]
    assert Image.of(small["thumbBase64"]).rows() == Image((100, 50), Picture(SMALL)).rows()
    for one in (member, frame):
        assert Image.of(one["thumbBase64"]).corners() == [YELLOW, BLUE, RED, GREEN]


def test_counting_tells_the_same_without_the_pictures(sheet):
    counted = {"ok": True, "count": 5, "skippedUnsupported": 3,
               "sheetSummary": [{"sheetName": "Art", "count": 5, "anchors": []}]}
    assert sheet.ask("imageTranslateCount") == counted
    assert sheet.ask("imageTranslateScan", countOnly=True) == counted
    sheet.host.do("sheet", activate="Other")
    assert sheet.ask("imageTranslateCount")["sheetSummary"][0]["sheetName"] == "Other"


def test_what_is_taken_is_what_the_sheet_shows(sheet):
    anchors = sheet.anchors()
    assert sheet.extract(anchors["Small"]).rows() == Image((100, 50), Picture(SMALL)).rows()
    photo = sheet.extract(anchors["Photo"])
    assert photo.size == (1600, 900) and photo.corners() == [RED, GREEN, BLUE, YELLOW]
    for name in ("Member", "Frame"):
        image = sheet.extract(anchors[name])
        assert image.size == (80, 40) and image.corners() == [YELLOW, BLUE, RED, GREEN]
    assert sheet.extract(anchors["Sales"]).size == (200, 100)


def test_a_replaced_picture_keeps_place_size_name_and_order(sheet, saved):
    before = saved()
    answer = sheet.replace(sheet.anchor("Small"))
    assert {key: value for key, value in answer.items() if key != "anchor"} == {"ok": True, "replaced": True, "hasUndo": True}
    assert sheet.anchor("Small") == answer["anchor"]
    replaced = sheet.extract(answer["anchor"])
    assert replaced.size == (100, 50) and replaced.corners() == [BLACK, WHITE, GREEN, RED]
    after = saved()
    assert list(after) == list(before) == ["Photo", "Small", "Member", "Frame"]
    assert after["Small"].place() == before["Small"].place()
    assert after["Small"].description == "a small one"
    assert (after["Small"].image.width, after["Small"].image.height) == (30, 20)
    for name in ("Photo", "Member", "Frame"):
        assert after[name].place() == before[name].place()


def test_an_undo_brings_back_the_very_picture(sheet, saved):
    anchor = sheet.anchor("Small")
    shown, place = sheet.extract(anchor).rows(), saved()["Small"].place()
    replaced = sheet.replace(anchor)["anchor"]
    answer = sheet.ask("imageTranslateUndoReplace", anchor=replaced)
    assert answer["batchMode"] is False and Image.of(answer["imageBase64"]).rows() == shown
    assert sheet.extract(answer["anchor"]).rows() == shown
    kept = saved()["Small"]
    assert kept.place() == place
    assert Image((kept.image.width, kept.image.height), kept.image).rows() == shown
    assert sheet.ask("imageTranslateUndoReplace", anchor=answer["anchor"]) == {"error": "nothing_to_undo"}


def test_replacing_again_and_again_moves_nothing(sheet):
    anchor = first = sheet.anchor("Small")
    for _ in range(4):
        anchor = sheet.replace(anchor)["anchor"]
        anchor = sheet.ask("imageTranslateUndoReplace", anchor=anchor)["anchor"]
    # What belongs at a fraction of Calc's unit stands beside it from the first time on.
    assert [anchor[key] for key in ("leftPt", "topPt", "widthPt", "heightPt")] == pytest.approx(
        [first[key] for key in ("leftPt", "topPt", "widthPt", "heightPt")], abs=0.05)
    assert sheet.extract(anchor).rows() == Image((100, 50), Picture(SMALL)).rows()


def test_a_batch_is_undone_as_a_whole_with_its_very_pictures(sheet, saved):
    anchors = sheet.anchors()
    names = ("Photo", "Small", "Frame")
    shown = {name: sheet.extract(anchors[name]).rows() for name in names}
    places = {name: picture.place() for name, picture in saved().items()}
    for name in names:
        assert sheet.replace(sheet.anchor(name), batch=True)["hasUndo"] is True
    # The same picture twice: the first one of all comes back.
    sheet.replace(sheet.anchor("Small"), MEMBER, batch=True)
    assert sheet.ask("imageTranslateBatchUndo") == {"ok": True, "restored": 4, "failed": 0, "failedReasons": []}
    anchors = sheet.anchors()
    assert {name: sheet.extract(anchors[name]).rows() for name in names} == shown
    assert {name: picture.place() for name, picture in saved().items()} == places
    sheet.replace(anchors["Small"], batch=True)
    assert sheet.ask("imageTranslateClearBatchUndo") == {"ok": True}
    assert sheet.ask("imageTranslateBatchUndo") == {"ok": True, "restored": 0, "failed": 0, "failedReasons": []}


def test_a_picture_that_moved_or_was_renamed_is_not_touched(sheet, saved):
    anchor = sheet.anchor("Small")
    before = saved()
    for change in ({"leftPt": anchor["leftPt"] + 1}, {"heightPt": anchor["heightPt"] - 1}, {"shapeName": "Other"}):
        stale = {**anchor, **change}
        for action in ("imageTranslateExtract", "imageTranslateReplace"):
            more = {"imageBase64": base64.b64encode(TRANSLATED).decode()} if action.endswith("Replace") else {}
            assert sheet.ask(action, anchor=stale, **more) == {"error": "anchor_stale"}
    assert saved() .keys() == before.keys() and saved()["Small"].place() == before["Small"].place()
    # The user moves it: rows come in above, and it goes with its cell once it was replaced.
    placed = sheet.replace(anchor)["anchor"]
    sheet.host.do("insert-rows", sheet="Art", row=1, count=3)
    moved = sheet.anchor("Small")
    if moved["topPt"] != placed["topPt"]:
        assert sheet.ask("imageTranslateExtract", anchor=placed) == {"error": "anchor_stale"}
    assert sheet.extract(moved).corners() == [BLACK, WHITE, GREEN, RED]


def test_a_picture_of_a_sheet_that_is_not_shown_is_not_touched(sheet, saved):
    anchor = sheet.anchor("Small")
    sheet.host.do("sheet", activate="Other")
    assert sheet.ask("imageTranslateExtract", anchor=anchor) == {"error": "sheet_changed"}
    assert sheet.replace(anchor) == {"error": "sheet_changed"}
    assert (saved()["Small"].image.width, saved()["Small"].image.height) == (100, 50)
    sheet.host.do("sheet", activate="Art")
    assert sheet.extract(anchor).size == (100, 50)


def test_a_picture_in_a_group_is_never_deleted(sheet, saved):
    anchors = sheet.anchors()
    shown = sheet.extract(anchors["Member"]).rows()
    before = {name: picture.place() for name, picture in saved().items()}
    assert sheet.replace(anchors["Member"]) == {"error": "replace_failed", "detail": "group_child_inplace_only"}
    assert sheet.anchors() == anchors
    assert sheet.extract(anchors["Member"]).rows() == shown
    assert {name: picture.place() for name, picture in saved().items()} == before


def test_a_filled_shape_in_a_group_takes_the_new_picture_in_its_place(sheet, saved):
    anchor = sheet.anchor("Frame")
    shown = sheet.extract(anchor).rows()
    answer = sheet.replace(anchor)
    assert answer["anchor"] == anchor
    assert sheet.extract(anchor).corners() == [BLACK, WHITE, GREEN, RED]
    assert (saved()["Frame"].kind, saved()["Frame"].image.width) == ("sp", 30)
    assert sheet.ask("imageTranslateUndoReplace", anchor=anchor)["anchor"] == anchor
    assert sheet.extract(anchor).rows() == shown


def test_a_picture_that_cannot_be_copied_is_kept_for_the_undo_by_way_of_a_chart(sheet, saved):
    anchor = sheet.anchor("Small")
    shown = sheet.extract(anchor).rows()
    sheet.fail("Shape.CopyPicture")
    assert sheet.ask("imageTranslateExtract", anchor=anchor) == {"error": "export_failed"}
    assert "thumbBase64" not in sheet.ask("imageTranslateScan")["sheetSummary"][0]["anchors"][0]
    answer = sheet.replace(anchor)
    assert (answer["replaced"], answer["hasUndo"]) == (True, True)
    sheet.mend()
    # The chart is gone again.
    assert list(sheet.anchors()) == ["Photo", "Small", "Member", "Frame", "Sales"]
    restored = sheet.ask("imageTranslateUndoReplace", anchor=answer["anchor"])
    assert sheet.extract(restored["anchor"]).rows() == shown


@pytest.mark.parametrize("member", ["ChartObjects.Add", "Shape.Copy", "Chart.Paste", "Chart.Export"])
def test_a_picture_that_cannot_be_kept_is_replaced_without_an_undo(sheet, saved, member):
    sheet.fail("Shape.CopyPicture")
    sheet.fail(member)
    answer = sheet.replace(sheet.anchor("Small"))
    assert (answer["replaced"], answer["hasUndo"]) == (True, False)
    sheet.mend()
    assert list(sheet.anchors()) == ["Photo", "Small", "Member", "Frame", "Sales"]
    assert sheet.ask("imageTranslateUndoReplace", anchor=answer["anchor"]) == {"error": "nothing_to_undo"}


@pytest.mark.parametrize("member", ["Shapes.AddPicture", "Shape.Delete"])
def test_a_picture_that_cannot_be_replaced_stays_as_it_is(sheet, saved, member):
    anchors = sheet.anchors()
    before = {name: picture.place() for name, picture in saved().items()}
    sheet.fail(member, times=1)
    assert sheet.replace(anchors["Small"]) == {"error": "replace_failed"}
    sheet.mend()
    assert sheet.anchors() == anchors
    assert {name: picture.place() for name, picture in saved().items()} == before
    assert sheet.extract(anchors["Small"]).rows() == Image((100, 50), Picture(SMALL)).rows()


def test_what_is_no_picture_changes_nothing(sheet):
    anchor = sheet.anchor("Small")
    for text in ("!", base64.b64encode(b"text").decode(), base64.b64encode(TRANSLATED[:60]).decode()):
        assert sheet.ask("imageTranslateReplace", anchor=anchor, imageBase64=text) == {"error": "decode_failed"}
    assert sheet.ask("imageTranslateReplace", anchor=anchor) == {"error": "invalid_request"}
    assert sheet.ask("imageTranslateExtract") == {"error": "anchor_required"}
    assert sheet.extract(anchor).rows() == Image((100, 50), Picture(SMALL)).rows()


def test_a_protected_sheet_keeps_its_pictures(sheet):
    anchor = sheet.anchor("Small")
    sheet.host.do("protect", sheet="Art", on=True)
    assert sheet.replace(anchor)["error"] == "replace_failed"
    assert sheet.extract(anchor).rows() == Image((100, 50), Picture(SMALL)).rows()


def selected(sheet):
    sheet.host.post(action="requestImageSelectionPreview")
    return json.loads(PREVIEW.search(sheet.host.wait("onImageSelectionPreview(")).group(1))


def test_the_selected_picture_is_shown_to_the_page(sheet):
    anchors = sheet.anchors()
    assert selected(sheet) == {"scope": "empty"}
    sheet.host.do("select", sheet="Art", address="Photo")
    preview = selected(sheet)
    assert (preview["scope"], preview["anchor"]) == ("shape", anchors["Photo"])
    assert (preview["width"], preview["height"]) == (1600, 900)
    assert Image.of(preview["thumbBase64"]).size == (160, 90)
    # Looking at it, and at all others, has not changed what is selected.
    sheet.ask("imageTranslateScan")
    assert selected(sheet) == preview
    for name in ("Square", "Rule"):
        sheet.host.do("select", sheet="Art", address=name)
        assert selected(sheet) == {"scope": "empty"}
    sheet.host.do("select", sheet="Art", address="B2")
    assert selected(sheet) == {"scope": "empty"}
