"""Scans in files to height maps with patches: the same values as the command prints."""
from __future__ import annotations

import os
from collections.abc import Callable
from typing import Any, Union

from . import _kxmath
from ._heightmap import HeightMap, Patch
from ._results import Result

__all__ = ["GridResult", "measure_grid"]


class GridResult(Result):
    """The height map of a scan, and its flat patches.

    A result that was read from JSON has no points of patches, and without pictures no heights.
    """

    _type = _kxmath._GridResult

    @property
    def map(self) -> HeightMap:
        """The height map."""
        return HeightMap(self._made.map)

    @property
    def patches(self) -> list[Patch]:
        """The patches, in the order in which they were found."""
        return [Patch(*patch) for patch in self._made.patches]

    def __repr__(self) -> str:
        return f"<kxmath.GridResult: {self.map!r}, {len(self._made.patches)} patches>"


def measure_grid(path: Union[str, bytes, "os.PathLike[Any]"], *, step: float = 1.0, gap: float | None = None,
                 distance: float | None = None, first_z: float = 0.0, block_size: int = 4,
                 edge_cut: float | None = None, tolerance: float | None = None, min_count: int | None = None,
                 progress: Callable[[str, float], object] | None = None) -> GridResult:
    """The height map and the patches of a scan in a file, as the command `grid` finds them.

    Profile i is at first_z + i * distance, mm, whatever the file says; without `distance` they are `step` apart.
    """
    return GridResult(_kxmath._measure_grid(path, step, gap, distance, first_z, block_size, edge_cut, tolerance,
                                            min_count, progress))
