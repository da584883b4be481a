"""checkBlocks.py PAGE SOURCE: each C++ block of the page must stand in the source, apart from the indentation."""
import re
import sys
import textwrap


def squeeze(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


page, source = sys.argv[1:]
with open(page, encoding="utf-8") as file:
    blocks = re.findall(r"^```cpp\n(.*?)^```$", file.read(), re.DOTALL | re.MULTILINE)
with open(source, encoding="utf-8") as file:
    code = "\n" + squeeze(file.read()) + "\n"

missing = [block for block in blocks if "\n" + squeeze(block) + "\n" not in code]
for block in missing:
    print(f"{page} shows what {source} does not hold:\n{textwrap.indent(block, '    ')}")
if not blocks:
    print(f"{page} has no C++ block")
sys.exit(1 if missing or not blocks else 0)
