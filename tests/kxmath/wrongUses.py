"""Runs kxmath as it should not be used, and on damaged inputs: wrongUses.py KXMATH TABLE [NAME]

TABLE (wrongUses.txt) says how the inputs are made, and for each run the exit code and a piece of the message. A run
fails also when it crashes, hangs, names no file that it is about, prints a line that is no message of kxmath, or, unless
it has a result, leaves a file or changes one. NAME: only the lines that contain it.
"""
import concurrent.futures
import math
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
from collections import Counter, namedtuple

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "fleet"))
from storeInputs import make_store  # noqa: E402

LONGEST = 60  # s; a run that takes longer hangs
WITH_RESULT = (0, 1, 5)  # exit codes after which outputs may stay
FILE_CODES = (3, 4)  # exit codes that are about a file, which the message names
CONICITY = ("conicity --wheel1 wheel.csv --wheel2 wheel.csv --rail1 rail.csv --rail2 rail.csv --gauge 1435 "
            "--back-to-back 1360")
SETTINGS = "train pass/train_101.bin pass/train_102.bin --out out --settings"
TRAIN = SETTINGS + " pass/settings.ini"
Run = namedtuple("Run", "code message command")
Result = namedtuple("Result", "code faults errors isHang isCrash isChange")


def wheel_height(x):
    """y of a wheel of plain shape, down: a flange 28 mm high, its flank, a cone of 1:20."""
    if x < 27:
        return 28 - (x - 14) ** 2 / 14
    return max(28 - 13 ** 2 / 14 - 2.2 * (x - 27), (70 - x) / 20)


def text_of(points):
    return "".join(f"{x:.4f};{y:.4f}\n" for x, y in points).encode()


def record(points, z):
    return struct.pack("<BHf", 5, len(points), z) + b"".join(struct.pack("<ff", *p) for p in points)


def base_inputs(folder, kxmath):
    """Sound inputs of all kinds."""
    def simulate(*arguments):
        subprocess.run([kxmath, "simulate", *arguments], cwd=folder, check=True)

    simulate("pass", "--cars", "1", "--rate", "500", "--points", "200")
    simulate("shots", "--calibration", "2")
    make_store(lambda *arguments: subprocess.run([kxmath, *arguments], cwd=folder, check=True, capture_output=True),
               folder, "fleet.db", vehicles=2, days=5)
    flat = [(0.5 * i, 0.25 + i % 3) for i in range(40)]
    files = {
        "wheel.csv": text_of([(0.1 * i, wheel_height(0.1 * i)) for i in range(1301)]),
        "rail.csv": text_of([(0.1 * i, 80 - math.sqrt(80 ** 2 - (0.1 * i - 36) ** 2)) for i in range(721)]),
        "flat.bin": struct.pack("<BH", 2, len(flat)) + b"".join(struct.pack("<ff", *p) for p in flat),
        "spatial.bin": struct.pack("<BI", 3, len(flat)) + b"".join(struct.pack("<fff", *p, 1) for p in flat),
        "scan.bin": b"".join(record([(0.5 * i, 12 if 9 < i < 50 and 9 < z < 50 else -80) for i in range(61)], 0.5 * z)
                             for z in range(60)),
    }
    for name, content in files.items():
        (folder / name).write_bytes(content)


def unescaped(text):
    return text.encode("latin-1").decode("unicode_escape").encode("latin-1")


def build(folder, line):
    """One damaged input: NAME = BUILDER ARGUMENTS"""
    name, builder, *rest = re.match(r"(\S+) = (\w+)(?: (.*))?", line).groups()
    path = folder / unescaped(name).decode("latin-1")
    rest = rest[0] or ""
    if builder == "text":  # TEXT with escapes
        path.write_bytes(unescaped(rest))
        return
    if builder == "folder":
        path.mkdir()
        return
    source, *arguments = rest.split(" ", 1)
    if builder == "copy":  # SOURCE, also a folder
        (shutil.copytree if (folder / source).is_dir() else shutil.copy)(folder / source, path)
        return
    content = (folder / source).read_bytes()
    argument = arguments[0] if arguments else ""
    if builder == "head":  # SOURCE BYTES; negative: all but so many
        content = content[:int(argument)]
    elif builder == "tail":  # SOURCE BYTES: without so many at the beginning
        content = content[int(argument):]
    elif builder == "append":  # SOURCE TEXT
        content += unescaped(argument)
    elif builder == "line":  # SOURCE NUMBER TEXT: the text is put in place of a line
        number, text = re.match(r"(\d+) ?(.*)", argument).groups()
        lines = content.split(b"\n")
        lines[int(number) - 1] = unescaped(text)
        content = b"\n".join(lines)
    elif builder == "replace":  # SOURCE FROM -> TO, once
        old, new = (unescaped(text) for text in argument.split(" -> "))
        assert old in content, line
        content = content.replace(old, new, 1)
    elif builder == "recode":  # SOURCE ENCODING
        content = content.decode().encode(argument)
    elif builder == "repeat":  # SOURCE TIMES
        content *= int(argument)
    else:
        raise ValueError(line)
    path.write_bytes(content)


