"""Measures the tool server of the real add-in: requests a second, latencies, host calls and memory."""

import json
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LOAD = ROOT / "tests" / "e2e" / "node" / "mcp_load.mjs"
URL = "http://127.0.0.1:7878"
SECONDS = 3
ROUNDS = 500
# Warm, then the many after which no memory may be missing.
FEW, MANY = 5_000, 100_000
LIMIT_S = 300

READ_ONE = {"action": "read", "range": "A1"}
READ_MANY = {"action": "read", "range": "A1:T250"}
WRITE_ONE = {"action": "write", "range": "A1", "values": [["one"]]}
WRITE_MANY = {"action": "write", "range": "A1:T250",
              "values": [[f"{row} {column}" for column in range(20)] for row in range(250)]}
# How often each is measured; one in ten more comes before. The first fills what the others read.
CALLS = (("write 5 000 cells", WRITE_MANY, 1), ("write 1 cell", WRITE_ONE, 100), ("read 5 000 cells", READ_MANY, 20),
         ("read 1 cell", READ_ONE, 100))


def rpc(method, **members):
    return json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, **members})


# A bare answer comes from the same listener and says nothing.
REQUESTS = (("bare answer", "/", "{}"), ("initialize", "/mcp", rpc("initialize")),
            ("tools/list", "/mcp", rpc("tools/list")))


def run_load(loads, calls):
    plan = {"url": URL, "loads": loads,
            "calls": [{"name": name, "tool": "range", "arguments": arguments, "times": times}
                      for name, arguments, times in calls]}
    ended = subprocess.run(["node", str(LOAD)], input=json.dumps(plan), capture_output=True, text=True, timeout=LIMIT_S)
    if ended.returncode != 0:
        sys.exit(f"mcp_load failed: {ended.stderr.strip()}")
    result = json.loads(ended.stdout)
    if any(load["failed"] for load in result["loads"]):
        sys.exit(f"mcp_load: requests failed: {result['loads']}")
    return result


def load_of(name, path, body, **extent):
    return {"name": name, "path": path, "body": body, "connections": 4, **extent}


def resident_kib(host):
    listed = subprocess.run(["ps", "-o", "rss=,args=", "-s", str(host.session)], capture_output=True, text=True,
                            check=True).stdout
    return next(int(line.split()[0]) for line in listed.splitlines() if "devhost.exe" in line)


def request_rows():
    result = run_load([load_of(*request, seconds=SECONDS, times=ROUNDS) for request in REQUESTS], [])
    for load in result["loads"]:
        yield f"MCP {load['name']}, at once", f"{load['perSecond']:.0f}", "1/s"
        yield f"MCP {load['name']}, median", f"{load['p50']:.2f}", "ms"
        yield f"MCP {load['name']}, p99", f"{load['p99']:.2f}", "ms"
    bare, _, tools = result["loads"]
    yield "MCP tools/list, of the bare answer", f"{tools['p50'] / bare['p50']:.2f}", "x"


def call_rows(host):
    """Each call alone, so that what the host is asked can be told."""
    for name, arguments, times in CALLS:
        host.do("reset-counters")
        before = sum(last - first for first, last in host.do("counters")["busy"])
        call = run_load([], [(name, arguments, times)])["calls"][0]
        counters = host.do("counters")
        done = times + -(-times // 10)
        in_host = (sum(last - first for first, last in counters["busy"]) - before) / done
        yield f"MCP {name}, median", f"{call['p50']:.2f}", "ms"
        yield f"MCP {name}, p99", f"{call['p99']:.2f}", "ms"
        yield f"MCP {name}, in the host", f"{in_host:.2f}", "ms"
        yield f"MCP {name}, host calls", f"{sum(counters['calls'].values()) / done:.1f}", "calls"


def memory_rows(host):
    listing = load_of(*REQUESTS[2], amount=FEW)
    run_load([listing], [])
    before = resident_kib(host)
    run_load([{**listing, "amount": MANY}], [])
    yield f"MCP memory after {MANY} requests", f"{(resident_kib(host) - before) / 1024:+.1f}", "MiB"


def mcp_rows(start_host):
    """Rows of the table; `start_host` starts a host on LibreOffice with a workbook."""
    import openpyxl
    with tempfile.TemporaryDirectory() as folder:
        workbook = Path(folder) / "mcp.xlsx"
        openpyxl.Workbook().save(workbook)
        with start_host(workbook) as host:
            host.post(action="ensureMcpServer", requestId="bench")
            if '"running":true' not in host.wait('"requestId":"bench"'):
                sys.exit("The tool server did not start; another host may have its port.")
            yield from request_rows()
            yield from call_rows(host)
            yield from memory_rows(host)
            host.quit()


if __name__ == "__main__":
    sys.path.insert(0, str(ROOT / "devhost" / "client"))
    from devhost_client import Devhost
    for row in mcp_rows(lambda workbook: Devhost("--workbook", workbook, "--engine", "calc")):
        print(*row, sep="\t", flush=True)
