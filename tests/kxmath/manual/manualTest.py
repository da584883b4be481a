"""Manual pages and completions beside the help of the commands: manualTest.py KXMATH FOLDER"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

KXMATH, FOLDER = sys.argv[1], pathlib.Path(sys.argv[2])


def output(*command, **more):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60, **more).stdout


def listed(title, text):
    """The names of the list below a title of a help."""
    return re.findall(r"^  ([\w-]+)  ", text.split(f"\n{title}:\n")[1].split("\n\n")[0], re.MULTILINE)


def options(*command):
    """The options that the help of a command lists: -h, --help."""
    names = set()
    for line in output(KXMATH, *command, "--help").split("\nOptions:\n")[1].splitlines():
        if not line or line.startswith("Arguments:"):
            break
        if entry := re.match(r"  (-[\w-]+(?:, -[\w-]+)*)", line):
            names.update(entry[1].split(", "))
    return names


HELP = output(KXMATH, "help")
COMMANDS = listed("Commands", HELP)
TOPICS = listed("Topics", HELP)
PARTS = {}
for name in COMMANDS:
    if usage := re.match(r"Usage: kxmath \w+ (\w+(?:\|\w+)+) ", output(KXMATH, name, "--help")):
        PARTS[name] = usage[1].split("|")
CALLS = [(name,) for name in COMMANDS] + [(name, part) for name, parts in PARTS.items() for part in parts]

COMPLETE = """source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_kxmath
printf '%s\\n' "${COMPREPLY[@]}"
"""


def completions(*words):
    """What bash offers for the last of these words behind kxmath."""
    return set(output("bash", "-c", COMPLETE, "bash", str(FOLDER / "kxmath.bash"), "kxmath", *words).split())


def syntax_check(shell, file, *arguments):
    if shutil.which(shell) is None:
        raise unittest.SkipTest(f"{shell} is not installed")
    subprocess.run([shell, *arguments, str(FOLDER / file)], check=True, timeout=60)


class Manual(unittest.TestCase):
    def test_lists_are_understood(self):
        self.assertGreater(len(COMMANDS), 10)
        self.assertIn("exit-codes", TOPICS)
        self.assertEqual(PARTS["settings"], ["init", "check", "fit"])
        self.assertLess({"-h", "--help", "-o", "--out", "--settings"}, options("train"))

    def test_there_is_a_page_of_each_command(self):
        self.assertEqual({page.name for page in FOLDER.glob("*.1")},
                         {"kxmath.1"} | {f"kxmath-{name}.1" for name in COMMANDS})

    def test_pages_have_no_warnings_and_all_options(self):
        for page in sorted(FOLDER.glob("*.1")):
            with self.subTest(page=page.name):
                run = subprocess.run(["groff", "-ww", "-z", "-man", "-Tutf8", "-k", str(page)], capture_output=True,
                                     text=True, timeout=60)
                self.assertEqual((run.returncode, run.stderr), (0, ""))
                text = output("groff", "-man", "-Tascii", "-P-cbou", "-rLL=80n", str(page))
                self.assertLessEqual(max(map(len, text.splitlines())), 80)
                name = page.stem.partition("-")[2]
                for call in CALLS:
                    if call[0] == name:
                        found = set(re.findall(r"(?<![\w-])--?[a-z][\w-]*", text))
                        self.assertEqual(options(*call) - found, set())
        self.assertTrue(all(f"kxmath-{name}(1)" in output("groff", "-man", "-Tascii", "-P-cbou", str(FOLDER / "kxmath.1"))
                            for name in COMMANDS))

    def test_warnings_are_seen(self):
        with tempfile.NamedTemporaryFile("w", suffix=".1") as page:
            page.write(".TH A 1\n.SH NAME\n.nosuchmacro\n")
            page.flush()
            run = subprocess.run(["groff", "-ww", "-z", "-man", "-Tutf8", page.name], capture_output=True, text=True,
                                 timeout=60)
            self.assertIn("nosuchmacro", run.stderr)

    def test_bash_offers_what_the_help_lists(self):
        self.assertEqual(completions(""), set(COMMANDS) | {"help", "--help", "--version"})
        self.assertEqual(completions("conv"), {"convert"})
        self.assertEqual(completions("help", ""), set(COMMANDS) | set(TOPICS))
        for name, parts in PARTS.items():
            self.assertEqual(completions(name, ""), set(parts))
        for call in CALLS:
            with self.subTest(call=call):
                self.assertEqual(completions(*call, "-"), options(*call))
        self.assertEqual(completions("grid", "scan.set", "--se"), {"--seeds"})
        self.assertEqual(completions("grid", ""), set(), "files, which bash offers itself")

    def test_bash_reads_its_file(self):
        syntax_check("bash", "kxmath.bash", "-n")

    def test_zsh_reads_its_file(self):
        syntax_check("zsh", "_kxmath", "-n")

    def test_fish_reads_its_file(self):
        syntax_check("fish", "kxmath.fish", "--no-execute")

    def test_fish_offers_parts_and_options(self):
        if shutil.which("fish") is None:
            raise unittest.SkipTest("fish is not installed")
        for words, expected in (("settings ", PARTS["settings"]), ("conv", ["convert"]), ("grid --se", ["--seeds"]),
                                ("settings init --ser", ["--serials"]), ("help exit", ["exit-codes"])):
            with self.subTest(words=words):
                lines = output("fish", "--no-config", "-c", f"source {FOLDER}/kxmath.fish; complete -C 'kxmath {words}'")
                self.assertEqual({line.split("\t")[0] for line in lines.splitlines()}, set(expected))

    def test_other_shells_are_told_all_options(self):
        zsh = (FOLDER / "_kxmath").read_text(encoding="utf-8")
        fish = (FOLDER / "kxmath.fish").read_text(encoding="utf-8").splitlines()
        for call in CALLS:
            with self.subTest(call=call):
                case = zsh.split(f"\n        '{' '.join(call)}') _arguments")[1].split(";;")[0]
                self.assertEqual(set(re.findall(r"'\*(-[\w-]+)=?\[", case)), options(*call))
                condition = "; and ".join(f"__fish_seen_subcommand_from {word}" for word in call)
                names = set()
                for line in fish:
                    if f" -n '{condition}' -" in line:
                        rest = line.split(f"'{condition}'")[1].split(" -d ")[0]
                        names.update("-" + name for name in re.findall(r" -s (\S+)", rest))
                        names.update("--" + name for name in re.findall(r" -l (\S+)", rest))
                self.assertEqual(names, options(*call))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
