"""The pages of all commands in a headless browser: light and dark, wide and narrow, printed. axe-core finds no fault,
texts stand out from what is behind them, legends and labels stay in their places, nothing is asked of a network.

usage: pagesTest.py KXMATH AXE [PICTURES]: the program, axe.min.js, a folder for screenshots to look at
"""
import base64
import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
from browser import Browser, program  # noqa: E402
from pageInputs import EVIL, commands_with_report, make_fleet, make_inputs, make_recordings, make_scan  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PAPER = 687 # pixels of 96 dpi across A4 without the margins of 14 mm on both sides
NO_GL = ["--disable-gpu --disable-software-rasterizer --disable-3d-apis"]

# Contrast of texts in plots (WCAG 2.1, 1.4.3); axe-core looks at those outside only.
CONTRAST = """(() => {
    const channels = (colour) => colour.match(/[\\d.]+/g).map(Number);
    const light = (rgb) => rgb.slice(0, 3).map((v) => v / 255).map((v) => v <= 0.04045 ? v / 12.92 :
        ((v + 0.055) / 1.055) ** 2.4).reduce((sum, v, i) => sum + v * [0.2126, 0.7152, 0.0722][i], 0);
    const behind = (element) => {
        for (let e = element; e; e = e.parentElement) {
            const colour = channels(getComputedStyle(e).backgroundColor);
            if (colour.length < 4 || colour[3] === 1) return colour;
        }
        return [255, 255, 255];
    };
    const found = [];
    for (const text of document.querySelectorAll("svg text")) {
        const [a, b] = [light(channels(getComputedStyle(text).fill)), light(behind(text.closest("svg")))];
        const ratio = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
        if (ratio < 4.5) found.push(`${text.textContent}: ${ratio.toFixed(2)}`);
    }
    return found;
})()"""

# Boxes of texts in plots: inside the picture, legends above the axes, no text on another or on a line.
BOXES = """(() => {
    const found = [];
    const box = (e) => e.getBoundingClientRect();
    const cross = (a, b) => a.left < b.right - 0.5 && b.left < a.right - 0.5 && a.top < b.bottom - 0.5 && b.top < a.bottom - 0.5;
    for (const svg of document.querySelectorAll("svg")) {
        const whole = box(svg), name = svg.getAttribute("aria-label");
        if (!whole.width) continue;
        const texts = [...svg.querySelectorAll("text")];
        const boxes = texts.map(box);
        const frame = [...svg.querySelectorAll(":scope > rect")].at(-1);
        texts.forEach((text, i) => {
            const b = boxes[i], words = `${name}: "${text.textContent}"`;
            if (b.left < whole.left - 0.5 || b.right > whole.right + 0.5 || b.top < whole.top - 0.5 || b.bottom > whole.bottom + 0.5)
                found.push(`${words} is cut off`);
            if (text.closest(".legend") && frame && cross(b, box(frame))) found.push(`${words} of the legend is in the plot`);
            for (let k = 0; k < i; k++) if (cross(b, boxes[k])) found.push(`${words} is on "${texts[k].textContent}"`);
        });
        const inPlot = texts.map((text, i) => ({text, box: boxes[i]})).filter((t) => frame && cross(t.box, box(frame)));
        found.push(...crossings(svg, inPlot).map((words) => `${name}: ${words}`));
    }
    return found;

    function crossings(svg, texts) {
        const result = [];
        for (const path of svg.querySelectorAll(":scope > g[clip-path] > path")) {
            if (path.getAttribute("stroke-linecap") === "round") continue; // dots
            const matrix = path.getScreenCTM(), points = [];
            for (const [, kind, x, y] of path.getAttribute("d").matchAll(/([ML])(-?[\\d.]+) (-?[\\d.]+)/g)) {
                const at = new DOMPoint(+x, +y).matrixTransform(matrix);
                points.push({isFirst: kind === "M", x: at.x, y: at.y});
            }
            texts.forEach(({text, box}) => {
                for (let k = 1; k < points.length; k++) {
                    if (!points[k].isFirst && meets(points[k - 1], points[k], box)) {
                        result.push(`a line crosses "${text.textContent}"`);
                        return;
                    }
                }
            });
        }
        return result;
    }

    function meets(a, b, box) { // the part of the line inside both pairs of sides
        let [from, to] = [0, 1];
        for (const [start, length, low, high] of [[a.x, b.x - a.x, box.left + 1, box.right - 1], [a.y, b.y - a.y, box.top + 2, box.bottom - 2]]) {
            if (length === 0) {
                if (start < low || start > high) return false;
                continue;
            }
            const ends = [(low - start) / length, (high - start) / length].sort((p, q) => p - q);
            [from, to] = [Math.max(from, ends[0]), Math.min(to, ends[1])];
        }
        return from < to;
    }
})()"""

