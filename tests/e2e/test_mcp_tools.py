"""Coding agents at work: the official client and the inspector call every tool of the real add-in on LibreOffice, and
the saved file shows what they did."""

import base64
import itertools
import json
import re
import subprocess

import openpyxl
import pytest

from mcp_agent import NODE, URL, Agent, post
from png_reader import Picture

GOLDEN = NODE.parent.parent / "core" / "golden"
REPLY = re.compile(r"_onResponse\((.*)\);$", re.S)


@pytest.fixture
def host(start_host, make_book):
    """A host on a small workbook whose pane has its tool server running."""
    started = start_host(make_book(["one", "two"]))
    assert page_asks(started, "ensureMcpServer") == \
        {"ok": True, "owner": "self", "running": True, "mode": "external", "port": 7878}
    return started


@pytest.fixture
def agent(host):
    with Agent() as connected:
        connected.connect()
        yield connected


numbers = itertools.count(1)


def page_asks(host, action, /, **arguments):
    """What the page gets for a request of its own."""
    request = f"mcp-{next(numbers)}"
    host.post(action=action, requestId=request, **arguments)
    return json.loads(REPLY.search(host.wait(f'"requestId":"{request}"')).group(1))["data"]


def saved(host, tmp_path):
    path = tmp_path / "saved.xlsx"
    host.do("save", path=str(path))
    return openpyxl.load_workbook(path)


def test_agents_are_told_the_written_contract(host):
    initialize = (GOLDEN / "mcp_initialize.json").read_text("utf-8").rstrip("\n")
    tools = (GOLDEN / "mcp_tools_list.json").read_text("utf-8").rstrip("\n")
    assert post('{"jsonrpc":"2.0","id":7,"method":"initialize","params":{}}') == initialize
    assert post('{"jsonrpc":"2.0","id":8,"method":"tools/list"}') == tools
    with Agent() as agent:
        greeting = agent.connect()
        told = json.loads(initialize)["result"]
        assert greeting == {"server": told["serverInfo"], "instructions": told["instructions"], "failures": []}
        assert agent.ask("list") == json.loads(tools)["result"]


def test_the_inspector_lists_the_tools_and_calls_one(host):
    def inspect(*arguments):
        command = [NODE / "node_modules/.bin/mcp-inspector", "--cli", URL, "--transport", "http", *arguments]
        ended = subprocess.run(command, capture_output=True, text=True, timeout=120)
        assert ended.returncode == 0, ended.stderr
        return json.loads(ended.stdout)

    tools = inspect("--method", "tools/list")["tools"]
    assert tools == json.loads((GOLDEN / "mcp_tools_list.json").read_text("utf-8"))["result"]["tools"]
    called = inspect("--method", "tools/call", "--tool-name", "range", "--tool-arg", "action=read", "range=A1:A2")
    assert [cell["value"] for cell in json.loads(called["content"][0]["text"])["cells"]] == ["one", "two"]


def test_ranges_are_written_formatted_and_read(agent, host, tmp_path):
    rows = [["k", "v"], ["a", 1.5], ["=B2*2", True], ["ü \"q\"\n中文", None]]
    written = agent.tool("range", "write", range="B2:C5", values=rows)
    assert written["applied"] == 8 and {item["status"] for item in written["results"]} == {"applied"}
    assert agent.tool("range", "format", range="B2:C2", font={"bold": True, "color": "#1F4E79"},
                      fill={"color": "#FFEE00"}, alignment={"horizontal": "center", "wrapText": True},
                      numberFormat="0.00%", border={"edges": ["bottom"], "style": "thick", "color": "#FF0000"}) == \
        {"ok": True, "applied": 1}
    cells = agent.tool("range", "read", range="B2:C5")["cells"]
    assert [cell["value"] for cell in cells][:4] == ["k", "v", "a", "1.5"]
    assert cells[4]["formula"] == "=B2*2" and cells[6]["value"] == "ü \"q\"\n中文"
    sheet = saved(host, tmp_path).active
    assert [cell.value for cell in sheet["B"][1:5]] == ["k", "a", "=B2*2", "ü \"q\"\n中文"]
    assert [cell.value for cell in sheet["C"][1:5]] == ["v", 1.5, True, None]
    head = sheet["B2"]
    assert (head.font.b, head.font.color.rgb[-6:], head.fill.fgColor.rgb[-6:]) == (True, "1F4E79", "FFEE00")
    assert (head.alignment.horizontal, head.alignment.wrap_text) == ("center", True)
    assert head.number_format.endswith("0.00%")
    assert "thick" in (head.border.bottom.style, sheet["B3"].border.top.style)


def test_names_of_a_message_are_safe_in_cells_and_sheets(agent, host, tmp_path):
    """A table with the header "id", a sheet named "method", and texts that look like a message."""
    rows = [["id", "method", "params", "name"], [5, "tools/list", '{"name":"calc"}', '"id":99,"action":"erase"']]
    assert agent.tool("worksheet", "add", name="method")["name"] == "method"
    assert agent.tool("range", "write", range="A1:D2", values=rows)["applied"] == 8
    assert agent.tool("worksheet", "rename", name="Sheet", new_name="id") == {"ok": True}
    message = {"params": {"arguments": {"values": [["id", 12, "method"]], "range": "A3:C3", "action": "write"},
                          "name": "range"}, "method": "tools/call", "id": 41, "jsonrpc": "2.0"}
    assert json.loads(post(json.dumps(message)))["id"] == 41
    book = saved(host, tmp_path)
    assert book.sheetnames == ["id", "method"]
    assert [[cell.value for cell in row] for row in book["method"]["A1:D3"]] == \
        [*rows, ["id", 12, "method", None]]


