"""Files, recordings and scans: profiles one after the other, read when they are asked for."""
from __future__ import annotations

import os
import sys
from collections.abc import Callable, Iterable, Iterator, Sequence
from typing import Any, NamedTuple, Union, overload

import numpy as np

from ._errors import ArgumentError
from ._heightmap import HeightMap
from ._kxmath import (Cloud, ColourCloud, Profile, _make_height_map, _read_arrays, _read_points, _RecordIndex,
                      _recording_name)

__all__ = ["Arrays", "ProfileSet", "Recording", "read", "read_arrays"]

Path = Union[str, bytes, "os.PathLike[Any]"]
Progress = Callable[[str, float], object]
BLOCK = 512 #: profiles that iteration reads at once at most


class Arrays(NamedTuple):
    """The points of several profiles: those of profile i are points[starts[i]:starts[i + 1]]."""

    points: np.ndarray[Any, Any] #: n x 2, float32, mm; yours to write
    starts: np.ndarray[Any, Any] #: one more than there are profiles, int64
    z: np.ndarray[Any, Any] #: the position of each profile, mm, float32; NaN where it is not known

    def __eq__(self, other: object) -> bool:
        """Whether both hold the same bits."""
        if not isinstance(other, Arrays):
            return False # tuples would compare the arrays by their elements
        return all(a.dtype == b.dtype and a.shape == b.shape and a.tobytes() == b.tobytes() for a, b in zip(self, other))

    def __ne__(self, other: object) -> bool:
        return not self == other

    def __hash__(self) -> int:
        raise TypeError("unhashable type: 'Arrays'")

    def __repr__(self) -> str:
        return f"<kxmath.Arrays: {len(self.points)} points of {len(self.z)} profiles>"


class ProfileSet(Sequence[Profile]):
    """Profiles in the order in which they were taken; of a file they are read when they are asked for.

    `len(scan)`, `scan[17]` a profile, `scan[100:200]` a set that shares the file. Of each record a file's set holds 12
    bytes, and the file open; it must stay as it is while the set is used: kx.FileError where records are not there any
    more.
    """

    def __init__(self, profiles: Iterable[Profile] = ()) -> None:
        self._profiles: Any = [self._checked(profile) for profile in profiles]
        self._picked: Sequence[int] = range(len(self._profiles))

    @staticmethod
    def _checked(profile: Profile) -> Profile:
        if not isinstance(profile, Profile):
            raise TypeError(f"a set holds profiles, got {type(profile).__name__}")
        return profile

    @classmethod
    def open(cls, path: Path, *, progress: Progress | None = None) -> ProfileSet:
        """The set of a file of profile records or 2-D cloud sections. kx.FileError tells byte and record of damage."""
        return cls._of(_RecordIndex(path, progress))

    @classmethod
    def _of(cls, records: Any, picked: Sequence[int] | None = None) -> ProfileSet:
        made = cls.__new__(cls)
        made._profiles = records
        made._picked = range(len(records)) if picked is None else picked
        return made

    def _profile(self, number: int) -> Profile:
        return self._profiles[number] if isinstance(self._profiles, list) else self._profiles.read(number)

    def __len__(self) -> int:
        return len(self._picked)

    @overload
    def __getitem__(self, index: int) -> Profile: ...
    @overload
    def __getitem__(self, index: slice) -> ProfileSet: ...

    def __getitem__(self, index):
        if isinstance(index, slice):
            return self._of(self._profiles, self._picked[index])
        return self._profile(self._picked[index])

    def __iter__(self) -> Iterator[Profile]:
        if isinstance(self._profiles, list):
            return (self._profiles[number] for number in self._picked)
        return self._iterate_file()

    def _iterate_file(self) -> Iterator[Profile]:
        numbers = self._numbers()
        first = 0
        block: list[Profile] = [] # of which those that nobody holds any more take the next points
        while first < len(numbers):
            block = self._profiles.read_some(numbers[first:first + BLOCK], block)
            first += len(block)
            yield from block

    def _numbers(self) -> np.ndarray[Any, Any]:
        """The numbers of the records in the file."""
        picked = self._picked
        if isinstance(picked, range): # which NumPy would walk through one by one
            return np.arange(picked.start, picked.stop, picked.step, dtype="i8")
        return np.asarray(picked, "i8")

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, ProfileSet):
            return NotImplemented
        return len(self) == len(other) and all(a == b for a, b in zip(self, other))

    __hash__ = None # type: ignore[assignment]

    def index(self, value: Any, start: int = 0, stop: int = sys.maxsize) -> int:
        """The number of the first profile with the same bits. ValueError where there is none."""
        return super().index(value, start, stop)

    def count(self, value: Any) -> int:
        """How many profiles have the same bits."""
        return super().count(value)

    def __reduce__(self) -> tuple[Any, ...]:
        if isinstance(self._profiles, list):
            return type(self), ([self._profiles[i] for i in self._picked],)
        return _reopened, (type(self), self._profiles.path, self._picked)

    def __repr__(self) -> str:
        place = "" if isinstance(self._profiles, list) else f" of {os.fspath(self._profiles.path)!r}"
        return f"<kxmath.{type(self).__name__}: {len(self)} profiles{place}>"

    def _repr_html_(self) -> str:
        from ._html import scan
        return scan(self)

    def plot(self, ax: Any = None, **options: Any) -> Any:
        """Draws the heights from above with matplotlib. Returns the axes."""
        from ._plots import scan
        return scan(self, ax, **options)

    @property
    def counts(self) -> np.ndarray[Any, Any]:
        """The number of points of each profile."""
        if isinstance(self._profiles, list):
            return np.array([len(self._profiles[i]) for i in self._picked], "i4")
        return self._profiles.counts[self._numbers()]

    @property
    def z(self) -> np.ndarray[Any, Any]:
        """The position of each profile, mm, float32; NaN where it is not known."""
        if isinstance(self._profiles, list):
            return np.array([np.nan if p.z is None else p.z for p in self], "f4")
        return self._profiles.positions(self._numbers())

    def to_arrays(self, *, progress: Progress | None = None) -> Arrays:
        """All points in one array, with the start of each profile in it."""
        if not isinstance(self._profiles, list):
            return Arrays(*self._profiles.arrays(self._numbers(), progress))
        starts = np.concatenate([[0], np.cumsum(self.counts, dtype="i8")]).astype("i8")
        points = np.concatenate([p.points for p in self]) if len(self) else np.zeros((0, 2), "f4")
        return Arrays(points, starts, self.z)

    def between(self, low: float, high: float) -> ProfileSet:
        """The profiles with low <= z <= high; those without a position are in no range."""
        z = self.z
        return self._of(self._profiles, [self._picked[i] for i in np.flatnonzero((z >= low) & (z <= high))])

    def with_positions(self, distance: float, first: float = 0.0) -> ProfileSet:
        """The profiles in memory, at first + i * distance, rounded once."""
        placed = []
        for i, profile in enumerate(self):
            placed.append(Profile(profile, z=float(np.float32(first + i * distance))))
        return type(self)(placed)

    def to_cloud(self) -> Cloud:
        """All points, with the position of their profile as z. Missing points come along."""
        points, starts, z = self.to_arrays()
        return Cloud(np.column_stack([points, np.repeat(z, np.diff(starts))]))

    def to_grid(self, step: float, gap: float | None = None, *, distance: float | None = None, first_z: float = 0.0,
                progress: Progress | None = None) -> HeightMap:
        """A height map: rows along z and columns along x, `step` apart, mm.

        The profiles are where they say, which must rise; or, with `distance`, at first_z + i * distance, whatever they
        say. Between points that are farther apart than `gap` there are no heights; by default it bridges one missing
        point. Points that are not finite are left out. kx.NoResult where the step gives fewer than 2 rows or columns.
        """
        if distance is not None:
            if not distance > 0:
                raise ArgumentError(f"the distance must be above 0, got {distance}", key="distance")
            profiles = list(self.with_positions(distance, first_z))
            regular = distance
        else:
            profiles = list(self)
            z = np.array([np.nan if p.z is None else p.z for p in profiles], "f4")
            if not (np.diff(z) > 0).all() or not np.isfinite(z).all():
                raise ArgumentError("the profiles have no positions that rise: say how far they are apart by `distance`",
                                    key="distance")
            steps = np.diff(z)
            regular = float(steps[0]) if len(steps) and (steps == steps[0]).all() else np.nan
        return HeightMap(_make_height_map(profiles, regular, step, gap, progress))


