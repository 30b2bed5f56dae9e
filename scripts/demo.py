#!/usr/bin/env python3
"""Translates one workbook through the development host and says what happened. Called by scripts/demo.sh."""

import argparse
import collections
import json
import re
import shutil
import ssl
import sys
import time
import urllib.request
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "devhost" / "client"))

from devhost_client import Devhost, DevhostError, unix_path  # noqa: E402
from panel import press  # noqa: E402

# Leaves room for the sheet beside it.
PANE_WIDTH_PT = 330
SAMPLE = ROOT / "samples" / "quarterly-report.xlsx"


class Refusal(Exception):
    """Something the user can mend; its text is the one line that is printed."""


class OneLineParser(argparse.ArgumentParser):
    """Says what is wrong with the command line in one line."""

    def error(self, message):
        raise Refusal(f"{message[:1].upper()}{message[1:]}; scripts/demo.sh --help tells the options.")


def parse_arguments():
    parser = OneLineParser(prog="demo.sh", add_help=False, allow_abbrev=False)
    parser.add_argument("file", nargs="?", type=Path)
    parser.add_argument("--from", dest="source", default="en")
    parser.add_argument("--to", dest="target", default="es")
    parser.add_argument("--layout", choices=("target", "dual"), default="dual")
    parser.add_argument("--all-sheets", action="store_true")
    parser.add_argument("--out", type=Path, default=ROOT / "out")
    parser.add_argument("--service", help=argparse.SUPPRESS)
    parser.add_argument("--authority", help=argparse.SUPPRESS)
    parser.add_argument("--check-arguments", action="store_true", help=argparse.SUPPRESS)
    return parser.parse_args()


def check_workbook(path):
    if not path.exists():
        raise Refusal(f"There is no file {path}.")
    if not path.is_file() or not zipfile.is_zipfile(path):
        raise Refusal(f"{path} is no .xlsx workbook.")
    with zipfile.ZipFile(path) as package:
        if "xl/workbook.xml" not in package.namelist():
            raise Refusal(f"{path} is no .xlsx workbook.")


def check_languages(service, authority, source, target):
    trust = ssl.create_default_context(cafile=authority)
    with urllib.request.urlopen(f"{service}/v1/languages", timeout=10, context=trust) as answer:
        pairs = json.load(answer)["pairs"]
    if pairs == "any" or [source, target] in pairs:
        return
    known = ", ".join(f"{a} to {b}" for a, b in pairs)
    raise Refusal(f"The local service cannot translate {source} to {target}; it knows {known}.")


def free_name(path, may_replace):
    """`path`, or the same with a number that no file has yet."""
    number = 2
    free = path
    while free.exists() and not may_replace:
        free = path.with_stem(f"{path.stem} ({number})")
        number += 1
    return free


class Progress:
    """One line that keeps up with the run; plain lines when the output is no terminal."""

    def __init__(self):
        self.done = self.total = 0
        self._shown = 0.0
        self._live = sys.stdout.isatty()

    def show(self, text, force=False):
        now = time.monotonic()
        if not force and now - self._shown < (0.1 if self._live else 2.0):
            return
        self._shown = now
        if self._live:
            print(f"\r\033[K{text}", end="\n" if force else "", flush=True)
        else:
            print(text, flush=True)

    def on_script(self, script):
        if match := re.search(r"onScanProgress\(\{runId:\d+,current:(\d+),total:(\d+)\}", script):
            self.show(f"Reading row {match[1]} of {match[2]}…")
        elif match := re.search(r"onReady\(\{total:\d+,translatable:(\d+),", script):
            self.total = int(match[1])
            self.show(f"{self.total} texts to translate", force=True)
        elif "onProgress({" in script:
            self.done += 1
            percent = 100 * self.done // max(self.total, 1)
            self.show(f"Translated {self.done} of {self.total} ({percent} %)", force=self.done == self.total)


def set_choice(panel, element, value):
    """Sets a field of the page as its user would, by its id."""
    panel.value(f"""(() => {{
      const field = document.getElementById({json.dumps(element)});
      field.value = {json.dumps(value)};
      field.dispatchEvent(new Event('change', {{ bubbles: true }}));
    }})()""")


def open_panel(host, options, all_sheets):
    """Presses the ribbon's button, signs in and chooses what to translate, as a user does."""
    panel = press(host, "btnTranslateFullDoc")
    host.do("pane-width", pt=PANE_WIDTH_PT)
    panel.sign_in("Demo")
    panel.click("label:has(input[name=scope][value=full])")
    panel.click(f"label:has(input[name=layout][value={options.layout}])")
    if panel.value("document.getElementById('all-sheets').checked") != all_sheets:
        panel.click("#all-sheets")
    set_choice(panel, "source", options.source)
    set_choice(panel, "target", options.target)
    return panel


