"""Objects as values: equal to the bit, copied, pickled, shown; lines, circles, planes and directions."""
import copy
import math
import re

import numpy as np
import pytest

import kxmath as kx

NAN = float("nan")
XYZ = np.array([[0, 1, 2], [3, 4.5, -0.0], [6, np.nan, 8]], dtype="f4")
VALUES = [kx.Profile(XYZ[:, :2]), kx.Profile(XYZ[:, 1:], z=4.5), kx.Profile(), kx.Cloud(XYZ),
          kx.ColourCloud(XYZ, np.arange(9, dtype="u1").reshape(3, 3)), kx.Line(1.5, NAN), kx.Circle(1, 2, 3),
          kx.Plane(1, 2, 3, NAN), kx.Vector(-0.0, 1)]


def test_a_copy_is_equal_and_nothing_else_is():
    for i, value in enumerate(VALUES):
        assert copy.copy(value) == value and copy.copy(value) is not value
        assert [value == other for other in VALUES].count(True) == 1 and value != 3, i
        with pytest.raises(TypeError):
            hash(value)


def test_equality_is_of_bits():
    assert kx.Profile([[0.0, 1]]) != kx.Profile([[-0.0, 1]])
    assert kx.Profile([[0, 1]]) != kx.Profile([[0, 1]], z=0)
    assert kx.Vector(0.0, 1) != kx.Vector(-0.0, 1)


def test_a_damaged_pickle_is_refused():
    for value in VALUES[:5]:
        make, arguments = value.__reduce_ex__(2)[:2]
        twin = make(*arguments)
        for state in ((b"12345", 1.0), b"12345", (), 7, None):
            with pytest.raises((ValueError, TypeError, IndexError, RuntimeError)):
                twin.__setstate__(state)


def test_texts():
    assert repr(kx.Profile(XYZ[:, :2], z=2)) == "<kxmath.Profile: 3 points, x 0 to 6, y 1 to 4.5, z=2>"
    assert repr(kx.Profile(XYZ[:1, :2])) == "<kxmath.Profile: 1 point, x 0 to 0, y 1 to 1>"
    assert repr(kx.Cloud()) == "<kxmath.Cloud: 0 points>"
    assert repr(kx.Cloud(XYZ)).endswith("z -0 to 8>")
    assert repr(kx.Line(1.5, 2)) == "Line(slope=1.5, intercept=2)"


def test_positions_along_the_scan():
    profile = kx.Profile(XYZ[:, :2], z=4)
    assert profile.shift(dx=1).z == profile[1:].z == kx.Profile(profile, z=4).z == 4
    profile.z = None
    assert profile.z is None and profile == kx.Profile(XYZ[:, :2])


def test_lines():
    a, b = kx.Line.through((0, 1), (2, 5)), kx.Line(slope=-0.5, intercept=3.5)
    assert (a.slope, a.intercept) == (2, 1) and a.y_at(3) == 7 and a.x_at(2) == 0.5
    assert a.intersection(b) == (1, 3) and math.isclose(a.angle(b), 90, rel_tol=1e-6)
    assert math.isclose(b.distance((1, 3 + math.sqrt(1.25))), 1, rel_tol=1e-6)
    for failing in (lambda: a.intersection(kx.Line(2, 5)), lambda: kx.Line.through((1, 2), (1, 5))):
        with pytest.raises(kx.NoResult):
            failing()


def test_planes_and_directions():
    plane = kx.Plane.through((0, 2, 0), (1, 2, 0), (0, 2, 1))
    assert plane.distance((5, -1, 7)) == 3
    assert plane.distances(kx.Cloud([[0, 0, 0], [1, 7.5, 2], [1, NAN, 2]])).tolist()[:2] == [2, 5.5]
    with pytest.raises(kx.NoResult):
        kx.Plane.through((0, 0, 0), (1, 1, 1), (2, 2, 2))
    vector = kx.Vector(3, 4)
    assert vector.length == 5 and vector.with_length(10) == kx.Vector(6, 8)
    assert kx.Vector(1, 0).direction_with(kx.Vector(0, 1)).x == np.float32(math.sqrt(0.5))
    assert kx.Vector(1, 0).angle(kx.Vector(0, 2)) == 90
    slope = kx.Vector.along(kx.Profile([[i, 2 * i] for i in range(9)]), start=2, direction=1, length=3)
    assert math.isclose(slope.y / slope.x, 2, rel_tol=1e-6)
    for failing in (lambda: vector.direction_with(kx.Vector(-3, -4)),
                    lambda: kx.Vector.along(kx.Profile([[0, 1]]), 0, 1, 1)):
        with pytest.raises(kx.NoResult):
            failing()


def test_fits_say_why_there_is_no_result():
    line = kx.Profile([[0, 0], [1, 1], [2, 2], [3, 3]])
    gap = kx.Profile([[0, 0], [1, NAN], [2, 0]])
    for profile, call, says in (
            (line, "fit_circle", "3 points that are not on one line"), (gap, "fit_circle", "1 missing points"),
            (gap, "fit_line", "remove_missing()"), (kx.Profile([[1, 0], [1, 5]]), "fit_line", "different x"),
            (kx.Profile(), "fit_line", "2 points"), (kx.Profile(), "weld", "top of a weld"),
            (kx.Profile(), "joint", "no joint"), (kx.Profile(), "center", "no points"),
            (kx.Profile(), "average_y", "no points")):
        with pytest.raises(kx.NoResult, match=re.escape(says)):
            getattr(profile, call)()


def test_fits_far_from_the_origin_keep_their_digits():
    angle = np.linspace(0.3, 2.8, 500)
    profile = kx.Profile.from_xy(500 + 40 * np.cos(angle), 900 + 40 * np.sin(angle))
    circle = profile.fit_circle()
    assert abs(circle.radius - 40) < 1e-3 and abs(circle.x - 500) < 1e-3 and circle.rms < 1e-4
    assert abs(kx.Profile.from_xy(angle + 1e4, 3 * angle - 7).fit_line().slope - 3) < 5e-3
