"""checkBlocks.py [--tasks] PAGE SOURCE...: each C++ block of the page must be in one of the sources, apart from the
indentation. With --tasks, also each function of the sources with a number ("// P1. ...") must be on the page, once in a
row of a table and once as a block."""
import re
import sys
import textwrap


def squeeze(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


def taskFaults(page, blocks, sources):
    rows = re.findall(r"^\| \[(\w+)\]\(#\w+\) \|", page, re.MULTILINE)
    links = [link.upper() for link in re.findall(r"^\| \[\w+\]\(#(\w+)\) \|", page, re.MULTILINE)]
    targets = [target.upper() for target in re.findall(r'^<a id="(\w+)"></a>$', page, re.MULTILINE)]
    shown = [match[1] for match in (re.match(r"// (\w+)\. ", block) for block in blocks) if match]
    written = [number for source in sources for number in re.findall(r"^// ([A-Z]\d+)\. ", source, re.MULTILINE)]
    for name, numbers in {"rows": rows, "links": links, "targets": targets, "blocks": shown}.items():
        if sorted(numbers) != sorted(written):
            yield f"{name} and sources differ in {sorted(set(numbers) ^ set(written)) or 'a repeated number'}"


isOfTasks = sys.argv[1] == "--tasks"
pageName, *sourceNames = sys.argv[2 if isOfTasks else 1:]
with open(pageName, encoding="utf-8") as file:
    page = file.read()
sources = []
for name in sourceNames:
    with open(name, encoding="utf-8") as file:
        sources.append(file.read())
blocks = re.findall(r"^```cpp\n(.*?)^```$", page, re.DOTALL | re.MULTILINE)
code = "\n" + "\n".join(squeeze(source) for source in sources) + "\n"

faults = [f"not in the sources:\n{textwrap.indent(block, '    ')}"
          for block in blocks if "\n" + squeeze(block) + "\n" not in code]
if not blocks:
    faults.append("no C++ block")
if isOfTasks:
    faults.extend(taskFaults(page, blocks, sources))
for fault in faults:
    print(f"{pageName}: {fault}")
sys.exit(1 if faults else 0)
