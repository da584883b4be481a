"""Measurements of wheels and trains: the values of the commands, to the last bit of their JSON."""
import json
import os
import pathlib
import pickle
import re
import signal
import subprocess
import threading

import numpy as np
import pytest

import kxmath as kx

PROGRAM = os.environ["KXMATH_PROGRAM"]


def run(folder, *arguments):
    output = subprocess.run([PROGRAM, *map(str, arguments)], cwd=folder, capture_output=True, text=True,
                            env={**os.environ, "LD_PRELOAD": ""})
    assert output.returncode in (0, 1, 5), output.stderr
    return output.stdout


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    folder = tmp_path_factory.mktemp("pass")
    run(folder, "simulate", ".", "--cars", 1, "--rate", 1000, "--points", 320)
    run(folder, "simulate", "shots", "--calibration", 2, "--profiles", 2, "--turn", "3,-2,4")
    return folder


@pytest.fixture(scope="module")
def train(folder):
    return kx.Pass(folder / "train_101.bin", folder / "train_102.bin", settings=folder / "settings.ini", station="A12",
                   time="2026-11-21T08:15Z")


def differences(a, b, place=""):
    """Where two documents differ, but for the names of files, which are as the caller gave them."""
    if isinstance(a, dict) and isinstance(b, dict):
        return [d for key in sorted(a.keys() | b.keys())
                for d in differences(a.get(key, "absent"), b.get(key, "absent"), f"{place}.{key}")]
    if isinstance(a, list) and isinstance(b, list) and len(a) == len(b):
        return [d for i, (p, q) in enumerate(zip(a, b)) for d in differences(p, q, f"{place}[{i}]")]
    is_name = isinstance(a, str) and isinstance(b, str) and pathlib.PurePath(a).name == pathlib.PurePath(b).name
    return [] if a == b and type(a) is type(b) or is_name else [f"{place}: {a} {b}"]


def test_a_pass_is_that_of_the_command(folder, train, tmp_path):
    arguments = ["train", "train_101.bin", "train_102.bin", "--settings", "settings.ini", "--defects", "defects.ini",
                 "--out", tmp_path, "--keep", "none", "--json", "-", "--station", "A12", "--time",
                 "2026-11-21T08:15Z"]
    wanted = json.loads(run(folder, *arguments))
    result = train.measure(defects=folder / "defects.ini")
    assert [d for d in differences(wanted, result.to_dict()) if not d.startswith(".folder")] == []
    frame = result.distances
    assert frame["distance"].tolist() == [pair["distance"] for pair in wanted["pairs"]] and len(frame) == 4
    wheels = result.wheels
    assert len(wheels) == 8 and set(wheels["side"]) == {1, 2} and wheels["profiles"].min() > 0
    result.report(tmp_path / "pass.html")
    assert "<svg" in (tmp_path / "pass.html").read_text()
    assert result == kx.PassResult.from_json(result.to_json(pictures=True))
    with pytest.raises(kx.FileError):
        kx.PassResult.from_json("{")


def test_a_folder_holds_a_pass(folder, tmp_path):
    for name in ("train_101.bin", "train_102.bin"):
        (tmp_path / name).symlink_to(folder / name)
    run = kx.Pass(tmp_path, settings=folder / "settings.ini")
    assert run.measure()["distances"] == 4 and str(tmp_path) in repr(run)


def test_progress_is_reported_and_ends_the_work(train):
    steps = []
    train.measure(progress=lambda step, part: steps.append((step, part)))
    assert steps and all(step and 0 <= part <= 1 for step, part in steps)

    def give_up(step, part):
        raise KeyError("enough")

    with pytest.raises(KeyError):
        train.measure(progress=give_up)


def test_control_c_ends_a_pass(train):
    def interrupt(step, part):
        signal.raise_signal(signal.SIGINT)

    with pytest.raises(KeyboardInterrupt):
        train.measure(progress=interrupt)


