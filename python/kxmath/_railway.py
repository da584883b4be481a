"""Measurements of wheels and trains: the same values as the commands print."""
from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Mapping, Sequence
from typing import TYPE_CHECKING, Any, Union

from . import _kxmath
from ._errors import ArgumentError, NoResult
from ._kxmath import Cloud, Profile
from ._results import Result

if TYPE_CHECKING:
    import pandas

__all__ = ["Calibration", "Conicity", "Pass", "PassResult", "WheelProfile", "WheelResult", "calibrate",
           "calibration_ridges", "conicity", "measure_rim", "measure_wheels", "to_track"]

Path = Union[str, bytes, "os.PathLike[Any]"]
Progress = Callable[[str, float], object]
Limit = tuple[Union[float, None], Union[float, None]]


class PassResult(Result):
    """What was measured in the pass of a train."""

    _type = _kxmath._PassResult

    @property
    def distances(self) -> pandas.DataFrame:
        """A row for each wheel pair: its distance, its verdict, or the reason why there is none."""
        import pandas
        return pandas.json_normalize([{k: v for k, v in pair.items() if k != "sides"} for pair in self["pairs"]])

    @property
    def wheels(self) -> pandas.DataFrame:
        """A row for each wheel that a sensor saw: of which pair, on which side, and what was found on it."""
        import pandas
        rows = []
        for pair in self["pairs"]:
            rows += [{"pair": pair["pair"], "side": number, **side}
                     for number, side in enumerate(pair["sides"], 1) if side is not None]
        return pandas.json_normalize(rows)

    def values(self, measure: str) -> tuple[list[dict[str, Any]], dict[str, float]]:
        """The values of a measure with pair, side, bogie, vehicle, interval, reason, verdict and isDoubtful; its limits.

        Of distances, yaws and what contours give they are there without limits, too; their verdict is then "ok" or
        "out" of the tolerance, or "not judged". Missing values are None and "not measured". kx.NoResult where there are
        none, kx.ArgumentError for an unknown measure.
        """
        return _pass_values(self, measure)

    def plot(self, measure: str = "backToBack", ax: Any = None, **options: Any) -> Any:
        """Draws the values of a measure by axle with intervals, verdicts and limits with matplotlib. Returns the axes.

        Doubtful verdicts are hollow marks; crosses on the axis are wheels and axles without a value. See values().
        """
        from ._plots import pass_result
        return pass_result(self, measure, ax, **options)

    def __repr__(self) -> str:
        return f"<kxmath.PassResult: {len(self['pairs'])} pairs, {self['distances']} distances>"

    def _repr_html_(self) -> str:
        from ._html import pass_result
        return pass_result(self)


def _pass_values(result: PassResult, measure: str) -> tuple[list[dict[str, Any]], dict[str, float]]:
    if measure not in {known[0] for known in _kxmath._limit_measures()}:
        raise ArgumentError(f"no measure is called {measure!r}; kx.limit_measures() lists them", key="measure")
    assessment = result["assessment"] or {"values": [], "limits": []}
    if judged := [value for value in assessment["values"] if value["measure"] == measure]:
        limits = judged[0]["limits"]
        same = all(value["limits"] == limits for value in judged) # else each class of wheels has its own
        return judged, {name: limit for name, limit in limits.items() if limit is not None} if same else {}
    limits = {}
    rows: list[tuple[int, Any, Any, Any, Any, Any]] = [] # pair, side, value, interval, whether it is in, reason
    if measure == "backToBack":
        rows = [(p["pair"], None, p["distance"], p["interval"], p["inTolerance"], p["reason"]) for p in result["pairs"]]
        if any(row[4] is not None for row in rows):
            nominal, tolerance = result["nominal"], result["tolerance"]
            limits = {"nominal - tolerance": nominal - tolerance, "nominal + tolerance": nominal + tolerance}
    elif measure == "yaw":
        rows = [(p["pair"], None, p["yaw"], p["yawInterval"], None, p["yawReason"]) for p in result["pairs"]]
    else:
        found = [(wheel, wheel["measures"].get(measure)) for wheel in result.to_dict().get("wheels") or []]
        rows = [(wheel["pair"], wheel["side"], value["value"], value["interval"], None, value["reason"])
                for wheel, value in found if value is not None]
    if not rows:
        raise NoResult(f"the pass has no values of {measure}; some are there with limits for it only")
    return [{"measure": measure, "pair": pair, "side": side, "bogie": None, "vehicle": None, "value": value,
             "interval": interval, "reason": reason, "isDoubtful": None,
             "verdict": "not measured" if value is None else {True: "ok", False: "out", None: "not judged"}[is_in]}
            for pair, side, value, interval, is_in, reason in rows], limits


