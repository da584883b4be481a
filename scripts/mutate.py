"""Mutation testing: plants faults in the library one at a time and shows which of them the tests find.

A copy of the tree is built in build-mutate. Each fault changes one place of one source file: a comparison, a sign, a
constant, an operand, a test for NaN. The library is built again and the test programs run, those of the file's own
area first and the comparison with the golden bits last, until one fails. Faults that do not compile are replaced by
others. Same seed and tree, same faults.
"""
import argparse
import collections
import json
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build-mutate" / "tree"
BUILD = ROOT / "build-mutate" / "build"
GOLDEN = BUILD / "tests" / "golden" / "kxmath_golden"
REPORT = ROOT / "build-mutate" / "faults.json"
AREAS = ["rounding", "sorting", "lists", "simd", "io", "geometry", "cloud", "profile", "grid", "railway"]
TESTED = ["geometry", "io", "cloud", "profile", "grid", "railway"]
OPERAND = r"[A-Za-z_][\w.\[\]]*(?:\(\))?"
NUMBER = re.compile(r"(?<![\w.])(\d+\.\d+(?:e-?\d+)?f?|\d+)(?![\w.])")


def swapped(first, second):
    """Swaps two texts between spaces; templates have no spaces around them."""
    return [(re.compile(rf"(?<= ){re.escape(a)}(?= )"), lambda m, b=b: b)
            for a, b in ((first, second), (second, first))]


def other_number(match):
    text = match.group(1)
    if "." not in text:
        return str(int(text) + 1)
    suffix = "f" if text.endswith("f") else ""
    value = float(text.rstrip("f"))
    return f"{value * 1.25 if value else 0.25!r}{suffix}"


FAULTS = {
    "flipped comparison": swapped("<", "<=") + swapped(">", ">=") + swapped("==", "!="),
    "turned comparison": swapped("<", ">") + swapped("<=", ">="),
    "other connective": swapped("&&", "||"),
    "other operator": swapped("+", "-") + swapped("*", "/") + swapped("+=", "-="),
    "swapped operands": [(re.compile(rf"(?<![\w.\])])({OPERAND}) (-|/) ({OPERAND})(?![\w.(\[])"),
                          lambda m: f"{m[3]} {m[2]} {m[1]}")],
    "off by one": [(re.compile(r" [+-] 1(?![\w.])"), lambda m: ""), (re.compile(r"(?<== )0(?=;)"), lambda m: "1")],
    "dropped NaN test": [(re.compile(r"!(?:std::)?isnan\([^()]*\)"), lambda m: "true"),
                         (re.compile(r"(?<!!)(?:std::)isnan\([^()]*\)"), lambda m: "false")],
    "wrong constant": [(NUMBER, other_number)],
    "other bound": swapped("std::min(", "std::max(") + [(re.compile(r"std::min\("), lambda m: "std::max("),
                                                         (re.compile(r"std::max\("), lambda m: "std::min(")],
}
# Block sizes and thresholds for speed, on which no result depends.
SPEED_ONLY = re.compile(r"\bk(Block|BlockSize|Part|Unroll|FewRecords|ManyLevels|Worthwhile|Counted|Points|TanOf\w+) = ")
NO_CODE = re.compile(r"^\s*(//|\*|#|template|static_assert|using |namespace|@)")


