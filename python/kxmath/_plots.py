"""Drawings with matplotlib, which is imported here only."""
from __future__ import annotations

from typing import Any

import numpy as np

from ._errors import NoResult

MOST_POINTS = 200_000 # of a scan or cloud; more are thinned out evenly


def axes(ax: Any, x: str, y: str) -> Any:
    if ax is None:
        import matplotlib.pyplot as plt
        ax = plt.subplots()[1]
    ax.set_xlabel(x)
    ax.set_ylabel(y)
    return ax


def profile(item: Any, ax: Any = None, before: Any = None, **options: Any) -> Any:
    """A profile, with the one before an operation in grey behind it."""
    ax = axes(ax, "x, mm", "y, mm")
    if before is not None:
        ax.plot(before.x, before.y, ".", color="0.7", markersize=3, label="before")
    ax.plot(item.x, item.y, **{"marker": ".", "markersize": 3, "linewidth": 0.8, "label": "after", **options})
    if before is not None:
        ax.legend()
    return ax


def heights(points: Any, ax: Any, **options: Any) -> Any:
    """Points from above, columns x, y and z: their height y as a colour."""
    ax = axes(ax, "x, mm", "z, mm")
    points = points[:: max(1, -(-len(points) // MOST_POINTS))]
    drawn = ax.scatter(points[:, 0], points[:, 2], **{"c": points[:, 1], "s": 1, "cmap": "viridis", **options})
    ax.figure.colorbar(drawn, ax=ax, label="height, mm")
    return ax


def scan(item: Any, ax: Any = None, **options: Any) -> Any:
    """The profiles of a scan from above; by their numbers, where their positions are not known."""
    arrays = item.to_arrays()
    has_positions = len(item) == 0 or bool(np.isfinite(arrays.z).all())
    z = np.repeat(arrays.z if has_positions else np.arange(len(item)), np.diff(arrays.starts))
    ax = heights(np.column_stack([arrays.points, z]), ax, **options)
    if not has_positions:
        ax.set_ylabel("profile")
    return ax


def height_map(item: Any, ax: Any = None, **options: Any) -> Any:
    ax = axes(ax, "x, mm", "z, mm")
    half = item.pitch / 2
    extent = (item.x[0] - half, item.x[-1] + half, item.z[0] - half, item.z[-1] + half)
    image = ax.imshow(np.asarray(item), **{"origin": "lower", "extent": extent, "cmap": "viridis", **options})
    ax.figure.colorbar(image, ax=ax, label="height, mm")
    return ax


def conicity(item: Any, ax: Any = None, **options: Any) -> Any:
    ax = axes(ax, "amplitude, mm", "equivalent conicity")
    ax.plot(item.curve.index, item.curve.to_numpy(), **options)
    return ax


MEASURES = (("flangeHeight", "Sh"), ("flangeThickness", "Sd"), ("flangeSlope", "qR"), ("treadHollow", "hollow"),
            ("rimWidth", "rim width"))


def wheel(item: Any, number: int = 0, ax: Any = None, **options: Any) -> Any:
    """The section of a wheel, the tip of the flange down, with flange height, flange thickness and qR where they are."""
    measures = item["wheels"][number]
    if "error" in measures:
        raise NoResult(f"there is no profile to draw: {measures['error']}")
    picture = item.pictures()["wheels"][number]
    ax = axes(ax, "x from the flange back, mm", "y from the tip, mm")
    ax.plot(picture["section"]["x"], picture["section"]["y"], ".", color="0.7", markersize=2)
    ax.plot(picture["measured"]["x"], picture["measured"]["y"], **{"linewidth": 1, **options})
    places = picture["places"]
    tip, tape, top, flank = (places[name] for name in ("tip", "tape", "flankTop", "flank"))
    if tip and tape:
        dimension(ax, (tape[0], tip[1]), tape, "Sh", measures["flangeHeight"])
    if flank:
        dimension(ax, (0, flank[1]), flank, "Sd", measures["flangeThickness"])
    if flank and top:
        dimension(ax, top, (flank[0], top[1]), "qR", measures["flangeSlope"])
    known = [f"{name} {measures[key]:.2f} mm" for key, name in MEASURES if measures[key] is not None]
    ax.set_title("   ".join(known) or "nothing could be measured", fontsize="small")
    ax.set_aspect("equal")
    return ax


def dimension(ax: Any, start: Any, end: Any, name: str, value: float | None) -> None:
    """A line with arrows from end to end and its name, where there is a value."""
    if value is not None:
        ax.annotate("", start, end, arrowprops={"arrowstyle": "<->", "color": "C1", "shrinkA": 0, "shrinkB": 0})
        middle = ((start[0] + end[0]) / 2, (start[1] + end[1]) / 2)
        ax.annotate(name, middle, xytext=(3, 3), textcoords="offset points", color="C1")
