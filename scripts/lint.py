#!/usr/bin/env python3
"""Runs clang-tidy and cppcheck over the sources; scripts/lint prepares what it needs and lists the options.

What clang-tidy found in a source is kept in BUILD/findings and found again until the source, a header that it includes,
its compiler flags or the configuration change. Exit code 1 when there are findings, when a source could not be checked to
its end although the time is not limited, or when the time did not suffice for a single source.
"""
import argparse
import concurrent.futures
import hashlib
import json
import math
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import time

TIDY = "clang-tidy-14"
BATCH = 16  # sources that are checked at once
TOGETHER = "UnifiedSource"  # in the name of a file that includes sources: else clang's analyzer skips what is in them
SHORT_BATCH = 3  # with a limit of time, at which a batch is given up
LONGEST = 1800  # s for a batch
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
COMPILE_ERROR = re.compile(r"^(\S+?):\d+:\d+: (?:fatal )?error: ", re.MULTILINE)
# The library keeps each benchmark that is registered, in a list that the analyzer does not see.
WRONG = re.compile(r"^/usr/include/benchmark/benchmark\.h:.*\[clang-analyzer-cplusplus\.NewDeleteLeaks\]$", re.MULTILINE)
FINDING = re.compile(r"^(\S+?):(\d+):(\d+): (?:warning|error): ")


def git(*arguments):
    output = subprocess.run(["git", "-c", "core.quotePath=off", *arguments], check=True, capture_output=True, text=True)
    return output.stdout.splitlines()


def changed_files(base):
    """The files changed since `base` and not yet committed, the newest changes first."""
    if base is None:
        history = git("rev-list", "--max-count=21", "HEAD")
        base = history[-1]  # of a shallow clone all that is there
    names = git("ls-files", "--others", "--exclude-standard") + git("diff", "--name-only", "HEAD")
    names += git("log", "--name-only", "--format=", f"{base}..HEAD")
    return [name for name in dict.fromkeys(names) if os.path.exists(name)]


class Sources:
    """The sources with their compiler commands and the headers of this project that they include."""

    def __init__(self, build):
        self.commands = {}
        for entry in json.loads((build / "compile_commands.json").read_text()):
            name = os.path.relpath(os.path.join(entry["directory"], entry["file"]))
            if not name.startswith(f"{build}{os.sep}"):  # what a build makes is not there yet
                self.commands.setdefault(name, entry["command"])  # of one that is compiled twice the first will do
        self.texts = {}
        self.headers = {}

    def text(self, name):
        if name not in self.texts:
            self.texts[name] = pathlib.Path(name).read_bytes()
        return self.texts[name]

    def headers_of(self, source):
        """All headers of this project that `source` includes, directly or not."""
        if source not in self.headers:
            folders = [os.path.relpath(word[2:]) for word in shlex.split(self.commands[source]) if word.startswith("-I")]
            found, open_files = set(), [source]
            while open_files:
                name = open_files.pop()
                for include in INCLUDE.findall(self.text(name).decode()):
                    for folder in [os.path.dirname(name), *folders]:
                        header = os.path.normpath(os.path.join(folder, include))
                        if os.path.isfile(header):
                            if header not in found:
                                found.add(header)
                                open_files.append(header)
                            break
            self.headers[source] = found
        return self.headers[source]

    def of_changed(self, names):
        """The sources among `names`, and for each header one that includes it, its own by preference."""
        chosen = [name for name in names if name in self.commands]
        for header in (name for name in names if name.endswith(".h")):
            users = [source for source in self.commands if header in self.headers_of(source)]
            if users and not set(users) & set(chosen):
                own = os.path.splitext(header)[0] + ".cpp"
                chosen.append(own if own in users else users[0])
        order = {name: place for place, name in enumerate(names)}
        return sorted(chosen, key=lambda source: order.get(source, len(order)))


