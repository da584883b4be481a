"""Runs every command with each of its calls failing, and kills it after each; finds wrong results, crashes, and what it
leaves behind.

For each case of commands.py a first run counts the calls of each kind. Then the first, the second, ... call of each kind
fails, once alone and once with all that follow; calls are only counted on files of the case. Expected each time: the
right result, byte for byte, or a non-zero exit with a message that names the file, older outputs as they were, nothing
half under a final name, no temporary file left. A killed command leaves nothing that looks complete, and runs again with
the right result.
"""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import sys
import tempfile
import threading
import time

import commands
import verdict
from server import CALLS, Server

HOWS = {"allocate": ["ENOMEM"], "open": ["EMFILE", "EIO", "EINTR"], "read": ["EIO", "EINTR", "short", "zero"],
        "write": ["EIO", "ENOSPC", "EINTR", "short", "zero"], "sync": ["EIO", "ENOSPC", "EINTR"],
        "close": ["EIO", "EINTR"], "rename": ["EIO", "ENOSPC"], "mkdir": ["EIO", "ENOSPC"], "link": ["EIO", "EMFILE"],
        "truncate": ["EIO", "EINTR"]}
CHANGING = ["open", "write", "sync", "close", "rename", "truncate", "mkdir", "link", "remove", "change"]
LARGEST = [20000, 40000, 80000, 160000, 320000]  # bytes of an allocation that still succeeds
CHUNK = 400  # runs of one case that one server does in a row
SAMPLED_RUNS = 40  # of each kind of fault of a sampled case
KILLS = 60  # of each case, at random moments


def numbers(count, most, rng):
    """Which of `count` calls fail: all, or `most` of them at random."""
    return range(1, count + 1) if count <= most else sorted(rng.sample(range(1, count + 1), most))


def faults_of(case, counts, most, rng):
    """The faults of one case: texts for the preloaded library."""
    if case.sampled:
        most = min(most, SAMPLED_RUNS)
    for call in CALLS:
        for how in HOWS.get(call, ["EIO"]):
            for lasting in [""] + (["+"] if how != "EINTR" else []):  # a call is not interrupted for ever
                for k in numbers(counts[call], most, rng):
                    yield f"{call}:{k}{lasting}:{how}"
    for bytes_ in LARGEST[:max(1, most)]:
        yield f"allocate:>{bytes_}:ENOMEM"


def kills_of(case, counts, seconds, most, rng):
    """Exact moments, after a call that changes something and between allocations, and random ones as '@SECONDS'."""
    for call in CHANGING:
        for k in numbers(counts[call], min(most, SAMPLED_RUNS) if case.sampled else most, rng):
            yield f"{call}:{k}:kill"
    for k in numbers(counts["allocate"], min(most, KILLS), rng):
        yield f"allocate:{k}:kill"
    for _ in range(min(most, KILLS)):
        yield f"@{rng.uniform(0.0, 1.2) * seconds:.6f}"


