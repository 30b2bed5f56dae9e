"""Coding agents from the panel's own page, with a program that plays them: found, installed, connected, launched, and at
work in the workbook and with the service's language model."""

import json
import os
import shutil
import zipfile
from contextlib import contextmanager
from pathlib import Path

import pytest

from conftest import ROOT, hosts_with, profile_path
from llm_proxy import ask
from mcp_agent import URL, Agent
from panel import wait_until
from panel_driver import open_signed_in

BUILD = Path(os.environ.get("QV_BUILD", ROOT / "build")) / "windows"
TEST_AGENT = BUILD / "tests" / "addin" / "agents" / "test_agent.exe"
OWN_COPIES = BUILD / "bin" / "agents"
BASE_URL = "http://127.0.0.1:7879/v1"
QUESTION = {"model": "quorvantis/deepseek-v4-flash", "messages": [{"role": "user", "content": "Hello"}]}
CLAUDE_BEFORE = {"numStartups": 3, "mcpServers": {"other": {"type": "stdio", "command": "a {b}"}}, "projects": {}}


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


@contextmanager
def set_aside(*paths):
    """The paths are not there for a while; what is put there meanwhile goes."""
    kept = [(path, path.with_name(path.name + ".aside")) for path in paths]
    for path, aside in kept:
        if path.exists():
            path.rename(aside)
    try:
        yield
    finally:
        for path, aside in kept:
            shutil.rmtree(path) if path.is_dir() else path.unlink(missing_ok=True)
            if aside.exists():
                aside.rename(path)


@pytest.fixture
def profile():
    """The user's profile without a trace of agents, and an add-in without a copy of its own."""
    user = profile_path("")
    with set_aside(user / ".claude.json", user / ".codex", user / "Quorvantis", OWN_COPIES):
        yield user
        for backup in user.glob(".claude.json.backup.*"):
            backup.unlink()


@pytest.fixture
def programs(tmp_path, monkeypatch):
    """A folder on Windows' search path, and in `report` what a launched agent sees and is told."""
    folder = tmp_path / "pro grams"
    folder.mkdir()
    monkeypatch.setenv("QV_WINE_PATH", windows_path(folder))
    monkeypatch.setenv("QV_TEST_AGENT", "work")
    monkeypatch.setenv("QV_TEST_AGENT_REPORT", windows_path(tmp_path / "report.txt"))
    shutil.copy(TEST_AGENT, folder / "claude.exe")
    return folder


@pytest.fixture
def package(tmp_path, settings_file):
    """The package of OpenCode that the settings name: one folder with the program in it."""
    path = tmp_path / "opencode.zip"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.write(TEST_AGENT, "opencode-windows-x64/opencode.exe")
    settings_file.parent.mkdir(parents=True, exist_ok=True)
    settings_file.write_text(json.dumps({"opencodePackage": f"file:///{windows_path(path)}".replace("\\", "/")}))
    return path


@pytest.fixture
def start_window(model_service, settings_file, tmp_path):
    """Starts development hosts with windows and real pages beside the service that has a language model."""
    with hosts_with(model_service, tmp_path, "--window", "--browser", "chromium") as start:
        yield start


class AgentsPage:
    """The page of coding agents, used by clicks."""

    def __init__(self, host):
        self.host = host
        self.panel = open_signed_in(host)
        self.token = self.panel.value("import('/panel/excel/assets/js/session.js').then(({ token }) => token())")
        host.do("press", button="btnAiAgents")
        self.panel.wait_for_page("agents")

    def card(self, agent):
        return self.panel.value(f"document.querySelector('[data-id={agent}]')?.innerText ?? ''")

    def wait_for(self, agent, *words):
        wait_until(self.host, lambda: all(word in self.card(agent) for word in words), f"{agent}: {words}", 60)

    def use(self, agent, action):
        self.panel.wait_for(f"document.querySelector('[data-use=\"{agent} {action}\"]:enabled') !== null", 60)
        self.panel.click(f"[data-use='{agent} {action}']")


def take_report(host, tmp_path):
    """What the launched agent has written, by name; it is gone then."""
    path = tmp_path / "report.txt"
    wait_until(host, path.exists, "the agent's report", 60)
    lines = path.read_text("utf-8").splitlines()
    path.unlink()
    return dict(line.split("=", 1) for line in lines)


def names_of_tools(answer):
    return [tool["name"] for tool in json.loads(answer)["result"]["tools"]]


