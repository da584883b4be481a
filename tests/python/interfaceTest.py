"""What the package offers: all that the headers do, with their words, and nothing of Qt in a user's way."""
import fnmatch
import os
import pathlib
import re
import subprocess
import sys

import pytest

import kxmath as kx
from kxmath import _kxmath

SOURCE = pathlib.Path(os.environ["KXMATH_SOURCE"])
sys.path.insert(0, str(SOURCE / "python/generate"))
import interface


def documented():
    """The docstrings of everything in the module."""
    for name, item in vars(_kxmath).items():
        if isinstance(item, type):
            yield from ((f"{name}.{member}", getattr(vars(item)[member] if isinstance(vars(item)[member], property)
                                                     else getattr(item, member), "__doc__", None) or "")
                        for member in vars(item))
        yield name, getattr(item, "__doc__", None) or ""


def called():
    return set(re.findall(r"^Calls ([\w:]+)\(\)", "\n".join(text for _, text in documented()), re.M))


def not_bound():
    lines = (SOURCE / "tests/python/notBound.txt").read_text(encoding="utf-8").splitlines()
    return [tuple(part.strip() for part in line.split("|")) for line in lines if not line.startswith("#")]


def test_each_function_of_the_headers_is_called_or_listed_with_a_reason():
    functions = [name for name in interface.functions(SOURCE / "include") if not interface.is_value_machinery(name)]
    assert len(functions) > 300 and {"KxProfile::removeNoise", "measurePass"} <= set(functions)
    rules, calls = not_bound(), called()
    assert calls <= set(functions) and all(len(rule) == 2 and rule[1] for rule in rules)
    open_ones = [f for f in functions if f not in calls and not any(fnmatch.fnmatchcase(f, r[0]) for r in rules)]
    assert open_ones == []
    stale = [r[0] for r in rules if not any(fnmatch.fnmatchcase(f, r[0]) for f in functions if f not in calls)]
    assert stale == []


def test_everything_public_has_a_docstring():
    ignored = re.compile(r"__\w+__|_\w+")
    silent = [name for name, text in documented()
              if not text.strip() and not name.startswith("_") and not ignored.fullmatch(name.rpartition(".")[2]) and "." in name]
    assert silent == []
    calling = [name for name, text in documented() if not re.search(r"(^|\.)_", name)
               and re.match(r"(\w+\(.*\n+)?(\d\. .*\n+)?Calls ", text)]
    assert calling == [] # without a word of what that is in Python
    assert not [name for name, text in documented() if not name.startswith("_") and re.search(r"\b[Tt]hrows?\b", text)]
    assert "at most `maxJumps` neighbours differ in y" in kx.Profile.remove_noise.__doc__
    assert all(getattr(kx, name).__doc__ for name in kx.__all__ if name != "__version__")


def test_nothing_of_qt_shows():
    assert not [name for name, text in documented() if re.search(r"\bQ[A-Z]\w+", text.splitlines()[0] if text else "")]
    exported = subprocess.run(["nm", "-D", "--defined-only", _kxmath.__file__], check=True, capture_output=True,
                              text=True).stdout.split()[2::3]
    assert [name for name in exported if not name.startswith(("__asan", "__ubsan", "__odr_asan"))] == ["PyInit__kxmath"]
    assert kx.__version__ == _kxmath.version and re.fullmatch(r"\d+\.\d+\.\d+", kx.__version__)


def test_a_wheel_has_the_version_of_the_library():
    tomllib = pytest.importorskip("tomllib")
    settings = tomllib.loads((SOURCE / "pyproject.toml").read_text())["tool"]["scikit-build"]
    version = settings["metadata"]["version"]
    found = re.search(version["regex"], (SOURCE / version["input"]).read_text(), re.MULTILINE)
    assert found["value"] == kx.__version__
    variables = set(re.findall(r"KXMATH_\w+", (SOURCE / "python/CMakeLists.txt").read_text())) | {"KXMATH_BUILD_PYTHON"}
    assert {name for name in settings["cmake"]["define"] if name.startswith("KXMATH")} <= variables


@pytest.mark.parametrize("first", ["", "import kxmath; "])
def test_subinterpreters_are_refused_in_words(first):
    code = ("import sys, _xxsubinterpreters as s; " + first + "i = s.create()\n"
            "s.run_string(i, 'import sys; sys.path[:] = ' + repr(sys.path) + '''\n"
            "try:\n    import kxmath\nexcept ImportError as e:\n    print(e)\n''')")
    output = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True, text=True,
                            timeout=30).stdout
    assert "works in the main interpreter only" in output


def test_importing_needs_numpy_only():
    code = ("import sys, kxmath; loaded = {m.partition('.')[0] for m in sys.modules};"
            "print(sorted(loaded & {'pandas', 'xarray', 'matplotlib', 'scipy', 'mypy'}))")
    assert subprocess.run([sys.executable, "-c", code], check=True, capture_output=True, text=True).stdout == "[]\n"


@pytest.mark.skipif("asan" in os.environ.get("LD_PRELOAD", ""), reason="mypy is not ours to sanitize")
def test_stubs_are_those_of_the_module(tmp_path):
    settings = tmp_path / "mypy.ini" # pandas and matplotlib have no types
    settings.write_text("[mypy]\nignore_missing_imports = True\n", encoding="utf-8")
    command = [sys.executable, "-m", "mypy.stubtest", "kxmath._kxmath", "--mypy-config-file", settings]
    output = subprocess.run(command, cwd=tmp_path, env={**os.environ, "MYPYPATH": os.environ["PYTHONPATH"]},
                            capture_output=True, text=True)
    assert output.returncode == 0 and "Success" in output.stdout, output.stdout + output.stderr
    checked = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--config-file", settings,
                              pathlib.Path(_kxmath.__file__).with_name("_kxmath.pyi")],
                             cwd=tmp_path, env={**os.environ, "MYPYPATH": os.environ["PYTHONPATH"]}, capture_output=True,
                             text=True)
    assert [line for line in checked.stdout.splitlines() if "_kxmath.pyi" in line] == []
