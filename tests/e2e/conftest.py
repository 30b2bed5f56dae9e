"""What the end-to-end tests share: the local service, and development hosts on LibreOffice that use it."""

import contextlib
import os
import pwd
import subprocess
import sys
from pathlib import Path

import openpyxl
import pytest

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "devhost" / "client"))

from calc_office import book, office, sheet  # noqa: E402,F401  (fixtures)
from devhost_client import unix_path  # noqa: E402
from kept_secrets import WatchedHost, files_below, leaks  # noqa: E402
from llm_proxy import ScriptedModel, free_port  # noqa: E402
from local_service import LocalService  # noqa: E402
from panel_driver import SLOW_TEXTS, open_signed_in, slow_down  # noqa: E402

os.environ.setdefault("WINEPREFIX", str(ROOT / "build" / "wine-prefix"))
SAMPLE = ROOT / "samples" / "quarterly-report.xlsx"


def save_column(texts, path):
    """A new workbook with one text a row in column A of its only sheet. Gives the path."""
    return save_sheets({"Sheet": texts}, path)


def save_sheets(sheets, path):
    """A new workbook of {name: texts}, one text a row in column A of each sheet. Gives the path."""
    book = openpyxl.Workbook()
    book.remove(book.active)
    for name, texts in sheets.items():
        sheet = book.create_sheet(name)
        for text in texts:
            sheet.append([text])
    book.save(path)
    return path


@pytest.fixture(scope="session")
def certificates():
    """The folder of the certificates under which the local service serves https."""
    folder = ROOT / "build" / "tls"
    subprocess.run([ROOT / "scripts" / "make_authority.sh", folder], check=True)
    return folder


@pytest.fixture(scope="session")
def running_service(certificates):
    started = LocalService(tls=certificates)
    yield started
    started.close()


@pytest.fixture
def service(running_service):
    """The service without faults or recorded requests of earlier tests."""
    running_service.reset()
    return running_service


@pytest.fixture(scope="session")
def running_echo_service(certificates):
    started = LocalService("--engine", "echo", tls=certificates)
    yield started
    started.close()


@pytest.fixture
def echo_service(running_echo_service):
    """A service that puts the target language before each text, for tests that are about something else."""
    running_echo_service.reset()
    return running_echo_service


@pytest.fixture(scope="session")
def model_port():
    return free_port()


@pytest.fixture(scope="session")
def model_service(certificates, model_port):
    """A service whose language model listens on a fixed port; each test brings its own."""
    model = {"QV_LLM_BASE_URL": f"http://127.0.0.1:{model_port}/v1", "QV_LLM_MODEL": "scripted"}
    started = LocalService("--engine", "echo", tls=certificates, env=model)
    yield started
    started.close()


@pytest.fixture
def start_model(tmp_path, model_port):
    """Starts the model with its answers; `framing` is how it frames its streams."""
    started = []

    def start(*answers, framing="close"):
        started.append(ScriptedModel(tmp_path / "script.json", answers, model_port, framing))

    yield start
    for model in started:
        model.close()


@contextlib.contextmanager
def hosts_with(service, tmp_path, *always):
    """Starts development hosts on LibreOffice; they end with the block."""
    hosts = []

    def start(workbook=SAMPLE, *arguments):
        host = WatchedHost("--workbook", workbook, "--engine", "calc", "--service", service.url, "--authority",
                           service.authority, *always, *arguments, log_path=tmp_path / f"devhost-{len(hosts)}.log",
                           env={"QV_SKIP_BUILD": "1"})
        hosts.append(host)
        return host

    try:
        yield start
    finally:
        for host in hosts:
            host.close()


@pytest.fixture(scope="module")
def echo_host(running_echo_service, tmp_path_factory):
    """Starts development hosts that last for the tests of one file, with pages that only record."""
    running_echo_service.reset()
    with hosts_with(running_echo_service, tmp_path_factory.mktemp("hosts")) as start:
        yield start


@pytest.fixture
def start_host(service, tmp_path):
    """Starts development hosts without a screen and with pages that only record; they end with the test."""
    with hosts_with(service, tmp_path) as start:
        yield start


@pytest.fixture(scope="session")
def welcomed():
    """The first-run welcome has been answered, so that its box stays away."""
    mark = '. "$0/scripts/env.sh"; prepare_prefix; "$QV_WINE" reg.exe add "HKCU\\Software\\Quorvantis" ' \
           '/v WelcomeShown /t REG_DWORD /d 1 /f'
    subprocess.run(["bash", "-c", mark, ROOT], check=True, stdout=subprocess.DEVNULL)


def profile_path(part):
    """A path of the scratch user's profile."""
    user = pwd.getpwuid(os.getuid()).pw_name
    return unix_path(rf"C:\users\{user}\{part}")


@pytest.fixture(scope="session", autouse=True)
def secrets_stay_where_they_belong(tmp_path_factory):
    """After the last test no user's token and no key of a proxy is in what the hosts have left, or have told a page."""
    yield
    left = files_below(profile_path(""))
    left |= {path: path.read_bytes() for path in tmp_path_factory.getbasetemp().rglob("devhost-*.log")}
    left["what pages were told"] = b"\n".join(WatchedHost.told)
    assert leaks(left, WatchedHost.tokens) == {}


@contextlib.contextmanager
def default_settings():
    """The path of the user's settings, with nothing chosen; what was chosen before is put back at the end."""
    path = profile_path(r"AppData\Local\Quorvantis\config.json")
    before = path.read_bytes() if path.exists() else None
    path.unlink(missing_ok=True)
    yield path
    if before is not None:
        path.write_bytes(before)


@pytest.fixture
def settings_file(welcomed):
    with default_settings() as path:
        yield path


@pytest.fixture(scope="module")
def echo_window(running_echo_service, welcomed, tmp_path_factory):
    """Starts development hosts that last for the tests of one file, with windows and real pages."""
    running_echo_service.reset()
    folder = tmp_path_factory.mktemp("windows")
    with default_settings(), hosts_with(running_echo_service, folder, "--window", "--browser", "chromium") as start:
        yield start


@pytest.fixture
def start_window(echo_service, settings_file, tmp_path):
    """Starts development hosts with windows and real pages; they end with the test."""
    with hosts_with(echo_service, tmp_path, "--window", "--browser", "chromium") as start:
        yield start


@pytest.fixture
def make_book(tmp_path):
    """Writes small workbooks: one text a row in column A of the only sheet. Gives the path."""

    return lambda texts, name="book.xlsx": save_column(texts, tmp_path / name)


@pytest.fixture
def slow_run(start_window, echo_service, make_book):
    """A host and its panel in a run over SLOW_TEXTS: the first of three batches is in the cells, and the service takes some
    seconds over the second."""
    slow_down(echo_service, SLOW_TEXTS[20])
    host = start_window(make_book(SLOW_TEXTS))
    panel = open_signed_in(host)
    panel.start()
    panel.wait_for_count(20)
    return host, panel
