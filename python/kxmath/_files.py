"""What is in a file."""
from __future__ import annotations

import os
from collections.abc import Callable
from typing import Any, NamedTuple, Union

from . import _kxmath
from ._errors import FileError

__all__ = ["FileInfo", "file_info"]


class FileInfo(NamedTuple):
    """What a file holds, as far as it could be read."""

    kind: str | None #: "csv", "ply", ... None for cloud sections and profile records
    parts: dict[str, int] #: how many sections and records there are of each kind
    points: int
    missing: int #: points with a coordinate that is NaN
    x: tuple[float, float] | None #: smallest and largest, mm; None without one
    y: tuple[float, float] | None
    z: tuple[float, float] | None #: of profile records their positions
    spacing: float #: median distance in x of neighbours, mm; NaN where there are none
    text: dict[str, Any] | None #: how a text was read: separator, decimalSign, columns, ...
    damage: FileError | None #: why reading ended early, with the place


def file_info(path: Union[str, bytes, "os.PathLike[Any]"], *,
              progress: Callable[[str, float], object] | None = None) -> FileInfo:
    """Looks through a file of points and tells what is in it; damage is in the result. kx.FileError without a file."""
    return FileInfo(*_kxmath._file_info(path, progress))
