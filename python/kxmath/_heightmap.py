"""Height maps as arrays, xarray, and files of other programs."""
from __future__ import annotations

import os
from collections.abc import Iterator
from typing import TYPE_CHECKING, Any, NamedTuple, Union

import numpy as np

from . import _kxmath
from ._kxmath import Cloud

if TYPE_CHECKING:
    import xarray

__all__ = ["HeightMap", "Patch"]

Path = Union[str, bytes, "os.PathLike[Any]"]


class Patch(NamedTuple):
    """A flat patch of a height map: connected, without steps."""

    cloud: Cloud #: a point for each cell
    cells: int
    area: float #: mm2
    mean: float #: of the heights, mm
    deviation: float #: standard deviation of the heights, mm; NaN for one cell
    x: float #: mean x of the points, mm
    z: float #: mean z of the points, mm


class HeightMap:
    """The heights of a scan on a grid of one pitch: rows along z, columns along x. NaN marks a cell without a height.

    `np.asarray(h)` and `h.heights` are read-only views, rows x columns, float32, mm.
    """

    def __init__(self, made: Any) -> None:
        self._map = made

    @property
    def heights(self) -> np.ndarray[Any, Any]:
        """The heights as a read-only view, rows x columns, float32, mm."""
        return self._map.heights

    def __array__(self, dtype: Any = None, copy: Any = None) -> np.ndarray[Any, Any]:
        return np.array(self.heights, dtype, copy=bool(copy)) if copy or dtype else self.heights

    @property
    def shape(self) -> tuple[int, int]:
        """Rows and columns."""
        rows, columns = self.heights.shape
        return rows, columns

    @property
    def pitch(self) -> float:
        """The distance of rows and of columns, mm."""
        return self._map.pitch

    @property
    def gap(self) -> float:
        """The largest distance of points between which was interpolated, mm."""
        return self._map.gap

    @property
    def interpolated_rows(self) -> int:
        """How many rows are between two profiles."""
        return self._map.interpolated_rows

    @property
    def x(self) -> np.ndarray[Any, Any]:
        """x of the columns, mm."""
        return self._map.origin_x + self.pitch * np.arange(self.shape[1])

    @property
    def z(self) -> np.ndarray[Any, Any]:
        """z of the rows, mm."""
        return self._map.origin_z + self.pitch * np.arange(self.shape[0])

    def __len__(self) -> int:
        return self.shape[0]

    def __getitem__(self, index: Any) -> Any:
        """Heights, as of the array: `h[3]` a row, `h[10:20, ::2]` a view."""
        return self.heights[index]

    def __iter__(self) -> Iterator[np.ndarray[Any, Any]]:
        return iter(self.heights)

    def __eq__(self, other: object) -> bool:
        """Whether both hold the same bits."""
        if not isinstance(other, HeightMap):
            return NotImplemented
        return self._map.has_same_bits(other._map)

    __hash__ = None # type: ignore[assignment]

    def __repr__(self) -> str:
        rows, columns = self.shape
        known = int(np.isfinite(self.heights).sum())
        return f"<kxmath.HeightMap: {rows} rows, {columns} columns of {self.pitch:g} mm, {known} heights>"

    def _repr_html_(self) -> str:
        from ._html import height_map
        return height_map(self)

    def block_means(self, size: int) -> np.ndarray[Any, Any]:
        """For each cell the mean of the at most size x size cells before it; NaN where none of these has a height."""
        return self._map.block_means(size)

    def patches(self, *, block_size: int = 4, edge_cut: float | None = None, tolerance: float | None = None,
                min_count: int | None = None, progress: Any = None) -> list[Patch]:
        """The flat patches, in the order in which they were found; limits that are None follow from the heights."""
        return [Patch(*p) for p in self._map.patches(block_size, edge_cut, tolerance, min_count, progress)]

    def to_cloud(self) -> Cloud:
        """A point for each cell with a height."""
        rows, columns = np.nonzero(np.isfinite(self.heights))
        return Cloud(np.column_stack([self.x[columns], self.heights[rows, columns], self.z[rows]]))

    def to_xarray(self) -> xarray.DataArray:
        """With the dimensions z and x, coordinates in mm, and units."""
        import xarray
        return xarray.DataArray(
            self.heights, dims=("z", "x"), name="height",
            coords={"z": ("z", self.z, {"units": "mm"}), "x": ("x", self.x, {"units": "mm"})},
            attrs={"units": "mm", "pitch": self.pitch, "gap": self.gap,
                   "origin": (self._map.origin_x, self._map.origin_z)})

    def save(self, path: Path, *, kind: str | None = None) -> None:
        """Writes a file of the kind that the ending of its name or `kind` tells: gsf, sdf, vti, stl, npy, or one for points."""
        self._map.write(path, kind)

    @classmethod
    def open(cls, path: Path, *, kind: str | None = None, pitch: float | None = None) -> HeightMap:
        """The height map of a gsf, sdf, vti or npy file; the latter holds no pitch."""
        return cls(_kxmath._read_height_map(path, kind, pitch))

    def to_npy(self, path: Path) -> None:
        """Writes the heights as a file for np.load(); the coordinates are not in it."""
        self.save(path, kind="npy")

    def to_ply(self, path: Path) -> None:
        """Writes the cells with a height as vertices of a PLY file."""
        self.save(path, kind="ply")

    def to_gsf(self, path: Path) -> None:
        """Writes a file of the format Gwyddion Simple Field 1.0: in metres, z downwards, NaN where heights are missing."""
        self.save(path, kind="gsf")

    def plot(self, ax: Any = None, **options: Any) -> Any:
        """Draws the heights with matplotlib. Returns the axes."""
        from ._plots import height_map
        return height_map(self, ax, **options)
