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
    return drawing(item, np.asarray(item), "profile")


def drawing(item: Any, points: np.ndarray[Any, Any], name: str) -> str:
    """Dots at places, y upwards."""
    points = points[:: max(1, -(-len(points) // MOST_POINTS))]
    points = points[np.isfinite(points).all(axis=1)].astype("f8")
    if not len(points):
        return text(item)
    low, size = points.min(axis=0), np.ptp(points, axis=0)
    scale = np.array([WIDTH - 8, HEIGHT - 8]) / np.where(size > 0, size, 1)
    places = (points - low) * scale + 4
    dots = "".join(f"M{x:.1f} {HEIGHT - y:.1f}h0" for x, y in places)
    return (f'{text(item)}<svg width="{WIDTH}" height="{HEIGHT}" role="img" aria-label="{name}">'
            f'<path d="{dots}" stroke="#1f6fb4" stroke-width="2" stroke-linecap="round"/></svg>')


def conicity(item: Any) -> str:
    points = item._made.curve.points
    return drawing(item, points, "conicity by amplitude")


def wheel(item: Any) -> str:
    """The first wheel: its section, and a table of its measures."""
    if not item["wheels"]:
        return text(item)
    measures = item["wheels"][0]
    if "error" in measures:
        return text(item) + f"<p>{html.escape(measures['error'])}</p>"
    rows = [(key, f"{value:.3f}" + ("" if key == "treadSlope" else " mm")) if isinstance(value, (int, float))
            else (key, measures["reasons"].get(key, ""))
            for key, value in measures.items() if isinstance(value, (int, float)) or key in measures["reasons"]]
    return drawing(item, np.asarray(item.section()), "wheel") + table(("measure", "value"), rows)


def calibration(item: Any) -> str:
    """The first profile, and a table of the pose."""
    if item.reason:
        return text(item)
    seen = item.pictures()["profiles"][0]
    rows = []
    for key, value in item["pose"].items():
        interval = item["interval"].get(key)
        rows.append((key, "" if value is None else f"{value:.3f}", item["reasons"].get(f"pose.{key}", "")
                     if value is None or interval is None else f"{interval[0]:.3f} to {interval[1]:.3f}"))
    points = np.column_stack([seen["x"], -np.array(seen["y"], "f8")]) # the sensor is above
    return drawing(item, points, "calibration object") + table(("pose, mm and degrees", "value", "95 % interval"), rows)


def pass_result(item: Any) -> str:
    """The distances of the pairs, with the reasons of missing ones."""
    rows = [(pair["pair"], f"{pair['distance']:.1f}" if pair["distance"] is not None else pair.get("reason") or "")
            for pair in item["pairs"]]
    return text(item) + table(("pair", "distance, mm"), rows)


def table(titles: tuple[str, ...], rows: Any) -> str:
    lines = [f"<tr>{''.join(f'<{tag}>{html.escape(str(cell))}</{tag}>' for cell in row)}</tr>"
             for tag, row in [("th", titles), *(("td", row) for row in rows)]]
    return f"<table>{''.join(lines)}</table>"


def from_above(item: Any, points: np.ndarray[Any, Any]) -> str:
    """Points with the columns x, y and z: the height y in grey, or the colours of the points; z upwards; of several in a
    place the last one."""
    known = np.isfinite(points).all(axis=1)
    points = points[known].astype("f8")
    if not len(points):
        return text(item)
    height = min(HEIGHT, len(np.unique(points[:, 2])))
    width = min(WIDTH, max(1, len(points) // height // 2)) # two points for a place, so that few are empty
    low, size = points.min(axis=0), np.ptp(points, axis=0)
    scale = np.array([width - 1, height - 1]) / np.where(size[[0, 2]] > 0, size[[0, 2]], 1)
    columns, rows = ((points[:, [0, 2]] - low[[0, 2]]) * scale).round().astype("i4").T
    if hasattr(item, "rgb"):
        pixels = np.zeros((height, width, 4), "u1")
        pixels[height - 1 - rows, columns] = np.column_stack([item.rgb[known], np.full(len(points), 255, "u1")])
        return image(item, pixels, "cloud from above", (WIDTH, HEIGHT))
    heights = np.full((height, width), np.nan)
    heights[height - 1 - rows, columns] = points[:, 1]
    return picture(item, heights, "heights from above", (WIDTH, HEIGHT))


def scan(item: Any) -> str:
    """Of a scan as many profiles as there are rows, evenly spread, in their order."""
    part = item[:: max(1, -(-len(item) // HEIGHT))]
    points, starts, _ = part.to_arrays()
    numbers = np.repeat(np.arange(len(part)), np.diff(starts))
    return from_above(item, np.column_stack([points, numbers]))


def height_map(item: Any, shown: Any = None) -> str:
    """The heights in grey, the highest white; cells without one are transparent. `shown` is the object that holds it."""
    step = max(1, -(-max(item.shape) // WIDTH))
    heights = np.asarray(item)[::step, ::step][::-1].astype("f8") # z upwards
    enlarged = max(1, WIDTH // max(1, *heights.shape))
    return picture(item if shown is None else shown, heights, "height map", (enlarged * heights.shape[1], enlarged * heights.shape[0]))


def picture(item: Any, heights: np.ndarray[Any, Any], name: str, size: tuple[int, int]) -> str:
    """Heights in grey, the first row on top."""
    known = np.isfinite(heights)
    if not known.any():
        return text(item)
    low, high = heights[known].min(), heights[known].max()
    grey = np.where(known, 255 * (heights - low) / ((high - low) or 1), 0).round().astype("u1")
    alpha = np.where(known, 255, 0).astype("u1")
    return image(item, np.dstack([grey, alpha]), name, size)


def image(item: Any, pixels: np.ndarray[Any, Any], name: str, size: tuple[int, int]) -> str:
    data = base64.b64encode(png(pixels)).decode()
    return f'{text(item)}<img alt="{name}" width="{size[0]}" height="{size[1]}" ' \
           f'style="image-rendering: pixelated" src="data:image/png;base64,{data}">'


def png(pixels: np.ndarray[Any, Any]) -> bytes:
    """A PNG (ISO/IEC 15948) of grey values or colours with alpha, rows x columns x 2 or 4 bytes."""
    rows, columns, channels = pixels.shape
    lines = b"".join(b"\0" + line.tobytes() for line in pixels) # each line without a filter

    def chunk(kind: bytes, content: bytes) -> bytes:
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    header = struct.pack(">IIBBBBB", columns, rows, 8, 4 if channels == 2 else 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")
