"""Shapes and pictures on LibreOffice: that they are listed, measured, copied and changed as Excel's are."""

import base64
import io
import zipfile

import pytest

from calc_office import cell, refused
from picture_book import PictureBook, png, quarters
from png_reader import Picture

RED, GREEN, BLUE, YELLOW, WHITE = (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0), (255, 255, 255)
PICTURE, GROUP, CHART, LINE, AUTO_SHAPE = 13, 6, 3, 9, 1
SCREEN, BITMAP, METAFILE = 1, 2, -4147
MISSING = {"missing": True}
OUT_OF_BOUNDS = 0x80070057
PHOTO = quarters(40, 20, RED, GREEN, BLUE, YELLOW)
OTHER = quarters(40, 20, WHITE, BLUE, GREEN, RED)


@pytest.fixture
def art(office, tmp_path):
    """A sheet with everything that a scan for pictures may meet."""
    book = PictureBook()
    deep = book.group("Inner", book.picture("Deep", quarters(10, 10, GREEN, GREEN, RED, RED), 60, 150, 40, 40),
                      book.box("Box", "0000FF", 110, 150, 30, 30))
    book.sheet("Art", book.picture("Photo", PHOTO, 50, 40, 30, 15, "what it shows"),
               book.group("Pair", book.picture("Left", OTHER, 10, 150, 40, 40), deep),
               book.chart("Sales", 200, 150, 150, 100, "Art!$B$1:$B$3"),
               book.line("Rule", 10, 220, 100, 1), book.box("Square", "123456", 200, 20, 48, 24), texts=["one", "two"])
    book.sheet("Other", book.picture("Photo", OTHER, 10, 10, 24, 24))
    office.application.Workbooks.call("Open", str(book.save(tmp_path / "art.xlsx")))
    yield office.application.ActiveSheet
    office.engine("close")


@pytest.fixture
def image(tmp_path):
    """Writes an image file and gives its path."""

    def write(content, name="new.png"):
        (tmp_path / name).write_bytes(content)
        return str(tmp_path / name)

    return write


def shape(sheet, name):
    return sheet.Shapes.call("Item", name)


def place(found):
    return [round(length) for length in (found.Left, found.Top, found.Width, found.Height)]


def shown(answer):
    """Size and pixels of a copied picture; what lies beyond its size does not count."""
    picture = Picture(base64.b64decode(answer["picture"]))
    width, height = answer["size"]
    assert picture.width >= width and picture.height >= height
    return (width, height), picture


def copied(found):
    return shown(found.call("CopyPicture", SCREEN, BITMAP))


def corners(found):
    (width, height), picture = copied(found)
    return [picture.at(x, y) for y in (0, height - 1) for x in (0, width - 1)]


def add(sheet, path, left=10, top=20, width=30, height=15):
    return sheet.Shapes.call("AddPicture", path, 0, -1, left, top, width, height)


def test_every_shape_is_listed_with_name_kind_and_place(art):
    found = [art.Shapes.call("Item", number) for number in range(1, art.Shapes.Count + 1)]
    assert [(one.Name, one.Type, place(one)) for one in found] == [
        ("Photo", PICTURE, [50, 40, 30, 15]), ("Pair", GROUP, [10, 150, 130, 40]), ("Sales", CHART, [200, 150, 150, 100]),
        ("Rule", LINE, [10, 220, 100, 1]), ("Square", AUTO_SHAPE, [200, 20, 48, 24])]
    assert [one.HasChart for one in found] == [0, 0, -1, 0, 0]
    assert [one.ZOrderPosition for one in found] == [1, 2, 3, 4, 5]
    assert shape(art, "PHOTO").AlternativeText == "what it shows"
    assert found[2].Chart.Parent.Name == "Sales"
    for index in (0, 6, "Nobody"):
        refused(art.Shapes.call, "Item", index, code=OUT_OF_BOUNDS)


def test_a_group_lists_the_shapes_of_groups_inside_it_in_their_place(art):
    group = shape(art, "Pair")
    found = [group.GroupItems.call("Item", number) for number in range(1, group.GroupItems.Count + 1)]
    assert [(one.Name, one.Type, place(one)) for one in found] == [
        ("Left", PICTURE, [10, 150, 40, 40]), ("Deep", PICTURE, [60, 150, 40, 40]), ("Box", AUTO_SHAPE, [110, 150, 30, 30])]
    assert {one.ParentGroup.Name for one in found} == {"Pair"}
    refused(group.GroupItems.call, "Item", 4, code=OUT_OF_BOUNDS)
    refused(shape(art, "Photo").get, "GroupItems")


def test_a_member_that_goes_leaves_its_group(art):
    items = shape(art, "Pair").GroupItems
    items.call("Item", "Deep").call("Delete")
    assert [items.call("Item", number).Name for number in range(1, items.Count + 1)] == ["Left", "Box"]
    assert art.Shapes.Count == 5


