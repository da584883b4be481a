"""benchmarkTable.py RESULTS.json: the time of the library next to that of each peer, minimum and median of all runs.

The name of a benchmark is JOB/WHO; the library's own is JOB/KxMath.
"""
import collections
import json
import statistics
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    results = json.load(file)["benchmarks"]

to_ms = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
jobs = collections.defaultdict(lambda: collections.defaultdict(list))
for run in results:
    if run["run_type"] == "iteration" and not run.get("error_occurred"):
        job, who = run["run_name"].split("/")[:2]
        jobs[job][who].append(run["real_time"] * to_ms[run["time_unit"]])

print("| job | KxMath ms, min (median) | next to | ms, min (median) | ratio, min (median) |")
print("| --- | ---: | --- | ---: | ---: |")
for job, times in jobs.items():
    own = times.pop("KxMath")
    for peer, theirs in times.items():
        print(
            f"| {job} | {min(own):.2f} ({statistics.median(own):.2f}) | {peer}"
            f" | {min(theirs):.2f} ({statistics.median(theirs):.2f})"
            f" | {min(own) / min(theirs):.2f} ({statistics.median(own) / statistics.median(theirs):.2f}) |"
        )
