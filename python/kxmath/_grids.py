"""Scans in files to height maps with patches: the same values as the command prints."""
from __future__ import annotations

import os
from collections.abc import Callable
from typing import Any, Union

from . import _kxmath
from ._errors import NoResult
from ._heightmap import HeightMap, Patch
from ._results import Result

__all__ = ["GridResult", "measure_grid"]


class GridResult(Result):
    """The height map of a scan, and its flat patches.

    A result that was read from JSON has no points of patches, and without pictures no map.
    """

    _type = _kxmath._GridResult

    @property
    def map(self) -> HeightMap:
        """The height map. kx.NoResult where the result was read from JSON without pictures, which holds no heights."""
        return HeightMap(self._made.map)

    @property
    def patches(self) -> list[Patch]:
        """The patches, in the order in which they were found."""
        return [Patch(*patch) for patch in self._made.patches]

    def plot(self, ax: Any = None, **options: Any) -> Any:
        """Draws the height map with matplotlib. Returns the axes."""
        return self.map.plot(ax, **options)

    def _repr_html_(self) -> str:
        from ._html import height_map, text
        try:
            return height_map(self.map, self)
        except NoResult:
            return text(self)

    def __repr__(self) -> str:
        return f"<kxmath.GridResult: {self['rows']} rows, {self['columns']} columns, {len(self._made.patches)} patches>"


def measure_grid(path: Union[str, bytes, "os.PathLike[Any]"], *, step: float = 1.0, gap: float | None = None,
                 distance: float | None = None, first_z: float = 0.0, block_size: int = 4,
                 edge_cut: float | None = None, tolerance: float | None = None, min_count: int | None = None,
                 progress: Callable[[str, float], object] | None = None) -> GridResult:
    """The height map and the patches of a scan in a file, as the command `grid` finds them.

    Profile i is at first_z + i * distance, mm, whatever the file says; without `distance` they are `step` apart.
    """
    return GridResult(_kxmath._measure_grid(path, step, gap, distance, first_z, block_size, edge_cut, tolerance,
                                            min_count, progress))