def state_of(folder):
    """Name, size and content of each file."""
    files = {}
    for path in folder.rglob("*"):
        if path.is_file():
            files[str(path.relative_to(folder))] = path.read_bytes()
    return files


def run_one(run, inputs, kxmath):
    with tempfile.TemporaryDirectory(prefix="kxmath_wrong_") as name:
        folder = pathlib.Path(name)
        for source in inputs.iterdir():
            if source.name in run.command:
                (shutil.copytree if source.is_dir() else shutil.copy)(source, folder / source.name)
        before = state_of(folder)
        command = run.command
        isShell = command.startswith("$ ")
        if isShell:
            command = ["sh", "-c", command[2:]]
        else:
            command = [kxmath, *(unescaped(word) for word in shlex.split(command))]
        environment = dict(os.environ, KXMATH=kxmath, LC_ALL="C.UTF-8")
        process = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True)
        try:
            output, errors = process.communicate(timeout=LONGEST)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            process.communicate()
            return Result(None, [f"does not end within {LONGEST} s"], "", True, False, False)
        errors = errors.decode("utf-8")
        said = errors + (output.decode("utf-8") if command[1:3] == [b"settings", b"check"] else "")  # whose result they are
        code = process.returncode
        faults = []
        isCrash = code < 0 or code > 128
        if code != run.code:
            faults.append(f"ends with {code}, not {run.code}")
        if run.message not in said:
            faults.append(f"does not say: {run.message}")
        for line in errors.splitlines():
            if not line.startswith("kxmath") and not (isShell and line.startswith("sh:")):
                faults.append(f"prints: {line}")
        words = {os.path.basename(word.split("=")[-1]) for word in shlex.split(run.command)} - {""}
        if code in FILE_CODES and not any(word in said for word in words | {"the standard"}):
            faults.append("names no file")
        if code == 2 and (output or len(errors.splitlines()) != 1):
            faults.append("prints more than one message")
        isChange = code not in WITH_RESULT and state_of(folder) != before
        if isChange:
            changed = {n for n, _ in set(before.items()) ^ set(state_of(folder).items())}
            faults.append(f"leaves or changes: {sorted(changed)}")
        return Result(code, faults, errors, False, isCrash, isChange)


def read_table(path, filter_text):
    text = pathlib.Path(path).read_text(encoding="utf-8").replace("CONICITY", CONICITY).replace("TRAIN", TRAIN)
    text = text.replace("SETTINGS ", SETTINGS + " ")
    inputs, runs = [], []
    for line in text.splitlines():
        if line.startswith("#") or not line:
            continue
        if row := re.match(r"(\d+) \| (?:(.+?) )?\| (.+)", line):
            code, message, command = row[1], row[2] or "", row[3]
            if filter_text in line:
                runs.append(Run(int(code), message, command))
        else:
            inputs.append(line)
    return inputs, runs


def main():
    kxmath, table = os.path.abspath(sys.argv[1]), sys.argv[2]
    inputs, runs = read_table(table, sys.argv[3] if len(sys.argv) > 3 else "")
    counts = Counter()
    with tempfile.TemporaryDirectory(prefix="kxmath_wrong_inputs_") as name:
        folder = pathlib.Path(name)
        base_inputs(folder, kxmath)
        for line in inputs:
            build(folder, line)
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            for run, result in zip(runs, pool.map(lambda r: run_one(r, folder, kxmath), runs)):
                counts.update(faults=int(bool(result.faults)), crashes=result.isCrash, hangs=result.isHang,
                              changes=result.isChange)
                if result.faults:
                    print(f"kxmath {run.command}\n  " + "\n  ".join(result.faults + result.errors.splitlines()))
    print(f"{len(runs)} runs: {counts['faults']} with faults, {counts['crashes']} crashes, {counts['hangs']} hangs, "
          f"{counts['changes']} that change files without a result")
    return 1 if counts["faults"] or not runs else 0


if __name__ == "__main__":
    sys.exit(main())
