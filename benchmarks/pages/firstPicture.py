#!/usr/bin/env python3
"""How large the pages of `kxmath view` are and after which time they show their first picture: firstPicture.py [KXMATH]

Each page is opened three times in a headless Chromium, with WebGL in software and without it. The times are what the page
itself prints: since its navigation began. Prints a table in Markdown.
"""
import os
import subprocess
import sys
import tempfile

import numpy as np

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(ROOT, "tests", "pages"))
from browser import Browser  # noqa: E402

RUNS = 3
WITH_GL = ("WebGL in software", ["--use-gl=angle --use-angle=swiftshader --enable-unsafe-swiftshader"])
WITHOUT_GL = ("no WebGL", ["--disable-gpu --disable-software-rasterizer --disable-3d-apis"])


def write_inputs(folder):
    """Name of the file: what it is and the further arguments."""
    random = np.random.default_rng(8)
    rows, columns, pitch = 1000, 1000, 0.1
    z, x = np.mgrid[0:rows, 0:columns] * pitch
    y = 3 * np.sin(x / 9) * np.cos(z / 14) + random.normal(0, 0.02, x.shape)
    y[random.random(x.shape) < 0.01] = np.nan
    np.save(os.path.join(folder, "map.npy"), y.astype("f4"))
    points = np.column_stack([x.ravel(), y.ravel(), z.ravel()]).astype("f4")
    np.save(os.path.join(folder, "cloud.npy"), points[np.isfinite(points).all(axis=1)])
    np.save(os.path.join(folder, "profile.npy"), np.column_stack([x[0], y[500]]).astype("f4"))
    return {"map.npy": ("height map, 1000 x 1000 cells", ["--step", str(pitch)]),
            "cloud.npy": ("cloud, 990000 points", []), "profile.npy": ("profile, 1000 points", [])}


def times_of(page, flags):
    found = []
    for _ in range(RUNS):
        with Browser(flags=flags) as browser:
            browser.open(page)
            found.append(browser.value("document.getElementById('time').textContent"))
    return found


def main():
    kxmath = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build-release", "tools", "kxmath", "kxmath")
    print("| page | size, MB | | first run | second | third |\n| --- | ---: | --- | --- | --- | --- |")
    with tempfile.TemporaryDirectory() as folder:
        for name, (words, options) in write_inputs(folder).items():
            page = os.path.join(folder, name + ".html")
            subprocess.run([kxmath, "view", os.path.join(folder, name), *options, "-o", page], check=True,
                           stdout=subprocess.DEVNULL)
            for how, flags in (WITH_GL, WITHOUT_GL):
                print(f"| {words} | {os.path.getsize(page) / 1e6:.2f} | {how} | {' | '.join(times_of(page, flags))} |",
                      flush=True)


if __name__ == "__main__":
    main()