AXE = """axe.run(document, {resultTypes: ["violations"]}).then((result) => result.violations
    .filter((fault) => ["serious", "critical"].includes(fault.impact))
    .map((fault) => `${fault.id}: ${fault.nodes.slice(0, 3).map((node) => node.html.slice(0, 120)).join(" | ")}`))"""


def pages_of(run, folder):
    """The page of each kind of result, and of what has none."""
    make_inputs(folder)
    make_scan(run, folder)
    make_recordings(run, folder)
    make_fleet(run, folder)
    commands = commands_with_report(os.path.join(ROOT, "examples", "limits.ini"))
    commands["no-map"] = ["grid", "w1.csv", "--step", "1"]
    commands["no-wheel"] = [argument.replace("w1.csv", "rail.csv") for argument in commands["conicity"]]
    for name, command in commands.items():
        run(*command, *(["--out", "passes"] if command[0] == "train" else []), "--report", name + ".html")
    run("view", "scan.profiles", "--step", "0.5", "-o", "view-scan.html")
    run("view", "w1.csv", EVIL, "-o", "view-profiles.html")
    run("view", "scan.xyz", "-o", "view-cloud.html")
    names = [*commands, "view-scan", "view-profiles", "view-cloud"]
    return {name: os.path.join(folder, name + ".html") for name in names}


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        folder = cls.scratch.name

        def run(*arguments):
            done = subprocess.run([KXMATH, *arguments], cwd=folder, capture_output=True, text=True, check=False)
            assert done.returncode in (0, 1, 3), f"{arguments}: {done.stderr}"
        cls.pages = pages_of(run, folder)
        cls.browser = Browser(flags=NO_GL)
        with open(AXE_FILE, encoding="utf-8") as file:
            cls.axe = file.read() + "; 1"

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        cls.scratch.cleanup()

    def picture(self, name):
        if PICTURES:
            self.browser.picture(os.path.join(PICTURES, name + ".png"))

    def test_screens(self):
        for name, page in self.pages.items():
            for scheme in ("light", "dark"):
                for width in (1280, 400):
                    with self.subTest(page=name, scheme=scheme, width=width):
                        self.look_at(name, page, scheme, width)

    def look_at(self, name, page, scheme, width):
        browser = self.browser
        browser.resize(width, 900)
        browser.media(scheme)
        browser.open(page)
        self.picture(f"{name}-{width}-{scheme}")
        self.assertEqual(browser.requests(), [])
        self.assertEqual(browser.complaints(), [])
        self.assertLessEqual(browser.value("document.documentElement.scrollWidth"), width)
        self.assertEqual(browser.value("document.querySelectorAll('script:not([id])').length") > 1, False)
        self.assertEqual(browser.value(CONTRAST), [])
        self.assertEqual(browser.value(BOXES), [])
        if (width, scheme) != (400, "dark"): # the colours are those of 1280, the layout that of light
            browser.value(self.axe)
            self.assertEqual(browser.value(AXE), [])

    def test_paper(self):
        """A4 is printed light, also from a dark screen, and nothing is wider than the paper."""
        for name, page in self.pages.items():
            with self.subTest(page=name):
                self.browser.resize(PAPER, 1000)
                self.browser.media("dark", "print")
                self.browser.open(page)
                self.assertEqual(self.browser.value("getComputedStyle(document.body).backgroundColor"), "rgb(255, 255, 255)")
                self.assertLessEqual(self.browser.value("document.documentElement.scrollWidth"), PAPER)
                self.assertEqual(self.browser.value(CONTRAST), [])
                self.picture(name + "-print")
                pdf = base64.b64decode(self.browser.call("Page.printToPDF", preferCSSPageSize=True)["data"])
                self.assertIn(b"/MediaBox [0 0 594.95996 841.91998]", pdf)

    def test_names_are_text(self):
        for name in ("wheel", "conicity", "view-profiles"):
            with open(self.pages[name], encoding="utf-8") as file:
                text = file.read()
            self.assertNotIn("<script>alert", text)
            self.assertIn("&lt;script&gt;alert", text)


if __name__ == "__main__":
    KXMATH, AXE_FILE = os.path.abspath(sys.argv[1]), sys.argv[2]
    PICTURES = sys.argv[3] if len(sys.argv) > 3 else ""
    if not program() or not os.path.exists(AXE_FILE):
        print("skipped: there is no Chromium or no axe-core; scripts/test installs both")
        sys.exit(0)
    unittest.main(argv=sys.argv[:1])
