// Tasks P10 to P17 and P26 to P28: lines, circles and curves through profiles, their values and areas.
#include "tasks.h"

#include <vector>

using namespace KxMath;

namespace {

// P10. Fit a line.
bool fitLine(KxProfile profile, KxLine& line) {
    const KxPointXY start = profile.isEmpty() ? KxPointXY(0, 0) : profile.points.first();
    profile.shift(-start.x, -start.y, 0.0f); // near the origin sums in single precision keep their digits
    const bool isFitted = profile.calcLine(line) && std::isfinite(line.k); // one x for all points: an infinite slope
    line.b += start.y - line.k * start.x;
    return isFitted;
}

// P11. Fit a circle.
bool fitCircle(KxProfile profile, KxCircle& circle) {
    const float x = profile.calcCenterX(), y = profile.calcCenterY();
    profile.shift(-x, -y, 0.0f); // as for a line
    const bool isFitted = profile.calcCircle(circle); // all points count; detectCircle() leaves the lowest ones out
    circle.x += x;
    circle.y += y;
    return isFitted;
}

// P12. Fit a polynomial and get its coefficients.
bool fitPolynomial(KxProfile profile, int degree, std::vector<double>& coefficients) {
    profile.shift(-profile.calcCenterX(), 0.0f, 0.0f); // near 0 high degrees are exact; x counts from the middle
    coefficients.resize(size_t(degree) + 1);
    return profile.calcPolynomCoeffs(degree, coefficients.data()); // that of x^0 first
}

// P13. Get the height at a position.
float heightAt(KxProfile& ordered, float x) {
    return ordered.calcY(x, 2.0f, nullptr); // NaN in gaps wider than 2 mm
}

// P14. Resample at a regular step.
bool resample(KxProfile& profile, float step) {
    profile.points.removeIf([](KxPointXY p) { return p.isNull(); });
    profile.removeDuplicates();
    if (profile.size() < 3) {
        return false; // interpolate() would leave the points as they are
    }
    profile.interpolate(step, kNaN, kNaN, Akima); // NaN: from the first point to the last
    profile.calcRange();
    return true;
}

// P15. Get the area under a profile between two of its points.
float area(KxProfile& ordered, int from, int to) {
    return ordered.integral(from, to, true); // true: trapezoids; false: along a spline
}

// P16. Get the slope at each point.
KxProfile slopes(KxProfile& profile) {
    KxProfile slopes = profile.derivative();
    for (KxPointXY& p : slopes.points) {
        p = KxPointXY(p.y, p.x); // derivative() has them the other way round
    }
    return slopes;
}

// P17. Get the difference of two profiles.
KxProfile difference(KxProfile& ordered, KxProfile& reference) {
    KxProfile result(ordered);
    for (KxPointXY& p : result.points) {
        p.y -= reference.calcY(p.x, 2.0f, nullptr); // NaN where the reference has a gap
    }
    return result;
}

// P26. Intersect two lines and get the angle between them.
bool intersect(KxLine& a, KxLine& b, KxPointXY& point, float& degrees) {
    degrees = KxLine::calcAngle(a, b); // positive when a is the steeper one
    return KxLine::calcIntersection(a, b, point); // false for parallel lines
}

// P27. Evaluate a spline through a profile.
float splineAt(KxProfile profile, float x) {
    profile.points.removeIf([](KxPointXY p) { return p.isNull(); });
    profile.removeDuplicates(); // equal x divide by zero
    KxInterpolant spline(profile, Akima);
    return spline.calcY(x); // NaN outside, and with fewer than 3 points
}

// P28. Get radius and angle of each point about a centre.
KxProfile polarForm(KxProfile profile, KxPointXY centre) {
    profile.shift(-centre.x, -centre.y, 0.0f);
    profile.toPolar();
    return profile; // x is the radius, y the angle from 0 to 360 degrees
}

} // namespace

void tryFits() {
    KxProfile ramp = sampled(9, 1.0f, [](float x) { return 3 - x / 2; });
    KxLine line;
    expect(fitLine(ramp, line) && isNear(line.k, -0.5, 1e-5) && isNear(line.b, 3, 1e-5), "P10");
    KxProfile upright;
    upright.points = {{2, 1}, {2, 5}};
    expect(!fitLine(upright, line), "P10: upright");

    KxProfile arc = sampled(61, 0.5f, [](float x) { return std::sqrt(900 - (x - 15) * (x - 15)); });
    KxCircle circle;
    expect(fitCircle(arc, circle) && isNear(circle.radius, 30, 0.01) && isNear(circle.x, 15, 0.01), "P11");
    expect(!fitCircle(ramp, circle), "P11: points on a line");
    KxProfile farArc(arc);
    farArc.shift(485, 470, 0);
    expect(fitCircle(farArc, circle) && isNear(circle.radius, 30, 0.01) && isNear(circle.y, 470, 0.02),
           "P11: far away");

    KxProfile parabola = sampled(21, 1.0f, [](float x) { return 2 + (x - 10) + 0.25f * (x - 10) * (x - 10); });
    std::vector<double> c;
    expect(fitPolynomial(parabola, 2, c) && isNear(c[0], 2, 1e-6) && isNear(c[1], 1, 1e-6) && isNear(c[2], 0.25, 1e-6),
           "P12");

    expect(isNear(heightAt(ramp, 2.5f), 1.75, 1e-6) && std::isnan(heightAt(ramp, 20.0f)), "P13");

    KxProfile rough = sampled(21, 1.0f, [](float x) { return x * x; });
    rough.points[4] = KxPointXY(4, kNaN);
    expect(resample(rough, 0.5f) && rough.size() >= 40 && isNear(rough.calcY(4.0f, kNaN, nullptr), 16, 0.5), "P14");
    expect(!resample(upright, 0.5f), "P14: too few points");

    expect(isNear(area(ramp, 0, 4), 8, 1e-5), "P15");
    KxProfile slope = slopes(ramp);
    expect(slope.size() == 8 && slope.points[3].x == 3 && slope.points[3].y == -0.5f, "P16");

    KxProfile higher = sampled(9, 1.0f, [](float x) { return 5 - x / 2; });
    KxProfile between = difference(higher, ramp);
    expect(between.size() == 9 && isNear(between.points[5].y, 2, 1e-6), "P17");

    KxLine up(1, 0), down(-1, 4);
    KxPointXY point;
    float degrees = 0;
    expect(intersect(up, down, point, degrees) && point.x == 2 && point.y == 2 && isNear(degrees, 90, 1e-4), "P26");
    expect(!intersect(up, up, point, degrees), "P26: parallel");

    expect(isNear(splineAt(parabola, 12.5f), 2 + 2.5 + 0.25 * 6.25, 1e-3) && std::isnan(splineAt(upright, 2.0f)),
           "P27");
    KxProfile polar = polarForm(arc, KxPointXY(15, 0));
    expect(isNear(polar.points[30].x, 30, 1e-3) && isNear(polar.points[30].y, 90, 1e-3), "P28");
}
