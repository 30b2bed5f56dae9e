"""The panel's own page in the real add-in's pane: what a user does there reaches the sheet."""

import json
import subprocess

import pytest

from conftest import ROOT, SAMPLE
from xlsx_reader import expected_units, load_book

DRIVER = ROOT / "service" / "testing" / "drive_panel.js"


@pytest.mark.parametrize("performer, agent", [("addin", "Quorvantis/1.0"), ("page", "Mozilla/5.0")])
def test_a_user_signs_in_and_translates_the_sheet(start_host, service, tmp_path, monkeypatch, performer, agent):
    # The host's browser keeps its profile there, and in it the way to its page.
    monkeypatch.setenv("TMPDIR", str(tmp_path))
    host = start_host(SAMPLE, "--browser", "chromium")
    host.do("panes")  # answered once the page has loaded
    done = subprocess.run(["node", DRIVER, tmp_path, service.url, performer], capture_output=True, text=True,
                          timeout=240)
    assert done.returncode == 0, done.stderr
    said = json.loads(done.stdout)
    assert (said["error"], said["problems"], said["account"]) == ("", [], "Ada Lovelace")

    before = load_book(SAMPLE)
    sheet = next(iter(before))
    units = expected_units(before, sheet)
    assert len(units) > 20
    assert said["translated"] == str(len(units) + len(before[sheet].chart_titles))
    host.do("save", path=str(tmp_path / "after.xlsx"))
    after = load_book(tmp_path / "after.xlsx")
    for address, source in units.items():
        first, _, translation = after[sheet][address].value.rpartition("\n")
        assert first == source.rstrip() and translation, address
    requests = [entry for entry in service.requests() if entry["path"] == "/v1/translate"]
    assert requests and all(entry["headers"]["user-agent"].startswith(agent) for entry in requests)