class Tidy:
    """clang-tidy over batches of sources, with the results that are still valid from before."""

    def __init__(self, build, sources, end):
        self.sources = sources
        self.end = end  # when the time is over, infinite where there is no limit
        self.batch = BATCH if end == math.inf else SHORT_BATCH
        self.kept = build / "findings"
        self.kept.mkdir(exist_ok=True)
        version = subprocess.run([TIDY, "--version"], check=True, capture_output=True).stdout
        self.general = version + pathlib.Path(".clang-tidy").read_bytes()
        self.require_analyzer()

    def require_analyzer(self):
        """Ends the program unless the analyzer finds a planted fault in a source that is checked as one of a batch."""
        with tempfile.TemporaryDirectory(dir=self.kept) as folder:
            planted, together = pathlib.Path(folder, "planted.cpp"), pathlib.Path(folder, TOGETHER + ".cpp")
            planted.write_text("int planted() {\n    int* p = nullptr;\n    return *p;\n}\n")
            together.write_text(f'#include "{planted.absolute()}"\n')
            run = subprocess.run([TIDY, "--quiet", "--config-file=.clang-tidy", together, "--"], capture_output=True,
                                 text=True, check=False)
        if "clang-analyzer-core.NullDereference" not in run.stdout:
            sys.exit(f"{TIDY} does not find a planted fault: {run.stdout}{run.stderr}")

    def flags(self, source):
        """The compiler flags of `source`, without the names of files."""
        words = shlex.split(self.sources.commands[source])
        output = words.index("-o")
        words = words[1:output] + words[output + 2:]
        return tuple(words[:words.index("-c")])

    def record(self, source):
        """The file that keeps the findings in this state of the source."""
        state = hashlib.sha256(self.general + "\0".join(self.flags(source)).encode())
        for name in [source, *sorted(self.sources.headers_of(source))]:
            state.update(name.encode() + b"\0" + self.sources.text(name) + b"\0")
        return self.kept / state.hexdigest()

    def batches(self, names):
        """Groups of sources with the same flags, in the order of `names`."""
        by_flags = {}
        for name in names:
            by_flags.setdefault(self.flags(name), []).append(name)
        return [group[i:i + self.batch] for group in by_flags.values()
                for i in range(0, len(group), self.batch)]

    def run(self, *command):
        return subprocess.run(command, capture_output=True, text=True, check=False,
                              timeout=max(0.0, min(LONGEST, self.end - time.monotonic())))

    def kept_findings(self, source):
        """What is recorded of a source, None without a record."""
        record = self.record(source)
        return json.loads(record.read_text()) if record.exists() else None

    def check(self, batch):
        """Records what is found in a batch, as one translation unit: most of the time goes into the headers of Qt and
        of the standard library. Sources that do not compile together, for names that they share, are separated."""
        flags = self.flags(batch[0])
        together = self.kept / (TOGETHER + self.record(batch[0]).name + ".cpp")
        together.write_text("".join(f'#include "{os.path.abspath(name)}" // NOLINT(bugprone-suspicious-include)\n'
                                    for name in batch))
        try:
            compiled = self.run("clang++", "-fsyntax-only", "-w", "-ferror-limit=0", *flags, together)
            if compiled.returncode != 0:
                if len(batch) == 1:
                    return [f"{batch[0]}: {compiled.stderr.strip()}"]
                faulty = {os.path.relpath(file) for file in COMPILE_ERROR.findall(compiled.stderr)}
                apart = [name for name in batch[1:] if name in faulty] or batch[1:]
                return self.check([name for name in batch if name not in apart]) + self.check(apart)
            run = self.run(TIDY, "--quiet", "--config-file=.clang-tidy", together, "--", *flags)
        finally:
            together.unlink(missing_ok=True)  # a part of the batch may have had the same name
        blocks = []
        for line in run.stdout.splitlines():
            if FINDING.match(line):
                blocks.append(line)
            elif blocks:
                blocks[-1] += "\n" + line
        blocks = [block for block in blocks if not WRONG.match(block)]
        if run.returncode != 0 and not blocks:
            return [f"{', '.join(batch)}: clang-tidy ends with {run.returncode}: {run.stderr.strip()}"]
        project = os.path.join(os.getcwd(), "")
        for source in batch:  # what ends in a header of another library may come from each of them
            own = {os.path.abspath(name) for name in [source, *self.sources.headers_of(source)]}
            self.record(source).write_text(json.dumps([
                b for b in blocks if FINDING.match(b)[1] in own or not FINDING.match(b)[1].startswith(project)]))
        return blocks


