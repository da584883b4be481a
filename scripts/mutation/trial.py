"""A copy of the tree that is built with one fault after the other, and the test programs that reach it."""
import collections
import json
import os
import pathlib
import resource
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FOLDER = ROOT / "build-mutate"
COPY = FOLDER / "tree"
BUILD = COPY / "build"
SANITIZED = COPY / "build-asan"
GOLDEN = BUILD / "tests" / "golden" / "kxmath_golden"
# They repeat whole commands while memory, disk or time run out, which takes long: they are asked last.
LAST = {"kxmath_test_interruption", "kxmath_test_outputs", "kxmath_test_faults",
             "kxmath_test_io"}
# Tests that run the commands from outside, the quickest first.
COMMANDS = ["kxmath.wrongUses", "kxmath.otherPrograms", "docs.passSchema", "docs.(station|inspection).runs", "kxmath.watch", "pages.view"]
CORE = "src"


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))


def run(command, timeout=None, is_limited=True, **environment):
    """The exit code, or None of a program that does not end."""
    process = subprocess.Popen(command, cwd=COPY, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               env={**os.environ, "CCACHE_DISABLE": "1", **environment},
                               preexec_fn=limit_memory if is_limited else None, start_new_session=True)
    try:
        return process.wait(timeout)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9) # with the commands that it runs
        process.wait()
        return None


def ninja(*arguments):
    return subprocess.run(["ninja", "-C", str(BUILD), *arguments], capture_output=True, text=True, check=True).stdout


