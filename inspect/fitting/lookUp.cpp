// The value of a curve between its points.
#include "inspect/fitting/lookUp.h"

#include <algorithm>
#include <limits>

namespace KxInspect::detail {

double valueAt(const std::vector<Point>& curve, double x) {
    const auto isBefore = [](const Point& p, double v) { return static_cast<double>(p.x) < v; };
    const auto right = std::lower_bound(curve.begin(), curve.end(), x, isBefore);
    if (right == curve.end() || (right == curve.begin() && static_cast<double>(right->x) > x)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double rightX = static_cast<double>(right->x);
    const double rightY = static_cast<double>(right->y);
    if (rightX == x) {
        return rightY;
    }
    const double leftX = static_cast<double>((right - 1)->x);
    const double leftY = static_cast<double>((right - 1)->y);
    return leftY + (rightY - leftY) * (x - leftX) / (rightX - leftX);
}

} // namespace KxInspect::detail
