"""What the reports of all commands say, read as text: reportsTest.py KXMATH"""
import hashlib
import html
import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
from pageInputs import commands_with_report, make_fleet, make_inputs, make_recordings, make_scan  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
FOLDER = "SecretFolder" # a part of the path of all inputs that no page may show
# As a user without the rights of root, who may read everything.
UNPRIVILEGED = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"] if os.geteuid() == 0 else []


def words(page):
    """The text of a page without its styles and scripts."""
    return html.unescape(re.sub(r"<[^>]*>", " ", re.sub(r"(?s)<(style|script)\b.*?</\1>", " ", page)))


def failures(page):
    """The texts of the red bars."""
    return [words(text).strip() for text in re.findall(r'(?s)<p class="failure">(.*?)</p>', page)]


class Reports(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.work = cls.scratch.name
        cls.inputs = os.path.join(cls.work, FOLDER, "")
        os.mkdir(cls.inputs)

        def run(*arguments):
            subprocess.run([KXMATH, *arguments], cwd=cls.inputs, capture_output=True, text=True, check=True)
        make_inputs(cls.inputs)
        make_scan(run, cls.inputs)
        make_recordings(run, cls.inputs)
        make_fleet(run, cls.inputs)
        cls.commands = commands_with_report(os.path.join(ROOT, "examples", "limits.ini"), cls.inputs)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def run_kxmath(self, *arguments, code=0, prefix=()):
        done = subprocess.run([*prefix, KXMATH, *arguments], cwd=self.work, capture_output=True, text=True, check=False)
        if code is not None:
            self.assertEqual(done.returncode, code, done.stderr)
        return done

    def report(self, *arguments, code=0, prefix=()):
        """The page that a command writes."""
        path = os.path.join(self.work, "page.html")
        if os.path.exists(path):
            os.remove(path)
        out = ["--out", "passes"] if arguments[0] == "train" else []
        self.run_kxmath(*arguments, *out, "--report", path, code=code, prefix=prefix)
        with open(path, encoding="utf-8") as file:
            return file.read()

    def test_names_without_folders(self):
        for name, command in self.commands.items():
            with self.subTest(command=name):
                page = self.report(*command, code=1 if name == "blind" else 0)
                self.assertNotIn(FOLDER, page)
                line = re.search(r"command +(kxmath .*)", words(page)).group(1)
                self.assertIn(f"kxmath {command[0]}", line)
                self.assertNotIn("/", line)

    def test_unreadable_inputs(self):
        """The pages name what could not be read, without folders."""
        broken, locked, gone = (self.inputs + name for name in ("broken.bin", "locked.bin", "gone.bin"))
        with open(broken, "wb") as file:
            file.write(b"\x02\xff\xff")
        with open(locked, "wb") as file:
            file.write(b"\x02\x00\x00")
        os.chmod(locked, 0)
        self.addCleanup(os.remove, locked)
        for path, words_of in ((broken, "damaged"), (locked, "Permission denied"), (gone, "No such file")):
            for name in ("calibrate", "wheel"):
                with self.subTest(path=path, command=name):
                    command = self.commands[name]
                    page = self.report(*command[:1], path, *command[1:], code=3, prefix=UNPRIVILEGED)
                    self.assertIn(os.path.basename(path), words(page))
                    self.assertIn(words_of, words(page))
                    self.assertNotIn(FOLDER, page)
                    if path != broken:
                        self.assertRegex(words(page), f"input {os.path.basename(path)}\\s+no hash, it could not be read")

    def test_hashes_and_note(self):
        for name, command in self.commands.items():
            with self.subTest(command=name):
                page = self.report(*command, "--note", "seen <at> dusk / rain", code=1 if name == "blind" else 0)
                text = words(page)
                self.assertIn("Note of the operator: seen <at> dusk / rain", text)
                for path in filter(os.path.isfile, command):
                    with open(path, "rb") as file:
                        digest = hashlib.sha256(file.read()).hexdigest()
                    self.assertRegex(text, re.escape(f"input {os.path.basename(path)}") + r"\s+SHA-256 " + digest)

    def test_settings(self):
        """What was measured with: options with their values, settings, limits, the consist and who passed first."""
        def rows(page):
            return [[html.unescape(cell) for cell in re.findall("<td[^>]*>([^<]*)</td>", row)]
                    for row in re.findall("(?s)<tr[^>]*>(.*?)</tr>", page)]

        grid = rows(self.report(*self.commands["grid"], "--gap", "4"))
        self.assertIn(["--step", "0.5", "given"], grid)
        self.assertIn(["--gap", "4", "given"], grid)
        conicity = rows(self.report(*self.commands["conicity"]))
        self.assertIn(["--gauge", "1435", "given"], conicity)
        self.assertIn(["--wheel1", "w1.csv", "given"], conicity)
        self.assertTrue([row for row in conicity if row[-1:] == ["default"]])
        with open(self.inputs + "consist.csv", "w", encoding="utf-8") as file:
            file.write("mark,number,class,axle distances,to next\nBpmz,73 80,coach,2500,\n")
        train = rows(page := self.report(*self.commands["train"], "--consist", self.inputs + "consist.csv",
                                         "--consist-order", "turned"))
        with open(os.path.join(ROOT, "examples", "limits.ini"), encoding="utf-8") as file:
            given = [line.split("=")[1].strip() for line in file if "=" in line and not line.startswith((";", "#"))]
        limits = next(row for row in train if row and row[0].startswith("back-to-back, mm") and len(row) == 6)
        self.assertTrue(set(limits[2:]) - {"-"} <= set(given), limits)
        self.assertTrue(set(limits[2:]) - {"-"})
        with open(self.inputs + "pass/settings.ini", encoding="ascii") as file:
            base = next(line.split("=") for line in file if line.startswith("calibrLines2="))
        self.assertIn(["station", "calibrLines2", base[1].strip()], train)
        self.assertIn("consist.csv", words(page))
        self.assertIn("it was said that its last vehicle passed first", words(page))

    def test_points_lost_to_each_filter(self):
        """Mode 3 removes the same noise as mode 0, and straight parts."""
        with open(self.inputs + "pass/settings.ini", encoding="ascii") as file:
            text = file.read().replace("maxCorr=1", "maxCorr=2").replace("parts=0", "parts=1")
        with open(self.inputs + "parts.ini", "w", encoding="ascii") as file:
            file.write(text)
        counts, tables = {}, {}
        for mode in (0, 3):
            page = self.report(*self.commands["train"][:3], "--settings", self.inputs + "parts.ini", "--mode", str(mode),
                               "--json", "mode.json", code=None)
            with open(os.path.join(self.work, "mode.json"), encoding="utf-8") as file:
                counts[mode] = [side["points"] for side in json.load(file)["recordings"]]
            quality = re.search("(?s)points removed as noise.*?</table>", page).group()
            tables[mode] = [re.findall("<td[^>]*>([^<]*)</td>", row)
                            for row in re.findall("(?s)<tr>(<td.*?)</tr>", quality)]
        for side in (0, 1):
            plain, parts = counts[0][side], counts[3][side]
            self.assertEqual(plain["removedAsStraight"], 0)
            self.assertGreater(parts["removedAsStraight"], 0)
            self.assertEqual(parts["removed"] - parts["removedAsStraight"], plain["removed"])
            for mode, straight in ((0, "-"), (3, str(parts["removedAsStraight"]))):
                self.assertEqual(tables[mode][side][5].split()[0], str(plain["removed"]))
                self.assertEqual(tables[mode][side][6].split()[0], straight)

    def test_note_needs_report(self):
        for name, command in self.commands.items():
            with self.subTest(command=name):
                done = self.run_kxmath(*command, "--note", "x", code=2)
                self.assertIn("--note is for the page of --report, which is not given", done.stderr)

    def test_fleet(self):
        """The urgent wheels come first, and no wheel beyond its limit is called good."""
        page = words(self.report(*self.commands["trend"]))
        self.assertIn("of 48 values 1 are beyond a limit, 1 may reach one within 30 days, 0 are not known", page)
        self.assertRegex(page, r"alarm: axle 2 right, flangeThickness 28\.\d\d mm; beyond the limit")
        self.assertRegex(page, r"warning: axle 1 left, flangeThickness 22\.\d\d mm; days to the limit: 10")
        self.assertIn("Vehicle V02", page)
        self.assertLess(page.index("Vehicle V02"), page.index("Vehicle V01"))
        self.assertRegex(page, r"have measured flangeThickness differently by 0\.(29|30|31)")
        few = words(self.report(*self.commands["trend"], "--pictures", "1"))
        self.assertNotIn("Vehicle V01", few)
        self.assertIn("11 further vehicles", few)
        alarms = words(self.report(*self.commands["alarms"]))
        self.assertRegex(alarms, r"V02 +axle 2 right +flangeThickness")

    def test_results_are_shown(self):
        """kxmath view makes the report of the JSON of each command."""
        for name in ("train", "wheel", "conicity", "grid", "calibrate", "profile"):
            with self.subTest(command=name):
                command = self.commands[name]
                page = self.report(*command, "--json", "result.json")
                self.run_kxmath("view", "result.json", "-o", "view.html")
                with open(os.path.join(self.work, "view.html"), encoding="utf-8") as file:
                    shown = file.read()
                title = re.compile("<h1>(.*)</h1>")
                self.assertEqual(title.search(shown).group(1), title.search(page).group(1))
                self.assertEqual(re.findall("(?s)<dl>.*?</dl>", shown)[0].count("<dt>") > 0, True)
                self.assertNotIn(FOLDER, shown)
                cells = set(re.findall("<td[^>]*>([^<]+)</td>", page.split("How this page was made")[0]))
                missing = cells - set(re.findall("<td[^>]*>([^<]+)</td>", shown))
                self.assertEqual(missing, set(), "cells of tables")

    def test_no_result(self):
        """A page says in a red bar why there is no result, and shows what could be read."""
        cut, flat, empty, line = (self.inputs + name for name in ("cut.bin", "flat.bin", "empty.bin", "line.csv"))
        with open(self.inputs + "scan.profiles", "rb") as file:
            scan = file.read()
        with open(cut, "wb") as file:
            file.write(scan[:4000] + b"\x02\xff\xff")
        with open(flat, "wb") as file:
            file.write(b"\x02\x03\x00" + struct.pack("<6f", 1, 5, 2, 6, 3, 7))
        with open(empty, "wb") as file:
            file.write(b"")
        with open(line, "w", encoding="ascii") as file:
            file.writelines(f"{x};{x / 4}\n" for x in range(40))
        train, conicity, wheel, calibrate, settings = (
            self.commands[name] for name in ("train", "conicity", "wheel", "calibrate", "settings"))
        swap = lambda command, old, new: [new if a.endswith(old) else a for a in command]  # noqa: E731
        cases = [  # command, exit code, part of the reason, part of the raw data
            (["grid", flat, "--step", "1"], 1, "no height map", "flat.bin as it was recorded: 3 of 3 points"),
            (["grid", cut, "--step", "1"], 3, "'cut.bin' is damaged", "cut.bin as it was recorded"),
            (["grid", empty, "--step", "1"], 3, "'empty.bin' is empty", "Raw data"),
            (["grid", line, "--step", "1"], 3, "'line.csv' is neither", "line.csv as it was recorded: 40 of 40 points"),
            (swap(conicity, "w1.csv", line), 3, "wheel1 'line.csv'", "line.csv as it was recorded: 40 of 40 points"),
            (swap(conicity, "w1.csv", self.inputs + "rail.csv"), 3, "wheel1 'rail.csv'", "rail.csv as it was recorded"),
            (["profile", line, "--do", "trimX:100,200"], 1, "trimX:100,200", "Lines join"),
            (["profile", cut, "--record", "1"], 3, "'cut.bin' is damaged", "cut.bin as it was recorded"),
            (["profile", line, "--detect", "weld joint"], 1, "no detected joint", "Lines join"),
            (["wheel", cut], 3, "'cut.bin' does not begin on a steep flange back", "cut.bin as it was recorded"),
            ([*calibrate[:1], cut, *calibrate[3:]], 3, "'cut.bin' is damaged", "cut.bin as it was recorded"),
            (["wheel", line], 1, "no flange or tread", "points of the file"),
            ([*calibrate[:1], flat, *calibrate[3:]], 1, "'flat.bin'", "The profile in the frame of the sensor"),
            (swap(train, "train_101.bin", cut), 3, "", "Raw data"),
            (self.commands["blind"], 1, "No wheel was found", "Raw profiles"),
            (swap(settings, "1361.2,1358.2,1358.8", "1361.2,1358.2"), 1, "", "Raw profiles"),
        ]
        for command, code, reason, data in cases:
            with self.subTest(command=[os.path.basename(a) for a in command]):
                page = self.report(*command, code=code)
                bars = failures(page)
                self.assertTrue(bars)
                self.assertIn(reason, " ".join(bars))
                self.assertIn(data, words(page))
                self.assertRegex(page, "<svg" if data != "Raw data" else "<table")
                self.assertNotIn(FOLDER, page)
        done = self.run_kxmath("grid", line, "--step", "0", "--report", "wrong.html", code=2)
        self.assertIn("--step", done.stderr)
        self.assertFalse(os.path.exists(os.path.join(self.work, "wrong.html")), "a wrong option is no result")

    def test_view_without_permission(self):
        for name in ("locked.csv", "locked.bin", "locked.npy", "locked.json", "locked"):
            locked = self.inputs + name
            with open(locked, "w", encoding="ascii") as file:
                file.write("{}")
            os.chmod(locked, 0)
            for options in ([], ["--step", "1"], ["--record", "1"], ["--columns", "1,2"]):
                with self.subTest(name=name, options=options):
                    done = self.run_kxmath("view", locked, *options, code=3, prefix=UNPRIVILEGED)
                    self.assertIn(f"'{locked}' cannot be read: Permission denied", done.stderr)


if __name__ == "__main__":
    KXMATH = os.path.abspath(sys.argv[1])
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
