"""Each operation against what the library makes of the same points, bit by bit."""
import os
import subprocess

import numpy as np
import pytest

import kxmath as kx

LINE = {"b1": kx.Line(0.05, 14), "b2": kx.Line(-0.05, 9)}

PROFILE = {
    "shift": lambda p: p.shift(1.25, dy=-0.7),
    "scale": lambda p: p.scale(1.5, sy=0.3),
    "rotate": lambda p: p.rotate(12.5),
    "rotateAbout": lambda p: p.rotate(-7.5, center=(3, -4)),
    "toPolar": lambda p: p.to_polar(),
    "toCartesian": lambda p: p.to_cartesian(),
    "rotatePolar": lambda p: p.rotate_polar(angle=11),
    "sort": lambda p: p.sort(),
    "sortDown": lambda p: p.sort(ascending=False),
    "trim": lambda p: p.trim(x=(-20, 31), y=(1, 22)),
    "trimLower": lambda p: p.trim(y=(9, None)),
    "removeDuplicates": lambda p: p.remove_duplicates(),
    "movingAverage": lambda p: p.moving_average(window=7),
    "fir20": lambda p: p.fir20(max_step=0.6),
    "medFilt": lambda p: p.med_filt(window=9),
    "slopeFilter": lambda p: p.slope_filter(window=6),
    "removeNoise": lambda p: p.remove_noise(window=9, max_jumps=2, threshold=0.4),
    "removeSpikes": lambda p: p.remove_spikes(threshold=1.2, max_width=3),
    "removeSpikesPolar": lambda p: p.remove_spikes_polar(radius=40, threshold=1.2, max_width=3),
    "windowFilterPolar": lambda p: p.window_filter_polar(max_deviation=0.5, window=9, offset=4),
    "below": lambda p: p.below(LINE["b1"]),
    "above": lambda p: p.above(LINE["b2"]),
    "removeLineParts": lambda p: p.remove_line_parts(max_parts=4, max_correlation=0.9, max_gap=0.5, min_points=5),
    "chords": lambda p: p.chords(window=11),
    "chordsByWidth": lambda p: p.chords_by_width(width=2.5),
    "parallelPieces": lambda p: p.parallel_pieces(window=8, slope=0.2),
    "polynomialFit": lambda p: p.polynomial_fit(degree=4),
    "resample": lambda p: p.resample(step=0.21, start=-30, stop=25),
    "blockDifferences": lambda p: p.block_differences(p.shift(dy=2)[3:], window=5, cut_tail=True),
    "removeSome": lambda p: p.remove([5, 2, 17, 5]),
    "inBox": lambda p: p.in_box(x=(-10, 10), y=(None, 15)),
    "range": lambda p: p.range,
    "center": lambda p: p.center(),
    "centerOfMass": lambda p: p.center_of_mass(),
    "averageY": lambda p: [p.average_y()],
    "derivative": lambda p: p.derivative(),
    "findZeros": lambda p: p.shift(dy=-11).find_zeros(),
    "correlation": lambda p: [p.correlation()],
    "integral": lambda p: [p.integral(7, 300), p.integral(3, 90, plain=False)],
    "yAt": lambda p: p.y_at([-3.3, 8.05], max_distance=2),
    "cutPoint": lambda p: np.array([p.cut_point(window=5, threshold=3)]),
    "cutPoints": lambda p: p.cut_points(window=5, threshold=3),
    "apexes": lambda p: np.vstack([p.apexes(0.5)[0].points] +
                                  [[q.slope, q.intercept] for q in p.apexes(0.5)[1]]).astype("f4"),
    "lineSegment": lambda p: p.line_segment(x=-25, max_step=0.4, max_misses=3, y=(1, 40), length=(None, 60)),
    "isWheel": lambda p: np.array([p.is_wheel(kx.Line(0, 12), 100), p.is_wheel(kx.Line(0, 12), 400, kx.Line(0, 11))]),
    "isSoundTread": lambda p: np.array([p.is_sound_tread(max_deviation=0.5, points_higher=3)]),
    "findX": lambda p: np.array([p.find_x(1), p.find_x(1, from_right=True)]),
    "polynomial": lambda p: p.remove_missing().fit_polynomial(5, about=2),
    "fitLine": lambda p: (lambda q: [q.slope, q.intercept])(p.remove_missing().fit_line()),
    "fitCircle": lambda p: (lambda q: [q.x, q.y, q.radius])(p.remove_missing().fit_circle()),
    "detectCircle": lambda p: (lambda q: [q.x, q.y, q.radius])(p.remove_missing().detect_circle()),
}

