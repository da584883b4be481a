"""Small pictures of objects in notebooks."""
from __future__ import annotations

import base64
import html
import struct
import zlib
from typing import Any

import numpy as np

WIDTH, HEIGHT, MOST_POINTS = 320, 120, 600


def text(item: Any) -> str:
    return f"<pre>{html.escape(repr(item))}</pre>"


def profile(item: Any) -> str:
    """The points of a profile, thinned out evenly; a missing one interrupts nothing, as there are no lines."""
    points = np.asarray(item)[:: max(1, -(-len(item) // MOST_POINTS))]
    points = points[np.isfinite(points).all(axis=1)].astype("f8")
    if not len(points):
        return text(item)
    low, size = points.min(axis=0), np.ptp(points, axis=0)
    scale = np.array([WIDTH - 8, HEIGHT - 8]) / np.where(size > 0, size, 1)
    places = (points - low) * scale + 4
    dots = "".join(f"M{x:.1f} {HEIGHT - y:.1f}h0" for x, y in places)
    return (f'{text(item)}<svg width="{WIDTH}" height="{HEIGHT}" role="img" aria-label="profile">'
            f'<path d="{dots}" stroke="#1f6fb4" stroke-width="2" stroke-linecap="round"/></svg>')


def height_map(item: Any) -> str:
    """The heights in grey, the highest white; cells without one are transparent."""
    step = max(1, -(-max(item.shape) // WIDTH))
    heights = np.asarray(item)[::step, ::step][::-1].astype("f8") # z upwards
    known = np.isfinite(heights)
    if not known.any():
        return text(item)
    low, high = heights[known].min(), heights[known].max()
    grey = np.where(known, 255 * (heights - low) / ((high - low) or 1), 0).round().astype("u1")
    alpha = np.where(known, 255, 0).astype("u1")
    data = base64.b64encode(png(np.dstack([grey, alpha]))).decode()
    return f'{text(item)}<img alt="height map" src="data:image/png;base64,{data}">'


def png(pixels: np.ndarray[Any, Any]) -> bytes:
    """A PNG (ISO/IEC 15948) of grey values with alpha, rows x columns x 2 bytes."""
    rows, columns, _ = pixels.shape
    lines = b"".join(b"\0" + line.tobytes() for line in pixels) # each line without a filter

    def chunk(kind: bytes, content: bytes) -> bytes:
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    header = struct.pack(">IIBBBBB", columns, rows, 8, 4, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")
