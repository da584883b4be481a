#!/usr/bin/env python3
"""Opens what kxmath writes with programs of others, and compares: otherPrograms.py KXMATH

NumPy reads arrays and tables, VTK reads images, points and triangles, Gwyddion reads height maps.
"""
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

import numpy as np
import vtk
from vtk.util.numpy_support import vtk_to_numpy

KXMATH = str(pathlib.Path(sys.argv.pop()).resolve())
ROWS, COLUMNS, PITCH, X0, Z0 = 7, 44, 0.25, -3.0, 5.0
ROW, COLUMN = np.mgrid[0:ROWS, 0:COLUMNS]
HEIGHTS = 2 + 0.1 * ROW + 0.3 * (X0 + PITCH * COLUMN) # the plane that was scanned
HEIGHTS[((ROW == 3) | (ROW == 4)) & (abs(X0 + PITCH * COLUMN) < 1.2)] = np.nan # and its hole
POINTS = np.array([[1.5, 2.25, -7], [0.1, np.nan, 3], [1e-7, -20.125, 16777216]], "f4")
COLOURS = np.array([[1, 2, 3], [255, 128, 0], [16, 32, 64]])


def gwy_object(content, at):
    """An object of a GWY file as a dictionary, and where it ends. Gwyddion user guide 2.62, "Gwy file format"."""
    def text(at):
        end = content.index(b"\0", at)
        return content[at:end].decode(), end + 1
    _, at = text(at)
    end = at + 4 + struct.unpack_from("<I", content, at)[0]
    at, items = at + 4, {}
    while at < end:
        name, at = text(at)
        kind, at = chr(content[at]), at + 1
        if kind == "o":
            items[name], at = gwy_object(content, at)
        elif kind == "s":
            items[name], at = text(at)
        elif kind == "D":
            count = struct.unpack_from("<I", content, at)[0]
            items[name], at = np.frombuffer(content, "<f8", count, at + 4), at + 4 + 8 * count
        elif kind == "S":
            count, at = struct.unpack_from("<I", content, at)[0], at + 4
            for _ in range(count):
                _, at = text(at)
        else:
            form = {"b": "<?", "c": "<b", "i": "<i", "q": "<q", "d": "<d"}[kind]
            items[name], at = struct.unpack_from(form, content, at)[0], at + struct.calcsize(form)
    return items, at


