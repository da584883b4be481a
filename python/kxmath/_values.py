"""Small results: named tuples."""
from __future__ import annotations

from typing import TYPE_CHECKING, NamedTuple

if TYPE_CHECKING:
    from ._kxmath import Cloud, Line, Profile

__all__ = ["Apexes", "Extract", "Joint", "Point", "Point3", "Range", "Range3"]


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


class Joint(NamedTuple):
    """The edges of two plates at their joint."""

    left: Point
    right: Point


class Apexes(NamedTuple):
    """Straight parts of a profile, and the corners between them."""

    points: Profile #: the corners, in the order of x; NaN where neighbours are parallel
    lines: list[Line] #: of the parts, one more than there are corners; NaN for a part of fewer than 2 points


class Extract(NamedTuple):
    """A cloud in two parts."""

    inside: Cloud #: the points within the bounds, in reverse order
    rest: Cloud
