"""The Python package beside plain NumPy: compare.py [--markdown]

Run it with the interpreter and the path of the package: PYTHONPATH=build-release/python /usr/bin/python3 compare.py.
Each figure is the smallest of several runs, in microseconds or as said.
"""
import collections
import os
import subprocess
import sys
import tempfile
import time

import numpy as np

import kxmath as kx


def fastest(work, seconds=0.4):
    """Microseconds of one call, of the fastest of many batches."""
    work()
    batch = 1
    while True:
        start = time.perf_counter()
        for _ in range(batch):
            work()
        if (took := time.perf_counter() - start) > 0.005:
            break
        batch *= 4
    best, end = took, time.perf_counter() + seconds
    while time.perf_counter() < end:
        start = time.perf_counter()
        for _ in range(batch):
            work()
        best = min(best, time.perf_counter() - start)
    return best / batch * 1e6


def fastest_in_turns(works, seconds):
    """Microseconds of one call of each, measured in turns, so that all meet the same load of the machine."""
    best, end = [float("inf")] * len(works), time.perf_counter() + seconds
    while time.perf_counter() < end:
        for i, work in enumerate(works):
            for _ in range(3):
                start = time.perf_counter()
                result = work()
                best[i] = min(best[i], time.perf_counter() - start)
                del result
    return [1e6 * took for took in best]


def import_seconds(module):
    """Of a new interpreter: the smallest of 15."""
    code = f"import time; s = time.perf_counter(); import {module}; print(time.perf_counter() - s)"
    return min(float(subprocess.run([sys.executable, "-c", code], check=True, capture_output=True).stdout)
               for _ in range(15))


def moving_average(y, window):
    return np.convolve(y, np.full(window, 1 / window, "f4"), "valid")


def recording(path, count):
    """A file of so many profiles of 1280 points."""
    points = np.random.default_rng(1).random((50, 1280, 2)).astype("<f4")
    with open(path, "wb") as file:
        for i in range(count):
            file.write(b"\x05" + np.array([1280], "<u2").tobytes() + np.array([i], "<f4").tobytes())
            file.write(points[i % 50].tobytes())
    return path


def reading_rows(folder):
    for count, size in ((500, "5 MB"), (10000, "102 MB")):
        path = recording(os.path.join(folder, f"scan{count}.bin"), count)
        scan = kx.ProfileSet.open(path)
        works = {"kx.read_arrays(path)": lambda: kx.read_arrays(path),
                 "kx.ProfileSet.open(path), which checks the file": lambda: kx.ProfileSet.open(path),
                 "scan.to_arrays()": scan.to_arrays, "for profile in scan": lambda: collections.deque(scan, 0),
                 "list(scan)": lambda: list(scan), "scan[17]": lambda: scan[17]}
        raw, *took = fastest_in_turns([lambda: np.fromfile(path, "u1"), *works.values()], 25)
        for name, own in zip(works, took):
            yield f"{name}, {size}", own, "np.fromfile of the bytes", raw


def rows(folder):
    million = np.random.default_rng(1).random((1_000_000, 2)).astype("f4")
    p, small, line = kx.Profile(million), kx.Profile(million[:10]), kx.Line(1, 2)
    q = kx.Profile(np.column_stack([np.arange(1280) * 0.1, million[:1280, 1]]))
    strided = million.astype("f8")[::2]
    yield "a call without arguments: len(p)", fastest(lambda: len(small)), "", None
    yield "p.correlation() of 10 points", fastest(small.correlation), "", None
    yield "a view: p.points", fastest(lambda: p.points), "a[:]", fastest(lambda: million[:])
    yield "keywords and a new object: p.shift(dx=1, dy=2), 10 points", fastest(lambda: small.shift(dx=1, dy=2)), "", None
    yield "line.y_at(2)", fastest(lambda: line.y_at(2)), "", None
    yield "construction, 1e6 points, float32", fastest(lambda: kx.Profile(million)), "a.copy()", fastest(million.copy)
    yield ("construction, 5e5 points, every second row of float64", fastest(lambda: kx.Profile(strided)),
           'a.astype("f4")', fastest(lambda: strided.astype("f4")))
    yield ("p.shift(dx=1, dy=2), 1e6 points", fastest(lambda: p.shift(dx=1, dy=2)), "a + (1, 2)",
           fastest(lambda: million + np.float32([1, 2])))
    yield ("p.moving_average(20), 1280 points", fastest(lambda: q.moving_average(20)), "np.convolve",
           fastest(lambda: moving_average(q.y, 20)))
    yield ("p.sort(), 1e6 points", fastest(p.sort), "a[a[:, 0].argsort(kind='stable')]",
           fastest(lambda: million[million[:, 0].argsort(kind="stable")]))
    yield ("p.fit_polynomial(5), 1280 points", fastest(lambda: q.fit_polynomial(5)), "np.polyfit",
           fastest(lambda: np.polyfit(q.x, q.y, 5)))
    yield from reading_rows(folder)


def main():
    print("| | µs | NumPy | µs |\n| --- | ---: | --- | ---: |")
    with tempfile.TemporaryDirectory() as folder:
        for name, own, other, theirs in rows(folder):
            print(f"| {name} | {own:.3g} | {other} | {'' if theirs is None else f'{theirs:.3g}'} |", flush=True)
    numpy, package = import_seconds("numpy"), import_seconds("kxmath")
    print(f"| import, s | {package:.3f} | import numpy, s | {numpy:.3f} |")
    size = os.path.getsize(kx._kxmath.__file__)
    print(f"| size of the module, MB | {size / 1e6:.1f} | | |")


if __name__ == "__main__":
    main()
