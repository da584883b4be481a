#!/usr/bin/env python3
"""Checks who includes and links whom: layers.py ROOT

Prints each include or link that goes to a layer that may not be used there, each circle between folders of one layer,
each product source that two CMake files list, or one of another folder, or none, and each folder of sources that no
layer knows. Exit code 1 when there is one.
"""
import argparse
import os
import pathlib
import re
import sys
from collections import namedtuple

# folders: an asterisk stands for any one folder. rooms: how many folders deep a layer is divided. may: what its files
# may include and its targets link, besides their own layer.
Layer = namedtuple("Layer", "name folders rooms may")
CORE = ("interface of the core",)
PUBLIC = CORE + ("interface of measuring",)
LAYERS = (
    Layer("interface of the core", ("include/KxMath",), 2, ()),
    Layer("ground", ("src/rounding", "src/sorting", "src/lists", "src/simd"), 2, CORE),
    Layer("input and output", ("src/io",), 2, CORE + ("ground",)),
    Layer("core", ("src", "src/geometry", "src/cloud", "src/profile", "src/grid", "src/railway"), 2,
          CORE + ("ground", "input and output")),
    Layer("interface of measuring", ("include/KxInspect",), 2, CORE),
    Layer("measuring", ("inspect", "inspect/*"), 2, PUBLIC),
    Layer("pages", ("report", "report/*"), 2, ("interface of measuring",)),
    Layer("simulator", ("simulator", "simulator/*"), 2, PUBLIC),
    Layer("fleet", ("fleet", "fleet/*"), 2, PUBLIC + ("measuring",)),
    Layer("commands", ("tools/kxmath", "tools/kxmath/*"), 3,
          PUBLIC + ("measuring", "pages", "simulator", "fleet")),
    Layer("manual", ("tools/manual",), 2, PUBLIC + ("commands",)),
    Layer("tables", ("tools/tables", "tools/study"), 2,
          PUBLIC + ("measuring", "simulator", "fleet", "commands", "shapes", "trials")),
    Layer("shapes", ("tests/shapes",), 2, CORE),
    Layer("trials", ("tests/trials",), 2, PUBLIC + ("simulator",)),
    Layer("bindings", ("python", "python/*"), 2, PUBLIC + ("pages", "ground")),
    Layer("examples", ("examples",), 1, PUBLIC),
)
# Folders that alone may include a layer, whatever their own layer may.
ONLY_FROM = {"simulator": ("simulator", "simulator/fleet", "tools/kxmath/simulate", "tools/tables", "tools/study", "tests/trials")}
# Who links a library uses what its interface holds; what it may include of it is looked at above.
LINKED_AS = {"core": "interface of the core", "measuring": "interface of measuring"}
# They look at everything.
UNCHECKED = ("tests", "benchmarks", "fuzz")
IGNORED = ("cmake", "docs", "packaging", "scripts", "out")
PRODUCTS = ("src", "inspect", "report", "simulator", "fleet", "tools", "python")


class Tree:
    def __init__(self, root):
        self.root = pathlib.Path(root)
        self.files = []
        for folder, folders, names in os.walk(self.root):
            folders[:] = [f for f in folders if not f.startswith((".", "build"))]
            self.files += [pathlib.Path(folder, name).relative_to(self.root).as_posix() for name in names]
        self.files.sort()
        self.known = set(self.files)

    def text(self, name):
        return (self.root / name).read_text(encoding="utf-8", errors="replace")


def room_of(name):
    """The folder that a file belongs to, and its layer; None when no layer knows it."""
    folders = name.split("/")[:-1]
    for layer in LAYERS:
        room = "/".join(folders[:layer.rooms])
        if any(re.fullmatch(pattern.replace("*", "[^/]+"), room) for pattern in layer.folders):
            return room, layer
    return None


def unknown_folders(tree):
    sources = (f for f in tree.files if re.search(r"\.(h|hpp|c|cc|cpp)$", f))
    unknown = {os.path.dirname(f) for f in sources
               if f.split("/")[0] not in UNCHECKED + IGNORED and not room_of(f)}
    return [f"{folder or 'the top folder'}: belongs to no layer" for folder in sorted(unknown)]


