"""What the end-to-end tests share: the local service, and development hosts on LibreOffice that use it."""

import os
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "devhost" / "client"))

from calc_office import book, office, sheet  # noqa: E402,F401  (fixtures)
from devhost_client import Devhost  # noqa: E402
from local_service import LocalService  # noqa: E402

os.environ.setdefault("WINEPREFIX", str(ROOT / "build" / "wine-prefix"))
SAMPLE = ROOT / "samples" / "quarterly-report.xlsx"


@pytest.fixture(scope="session")
def running_service():
    folder = ROOT / "build" / "tls"
    subprocess.run([ROOT / "scripts" / "make_authority.sh", folder], check=True)
    started = LocalService(tls=folder)
    yield started
    started.close()


@pytest.fixture
def service(running_service):
    """The service without faults or recorded requests of earlier tests."""
    running_service.reset()
    return running_service


@pytest.fixture
def start_host(service, tmp_path):
    """Starts development hosts on LibreOffice; they end with the test."""
    hosts = []

    def start(workbook=SAMPLE, *arguments):
        host = Devhost("--workbook", workbook, "--engine", "calc", "--service", service.url, "--authority",
                       service.authority, *arguments, log_path=tmp_path / f"devhost-{len(hosts)}.log",
                       env={"QV_SKIP_BUILD": "1"})
        hosts.append(host)
        return host

    yield start
    for host in hosts:
        host.close()