def run_tidy(tidy, sources, jobs):
    """All different findings, the sources for which the time did not suffice, and whether those are all that waited."""
    findings, left = {}, []
    known = {source: tidy.kept_findings(source) for source in sources}
    waiting = [source for source in sources if known[source] is None]
    for blocks in known.values():
        findings.update(dict.fromkeys(blocks or []))
    print(f"clang-tidy: {len(sources)} sources, {len(sources) - len(waiting)} of them unchanged since the last run",
          flush=True)

    def one(batch):
        begin = time.monotonic()
        try:
            return batch, tidy.check(batch), [], time.monotonic() - begin
        except subprocess.TimeoutExpired:  # parts of the batch may have been checked
            kept = {source: tidy.kept_findings(source) for source in batch}
            blocks = [block for found in kept.values() for block in found or []]
            return batch, blocks, [source for source in batch if kept[source] is None], time.monotonic() - begin

    done = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for result in concurrent.futures.as_completed([pool.submit(one, batch) for batch in tidy.batches(waiting)]):
            batch, blocks, unchecked, seconds = result.result()
            left += unchecked
            findings.update(dict.fromkeys(blocks))
            done += len(batch) - len(unchecked)
            if len(unchecked) < len(batch):
                print(f"[{done}/{len(waiting)}] {seconds:.1f} s: {' '.join(batch)}", flush=True)
    return list(findings), left, bool(left) and done == 0


def run_cppcheck(sources):
    """cppcheck reads its options from .cppcheck, one to a line."""
    lines = pathlib.Path(".cppcheck").read_text().splitlines()
    options = [line.strip() for line in lines if line.strip() and not line.startswith("#")]
    print(f"cppcheck: {len(sources)} sources", flush=True)
    names = "\n".join(sources)
    run = subprocess.run(["cppcheck", *options, "--file-list=-"], input=names, text=True, capture_output=True, check=False)
    findings = list(dict.fromkeys(run.stderr.splitlines()))
    if run.returncode != 0 and not findings:
        findings.append(f"cppcheck ends with {run.returncode}: {run.stdout.strip()}")
    return findings


def below(names, paths):
    wanted = [pathlib.Path(os.path.relpath(path)) for path in paths]
    return [name for name in names if any(path == pathlib.Path(name) or path in pathlib.Path(name).parents
                                          for path in wanted)]


def main():
    parser = argparse.ArgumentParser(usage="scripts/lint --help lists the options")
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--changed", nargs="?", const="", metavar="BASE")
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("paths", nargs="*")
    options = parser.parse_intermixed_args()
    end = math.inf if options.seconds is None else time.monotonic() + options.seconds

    sources = Sources(options.build)
    every = git("ls-files", "--cached", "--others", "--exclude-standard", "*.cpp")
    names = every
    if options.changed is not None:
        changed = changed_files(options.changed or None)
        names = sources.of_changed(changed) + [name for name in changed if name in every and name not in sources.commands]
    if options.paths:
        names = below(names, options.paths)

    findings = run_cppcheck(names) if names else []
    compiled = [name for name in names if name in sources.commands]
    tidy_findings, left, is_idle = run_tidy(Tidy(options.build, sources, end), compiled, options.jobs)
    findings += tidy_findings
    for finding in findings:
        print(finding.replace(os.getcwd() + "/", ""))
    for title, group in (("Not compiled here, seen by cppcheck only", [n for n in names if n not in sources.commands]),
                         ("Not checked in time, seen by cppcheck only", left)):
        if group:
            print(f"{title} ({len(group)}): {', '.join(group)}")
    print(f"{len(findings)} findings in {len(names)} sources")
    return 1 if findings or is_idle or (left and end == math.inf) else 0


if __name__ == "__main__":
    sys.exit(main())
