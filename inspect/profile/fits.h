// Lines, circles and polynomials through the points of one profile, in double precision about their middle.
#pragma once

#include <KxInspect/Profile.h>
#include <KxMath/KxProfile.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The points with both coordinates.
std::vector<Point> knownPoints(const KxMath::KxProfile& profile);

/// How many different x there are.
std::size_t differentX(const std::vector<Point>& points);

/// The root mean square of the differences in y of points in parallel, as many as both lists have.
double rmsBetween(const std::vector<Point>& points, const std::vector<Point>& others);

struct LineFit {
    double slope;
    double intercept; ///< mm
    double rms; ///< of the points about the line, along y, mm
    double rounding; ///< of floats as large as the largest y, mm
};

/// Least squares of y on x. Nothing for fewer than two different x.
std::optional<LineFit> fitLine(const std::vector<Point>& points);

struct CircleFit {
    double x; ///< of the centre, mm
    double y;
    double radius; ///< mm
    double rms; ///< of the distances of the points from the circle, mm
    double from; ///< angle at which the points begin, degrees
    double arc; ///< degrees that the points cover: 360 less the widest gap
};

/// The algebraic least-squares circle (I. Kasa, IEEE Trans. Instrum. Meas. 25, 1976), with the radius of KxCircle. Nothing for
/// fewer than three different points, and points on one line.
std::optional<CircleFit> fitCircle(const std::vector<Point>& points);

/// How points lie about a given circle.
CircleFit aboutCircle(const std::vector<Point>& points, double x, double y, double radius);

struct PolynomialFit {
    double middle; ///< x about which the powers are, mm
    std::vector<double> coefficients; ///< of (x - middle)^i, that of i = 0 first
    double rms; ///< of the points about it, along y, mm
    double rounding; ///< of floats as large as the largest y, mm

    double at(double x) const;
};

/// Least squares of y. Nothing for fewer different x than coefficients, and where rounding prevents it: the polynomial is
/// further from the points than a straight line.
std::optional<PolynomialFit> fitPolynomial(const std::vector<Point>& points, int degree);

} // namespace KxInspect::detail
