"""Inputs of the pages that the tests look at."""
import math
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "fleet"))
from storeInputs import make_store  # noqa: E402

EVIL = "<script>alert(1)<_script>.csv"


def wheel_section(height, slope):
    """A flange, a throat and a cone, x outwards, y down."""
    points = [(x / 2, height * (math.cos(math.pi * (x / 2 - 14) / 22) - 1) / 2) for x in range(4, 68)]
    return [(x, -y - height) for x, y in points] + [(34 + x / 2, -slope * (x / 2 - 36)) for x in range(1, 180)]


def write(folder, name, points):
    with open(os.path.join(folder, name), "w", encoding="ascii") as file:
        file.writelines(f"{x:.4f};{y:.4f}\n" for x, y in points)


def make_inputs(folder):
    write(folder, "w1.csv", wheel_section(28.5, 0.05))
    write(folder, "w2.csv", wheel_section(29.5, 0.07))
    write(folder, EVIL, wheel_section(36.5, 0.06))
    write(folder, "rail.csv", [(x / 4, 90 - math.sqrt(90 ** 2 - (x / 4 - 36) ** 2)) for x in range(288)])


def make_scan(run, folder):
    with open(os.path.join(folder, "scan.xyz"), "w", encoding="ascii") as file:
        for z in range(60):
            for x in range(90):
                if not (20 <= z < 27 and 30 <= x < 45):
                    y = 12.0 + (3.5 if 35 < x < 70 and 30 < z < 50 else 0.0) + 0.02 * math.sin(x * 7 + z)
                    file.write(f"{0.5 * x} {y:.4f} {0.5 * z}\n")
    run("convert", "scan.xyz", "scan.profiles")


def make_recordings(run, folder):
    """A pass, passes with known distances, shots of the calibration object, and settings that find no wheel."""
    run("simulate", "pass", "--cars", "1", "--bogies", "1", "--axles", "2", "--rate", "1200", "--points", "400",
        "--build-up", "2:1:1", "--flat", "1:2:60:5", "--distance-spread", "1.5", "--seed", "7")
    run("simulate", "known", "--cars", "1", "--bogies", "1", "--axles", "3", "--rate", "900", "--points", "400",
        "--distance-spread", "1.5", "--yaw", "1", "--along2", "30", "--seed", "3")
    run("simulate", "shots", "--calibration", "2", "--profiles", "3", "--turn", "4,-3,2", "--move", "5,-10,8",
        "--noise", "0.03", "--pitch", "22", "--slope", "1.1", "--plane-y", "120")
    with open(os.path.join(folder, "pass", "settings.ini"), encoding="ascii") as file:
        lines = ["level_b=-900" if line.startswith("level_b=") else line.rstrip() for line in file]
    with open(os.path.join(folder, "blind.ini"), "w", encoding="ascii") as file:
        file.write("\n".join(lines) + "\n")


def make_fleet(run, folder):
    make_store(run, folder, "fleet.db")
    with open(os.path.join(folder, "fleet.ini"), "w", encoding="ascii") as file:
        file.write("[flangeThickness]\nalarmLow = 22\n")


def commands_with_report(limits, at=""):
    """The arguments of each command that writes a page, by a name; `at` stands before the names of the inputs."""
    recordings = [at + "pass/train_101.bin", at + "pass/train_102.bin"]
    known = [at + "known/train_101.bin", at + "known/train_102.bin"]
    rails = ["--rail1", at + "rail.csv", "--rail2", at + "rail.csv", "--gauge", "1435", "--back-to-back", "1360"]
    return {
        "train": ["train", *recordings, "--settings", at + "pass/settings.ini", "--defects", at + "pass/defects.ini",
                  "--limits", limits],
        "blind": ["train", *recordings, "--settings", at + "blind.ini"],
        "wheel": ["wheel", at + "w1.csv", at + "w2.csv", at + EVIL, "--min-height", "29"],
        "conicity": ["conicity", "--wheel1", at + "w1.csv", "--wheel2", at + EVIL, *rails],
        "calibrate": ["calibrate", at + "shots/calibration-1.bin", at + "shots/calibration-2.bin", "--position", "2",
                      "--side", "larger-y", "--pitch", "22", "--slope", "1.1", "--plane-y", "120"],
        "grid": ["grid", at + "scan.profiles", "--step", "0.5"],
        "profile": ["profile", at + "w1.csv", "--do", "trimX:10,60 shift:0,2", "--line"],
        "settings": ["settings", "fit", *known, "--distance", "1361.2,1358.2,1358.8"],
        "trend": ["trend", at + "fleet.db", "--limits", at + "fleet.ini"],
        "alarms": ["alarms", at + "fleet.db", "--limits", at + "fleet.ini"],
    }