def test_a_copied_picture_shows_its_very_pixels(art):
    """30 by 15 points are 40 by 20 pixels on the screen, which is what this picture has."""
    size, picture = copied(shape(art, "Photo"))
    assert size == (40, 20)
    assert picture.colours(0, 0, 20, 10) == {RED} and picture.colours(20, 0, 40, 10) == {GREEN}
    assert picture.colours(0, 10, 20, 20) == {BLUE} and picture.colours(20, 10, 40, 20) == {YELLOW}


@pytest.mark.parametrize("width, height, pixels", [(120, 60, (160, 80)), (40, 40, (53, 53)), (40.5, 40.1, (54, 53)),
                                                   (1200, 675, (1600, 900))])
def test_a_copied_picture_has_the_size_of_the_screen_and_no_edge_of_its_own(art, image, width, height, pixels):
    added = add(art, image(PHOTO), 7, 9, width, height)
    assert copied(added)[0] == pixels
    assert corners(added) == [RED, GREEN, BLUE, YELLOW]
    added.PictureFormat.put("Contrast", 0.51)
    assert copied(added)[0] == pixels and WHITE not in corners(added)


def test_members_of_groups_whole_groups_shapes_and_charts_can_be_copied(art):
    items = shape(art, "Pair").GroupItems
    assert corners(items.call("Item", "Deep")) == [GREEN, GREEN, RED, RED]
    (width, _), group = copied(shape(art, "Pair"))
    assert width == 173 and [group.at(x, 2) for x in (2, 50, 70, 150)] == [WHITE, BLUE, GREEN, BLUE]
    assert copied(shape(art, "Sales"))[0] == (200, 133)
    (width, height), square = copied(shape(art, "Square"))
    assert (width, height) == (64, 32) and square.colours(0, 0, width, height) == {(0x12, 0x34, 0x56)}


def test_a_picture_is_copied_as_what_was_asked_for(art):
    photo = shape(art, "Photo")
    assert [photo.call("CopyPicture", SCREEN, kind)["bitmap"] for kind in (BITMAP, METAFILE)] == [True, False]
    assert photo.call("CopyPicture")["bitmap"] is False
    assert photo.call("Copy")["bitmap"] is True
    refused(photo.call, "CopyPicture", SCREEN, 7)
    refused(photo.call, "CopyPicture", 0, BITMAP)


def test_copying_leaves_selection_and_sheet(office, art):
    cell(art, "B2").call("Select")
    copied(shape(office.application.Worksheets.get("Item", "Other"), "Photo"))
    assert office.application.Selection.Address == "$B$2"
    assert office.application.ActiveSheet.Name == "Art"


def test_an_added_picture_is_on_top_in_its_place_under_a_name_of_its_own(art, image):
    added = add(art, image(OTHER), 12.25, 33.5, 60, 45)
    assert (added.Name, added.Type, added.ZOrderPosition) == ("Picture 6", PICTURE, 6)
    assert [added.Left, added.Top, added.Width, added.Height] == pytest.approx([12.25, 33.5, 60, 45], abs=0.02)
    natural = add(art, image(OTHER), 0, 0, -1, -1)
    assert natural.Name == "Picture 7" and place(natural) == [0, 0, 30, 15]
    added.call("Delete")
    # The names of the others do not depend on who is there.
    assert [natural.Name, add(art, image(OTHER)).Name] == ["Picture 7", "Picture 8"]
    refused(added.get, "Name", scode=0x800A01A8)
    refused(add, art, image(b"no picture", "text.png"))
    refused(add, art, "/nowhere/at.all")
    refused(art.Shapes.call, "AddPicture", image(OTHER), -1, -1, 0, 0, 10, 10)
    assert art.Shapes.Count == 7


def test_places_are_exact_enough_to_be_put_back(art, image):
    photo = shape(art, "Photo")
    before = [photo.Left, photo.Top, photo.Width, photo.Height]
    # Calc keeps whole hundredths of a millimetre.
    assert all(length * 2540 / 72 == pytest.approx(round(length * 2540 / 72), abs=0.005) for length in before)
    for _ in range(3):
        photo.call("Delete")
        photo = art.Shapes.call("AddPicture", image(PHOTO), 0, -1, *before)
    assert [photo.Left, photo.Top, photo.Width, photo.Height] == before


def test_a_picture_keeps_its_sides_in_proportion_until_that_is_ended(art):
    photo = shape(art, "Photo")
    assert photo.LockAspectRatio == -1 and shape(art, "Square").LockAspectRatio == 0
    photo.put("Width", 60)
    assert place(photo)[2:] == [60, 30]
    photo.put("LockAspectRatio", 0)
    photo.put("Height", 90)
    assert place(photo) == [50, 40, 60, 90]


def test_a_picture_goes_with_its_cell_as_its_placement_says(art, image):
    added = add(art, image(PHOTO), 10, 40)
    assert added.Placement == 2
    for placement, moved in ((2, True), (3, False), (1, True)):
        added.put("Placement", placement)
        before = place(added)
        assert before[2:] == [30, 15]
        cell(art, "1:1").EntireRow.call("Insert")
        assert (place(added)[1] > before[1]) is moved and added.Placement == placement
    refused(added.put, "Placement", 4)


