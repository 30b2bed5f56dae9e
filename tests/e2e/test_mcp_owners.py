"""Who has the tool server's port: hosts one after the other, foreign programs, hosts that are slow."""

import http.server
import os
import socket
import subprocess
import threading
import time
from contextlib import contextmanager

import pytest

from mcp_agent import Agent, post
from test_mcp_tools import page_asks

PORT = 7878
STARTED = {"ok": True, "owner": "self", "running": True, "mode": "external", "port": PORT}
REFUSED = {"ok": False, "owner": "other", "running": False, "error": "端口已被其他表格占用"}


def status(host):
    answer = page_asks(host, "getMcpServerStatus")
    return answer["owner"], answer["running"]


def wait_for(condition, patience=10):
    deadline = time.monotonic() + patience
    while not condition() and time.monotonic() < deadline:
        time.sleep(0.05)
    assert condition()


def test_the_newest_of_three_hosts_has_the_port_and_an_agents_session_goes_on(start_host, make_book):
    # At once, without a wait for either.
    hosts = [start_host(make_book([name], name=f"{name}.xlsx")) for name in ("first", "second")]
    assert [status(host) for host in hosts] == [("none", False)] * 2
    assert page_asks(hosts[0], "ensureMcpServer") == STARTED
    with Agent() as agent:
        agent.connect()

        def read():
            return [cell["value"] for cell in agent.tool("range", "read", range="A1")["cells"]]

        assert read() == ["first"]
        assert status(hosts[1]) == ("other", False)
        begin = time.monotonic()
        assert page_asks(hosts[1], "ensureMcpServer") == STARTED
        # The owner lets go at once: a pause or two of 250 ms, on a busy machine.
        assert time.monotonic() - begin < 5
        assert read() == ["second"]
        assert status(hosts[0]) == ("other", False)

        hosts.append(start_host(make_book(["third"], name="third.xlsx")))
        assert page_asks(hosts[2], "ensureMcpServer") == STARTED
        assert read() == ["third"]
        # Who stopped does not come back by itself, and stops nobody else.
        assert page_asks(hosts[0], "stopMcpServer")["ok"]
        hosts[2].quit()
        assert status(hosts[0]) == status(hosts[1]) == ("none", False)
        assert page_asks(hosts[0], "ensureMcpServer") == STARTED
        assert read() == ["first"]


@contextmanager
def foreign_http_program():
    """Answers everything with 404."""
    asked = []

    class Handler(http.server.BaseHTTPRequestHandler):
        def do_POST(self):
            asked.append((self.path, self.headers["X-Quorvantis-Yield"], self.headers["User-Agent"]))
            self.send_error(404)

        def log_message(self, *_):
            pass

    with http.server.ThreadingHTTPServer(("127.0.0.1", PORT), Handler) as server:
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        yield asked
        server.shutdown()
        thread.join()


def test_a_foreign_http_program_keeps_the_port_after_half_a_minute_of_tries(start_host, make_book):
    host = start_host(make_book(["one"]))
    with foreign_http_program() as asked:
        begin = time.monotonic()
        assert page_asks(host, "ensureMcpServer") == REFUSED
        assert 29 < time.monotonic() - begin < 50
        assert asked == [("/yield", "1", "QuorvantisExcelMcp/1.0")]
    assert page_asks(host, "ensureMcpServer") == STARTED


def test_a_program_that_speaks_no_http_keeps_the_port_at_once(start_host, make_book):
    host = start_host(make_book(["one"]))
    with socket.create_server(("127.0.0.1", PORT)) as silent:
        assert page_asks(host, "ensureMcpServer") == REFUSED
        assert status(host) == ("other", False)
        with silent.accept()[0] as asked:
            assert asked.recv(11) == b"POST /yield"
    assert page_asks(host, "ensureMcpServer") == STARTED


def test_a_tool_beyond_half_a_minute_is_given_up_but_does_its_work(start_host, make_book):
    host = start_host(make_book(["one"]))
    assert page_asks(host, "ensureMcpServer") == STARTED
    with Agent() as agent:
        agent.connect()
        host.do("fault", fault={"slow": 31_000, "member": "Application.ActiveSheet", "times": 1})
        begin = time.monotonic()
        assert agent.tool("range", "write", range="A1", values=[["late"]]) == {"error": "操作超时"}
        assert 29 < time.monotonic() - begin < 45
        assert agent.tool("range", "read", range="A1")["cells"][0]["value"] == "late"


def process_of(host):
    """The development host's process among all that its script started."""
    listed = subprocess.run(["ps", "-o", "pid=,args=", "-s", str(host.session)], capture_output=True, text=True,
                            check=True).stdout
    return next(int(line.split()[0]) for line in listed.splitlines() if "devhost.exe" in line)


def test_a_hundred_stops_and_starts_leave_nothing(start_host, make_book):
    host = start_host(make_book(["one"]))

    def rounds(count):
        for _ in range(count):
            assert page_asks(host, "ensureMcpServer") == STARTED
            assert '"result"' in post('{"id":1,"method":"tools/call","params":{"name":"calc",'
                                      '"arguments":{"action":"get_mode"}}}')
            assert page_asks(host, "stopMcpServer")["ok"]

    def held():
        folder = f"/proc/{process_of(host)}"
        return len(os.listdir(f"{folder}/task")), len(os.listdir(f"{folder}/fd"))

    rounds(5)
    threads, files = held()
    rounds(100)
    # A few of both come and go; one left by each round would be a hundred.
    wait_for(lambda: held()[0] <= threads + 3 and held()[1] <= files + 10)
    assert host.quit()["ok"]
    with pytest.raises(OSError):
        post("{}")
