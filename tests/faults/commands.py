"""The command lines that are tried, and the smallest inputs that take each through all its paths."""
import math
import pathlib
import shutil
import struct
import subprocess
import sys

from server import kxmath

PASS = "--cars 1 --bogies 1 --axles 1 --rate 300 --points 200 --no-background --no-objects --no-rails --idle 2"
SIMULATED = "--cars 1 --bogies 1 --axles 1 --rate 150 --points 40 --no-background --no-objects --no-rails --idle 2"
# Jobs one after the other, so that calls have the same numbers in each run.
SETTINGS = "--settings pass/settings.ini --defects pass/defects.ini --out passes --jobs 1"
SECTIONS = "--wheel1 wheel.csv --wheel2 wheel.csv --rail1 rail.csv --rail2 rail.csv --gauge 1442 --back-to-back 1360 " \
           "--gauge-depth 0 --amplitudes 4"
OUTPUTS = "--json o.json --report o.html"
READ = {"cloud": "in.bin", "profiles": "in.profiles", "csv": "in.csv", "xyzf": "in.xyzf", "xyz": "in.xyz",
        "ply": "in.ply", "pcd": "in.pcd", "gauge": "in.whl", "table": "in.table", "npy": "in.npy", "vtp": "in.vtp"}
WRITTEN = [kind for kind in READ if kind != "gauge"]
OLDER = b"[MINE]\nkey=1\n"  # what the outputs hold before


class Case:
    """A command line. Its inputs are the arguments that name an existing file or folder.

    `older`: outputs that are there already. `mark`: the file without which a folder is not taken for complete.
    `tells_failures`: its outputs are also written for an input that cannot be read, and say so.
    `sampled`: its calls are tried at random, not one after the other.
    `resumes`: the next run goes on where it was, says so, and removes what is left.
    """

    def __init__(self, name, line, older="", stdin=None, mark=None, tells_failures=False, sampled=False,
                 resumes=False):
        self.name, self.arguments, self.stdin = name, line.split(), stdin
        self.older, self.mark = older.split(), mark
        self.tells_failures, self.sampled, self.resumes = tells_failures, sampled, resumes

    def make(self, inputs, folder):
        """Makes the folder in which the case begins."""
        (folder / "tmp").mkdir(parents=True)
        for name in {*self.arguments, self.stdin or ""}:
            source = inputs / name
            if name and source.exists() and not name.startswith("/"):
                names = [name] if source.is_file() else \
                    [str(p.relative_to(inputs)) for p in source.rglob("*") if p.is_file()]
                for each in names:
                    (folder / each).parent.mkdir(parents=True, exist_ok=True)
                    (folder / each).write_bytes((inputs / each).read_bytes())
        for name in self.older:
            (folder / name).write_bytes(OLDER)


