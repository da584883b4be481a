"""kxmath watch as a user and as systemd run it: watchTest.py KXMATH SERVICE [TEST]

SERVICE is the unit of systemd. Groups are measured once, whatever happens meanwhile.
"""
import contextlib
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

KXMATH = os.path.abspath(sys.argv[1])
SERVICE = pathlib.Path(sys.argv[2]).resolve()
LAYOUT = pathlib.Path(__file__).resolve().parents[3] / "examples/layout.ini"
SMALL = ("--cars 1 --bogies 1 --axles 2 --rate 150 --points 60 --no-background --no-objects --no-rails "
         "--idle 2").split()
LONGEST = 60  # s


def until(condition, step=0.02):
    end = time.monotonic() + LONGEST
    while not condition():
        assert time.monotonic() < end, "takes too long"
        time.sleep(step)


@contextlib.contextmanager
def started(command, **arguments):
    with subprocess.Popen(command, **arguments) as process:
        try:
            yield process
        finally:
            process.kill()


def files_in(folder):
    """Also while they appear and go away."""
    return [pathlib.Path(place, name) for place, _, names in os.walk(folder) for name in names]


def contents(folder):
    """What is below a folder: the bytes of each file, the target of each link."""
    return {str(path.relative_to(folder)): os.readlink(path) if path.is_symlink() else path.read_bytes()
            for path in files_in(folder)}


