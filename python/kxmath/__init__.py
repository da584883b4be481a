"""Data of laser triangulation profile sensors as NumPy users expect them: profiles, clouds, and what is measured on them.

    import kxmath as kx

    profile = kx.Profile.from_csv("shaft.csv")
    clean = profile.remove_noise(window=3, max_jumps=1, threshold=1.5).moving_average(20)
    circle = clean.fit_circle()

Lengths are in mm and angles in degrees. Values are float32; NaN marks a missing one. Operations return new objects.
"""
from ._kxmath import _refuse_subinterpreters

_refuse_subinterpreters()

from ._errors import ArgumentError, Error, FileError, FileMissing, NoResult, Place, ReadingWarning
from ._files import FileInfo, file_info
from ._grids import GridResult, measure_grid
from ._heightmap import HeightMap, Patch
from ._kxmath import Circle, Cloud, ColourCloud, Line, Plane, Profile, Vector, wheel_circle
from ._kxmath import version as __version__
from ._railway import (Calibration, Conicity, Pass, PassResult, WheelProfile, WheelResult, calibrate,
                       calibration_ridges, conicity, measure_rim, measure_wheels, to_track)
from ._recordings import FoundRecording, RecordingGroup, RecordingGroups, find_recordings
from ._scans import Arrays, ProfileSet, Recording, read, read_arrays
from ._settings import (LimitMeasure, SettingKey, SettingsCheck, SettingsFinding, StationFit, check_settings,
                        fit_station, limit_measures, new_settings, setting_keys)
from ._values import Apexes, Extract, Joint, Point, Point3, Range, Range3

__all__ = ["Apexes", "ArgumentError", "Arrays", "Calibration", "Circle", "Cloud", "ColourCloud", "Conicity", "Error", "Extract", "FileError",
           "FileInfo", "FileMissing", "FoundRecording", "GridResult", "HeightMap", "Joint", "LimitMeasure", "Line", "NoResult",
           "Pass", "PassResult", "Patch", "Place", "Plane", "Point", "Point3", "Profile", "ProfileSet", "Range",
           "Range3", "ReadingWarning", "Recording", "RecordingGroup", "RecordingGroups", "SettingKey", "SettingsCheck", "SettingsFinding",
           "StationFit", "Vector", "WheelProfile", "WheelResult", "__version__", "calibrate", "calibration_ridges",
           "check_settings", "conicity", "file_info", "find_recordings", "fit_station", "limit_measures",
           "measure_grid", "measure_rim", "measure_wheels", "new_settings", "read", "read_arrays", "setting_keys",
           "to_track", "wheel_circle"]