def run_translation(host, panel):
    """Presses the page's own button and follows the run to its end; gives the notices that it raised."""
    panel.start()
    progress = Progress()
    notices = []
    while True:
        script = host.wait("", timeout=180)
        progress.on_script(script)
        if '"sheetWriteBlocked"' in script:
            notices.append(json.loads(script)["message"])
        if match := re.search(r'onError\(\{(?:code:"([^"]*)",)?message:"((?:[^"\\]|\\.)*)"', script):
            raise DevhostError(f"The run failed: {match[2] or match[1]}")
        if "onComplete({" in script:
            panel.wait_for_phase("done")
            return notices


def load_cells(path):
    """Every non-empty cell of every visible sheet: {(sheet, address): cell}, and the name of the active sheet."""
    import openpyxl
    book = openpyxl.load_workbook(path)
    sheets = [sheet for sheet in book.worksheets if sheet.sheet_state == "visible"]
    cells = {(sheet.title, cell.coordinate): cell
             for sheet in sheets for row in sheet.iter_rows() for cell in row if cell.value is not None}
    return cells, book.active.title


def reason_for(cell, before):
    """Why a cell that is as it was before needed no translation or got none, in words."""
    if before.data_type == "f":
        return "formulas"
    if before.data_type == "b" or isinstance(before.value, bool):
        return "booleans"
    if before.is_date:
        return "dates"
    if before.data_type == "n":
        return "numbers"
    if before.data_type == "e":
        return "errors"
    text = str(before.value)
    if len(text) > 20000:
        return "longer than 20000 characters"
    if not any(char.isalpha() for char in text):
        return "without letters"
    if cell.parent.protection.sheet and before.protection.locked:
        return "blocked by protection"
    return "same in both languages or already at their last line"


def summarize(before_path, after_path, all_sheets):
    """Compares the two files: what was translated, and what was left and why."""
    before, active = load_cells(before_path)
    after, _ = load_cells(after_path)
    translated = 0
    left = collections.Counter()
    for place, cell in after.items():
        if place not in before or not (all_sheets or place[0] == active):
            continue
        if str(cell.value) != str(before[place].value):
            translated += 1
        else:
            left[reason_for(cell, before[place])] += 1
    return translated, left


def copy_logs(host_logs, offsets, folder):
    """What this run added to the trace logs."""
    copied = []
    for path in host_logs:
        if path.exists():
            data = path.read_bytes()[offsets.get(path, 0):]
            (folder / path.name).write_bytes(data)
            copied.append(folder / path.name)
    return copied


def demo(options):
    own_sample = options.file is None
    source = (SAMPLE if own_sample else options.file).resolve()
    all_sheets = options.all_sheets or own_sample
    check_workbook(source)
    check_languages(options.service, options.authority, options.source, options.target)
    out = options.out.resolve()
    out.mkdir(parents=True, exist_ok=True)
    result = free_name(out / f"{source.stem}.{options.target}.xlsx", own_sample)
    before_picture = free_name(out / "before.png", own_sample)
    after_picture = free_name(out / "after.png", own_sample)

    window_picture = free_name(out / "window.png", own_sample)

    with Devhost("--workbook", source, "--engine", "calc", "--service", options.service, "--authority", options.authority,
                 "--window", "--browser", "chromium", log_path=out / "devhost.log") as host:
        logs = [unix_path(path) for path in host.do("log")["paths"]]
        offsets = {path: path.stat().st_size for path in logs if path.exists()}
        host.do("shot", path=str(before_picture))
        panel = open_panel(host, options, all_sheets)
        started = time.monotonic()
        notices = run_translation(host, panel)
        seconds = time.monotonic() - started
        host.do("sync")
        host.do("screenshot", path=str(window_picture))
        host.do("shot", path=str(after_picture))
        if result.exists():
            result.unlink()
        host.do("save", path=str(result))
        host.quit()
    shutil.copystat(source, result)

    translated, left = summarize(source, result, all_sheets)
    blocked = left.pop("blocked by protection", 0)
    print(f"\n{translated} cells translated in {seconds:.1f} s, {blocked} blocked by protection, "
          f"{sum(left.values())} left as they are:")
    for reason, count in left.most_common():
        print(f"  {count:5d}  {reason}")
    for notice in notices:
        print(f"Notice in the panel: {notice}")
    print(f"\nTranslated workbook  {result}\nPictures             {before_picture}\n"
          f"                     {after_picture}\n                     {window_picture}")
    for path in copy_logs(logs, offsets, out):
        print(f"Trace log            {path}")


def main():
    try:
        options = parse_arguments()
        if options.check_arguments:
            if options.file is not None:
                check_workbook(options.file)
        else:
            demo(options)
    except Refusal as refusal:
        print(refusal, file=sys.stderr)
        return 2
    except DevhostError as error:
        print(f"{error} (details: {options.out / 'devhost.log'})", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
