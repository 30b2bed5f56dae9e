"""What the development host does to a workbook as its user, and the faults that it injects, on LibreOffice."""

import pytest
from devhost_client import DevhostError

from panel_driver import sentences
from run_driver import run_to_end as run


def sheets(host, **what):
    answer = host.do("sheet", **what)
    return answer["active"], answer["sheets"]


def test_edits_by_command(start_host, make_book):
    host = start_host(make_book(["one", "two"]))
    host.do("set-cell", address="B1", text="=1+1")
    host.do("insert-rows", row=2, count=3)
    assert [host.cell("", address)["text"] for address in ("A1", "B1", "A2", "A5")] == ["one", "2", "", "two"]
    assert sheets(host, rename="Sheet", to="Renamed") == ("Renamed", ["Renamed"])
    host.do("protect", on=True)
    with pytest.raises(DevhostError, match="protected sheet"):
        host.do("set-cell", address="A1", text="x")
    with pytest.raises(DevhostError, match="at least one visible"):
        host.do("sheet", delete="Renamed")
    host.do("protect", on=False)
    host.do("window", new=True)
    host.do("close-workbook")
    assert host.do("window")["windows"] == []
    assert host.quit()["liveObjects"] == 0


def test_a_member_fails_until_the_faults_are_cleared(start_host, make_book):
    text, = sentences(1)
    host = start_host(make_book([text]))
    for bad in ({"bulkPut": 1}, {"fail": "*", "code": "none"}, {"times": 1}):
        with pytest.raises(DevhostError, match="fault: "):
            host.do("fault", fault=bad)
    # However a cell is written.
    host.do("fault", fault={"fail": "Range.*", "on": "put"})
    run(host)
    assert host.cell("Sheet", "A1")["value"] == text
    # The code of a host that is busy, for a while: the write is tried again.
    host.do("fault", fault={"clear": True, "fail": "Range.*", "on": "put", "code": "0x800AC472", "times": 1})
    assert "onComplete" in run(host)
    assert host.cell("Sheet", "A1")["value"] != text
