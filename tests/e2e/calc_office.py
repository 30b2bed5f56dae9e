"""The office server without Wine or the add-in, for the tests of the object model on LibreOffice."""

import json
import socket
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parent.parent.parent
LAUNCHER = ROOT / "devhost" / "engines" / "calc" / "office" / "start_office.py"

EXCEPTION = 0x80020009
MEMBER_NOT_FOUND = 0x80020003
BAD_INDEX = 0x8002000B
BAD_PARAMETER_COUNT = 0x8002000E
OUT_OF_MEMORY = 0x8007000E
DISCONNECTED = 0x80010108
EXCEL_FAILURE = 0x800A03EC
NULL = {"null": True}


def error(number):
    """An error value by Excel's number of it."""
    return {"error": 0x800A0000 + number}


class CallFailed(Exception):
    def __init__(self, reply):
        super().__init__(reply)
        self.hresult = reply["hr"]
        self.scode = reply.get("scode", 0)
        self.text = reply.get("text", "")


class Remote:
    """A late-bound object: properties are read by attribute, called with arguments, set with `put`."""

    def __init__(self, office, handle, type_name):
        self._office, self.handle, self.type_name = office, handle, type_name

    def __getattr__(self, name):
        return self._office.invoke(self.handle, "get", name, (), {})

    def get(self, name, *args):
        return self._office.invoke(self.handle, "get", name, args, {})

    def call(self, name, *args, **named):
        return self._office.invoke(self.handle, "call", name, args, named)

    def put(self, name, *args):
        return self._office.invoke(self.handle, "put", name, args, {})


class Office:
    def __init__(self, profile):
        self.process = subprocess.Popen([sys.executable, str(LAUNCHER), "--profile", str(profile)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.ready = json.loads(self.process.stdout.readline())
        self._connections = []
        self.connect()

    def connect(self, style="excel"):
        connection = socket.create_connection(("127.0.0.1", self.ready["port"]), timeout=60)
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._connections.append(connection)
        self._socket, self._lines = connection, connection.makefile("rb")
        self.members = self.request(op="hello", style=style)["r"]
        self.application = Remote(self, 1, "Application")

    def raw(self, line):
        self._socket.sendall(line + b"\n")
        return json.loads(self._lines.readline())

    def request(self, **request):
        return self.raw(json.dumps(request).encode())

    def engine(self, operation, **options):
        reply = self.request(op="engine", do=operation, **{"with": options})
        if "hr" in reply:
            raise CallFailed(reply)
        return reply["r"]

    def invoke(self, handle, kind, member, args, named):
        def wire(value):
            return {"object": value.handle} if isinstance(value, Remote) else value

        reply = self.request(op="invoke", object=handle, kind=kind, member=member, args=[wire(a) for a in args],
                             named={key: wire(value) for key, value in named.items()})
        if "hr" in reply:
            raise CallFailed(reply)
        result = reply["r"]
        if isinstance(result, dict) and "object" in result:
            return Remote(self, result["object"], result["type"])
        return result

    def close(self):
        for connection in self._connections:
            connection.close()
        self.process.stdin.close()
        return self.process.wait(30)


@pytest.fixture(scope="module")
def office(tmp_path_factory):
    started = Office(tmp_path_factory.mktemp("office"))
    yield started
    assert started.close() == 0


@pytest.fixture
def book(office):
    """A new workbook as the active one; everything is closed and reset afterwards."""
    yield office.application.Workbooks.call("Add")
    office.engine("close")


@pytest.fixture
def sheet(office, book):
    return office.application.ActiveSheet


def kinds(value):
    """A form in which 1, 1.0 and True differ."""
    return json.dumps(value, ensure_ascii=False)


def cell(sheet, address):
    return sheet.get("Range", address)


def values(sheet, address):
    return cell(sheet, address).Value2["array"]


def refused(action, *args, code=EXCEPTION, scode=EXCEL_FAILURE):
    with pytest.raises(CallFailed) as failure:
        action(*args)
    assert failure.value.hresult == code
    if code == EXCEPTION:
        assert failure.value.scode == scode
