"""Data of laser triangulation profile sensors as NumPy users expect them: profiles, clouds, and what is measured on them.

    import kxmath as kx

    profile = kx.Profile.from_csv("shaft.csv")
    clean = profile.remove_noise(window=3, max_jumps=1, threshold=1.5).moving_average(20)
    circle = clean.fit_circle()

Lengths are in mm and angles in degrees. Values are float32; NaN marks a missing one. Operations return new objects.
"""
from ._kxmath import _refuse_subinterpreters

_refuse_subinterpreters()

from ._errors import ArgumentError, Error, FileError, FileMissing, NoResult, Place
from ._heightmap import HeightMap, Patch
from ._kxmath import Circle, Cloud, ColourCloud, Line, Plane, Profile, Vector
from ._kxmath import version as __version__
from ._railway import (Calibration, Conicity, Pass, PassResult, WheelProfile, WheelResult, calibrate, conicity,
                       measure_wheels, to_track)
from ._scans import ProfileSet, Recording, read
from ._values import Point, Point3, Range, Range3

__all__ = ["ArgumentError", "Calibration", "Circle", "Cloud", "ColourCloud", "Conicity", "Error", "FileError",
           "FileMissing", "HeightMap", "Line", "NoResult", "Pass", "PassResult", "Patch", "Place", "Plane", "Point",
           "Point3", "Profile", "ProfileSet", "Range", "Range3", "Recording", "Vector", "WheelProfile", "WheelResult",
           "__version__", "calibrate", "conicity", "measure_wheels", "read",
           "to_track"]
