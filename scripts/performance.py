"""performance.py TIMES.json MEMORY.json GOALS.csv [PAGE.md]: what operations take beside their peers and limits.

A benchmark's name is OPERATION/SIZE/WHO, WHO being kx (the library), peer_NAME, like_NAME or limit_NAME. A time is the
least of all repetitions, and a ratio that of two such times: below 1 the library is ahead. With PAGE.md the tables
replace what stands there after the line "<!-- tables -->".

A goal is the ratio to a competitor, or bytes per element beside "memory_most" and "memory_after".
"""
import collections
import csv
import json
import math
import sys

MARK = "<!-- tables -->\n"
MOST_COPIES = 2.0  # that an operation on many points may hold besides its input and result


def read_results(name):
    """The shortest time in ns and the digest by operation, size and competitor; the context of the run."""
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


def read_memory(name):
    """Bytes on the heap by operation, size and competitor."""
    with open(name, encoding="utf-8") as file:
        results = json.load(file)
    memory = collections.defaultdict(lambda: collections.defaultdict(dict))
    for run in results["benchmarks"]:
        operation, size, who = run["run_name"].split("/")[:3]
        memory[operation][int(size)][who] = {moment: run[moment] for moment in ("before", "most", "after")}
    return memory


def read_goals(name):
    with open(name, encoding="utf-8", newline="") as file:
        return {
            (goal["operation"], int(goal["size"]), goal["beside"]): goal["goal"]
            for goal in csv.DictReader(file, delimiter=";")
        }


def differing(digests):
    """The competitors whose result differs from the library's."""
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
    kind, name = who.split("_", 1)
    return name.replace("_", " ") + (" (a like job)" if kind == "like" else "")


def best(competitors, kind):
    """The fastest competitor of a kind, as name and time."""
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


def goal_ratios(times, goals):
    """The measured ratios that have a goal."""
    ratios = {}
    for operation, size, who in goals:
        competitors = times.get(operation, {}).get(size, {})
        if "kx" in competitors and who in competitors:
            ratios[operation, size, who] = competitors["kx"] / competitors[who]
    return ratios


def goals_table(times, goals):
    yield "| operation | size | beside | its time | ratio | goal | |"
    yield "| --- | ---: | --- | ---: | ---: | ---: | --- |"
    ratios = goal_ratios(times, goals)
    reached = {key for key, ratio in ratios.items() if ratio <= float(goals[key])}
    at_limit = {key[:2] for key in reached if key[2].startswith("limit_")}
    for key, ratio in ratios.items():
        operation, size, who = key
        is_bound = who.startswith("peer_") and key[:2] in at_limit
        verdict = "" if key in reached else "bound" if is_bound else "missed"
        other = times[operation][size][who]
        yield f"| {operation} | {size} | {display(who)} | {time_text(other)} | {ratio:.2f} | {goals[key]} | {verdict} |"


def copies_beside(use):
    """Memory besides input and result, in copies of the larger one; None if both are very small."""
    both = max(use["before"], use["after"])
    larger = max(use["before"], use["after"] - use["before"])
    return (use["most"] - both) / larger if larger >= 0.01 * use["most"] else None


def least_peer_text(competitors, size):
    least = best({who: use["most"] for who, use in competitors.items()}, "peer_")
    if not least:
        return "-"
    most, who = least
    return f"{most / size:.2f}, {competitors[who]['after'] / size:.2f} ({display(who)})"


def memory_table(memory, goals):
    yield "| operation | size | before | at most | after | copies beside | least peer, at most and after | |"
    yield "| --- | ---: | ---: | ---: | ---: | ---: | ---: | --- |"
    for operation, sizes in memory.items():
        size = max(sizes)
        competitors = sizes[size]
        if "kx" not in competitors:
            continue
        use = competitors["kx"]
        copies = copies_beside(use)
        is_missed = copies is not None and copies > MOST_COPIES
        for moment in ("most", "after"):
            is_missed |= use[moment] / size > float(goals.get((operation, size, "memory_" + moment), math.inf))
        yield (
            f"| {operation} | {size} | {use['before'] / size:.2f} | {use['most'] / size:.2f} "
            f"| {use['after'] / size:.2f} | {'-' if copies is None else f'{max(copies, 0.0):.2f}'} "
            f"| {least_peer_text(competitors, size)} | {'missed' if is_missed else ''} |"
        )


def main(times_name, memory_name, goals_name, page_name=None):
    times, digests, context = read_results(times_name)
    goals = read_goals(goals_name)
    wrong = differing(digests)
    lines = [
        f"Measured on {context['date'][:10]}, {context['num_cpus']} processors of {context['mhz_per_cpu']} MHz"
        f"{' with ' + context['vectors'] if 'vectors' in context else ''}.",
        "",
        "### Goals",
        "",
        *goals_table(times, goals),
        "",
        "### All operations",
        "",
        *operations_table(times),
        "",
        "### Memory",
        "",
        *memory_table(read_memory(memory_name), goals),
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
