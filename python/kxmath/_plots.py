"""Drawings with matplotlib, which is imported here only."""
from __future__ import annotations

from typing import Any

import numpy as np


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
    ax.plot(item.x, item.y, **{"marker": ".", "markersize": 3, "linewidth": 0.8, **options})
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