def all_cases():
    train = "train pass/train_101.bin pass/train_102.bin "
    shots = "calibrate shots/calibration-1.bin shots/calibration-2.bin --position 2 --side larger-y --oblique-crest above "
    cases = [
        Case("train", f"{train} {SETTINGS} {OUTPUTS} --csv o.csv --sheet s.csv", "o.json o.html o.csv s.csv",
             tells_failures=True),
        Case("train-stdout", f"{train} {SETTINGS} --json -"),
        Case("train-none", f"{train} {SETTINGS} --keep none"),
        Case("train-all", f"{train} {SETTINGS} --keep all", sampled=True),
        Case("train-at-once", train + SETTINGS.replace("--jobs 1", "--jobs 3"), sampled=True),
        Case("train-again", "train --again kept --recordings pass --jobs 1", sampled=True),
        Case("train-again-out", "train --again kept --recordings pass --out passes --jobs 1", sampled=True),
        Case("watch", "watch archive --settings pass/settings.ini --out results --settle 0 --jobs 1", sampled=True, resumes=True),
        Case("wheel", f"wheel wheel.csv in.whl {OUTPUTS} --csv o.csv", "o.json o.html o.csv", tells_failures=True),
        Case("conicity", f"conicity {SECTIONS} {OUTPUTS} --csv o.csv", "o.json o.html o.csv", tells_failures=True),
        Case("calibrate", f"{shots} --sensor 1 --write s.ini {OUTPUTS}", "s.ini o.json o.html", tells_failures=True),
        Case("grid", f"grid scan.bin --step 0.5 --out seeds {OUTPUTS}", "o.json o.html", tells_failures=True),
        Case("view-scan", "view scan.bin -o o.html", "o.html", sampled=True),
        Case("view-profiles", "view wheel.csv --compare rail.csv -o o.html", "o.html", sampled=True),
        Case("view-cloud", "view coloured.bin -o o.html", "o.html", sampled=True),
        Case("profile", "profile scan.bin --record 2 --do sort --line --out o.bin --report o.html --json o.json",
             "o.bin o.html o.json", tells_failures=True, sampled=True),
        Case("grid-map", "grid scan.bin --step 0.5 --map o.gsf", "o.gsf"),
        Case("convert-map", "convert map.gsf o.sdf", "o.sdf"),
        Case("convert-mesh", "convert map.gsf o.stl", "o.stl"),
        Case("convert-vti", "convert map.vti o.npy", "o.npy"),
        Case("convert-pose", "convert in.bin o.table --pose pass/settings.ini --sensor 1 --record 1", "o.table"),
        Case("info", "info " + " ".join([*READ.values(), "pass/train_101.bin", "coloured.bin"])),
        Case("settings-init", "settings init new.ini"),
        Case("settings-check", "settings check pass/settings.ini pass/train_101.bin pass/train_102.bin"),
        Case("settings-fit", "settings fit pass/train_101.bin pass/train_102.bin --distance 1360 --write s.ini "
             "--defects d.ini --report o.html", "s.ini d.ini o.html", tells_failures=True, sampled=True),
        Case("simulate", f"simulate new {SIMULATED}", mark="new/truth.json"),
        Case("simulate-again", f"simulate pass {SIMULATED} --seed 5", mark="pass/truth.json"),
        Case("simulate-cloud", f"simulate new {SIMULATED} --records cloud --flat 1:1:60", mark="new/truth.json"),
        Case("shots", "simulate new --calibration 2 --profiles 2 --turn 3,-2,4", mark="new/truth.json"),
        Case("convert-stdin", "convert - o.ply --from csv", "o.ply", stdin="in.csv"),
        Case("convert-stdout", "convert in.bin - --to pcd"),
        Case("convert-colours", "convert coloured.bin o.bin", "o.bin"),
        Case("convert-large", "convert large.bin o.csv", "o.csv", sampled=True),
        Case("demo", "train demo/train_101.bin demo/train_102.bin --settings demo/settings.ini --defects demo/defects.ini "
             f"--out passes {OUTPUTS} --csv o.csv --jobs 1", "o.json o.html o.csv", tells_failures=True,
             sampled=True),
    ]
    for kind, name in READ.items():
        for to in WRITTEN:
            cases.append(Case(f"convert-{kind}-{to}", f"convert {name} o --from {kind} --to {to}", "o"))
    return cases


def flange(x):
    return 28 - (20 - x) ** 2 * 0.04 if x < 20 else 28 - (x - 20) * 1.6


def csv_of(width, step, y):
    return "".join(f"{i * step:.2f};{y(i * step):.5f}\n" for i in range(int(width / step)))


def make_inputs(program, folder):
    folder = pathlib.Path(folder)
    wheel = csv_of(135, 0.5, lambda x: max(flange(x), (70 - x) * 0.1))
    (folder / "wheel.csv").write_text(wheel)
    (folder / "rail.csv").write_text(csv_of(64, 0.5, lambda x: 80 - math.sqrt(80 * 80 - (x - 32) ** 2)))
    (folder / "in.whl").write_text("Wheel ID....: 7\n\n" + wheel.replace(";", "  ").replace("\n", "  0.000\n"))
    points = [(0.5 * i, 0.25 * (i % 7), 0.0) for i in range(40)]
    (folder / "in.bin").write_bytes(struct.pack("<BI", 3, len(points)) + b"".join(struct.pack("<3f", *p) for p in points))
    (folder / "large.bin").write_bytes(
        struct.pack("<BH", 2, 30000) + b"".join(struct.pack("<2f", 0.5 * i, i % 7) for i in range(30000)))
    (folder / "coloured.bin").write_bytes(
        struct.pack("<BI", 4, len(points)) + b"".join(struct.pack("<3fI", *p, 0x102030) for p in points))
    subprocess.run([sys.executable, pathlib.Path(__file__).parents[1] / "docs" / "makeScan.py", folder / "scan.bin"],
                   check=True)
    for kind in ("gsf", "vti"):
        kxmath(program, folder, f"grid scan.bin --step 0.5 --map map.{kind}")
    for kind in WRITTEN[1:]:
        kxmath(program, folder, f"convert in.bin {READ[kind]} --to {kind}")
    kxmath(program, folder, f"simulate pass {PASS}")
    kxmath(program, folder, f"train pass/train_101.bin pass/train_102.bin {SETTINGS.replace('passes', 'made')}")
    (folder / "made" / "pass-train_101-train_102").rename(folder / "kept")
    for station in ("A12", "B7"):
        (folder / "archive" / station).mkdir(parents=True)
        shutil.copytree(folder / "pass", folder / "archive" / station / "20261121T081500Z",
                        ignore=shutil.ignore_patterns("*.ini", "*.json"))
    kxmath(program, folder, "simulate shots --calibration 2 --profiles 2 --turn 3,-2,4")
    kxmath(program, folder, "simulate demo")
