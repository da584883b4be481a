"""checkTestNames.py PAGE FOLDER [RESULTS]: each row of the page's tables ends with names of tests (`Suite.Name`); each must
be that of a test in the folder. Each name in the file of results (`name: values`) needs a row, and each row a result."""
import pathlib
import re
import sys

page, folder, *results = sys.argv[1:]
tests = set()
for source in pathlib.Path(folder).rglob("*.cpp"):
    found = re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\((\w+), *(\w+)\)", source.read_text(encoding="utf-8"), re.MULTILINE)
    tests.update(f"{suite}.{name}" for suite, name in found)

faults = []
rows = []
for number, line in enumerate(pathlib.Path(page).read_text(encoding="utf-8").splitlines(), 1):
    if not line.startswith("| `"):
        continue
    rows.append(line.split("`")[1])
    names = re.findall(r"`([^`]+)`", line.rstrip("| ").rsplit(" | ", 1)[-1])
    if not names:
        faults.append(f"line {number} names no test")
    faults.extend(f"line {number}: no test is called {name}" for name in names if name not in tests)
if not rows:
    faults.append("no row of a table")
for file in results:
    names = set(re.findall(r"([A-Za-z][\w.]*):", pathlib.Path(file).read_text(encoding="utf-8")))
    faults.extend(f"no row for the result {name}" for name in sorted(names - set(rows)))
    faults.extend(f"no result for the row {name}" for name in sorted(set(rows) - names))
for fault in faults:
    print(f"{page}: {fault}")
sys.exit(1 if faults else 0)
