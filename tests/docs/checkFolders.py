"""checkFolders.py PAGE ROOT: the page names each folder of the tree that holds sources, and only existing folders."""
import pathlib
import re
import sys

# How deep a part of the tree is named. A folder that is deeper is part of its parent.
DEPTHS = {"src": 2, "include": 2, "inspect": 2, "report": 2, "tools": 3, "tests": 2}
IGNORED = {"out"}

page, root = sys.argv[1], pathlib.Path(sys.argv[2])
named = set(re.findall(r"`([\w./-]+)/`", pathlib.Path(page).read_text(encoding="utf-8")))
faults = [f"{name}/ is not there" for name in sorted(named)
          if not name.isupper() and "SUBJECT" not in name and not (root / name).is_dir()]


def folders(folder, depth):
    for child in sorted(folder.iterdir()):
        if child.is_dir() and depth > 0 and not child.name.startswith((".", "build", "__")):
            yield child
            yield from folders(child, depth - 1)


for top in folders(root, 1):
    if top.name in IGNORED:
        continue
    for folder in [top, *folders(top, DEPTHS.get(top.name, 1) - 1)]:
        name = folder.relative_to(root).as_posix()
        hasFiles = any(child.is_file() and child.suffix != ".txt" for child in folder.iterdir())
        isCovered = name in named or any(other.startswith(name + "/") for other in named)
        if not isCovered and (hasFiles or folder == top):
            faults.append(f"does not name {name}/")
for fault in faults:
    print(f"{page}: {fault}")
sys.exit(1 if faults or not named else 0)