class OtherPrograms(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        scan = b""
        for row in range(ROWS):
            x = X0 + PITCH * np.arange(COLUMNS + 1)
            x = x[(abs(x) > 1.2) | (row not in (3, 4))]
            y = 2 + 0.1 * row + 0.3 * x
            scan += struct.pack("<BH", 2, len(x)) + np.column_stack([x, y]).astype("<f4").tobytes()
        (self.folder / "scan.bin").write_bytes(scan)
        (self.folder / "cloud.bin").write_bytes(struct.pack("<BI", 3, 3) + POINTS.tobytes())
        (self.folder / "coloured.bin").write_bytes(struct.pack("<BI", 4, 3) + b"".join(
            p.tobytes() + struct.pack("<I", r << 16 | g << 8 | b) for p, (r, g, b) in zip(POINTS, COLOURS.tolist())))

    def kxmath(self, line):
        subprocess.run([KXMATH, *line.split()], cwd=self.folder, check=True, stdout=subprocess.DEVNULL)

    def map_file(self, name):
        self.kxmath(f"grid scan.bin --step {PITCH} --z0 {Z0} --map {name}")
        return str(self.folder / name)

    def read(self, reader, name):
        reader.SetFileName(str(self.folder / name))
        reader.Update()
        return reader.GetOutput()

    def check_heights(self, heights):
        np.testing.assert_allclose(np.reshape(heights, (ROWS, COLUMNS)), HEIGHTS, rtol=0, atol=2e-6)

    def test_numpy_reads_arrays(self):
        self.check_heights(np.load(self.map_file("map.npy")))
        self.kxmath("convert cloud.bin points.npy")
        np.testing.assert_array_equal(np.load(self.folder / "points.npy"), POINTS)
        np.save(self.folder / "doubles.npy", np.asfortranarray(POINTS, "f8"))
        self.kxmath("convert doubles.npy again.npy")
        np.testing.assert_array_equal(np.load(self.folder / "again.npy"), POINTS)

    def test_numpy_reads_tables(self):
        self.kxmath("convert coloured.bin points.table")
        table = np.genfromtxt(self.folder / "points.table", delimiter=",", names=True, dtype="f4")
        self.assertEqual(table.dtype.names, ("x", "y", "z", "red", "green", "blue"))
        np.testing.assert_array_equal(np.array(table.tolist(), "f4"), np.hstack([POINTS, COLOURS]).astype("f4"))

    def test_profiles_in_the_track_frame(self):
        """NumPy calculates the conversion of docs/calibration.md in double precision; z of a profile is the travel."""
        x0, y0, z0, a, b, c = pose = 12.5, -800, 55, 3, 41, -27.5
        (self.folder / "s.ini").write_text("[SENSOR2]\nSN=9\n[SENSOR1]\nSN=7\n" + "".join(
            f"{name}={value}\n" for name, value in zip(("x", "y", "z", "alpha", "beta", "gamma"), pose)))
        profiles = [(100.5, [(1, 2), (30.5, -7)]), (101.25, [(-4, 11.5)])]
        (self.folder / "records.bin").write_bytes(b"".join(
            struct.pack("<BHf", 5, len(p), z) + np.array(p, "<f4").tobytes() for z, p in profiles))
        self.kxmath("convert records.bin track.npy --pose s.ini --sensor 1")
        (sa, sb, sc), (ca, cb, cc) = np.sin(np.radians([a, b, c])), np.cos(np.radians([a, b, c]))
        u = np.array([sa * cb * cc + sb * sc, sa * sb * cc - sc * cb, ca * cc])
        v = np.array([ca * cb, ca * sb, -sa])
        expected = [np.array([x0 - z, y0, z0]) + x * u + y * v for z, points in profiles for x, y in points]
        np.testing.assert_allclose(np.load(self.folder / "track.npy"), expected, rtol=0, atol=2e-4) # y has a step of 6e-5

    def test_vtk_reads_images(self):
        self.map_file("map.vti")
        image = self.read(vtk.vtkXMLImageDataReader(), "map.vti")
        self.assertEqual((image.GetDimensions(), image.GetOrigin(), image.GetSpacing()),
                         ((COLUMNS, ROWS, 1), (X0, Z0, 0), (PITCH, PITCH, 1)))
        self.check_heights(vtk_to_numpy(image.GetPointData().GetScalars()))

    def test_images_of_vtk_are_read(self):
        self.map_file("map.vti")
        image = self.read(vtk.vtkXMLImageDataReader(), "map.vti")
        for header, set_header in [("64", "SetHeaderTypeToUInt64"), ("32", "SetHeaderTypeToUInt32")]:
            for mode in ("Ascii", "Binary"):
                writer = vtk.vtkXMLImageDataWriter()
                writer.SetFileName(str(self.folder / "theirs.vti"))
                writer.SetInputData(image)
                writer.SetCompressorTypeToNone()
                getattr(writer, set_header)()
                getattr(writer, f"SetDataModeTo{mode}")()
                writer.Write()
                self.kxmath("convert theirs.vti theirs.npy")
                with self.subTest(mode, header=header):
                    self.check_heights(np.load(self.folder / "theirs.npy"))

    def test_vtk_reads_points(self):
        self.kxmath("convert coloured.bin points.vtp")
        points = self.read(vtk.vtkXMLPolyDataReader(), "points.vtp")
        self.assertEqual(points.GetNumberOfVerts(), 3)
        np.testing.assert_array_equal(vtk_to_numpy(points.GetPoints().GetData()), POINTS)
        np.testing.assert_array_equal(vtk_to_numpy(points.GetPointData().GetArray("rgb")), COLOURS)
        self.kxmath("convert points.vtp back.bin")
        self.assertEqual((self.folder / "back.bin").read_bytes(), (self.folder / "coloured.bin").read_bytes())

    def test_vtk_reads_triangles(self):
        self.map_file("map.stl")
        mesh = self.read(vtk.vtkSTLReader(), "map.stl")
        known = np.isfinite(HEIGHTS)
        around = sum(known[i:ROWS - 1 + i, j:COLUMNS - 1 + j].astype(int) for i in (0, 1) for j in (0, 1))
        self.assertEqual(mesh.GetNumberOfPolys(), np.maximum(around - 2, 0).sum())
        points = vtk_to_numpy(mesh.GetPoints().GetData())
        np.testing.assert_allclose(points[:, 1], 2 + 0.4 * (points[:, 2] - Z0) + 0.3 * points[:, 0], atol=2e-6)
        self.assertEqual(len(points), known.sum())
        normals = vtk.vtkPolyDataNormals()
        normals.SetInputData(mesh)
        normals.ConsistencyOff(), normals.ComputeCellNormalsOn(), normals.Update()
        up = vtk_to_numpy(normals.GetOutput().GetCellData().GetNormals())
        np.testing.assert_allclose(up, np.tile(np.array([-0.3, 1, -0.4]) / np.sqrt(1.25), (len(up), 1)), atol=1e-4)

    def test_gwyddion_reads_maps(self):
        for kind in ("gsf", "sdf"):
            self.map_file(f"map.{kind}")
            subprocess.run(["gwyddion", "--convert-to-gwy=out.gwy", f"map.{kind}"], cwd=self.folder, check=True)
            content, _ = gwy_object((self.folder / "out.gwy").read_bytes(), 4)
            field = content["/0/data"]
            heights = np.reshape(field["data"], (ROWS, COLUMNS)) * 1e3
            if "/0/mask" in content: # of the missing heights, which are then filled in
                heights = np.where(np.reshape(content["/0/mask"]["data"], (ROWS, COLUMNS)) > 0, np.nan, heights)
            with self.subTest(kind):
                self.check_heights(heights)
                self.assertAlmostEqual(field["xreal"] * 1e3, COLUMNS * PITCH, 9)
                self.assertAlmostEqual(field["yreal"] * 1e3, ROWS * PITCH, 9)
                self.assertEqual(field["si_unit_xy"]["unitstr"] + field["si_unit_z"]["unitstr"], "mm")
                if kind == "gsf":
                    self.assertAlmostEqual(field["xoff"] * 1e3, X0, 9)
                    self.assertAlmostEqual(field["yoff"] * 1e3, Z0, 9)


if __name__ == "__main__":
    unittest.main()
