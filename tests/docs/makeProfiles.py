"""makeProfiles.py FOLDER: writes the sections of a conical wheel and of a round rail, x outwards and y down, in mm."""
import math
import pathlib
import sys

folder = pathlib.Path(sys.argv[1])


def write(name, width, y):
    xs = [i * 0.05 for i in range(int(width / 0.05))]
    lines = [f"{x:.2f};{y(x):.5f}\n" for x in xs]
    (folder / name).write_text("".join(lines), encoding="ascii")


def flange(x):
    return 28 - (20 - x) ** 2 * 0.04 if x < 20 else 28 - (x - 20) * 1.6


write("wheel.csv", 135, lambda x: max(flange(x), (70 - x) * 0.1))
write("rail.csv", 64, lambda x: 80 - math.sqrt(80 * 80 - (x - 32) ** 2))