def test_threads_measure_at_once(train):
    wanted, found = train.measure().to_json(), []
    threads = [threading.Thread(target=lambda: found.append(train.measure().to_json())) for _ in range(3)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [wanted] * 3


def test_failures_of_a_pass(folder, train):
    with pytest.raises(kx.FileMissing):
        kx.Pass(folder / "train_101.bin", folder / "train_9.bin", settings=folder / "settings.ini").measure()
    with pytest.raises(kx.FileMissing):
        kx.Pass(*train.recordings, settings=folder / "missing.ini").measure()
    with pytest.raises(kx.ArgumentError):
        kx.Pass(*train.recordings, settings=folder / "settings.ini", time="yesterday").measure()
    with pytest.raises(kx.ArgumentError):
        train.measure(tolerance=-1.0)


def wheel_and_rail():
    """A conical tread behind a flange, and a round rail head; y down, x outwards."""
    x = np.arange(0, 135, 0.25)
    flange = 28 * np.clip(1 - np.abs(x - 16) / 16.5, 0, 1) ** 0.6
    wheel = np.column_stack([x, flange - (x - 70) / 20])
    r = np.arange(0, 70, 0.25)
    rail = np.column_stack([r, 300 - np.sqrt(300**2 - (r - 35) ** 2) + np.clip(8 - r, 0, None) ** 2 / 4])
    return kx.Profile(wheel), kx.Profile(rail)


def test_wheels_and_conicity_are_those_of_the_commands(tmp_path):
    wheel, rail = wheel_and_rail()
    for name, profile in (("wheel.bin", wheel), ("rail.bin", rail)):
        profile.save(tmp_path / name)
    (tmp_path / "wheel.csv").write_text("".join(f"{x};{y}\n" for x, y in wheel.points.tolist()).replace(".", ","))
    with pytest.warns(kx.ReadingWarning, match="decimal sign") as told:
        text = kx.WheelProfile(tmp_path / "wheel.csv").measure()
    assert text["wheels"][0]["flangeHeight"] is not None and [w.filename for w in told] == [__file__]
    with pytest.warns(kx.ReadingWarning) as told:
        kx.conicity(wheels=(wheel, tmp_path / "wheel.csv"), rails=(rail, rail), gauge=1435, back_to_back=1360)
    assert [w.filename for w in told] == [__file__]
    wanted = json.loads(run(tmp_path, "wheel", "wheel.bin", "--json", "-"))
    file, memory = kx.WheelProfile(tmp_path / "wheel.bin").measure(), kx.WheelProfile(wheel.points).measure()
    assert differences(wanted, file.to_dict()) == []
    assert differences({**wanted["wheels"][0], "file": ""}, memory["wheels"][0]) == []
    assert len(kx.measure_wheels([wheel, tmp_path / "wheel.bin"]).wheels) == 2
    limited = kx.WheelProfile(wheel).measure(limits={"flangeHeight": (None, 1.0)})
    assert limited["wheels"][0]["verdict"] == "outside"
    with pytest.raises(ValueError):
        kx.WheelProfile(wheel).measure(limits={"what": (1, 2)})

    wanted = json.loads(run(tmp_path, "conicity", "--wheel1", "wheel.bin", "--wheel2", "wheel.bin", "--rail1",
                            "rail.bin", "--rail2", "rail.bin", "--gauge", 1435, "--back-to-back", 1360, "--json", "-"))
    files = kx.conicity(wheels=(tmp_path / "wheel.bin",) * 2, rails=(tmp_path / "rail.bin",) * 2, gauge=1435,
                        back_to_back=1360)
    assert differences(wanted, files.to_dict()) == []
    memory = kx.conicity(wheels=(wheel, wheel), rails=(rail, rail.points), gauge=1435, back_to_back=1360)
    assert memory.curve.equals(files.curve) and memory.curve.index.name == "amplitude"
    assert len(files.curve) == len(wanted["conicity"]) > 50
    assert abs(files.at(3.0) - 0.05) < 1e-4 and files.interval_at(3.0)[0] <= files.at(3.0) # a cone of 1 : 20
    with pytest.raises(kx.NoResult):
        files.at(99.0)


def test_the_section_of_a_rim_is_that_of_the_command(tmp_path):
    points = np.asarray(wheel_and_rail()[0])
    rim = kx.Cloud(np.column_stack([460 - points[:, 0], -points[:, 1], 0 * points[:, 0]]))
    rim.save(tmp_path / "rim.bin")
    wanted = json.loads(run(tmp_path, "wheel", "rim.bin", "--json", "-"))["wheels"][0]
    found = kx.measure_rim(rim)
    assert found["wheels"][0]["flangeHeight"] is not None
    assert differences({**wanted, "file": ""}, found["wheels"][0]) == []
    assert kx.measure_rim(rim.points, centre=(3, 0), limits={"flangeHeight": (None, 1)})["wheels"][0]["verdict"] == "outside"


def test_a_grid_is_that_of_the_command(tmp_path):
    x = np.arange(0, 30, 0.25)
    plates = [kx.Profile.from_xy(x, np.where((x > 8) & (x < 22) & (10 < i < 50), 7.5, 2.0), z=i) for i in range(64)]
    with open(tmp_path / "scan.bin", "wb") as file:
        for plate in plates:
            plate.save(tmp_path / "one.profiles")
            file.write((tmp_path / "one.profiles").read_bytes())
    wanted = json.loads(run(tmp_path, "grid", "scan.bin", "--step", 0.5, "--json", "-"))
    found = kx.measure_grid(tmp_path / "scan.bin", step=0.5)
    assert differences(wanted, found.to_dict()) == [] and len(found.patches) == len(wanted["seeds"]) > 0
    assert found.map.shape == (wanted["rows"], wanted["columns"]) and found.patches[0].cells == len(found.patches[0].cloud)
    assert pickle.loads(pickle.dumps(found)).map == found.map
    bare = kx.GridResult.from_json(found.to_json())
    assert f"{wanted['columns']} columns" in bare._repr_html_()
    for failing in (lambda: bare.map, bare.plot):
        with pytest.raises(kx.NoResult, match="no heights"):
            failing()
    found.report(tmp_path / "grid.html")
    assert "<svg" in (tmp_path / "grid.html").read_text()


def test_settings_are_found_checked_and_stored(folder, train, tmp_path):
    known = [pair["distance"] for pair in train.measure()["pairs"]]
    fit = kx.fit_station([(train.recordings, [None, *known[1:]])])
    run(folder, "settings", "fit", *train.recordings, "--distance", ",".join(["-", *(repr(d) for d in known[1:])]),
        "--write", tmp_path / "wanted.ini")
    assert fit.reason == "" and [s["serial"] for s in fit.sensors] == [101, 102] and len(fit.pairs) == 4
    assert fit.with_settings() == (tmp_path / "wanted.ini").read_text() and fit.rms <= fit.largest or fit.rms < 1e-3
    fit.store(tmp_path / "fitted.ini")
    assert (tmp_path / "fitted.ini").read_text() == fit.with_settings()
    assert kx.Pass(*train.recordings, settings=tmp_path / "fitted.ini").measure()["distances"] == 4
    check = kx.check_settings(tmp_path / "fitted.ini", train.recordings)
    assert not check.is_refused and check.facts
    fit.report(tmp_path / "fit.html")
    assert "<svg" in (tmp_path / "fit.html").read_text()
    (tmp_path / "bad.ini").write_text("[SENSOR1]\nSN=101\nlevel_k=x\n")
    bad = kx.check_settings(tmp_path / "bad.ini")
    assert bad.is_refused and "SENSOR1/level_k" in [finding.key for finding in bad.findings]
    with pytest.raises(ValueError, match="'station' or 'defects'"):
        kx.new_settings("what")
    assert kx.new_settings(serials=(101, 102)) == run(folder, "settings", "init", "--serials", "101,102")
    assert {"level_k", "calibrLines2"} <= {key.name for key in kx.setting_keys()}


def test_values_are_judged_by_limits(folder, train, tmp_path):
    assert "backToBack" in [m.name for m in kx.limit_measures() if m.of == "axle"]
    (tmp_path / "limits.ini").write_text("[backToBack]\nalarmLow = 1400\n")
    wanted = json.loads(run(folder, "train", "train_101.bin", "train_102.bin", "--settings", "settings.ini", "--out",
                            tmp_path / "out", "--limits", tmp_path / "limits.ini", "--json", "-"))
    found = train.measure(limits=tmp_path / "limits.ini")
    assert found["assessment"] == wanted["assessment"] is not None
    with pytest.raises(kx.FileError):
        train.measure(limits=folder / "settings.ini")


def test_pictures_in_notebooks_and_of_matplotlib(train, tmp_path):
    import matplotlib
    matplotlib.use("Agg")
    wheel, rail = wheel_and_rail()
    wheels = kx.measure_wheels([wheel, tmp_path / "a<b>.bin"])
    curve = kx.conicity(wheels=(wheel, wheel), rails=(rail, rail), gauge=1435, back_to_back=1360)
    scan = kx.ProfileSet([wheel.shift(dy=i) for i in range(5)])
    for item in (wheels, curve, scan, wheel):
        assert item.plot().get_xlabel().endswith("mm") and re.search("<svg|<img", item._repr_html_())
    names = [text.get_text() for text in wheels.plot().texts]
    assert "Sh" in names and "Sd" in names
    with pytest.raises(kx.NoResult):
        wheels.plot(1)
    unread = kx.measure_wheels([tmp_path / "a<b>.bin"])
    assert "<b>" not in unread._repr_html_() and "<p>" in unread._repr_html_()
    assert train.measure()._repr_html_().count("<tr>") == 5 and scan.to_cloud().plot().collections
    for empty in (kx.Cloud(), kx.ColourCloud([], np.zeros((0, 3), "u1")), kx.ProfileSet()):
        assert empty._repr_html_().startswith("<pre>&lt;") and empty.plot() is not None


def test_a_pass_is_drawn_with_its_verdicts(folder, train, tmp_path):
    def marks(result, *measure):
        """How many values each label of the legend stands for."""
        return {line.get_label(): len(line.get_xdata()) for line in result.plot(*measure).lines if line.get_label()[0] != "_"}

    result = train.measure(nominal=1359.0, tolerance=1.0)
    values, limits = result.values("backToBack")
    assert [value["value"] for value in values] == result.distances["distance"].tolist() and len(limits) == 2
    outside = sum(not 1358 <= value["value"] <= 1360 for value in values)
    assert marks(result) == {"ok": 4 - outside, "out": outside, "nominal - tolerance": 2, "nominal + tolerance": 2}
    heights = [value["value"] for value in result.values("flangeHeight")[0]]
    assert marks(result, "flangeHeight") == {"not judged": len(heights) - heights.count(None)} | (
        {"not measured": heights.count(None)} if None in heights else {})
    assert marks(result, "rimWidth") == {"not measured": 8} and not len(result.plot("rimWidth").get_yticks())
    (tmp_path / "limits.ini").write_text("[backToBack]\nalarmLow = 1400\n[diameterDifferenceBogie]\nalarmHigh = 50\n")
    judged = train.measure(limits=tmp_path / "limits.ini")
    assert marks(judged) == {"alarm": 4, "alarmLow": 2}
    ticks = [text.get_text() for text in judged.plot("diameterDifferenceBogie").get_xticklabels()]
    assert ticks == ["vehicle 1, bogie 1", "vehicle 1, bogie 2"]
    with pytest.raises(kx.NoResult, match="roundness"):
        result.plot("roundness")
    with pytest.raises(kx.ArgumentError, match="'height'"):
        result.plot("height")
    fit = kx.fit_station([(train.recordings, [value["value"] for value in values])])
    assert [line.get_label() for line in fit.plot(1).lines][:3] == ["points", "reference", "level"]


@pytest.mark.parametrize("placement, side", [(2, "larger-y"), (3, "smaller-y")])
def test_a_calibration_is_drawn_on_its_object(placement, side, tmp_path):
    run(tmp_path, "simulate", ".", "--calibration", placement, "--profiles", 1, "--turn", "2,1,-3")
    found = kx.calibrate([tmp_path / "calibration-1.bin"], placement=placement, side=side)
    ax = found.plot()
    fitted = [line for line in ax.lines if line.get_color() == "black"]
    assert len(fitted) == 8 and "95 % interval" in found._repr_html_()
    for line in fitted[:6]: # the straight flanks: the drawing falls and rises by the slope of the object
        assert np.allclose(np.abs(np.diff(line.get_ydata()) / np.diff(line.get_xdata())), 1.2, atol=1e-3)
    bare = kx.Calibration.from_json(found.to_json())
    none = kx.calibrate([np.column_stack([np.arange(90), np.zeros(90)])], placement=placement, side=side)
    for failing, says in ((bare, "no points"), (none, "0 apexes")):
        with pytest.raises(kx.NoResult, match=says):
            failing.plot()


def test_a_pose_is_that_of_the_command(folder, tmp_path):
    shots = sorted((folder / "shots").glob("*.bin"))
    assert len(shots) == 2
    arguments = [*shots, "--position", 2, "--side", "larger-y", "--json", "-"]
    wanted = json.loads(run(folder, "calibrate", *arguments))
    found = kx.calibrate(shots, placement=2, side="larger-y")
    assert [d for d in differences(wanted, found.to_dict()) if not d.startswith(".warnings[0]")] == []
    assert "oblique_crest" in found["warnings"][0] and found.reason == ""
    assert kx.calibrate(shots, placement=2, side="larger-y", oblique_crest="above")["warnings"] == []
    run(folder, "calibrate", *arguments[:-2], "--write", tmp_path / "wanted.ini", "--sensor", 2)
    found.store(tmp_path / "found.ini", sensor=2)
    assert (tmp_path / "found.ini").read_text() == (tmp_path / "wanted.ini").read_text() == found.with_settings(sensor=2)
    assert [crest for crest, _ in kx.calibration_ridges()] == [-48, -24, 0, 24, 60, 96]
    with open(tmp_path / "both.profiles", "wb") as file:
        for shot in shots:
            kx.Profile(kx.read(shot), z=0).save(tmp_path / "one.profiles")
            file.write((tmp_path / "one.profiles").read_bytes())
    wanted_both = json.loads(run(tmp_path, "calibrate", "both.profiles", *arguments[2:]))
    both = kx.calibrate([tmp_path / "both.profiles"], placement=2, side="larger-y").to_dict()
    assert both["pose"] == wanted_both["pose"] == wanted["pose"] and len(both["profiles"]) == 2
    memory = kx.calibrate([kx.read(shot) for shot in shots], placement=2, side="larger-y")
    assert memory["pose"] == wanted["pose"]
    cloud = kx.to_track(kx.read(shots[0]), found["pose"])
    distance = np.abs(cloud.z[np.abs(cloud.z) < 24]) # between the straight crests the flanks fall by 1.2 mm per mm
    depth = -cloud.y[np.abs(cloud.z) < 24]
    assert len(depth) > 100 and np.abs(depth - 1.2 * np.minimum(distance, 24 - distance)).max() < 0.3
    with pytest.raises(KeyError):
        kx.to_track(kx.read(shots[0]), {"x": 0})
    for failing in (lambda: kx.calibrate(shots, placement=2), lambda: kx.calibrate(shots, placement=2, side="left")):
        with pytest.raises(kx.ArgumentError):
            failing()


def test_recordings_are_found_and_measured_by_their_layout(folder, tmp_path):
    place = tmp_path / "A12" / "20261121T081500Z"
    place.mkdir(parents=True)
    for serial in (101, 102):
        (place / f"train_{serial}.bin").write_bytes((folder / f"train_{serial}.bin").read_bytes())
    (tmp_path / os.fsdecode(b"m\xfcller")).mkdir()
    groups = kx.find_recordings(tmp_path)
    (group,) = groups
    assert (group.station, group.time) == ("A12", "2026-11-21T08:15:00Z")
    assert [(r.path, r.serial, r.size, r.changed) for r in group.recordings] == [
        (str(path), serial, path.stat().st_size, path.stat().st_ctime_ns)
        for serial, path in ((s, place / f"train_{s}.bin") for s in (101, 102))]
    assert groups.skipped == ((str(tmp_path / os.fsdecode(b"m\xfcller")),
                               "does not fit the layout: the name of a station must be UTF-8"),)
    result = kx.Pass(*group.recordings, settings=folder / "settings.ini", time=group.time).measure()
    assert result["distances"] == 4
    assert all(recording.is_whole() for recording in group.recordings)
    os.truncate(group.recordings[0], group.recordings[0].size - 1)
    assert not group.recordings[0].is_whole()
    with pytest.raises(kx.ArgumentError, match="needs {serial}"):
        kx.find_recordings(tmp_path, layout="{station}/{time}/a.bin")
    with pytest.raises(kx.FileError, match="does not exist"):
        kx.find_recordings(tmp_path / "gone")
    assert kx.find_recordings(tmp_path / "A12", layout="{time}/{prefix}_{serial}.bin")[0].station is None
