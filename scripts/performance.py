"""performance.py RESULTS.json GOALS.csv [PAGE.md]: how long operations take beside their peers and limits.

A benchmark's name is OPERATION/SIZE/WHO, WHO being kx (the library), peer_NAME or limit_NAME. A time is the least of
all repetitions, and a ratio that of two such times: below 1 the library is ahead. With PAGE.md the tables replace what
stands there after the line "<!-- tables -->".
"""
import collections
import csv
import json
import math
import sys

MARK = "<!-- tables -->\n"


def read_results(name):
    """The least time in ns and the digest by operation, size and competitor; the context of the run."""
    with open(name, encoding="utf-8") as file:
        results = json.load(file)
    times = collections.defaultdict(lambda: collections.defaultdict(dict))
    digests = {}
    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    for run in results["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        operation, size, who = run["run_name"].split("/")[:3]
        time = run["real_time"] * scale[run["time_unit"]] / run["batch"]
        known = times[operation][int(size)].get(who, math.inf)
        times[operation][int(size)][who] = min(known, time)
        if "digest" in run:
            digests[operation, int(size), who] = run["digest"], run["tolerance"]
    return times, digests, results["context"]


def differing(digests):
    """The competitors whose result is not the library's."""
    wrong = []
    for (operation, size, who), (value, tolerance) in sorted(digests.items()):
        own = digests.get((operation, size, "kx"))
        if own and abs(value - own[0]) > tolerance * abs(own[0]):
            wrong.append(f"{operation}/{size}/{who}: {value} and not {own[0]}")
    return wrong


def time_text(ns):
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= factor:
            return f"{ns / factor:.3g} {unit}"
    return f"{ns:.3g} ns"


def display(who):
    return who.split("_", 1)[1].replace("_", " ")


def best(competitors, kind):
    """The quickest competitor of a kind, as name and time."""
    found = [(time, who) for who, time in competitors.items() if who.startswith(kind)]
    return min(found) if found else None


def ratio_text(own, other):
    return f"{own / other[0]:.2f} ({display(other[1])})" if other else "-"


def growth_text(sizes, size):
    """The exponent of the growth from the next smaller size to this one."""
    smaller = [other for other in sizes if other < size and "kx" in sizes[other]]
    if not smaller:
        return "-"
    other = max(smaller)
    return f"{math.log(sizes[size]['kx'] / sizes[other]['kx']) / math.log(size / other):.2f}"


def operations_table(times):
    yield "| operation | size | time | ns per element | of the best peer | of the limit | growth |"
    yield "| --- | ---: | ---: | ---: | ---: | ---: | ---: |"
    for operation, sizes in times.items():
        for size in sorted(sizes):
            competitors = sizes[size]
            if "kx" not in competitors:
                continue
            own = competitors["kx"]
            peer, limit = (ratio_text(own, best(competitors, kind)) for kind in ("peer_", "limit_"))
            yield (
                f"| {operation} | {size} | {time_text(own)} | {own / size:.3g} | {peer} | {limit} "
                f"| {growth_text(sizes, size)} |"
            )


def goals_table(times, goals_name):
    yield "| operation | size | beside | its time | ratio | goal | |"
    yield "| --- | ---: | --- | ---: | ---: | ---: | --- |"
    with open(goals_name, encoding="utf-8", newline="") as file:
        for goal in csv.DictReader(file, delimiter=";"):
            competitors = times.get(goal["operation"], {}).get(int(goal["size"]), {})
            if "kx" not in competitors or goal["beside"] not in competitors:
                continue
            other = competitors[goal["beside"]]
            ratio = competitors["kx"] / other
            verdict = "" if ratio <= float(goal["goal"]) else "missed"
            yield (
                f"| {goal['operation']} | {goal['size']} | {display(goal['beside'])} | {time_text(other)} "
                f"| {ratio:.2f} | {goal['goal']} | {verdict} |"
            )


def main(results_name, goals_name, page_name=None):
    times, digests, context = read_results(results_name)
    wrong = differing(digests)
    lines = [
        f"Measured on {context['date'][:10]}, {context['num_cpus']} processors of {context['mhz_per_cpu']} MHz.",
        "",
        "### Goals",
        "",
        *goals_table(times, goals_name),
        "",
        "### All operations",
        "",
        *operations_table(times),
    ]
    text = "\n".join(lines) + "\n"
    if page_name:
        with open(page_name, encoding="utf-8") as page:
            head = page.read().split(MARK)[0]
        with open(page_name, "w", encoding="utf-8") as page:
            page.write(head + MARK + "\n" + text)
    print(text)
    for line in wrong:
        print("Results differ: " + line, file=sys.stderr)
    return 1 if wrong else 0


sys.exit(main(*sys.argv[1:]))
