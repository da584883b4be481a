"""Small results: named tuples."""
from __future__ import annotations

from typing import NamedTuple

__all__ = ["Point", "Point3", "Range", "Range3"]


class Point(NamedTuple):
    """A point of a profile: x along the laser line, y the measured height, mm."""

    x: float
    y: float


class Point3(NamedTuple):
    """A point in space: x along the laser line, y the measured height, z along the scan, mm."""

    x: float
    y: float
    z: float


class Range(NamedTuple):
    """The smallest and the largest coordinates, NaN where there are none; missing values do not count."""

    min_x: float
    max_x: float
    min_y: float
    max_y: float


class Range3(NamedTuple):
    """The same in space."""

    min_x: float
    max_x: float
    min_y: float
    max_y: float
    min_z: float
    max_z: float
