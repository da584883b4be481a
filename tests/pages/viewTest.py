#!/usr/bin/env python3
"""Opens the pages of kxmath view in a headless Chromium: viewTest.py KXMATH [PICTURES]

Each kind of page, with and without WebGL, light and dark, 400 and 1280 pixels wide, without script and in print. Compares
what cursors and pixels show with the data that the test wrote. PICTURES is a folder for screenshots to look at.
"""
import itertools
import json
import math
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
from browser import Browser, program  # noqa: E402

GL = ["--use-gl=angle --use-angle=swiftshader --enable-unsafe-swiftshader"]
NO_GL = ["--disable-gpu --disable-software-rasterizer --disable-3d-apis"]
ROWS, COLUMNS, PITCH = 37, 53, 0.5
LOWEST, HIGHEST = -2.0, 5.0


def height(row, column):
    """A cell; none in a hole."""
    if 10 <= row < 14 and 20 <= column < 29:
        return None
    if (row, column) == (30, 7):
        return HIGHEST
    if (row, column) == (3, 40):
        return LOWEST
    return round(1.5 * math.sin(row / 6) + column / 50 + 0.1, 3)


def deviation(row, column):
    """A cell of the map less the reference; the extremes are not alike, the colours are about 0."""
    return None if height(row, column) is None else round(0.02 * (row - 10) + 0.01 * (column - 40), 3)


def section(points):
    return struct.pack("<BH", 2, len(points)) + b"".join(struct.pack("<2f", *p) for p in points)


