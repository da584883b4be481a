"""Mutation testing: plants faults in the sources one at a time and shows which of them the tests find.

A copy of the tree is built in build-mutate. Each fault changes one place: a comparison, a sign, a constant, swapped
arguments, the other side or axis, a dropped statement. What depends on it is built again, and the test programs that are
made of the changed file run, those of its own subject first, until one fails. What is left is looked for by the
comparison with the golden bits (core), the tests that run the commands from outside (all else), the tests in which memory,
disk or time run out, and at the end by the tests built with sanitizers. Faults that do not compile are replaced by others. Same seed
and tree, same faults. --list plants the faults of scripts/mutation/byHand.txt instead; each of them must compile.
"""
import argparse
import json
import os
import pathlib
import random
import sys
import time

import operators
import trial

REPORT = trial.FOLDER / "faults.json"
LIST = pathlib.Path(__file__).parent / "byHand.txt"
SOURCES = ["src", "inspect", "report", "simulator", "tools/kxmath"]


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter,
                                     prog="scripts/mutate")
    parser.add_argument("paths", nargs="*", type=pathlib.Path, default=[pathlib.Path(s) for s in SOURCES],
                        help="source files and folders; without any " + ", ".join(SOURCES))
    parser.add_argument("--count", type=int, default=250, help="how many faults (default %(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="choice of the faults (default %(default)s)")
    parser.add_argument("--at-least", type=float, default=90, metavar="PERCENT",
                        help="exit with 1 when fewer are found (default %(default)s)")
    parser.add_argument("--list", action="store_true", help="plant the faults of the list written by hand")
    parser.add_argument("--again", action="store_true", help="plant what survived the last time, and nothing else")
    parser.add_argument("--dry", action="store_true", help="only show the faults")
    return parser.parse_args()


def sources(paths):
    files = set()
    for path in paths:
        found = [trial.ROOT / path] if (trial.ROOT / path).is_file() else (trial.ROOT / path).rglob("*")
        files.update(f.relative_to(trial.ROOT) for f in found if f.suffix in (".cpp", ".h"))
    return sorted(files)


def survivors():
    """The faults that survived the last run and whose lines still exist."""
    for fault in json.loads(REPORT.read_text()):
        lines = (trial.ROOT / fault["file"]).read_text().splitlines()
        places = [i for i, line in enumerate(lines) if fault["before"] in line]
        if fault["found"] is None and places:
            yield {**fault, "line": min(places, key=lambda i: abs(i + 1 - fault["line"])) + 1}


def chosen(options):
    if options.again:
        return list(survivors())
    if options.list:
        faults, stale = operators.listed(trial.ROOT, LIST)
        if stale:
            sys.exit("Faults that fit the sources no more:\n" + "\n".join(stale))
        files = {str(f) for f in sources(options.paths)}
        return [f for f in faults if f["file"] in files]
    return operators.pick(operators.all_faults(trial.ROOT, sources(options.paths)), random.Random(options.seed))


def show(fault, state):
    print(f"{state}: {fault['file']}:{fault['line']} ({fault['kind']})\n    {fault['before']}\n    {fault['after']}",
          file=sys.stderr, flush=True)


def print_table(done, start):
    print("| part | planted | found | survived |\n| --- | ---: | ---: | ---: |")
    layers = sorted({operators.layer_of(f["file"]) for f in done})
    for layer in layers + [None]:
        of_layer = [f for f in done if layer in (None, operators.layer_of(f["file"]))]
        found = sum(f["found"] is not None for f in of_layer)
        print(f"| {layer or 'all'} | {len(of_layer)} | {found} | {len(of_layer) - found} |")
    print(f"{(time.monotonic() - start) / 60:.0f} minutes; every fault: {os.path.relpath(REPORT)}")


def look_with_sanitizers(done, programs):
    """Tries what survived with the sanitizers, whose build takes long."""
    sanitizers = trial.Sanitizers()
    for fault in done:
        if fault["found"] is None and (name := sanitizers.find(fault, programs)):
            fault["found"] = f"{name.removeprefix('kxmath_test_')} (sanitizers)"
            show(fault, f"found by {fault['found']}")
            REPORT.write_text(json.dumps(done, indent=1))


def main():
    options = parse()
    faults = chosen(options)
    count = len(faults) if options.list or options.again else options.count
    if options.dry:
        for fault in faults[:count]:
            show(fault, "fault")
        return 0
    trial.copy_tree()
    programs = trial.build_programs({operators.layer_of(f["file"]) for f in faults})
    done, start = [], time.monotonic()
    for fault in faults:
        if len(done) == count:
            break
        found_by = trial.find(fault, programs)
        if found_by == "":
            if options.list:
                sys.exit(f"Does not compile: {fault['file']}:{fault['line']}: {fault['text'].strip()}")
            continue
        done.append({**fault, "found": found_by})
        if found_by is None or sys.stderr.isatty():
            show(fault, f"{len(done)}/{count} " + (f"found by {found_by}" if found_by else "SURVIVES"))
        REPORT.write_text(json.dumps(done, indent=1))
    look_with_sanitizers(done, programs)
    print_table(done, start)
    found = sum(f["found"] is not None for f in done)
    return 0 if done and 100 * found >= options.at_least * len(done) else 1


if __name__ == "__main__":
    sys.exit(main())
