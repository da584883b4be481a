"""Every public class as a value: pickled, copied, compared, shown; or the reason why it is otherwise."""
import copy
import os
import pathlib
import pickle
import subprocess

import numpy as np
import pytest

import kxmath as kx

XYZ = np.array([[0, 1, 2], [3, 4.5, -0.0], [6, np.nan, 8]], dtype="f4")
IDENTITY = "exceptions are equal to themselves only, as all of Python's"


@pytest.fixture(scope="module")
def samples(tmp_path_factory):
    """An object of each class by its name."""
    folder = tmp_path_factory.mktemp("kinds")
    for arguments in (["simulate", "A/20261121T081500Z", "--cars", "1", "--rate", "1000", "--points", "320"],
                      ["simulate", "shots", "--calibration", "2", "--profiles", "2", "--turn", "3,-2,4"]):
        (folder / arguments[1]).mkdir(parents=True)
        subprocess.run([os.environ["KXMATH_PROGRAM"], *arguments], cwd=folder, check=True, capture_output=True,
                       env={**os.environ, "LD_PRELOAD": ""})
    groups = kx.find_recordings(folder)
    place = pathlib.Path(groups[0].recordings[0]).parent
    run = kx.Pass(*groups[0].recordings, settings=place / "settings.ini", time=groups[0].time)
    result = run.measure(defects=place / "defects.ini")
    x = np.arange(0, 30, 0.25)
    flange = 28 * np.clip(1 - np.abs(np.arange(0, 135, 0.25) - 16) / 16.5, 0, 1) ** 0.6
    wheel = kx.Profile.from_xy(np.arange(0, 135, 0.25), flange - (np.arange(0, 135, 0.25) - 70) / 20)
    rail = kx.Profile.from_xy(x * 2, 300 - np.sqrt(300**2 - (x * 2 - 35) ** 2) + np.clip(8 - x * 2, 0, None) ** 2 / 4)
    scan = kx.ProfileSet(kx.Profile.from_xy(x, np.where((x > 8) & (x < 22) & (10 < i < 50), 7.5, 2.0), z=i)
                         for i in range(64))
    with open(folder / "scan.bin", "wb") as file:
        for profile in scan:
            profile.save(folder / "one.profiles")
            file.write((folder / "one.profiles").read_bytes())
    grid = kx.measure_grid(folder / "scan.bin", step=0.5)
    info = kx.file_info(folder / "scan.bin")
    objects = [
        kx.Profile(XYZ[:, 1:], z=4.5), kx.Cloud(XYZ), kx.ColourCloud(XYZ, np.arange(9, dtype="u1").reshape(3, 3)),
        kx.Line(1.5, float("nan")), kx.Circle(1, 2, 3), kx.Plane(1, 2, 3, float("nan")), kx.Vector(-0.0, 1),
        kx.Point(1, 2), kx.Point3(1, 2, 3), kx.Range(1, 2, 3, 4), kx.Range3(1, 2, 3, 4, 5, 6),
        kx.Apexes(kx.Profile(XYZ[:, :2]), [kx.Line(1, 2)]), kx.Joint(kx.Point(1, 2), kx.Point(3, 4)),
        kx.Cloud(XYZ).extract(x=(1, 4)), kx.Place(byte=7), scan, kx.Recording.open(folder / "scan.bin"),
        scan.to_arrays(), grid, grid.map, grid.patches[0], info, groups, groups[0], groups[0].recordings[0], run, result,
        kx.calibrate(sorted((folder / "shots").glob("*.bin")), placement=2, side="larger-y"), kx.WheelProfile(wheel),
        kx.WheelProfile(wheel).measure(), kx.conicity(wheels=(wheel, wheel), rails=(rail, rail), gauge=1435,
                                                      back_to_back=1360),
        kx.fit_station([(run.recordings, [None, *(pair["distance"] for pair in result["pairs"][1:])])]),
        kx.check_settings(place / "settings.ini"), kx.SettingsFinding(True, "SN", "is missing"), kx.setting_keys()[0],
        kx.limit_measures()[0], kx.Error("a"), kx.FileError("a", kx.Place(1), "is bad"), kx.NoResult("none"),
        kx.FileMissing("a", kx.Place(), "does not exist"), kx.ArgumentError("wrong"), kx.ReadingWarning("commas")]
    return {type(item).__name__: item for item in objects}


def shown(item):
    """What an object shows of itself in all ways."""
    pages = []
    if hasattr(item, "report"):
        pages.append(item._made.page())
    if hasattr(item, "curve"):
        pages += [item.curve.to_numpy().tobytes(), item.interval_at(3.0)]
    if isinstance(item, (kx.StationFit, kx.Calibration)):
        pages.append(item.with_settings())
    return [repr(item), str(item), *pages]


@pytest.mark.parametrize("name", [name for name in kx.__all__ if isinstance(getattr(kx, name), type)])
def test_kinds_are_values(name, samples):
    item = samples[name]
    assert type(item) is getattr(kx, name) and " object at " not in repr(item)
    for twin in (copy.copy(item), copy.deepcopy(item), pickle.loads(pickle.dumps(item, 2)),
                 pickle.loads(pickle.dumps(item))):
        assert type(twin) is type(item) and shown(twin) == shown(item)
        assert vars(twin).keys() == vars(item).keys() if hasattr(item, "__dict__") else not hasattr(twin, "__dict__")
        if isinstance(item, Exception):
            assert twin.args == item.args and twin != item, IDENTITY
        else:
            assert twin == item and not twin != item
    assert item != 3 and not item == 3


def test_a_difference_of_one_bit_is_one(samples):
    arrays = samples["Arrays"]
    arrays.points[2, 1] = np.nextafter(arrays.points[2, 1], np.float32(9))
    assert arrays != samples["ProfileSet"].to_arrays() and arrays != arrays[:2]
    state = samples["StationFit"]._made.__getstate__()
    for damaged in (state[:-1], (b"", 7, *state[2:]), (*state[:2], "x", *state[3:]), (1, *state[1:])):
        with pytest.raises((ValueError, TypeError, RuntimeError)):
            samples["StationFit"]._made.__class__.__new__(samples["StationFit"]._made.__class__).__setstate__(damaged)
    other = copy.deepcopy(samples["StationFit"])
    changed = (*state[:2], np.nextafter(np.float32(state[2]), np.float32(0)).item(), *state[3:])
    other._made = samples["StationFit"]._made.__class__.__new__(samples["StationFit"]._made.__class__)
    other._made.__setstate__(changed)
    assert other != samples["StationFit"]