def included(tree, name):
    """The files of the tree that a file includes; an include in quotes that is none stands as it is."""
    text = re.sub(r"/\*.*?\*/", "", tree.text(name), flags=re.S)
    for quote, path in re.findall(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', text, re.M):
        places = [os.path.normpath(os.path.join(folder, path))
                  for folder in (os.path.dirname(name), "include", "", "src", "tests")]
        found = next((place for place in places if place in tree.known), None)
        if found or quote == '"':
            yield found or path


def may_use(room, layer, to_room, to_layer):
    if to_layer.name in ONLY_FROM and room not in ONLY_FROM[to_layer.name]:
        return False
    return to_layer is layer or to_layer.name in layer.may


def include_findings(tree):
    findings, arrows = [], {}
    for name in tree.files:
        if not re.search(r"\.(h|cpp)$", name) or not room_of(name):
            continue
        room, layer = room_of(name)
        for path in included(tree, name):
            target = room_of(path) if path in tree.known else None
            if target is None:
                findings.append(f"{name} includes {path}, which belongs to no layer")
            elif not may_use(room, layer, *target):
                findings.append(f"{name} includes {path}: {layer.name} may not use {target[1].name}")
            elif target[0] != room and target[1] is layer:
                arrows.setdefault(room, {}).setdefault(target[0], f"{name} includes {path}")
    return findings + circles(arrows)


def circles(arrows):
    """One circle through each room that is in one and in none that was found before."""
    findings, seen = [], set()
    for start in sorted(arrows):
        path = way(arrows, start, start) if start not in seen else None
        if path:
            seen.update(path)
            steps = [arrows[a][b] for a, b in zip(path, path[1:])]
            findings.append("circle " + " -> ".join(path) + "\n    " + "\n    ".join(steps))
    return findings


def way(arrows, start, end):
    """The shortest way along arrows, of one at least."""
    ways = [[start]]
    reached = set()
    for path in ways: # grows meanwhile
        for room in sorted(arrows.get(path[-1], ())):
            if room == end:
                return path + [room]
            if room not in reached:
                reached.add(room)
                ways.append(path + [room])
    return None


def cmake_commands(tree, name):
    """The commands of a CMake file with their arguments, variables of the file and of the project replaced."""
    folder = os.path.dirname(name)
    values = {"PROJECT_SOURCE_DIR": ".", "CMAKE_SOURCE_DIR": ".", "CMAKE_CURRENT_SOURCE_DIR": folder or ".",
              "CMAKE_CURRENT_LIST_DIR": folder or "."}
    text = re.sub(r"#[^\n]*", "", tree.text(name))
    for command, rest in re.findall(r"^\s*(\w+)\s*\(([^()]*)\)", text, re.M):
        for variable, value in values.items():
            rest = rest.replace("${" + variable + "}", value)
        arguments = rest.replace('"', "").split()
        if command == "set" and len(arguments) == 2:
            values[arguments[0]] = arguments[1]
        yield command, arguments


def cmake_findings(tree):
    listed, links, folder_of, alias = {}, [], {}, {}
    for name in tree.files:
        if not name.endswith(("CMakeLists.txt", ".cmake")):
            continue
        folder = os.path.dirname(name)
        for command, arguments in cmake_commands(tree, name):
            for argument in arguments:
                paths = [os.path.normpath(p) for p in (argument, os.path.join(folder, argument))]
                source = next((p for p in reversed(paths) if p in tree.known and p.endswith(".cpp")), None)
                if source and source.split("/")[0] in PRODUCTS:
                    listed.setdefault(source, []).append(name)
            if command in ("add_library", "add_executable") and arguments:
                if arguments[1:2] == ["ALIAS"]:
                    alias[arguments[0]] = arguments[2]
                else:
                    folder_of[arguments[0]] = folder
            if command == "target_link_libraries":
                links += [(name, arguments[0], re.sub(r"^\$<BUILD_INTERFACE:(.*)>$", r"\1", a)) for a in arguments[1:]]
    findings = [f"{source} is listed in {' and '.join(where)}" for source, where in listed.items() if len(where) > 1]
    findings += [f"{source} is listed in {where[0]}" for source, where in listed.items()
                 if len(where) == 1 and where[0].split("/")[0] != source.split("/")[0]]
    findings += [f"{source} is listed in no CMake file" for source in tree.files
                 if source.endswith(".cpp") and source.split("/")[0] in PRODUCTS and source not in listed]
    for name, target, other in links:
        layer, linked = (layer_of_target(folder_of.get(alias.get(t, t))) for t in (target, other))
        if layer and linked and linked != layer and LINKED_AS.get(linked.name, linked.name) not in layer.may:
            findings.append(f"{name}: {target} links {other}: {layer.name} may not use {linked.name}")
    return findings


def layer_of_target(folder):
    """The layer of the folder that defines a target; None for one that comes from elsewhere."""
    found = folder and room_of(folder + "/CMakeLists.txt")
    return found[1] if found else None


def all_findings(root):
    tree = Tree(root)
    return unknown_folders(tree) + include_findings(tree) + cmake_findings(tree)


def main(options=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("root")
    findings = all_findings(parser.parse_args(options).root)
    print("\n".join(findings))
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
