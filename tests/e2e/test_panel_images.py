"""The page for pictures in the real panel: words of pictures in the sheet become those of another language, and back."""

import shutil
import subprocess
from contextlib import contextmanager

import pytest

from conftest import hosts_with
from drawing_reader import drawn_pictures
from local_service import LocalService
from panel_driver import open_signed_in
from picture_book import PictureBook, quarters

# An office shows a picture of 360 by 180 points in as many pixels as it has itself.
WIDTH, HEIGHT = 480, 240
PLACE = (360, 180)
BLANK = quarters(60, 40, (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0))


def drawn(*lines):
    """A PNG of words, one line below the other."""
    texts = "".join(f'<text x="24" y="{64 + 60 * i}" font-size="30" fill="#204060">{line}</text>'
                    for i, line in enumerate(lines))
    svg = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" font-family="Liberation Sans">'
           f'<rect width="100%" height="100%" fill="#f6f2e0"/>{texts}</svg>')
    return subprocess.run(["rsvg-convert"], input=svg.encode(), capture_output=True, check=True).stdout


def art_book(path):
    book = PictureBook()
    return book.sheet(
        "Art",
        book.picture("House", drawn("The old house", "near the river"), 20, 20, *PLACE),
        book.picture("Water", drawn("Water and light"), 20, 220, *PLACE),
        book.picture("Colours", BLANK, 420, 20, 60, 40),
        book.line("Rule", 20, 420, 100, 1),
        texts=["one"],
    ).sheet("Other", book.picture("Moon", drawn("The moon"), 20, 20, *PLACE)).save(path)


@contextmanager
def page_for_pictures(service, tmp_path):
    """The page for pictures of a host on a workbook with some, with somebody signed in and both languages chosen."""
    with hosts_with(service, tmp_path, "--window", "--browser", "chromium") as start:
        host = start(art_book(tmp_path / "art.xlsx"))
        panel = open_signed_in(host)
        host.do("press", button="btnImageTranslate")
        panel.wait_for_page("imagetranslate")
        panel.wait_for("document.querySelectorAll('#list li').length === 3")
        panel.wait_for("document.getElementById('target').value === 'es'")
        panel.click("label[for=source]")
        panel.type("English")
        panel.wait_for("document.getElementById('source').value === 'en'")
        yield panel


@pytest.fixture
def pictures(service, settings_file, tmp_path):
    with page_for_pictures(service, tmp_path) as panel:
        yield panel


@pytest.fixture
def service_without_recognition(certificates, tmp_path):
    """A service that finds no program but itself."""
    folder = tmp_path / "programs"
    folder.mkdir()
    (folder / "node").symlink_to(shutil.which("node"))
    started = LocalService("--engine", "echo", tls=certificates, env={"PATH": str(folder)})
    yield started
    started.close()


@pytest.fixture
def saved(pictures, tmp_path):
    """Saves, and gives the pictures of a sheet in the file."""

    def read(sheet="Art"):
        pictures.host.do("save", path=str(tmp_path / "saved.xlsx"))
        return drawn_pictures(tmp_path / "saved.xlsx", sheet)

    return read


def card(name):
    """JavaScript for the list's entry of a picture."""
    return f"[...document.querySelectorAll('#list li')].find((card) => card.textContent.includes('{name}'))"


def mark(panel, name):
    """Gives a picture's entry an id, so that it can be clicked into."""
    panel.value(f"{card(name)}.id = 'card-{name}'")
    return f"#card-{name}"


def choose(panel, *names):
    for name in names:
        panel.click(f"{mark(panel, name)} label")
        panel.wait_for(f"{card(name)}.querySelector('input').checked")


def wait_for_state(panel, name, state):
    panel.wait_for(f"{card(name)}.querySelector('.state')?.dataset.state === '{state}'", 60)


def wait_for_end(panel):
    panel.wait_for("document.getElementById('work').hidden", 60)


def press(panel, name, use):
    """Presses one of a picture's own buttons."""
    panel.click(f"{mark(panel, name)} button[data-use$={use}]")


def rows(image):
    return [[image.at(x, y) for x in range(image.width)] for y in range(image.height)]


