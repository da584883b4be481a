"""checkLinks.py PAGE...: each link of a page to a file of the tree, and to a heading or anchor in it, has a target."""
import pathlib
import re
import sys


def anchors(page):
    text = page.read_text(encoding="utf-8")
    headings = re.findall(r"^#+ (.*)$", text, re.MULTILINE)
    slugs = {re.sub(r"[^\w -]", "", heading).strip().lower().replace(" ", "-") for heading in headings}
    return slugs | set(re.findall(r'<a id="([^"]+)"></a>', text))


faults = []
count = 0
for page in map(pathlib.Path, sys.argv[1:]):
    for link in re.findall(r"\]\(([^)\s]+)\)", page.read_text(encoding="utf-8")):
        if "://" in link:
            continue
        count += 1
        name, _, anchor = link.partition("#")
        target = page.parent / name if name else page
        if not target.exists():
            faults.append(f"{page}: {name} is not there")
        elif anchor and anchor not in anchors(target):
            faults.append(f"{page}: {link} leads to no heading")
print("\n".join(faults))
sys.exit(1 if faults or count == 0 else 0)
