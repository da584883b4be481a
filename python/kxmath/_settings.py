"""Settings of measuring stations: what they hold, new ones, checks, and finding them from passes of known distances."""
from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple, Union

from . import _kxmath

if TYPE_CHECKING:
    import pandas

__all__ = ["LimitMeasure", "SettingKey", "SettingsCheck", "SettingsFinding", "StationFit", "check_settings",
           "fit_station", "limit_measures", "new_settings", "setting_keys"]

Path = Union[str, bytes, "os.PathLike[Any]"]
Progress = Callable[[str, float], object]


class SettingKey(NamedTuple):
    """What is known of a key of settings files."""

    name: str
    is_per_sensor: bool #: stands in the sections SENSORn, else before all sections
    is_whole: bool #: holds a whole number
    meaning: str
    unit: str #: empty for pure numbers
    default: float | None
    min: float #: the smallest value that has a sense
    max: float #: the largest
    needed: str #: "always", "mode 3", "defects"; empty: never
    settings: str #: which read it: "station", "defects", "both"; empty: other uses of the file
    words: list[str] #: holds one of these; empty: holds a number


class LimitMeasure(NamedTuple):
    """A measure that `Pass.measure(limits=...)` may have limits for."""

    name: str
    unit: str
    of: str #: "wheel", "axle", "bogie" or "vehicle"
    meaning: str
    min: float #: the smallest limit that has a sense
    max: float #: the largest


class SettingsFinding(NamedTuple):
    """What is wrong with settings."""

    is_refused: bool #: measuring refuses such settings; else it goes on, but something does not fit
    key: str #: "SENSOR1/level_k"; empty where it is about none
    text: str #: a sentence without its full stop


class SettingsCheck(NamedTuple):
    """What a check of settings says."""

    findings: list[SettingsFinding] #: empty: all fits
    facts: list[str] #: what was looked at, and what fits
    is_refused: bool #: measuring refuses the settings


def setting_keys() -> list[SettingKey]:
    """All keys that settings may hold."""
    return [SettingKey(*key) for key in _kxmath._setting_keys()]


def limit_measures() -> list[LimitMeasure]:
    """All measures of a pass that limits may be given for."""
    return [LimitMeasure(*measure) for measure in _kxmath._limit_measures()]


def new_settings(kind: str = "station", serials: Sequence[int] = ()) -> str:
    """The text of a new settings file with all keys, for two sensors. `kind` is "station" or "defects"."""
    return _kxmath._new_settings(kind, list(serials))


def check_settings(path: Path, recordings: Iterable[Path] = (), *, kind: str = "station", mode: int = 0,
                   progress: Progress | None = None) -> SettingsCheck:
    """Checks a settings file by itself and against recordings: none, one, or the two of each of several passes."""
    findings, facts, is_refused = _kxmath._check_settings(path, kind, list(recordings), mode, progress)
    return SettingsCheck([SettingsFinding(*finding) for finding in findings], facts, is_refused)


class StationFit:
    """The settings of a station, found from passes with known distances."""

    def __init__(self, made: Any) -> None:
        self._made = made

    @property
    def reason(self) -> str:
        """Why there are no settings; empty where there are."""
        return self._made.reason

    @property
    def warnings(self) -> list[str]:
        """What is doubtful."""
        return self._made.warnings

    @property
    def base_distance(self) -> float:
        """Between the reference lines of the sensors, mm; NaN where it was not found."""
        return self._made.base_distance

    @property
    def base_uncertainty(self) -> float:
        """It is known within so many mm to both sides, with a probability of 95 %; NaN with one distance."""
        return self._made.base_uncertainty

    @property
    def min_profiles_in_wheel(self) -> int:
        """Shorter runs of wheel profiles are no wheel."""
        return self._made.min_profiles_in_wheel

    @property
    def sensors(self) -> list[dict[str, Any]]:
        """Of each sensor its serial, its lines as kx.Line or None, the noise of its points, mm, and points of it."""
        return self._made.sensors

    @property
    def pairs(self) -> pandas.DataFrame:
        """A row for each wheel pair: pass, pair, given, measured and residual, mm; NaN where it is not known."""
        import pandas
        return pandas.DataFrame(self._made.pairs, columns=["pass", "pair", "given", "measured", "residual"])

    @property
    def rms(self) -> float:
        """Of the residuals, mm; NaN without one."""
        return self._made.rms

    @property
    def largest(self) -> float:
        """The largest residual by its size, mm; NaN without one."""
        return self._made.largest

    def with_settings(self, text: str = "", *, kind: str = "station") -> str:
        """The text of a settings file with what was found; all else of it stays. kx.FileError without settings."""
        return self._made.with_settings(text, kind)

    def store(self, path: Path, *, kind: str = "station", progress: Progress | None = None) -> None:
        """Puts what was found into a settings file, which is made where there is none."""
        self._made.store(path, kind, progress)

    def report(self, path: Path) -> None:
        """Writes the page of HTML that the command writes."""
        page = self._made.page()
        with open(path, "w", encoding="utf-8", newline="\n") as file:
            file.write(page)

    def plot(self, sensor: int = 0, ax: Any = None, **options: Any) -> Any:
        """Draws points of a sensor and the lines found for it with matplotlib. Returns the axes."""
        from ._plots import station_fit
        return station_fit(self, sensor, ax, **options)

    def __eq__(self, other: object) -> bool:
        """Whether both hold the same bits."""
        if not isinstance(other, StationFit):
            return NotImplemented
        return self._made.has_same_bits(other._made)

    __hash__ = None # type: ignore[assignment]

    def __repr__(self) -> str:
        found = self.reason or f"base distance {self.base_distance:g} mm, {self._made.known} known distances"
        return f"<kxmath.StationFit: {found}>"


def fit_station(passes: Iterable[tuple[Sequence[Path], Sequence[float | None]]], *, settings: Path | None = None,
                treads: bool = False, max_residual: float = 1.0, progress: Progress | None = None) -> StationFit:
    """Finds the settings of a station: `passes` are pairs of two recordings and the distances of all wheel pairs, mm.

    None is a distance that is not known. `settings` is a file whose filter of noise is kept; the result can be stored in
    it, or it is refused before the long work. With `treads` the lines for the judgement of treads are found, too.
    """
    known = [(list(recordings), [float("nan") if d is None else float(d) for d in distances])
             for recordings, distances in passes]
    if settings is not None and known:
        _kxmath._check_fit_target(settings, [int(_kxmath._recording_name(r)[1]) for r in known[0][0]])
    return StationFit(_kxmath._fit_station(known, settings, treads, max_residual, progress))
