"""The examples: they run, and the page shows them."""
import base64
import os
import pathlib
import re
import struct
import subprocess
import sys

import numpy as np
import pytest

import kxmath as kx

SOURCE = pathlib.Path(os.environ["KXMATH_SOURCE"])
EXAMPLES = SOURCE / "examples/python"


def run(name, *arguments):
    return subprocess.run([sys.executable, EXAMPLES / name, *map(str, arguments)], check=True, capture_output=True,
                          text=True, timeout=100).stdout


def test_weld(tmp_path):
    x = np.arange(-40, 40, 0.05)
    bead = np.clip(3 * (1 - (x / 4) ** 2), 0, None) # 8 mm wide, 3 mm high: 16 mm2
    np.savetxt(tmp_path / "weld.csv", np.column_stack([x, 20 + 0.01 * x + bead]), delimiter=";")
    found = re.fullmatch(r"width ([\d.]+) mm, area ([\d.]+) mm2, top 3.00 mm\n", run("weld.py", tmp_path / "weld.csv"))
    assert 7.8 <= float(found[1]) <= 8 and abs(float(found[2]) - 16) < 0.1


def test_scan(tmp_path):
    with open(tmp_path / "plate.bin", "wb") as out:
        for i in range(40):
            points = [(k * 0.25, 12.5 if 10 <= i < 30 and 16 <= k < 60 else 2.0) for k in range(81)]
            out.write(struct.pack("<BHf", 5, len(points), i * 0.5) + np.array(points, "<f4").tobytes())
    output = run("scan.py", tmp_path / "plate.bin", tmp_path / "plate.png")
    assert output == "40 rows, 40 columns, 12.5 mm at most\nmean along the scan at x = 5 mm: 7.25 mm\n"
    assert (tmp_path / "plate.png").read_bytes().startswith(b"\x89PNG")


def test_train(tmp_path):
    subprocess.run([os.environ["KXMATH_PROGRAM"], "simulate", ".", "--cars", "1", "--rate", "1000", "--points", "320"],
                   cwd=tmp_path, check=True, capture_output=True, env={**os.environ, "LD_PRELOAD": ""})
    lines = run("train.py", tmp_path, tmp_path / "settings.ini").splitlines()
    assert len(lines) == 6 and re.fullmatch(r"mean 13(59|60)\.\d mm of 4 pairs", lines[-1])


@pytest.mark.parametrize("example", sorted(EXAMPLES.glob("*.py")), ids=lambda path: path.name)
def test_the_page_shows_them(example):
    page = (SOURCE / "docs/python.md").read_text(encoding="utf-8")
    assert "```python\n" + example.read_text(encoding="utf-8") + "```\n" in page


def test_pictures_in_notebooks(tmp_path):
    profile = kx.Profile([[0, 1], [1, 3], [float("nan"), 2], [2, 2]])
    picture = profile._repr_html_()
    assert picture.count("h0") == 3 and "&lt;kxmath.Profile: 4 points" in picture
    assert "<svg" not in kx.Profile([[float("nan"), 1]])._repr_html_()
    x = np.arange(0, 5, 0.5)
    heights = kx.ProfileSet(kx.Profile.from_xy(x, x + z, z=z) for z in range(4)).to_grid(step=1.0)
    image = base64.b64decode(re.search(r"base64,([^\"]+)", heights._repr_html_())[1])
    (tmp_path / "map.png").write_bytes(image)
    coloured = kx.ColourCloud([[0, 9, 0], [5, 9, 1], [5, 9, 0]], np.array([[200, 10, 30], [1, 2, 3], [4, 5, 6]], "u1"))
    image = base64.b64decode(re.search(r"base64,([^\"]+)", coloured._repr_html_())[1])
    (tmp_path / "cloud.png").write_bytes(image)
    import matplotlib.image
    assert (matplotlib.image.imread(tmp_path / "cloud.png")[-1, 0] * 255).round().tolist()[::3] == [4, 255]
    pixels = matplotlib.image.imread(tmp_path / "map.png") # another reader: red, green, blue, alpha
    assert pixels.shape[:2] == heights.shape and pixels[-1, 0, 0] == 0 and pixels[0, -1, 0] == 1


def test_drawings():
    import matplotlib
    matplotlib.use("Agg")
    profile = kx.Profile([[0, 1], [1, 3], [2, 2]])
    ax = profile.plot(before=profile.shift(dy=1), label="after")
    assert [line.get_label() for line in ax.lines] == ["before", "after"] and ax.get_xlabel() == "x, mm"
    assert ax.lines[1].get_ydata().tolist() == [1, 3, 2] and profile.plot(ax) is ax