def test_opencode_is_installed_connected_and_launched_and_works(start_window, start_model, make_book, profile, programs,
                                                                package, tmp_path):
    start_model([{"say": "Good morning"}], [{"say": "to you", "everyMs": 20}])
    page = AgentsPage(start_window(make_book(["one", "two"])))
    page.wait_for("opencode", "Not installed")
    page.use("opencode", "install")
    page.wait_for("opencode", "Add-in’s own copy", "9.8.7 (Test Agent)", "Not connected")
    page.use("opencode", "launch")
    report = take_report(page.host, tmp_path)

    workspace = profile / "Quorvantis" / "opencode-workspace"
    folder = report["directory"]
    assert folder.startswith("C:\\users\\") and folder.endswith("\\Quorvantis\\opencode-workspace")
    key = report["OPENAI_API_KEY"]
    assert key.startswith("qv_") and len(key) == 67 and set(key[3:]) <= set("0123456789abcdef")
    assert (report["OPENCODE_MODEL"], report["OPENAI_BASE_URL"]) == ("quorvantis/deepseek-v4-flash", BASE_URL)
    assert report["OPENCODE_CONFIG"] == folder + "\\opencode.json"
    assert report["console"] == "1"
    assert [path.name for path in workspace.iterdir()] == ["opencode.json"]
    config = json.loads((workspace / "opencode.json").read_text("utf-8"))
    assert config["provider"]["quorvantis"]["options"] == {"baseURL": BASE_URL, "apiKey": key}
    assert config["mcp"] == {"qv-excel": {"type": "remote", "url": URL, "enabled": True}}

    assert names_of_tools(report["tools"]) == ["range", "worksheet", "chart", "calc", "screenshot"]
    assert json.loads(report["models"])["choices"][0]["message"]["content"] == "Good morning"
    page.wait_for("opencode", "Connected", "Launched in a window of its own.")
    page.panel.wait_for("document.getElementById('server').dataset.owner === 'self'")
    # The same by what agents are made of.
    [answer] = ask(BASE_URL, key, {**QUESTION, "stream": True})
    assert "".join(piece["delta"].get("content", "") for piece in answer["pieces"]) == "to you"
    with Agent() as agent:
        agent.connect()
        assert agent.tool("range", "write", range="B1", values=[["by an agent"]])["applied"] == 1
    assert page.host.cell("Sheet", "B1")["value"] == "by an agent"
    [refused] = ask(BASE_URL, page.token, QUESTION)
    assert refused["message"] == "401 invalid api key"

    assert_secrets_are_kept(page, key, tmp_path, workspace / "opencode.json")
    page.host.quit()
    [gone] = ask(BASE_URL, key, QUESTION)
    assert gone["status"] is None


def test_another_agent_is_connected_beside_what_it_had_and_is_given_no_key(start_window, start_model, make_book, profile,
                                                                           programs, tmp_path):
    start_model()
    (profile / ".claude.json").write_text(json.dumps(CLAUDE_BEFORE, indent=2))
    page = AgentsPage(start_window(make_book(["one"])))
    page.wait_for("claude", "Installed", "Not connected", "claude.exe")
    page.wait_for("codex", "Not installed")
    page.use("claude", "connect")
    page.wait_for("claude", "Connected", "The earlier configuration is kept in", ".claude.json.backup.")
    [backup] = profile.glob(".claude.json.backup.*")
    assert json.loads(backup.read_text()) == CLAUDE_BEFORE
    entry = {"type": "http", "url": URL, "disabled": False}
    servers = {**CLAUDE_BEFORE["mcpServers"], "qv-excel": entry}
    assert json.loads((profile / ".claude.json").read_text()) == {**CLAUDE_BEFORE, "mcpServers": servers}

    page.use("claude", "launch")
    report = take_report(page.host, tmp_path)
    assert report["directory"].endswith("\\Quorvantis\\opencode-workspace")
    assert [report[name] for name in ("OPENAI_API_KEY", "OPENAI_BASE_URL", "OPENCODE_CONFIG")] == ["", "", ""]
    page.panel.wait_for("document.getElementById('server').dataset.owner === 'self'")
    with Agent() as agent:
        assert agent.connect()["server"]["name"] == "qv-excel"
    assert not (profile / "Quorvantis" / "opencode-workspace" / "opencode.json").exists()


def test_each_panes_proxy_asks_for_the_user_of_its_own_page(model_service, start_model, make_book, profile, tmp_path):
    start_model([{"say": "to the first"}])
    config = profile / "Quorvantis" / "opencode-workspace" / "opencode.json"

    def answer_by(pane):
        # The first starts the pane's proxy, though there is nothing to launch; the second tells its key.
        for action in ("launchAgent", "installAgentMcp"):
            request = f"{action}{pane}"
            host.do("post", pane=pane, message={"action": action, "id": "opencode", "requestId": request})
            host.wait(f'"requestId":"{request}"')
        key = json.loads(config.read_text("utf-8"))["provider"]["quorvantis"]["options"]["apiKey"]
        [answer] = ask(BASE_URL, key, QUESTION)
        return answer["message"]

    with hosts_with(model_service, tmp_path) as start:
        host = start(make_book(["one"]))
        panes = [1, host.do("open-pane")["pane"], host.do("open-pane")["pane"]]
        wait_until(host, lambda: all(pane["views"] for pane in host.do("panes")["panes"]), "the panes' pages")
        for pane, token in zip(panes, ("dev-somebody", "unknown-user")):
            host.do("post", pane=pane, message={"action": "setAccessToken", "accessToken": token})
        # The latest token of the process is nobody's, and so is that of a pane whose page has said nothing.
        assert answer_by(panes[2]) == "401 not signed in"
        assert answer_by(panes[1]) == "401 not signed in"
        assert answer_by(panes[0])["content"] == "to the first"


def assert_secrets_are_kept(page, key, tmp_path, config):
    """The key stands in OpenCode's configuration alone, the token goes to the page alone: neither is in a log, in the
    settings, in an answer, or in a file that was left behind."""
    users = profile_path("")
    left = {path: path.read_bytes() for path in users.rglob("*") if path.is_file() and path != config}
    left |= {path: path.read_bytes() for path in tmp_path.glob("*.log")}
    # What the page itself says, and what it is told of who is signed in.
    told = [item["text"] for item in page.host.scripts()
            if item["kind"] != "message" and '"action":"accessToken"' not in item["text"]]
    left["what the page is told"] = "\n".join(told).encode("utf-8")
    log = b"".join(content for path, content in left.items() if str(path).endswith(".log"))
    assert "[LlmProxy] auth header".encode("utf-16-le") in log
    assert '"agents":[' in left["what the page is told"].decode("utf-8")
    assert page.token not in config.read_text("utf-8")
    for secret in (page.token, key, key[8:]):
        for encoding in ("utf-8", "utf-16-le"):
            assert [path for path, content in left.items() if secret.encode(encoding) in content] == []
