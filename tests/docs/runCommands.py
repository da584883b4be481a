"""runCommands.py KXMATH PAGE: runs the lines of the page's sh blocks that begin with "kxmath", in their order, in a folder
of their own. Blocks with a file name behind their language ("ini limits.ini") are files there. Exit code 1 when a command
fails."""
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

kxmath, page = sys.argv[1], pathlib.Path(sys.argv[2])
text = page.read_text(encoding="utf-8")
blocks = re.findall(r"^```sh\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)
files = re.findall(r"^```\w+ ([\w.]+)\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)
commands = [line for block in blocks for line in block.splitlines() if line.startswith("kxmath ")]
faults = [] if commands else ["no command"]
with tempfile.TemporaryDirectory(prefix="kxmath_page_") as folder:
    for name, content in files:
        pathlib.Path(folder, name).write_text(content, encoding="utf-8")
    for command in commands:
        run = subprocess.run([kxmath, *shlex.split(command)[1:]], cwd=folder, capture_output=True, text=True, timeout=60)
        print(command, run.stdout, run.stderr, sep="\n")
        if run.returncode != 0 or run.stderr:
            faults.append(f"{command}: exit code {run.returncode}, {run.stderr.strip()}")
for fault in faults:
    print(f"{page.name}: {fault}")
sys.exit(1 if faults else 0)
