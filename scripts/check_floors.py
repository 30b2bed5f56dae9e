#!/usr/bin/env python3
"""Checks that every include of the product points down the floors.

addin -> panel -> {translation, tools, services} -> workbook -> foundation; the three in braces never include each
other. The platform-free core (every file that CMake lists in qv_core) must not see Windows either.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent / "src"
LEVEL = {"foundation": 0, "workbook": 1, "translation": 2, "tools": 2, "services": 2, "panel": 3, "addin": 4}
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')
WINDOWS_ONLY = re.compile(r"^(windows|unknwn|oaidl|oleauto|comdef|winhttp|wrl/.*|ole2|shlobj|ocidl|oleidl)(\.h)?$")


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1), match.group(2)


def core_sources():
    """Files named in target_sources(qv_core …), relative to src/."""
    for listing in ROOT.glob("*/CMakeLists.txt"):
        for block in re.findall(r"target_sources\(qv_core[^)]*\)", listing.read_text(encoding="utf-8")):
            for name in re.findall(r"[\w/]+\.cpp", block):
                yield listing.parent / name


def floor_problems():
    for path in sorted(ROOT.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        floor = path.relative_to(ROOT).parts[0]
        for number, kind, target in includes(path):
            other = target.split("/")[0]
            if kind != '"' or other not in LEVEL:
                continue
            if other != floor and LEVEL[other] >= LEVEL[floor]:
                yield f"src/{path.relative_to(ROOT)}:{number}: {floor} must not include {target}"


def core_problems():
    """Walks the includes of every core source; none may reach a Windows header outside #ifdef _WIN32."""
    seen = set()
    waiting = [(path, path) for path in core_sources()]
    while waiting:
        path, origin = waiting.pop()
        if path in seen or not path.exists():
            continue
        seen.add(path)
        for number, kind, target in includes(path):
            if kind == '"' and (ROOT / target).exists():
                waiting.append((ROOT / target, origin))
            elif WINDOWS_ONLY.match(target.lower()):
                yield (f"src/{path.relative_to(ROOT)}:{number}: {target} reaches the platform-free "
                       f"{origin.relative_to(ROOT)}")


def main():
    problems = [*floor_problems(), *core_problems()]
    print("\n".join(problems) if problems else "Every include points down.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