class Watch(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.base = pathlib.Path(tempfile.mkdtemp(prefix="kxmath_watch_"))
        cls.addClassCleanup(shutil.rmtree, cls.base)
        subprocess.run([KXMATH, "simulate", "pass", *SMALL], cwd=cls.base, check=True)
        subprocess.run([KXMATH, "simulate", "four", *SMALL, "--layout", LAYOUT], cwd=cls.base, check=True)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=self.base))
        self.recordings, self.results = self.folder / "in", self.folder / "out"
        self.recordings.mkdir()
        self.settings = self.folder / "settings.ini"
        shutil.copy(self.base / "pass/settings.ini", self.settings)

    def put(self, time_, station="A12", serials=(101, 102), size=None, source="pass"):
        """Puts recordings where they belong, whole or so many bytes of each."""
        for serial in serials:
            content = (self.base / f"{source}/train_{serial}.bin").read_bytes()
            path = self.recordings / station / time_ / f"train_{serial}.bin"
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content[:size])

    def command(self, *options, settle="0"):
        return [KXMATH, "watch", self.recordings, "--settings", self.settings, "--out", self.results,
                *(["--settle", settle] if settle else []), *options]

    def states(self, code, *options):
        """The states of the groups by station and hour, with the reason where there is one."""
        run = subprocess.run(self.command("--json-lines", *options), capture_output=True, text=True, timeout=LONGEST)
        self.assertEqual(run.returncode, code, run.stderr)
        lines = [json.loads(line) for line in run.stdout.splitlines()]
        return {f"{line['station']} {line['time'][11:13]}":
                line["state"] + (f": {line['reason']}" if line["reason"] else "") for line in lines}

    def finished(self):
        return sorted(str(path.parent.relative_to(self.results)) for path in files_in(self.results)
                      if path.name == "result.json" and not path.parent.name.startswith("incomplete-"))

    def unfinished(self):
        return [path for path in files_in(self.results) if "incomplete-" in str(path)]

    def test_each_complete_group_becomes_a_result_once(self):
        self.put("20261121T081500Z")
        self.put("20261121T091500+0100")
        self.put("20261121T101500Z", serials=(101,))
        self.put("20261121T111500Z", size=5000)
        self.assertEqual(self.states(0), {"A12 08": "measured", "A12 09": "measured",
                                          "A12 10": "waiting: no recording of sensor 102",
                                          "A12 11": "waiting: 'train_101.bin' ends within a record, at byte 5000"})
        self.assertEqual(self.finished(), ["A12/20261121T081500Z_101+102", "A12/20261121T091500+0100_101+102"])
        result = json.loads((self.results / "A12/20261121T091500+0100_101+102/result.json").read_text())
        self.assertEqual((result["identity"]["station"], result["identity"]["time"]),
                         ("A12", "2026-11-21T09:15:00+01:00"))
        before = contents(self.results)
        self.put("20261121T101500Z", serials=(102,))
        self.assertEqual(self.states(0)["A12 10"], "measured")
        after = contents(self.results)
        self.assertEqual(before, {name: after[name] for name in before})

    def test_what_failed_is_tried_again_when_something_changed(self):
        self.put("20261121T081500Z")
        damaged = self.recordings / "A12/20261121T081500Z/train_102.bin"
        damaged.write_bytes(damaged.read_bytes() + b"x")
        self.put("20261121T091500Z")
        states = self.states(3)
        self.assertEqual(states["A12 09"], "measured")
        self.assertRegex(states["A12 08"], "^failed: recording '.*' is damaged at byte .*0x78")
        reason = self.results / "A12/20261121T081500Z_101+102.failed.txt"
        self.assertTrue(reason.read_text().startswith(states["A12 08"] + "\n"))
        made = reason.stat().st_mtime_ns
        self.assertEqual(self.states(3), {**states, "A12 09": "done"})
        self.assertEqual(reason.stat().st_mtime_ns, made)  # nobody tried
        self.settings.write_text(self.settings.read_text() + "; a remark\n")
        self.states(3)
        self.assertNotEqual(reason.stat().st_mtime_ns, made)
        self.put("20261121T081500Z")
        self.assertEqual(self.states(0), {"A12 08": "measured", "A12 09": "done"})
        self.assertFalse(reason.exists())

    def test_what_is_not_measured_says_why(self):
        self.put("20261121T081500Z")
        folder = self.recordings / "A12/20261121T081500Z"
        shutil.copy(folder / "train_102.bin", folder / "b_102.bin")
        self.assertRegex(self.states(3)["A12 08"], "^failed: '.*' and '.*' are of the same sensor and time")
        shutil.rmtree(self.recordings / "A12")
        self.assertEqual(self.states(1), {})
        self.put("20261121T101500Z")
        self.assertEqual(self.states(1, "--settle", "86400"),
                         {"A12 10": "waiting: 'train_101.bin' has not been still for 86400 s"})
        self.settings.write_text(self.settings.read_text().replace("level_b", "level_c"))
        self.assertRegex(self.states(3)["A12 10"], "^failed: settings .*SENSOR1/level_b")

    def test_an_incomplete_group_is_measured_without_what_it_lacks(self):
        shutil.copy(self.base / "four/settings.ini", self.settings)
        whole, half = "20261121T081500Z", "20261121T091500Z"
        self.put(whole, serials=(101, 102, 103), source="four")
        self.put(half, serials=(101, 102, 104), source="four")
        self.put(half, serials=(103,), size=5000, source="four")
        lacks = {"A12 08": "no recording of sensor 104", "A12 09": "'train_103.bin' ends within a record, at byte 5000"}
        for patience in ([], ["--give-up", "never"], ["--give-up", "86400"]):
            self.assertEqual(self.states(1, *patience), {group: f"waiting: {lack}" for group, lack in lacks.items()})
        self.assertEqual(self.states(0, "--give-up", "0"),
                         {group: f"measured: {lack}; measured without it" for group, lack in lacks.items()})
        given_up = contents(self.results)
        for time_, warning in ((whole, "no recording of SENSOR4 was given"), (half, "recording 'train_103.bin' is damaged")):
            result = json.loads((self.results / f"A12/{time_}_101+102+103+104/result.json").read_text())
            self.assertEqual(len([text for text in result["warnings"] if warning in text]), 1, result["warnings"])
        self.assertEqual(self.states(0, "--give-up", "0"), {"A12 08": "done", "A12 09": "done"})
        self.put(whole, serials=(104,), source="four")
        self.put(half, serials=(103,), source="four")
        late = self.states(0, "--give-up", "0")
        self.assertRegex(late["A12 08"], "^done: '.*train_104.bin' came after the pass was measured without it; remove '")
        self.assertRegex(late["A12 09"], "^done: '.*train_103.bin' has changed since the pass was measured without it;")
        self.assertEqual(contents(self.results), given_up)
        shutil.rmtree(self.results)
        self.assertEqual(self.states(0, "--give-up", "0"), {"A12 08": "measured", "A12 09": "measured"})

    def test_what_cannot_be_measured_without_a_recording_waits_for_it(self):
        self.put("20261121T081500Z", serials=(101,))
        self.assertEqual(self.states(3, "--give-up", "0"), {
            "A12 08": "failed: no recording of sensor 102, and without it: a pass needs two recordings, not 1"})
        self.put("20261121T081500Z", serials=(102,))
        self.assertEqual(self.states(0, "--give-up", "0"), {"A12 08": "measured"})
        self.assertEqual([path for path in files_in(self.results) if "failed" in path.name], [])

    def test_a_recording_that_grows_after_its_result_is_reported(self):
        self.put("20261121T081500Z")
        self.states(0)
        path = self.recordings / "A12/20261121T081500Z/train_101.bin"
        path.write_bytes(path.read_bytes() * 2)
        self.assertRegex(self.states(3)["A12 08"],
                         "^failed: '.*train_101.bin' has another size than when it was measured")
        self.assertEqual(len(self.finished()), 1)

    def test_one_watch_at_a_time(self):
        self.put("20261121T081500Z")
        with started(self.command("--follow", "--poll", "0.1"), stdout=subprocess.DEVNULL) as follower:
            until(lambda: self.finished())
            second = subprocess.run(self.command(), capture_output=True, text=True, timeout=LONGEST)
            self.assertEqual(second.returncode, 4)
            self.assertIn("another watch is at work there", second.stderr)
            follower.terminate()
            self.assertEqual(follower.wait(LONGEST), 143)
        self.put("20261121T091500Z")  # and several at the same moment
        several = [subprocess.Popen(self.command(), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
                   for _ in range(4)]
        outputs = [run.communicate(timeout=LONGEST)[0] for run in several]
        self.assertEqual("".join(outputs).count(": measured"), 1)
        self.assertEqual(len(self.finished()), 2)
        self.assertEqual([run.returncode for run in several if run.returncode not in (0, 4)], [])

    def test_following_waits_for_what_arrives_slowly(self):
        contents_ = [(self.base / f"pass/train_{serial}.bin").read_bytes() for serial in (101, 102)]
        folder = self.recordings / "A12/20261121T081500Z"
        folder.mkdir(parents=True)
        command = self.command("--follow", "--poll", "0.1", settle="0.3")
        with started(command, stdout=subprocess.PIPE, text=True) as follower:
            for serial, content in zip((101, 102), contents_):
                with open(folder / f"train_{serial}.bin", "wb") as file:
                    for at in range(0, len(content), len(content) // 7):
                        file.write(content[at:at + len(content) // 7])
                        file.flush()
                        time.sleep(0.05)
            until(lambda: self.finished())
            self.put("20261121T091500Z")
            until(lambda: len(self.finished()) == 2)
            follower.send_signal(signal.SIGINT)
            output = follower.communicate(timeout=LONGEST)[0]
            self.assertEqual(follower.returncode, 130)
        self.assertEqual(output.count("measured"), 2)
        result = json.loads((self.results / "A12/20261121T081500Z_101+102/result.json").read_text())
        self.assertEqual([r["bytes"] for r in result["recordings"]], [len(c) for c in contents_])

    def test_the_command_of_the_service_survives_kills(self):
        unit = SERVICE.read_text()
        line = re.search(r"^ExecStart=(.*)$", unit, re.M)[1].replace("%i", "A12").replace("$KXMATH_WATCH_OPTIONS", "")
        for place, own in (("/var/lib/kxmath/A12/recordings", self.recordings),
                           ("/etc/kxmath/A12/settings.ini", self.settings),
                           ("/var/lib/kxmath/A12/results", self.results)):
            self.assertIn(place, line)
            line = line.replace(place, str(own))
        command = [KXMATH, *shlex.split(line)[1:], "--settle", "0", "--poll", "0.1"]
        generator = random.Random(15)
        unfinished = 0
        for kill in range(50):
            self.put(f"20261121T08{kill:02}00Z")
            with started(command, stdout=subprocess.DEVNULL) as run:
                if kill % 2:  # in the middle of the work, however fast the machine is
                    until(lambda: any(f"08{kill:02}00Z" in str(path) for path in self.unfinished() + self.finished()),
                          step=0.0005)
                    time.sleep(generator.uniform(0, 0.003))
                else:
                    time.sleep(generator.uniform(0, 0.2))
                run.kill()
            unfinished += bool(self.unfinished())
            for name in self.finished():
                json.loads((self.results / name / "result.json").read_text())
        with started(command, stdout=subprocess.DEVNULL):
            until(lambda: len(self.finished()) == 50 and not self.unfinished())
        print(f"{unfinished} of 50 kills hit a group that was being measured")
        self.assertGreater(unfinished, 0)
        killed, self.results = self.results, self.folder / "undisturbed"
        self.assertEqual(set(self.states(0).values()), {"measured"})
        self.assertEqual(contents(killed), contents(self.results))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
