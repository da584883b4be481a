#!/usr/bin/env python3
"""Checks programs and libraries by readelf: hardening.py [--canaries FILE] [--checked FILE] FILE-OR-FOLDER...

No element of a search path for libraries is empty, which would be the current folder; tables of addresses are read-only
before the program runs; programs are loaded at random addresses. FILE has canaries on its stack, or calls checked
functions of the C library.
"""
import argparse
import os
import re
import subprocess
import sys


def readelf(option, path):
    result = subprocess.run(["readelf", option, "-W", path], capture_output=True, text=True, errors="replace",
                            env={**os.environ, "LC_ALL": "C"})
    return result.stdout if result.returncode == 0 else ""


def is_elf(path):
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def faults_of(path):
    header = readelf("-h", path)
    if "Type:" not in header or re.search(r"Type:\s+REL", header):
        return  # an object file
    dynamic = readelf("-d", path)
    if re.search(r"Type:\s+EXEC", header):
        yield "is no position-independent program"
    for paths in re.findall(r"\((?:RUNPATH|RPATH)\).*\[(.*)\]", dynamic):
        if "" in paths.split(":"):
            yield f"takes libraries from the current folder: '{paths}'"
    if "BIND_NOW" not in dynamic or "GNU_RELRO" not in readelf("-l", path):
        yield "has tables of addresses that can be written"


def files_in(path):
    if not os.path.isdir(path):
        yield path
    for folder, folders, names in os.walk(path):
        folders[:] = [f for f in folders if f not in ("CMakeFiles", "packaging")]  # other builds
        yield from (os.path.join(folder, name) for name in names)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="+")
    parser.add_argument("--canaries", action="append", default=[])
    parser.add_argument("--checked", action="append", default=[])
    options = parser.parse_args()
    files = [f for path in options.paths for f in files_in(path) if os.path.isfile(f) and is_elf(f)]
    found = [f"{f} {fault}" for f in files for fault in faults_of(f)]
    for paths, symbol in ((options.canaries, "__stack_chk_fail"), (options.checked, "_chk@")):
        found += [f"{f} calls no {symbol}" for f in paths if symbol not in readelf("--dyn-syms", f)]
    print("\n".join(found) or f"{len(files)} programs and libraries")
    sys.exit(1 if found or not files else 0)


main()