def code_of(line):
    """The line without its comment; text in quotes is blanked, so that positions stay."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'', lambda m: '"' + "_" * (len(m[0]) - 2) + '"', line)
    return line.split("//")[0]


def compiled_lines(file):
    """The numbered lines without those for machines of the other byte order."""
    foreign = None
    for number, line in enumerate((ROOT / file).read_text().splitlines()):
        indent = len(line) - len(line.lstrip())
        if "if constexpr (Q_BYTE_ORDER" in line:
            foreign = indent
        elif foreign is not None and line.strip().startswith("}") and indent <= foreign:
            foreign = None
        elif foreign is None and not NO_CODE.match(line) and not SPEED_ONLY.search(line):
            yield number, line


def all_faults(files):
    faults = []
    for file in files:
        for number, line in compiled_lines(file):
            code = code_of(line)
            for kind, changes in FAULTS.items():
                for pattern, change in changes:
                    for match in pattern.finditer(code):
                        text = line[:match.start()] + change(match) + line[match.end():]
                        if text != line:
                            faults.append({"file": str(file), "line": number + 1, "kind": kind, "before": line.strip(),
                                           "after": text.strip(), "text": text})
    return faults


def pick(faults, count, chance):
    """`count` faults, spread over areas, kinds and files, and a reserve after them to replace those that do not compile."""
    groups = collections.defaultdict(list)
    for fault in faults:
        groups[(fault["file"].split("/")[1], fault["kind"])].append(fault)
    for group in groups.values():
        chance.shuffle(group)
    order = []
    areas = {area: [g for (a, _), g in sorted(groups.items()) if a == area] for area in AREAS}
    for kinds in areas.values():
        chance.shuffle(kinds)
    while any(areas.values()):
        for area in AREAS:
            kinds = areas[area]
            if kinds:
                group = kinds.pop(0)
                order.append(group.pop())
                if group:
                    kinds.append(group)
    return order[:count * 3]


def survivors():
    """The faults that survived the last run and whose lines still exist."""
    for fault in json.loads(REPORT.read_text()):
        lines = (ROOT / fault["file"]).read_text().splitlines()
        places = [i for i, line in enumerate(lines) if line.strip() == fault["before"]]
        if fault["found"] is None and places:
            yield {**fault, "line": min(places, key=lambda i: abs(i + 1 - fault["line"])) + 1}


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))


def run(command, timeout=None):
    try:
        return subprocess.run(command, cwd=COPY, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout, preexec_fn=limit_memory).returncode
    except subprocess.TimeoutExpired:
        return "endless"


def build():
    return run(["ninja", "-C", str(BUILD), "KxMath"])


def find(fault):
    """The test program that finds the fault, None when it survives, "" when it does not compile."""
    file = COPY / fault["file"]
    original = file.read_text()
    lines = original.splitlines()
    lines[fault["line"] - 1] = fault["text"]
    file.write_text("\n".join(lines) + "\n")
    try:
        if build() != 0:
            return ""
        own = fault["file"].split("/")[1]
        for area in sorted(TESTED, key=lambda a: a != own):
            program = BUILD / "tests" / area / f"kxmath_test_{area}"
            result = run([str(program), "--gtest_fail_fast"], timeout=60)
            if result != 0:
                return f"{area} (endless)" if result == "endless" else area
        return "golden" if run(["scripts/golden", "--compare", str(GOLDEN)], timeout=60) != 0 else None
    finally:
        file.write_text(original)


def prepare():
    tracked = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout
    shutil.rmtree(COPY, ignore_errors=True)
    for name in filter(None, tracked.decode().split("\0")):
        target = COPY / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(ROOT / name, target)  # newer than a build with a fault that was not removed
    subprocess.run(["cmake", "-S", str(COPY), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -D_GLIBCXX_ASSERTIONS", "-DKXMATH_DEVELOPER=OFF",
                    "-DKXMATH_BUILD_TESTS=ON", "-DKXMATH_BUILD_TOOLS=ON"], check=True,
                   stdout=subprocess.DEVNULL)
    subprocess.run(["ninja", "-C", str(BUILD)] + [f"kxmath_test_{area}" for area in TESTED] + ["kxmath_golden"],
                   check=True)
    for area in TESTED:
        if run([str(BUILD / "tests" / area / f"kxmath_test_{area}")]) != 0:
            sys.exit(f"The tests of {area} fail before any fault is planted.")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter,
                                     prog="scripts/mutate")
    parser.add_argument("files", nargs="*", type=pathlib.Path, help="source files; without any, all of src/")
    parser.add_argument("--count", type=int, default=140, help="how many faults (default %(default)s)")
    parser.add_argument("--seed", type=int, default=1, help="choice of the faults (default %(default)s)")
    parser.add_argument("--at-least", type=float, default=90, metavar="PERCENT",
                        help="exit with 1 when fewer are found (default %(default)s)")
    parser.add_argument("--again", action="store_true", help="plant what survived the last time, and nothing else")
    options = parser.parse_args()
    files = options.files or sorted(f.relative_to(ROOT) for f in (ROOT / "src").rglob("*") if f.suffix in (".cpp", ".h"))
    chance = random.Random(options.seed)
    faults = list(survivors()) if options.again else pick(all_faults(files), options.count, chance)
    prepare()
    done, start = [], time.monotonic()
    for fault in faults:
        if len(done) == options.count:
            break
        found_by = find(fault)
        if found_by == "":
            continue
        done.append({**fault, "found": found_by})
        if found_by is None or sys.stderr.isatty():
            state = f"found by {found_by}" if found_by else "SURVIVES"
            print(f"{len(done)}/{options.count} {state}: {fault['file']}:{fault['line']} ({fault['kind']})\n"
                  f"    {fault['before']}\n    {fault['after']}", file=sys.stderr, flush=True)
        REPORT.write_text(json.dumps(done, indent=1))
    build()
    print("| area | planted | found | survived |\n| --- | ---: | ---: | ---: |")
    found_all = 0
    for area in AREAS + [None]:
        of_area = [f for f in done if area is None or f["file"].split("/")[1] == area]
        found = sum(f["found"] is not None for f in of_area)
        print(f"| {area or 'all'} | {len(of_area)} | {found} | {len(of_area) - found} |")
        found_all = found
    print(f"{(time.monotonic() - start) / 60:.0f} minutes; every fault: {os.path.relpath(REPORT)}")
    return 0 if done and 100 * found_all >= options.at_least * len(done) else 1


if __name__ == "__main__":
    sys.exit(main())