class Pass:
    """The pass of a train: the recordings of its sensors and the settings of their station.

    Recordings are files named PREFIX_SERIAL.bin, or one folder with those of the sensors that the settings name. What recordings do not tell (`station`,
    `line`, `track`, `direction`, `time` in ISO 8601 with a zone, `speed` in km/h) stands in the result as it is given.
    `consist` is a list of the vehicles; `consist_order`, "listed" or "turned", which end of it passed first.
    """

    def __init__(self, *recordings: Path, settings: Path, station: str | None = None, line: str | None = None,
                 track: str | None = None, direction: str | None = None, time: str | None = None,
                 speed: float | None = None, consist: Path | None = None, consist_order: str | None = None) -> None:
        self.recordings = [os.fspath(recording) for recording in recordings]
        if consist_order not in (None, "listed", "turned"):
            raise ArgumentError(f"consist_order is 'listed' or 'turned', got {consist_order!r}", key="consist_order")
        self.settings = settings
        self.labels: dict[str, Any] = {"station": station, "line": line, "track": track, "direction": direction,
                                       "time": time, "speed": speed, "consist": consist,
                                       "consist_order": consist_order}

    def __repr__(self) -> str:
        return f"<kxmath.Pass: {', '.join(map(repr, self.recordings))}>"

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Pass):
            return NotImplemented
        return vars(self) == vars(other)

    __hash__ = None # type: ignore[assignment]

    def measure(self, *, defects: Path | None = None, mode: int = 0, nominal: float | None = None,
                tolerance: float = 3.0, shown_pairs: Sequence[int] = (1,), limits: Path | None = None,
                progress: Progress | None = None) -> PassResult:
        """Measures the distances and, with the settings `defects`, the treads and the roundness of the wheels.

        `progress` is called with each step and its completed part, 0 to 1; an exception that it raises ends the pass, and
        so does Ctrl-C. Other threads run meanwhile. The page draws `shown_pairs` and all pairs with a finding; with an
        empty sequence no pair.
        `limits` is a file of limits by which the values are judged; kx.limit_measures() lists what it may hold.
        """
        return PassResult(_kxmath._measure_pass(self.recordings, self.settings, defects, mode, nominal, tolerance,
                                                list(shown_pairs), limits, **self.labels, progress=progress))


class WheelResult(Result):
    """The measures of wheel profiles."""

    _type = _kxmath._WheelResults

    @property
    def wheels(self) -> pandas.DataFrame:
        """A row for each profile: its measures, their intervals and verdicts."""
        import pandas
        return pandas.json_normalize(self["wheels"])

    def __repr__(self) -> str:
        return f"<kxmath.WheelResult: {len(self['wheels'])} wheels>"

    def section(self, number: int = 0) -> Profile:
        """The points of a profile that were measured: x from the flange back, y from the tip of the flange, mm."""
        points = self.pictures()["wheels"][number]["measured"]
        return Profile.from_xy(points["x"], points["y"])

    def plot(self, number: int = 0, ax: Any = None, **options: Any) -> Any:
        """Draws a profile and its measures with matplotlib. Returns the axes. kx.NoResult where it was not read."""
        from ._plots import wheel
        return wheel(self, number, ax, **options)

    def _repr_html_(self) -> str:
        from ._html import wheel
        return wheel(self)


