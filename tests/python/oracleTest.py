"""NumPy and SciPy as oracles, where they calculate the same in double precision.

The bounds are those of single precision: 2^-23 of the size of the numbers, times what the sums of n points may add.
"""
import numpy as np
import scipy.interpolate
import scipy.spatial

import kxmath as kx

EPS = 2.0**-23
RANDOM = np.random.default_rng(7)
X = np.sort(RANDOM.uniform(-20, 30, 300)).astype("f4")
Y = (3 + 0.5 * X - 0.02 * X**2 + RANDOM.normal(0, 0.3, X.size)).astype("f4")
PROFILE = kx.Profile.from_xy(X, Y)


def test_a_line_is_that_of_polyfit():
    slope, intercept = np.polyfit(X.astype("f8"), Y.astype("f8"), 1)
    line = PROFILE.fit_line()
    # n sums of products of up to (range of x)^2, divided by the sum of squares about the mean
    assert abs(line.slope - slope) < 300 * EPS * np.ptp(Y) / X.std()
    assert abs(line.intercept - intercept) < 300 * EPS * np.ptp(Y) * np.ptp(X) / X.std()


def test_a_polynomial_is_that_of_polyfit():
    about = float(np.float32(X.mean()))
    shifted = (X - np.float32(about)).astype("f8")
    wanted = np.polynomial.polynomial.polyfit(shifted, Y.astype("f8"), 5)
    found = PROFILE.fit_polynomial(5, about=about)
    assert np.allclose(np.polynomial.polynomial.polyval(shifted, found),
                       np.polynomial.polynomial.polyval(shifted, wanted), rtol=0, atol=1e-6)


def test_a_circle_is_that_of_least_squares():
    angle = RANDOM.uniform(0.2, 2.9, 400)
    points = np.column_stack([np.cos(angle), np.sin(angle)]) * 40 + RANDOM.normal(0, 0.05, (400, 2)) + [5, -3]
    circle = kx.Profile(points).fit_circle()
    p = points.astype("f4").astype("f8")
    solved = np.linalg.lstsq(np.column_stack([2 * p, np.ones(400)]), (p**2).sum(axis=1), rcond=None)[0]
    off = np.hypot(p[:, 0] - solved[0], p[:, 1] - solved[1])
    assert np.allclose([circle.x, circle.y], solved[:2], atol=2e-3) # of a half circle; sums of 400 squares of 40
    assert abs(circle.radius - np.sqrt((off**2).mean())) < 2e-3
    assert abs(circle.rms - np.sqrt(((off - circle.radius) ** 2).mean())) < 1e-4


def test_samples_are_those_of_akima():
    found = PROFILE.resample(step=0.37, start=-10, stop=20)
    wanted = scipy.interpolate.Akima1DInterpolator(X.astype("f8"), Y.astype("f8"))(found.x.astype("f8"))
    inner = (found.x > X[2]) & (found.x < X[-3]) # the ends differ in their slopes
    # single-precision coefficients, and a slope of noise over the smallest distance of points
    steep = np.abs(np.diff(Y) / np.diff(X)).max()
    assert np.abs(found.y - wanted)[inner].max() < 16 * EPS * (np.abs(Y).max() + steep * np.abs(X).max())
    area = scipy.interpolate.Akima1DInterpolator(X.astype("f8"), Y.astype("f8")).integrate(-10, 20)
    assert abs(PROFILE.spline_area(-10, 20) - area) < 30 * 16 * EPS * (np.abs(Y).max() + steep * np.abs(X).max())


def test_heights_and_areas_are_those_of_numpy():
    places = RANDOM.uniform(X[0], X[-1], 200).astype("f4")
    steep = np.abs(np.diff(Y) / np.diff(X)).max()
    assert np.abs(PROFILE.y_at(places) - np.interp(places, X, Y)).max() < 8 * EPS * steep * np.abs(X).max()
    assert abs(PROFILE.integral() - np.trapz(Y.astype("f8"), X.astype("f8"))) < 300 * EPS * np.abs(Y).max() * 50
    assert np.isclose(PROFILE.correlation(), np.corrcoef(X, Y)[0, 1], atol=300 * EPS)


def test_neighbours_are_those_of_a_tree():
    cloud = kx.Cloud(RANDOM.random((2000, 3)) * [10, 5, 8])
    tree = scipy.spatial.cKDTree(cloud.points)
    for place in ((5, 2, 4), (0, 0, 0), (9.5, 4.5, 7)):
        assert cloud.within(place, 1.5).tolist() == sorted(tree.query_ball_point(place, 1.5))
    inside = (cloud.z <= 0.5) & (cloud.x >= 2)
    assert np.array_equal(cloud.points[cloud.in_box(x=(2, None), z=(0, 0.5))], cloud.points[inside])
