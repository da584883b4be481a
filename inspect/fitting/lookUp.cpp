// The value of a curve between its points.
#include "inspect/fitting/lookUp.h"

#include <algorithm>
#include <limits>

namespace KxInspect::detail {

double valueAt(const KxMath::KxProfile& curve, double x) {
    const QList<KxMath::KxPointXY>& points = curve.points;
    const auto isBefore = [](const KxMath::KxPointXY& p, double v) { return static_cast<double>(p.x) < v; };
    const auto right = std::lower_bound(points.cbegin(), points.cend(), x, isBefore);
    if (right == points.cend() || (right == points.cbegin() && static_cast<double>(right->x) > x)) {
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
