#!/usr/bin/env python3
"""Runs every measurement and prints one table. Called by scripts/bench.sh, which prepares build and prefix."""

import os
import statistics
import subprocess
import sys
import tempfile
import time
import uuid
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "devhost" / "client"))

from devhost_client import Devhost  # noqa: E402
from local_service import LocalService  # noqa: E402

CELLS = 2000
REPEATS = 3


def windows_benches():
    """Rows of the Windows programs: name, value, unit."""
    for program in ("qv_collect_bench.exe", "qv_translation_bench.exe"):
        command = [str(ROOT / "scripts" / "wine.sh"), str(Path(os.environ["QV_BUILD"]) / "windows" / "bench" / program)]
        output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            if line.count("\t") == 2:
                yield line.strip().split("\t")


def make_workbook(path):
    """2,000 sentences, no two alike, so that every cell is really sent."""
    import openpyxl
    book = openpyxl.Workbook()
    subjects = ("The report", "Our customer", "The northern region", "This product", "The annual budget")
    verbs = ("describes", "needs", "exceeds", "changes", "confirms")
    objects = ("the plan", "a new contract", "the expected result", "the delivery date", "the price list")
    for index in range(CELLS):
        text = f"{subjects[index % 5]} {verbs[index // 5 % 5]} {objects[index // 25 % 5]} number {index}"
        book.active.cell(row=index // 4 + 1, column=index % 4 + 1, value=text)
    book.save(path)


def union_length(intervals):
    """Length of the union of [start, end] intervals."""
    total = end = 0.0
    for first, last in sorted(intervals):
        total += max(0.0, last - max(first, end))
        end = max(end, last)
    return total


def one_run(service, workbook):
    """Translates the workbook once; gives wall time in ms, the intervals spent elsewhere, and the host's counters."""
    service.reset()
    with Devhost("--workbook", workbook, "--engine", "calc", "--service", service.url) as host:
        host.post(action="setAccessToken", accessToken="dev-bench")
        host.do("reset-counters")
        started = time.time() * 1000
        host.post(action="start", panelMode="full", sourceLang="en", targetLang="es",
                  clientTraceId=str(uuid.uuid4()), excelBilingualBelow=True)
        host.wait("onComplete({", timeout=300)
        ended = time.time() * 1000
        counters = host.do("counters")
        host.quit()
    served = [(entry["startMs"], entry["endMs"]) for entry in service.requests()]
    within = [(max(first, started), min(last, ended)) for first, last in served + counters["busy"]]
    return ended - started, union_length([pair for pair in within if pair[1] > pair[0]]), counters


def run_overhead():
    service = LocalService()
    try:
        with tempfile.TemporaryDirectory() as folder:
            workbook = Path(folder) / "bench.xlsx"
            make_workbook(workbook)
            runs = [one_run(service, workbook) for _ in range(REPEATS)]
    finally:
        service.close()
    walls = [wall for wall, _, _ in runs]
    shares = [100 * (wall - elsewhere) / wall for wall, elsewhere, _ in runs]
    calls = [sum(counters["calls"].values()) / CELLS for _, _, counters in runs]
    yield f"run of {CELLS} cells, wall", f"{statistics.median(walls):.0f}", "ms"
    yield f"run of {CELLS} cells, own overhead", f"{statistics.median(shares):.1f}", "%"
    yield "host calls per written cell", f"{statistics.median(calls):.1f}", "calls"


def main():
    rows = [*windows_benches(), *run_overhead()]
    width = max(len(name) for name, _, _ in rows)
    for name, value, unit in rows:
        print(f"{name:{width}}  {value:>12}  {unit}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
