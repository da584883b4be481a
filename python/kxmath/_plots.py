"""Drawings with matplotlib, which is imported here only."""
from __future__ import annotations

from typing import Any

import numpy as np

from ._errors import NoResult
from ._kxmath import Profile, _limit_measures, _to_track

NO_POINTS = "the result was read from JSON without pictures, which holds no points"
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


def cloud(item: Any, ax: Any = None, **options: Any) -> Any:
    return heights(item.points, ax, **options)


def colour_cloud(item: Any, ax: Any = None, **options: Any) -> Any:
    """A coloured cloud from above, in its colours."""
    ax = axes(ax, "x, mm", "z, mm")
    thinned = item[:: max(1, -(-len(item) // MOST_POINTS))]
    ax.scatter(thinned.x, thinned.z, **{"c": thinned.rgb / 255, "s": 1, **options})
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
    if not picture["measured"]["x"]:
        raise NoResult(NO_POINTS)
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


FLANKS = ("C0", "C1", "C0", "C1", "C0", "C1", "C2", "C4") # before and behind each crest; the last two are oblique


def calibration(item: Any, shot: int = 0, ax: Any = None, **options: Any) -> Any:
    """A profile of the calibration object in the track frame, by flanks, and the object that was fitted to it."""
    found, seen = item["profiles"][shot], item.pictures()["profiles"][shot]
    if not found.get("pose"):
        raise NoResult(f"there is no pose to draw with: {found.get('fault') or item.reason}")
    if not seen["x"]:
        raise NoResult(NO_POINTS)
    pose = {**found["pose"], "y": found["foundY"]} # that of the object, which need not be that of the track
    points = _to_track(Profile.from_xy(seen["x"], seen["y"]), pose)
    residuals = np.array(seen["residual"], "f8") # along y, positive behind the object as the sensor sees it
    object_y = points.y + residuals * (-1 if item.pictures()["side"] == "smaller-y" else 1)
    flanks = np.array([-1 if flank is None else flank for flank in seen["flank"]])
    ax = axes(ax, "z along the track, mm", "y, mm")
    ax.plot(points.z[flanks < 0], points.y[flanks < 0], ".", color="0.7", markersize=2)
    for number, colour in enumerate(FLANKS):
        z, y = points.z[flanks == number], object_y[flanks == number]
        order = np.argsort(z)
        ax.plot(z, points.y[flanks == number], **{"marker": ".", "linestyle": "", "markersize": 3, "color": colour, **options})
        ax.plot(z[order], y[order], color="black", linewidth=0.8)
    ax.set_aspect("equal")
    ax.set_title(f"{found['name']}: rms {found['rms']:.3f} mm", fontsize="small")
    return ax


def station_fit(item: Any, sensor: int = 0, ax: Any = None, **options: Any) -> Any:
    """Points that a sensor saw, and the lines that were found for it."""
    found = item.sensors[sensor]
    ax = profile(found["points"], ax, **{"linewidth": 0, "markersize": 1, "color": "0.7", "label": "points", **options})
    for name in ("reference", "level", "low", "tread_high", "tread_low"):
        if found[name] is not None:
            ends = np.array(ax.get_xlim())
            ax.plot(ends, [found[name].y_at(x) for x in ends], linewidth=1, label=name.replace("_", " "))
    ax.legend()
    return ax


#: Colour and marker of verdicts, as on the pages; other verdicts are bad ones.
VERDICTS = {"ok": ("#009E73", "o"), "warning": ("#E69F00", "^"), "not judged": ("#a3b0bd", "o")}
BAD, MISSING = ("#B2182B", "s"), "not measured"
SIDES = {None: 0.0, 1: -0.12, 2: 0.12, "left": -0.12, "right": 0.12} # of a wheel beside the middle of its axle


def pass_result(item: Any, measure: str = "backToBack", ax: Any = None, **options: Any) -> Any:
    """The values of a measure by axle with their 95 % intervals, verdicts and limits; missing ones stand on the axis."""
    values, limits = item.values(measure)
    unit = {known[0]: known[1] for known in _limit_measures()}[measure]
    has_axles = all(value["pair"] is not None for value in values)
    ax = axes(ax, "axle" if has_axles else "", f"{measure}, {unit}")
    places = [value["pair"] + SIDES[value["side"]] if has_axles else i for i, value in enumerate(values)]
    names = [f"vehicle {value['vehicle']}" + (f", bogie {value['bogie']}" if value["bogie"] else "") for value in values] \
        if not has_axles else None
    ax.set_xticks(sorted({round(place) for place in places}), names)
    for verdict, is_doubtful in sorted({(value["verdict"], bool(value["isDoubtful"])) for value in values}):
        chosen = [(place, value) for place, value in zip(places, values)
                  if (value["verdict"], bool(value["isDoubtful"])) == (verdict, is_doubtful)]
        x = [place for place, _ in chosen]
        if verdict == MISSING:
            ax.plot(x, [0.03] * len(x), "x", color="#3a4652", transform=ax.get_xaxis_transform(), label=verdict)
            continue
        colour, marker = VERDICTS.get(verdict, BAD)
        y = [value["value"] for _, value in chosen]
        ax.plot(x, y, **{"marker": marker, "color": colour, "linestyle": "", "markerfacecolor": "none" if is_doubtful else
                         colour, "label": verdict + ", doubtful" * is_doubtful, **options})
        for place, value in chosen:
            if value["interval"]:
                ax.plot([place] * 2, value["interval"], color=colour, linewidth=1)
    for name, limit in limits.items():
        ax.axhline(limit, color=VERDICTS["warning"][0] if name.startswith("warning") else BAD[0], linewidth=0.8,
                   linestyle="--", label=name)
    ax.ticklabel_format(axis="y", useOffset=False)
    if all(value["verdict"] == MISSING for value in values):
        ax.set_yticks([])
    ax.legend()
    return ax
