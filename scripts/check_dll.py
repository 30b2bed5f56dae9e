#!/usr/bin/env python3
"""Checks the add-in DLL as it is shipped: what it imports, what it exports, that it is stripped, and its size."""

import re
import subprocess
import sys
from pathlib import Path

EXPORTS = {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"}
# Libraries that every 64-bit Windows 10 and 11 has.
SYSTEM = {
    "advapi32.dll", "comctl32.dll", "crypt32.dll", "gdi32.dll", "gdiplus.dll", "httpapi.dll", "kernel32.dll",
    "msvcrt.dll", "ole32.dll", "oleacc.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll",
    "version.dll", "winhttp.dll",
}
LARGEST = 4 * 1024 * 1024


def objdump(option, path):
    command = ["x86_64-w64-mingw32-objdump", option, str(path)]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def problems(path):
    headers = objdump("-p", path)
    imports = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers)}
    for name in sorted(imports - SYSTEM):
        yield f"imports {name}, which is no Windows system library"
    names = headers.split("[Ordinal/Name Pointer] Table", 1)[-1]
    exports = set(re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+(?:[0-9a-f]+\s+)?)?(\S+)$", names, re.M))
    if exports != EXPORTS:
        yield f"exports {sorted(exports)} instead of {sorted(EXPORTS)}"
    if "no symbols" not in objdump("-t", path):
        yield "is not stripped"
    size = path.stat().st_size
    if size >= LARGEST:
        yield f"has {size} bytes, {LARGEST} are the limit"


def main():
    path = Path(sys.argv[1])
    found = list(problems(path))
    for problem in found:
        print(f"{path.name} {problem}.")
    if not found:
        print(f"{path.name}: {path.stat().st_size} bytes, four exports, system imports only.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