class Sweep:
    def __init__(self, options):
        self.options = options
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="kxmath-faults-", dir=options.folder))
        self.inputs = self.root / "inputs"
        self.inputs.mkdir()
        commands.make_inputs(options.kxmath, self.inputs)
        self.own = threading.local()
        self.servers = []
        self.lock = threading.Lock()
        self.table = collections.defaultdict(collections.Counter)
        self.findings = []
        self.cases = [c for c in commands.all_cases() if re.fullmatch(options.only, c.name)]
        for case in self.cases:
            case.make(self.inputs, self.root / "cases" / case.name)

    def server(self):
        if not hasattr(self.own, "server"):
            with self.lock:
                folder = self.root / str(len(self.servers))
                self.own.server = Server(self.options.kxmath, self.options.preload, folder)
                self.servers.append(self.own.server)
        return self.own.server

    def prepare(self, case):
        """Sets up the folder of this thread's server. @return the server, and what is expected"""
        server = self.server()
        source = self.root / "cases" / case.name
        wanted = {str(p.relative_to(source)): None if p.is_dir() else (p.stat().st_mode, p.read_bytes())
                  for p in source.rglob("*")}
        server.restore(wanted, source)
        return server, verdict.Expected(case, server, source)

    def tasks(self, case):
        """All runs of a case."""
        if self.options.fault:
            return [self.options.fault]
        server, expected = self.prepare(case)
        rng = random.Random(f"{self.options.seed} {case.name}")
        counts, most = expected.first.counts, self.options.sample or self.options.most
        faults = list(faults_of(case, counts, most, rng)) if "faults" in self.options.kinds else []
        if "kills" in self.options.kinds:
            faults += kills_of(case, counts, expected.first.seconds, most, rng)
        return faults

    def work(self, case, faults):
        server, expected = self.prepare(case)
        for fault in faults:
            is_timed = fault.startswith("@")
            run = server.run(case, "none" if is_timed else fault, float(fault[1:]) if is_timed else 0)
            tree = server.tree()
            is_kill = is_timed or fault.endswith("kill")
            if is_kill and run.signal == 9:
                kind, detail = verdict.judge_killed(tree, expected, case, server)
            else:  # a run may end before it is killed
                kind, detail = verdict.judge(run, tree, expected, case, "none::" if is_kill else fault)
            server.restore(expected.before, expected.source)
            with self.lock:
                row = "kill" if is_kill else fault.split(":")[0]
                self.table[row]["runs"] += 1
                self.table[row][kind] += 1
                if kind not in (verdict.RIGHT, verdict.REFUSED):
                    self.findings.append((case.name, fault, kind, detail))
                    if len(self.findings) <= self.options.show:
                        print(f"{kind}: {case.name} {fault}: {detail}\n    {self.replay(case.name, fault)}", flush=True)

    def replay(self, case, fault):
        return f"scripts/faults --only '{case}' --fault '{fault}'"

    def run(self):
        start = time.monotonic()
        with concurrent.futures.ThreadPoolExecutor(self.options.jobs) as pool:
            jobs = []
            for case, faults in zip(self.cases, pool.map(self.tasks, self.cases)):
                jobs += [(case, faults[i:i + CHUNK]) for i in range(0, len(faults), CHUNK)]
            total, done = sum(len(faults) for _, faults in jobs), 0
            futures = {pool.submit(self.work, *job): job for job in jobs}
            for future in concurrent.futures.as_completed(futures):
                future.result()
                case, faults = futures[future]
                done += len(faults)
                if self.options.progress:
                    print(f"[{time.monotonic() - start:5.0f} s] {done} of {total} runs, {len(self.findings)} findings: "
                          f"{case.name}", flush=True)
        for server in self.servers:
            server.close()
        return time.monotonic() - start

    def print_table(self, seconds):
        columns = ["runs", "right", "refused", "crash", "hang", "silent change"]
        others = sorted({kind for row in self.table.values() for kind in row} - set(columns))
        rows = {row: self.table[row] for row in CALLS + ["kill"] if row in self.table}
        faults = [counts for row, counts in rows.items() if row != "kill"]
        rows["all faults"] = sum(faults, collections.Counter())
        print("\n| call | " + " | ".join(columns + others) + " |\n| --- |" + " ---: |" * len(columns + others))
        for row, counts in rows.items():
            print(f"| {row} | " + " | ".join(str(counts[column]) for column in columns + others) + " |")
        print(f"\n{seconds:.0f} s, seed {self.options.seed}, {len(self.findings)} findings")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kxmath", required=True, type=pathlib.Path)
    parser.add_argument("--preload", required=True, type=pathlib.Path)
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="runs at once")
    parser.add_argument("--only", default=".*", help="the cases whose whole name matches")
    parser.add_argument("--kinds", default="faults,kills", help="faults, kills or both")
    parser.add_argument("--fault", help="only this one: write:3+:ENOSPC, read:2:short, rename:1:kill, @0.012")
    parser.add_argument("--sample", type=int, help="so many runs at random of each case and kind of fault")
    parser.add_argument("--most", type=int, default=10000, help="the same where a run has more calls of a kind")
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    parser.add_argument("--show", type=int, default=40, help="how many findings are printed")
    parser.add_argument("--progress", action="store_true")
    parser.add_argument("--folder", default="/dev/shm" if os.path.isdir("/dev/shm") else None)
    parser.add_argument("--keep", action="store_true", help="the folder of the runs stays")
    options = parser.parse_args()
    options.kxmath, options.preload = options.kxmath.resolve(), options.preload.resolve()
    print(f"seed {options.seed}")
    sweep = Sweep(options)
    try:
        sweep.print_table(sweep.run())
    finally:
        if not options.keep:
            shutil.rmtree(sweep.root, ignore_errors=True)
    sys.exit(1 if sweep.findings else 0)


if __name__ == "__main__":
    main()