def test_shapes_change_their_order(art):
    photo = shape(art, "Photo")
    for command, position in ((0, 5), (1, 1), (2, 2), (3, 1), (3, 1)):
        photo.call("ZOrder", command)
        assert photo.ZOrderPosition == position
        assert art.Shapes.call("Item", position).Name == "Photo"
    refused(photo.call, "ZOrder", 9)


def test_a_shape_is_filled_with_a_picture_and_saved_with_it(office, art, image, tmp_path):
    square = shape(art, "Square")
    assert square.Fill.Type == 1
    square.Fill.call("UserPicture", image(PHOTO))
    assert square.Fill.Type == 6 and place(square) == [200, 20, 48, 24]
    assert corners(square) == [RED, GREEN, BLUE, YELLOW]
    member = shape(art, "Pair").GroupItems.call("Item", "Box")
    member.Fill.call("UserPicture", image(OTHER))
    assert corners(member) == [WHITE, BLUE, GREEN, RED] and corners(square) == [RED, GREEN, BLUE, YELLOW]
    office.engine("save", path=str(tmp_path / "filled.xlsx"))
    with zipfile.ZipFile(tmp_path / "filled.xlsx") as book:
        assert b"blipFill rotWithShape" in book.read("xl/drawings/drawing1.xml")
    refused(square.Fill.call, "UserPicture", "/nowhere/at.all")
    for name in ("Pair", "Sales"):
        refused(shape(art, name).Fill.call, "UserPicture", image(PHOTO))


def test_a_picture_takes_another_one_neither_as_its_fill_nor_as_its_format(art, image, office):
    photo = shape(art, "Photo")
    photo.Fill.call("UserPicture", image(OTHER))
    assert corners(photo) == [RED, GREEN, BLUE, YELLOW]
    assert photo.PictureFormat.Brightness == 0.5
    assert not {"load", "userpicture", "filename", "insert"} & set(office.members["PictureFormat"])
    assert not {"export"} & set(office.members["Shape"])
    refused(shape(art, "Square").get, "PictureFormat")


def test_a_transparent_picture_is_copied_with_what_shows_through(art, image):
    see_through = png(4, 4, lambda x, y: (255, 0, 0, 255 if x < 2 else 0))
    added = add(art, image(see_through), 300, 20, 30, 30)
    answer = added.call("CopyPicture", SCREEN, BITMAP)
    content = base64.b64decode(answer["picture"])
    assert io.BytesIO(content).read(26)[25] == 6, "the client draws it on white"
    assert Picture(content).at(2, 2) == RED


def test_a_chart_shows_and_exports_what_was_pasted_into_it(art, office, tmp_path):
    chart_object = art.call("ChartObjects").call("Add", 0, 0, 30, 15)
    chart = chart_object.Chart
    refused(chart.call, "Paste")
    pasted = {"image": base64.b64encode(PHOTO).decode()}
    chart.call("Paste", MISSING, pasted)
    path = tmp_path / "chart.png"
    assert chart.call("Export", str(path), "PNG") is True
    picture = Picture(path.read_bytes())
    assert (picture.width, picture.height) == (40, 20)
    assert [picture.at(x, y) for y in (5, 15) for x in (10, 30)] == [RED, GREEN, BLUE, YELLOW]
    refused(chart.call, "Export", str(path), "TGA")
    refused(chart.call, "Paste", MISSING, {"image": base64.b64encode(b"none").decode()})
    chart_object.call("Delete")
    assert art.call("ChartObjects").Count == 1


def test_a_selected_shape_is_told_with_its_kind(office, art):
    office.engine("select", sheet="", address="Photo")
    selected = office.application.Selection
    assert selected.type_name == "Picture" and selected.Name == "Photo"
    assert [selected.ShapeRange.Count, selected.ShapeRange.call("Item", 1).Type] == [1, PICTURE]
    for name, kind in (("Pair", "GroupObject"), ("Sales", "ChartArea"), ("Square", "Rectangle")):
        office.engine("select", sheet="Art", address=name)
        assert office.application.ActiveWindow.Selection.type_name == kind
    office.engine("select", sheet="Other", address="photo")
    assert office.application.ActiveSheet.Name == "Other"
    assert office.application.Selection.ShapeRange.call("Item", "Photo").Parent.Name == "Other"
    office.engine("select", sheet="", address="C3")
    assert office.application.Selection.Address == "$C$3"
    with pytest.raises(Exception, match="neither a cell address nor a shape"):
        office.engine("select", sheet="", address="Nobody")


def test_a_protected_sheet_keeps_its_pictures(art, image):
    art.call("Protect")
    photo = shape(art, "Photo")
    for name, value in (("Left", 1), ("Width", 1), ("Name", "x"), ("AlternativeText", "x"), ("Placement", 1),
                        ("LockAspectRatio", 0)):
        refused(photo.put, name, value)
    refused(photo.call, "Delete")
    refused(photo.call, "ZOrder", 0)
    refused(shape(art, "Square").Fill.call, "UserPicture", image(OTHER))
    refused(add, art, image(OTHER))
    assert corners(photo) == [RED, GREEN, BLUE, YELLOW] and art.Shapes.Count == 5
