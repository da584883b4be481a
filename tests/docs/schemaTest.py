#!/usr/bin/env python3
"""Validates results of kxmath train against the schema: schemaTest.py KXMATH SCHEMA

Results of simulated passes, with and without defects, wheels, z and partners, are valid; each member that goes away, gets
another type or is not known makes them invalid, wherever it stands.
"""
import copy
import json
import pathlib
import struct
import subprocess
import sys
import tempfile

import jsonschema

kxmath, schema_file = sys.argv[1:]
schema = json.loads(pathlib.Path(schema_file).read_text(encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)


def records(content):
    """The records of a recording of profile records, each without its z, and the z."""
    at = 0
    while at < len(content):
        points = struct.unpack_from("<H", content, at + 1)[0]
        end = at + 7 + 8 * points
        yield content[at + 1:at + 3] + content[at + 7:end], struct.unpack_from("<f", content, at + 3)[0]
        at = end


def without_z(content):
    return b"".join(b"\2" + record for record, z in records(content))


def without_wheel(content):
    """The same with the points of the first wheel 10 m off the sensor."""
    first = b""
    for record, z in records(content):
        if z < 600.0:
            count = struct.unpack_from("<H", record)[0]
            record = record[:2] + struct.pack("<ff", 0.0, 9999.0) * count
        first += b"\5" + record[:2] + struct.pack("<f", z) + record[2:]
    return first


def result_of(folder, *options, code=0):
    recordings = [str(folder / name) for name in ("train_101.bin", "train_102.bin")]
    command = [kxmath, "train", *recordings, "--out", "passes", "--json", "-", *options]
    run = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    assert run.returncode == code, (command, run.returncode, run.stderr)
    assert str(folder) not in run.stdout, "no folder in a result"
    return json.loads(run.stdout)


# Members of results of stations whose settings give the sides of sensors, and what older versions did not count.
OPTIONAL = {("wheels",), ("furtherRecordings",), ("recordings", 0, "points"), ("recordings", 1, "points"),
            ("recordings", 0, "points", "removedAsStraight"), ("recordings", 1, "points", "removedAsStraight")}

LAYOUT = "".join(f"[SENSOR{i}]\nSN={100 + i}\nside={side}\nplace={place}\n" for i, (side, place) in enumerate(
    [("left", "inner"), ("right", "inner"), ("left", "field"), ("right", "field")], 1))


def several_sensors(folder):
    folder.mkdir()
    (folder / "layout.ini").write_text(LAYOUT)
    simulate = [kxmath, "simulate", ".", "--cars", "1", "--bogies", "1", "--rate", "700", "--layout", "layout.ini"]
    subprocess.run(simulate, cwd=folder, check=True, capture_output=True)
    for what, gone in ("several sensors", None), ("without a field sensor", 104), ("without an inner one", 102):
        if gone:
            (folder / f"train_{gone}.bin").unlink()
        command = [kxmath, "train", ".", "--out", "passes", "--json", "-"]
        yield what, json.loads(subprocess.run(command, cwd=folder, check=True, capture_output=True, text=True).stdout)


def results(folder):
    simulate = [kxmath, "simulate", ".", "--cars", "1", "--rate", "300", "--points", "640", "--flat", "2:1:60"]
    subprocess.run(simulate, cwd=folder, check=True, capture_output=True)
    settings = ["--settings", "settings.ini"]
    places = [pair["behindFirst"] for pair in json.loads((folder / "truth.json").read_text())["pairs"]]
    gaps = " ".join(str(b - a) for a, b in zip(places, places[1:]))
    (folder / "train.csv").write_text(f"mark,number,class,axle distances,to next\nM,7,metro,{gaps},\n")
    (folder / "limits.ini").write_text("[backToBack]\nwarningHigh=1360.1\nalarmLow=1357\n[yaw]\nalarmHigh=1\n"
                                       "[roundness]\nalarmHigh=0.05\n[diameterDifferenceAxle]\nalarmHigh=0.5\n")
    yield "plain", result_of(folder, *settings)
    yield "with all options", result_of(folder, *settings, "--defects", "defects.ini", "--station", "Hof \"3\"",
                                        "--line", "S1", "--track", "2", "--direction", "up", "--speed", "79.5",
                                        "--time", "2026-03-29T01:59:07.5+01:00", "--consist", "train.csv", "--limits", "limits.ini")
    left = folder / "train_101.bin"
    whole = left.read_bytes()
    left.write_bytes(without_wheel(whole))
    yield "a missing wheel", result_of(folder, *settings, "--defects", "defects.ini")
    left.write_bytes(without_z(whole))
    yield "without z", result_of(folder, *settings, "--defects", "defects.ini")
    text = (folder / "settings.ini").read_text()
    (folder / "blind.ini").write_text(text.replace("minProfsInWheel=", "minProfsInWheel=9999 ;"))
    yield "no wheels", result_of(folder, "--settings", "blind.ini", code=1)
    yield from several_sensors(folder / "several")


def places(value, path=()):
    """Paths of all objects; of lists only the first and the last element."""
    if isinstance(value, dict):
        yield path
        for key, member in value.items():
            yield from places(member, path + (key,))
    elif isinstance(value, list):
        for index in sorted({0, len(value) - 1} if value else ()):
            yield from places(value[index], path + (index,))


def at(value, path):
    for key in path:
        value = value[key]
    return value


def broken(result):
    """Documents with one fault each, and what it is."""
    for path in places(result):
        is_open = path[-1:] == ("values",)  # keys of settings are members
        for key in [] if is_open else list(at(result, path)):
            changed = copy.deepcopy(result)
            del at(changed, path)[key]
            if path + (key,) not in OPTIONAL:
                yield f"without {path + (key,)}", changed
            changed = copy.deepcopy(result)
            at(changed, path)[key] = {"no": []}
            yield f"another type at {path + (key,)}", changed
        changed = copy.deepcopy(result)
        at(changed, path)["no such member"] = 1
        yield f"a new member in {path}", changed


def main():
    faults = []
    with tempfile.TemporaryDirectory() as name:
        for what, result in results(pathlib.Path(name)):
            faults += [f"{what}: {list(e.absolute_path)}: {e.message[:200]}" for e in validator.iter_errors(result)]
            if what == "with all options":
                changes = list(broken(result))
                faults += [f"{change}: is valid" for change, document in changes if validator.is_valid(document)]
    print("\n".join(faults) or f"{len(changes)} broken results refused")
    sys.exit(1 if faults else 0)


main()
