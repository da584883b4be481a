// Lines through points of which many may belong to something else.
#pragma once

#include "KxMath/KxPoints.h"

#include <vector>

namespace KxMath::detail {

/// A line in slope form, in double precision.
struct RobustLine {
    double k = 0.0;
    double b = 0.0;

    double y(double x) const { return k * x + b; }
    double heightOf(const KxPointXY& p) const { return static_cast<double>(p.y) - y(static_cast<double>(p.x)); }
};

/// The middle value, the upper one of two; NaN for no values. The values are reordered and must not be NaN.
double medianOf(std::vector<double>& values);

/// The heights of points above a line, in their order.
std::vector<double> heightsAbove(const RobustLine& line, const std::vector<KxPointXY>& points);

/// The repeated median line (Siegel, Biometrika 69, 1982): up to half of the points may lie anywhere. Points must be
/// finite; those that share an x with a point have no slope with it. Takes O(n^2).
RobustLine repeatedMedianLine(const std::vector<KxPointXY>& points);

} // namespace KxMath::detail