def words_of(image):
    """What Tesseract reads in a picture of a file, in Spanish, three times as large."""
    lines = (b"".join(bytes(image.at(x, y)) * 3 for x in range(image.width)) * 3 for y in range(image.height))
    ppm = f"P6 {3 * image.width} {3 * image.height} 255\n".encode() + b"".join(lines)
    run = subprocess.run(["tesseract", "stdin", "stdout", "-l", "spa", "--psm", "11"], input=ppm, capture_output=True,
                         check=True, timeout=60)
    return set(run.stdout.decode().lower().split())


def test_words_in_a_picture_are_shown_replaced_and_put_back(pictures, saved):
    before = saved()
    choose(pictures, "House")
    pictures.click("#start")
    wait_for_state(pictures, "House", "ready")
    assert rows(saved()["House"].image) == rows(before["House"].image), "nothing goes into the sheet unasked"

    press(pictures, "House", "replace")
    wait_for_state(pictures, "House", "replaced")
    now = saved()
    assert now["House"].place() == before["House"].place()
    words = words_of(now["House"].image)
    assert {"casa", "vieja", "río"} <= words
    assert not {"old", "house", "river"} & words
    assert rows(now["Water"].image) == rows(before["Water"].image)

    press(pictures, "House", "undo")
    pictures.wait_for("document.getElementById('outcome-text').innerText.includes('is back')")
    assert rows(saved()["House"].image) == rows(before["House"].image)


def test_a_batch_goes_through_the_sheet_and_comes_back_as_a_whole(pictures, saved):
    before = saved()
    pictures.click("#all-row")
    pictures.click(".segments label:nth-child(2)")
    pictures.click("#start")
    wait_for_end(pictures)
    assert "Replaced: 2 · to be replaced: 0 · without text: 1 · failed: 0" in pictures.text("outcome-text")
    now = saved()
    assert "casa" in words_of(now["House"].image)
    assert "agua" in words_of(now["Water"].image)
    assert rows(now["Colours"].image) == rows(before["Colours"].image)

    pictures.click("#undo-all")
    pictures.wait_for("document.getElementById('outcome-text').innerText.includes('put back: 2')", 30)
    after = saved()
    for name, picture in before.items():
        assert rows(after[name].image) == rows(picture.image), name
        assert after[name].place() == picture.place()


def test_another_sheet_is_told_and_looked_at(pictures, saved):
    before = rows(saved()["House"].image)
    choose(pictures, "House")
    pictures.host.do("select", sheet="Other", address="A1")
    pictures.wait_for("document.getElementById('moved-text').innerText.includes('Other')")
    pictures.click("#start")
    pictures.wait_for(f"{card('House')}.querySelector('.problem')?.innerText.includes('Another sheet')")
    pictures.click("#rescan")
    pictures.wait_for(f"!!{card('Moon')} && !{card('House')} && document.getElementById('moved').hidden")
    assert rows(saved()["House"].image) == before


def test_the_picture_selected_in_the_sheet_is_translated_from_the_page(pictures, saved):
    pictures.host.do("select", sheet="Art", address="Water")
    # A selected picture raises no event: the page looks when the pointer comes back to it.
    come = "document.documentElement.dispatchEvent(new PointerEvent('pointerenter'))"
    pictures.wait_for(f"{come} && document.getElementById('selected-name').innerText === 'Water'")
    pictures.click("#selected-translate")
    wait_for_state(pictures, "Water", "ready")
    pictures.host.do("select", sheet="Art", address="A1")
    pictures.wait_for("document.getElementById('selected').hidden")


def test_without_tesseract_the_page_says_so_and_the_sheet_stays(service_without_recognition, settings_file, tmp_path):
    with page_for_pictures(service_without_recognition, tmp_path) as panel:
        panel.click("#all-row")
        panel.click("#start")
        panel.wait_for("document.getElementById('outcome-problem').innerText.includes('Tesseract is not installed')", 30)
        assert panel.value(f"{card('House')}.querySelector('.problem').innerText.includes('Tesseract')")
        assert not panel.value(f"{card('Water')}.querySelector('.problem')")
        panel.host.do("save", path=str(tmp_path / "saved.xlsx"))
        left, kept = (drawn_pictures(tmp_path / name, "Art") for name in ("saved.xlsx", "art.xlsx"))
        assert rows(left["House"].image) == rows(kept["House"].image)
