"""What a run with a fault, or a killed one, should have done."""
import json
import signal

from server import final_name, signal_name

RIGHT, REFUSED = "right", "refused"
NOT_REMOVABLE = ("remove", "list")  # calls without which nothing can be cleaned up


class Expected:
    """Of a case: the folder before it, after it, and after running it twice, and what it prints each time."""

    def __init__(self, case, server, source):
        self.source = source
        self.before = server.tree()
        self.first = server.run(case)
        self.after = server.tree()
        self.second = server.run(case)
        self.twice = server.tree()
        if self.first.code != 0:
            raise SystemExit(f"{case.name} fails without a fault: {self.first.err.decode()}")
        server.restore(self.before, source)


def is_temporary(name):
    """Also a lock, which goes with its process, and why something was not measured."""
    return name.startswith("tmp/") or name.endswith((".lock", ".failed.txt")) or \
        any(part.startswith("incomplete-") for part in name.split("/"))


def folder_of(name, expected):
    """The outermost new folder that a file of the result is in and that holds files, not only other folders."""
    parts = name.split("/")
    for prefix in ("/".join(parts[:i]) for i in range(1, len(parts))):
        inside = [n for n in expected.after if n.rpartition("/")[0] == prefix]
        files = [n for n in inside if not is_temporary(n) and not any(m.startswith(n + "/") for m in expected.after)]
        if prefix not in expected.before and prefix in expected.after and files and len(inside) > 1:
            return prefix
    return None


def faults_of_tree(tree, expected):
    """Files that are neither as before nor as after the whole run; folders that are not whole."""
    faults = []
    for name in {*tree, *expected.before, *expected.after} - {n for n in tree if is_temporary(n)}:
        now = tree.get(name, "absent")
        before, after = expected.before.get(name, "absent"), expected.after.get(name, "absent")
        if now not in (before, after):
            faults.append(f"{name} is {'lost' if now == 'absent' else 'neither the old nor the new file'}")
        folder = folder_of(name, expected)
        if folder and (folder in tree) != (name in tree) and any(n.startswith(folder + "/") for n in tree):
            faults.append(f"{folder} is not whole")
    return faults


def unmarked_faults(tree, expected, mark):
    """While a folder lacks its mark it is not taken for complete, and may mix old and new files."""
    if mark is None:
        return faults_of_tree(tree, expected)
    folder = mark.split("/")[0] + "/"
    if mark not in tree:
        tree = {n: v for n, v in tree.items() if not n.startswith(folder)}
        parts = [e for e in (expected.before, expected.after)]
        return [f for f in faults_of_tree(tree, expected)
                if not f.startswith(folder) or not any(f.startswith(n) for p in parts for n in p)]
    inside = lambda entries: {n: v for n, v in entries.items() if n.startswith(folder) and not is_temporary(n)}
    if inside(tree) not in (inside(expected.before), inside(expected.after)):
        return [f"{folder} has its {mark} and is neither the old nor the new one"]
    return faults_of_tree(tree, expected)


def names_the_file(run, call, expected, is_lasting):
    if call == "allocate":
        return b"memory" in run.err
    paths = [run.path] + ([*expected.before, *expected.after, "standard output"] if is_lasting else [])
    wanted = {final_name(part) for path in paths for part in path.split("/")[-4:]} - {"", "run", "tmp"}
    if run.path.endswith("/run") or is_lasting:
        wanted |= {"'RUN'", "'.'"}
    if run.path.startswith("standard") or "/tmp" in run.path or is_lasting:
        wanted.add("the standard ")  # input or output
    if "/tmp" in run.path or is_lasting:
        wanted |= {"temporary", *(final_name(n) for n in expected.before)}
    return any(name.encode() in run.err for name in wanted)


def tells_failure(name, tree, run):
    """A whole output, and its input's message in it."""
    content = tree[name][1] if isinstance(tree[name], tuple) else b""
    reason = run.err.split(b"'")[-1].strip(b": \n")
    if name.endswith(".json"):
        try:
            return reason.decode() in str(json.loads(content))
        except ValueError:
            return False
    return name.endswith(".csv") and content.endswith(b"\n") or content.endswith(b"</html>\n") and reason in content


def judge(run, tree, expected, case, fault):
    """@return the class of the run, and what is wrong with it"""
    call, _, how = fault.split(":")
    if run.signal:
        is_hang = run.signal in (signal.SIGALRM, signal.SIGXCPU)
        return ("hang", "") if is_hang else ("crash", signal_name(run.signal))
    is_excused = call in NOT_REMOVABLE or "+" in fault or ">" in fault
    # Without memory QTemporaryFile and QLockFile leave their files; a lock without its process holds nobody up.
    is_qt = lambda name: call == "allocate" and (name.startswith("tmp/qt_temp") or name.endswith(".lock"))
    left = sorted(n for n in tree if n not in expected.after and is_temporary(n) and not is_qt(n))
    if run.code == 0:
        same = {n: v for n, v in tree.items() if n in expected.after or not is_temporary(n)} == expected.after
        if not same or run.out != expected.first.out:
            names = [n for n in {*tree, *expected.after} if tree.get(n) != expected.after.get(n)]
            return "silent change", ", ".join(sorted(names)[:3]) or "stdout"
        if run.err != expected.first.err:
            return "silent change", f"stderr: {run.err.decode()}"
        return (RIGHT, "") if not left or is_excused else ("files left", left[0])
    told = [n for n in tree if tells_failure(n, tree, run)] if case.tells_failures else []
    faults = unmarked_faults({n: expected.after[n] if n in told else v for n, v in tree.items()}, expected, case.mark)
    if faults:
        return "half files", faults[0]
    if left and not is_excused and not case.resumes:
        return "files left", left[0]
    if run.code not in ((6, 3, 4) if call == "allocate" else (3, 4)):
        return "wrong code", f"{run.code}: {run.err.decode().strip()}"
    if not names_the_file(run, call, expected, "+" in fault):
        return "no name", f"{run.path}: {run.err.decode().strip()}"
    return REFUSED, ""


def judge_killed(tree, expected, case, server):
    """Of a run that was killed: nothing looks complete that is not, and a second run succeeds."""
    faults = unmarked_faults(tree, expected, case.mark)
    if faults:
        return "half files", faults[0]
    again = server.run(case)
    whole = {n: v for n, v in server.tree().items() if not is_temporary(n)}
    wanted = ((expected.after, expected.first), (expected.twice, expected.second))
    if not any(again.code == run.code for _, run in wanted):
        return "no second run", f"{again.code}: {again.err.decode().strip()}"
    without = lambda entries: {n: v for n, v in entries.items() if not is_temporary(n)}
    if not any(whole == without(tree_then) and again.code == run.code and (case.resumes or again.out == run.out)
               for tree_then, run in wanted):
        names = [n for n in {*whole, *expected.after} if whole.get(n) != expected.after.get(n)]
        return "silent change", ", ".join(sorted(names)[:3]) or "stdout"
    return RIGHT, ""
