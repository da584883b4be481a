#!/usr/bin/env python3
"""Writes small valid inputs from which a fuzzer starts: makeSeeds.py TARGET FOLDER [--tool KXMATH] [--files DIR]

With --tool the program kxmath simulates a train whose recordings, thinned out, are inputs too; with --files so are the
files of a folder, text files shortened to some hundred lines.
"""

import argparse
import json
import math
import pathlib
import random
import struct
import subprocess
import tempfile

SEPARATOR = b"@@@@"
EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples"


def section(kind, points):
    count = {2: "<H", 3: "<I", 4: "<I"}[kind]
    record = {2: "<2f", 3: "<3f", 4: "<3fI"}[kind]
    return bytes([kind]) + struct.pack(count, len(points)) + b"".join(struct.pack(record, *p) for p in points)


def record(z, points):
    return b"\x05" + struct.pack("<Hf", len(points), z) + b"".join(struct.pack("<2f", *p) for p in points)


def profile(n, height):
    return [(0.5 * i, height + 0.1 * (i % 3)) for i in range(n)]


def wheel():
    """x outwards from the flange back, y down."""
    flange = [(0.5 * i, -28 * math.sin(math.pi * i / 80)) for i in range(80)]
    return flange + [(float(x), -x / 20) for x in range(40, 135)]


def rail():
    return [(float(x), 80 - math.sqrt(6400 - (x - 32) ** 2)) for x in range(65)]


def csv(points):
    return "".join(f"{x:.6g};{y:.6g}\n".replace(".", ",") for x, y in points).encode()


def scan(kind):
    """Rows of a plate with an edge."""
    rows = [[(0.5 * i, 5.0 if 5 < i < 15 and 3 < row < 12 else 0.0) for i in range(20)] for row in range(16)]
    return b"".join(section(2, row) if kind == 2 else record(0.5 * z, row) for z, row in enumerate(rows))


def settings(low_line):
    text = "[General]\nuse=1\nminProfsInWheel=2\ncalibrLines2=1360\nmaxDeviation=0.3\npointsHigher=5\n"
    for sensor in (1, 2):
        text += f"[SENSOR{sensor}]\nSN={sensor}\nlevel_k=0\nlevel_b=100\nk2=0\nb2=90\nwndSize=3\nmaxdY=1.5\n"
        text += f"{low_line}_k=0\n{low_line}_b=10\nmaxCorr=4\nparts=1\nmaxDist=10\nminPointsIn=2\nhigherPoinInWnd=1\n"
    return text.encode()


CLOUDS = [
    section(2, profile(5, 1.0)),
    section(3, [(x, y, 2.0) for x, y in profile(4, 1.0)]),
    section(4, [(x, y, 2.0, 0xFF0000) for x, y in profile(3, 1.0)]),
    section(2, []) + section(2, profile(2, 0.0)),
]
RECORDS = [record(1.5, profile(6, 2.0)) + record(2.0, []) + record(2.5, profile(3, 1.0))]
CSV = [b"1,5;-2\n0,25;1e-07\n", b"7;8;9\n1;2\n\n3;4\n", b"x;y\n1.5;nan\n-inf;2\n"]
TEXTS = [
    b"1 2 3\n4 5 6\n",
    b"# x y z r g b\n1\t2\t3\t255\t0\t7\n4,5,6\n",
    b"ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty float z\nend_header\n1 2 3\n",
    b"ply\nformat binary_little_endian 1.0\nelement vertex 1\nproperty double x\nproperty float y\nproperty float z\n"
    b"property uchar red\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n" + bytes(40),
    b"VERSION .7\nFIELDS x y z rgb\nSIZE 4 4 4 4\nTYPE F F F U\nCOUNT 1 1 1 1\nWIDTH 1\nHEIGHT 1\nPOINTS 1\nDATA binary\n"
    + bytes(16),
    b"FIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nPOINTS 2\nDATA ascii\n1 2 3\nnan 5 6\n",
    b"Filename=a\nXYPoints=2\n\n0.1 0.2 3 4\n1.5 2.5 3 4\n",
    bytes(32),
]
NPY = b"{'descr': '<f4', 'fortran_order': False, 'shape': (2, 4), }\n"
VTK = b'<VTKFile type="%s" byte_order="LittleEndian" header_type="UInt64">'
MAPS = [
    b"\x93NUMPY\1\0" + struct.pack("<H", len(NPY)) + NPY + bytes(32),
    b"Gwyddion Simple Field 1.0\nXRes = 3\nYRes = 2\nXReal = 0.003\nYReal = 0.002\nXYUnits = m\nZUnits = m\n" + bytes(26),
    b"aISO-1.0\nNumPoints = 3\nNumProfiles = 2\nXscale = 1e-3\nYscale = 1e-3\nZscale = 1\n*\n"
    b"1 2 BAD\n4 5 nan\n*\nOriginX = 1\n",
    VTK % b"ImageData" + b'<ImageData WholeExtent="0 2 0 1 0 0" Origin="1 2 0" Spacing="1 1 1">'
    b'<Piece Extent="0 2 0 1 0 0"><PointData><DataArray type="Float32" Name="h" format="ascii">1 2 nan 4 5 6</DataArray>'
    b"</PointData></Piece></ImageData></VTKFile>",
    VTK % b"PolyData" + b'<PolyData><Piece NumberOfPoints="1"><Points><DataArray type="Float32" NumberOfComponents="3" '
    b'format="binary">DAAAAAAAAAAAAIA/AAAAQAAAQEA=</DataArray></Points></Piece></PolyData></VTKFile>',
    bytes(80) + struct.pack("<I", 1) + bytes(50),
    b"solid a\nfacet\nouter loop\nvertex 1 2 3\nvertex 4 5 6\nvertex 7 8 9\nendloop\nendfacet\nendsolid a\n",
    b"profile,x,y,z,red,green,blue\n1,2,3,4,5,6,7\n2,,nan,4,5,6,7\n",
]
WHEELS = b"".join(record(i, profile(20, 50.0 if 3 < i < 9 else 150.0)) for i in range(12))
SECTIONS = b"".join(section(2, profile(30, 40.0 + i / 4 if i > 1 else 140.0)) for i in range(8))


