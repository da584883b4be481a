"""Recordings below a folder, by station, time and sensor."""
from __future__ import annotations

import os
from dataclasses import dataclass
from typing import Any, Union

from . import _kxmath

__all__ = ["FoundRecording", "RecordingGroup", "RecordingGroups", "find_recordings"]

Path = Union[str, bytes, "os.PathLike[Any]"]


@dataclass(frozen=True)
class FoundRecording:
    """The file of one sensor. It stands for its path where a path is wanted.

    `size` is in bytes; `changed`, when its content or its status last changed, in ns since 1970.
    """

    path: str
    serial: int
    size: int
    changed: int

    def __fspath__(self) -> str:
        return self.path

    def is_whole(self) -> bool:
        """Whether it ends with a whole record. kx.FileError when it cannot be read or is damaged before."""
        return _kxmath._is_whole(self.path)


@dataclass(frozen=True)
class RecordingGroup:
    """The recordings of one pass, by the serial numbers of their sensors.

    `time` is ISO 8601 with a zone; `station` is None when the layout has none. `kx.Pass(*group.recordings,
    settings=..., station=group.station, time=group.time)` measures it.
    """

    station: str | None
    time: str
    recordings: tuple[FoundRecording, ...]


class RecordingGroups(list[RecordingGroup]):
    """The groups by station and time. `skipped` holds the path of what is in no group, and why, for each."""

    skipped: tuple[tuple[str, str], ...] = ()


def find_recordings(folder: Path, *, layout: str = "{station}/{time}/{prefix}_{serial}.bin") -> RecordingGroups:
    """The recordings below a folder in groups, as `kxmath watch` finds them; their content is not read.

    `layout` says where {station}, {time} (ISO 8601 with a zone, 20261121T081500Z for example), {prefix} and {serial}
    stand in their paths below the folder; {station} and {prefix} may be missing. Links are not followed. A wrong layout
    is a kx.ArgumentError, a folder that cannot be read a kx.FileError.
    """
    groups, skipped = _kxmath._find_recordings(folder, layout)
    found = RecordingGroups(RecordingGroup(station or None, time, tuple(FoundRecording(*each) for each in recordings))
                            for station, time, recordings in groups)
    found.skipped = tuple(skipped)
    return found