def make_inputs(folder):
    def write(name, data):
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)
    rows = [[(PITCH * c, height(r, c)) for c in range(COLUMNS + 1) if height(r, min(c, COLUMNS - 1)) is not None]
            for r in range(ROWS)]
    write("<script>alert(1)</script>.bin".replace("/", "_"), b"".join(section(p) for p in rows))
    write("reference.bin", b"".join(
        section([(x, y - deviation(r, min(c, COLUMNS - 1))) for c, (x, y) in
                 ((round(x / PITCH), (x, y)) for x, y in points)]) for r, points in enumerate(rows)))
    write("a.csv", "".join(f"{x};{x * x / 8}\n" for x in range(9)).replace(".", ",").encode())
    write("b.csv", "".join(f"{x};{x * x / 8 + 0.25}\n" for x in range(9)).replace(".", ",").encode())
    points = [(3.0 * i % 17, math.sin(i) * 4, 0.25 * i) for i in range(300)]
    write("cloud.bin", struct.pack("<BI", 4, len(points)) +
          b"".join(struct.pack("<3fI", *p, 0x102030 + i) for i, p in enumerate(points)))


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = cls.scratch.name
        make_inputs(cls.folder)
        cls.scan = next(name for name in os.listdir(cls.folder) if "script" in name)
        cls.pages = {
            "scan": cls.view("scan.html", cls.scan),
            "long": cls.view("long.html", cls.scan, "--step", str(PITCH), "--colours", "cividis"),
            "deviations": cls.view("deviations.html", cls.scan, "--step", str(PITCH), "--compare", "reference.bin"),
            "profiles": cls.view("profiles.html", "a.csv", "--compare", "b.csv"),
            "cloud": cls.view("cloud.html", "cloud.bin"),
        }

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    @classmethod
    def view(cls, page, *arguments):
        path = os.path.join(cls.folder, page)
        printed = subprocess.run([KXMATH, "view", *arguments, "-o", path], cwd=cls.folder, check=True,
                                 capture_output=True, text=True).stdout
        assert printed == path + "\n", printed
        return path

    def look(self, browser, name):
        if PICTURES:
            browser.picture(os.path.join(PICTURES, name + ".png"))

    def check_quiet(self, browser):
        self.assertEqual(browser.requests(), [])
        self.assertEqual(browser.complaints(), [])

    def spot(self, browser, canvas, part_x, part_y):
        """A place on a canvas of the window, which is scrolled there."""
        browser.value(f"document.querySelector('{canvas}').scrollIntoView({{block: 'center'}})")
        box = browser.value(f"(() => {{const b = document.querySelector('{canvas}').getBoundingClientRect();"
                            "return [b.left, b.top, b.width, b.height]; })()")
        left, top = math.floor(part_x * box[2]), math.floor(part_y * box[3])
        return box[0] + left + 0.5, box[1] + top + 0.5, left, top

    def check_cell(self, text, pixel, colours, limits, true_value=height):
        """The words about a cell, and its pixel, beside the cell."""
        row, column, value = re.search(fr"row (\d+), column (\d+):.*{true_value.__name__} (-?[\d.]+ mm|missing)",
                                       text).groups()
        truth = true_value(int(row) - 1, int(column) - 1)
        if truth is None:
            self.assertEqual(value, "missing")
            self.assertIn(pixel, [[0xd9, 0xc8, 0xee], [0x8e, 0x6b, 0xbf]])
            return
        self.assertEqual(value, f"{truth:.3f} mm")
        self.check_colour(truth, pixel, colours, limits, text)

    def check_colour(self, truth, pixel, colours, limits, text):
        shade = round((truth - limits[0]) / (limits[1] - limits[0]) * 255)
        near = [list(bytes.fromhex(colours[6 * i:6 * i + 6])) for i in range(max(0, shade - 1), min(256, shade + 2))]
        self.assertIn(pixel, near, text)

    def surface_pixel(self, browser, row, column):
        """The pixel of a cell on the surface, seen from above without light: the picture is an orthographic one."""
        wide, deep = ROWS * PITCH, COLUMNS * PITCH
        across, along = (1.5 * side / max(wide, deep) for side in (wide, deep))
        return browser.value(f"""(() => {{
            const canvas = document.getElementById('surface-canvas'), gl = canvas.getContext('webgl2');
            const aspect = canvas.width / canvas.height, scale = Math.min(1, aspect);
            const x = ({row} / {ROWS - 1} - 0.5) * {across} * scale / aspect;
            const y = ({column} / {COLUMNS - 1} - 0.5) * {along} * scale;
            const pixel = new Uint8Array(4);
            gl.readPixels(Math.floor((x + 1) / 2 * canvas.width), Math.floor((y + 1) / 2 * canvas.height), 1, 1, gl.RGBA,
                          gl.UNSIGNED_BYTE, pixel);
            return [...pixel].slice(0, 3);
        }})()""")

    def test_known_cells(self):
        """The pixels of known cells of deviations, with colours about 0, and of the map of a report: on the map from above
        and, with GL, on the surface."""
        report = os.path.join(self.folder, "grid.html")
        subprocess.run([KXMATH, "grid", self.scan, "--step", str(PITCH), "--report", report], cwd=self.folder,
                       check=True, capture_output=True)
        cells = [(r, c) for r in range(ROWS) for c in range(COLUMNS) if height(r, c) is not None]
        most = max(abs(deviation(r, c)) for r, c in cells)
        cases = [(self.pages["deviations"], deviation, (-most, most)), (report, height, (LOWEST, HIGHEST))]
        for (page, truth, limits), (flags, has_gl) in itertools.product(cases, ((GL, True), (NO_GL, False))):
            with self.subTest(page=os.path.basename(page), gl=has_gl), Browser(flags=flags) as browser:
                self.assertEqual(browser.open(page), "yes")
                colours = json.loads(browser.value("document.getElementById('view').textContent"))["colours"]
                for part_x, part_y in ((0.3, 0.3), (0.4, 0.5), (0.35, 0.62), (0.5, 0.2)):
                    x, y, left, top = self.spot(browser, "#map canvas", part_x, part_y)
                    browser.pointer("mouseMoved", x, y)
                    pixel = browser.value(f"[...document.querySelector('#map canvas').getContext('2d')"
                                          f".getImageData({left}, {top}, 1, 1).data].slice(0, 3)")
                    self.check_cell(browser.value("document.getElementById('cell').textContent"), pixel,
                                    colours, limits, truth)
                self.assertEqual(browser.value("document.getElementById('no-surface') === null"), has_gl)
                if has_gl:
                    self.look_from_above(browser)
                    for row, column in ((5, 10), (18, 40), (30, 25), (22, 5), (10, 40)):
                        self.check_colour(truth(row, column), self.surface_pixel(browser, row, column), colours, limits,
                                          f"surface, {row}, {column}")
                self.check_quiet(browser)
        self.assertEqual(deviation(10, 40), 0.0)

    def look_from_above(self, browser):
        """At the surface, without light."""
        browser.value("document.querySelector('#surface-canvas').focus()")
        browser.key("9")
        browser.value("[...document.querySelectorAll('input[type=checkbox]')]"
                      ".find((i) => i.parentElement.textContent.includes('Light')).click()")
        browser.settle()

    def test_height_map(self):
        for flags, has_gl in ((GL, True), (NO_GL, False)):
            for width, scheme in ((1280, "light"), (400, "dark")):
                for kind in ("scan", "long"):
                    with self.subTest(gl=has_gl, width=width, scheme=scheme, kind=kind), \
                            Browser(width=width, flags=flags) as browser:
                        self.height_map(browser, kind, scheme, has_gl, width)

    def height_map(self, browser, kind, scheme, has_gl, width):
        browser.media(scheme)
        self.assertEqual(browser.open(self.pages[kind]), "yes")
        self.assertEqual(browser.value("document.getElementById('no-surface') === null"), has_gl)
        self.assertLessEqual(browser.value("document.documentElement.scrollWidth"), width)
        data = browser.value("document.getElementById('view').textContent")
        colours = json.loads(data)["colours"]
        for part_x, part_y in ((0.3, 0.3), (0.4, 0.5), (0.35, 0.62), (0.5, 0.2)):
            x, y, left, top = self.spot(browser, "#map canvas", part_x, part_y)
            browser.pointer("mouseMoved", x, y)
            pixel = browser.value(f"[...document.querySelector('#map canvas').getContext('2d')"
                                  f".getImageData({left}, {top}, 1, 1).data].slice(0, 3)")
            self.check_cell(browser.value("document.getElementById('cell').textContent"), pixel, colours,
                            (LOWEST, HIGHEST))
        self.look(browser, f"{kind}-{'gl' if has_gl else 'plan'}-{width}-{scheme}")
        self.keys(browser)
        self.drag(browser)
        if has_gl:
            self.surface(browser, colours)
        self.check_quiet(browser)

    def keys(self, browser):
        x, y, _, _ = self.spot(browser, "#map canvas", 0.4, 0.5)
        browser.pointer("mousePressed", x, y)
        browser.pointer("mouseReleased", x, y)
        browser.value("document.querySelector('#map canvas').focus()")
        where = lambda: tuple(map(int, re.search(  # noqa: E731
            r"row (\d+), column (\d+)", browser.value("document.getElementById('cell').textContent")).groups()))
        row, column = where()
        browser.key("ArrowRight", 3)
        browser.key("ArrowUp", 2)
        self.assertEqual(where(), (row + 3, column + 2))

    def drag(self, browser):
        x, y, _, _ = self.spot(browser, "#map canvas", 0.3, 0.4)
        browser.pointer("mousePressed", x, y)
        browser.pointer("mouseMoved", x + 20, y)
        browser.pointer("mouseMoved", x + 40, y)
        browser.pointer("mouseReleased", x + 40, y)
        browser.settle()
        self.assertTrue(browser.value("document.getElementById('section-cursors') !== null"))

    def surface(self, browser, colours):
        """From above and without light the surface has the colours of its cells."""
        self.look_from_above(browser)
        seen = browser.value("""(() => {
            const canvas = document.getElementById('surface-canvas'), gl = canvas.getContext('webgl2');
            const pixels = new Uint8Array(canvas.width * canvas.height * 4);
            gl.readPixels(0, 0, canvas.width, canvas.height, gl.RGBA, gl.UNSIGNED_BYTE, pixels);
            const all = new Set();
            for (let i = 0; i < pixels.length; i += 4)
                if (pixels[i + 3] === 255) all.add([pixels[i], pixels[i + 1], pixels[i + 2]].join());
            return [...all];
        })()""")
        table = {",".join(str(v) for v in bytes.fromhex(colours[i:i + 6])) for i in range(0, len(colours), 6)}
        shades = table & set(seen)
        self.assertGreater(len(shades), 20)
        self.assertIn("217,200,238", seen, "the hole")

    def test_profiles(self):
        with Browser(flags=NO_GL) as browser:
            for scheme in ("light", "dark"):
                browser.media(scheme)
                self.assertEqual(browser.open(self.pages["profiles"]), "yes")
                browser.value("document.querySelector('#profiles canvas').focus()")
                browser.key("ArrowRight", 4)
                browser.key("b")
                browser.key("ArrowRight", 8)
                text = browser.value("document.getElementById('plot-cursors').textContent")
                self.assertIn("A: a.csv, point 4: x 3.000 mm, y 1.125 mm", text)
                self.assertIn("B: a.csv, point 8: x 7.000 mm, y 6.125 mm", text)
                self.assertIn("dx 4.000 mm, dy 5.000 mm, distance 6.403 mm, angle 51.34°", text)
                self.look(browser, f"profiles-{scheme}")
            browser.value("document.querySelector('#deviation canvas').focus()")
            browser.key("ArrowRight")
            self.assertIn("y -0.250 mm", browser.value("document.getElementById('deviation-plot-cursors').textContent"))
            self.assertIn("-0.2500 to -0.2500 mm", browser.value("document.querySelector('dl').textContent"))
            self.check_quiet(browser)

    def test_profile_chain(self):
        """kxmath profile: before and after on one plot, and on two where the coordinates change; what was fitted."""
        def report(page, *arguments):
            path = os.path.join(self.folder, page)
            subprocess.run([KXMATH, "profile", "a.csv", *arguments, "--report", path], cwd=self.folder, check=True,
                           capture_output=True)
            return path

        chain = report("chain.html", "--do", "trimX:1,7 shift:0,2", "--line")
        polar = report("polar.html", "--do", "shift:1,0 toPolar")
        for width, scheme in ((1280, "light"), (400, "dark")):
            with Browser(width, flags=NO_GL) as browser:
                browser.media(scheme)
                self.assertEqual(browser.open(chain), "yes")
                browser.value("document.querySelector('#profiles canvas').focus()")
                browser.key("ArrowRight", 3)
                cursors = "document.getElementById('profiles-plot-cursors').textContent"
                self.assertIn("A: before, point 3: x 2.000 mm, y 0.500 mm", browser.value(cursors))
                browser.key("ArrowDown")
                self.assertIn("A: after, point 2: x 2.000 mm, y 2.500 mm", browser.value(cursors))
                self.assertIn("trimX:1,7", browser.value("[...document.querySelectorAll('table')].map(t => t.textContent).join()"))
                self.assertTrue(browser.value("document.documentElement.scrollWidth <= innerWidth"))
                self.look(browser, f"chain-{width}")
                browser.open(polar)
                browser.value("document.querySelector('#after canvas').focus()")
                browser.key("ArrowRight", 2)
                self.assertIn("point 2: x 2.0039 mm, y 3.5763 degrees",
                              browser.value("document.getElementById('after-plot-cursors').textContent"))
                self.check_quiet(browser)

    def test_cloud(self):
        for width, scheme in ((1280, "light"), (400, "dark")):
            with self.subTest(width=width), Browser(width=width, flags=NO_GL) as browser:
                browser.media(scheme)
                self.assertEqual(browser.open(self.pages["cloud"]), "yes")
                browser.value("document.querySelector('#cloud canvas').focus()")
                browser.key("n", 5)
                self.assertEqual(browser.value("document.getElementById('point').textContent"),
                                 f"point 5: x 12.000 mm, y {4 * math.sin(4):.3f} mm, z 1.000 mm, colour #102034")
                self.look(browser, f"cloud-{width}-{scheme}")
                self.check_quiet(browser)

    def test_records(self):
        """The slider goes from profile to profile."""
        with Browser(flags=NO_GL) as browser:
            browser.open(self.pages["scan"])
            browser.value("document.getElementById('slider').focus()")
            browser.key("ArrowRight", 2)
            for _ in range(2):
                browser.settle()
            shown = browser.value("document.getElementById('record').textContent")
            self.assertRegex(shown, r"^\d+ of 37: \d+ points")

    def test_print_and_without_script(self):
        with Browser() as browser:
            browser.open(self.pages["scan"])
            browser.media("light", "print")
            seen = lambda what: browser.value(  # noqa: E731
                f"document.querySelector('{what}').getClientRects().length > 0")
            self.assertTrue(seen(".still"))
            self.assertFalse(seen("#map"))
            self.look(browser, "scan-print")
            browser.media()
            for name, page in self.pages.items():
                browser.open_without_script(page)
                self.look(browser, f"{name}-no-script")
            text = subprocess.run(["grep", "-c", "<script>alert", self.pages["scan"]], capture_output=True, check=False)
            self.assertEqual(text.stdout.strip(), b"0", "the name of a file is text")


if __name__ == "__main__":
    if not program():
        print("skipped: there is no Chromium")
        sys.exit(0)
    KXMATH = os.path.abspath(sys.argv[1])
    PICTURES = sys.argv[2] if len(sys.argv) > 2 and not sys.argv[2].startswith("-") else ""
    unittest.main(argv=sys.argv[:1] + [a for a in sys.argv[2:] if a != PICTURES])
