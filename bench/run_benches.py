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
from mcp_bench import mcp_rows  # noqa: E402

CELLS = 2000
REPEATS = 3


# Program under Wine, how often it is started, and whether it gets the local service's address. What a process does but
# once needs several processes; the others take their medians themselves.
PROGRAMS = (
    ("qv_start_bench.exe", 5, False),
    ("qv_page_bench.exe", 5, True),
    ("qv_script_bench.exe", 1, True),
    ("qv_collect_bench.exe", 1, False),
    ("qv_translation_bench.exe", 1, False),
    ("qv_display_bench.exe", 1, False),
    ("qv_image_bench.exe", 1, False),
    ("qv_blank_rows_bench.exe", 1, False),
)
PROGRAM_LIMIT_S = 180
WINE = str(ROOT / "scripts" / "wine.sh")


def windows_program(name):
    return str(Path(os.environ["QV_BIN"]) / name)


def run_program(program, command):
    """The rows that one start prints: name, value, unit."""
    ended = subprocess.run(command, capture_output=True, text=True, timeout=PROGRAM_LIMIT_S)
    *rows, last = ended.stdout.splitlines() or [""]
    if ended.returncode != 0 or last != "end":
        sys.exit(f"{program} failed: {ended.stderr.strip() or 'it ended early'}")
    return [row.split("\t") for row in rows]


def windows_benches(service):
    """Rows of the Windows programs, each value the median of its program's runs."""
    for program, runs, wants_service in PROGRAMS:
        arguments = [service.url] if wants_service else []
        command = [WINE, windows_program(program), *arguments]
        for same in zip(*(run_program(program, command) for _ in range(runs)), strict=True):
            name, _, unit = same[0]
            yield name, f"{statistics.median(float(value) for _, value, _ in same):.2f}", unit


def relay_bench():
    """Rows of the model proxy, beside those of nginx where scripts/bench.sh has found it."""
    nginx = os.environ.get("QV_NGINX")
    command = ["node", str(ROOT / "bench" / "relay_bench.mjs"), WINE, windows_program("qv_llm_proxy.exe")]
    yield from run_program("relay_bench.mjs", command + ([nginx] if nginx else []))


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


def run_overhead(service):
    with tempfile.TemporaryDirectory() as folder:
        workbook = Path(folder) / "bench.xlsx"
        make_workbook(workbook)
        runs = [one_run(service, workbook) for _ in range(REPEATS)]
    walls = [wall for wall, _, _ in runs]
    shares = [100 * (wall - elsewhere) / wall for wall, elsewhere, _ in runs]
    calls = [sum(counters["calls"].values()) / CELLS for _, _, counters in runs]
    yield f"run of {CELLS} cells, wall", f"{statistics.median(walls):.0f}", "ms"
    yield f"run of {CELLS} cells, own overhead", f"{statistics.median(shares):.1f}", "%"
    yield "host calls per written cell", f"{statistics.median(calls):.1f}", "calls"


def make_gaps(path):
    """5,000 rows, every tenth of them blank: LibreOffice takes more than its share of time for each that goes."""
    import openpyxl
    book = openpyxl.Workbook(write_only=True)
    sheet = book.create_sheet("Gaps")
    for row in range(1, 5001):
        sheet.append([] if row % 10 == 0 else [row, "text"])
    sheet.append(["end"])
    book.save(path)


def blank_rows_bench(service):
    """The ribbon's button on LibreOffice, from the press to the question and from the answer to the last row."""
    with tempfile.TemporaryDirectory() as folder:
        workbook = Path(folder) / "gaps.xlsx"
        make_gaps(workbook)
        with Devhost("--workbook", workbook, "--engine", "calc", "--service", service.url, "--no-pane") as host:
            host.do("reset-counters")
            started = time.time()
            host.press("btnDeleteBlankRows")
            host.box(timeout=120)
            asked = time.time()
            host.answer("Yes")
            # Answered once the button has done its work.
            counters = host.do("counters", timeout=PROGRAM_LIMIT_S * 2)
            ended = time.time()
            inside = union_length(counters["busy"]) / 1000
            deleted = counters["calls"]["Range.Delete"]
    yield f"LibreOffice: find and show {deleted} of 5000 rows, blank ones", f"{(asked - started) * 1000:.0f}", "ms"
    yield f"LibreOffice: delete {deleted} of 5000 rows", f"{ended - asked:.1f}", "s"
    yield "LibreOffice: of both, in its calls", f"{100 * inside / (ended - started):.0f}", "%"


def main():
    service = LocalService()
    try:
        rows = [*windows_benches(service), *relay_bench(), *run_overhead(service), *blank_rows_bench(service),
                *mcp_rows(lambda workbook: Devhost("--workbook", workbook, "--engine", "calc", "--service", service.url))]
    finally:
        service.close()
    width = max(len(name) for name, _, _ in rows)
    for name, value, unit in rows:
        print(f"{name:{width}}  {value:>12}  {unit}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
