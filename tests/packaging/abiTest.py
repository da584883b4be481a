"""scripts/abi on a small library of its own, with changes that are and are not compatible: abiTest.py SOURCE_FOLDER"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(sys.argv[1])

CMAKE = """cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES CXX)
include_directories(include)
add_subdirectory(src)
add_subdirectory(inspect)
"""
HEADER = """#pragma once
struct Point { float x; };
float first(const Point& point);
float second(const Point& point);
"""
SOURCE = """#include "KxMath/Point.h"
float first(const Point& point) { return point.x; }
float second(const Point& point) { return 2.0f * point.x; }
"""
INSPECT = "int inspected() { return 1; }\n"


class Tree:
    """A repository with one commit."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.write("CMakeLists.txt", CMAKE)
        self.write("src/CMakeLists.txt", "add_library(KxMath SHARED point.cpp)\n")
        self.write("inspect/CMakeLists.txt", "add_library(KxInspect SHARED inspected.cpp)\n")
        self.write("include/KxMath/Point.h", HEADER)
        self.write("include/KxInspect/Inspected.h", "int inspected();\n")
        self.write("src/point.cpp", SOURCE)
        self.write("inspect/inspected.cpp", INSPECT)
        self.write(".gitignore", "/build*/\n")
        self.write("scripts/packages.sh", "build_packages=()\nneed() { :; }\n")
        shutil.copy(SOURCES / "scripts/abi", self.folder / "scripts/abi")
        self.git("init", "-q")
        self.git("add", ".")
        self.git("-c", "user.name=a", "-c", "user.email=a", "commit", "-qm", "one")

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def git(self, *arguments):
        subprocess.run(["git", *arguments], cwd=self.folder, check=True, timeout=60)

    def compare(self, *arguments):
        run = subprocess.run(["bash", "scripts/abi", *arguments], cwd=self.folder, capture_output=True, text=True,
                             timeout=200)
        return run.returncode, run.stdout + run.stderr


class Abi(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.tree = Tree(self.folder.name)

    def test_changes(self):
        more = "\nfloat third() { return 3.0f; }\n"
        for name, changes, code, said in (
            ("none", {}, 0, ["libKxMath.so: HEAD and now\nno difference", "libKxInspect.so: HEAD and now\nno difference"]),
            ("body", {"src/point.cpp": SOURCE.replace("2.0f", "3.0f")}, 0, ["libKxMath.so: HEAD and now\nno difference"]),
            ("more", {"include/KxMath/Point.h": HEADER + "float third();\n", "src/point.cpp": SOURCE + more}, 0,
             ["third", "only new symbols"]),
            ("less", {"src/point.cpp": SOURCE.replace("second", "other")}, 1, ["second", "INCOMPATIBLE"]),
            ("other library", {"inspect/inspected.cpp": INSPECT.replace("inspected", "gone")}, 1,
             ["libKxMath.so: HEAD and now\nno difference", "INCOMPATIBLE"]),
            ("field", {"include/KxMath/Point.h": HEADER.replace("float x;", "float y; float x;")}, 1,
             ["struct Point", "size changed from 32 to 64", "INCOMPATIBLE"]),
        ):
            with self.subTest(name=name):
                self.tree.git("checkout", "-q", ".")
                for file, text in changes.items():
                    self.tree.write(file, text)
                got, text = self.tree.compare("HEAD")
                self.assertEqual(got, code, text)
                for part in said:
                    self.assertIn(part, text)

    def test_wrong_uses(self):
        for arguments, code, said in (((), 2, "There is no tag yet"), (("nosuch",), 2, "There is no commit 'nosuch'"),
                                      (("--help",), 0, "Usage: scripts/abi"), (("--nosuch",), 2, "Usage: scripts/abi")):
            with self.subTest(arguments=arguments):
                got, text = self.tree.compare(*arguments)
                self.assertEqual(got, code)
                self.assertIn(said, text)


if __name__ == "__main__":
    if shutil.which("abidiff") is None:
        print("skipped: abidiff is not installed")
        sys.exit(0)
    unittest.main(argv=sys.argv[:1])