def copy_tree():
    """Copies what changed, so that only that is built again."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True, text=True).stdout
    names = {name for name in names.split("\0") if name and (ROOT / name).exists()}
    for name in names:
        source, target = ROOT / name, COPY / name
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(source.read_bytes())
            target.chmod(source.stat().st_mode)
    for folder in ("src", "inspect", "report", "simulator", "tools", "tests", "include"):
        for file in (COPY / folder).rglob("*"):
            if file.is_file() and str(file.relative_to(COPY)) not in names:
                file.unlink()


class TestProgram:
    def __init__(self, path, sources):
        self.path = path
        self.name = path.name
        self.sources = sources # all files, headers too, that it is made of
        self.seconds = None # not measured yet: as long as it takes

    def fails(self):
        """"", or why the fault is found."""
        result = run([str(self.path), "--gtest_fail_fast", "--gtest_brief=1"], timeout=self.seconds and 20 + 10 * self.seconds)
        return "" if result == 0 else "endless" if result is None else "fails"


def sources_of_objects():
    """The files that each object was made of, as the compiler told."""
    sources = collections.defaultdict(set)
    current = None
    for line in ninja("-t", "deps").splitlines():
        if line and not line.startswith(" "):
            current = line.split(": #")[0]
        elif line:
            path = os.path.normpath(BUILD / line.strip())
            if path.startswith(str(COPY)):
                sources[current].add(os.path.relpath(path, COPY))
    return sources


def test_programs():
    """The programs of GoogleTest that ctest runs."""
    tests = json.loads(subprocess.run(["ctest", "--test-dir", str(BUILD), "--show-only=json-v1"], capture_output=True,
                                      check=True, text=True).stdout)["tests"]
    paths = {pathlib.Path(test["command"][0]) for test in tests if "command" in test}
    return sorted(p for p in paths if p.name.startswith("kxmath_test_"))


def configure(build, *options):
    """As the presets, whose objects ccache may still have; a fault that gives a warning does not compile."""
    subprocess.run(["cmake", "-S", str(COPY), "-B", str(build), "-G", "Ninja", "-DKXMATH_DEVELOPER=ON",
                    "-DKXMATH_BUILD_TESTS=ON", "-DKXMATH_BUILD_TOOLS=ON", "-DKXMATH_BUILD_PYTHON=ON", *options],
                   check=True, stdout=subprocess.DEVNULL)


def build_programs(layers):
    """Builds what is made of these folders. @return the test programs among it, the quickest first"""
    configure(BUILD, "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O3 -DNDEBUG",
              "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON")
    folders = tuple(f"{COPY / layer}/" for layer in layers)
    declared = {line.split(":")[0] for line in ninja("-t", "targets", "all").splitlines()}
    wanted = {name for name in declared
              if pathlib.Path(name).name.startswith("kxmath_test_") and "tests/" in name
              and pathlib.Path(name).suffix == ""}
    names = [name for name in sorted(wanted)
             if any(path.startswith(folders) for path in ninja("-t", "inputs", name).splitlines())]
    golden = ["kxmath_golden"] if CORE in layers else []
    subprocess.run(["ninja", "-C", str(BUILD), *names, *golden, "kxmath"], check=True)
    objects = sources_of_objects()
    programs = []
    for path in test_programs():
        if os.path.relpath(path, BUILD) in names:
            inputs = ninja("-t", "inputs", os.path.relpath(path, BUILD)).splitlines()
            programs.append(TestProgram(path, set().union(*(objects.get(os.path.relpath(BUILD / i, BUILD), set())
                                                            for i in inputs))))
    if name := failing_command():
        sys.exit(f"{name} fails before any fault is planted.")
    for program in programs:
        start = time.monotonic()
        if program.fails():
            sys.exit(f"{program.name} fails before any fault is planted.")
        program.seconds = time.monotonic() - start
    return sorted(programs, key=lambda p: p.seconds)


def failing_command():
    """The first of the tests that run the commands that fails, or None."""
    for name in COMMANDS:
        if run(["ctest", "--test-dir", str(BUILD), "-R", f"^{name}$", "--no-tests=error", "--stop-on-failure"],
               timeout=900) != 0:
            return name
    return None


def order_for(file, programs):
    """The programs that are made of the file, those of its own subject first."""
    words = set(pathlib.Path(file).parent.parts) - {"tools", "kxmath", "src"} | {pathlib.Path(file).stem}

    def place(program):
        name = program.name.removeprefix("kxmath_test_").lower()
        return program.name in LAST, -sum(word.lower() in name for word in words)

    return sorted((p for p in programs if file in p.sources), key=place)


class Planted:
    """While it lasts, the fault is in the copy."""

    def __init__(self, fault):
        self.fault = fault
        self.file = COPY / fault["file"]

    def __enter__(self):
        self.original = self.file.read_text()
        lines = self.original.splitlines()
        lines[self.fault["line"] - 1] = self.fault["text"]
        self.file.write_text("\n".join(lines) + "\n")

    def __exit__(self, *exception):
        self.file.write_text(self.original)


class Sanitizers:
    """The test programs with AddressSanitizer and UndefinedBehaviorSanitizer, for what survives: a read beyond a list may
    change no result."""

    LONGEST = 20  # seconds that a program takes without them

    def __init__(self):
        self.passing = {}  # by name: whether the program passes without a fault

    def fails(self, program):
        name = os.path.relpath(program.path, BUILD)
        if run(["ninja", "-C", str(SANITIZED), name]) != 0:
            return False
        return run([str(SANITIZED / name), "--gtest_fail_fast", "--gtest_brief=1"], 60 + 40 * program.seconds,
                   is_limited=False, ASAN_OPTIONS="detect_stack_use_after_return=1:strict_init_order=1") != 0

    def passes(self, program):
        if program.name not in self.passing:
            self.passing[program.name] = not self.fails(program)
        return self.passing[program.name]

    def find(self, fault, programs):
        """The program that finds a fault that survived, or None."""
        configure(SANITIZED, "-DCMAKE_BUILD_TYPE=ASAN")
        usable = [p for p in order_for(fault["file"], programs)
                  if p.name not in LAST and p.seconds < self.LONGEST and self.passes(p)]
        with Planted(fault):
            return next((p.name for p in usable if self.fails(p)), None)


def find(fault, programs):
    """The program that finds the fault, None when it survives, "" when it does not compile."""
    with Planted(fault):
        return find_planted(fault, programs)


def find_planted(fault, programs):
    is_core = fault["file"].startswith(CORE)
    # The libraries first: what does not compile is no fault.
    target = "KxMath" if is_core else "kxmath"
    if run(["ninja", "-C", str(BUILD), target]) != 0:
        return ""
    was_compared = not is_core
    for program in order_for(fault["file"], programs):
        if program.name in LAST and not was_compared:
            was_compared = True
            if run(["scripts/golden", "--compare", str(GOLDEN)], timeout=60) != 0:
                return "golden"
        if run(["ninja", "-C", str(BUILD), os.path.relpath(program.path, BUILD)]) != 0:
            return ""
        if result := program.fails():
            return program.name.removeprefix("kxmath_test_") + (" (endless)" if result == "endless" else "")
    if not is_core and (name := failing_command()):
        return name
    if not was_compared and run(["scripts/golden", "--compare", str(GOLDEN)], timeout=60) != 0:
        return "golden"
    return None