class WheelProfile:
    """The cross-section of a wheel: a file, a profile, or an array of its points."""

    def __init__(self, source: Any) -> None:
        self.source = source if isinstance(source, (str, bytes, os.PathLike, Profile)) else Profile(source)

    def __repr__(self) -> str:
        return f"<kxmath.WheelProfile: {self.source!r}>"

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, WheelProfile):
            return NotImplemented
        return bool(self.source == other.source)

    __hash__ = None # type: ignore[assignment]

    def measure(self, *, flange_back: float | None = None, spacing: float = 0.02,
                limits: Mapping[str, Limit] | None = None) -> WheelResult:
        """Measures flange and tread; `limits` are (low, high) by the keys of the measures, such as flangeHeight."""
        return measure_wheels([self.source], flange_back=flange_back, spacing=spacing, limits=limits)


def measure_wheels(wheels: Iterable[Any], *, flange_back: float | None = None, spacing: float = 0.02,
                   limits: Mapping[str, Limit] | None = None, progress: Progress | None = None) -> WheelResult:
    """Measures several wheel profiles, see WheelProfile."""
    sources = [WheelProfile(wheel).source if not isinstance(wheel, WheelProfile) else wheel.source for wheel in wheels]
    return WheelResult(_kxmath._measure_wheels(sources, flange_back, spacing, dict(limits or {}), progress))


def measure_rim(rim: Any, *, centre: tuple[float, float] = (0.0, 0.0),
                limits: Mapping[str, Limit] | None = None) -> WheelResult:
    """Measures the section of a rim in space, a kx.Cloud or an n x 3 array; `centre` is x and z of the wheel's centre."""
    return WheelResult(_kxmath._measure_rim(rim if isinstance(rim, Cloud) else Cloud(rim), centre, dict(limits or {})))


class Conicity(Result):
    """The equivalent conicity of a wheel-set on its track."""

    _type = _kxmath._ConicityResult

    @property
    def curve(self) -> pandas.Series:
        """The conicity by amplitude, mm; NaN where there is none."""
        import pandas
        points = self._made.curve
        return pandas.Series(points.y, pandas.Index(points.x, name="amplitude"), name="conicity")

    def __repr__(self) -> str:
        return f"<kxmath.Conicity: {len(self['conicity'])} amplitudes>"

    def at(self, amplitude: float) -> float:
        """The conicity at an amplitude, mm. kx.NoResult where there is none."""
        return self._made.at(amplitude)

    def interval_at(self, amplitude: float) -> tuple[float, float]:
        """Its 95 % interval; NaN where it is unknown."""
        return self._made.interval_at(amplitude)

    def plot(self, ax: Any = None, **options: Any) -> Any:
        """Draws the curve with matplotlib. Returns the axes."""
        from ._plots import conicity
        return conicity(self, ax, **options)

    def _repr_html_(self) -> str:
        from ._html import conicity
        return conicity(self)


def conicity(*, wheels: tuple[Any, Any], rails: tuple[Any, Any], gauge: float, back_to_back: float,
             gauge_depth: float = 14.0, radii: tuple[float, float] = (460.0, 460.0), amplitude: float = 3.0,
             smoothing: float | None = None,
             gauge_error: tuple[float, float, float] = (0.0, 0.0, 0.0)) -> Conicity:
    """The equivalent conicity of two wheels on two rails, each a file, a Profile or an array; lengths in mm.

    `gauge_error`: standard uncertainties of the gauge of the wheels and of that of the rails, of the place along x in
    mm, of the turn in mrad, and of all lengths in millionths; the intervals then contain them.

    Where nothing can be calculated, "reason" in the result says why.
    """
    sources = [WheelProfile(part).source for pair in zip(wheels, rails) for part in pair]
    if len(sources) != 4:
        raise ArgumentError("a wheel-set has two wheels and two rails", key="wheels")
    return Conicity(_kxmath._measure_conicity(sources, gauge, back_to_back, gauge_depth, *radii, amplitude, smoothing,
                                              gauge_error))