class Recording(ProfileSet):
    """The recording of one sensor, named PREFIX_SERIAL.bin. See ProfileSet."""

    @property
    def name(self) -> str:
        """The name of the file without its folder and ending."""
        return os.fspath(_recording_name(self._profiles.path)[0])

    @property
    def serial(self) -> int:
        """The serial number of the sensor; 0 when the name holds none."""
        return int(_recording_name(self._profiles.path)[1])


def _reopened(kind: type[ProfileSet], path: Path, picked: Sequence[int]) -> ProfileSet:
    return kind._of(_RecordIndex(path, None), picked)


def read_arrays(path: Path, *, progress: Progress | None = None) -> Arrays:
    """All points of a file of profile records or 2-D cloud sections in one array: the fastest way to read it.

    kx.FileError tells byte and record of damage.
    """
    return Arrays(*_read_arrays(path, progress))


def read(path: Path, *, kind: str | None = None, columns: Sequence[int] = (), separator: str | None = None,
         decimal_sign: str | None = None) -> Profile | Cloud | ColourCloud | ProfileSet:
    """What is in a file, told by its content: a Profile, a Cloud, a ColourCloud, or a ProfileSet of several records.

    Files of records, cloud sections, PLY, PCD, text in columns (whose separator and decimal sign are found) and of
    contact profile gauges; by the name only, .xyzf. `kind` names it where neither tells. kx.FileError tells the place of
    what is wrong, kx.ReadingWarning how a text was read where that may not be what was meant.
    """
    path = os.fspath(path) # the number of an open file is none
    if kind is None and _begins_with_record(path):
        records = ProfileSet.open(path)
        return records[0] if len(records) == 1 else records
    return _read_points(path, kind, list(columns), separator, decimal_sign)


def _begins_with_record(path: Path) -> bool:
    try:
        if not os.path.isfile(path): # what is read from a pipe is gone
            return False
        with open(path, "rb", buffering=0) as file:
            return file.read(1) in (b"\x02", b"\x05")
    except OSError:
        return False # reading it says why