CLOUD = {
    "shift": lambda c: c.shift(1, -2, dz=0.5),
    "rotateXY": lambda c: c.rotate_xy(11),
    "rotateXZ": lambda c: c.rotate_xz(12),
    "rotateYZ": lambda c: c.rotate_yz(13),
    "rotate": lambda c: c.rotate(xy=4, yz=-5),
    "sort": lambda c: c.sort(x_ascending=True, z_ascending=False),
    "sortX": lambda c: c.sort(x_ascending=False),
    "sortZX": lambda c: c.sort_by_z_then_x(),
    "crop": lambda c: c.crop(x=(1, 8), z=(0.5, 7)),
    "removeLevel": lambda c: c.remove_level(3),
    "removeAbove": lambda c: c.remove_level(3, above=True),
    "removeSparse": lambda c: c.remove_sparse(cell=2, min_count=5),
    "removeIsolated": lambda c: c.remove_isolated(cell=3, max_distance=0.7, min_count=3),
    "removeIsolatedInCubes": lambda c: c.remove_isolated(3, 0.7, 3, spherical=False),
    "extract": lambda c: np.vstack([part.points for part in c.extract(x=(1, 8), y=(None, 4), z=(None, 6))]),
    "section": lambda c: c.section(z=4, thickness=1.5),
    "within": lambda c: c.within((5, 3, 4), 2),
    "wheelCircle": lambda c: (lambda q: [q.x, q.y, q.radius])(kx.wheel_circle(c, c[5:400], c.shift(dy=1.5))),
    "tape": lambda c: c.tape(step=2, min_height=0.3, max_height=None),
    "topView": lambda c: c.top_view(level=2),
    "levelCounts": lambda c: b"".join(np.float32(k).tobytes() + np.int32(v).tobytes()
                                      for k, v in c.level_counts(0.5).items()),
    "range": lambda c: c.range,
}


def profile_points(is_damaged):
    """A round back, a flat stretch and a ridge, with noise, spikes and, when damaged, NaN, ties and disorder."""
    random = np.random.default_rng(20)
    x = np.linspace(-32, 33, 520)
    y = np.where(x < -12, 12.0, np.sqrt(np.maximum(20.5**2 - (x - 8) ** 2, 0.0)))
    y += random.normal(0, 0.05, x.size) + 6 * ((x > -3) & (x < -1.5))
    y[[40, 41, 200]] += 4
    points = np.column_stack([x, y]).astype("f4")
    if is_damaged:
        points[[30, 31, 222], 1] = np.nan
        points[333] = np.nan
        points[100:110] = points[109:99:-1]
        points[150, 0] = points[149, 0]
    return points


def cloud_points(is_damaged):
    points = np.random.default_rng(21).random((900, 3)).astype("f4") * [10, 6, 8]
    points[:, 1] = points[:, 1] * (points[:, 0] > 6) * (points[:, 0] < 8) + 0.1 * points[:, 2]
    if is_damaged:
        points[::97, 0] = np.nan
        points[5::83, 1] = np.nan
        points[9::101] = np.nan
        points[200:400, 2] = np.round(points[200:400, 2])
    return points.astype("f4")


def expected(kind, points, folder):
    file = folder / "points"
    file.write_bytes(points.tobytes())
    output = subprocess.run([os.environ["KXMATH_OPERATIONS"], kind, file], check=True, capture_output=True,
                            text=True, env={**os.environ, "LD_PRELOAD": ""}).stdout
    return {name: bytes.fromhex(value) for name, _, value in (line.partition(" ") for line in output.splitlines())}


def result(operation, item):
    try:
        found = operation(item)
    except kx.NoResult:
        return None
    if isinstance(found, bytes):
        return found
    array = found if isinstance(found, np.ndarray) else np.asarray(found)
    return (array if isinstance(found, np.ndarray) else array.astype("f4", copy=False)).tobytes()


def is_no_number(content):
    """Whether a result of the library says that there is none: empty, -1, or NaN."""
    if content in (b"", b"\xff" * 8):
        return True
    return len(content) < 16 and bool(np.isnan(np.frombuffer(content, "f4")).any())


@pytest.mark.parametrize("is_damaged", [False, True])
@pytest.mark.parametrize("kind, make, points, operations", [
    ("profile", kx.Profile, profile_points, PROFILE), ("cloud", kx.Cloud, cloud_points, CLOUD)])
def test_results_are_those_of_the_library(kind, make, points, operations, is_damaged, tmp_path):
    array = points(is_damaged)
    wanted = expected(kind, array, tmp_path)
    assert wanted.keys() == operations.keys()
    item = make(array)
    silent = []
    for name, operation in operations.items():
        got = result(operation, item)
        if got is None:
            assert is_no_number(wanted[name]), name
            silent.append(name)
        else:
            assert got == wanted[name], name
        assert item == make(array), name # the object stays as it was
    assert set(silent) <= {"polynomialFit", "cutPoint", "lineSegment"} and (is_damaged or not silent)


def test_coloured_clouds_keep_their_colours():
    points, colours = cloud_points(False), np.random.default_rng(2).integers(0, 256, (900, 3)).astype("u1")
    cloud = kx.ColourCloud(points, colours)
    plain = kx.Cloud(points)
    order = np.argsort(points[:, 0], kind="stable")
    assert (cloud.sort(x_ascending=True).rgb == colours[order]).all()
    assert (cloud.in_box(x=(1, 8)) == plain.in_box(x=(1, 8))).all()
    assert (cloud.remove([0, 3]).rgb == np.delete(colours, [0, 3], axis=0)).all()
    assert cloud.shift(dx=1).without_colours() == plain.shift(dx=1) and cloud.range == plain.range
    assert len(cloud.joined(cloud)) == 1800