class Calibration(Result):
    """The pose of a sensor, from profiles of the calibration object."""

    _type = _kxmath._CalibrationResult

    def __repr__(self) -> str:
        return f"<kxmath.Calibration: {self.reason or self['pose']}>"

    @property
    def reason(self) -> str:
        """Why there is no pose; empty where there is one."""
        return self._made.reason

    def plot(self, shot: int = 0, ax: Any = None, **options: Any) -> Any:
        """Draws a profile by flanks and the object fitted to it with matplotlib. Returns the axes. kx.NoResult without a pose."""
        from ._plots import calibration
        return calibration(self, shot, ax, **options)

    def _repr_html_(self) -> str:
        from ._html import calibration
        return calibration(self)

    def with_settings(self, text: str = "", *, sensor: int = 1) -> str:
        """The text of a settings file with the pose of sensor n; all else of it stays. kx.NoResult without a pose."""
        return self._made.with_settings(text, sensor)

    def store(self, path: Path, *, sensor: int = 1, progress: Progress | None = None) -> None:
        """Puts the pose of sensor n into a settings file, which is made where there is none. kx.NoResult without a pose."""
        self._made.store(path, sensor, progress)


def calibrate(shots: Iterable[Any], *, placement: int, side: str | None = None, sensor_y: float | None = None,
              oblique_crest: str | None = None, moved: Sequence[Sequence[float]] | None = None,
              progress: Progress | None = None, **measures: float) -> Calibration:
    """The pose of a sensor from profiles of the calibration object: files with one or more each, Profiles or arrays.

    `side` is "smaller-y" or "larger-y": where the sensor stands, seen from the crests; or `sensor_y` is its y, mm,
    roughly. `oblique_crest` is "above" or "below" the straight ones. `moved` says for each file, Profile or array how
    far the object was moved along x, y and z, mm. `measures` of the object: pitch, slope, obliqueness, crest_y.
    """
    for name, value, words in (("side", side, ("smaller-y", "larger-y")),
                               ("oblique_crest", oblique_crest, ("above", "below"))):
        if value is not None and value not in words:
            raise ArgumentError(f"{name} is {words[0]!r} or {words[1]!r}, got {value!r}", key=name)
    unknown = set(measures) - {"pitch", "slope", "obliqueness", "crest_y"}
    if unknown:
        raise TypeError(f"no measure of the object is called {sorted(unknown)[0]!r}")
    shots = list(shots)
    moves = [tuple(map(float, move)) for move in moved] if moved is not None else [(0.0, 0.0, 0.0)] * len(shots)
    if len(moves) != len(shots):
        raise ArgumentError(f"{len(moves)} moves for {len(shots)} shots", key="moved")
    profiles = []
    for number, (shot, move) in enumerate(zip(shots, moves), 1):
        if isinstance(shot, (str, bytes, os.PathLike)):
            name, read = os.fsdecode(shot), _kxmath._read_profiles(shot)
            names = [name] if len(read) == 1 else [f"{name}, profile {i}" for i in range(1, len(read) + 1)]
            profiles += [(name, profile, move) for name, profile in zip(names, read)]
        else:
            profiles.append((f"shot {number}", Profile(shot), move))
    return Calibration(_kxmath._measure_poses(profiles, placement, side, sensor_y, oblique_crest, measures, progress))


def calibration_ridges(*, pitch: float = 24.0, obliqueness: float = 0.25) -> list[tuple[float, float]]:
    """The ridges of the calibration object along z: where each crest is at x = 0, mm, and how much it rises per mm of x."""
    return _kxmath._ridges(pitch, obliqueness)


def to_track(profile: Any, pose: Mapping[str, float]) -> Cloud:
    """The points of a profile, or of an array, in the track frame; NaN where the pose has NaN.

    `pose` holds x, y, z, mm, and alpha, beta, gamma, degrees, as `kx.calibrate(...)["pose"]` does. KeyError without one.
    """
    values = {name: float("nan") if pose[name] is None else float(pose[name])
              for name in ("x", "y", "z", "alpha", "beta", "gamma")}
    return _kxmath._to_track(Profile(profile), values)
