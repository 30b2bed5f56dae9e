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
LEFT_ALONE = {"claude_invalid.json", "codex_invalid.toml", "codex_inline.toml"}
FILES = sorted(path for path in FOLDER.iterdir() if path.name not in LEFT_ALONE)

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