def thinned(data, every):
    """Cloud sections or profile records with every n-th of their points."""
    at = 0
    result = []
    while at < len(data) and len(result) < 40:
        head = 7 if data[at] == 5 else 3
        count = struct.unpack_from("<H", data, at + 1)[0]
        points = [struct.unpack_from("<2f", data, at + head + 8 * i) for i in range(0, count, every)]
        result.append(section(2, points) if head == 3 else record(struct.unpack_from("<f", data, at + 3)[0], points))
        at += head + 8 * count
    return b"".join(result)


def simulated(tool):
    """Settings, both recordings and settings for defects of a short train, with fewer points."""
    with tempfile.TemporaryDirectory() as folder:
        options = "--serial1 1 --serial2 2 --cars 1 --bogies 1 --axles 1 --rate 150 --idle 2 --prefix t".split()
        subprocess.run([tool, "simulate", *options, folder], check=True, stdout=subprocess.DEVNULL)
        path = pathlib.Path(folder)
        recordings = [thinned((path / name).read_bytes(), 12) for name in ("t_1.bin", "t_2.bin")]
        return (path / "settings.ini").read_bytes(), *recordings, (path / "defects.ini").read_bytes()


def calibration(tool):
    """Two profiles of the calibration object, with fewer points."""
    with tempfile.TemporaryDirectory() as folder:
        options = "--calibration 2 --profiles 2".split()
        subprocess.run([tool, "simulate", *options, folder], check=True, stdout=subprocess.DEVNULL)
        files = sorted(pathlib.Path(folder).glob("calibration*.bin"))
        return [thinned(f.read_bytes(), 2) for f in files]


