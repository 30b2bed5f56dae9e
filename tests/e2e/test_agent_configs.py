"""The agents' configuration files after "Connect", judged by readers that share no code with the product: Python's TOML
and JSON readers, and JavaScript's JSON."""

import copy
import json
import os
import pathlib
import subprocess
import tomllib

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
REWRITE = pathlib.Path(os.environ.get("QV_BUILD", ROOT / "build")) / "native/tests/core/rewrite_agent_config"
FOLDER = pathlib.Path(__file__).parent / "agent_configs"
LEFT_ALONE = {"claude_invalid.json", "claude_latin1.json", "codex_env.toml", "codex_invalid.toml", "codex_inline.toml",
              "codex_latin1.toml"}
# Not TOML before: a table must not stand there twice.
TWICE = FOLDER / "codex_twice.toml"
FILES = sorted(path for path in FOLDER.iterdir() if path.name not in LEFT_ALONE and path != TWICE)

TOML_ENTRY = {"url": "http://127.0.0.1:7878/mcp"}
JSON_ENTRY = {"type": "http", "url": "http://127.0.0.1:7878/mcp", "disabled": False}


def rewritten(path, data):
    agent = path.name.split("_")[0]
    return subprocess.run([REWRITE, agent], input=data, capture_output=True, timeout=60)


def parsed(path, data):
    text = data.decode("utf-8-sig")
    return tomllib.loads(text) if path.suffix == ".toml" else json.loads(text or "{}")


def without_entry(document, table):
    document = copy.deepcopy(document)
    servers = document.get(table)
    if servers is not None:
        servers.pop("qv-excel", None)
    if not servers:
        document.pop(table, None)
    return document


def changed_part(before, after):
    """Where `before` differs from `after`: the offsets of the first byte that does, and behind the last."""
    begin = len(os.path.commonprefix([before, after]))
    kept = len(os.path.commonprefix([before[begin:][::-1], after[begin:][::-1]]))
    return begin, len(before) - kept


def old_json_entry(before):
    """The offsets of the first member "qv-excel", which is the entry in every file where one is replaced."""
    text = before.decode("latin-1")
    begin = text.index('"qv-excel"')
    return begin, json.JSONDecoder().raw_decode(text, text.index("{", begin))[1]


def lines_outside_toml_entry(data):
    """The lines that are none of the entry's, without empty ones; for files in which only headers begin with "["."""
    kept, inside = [], False
    for line in data.splitlines():
        if line.startswith(b"["):
            inside = line.startswith(b"[mcp_servers.qv-excel]")
        if line and not inside:
            kept.append(line)
    return kept


@pytest.mark.parametrize("path", [path for path in FILES if path.suffix == ".json"], ids=lambda path: path.name)
def test_every_byte_outside_a_json_entry_stays(path):
    before = path.read_bytes()
    begin, end = changed_part(before, rewritten(path, before).stdout)
    if before[begin:end] not in (b"", b"null"):
        entry = old_json_entry(before)
        assert entry[0] <= begin and end <= entry[1]


@pytest.mark.parametrize("name", ["crlf", "first", "last", "middle", "nested_entry", "tables", "twice"])
def test_every_line_outside_a_toml_entry_stays(name):
    path = FOLDER / f"codex_{name}.toml"
    before = path.read_bytes()
    after = rewritten(path, before).stdout
    assert lines_outside_toml_entry(after) == lines_outside_toml_entry(before)
    assert after.count(b"[mcp_servers.qv-excel]") == 1


def test_of_two_sections_one_is_left():
    after = parsed(TWICE, rewritten(TWICE, TWICE.read_bytes()).stdout)
    assert after == {"tui": {"notifications": ["agent-turn-complete"]}, "history": {"persistence": "none"},
                     "mcp_servers": {"qv-excel": TOML_ENTRY}}


@pytest.mark.parametrize("path", FILES, ids=lambda path: path.name)
def test_only_the_entry_differs(path):
    before = path.read_bytes()
    result = rewritten(path, before)
    assert result.returncode == 0
    table, entry = ("mcp_servers", TOML_ENTRY) if path.suffix == ".toml" else ("mcpServers", JSON_ENTRY)
    after = parsed(path, result.stdout)
    assert after[table]["qv-excel"] == entry
    assert without_entry(after, table) == without_entry(parsed(path, before), table)
    assert rewritten(path, result.stdout).stdout.lstrip(b"\n") == result.stdout.lstrip(b"\n")
    if path.suffix == ".json":
        script = "JSON.parse(require('fs').readFileSync(0, 'utf8').replace(/^\\ufeff/, ''))"
        assert subprocess.run(["node", "-e", script], input=result.stdout, timeout=60).returncode == 0


@pytest.mark.parametrize("name", sorted(LEFT_ALONE))
def test_what_cannot_be_changed_safely_is_refused(name):
    result = rewritten(FOLDER / name, (FOLDER / name).read_bytes())
    assert (result.returncode, result.stdout) == (3, b"")


def test_ten_megabytes_of_projects():
    projects = {f"C:\\work\\{i}": {"mcpServers": {"qv-excel": {}}, "history": ["\"{\\" * 20]} for i in range(60_000)}
    before = json.dumps({"projects": projects}).encode()
    assert len(before) > 10_000_000
    after = json.loads(rewritten(FOLDER / "claude_large.json", before).stdout)
    assert after == {"projects": projects, "mcpServers": {"qv-excel": JSON_ENTRY}}