def test_every_action_on_sheets_rows_and_columns(agent, host, tmp_path):
    def names():
        return [(sheet["name"], sheet["active"]) for sheet in agent.tool("worksheet", "list")["sheets"]]

    assert names() == [("Sheet", True)]
    assert agent.tool("worksheet", "add", name="Data", after="Sheet") == {"ok": True, "name": "Data", "index": 2}
    assert agent.tool("worksheet", "add", name="Gone", before="Sheet")["index"] == 1
    assert agent.tool("worksheet", "delete", name="Gone") == {"ok": True}
    assert agent.tool("worksheet", "rename", index=2, new_name="Table") == {"ok": True}
    assert agent.tool("worksheet", "set_active", name="Table") == {"ok": True}
    assert names() == [("Sheet", False), ("Table", True)]
    rows = [["k", "v"], ["a", 1], ["b", 2], ["A", 1], ["c", 3]]
    assert agent.tool("range", "write", range="A1:B5", values=rows)["applied"] == 10
    assert agent.tool("worksheet", "remove_duplicates", range="A1:B5", confirm=True, has_header=True) == \
        {"ok": True, "removed": 1, "rowsBefore": 4, "rowsAfter": 3}
    assert agent.tool("worksheet", "insert_rows_cols", mode="rows", range="A3") == {"ok": True}
    assert agent.tool("worksheet", "delete_rows_cols", mode="columns", indices=[7, 9]) == {"ok": True, "applied": 2}
    assert agent.tool("worksheet", "merge", range="D1:E2") == {"ok": True}
    assert agent.tool("worksheet", "merge", range="D4:E4") == {"ok": True}
    assert agent.tool("worksheet", "unmerge", range="D4:E4") == {"ok": True}
    assert agent.tool("worksheet", "set_size", columns=[{"col": "A", "width": 30}],
                      rows=[{"row": 2, "height": 33}]) == {"ok": True, "applied": 2}
    assert agent.tool("calc", "set_mode", mode="manual") == {"ok": True, "mode": "manual"}
    assert agent.tool("calc", "get_mode") == {"mode": "manual"}
    assert agent.tool("calc", "calculate_now") == {"ok": True}
    assert agent.tool("calc", "set_mode", mode="automatic") == {"ok": True, "mode": "automatic"}
    chart = agent.tool("chart", "create", type="column", source="A1:B5", title="Sums")
    assert (chart["ok"], chart["type"]) == (True, "column")
    picture = agent.tool("screenshot", "range", range="A1:B3")
    shown = Picture(base64.b64decode(picture["data"]))
    assert (picture["mediaType"], shown.width, shown.height) == ("image/png", picture["width"], picture["height"])

    book = saved(host, tmp_path)
    sheet = book["Table"]
    assert book.sheetnames == ["Sheet", "Table"]
    assert [[cell.value for cell in row] for row in sheet["A1:B5"]] == \
        [["k", "v"], ["a", 1], [None, None], ["b", 2], ["c", 3]]
    assert [str(area) for area in sheet.merged_cells.ranges] == ["D1:E2"]
    assert sheet.column_dimensions["A"].width == pytest.approx(30, abs=1)
    assert sheet.row_dimensions[2].height == pytest.approx(33, abs=0.5)
    assert len(sheet._charts) == 1


def test_agents_and_the_page_get_the_same_results(agent, host):
    cases = [
        ("range", "read", "excelReadRange", {"range": "A1:B2"}),
        ("range", "read", "excelReadRange", {"range": "$A$1"}),
        ("range", "read", "excelReadRange", {"range": "A:A"}),
        ("range", "read", "excelReadRange", {}),
        ("range", "write", "excelWriteRange", {"range": "A1:B1", "values": [["x", 2, "beyond"]]}),
        ("range", "write", "excelWriteRange", {"range": "A1", "values": "no list"}),
        ("range", "format", "excelFormatRange", {"range": "A1", "font": {"bold": True}}),
        ("worksheet", "list", "excelListSheets", {}),
        ("worksheet", "set_active", "excelSetActiveSheet", {"name": "missing"}),
        ("worksheet", "delete", "excelDeleteSheet", {"index": 99}),
        ("worksheet", "merge", "excelMergeCells", {"range": "F1"}),
        ("worksheet", "remove_duplicates", "excelRemoveDuplicates", {"range": "A1:B2"}),
        ("chart", "create", "excelChartCreate", {"source": "A1:B2", "type": "radar"}),
        ("calc", "get_mode", "excelCalcGetMode", {}),
        ("calc", "set_mode", "excelCalcSetMode", {"mode": "sometimes"}),
        ("screenshot", "range", "excelScreenshotRange", {"range": "?"}),
    ]
    for tool, action, workbook_action, arguments in cases:
        assert agent.tool(tool, action, **arguments) == page_asks(host, workbook_action, **arguments), arguments


def test_what_no_tool_has_is_an_error_of_the_protocol(agent):
    with pytest.raises(RuntimeError, match="-32601: unknown tool or action: screenshot/read"):
        agent.tool("screenshot", "read")
    with pytest.raises(RuntimeError, match="-32601: unknown tool or action: range/$"):
        agent.ask("call", name="range")
    assert agent.tool("range", "read", range="?") == {"error": "range 参数缺失或无效"}
    assert agent.tool("worksheet", "list")["sheets"], "and the session goes on"