def shortened(path):
    """The content of a real file, small enough for a fuzzer."""
    data = path.read_bytes()
    lines = data.splitlines(keepends=True)
    if len(data) > 12000 and len(lines) > 200:
        head = 40  # header lines
        data = b"".join(lines[:head] + lines[head :: len(lines) // 200])
    return data[:15000]


def real_files(folder):
    """Kind of command line input and content of each file."""
    kinds = {".csv": 2, ".xyz": 4, ".asc": 4, ".txt": 4, ".ply": 5, ".pcd": 6, ".npy": 9, ".vtp": 10, ".stl": 11,
             ".vti": 12, ".gsf": 13, ".sdf": 14}
    files = [f for f in sorted(pathlib.Path(folder).rglob("*")) if f.is_file()] if folder else []
    return [(kinds.get(f.suffix.lower(), 7), shortened(f)) for f in files]


def operations():
    """Bytes that make full clouds and reach each operation; the fuzzer finds the combinations."""
    generator = random.Random(7)
    return [bytes(generator.randrange(256) for _ in range(n)) for n in (50, 200, 800, 800, 3000, 3000, 8000)]


def point_formats(real):
    contents = CLOUDS + RECORDS + CSV + TEXTS + MAPS
    inputs = [bytes([kind]) + content for kind in range(16) for content in contents]
    return inputs + [bytes([kind]) + content for kind, content in real]


def recordings(train):
    inputs = [SEPARATOR.join((settings("lowlevel"), WHEELS, SECTIONS)), SEPARATOR.join((settings("lowLevel"), SECTIONS))]
    return inputs + ([SEPARATOR.join(train[:3])] if train else [])


def commands(train, shots, real):
    """Choices of command, options, ending and sizes, and the files."""
    profiles = [csv(wheel()), section(2, wheel()), csv(rail())] + [content for kind, content in real if kind in (2, 7)]
    trains = [(WHEELS, SECTIONS, settings("lowlevel"), settings("lowLevel"))]
    if train:
        trains.append((train[1], train[2], train[0], train[3]))
    inputs = [bytes([0, 0, ending, 0]) + c for ending in range(7) for c in CLOUDS + RECORDS + TEXTS[:6]]
    inputs += [bytes([1, bits, 7, 1]) + c for c in profiles for bits in (0, 3, 4)]
    inputs += [bytes([1, 32, 0, 0]) + section(3, [(400 - x, -y, 0.0) for x, y in wheel()])]
    inputs += [bytes([2, bits, 2, 0]) + SEPARATOR.join((csv(wheel()), csv(rail()))) for bits in (0, 2)]
    inputs += [bytes([3, bits, 0, 0]) + scan(kind) for kind in (2, 5) for bits in (0, 1, 2, 4, 8, 16, 32, 64, 127)]
    inputs += [bytes([4, bits, 0, 0]) + SEPARATOR.join(files) for files in trains for bits in (0, 3, 6)]
    inputs += [bytes([5, bits, 0, 1]) + SEPARATOR.join([*shots, *shots[:1], settings("lowlevel")]) for bits in (0, 7)]
    return inputs


def several_sensors():
    """Settings of three sensors with sides and poses, and their recordings."""
    text = settings("lowlevel").decode() + "[SENSOR3]\nSN=3\nlevel_k=0\nlevel_b=100\n"
    for sensor, (side, y) in enumerate((("left", 500), ("right", -500), ("left", 900)), start=1):
        text += f"[SENSOR{sensor}]\nside={side}\nx=0\ny={y}\nz=-100\nalpha=-40\nbeta=90\ngamma=180\n"
        text += "".join(f"{key}Uncertainty=0.05\n" for key in ("x", "y", "z", "alpha", "beta", "gamma"))
    return SEPARATOR.join((text.encode(), WHEELS, WHEELS, WHEELS))


def result(tool):
    """The result of a short pass, without blanks."""
    with tempfile.TemporaryDirectory() as folder:
        options = "--cars 1 --bogies 1 --axles 1 --rate 150 --points 60 --idle 2 --no-background --no-objects --no-rails"
        path = pathlib.Path(folder)
        subprocess.run([tool, "simulate", *options.split(), path / "pass"], check=True, stdout=subprocess.DEVNULL)
        subprocess.run([tool, "train", path / "pass", "--json", path / "r.json", "--limits", EXAMPLES / "limits.ini"],
                       check=True, stdout=subprocess.DEVNULL, cwd=folder)
        return json.dumps(json.loads((path / "r.json").read_bytes()), separators=(",", ":")).encode()


def station_texts(tool):
    """What the text is, and a choice; then the text."""
    consists = [(EXAMPLES / "consist.csv").read_bytes(),
                b'mark,number,class,axle distances,to next\n"a ""b""",,tram,1800 6000 1800,2800\nc,7,tram,1800 6000 1800,\n']
    limits = [(EXAMPLES / "limits.ini").read_bytes(), b"[backToBack/tram]\nalarmLow = 1379\n# x\n[yaw]\nwarningHigh=5\n"]
    layouts = [b"{station}/{time}/{prefix}_{serial}.bin@@@@A12/20261121T081500Z/left_1001.bin",
               b"{time}-{station}_{serial}.bin@@@@2026-11-21T08-15-00.5Z-B7_12.bin"]
    results = [result(tool)] if tool else [b'{"schema":{"name":"kxmath.pass","version":1},"command":"train"}']
    texts = [consists, limits, layouts, results, [several_sensors()]]
    return [bytes([kind, choice]) + text for kind, those in enumerate(texts) for text in those for choice in (0, 3, 12)]


def seeds(target, train, shots, real):
    if target == "csv":
        return [bytes([1, 2]) + c for c in CSV] + [bytes([1, 2]) + c for kind, c in real if kind == 2]
    if target == "recording":
        return recordings(train)
    if target == "pointFormats":
        return point_formats(real)
    if target == "command":
        return commands(train, shots, real)
    files = {"cloudFile": CLOUDS, "profileFile": RECORDS + CLOUDS + [scan(2), scan(5)] + list(train[1:3])}
    return files.get(target) or operations()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("target")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--tool")
    parser.add_argument("--files")
    arguments = parser.parse_args()
    train = simulated(arguments.tool) if arguments.tool else ()
    shots = calibration(arguments.tool) if arguments.tool else [section(2, profile(60, 5.0))] * 2
    if arguments.target == "stationTexts":
        found = station_texts(arguments.tool)
    else:
        found = seeds(arguments.target, train, shots, real_files(arguments.files))
    for number, seed in enumerate(found):
        (arguments.folder / f"seed-{number:03}").write_bytes(seed)


main()
