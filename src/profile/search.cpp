// Searching profiles by x.
#include "KxMath/KxProfile.h"

#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

namespace {

/// The x of the last point after sorting ascending by x: the largest of the points behind the last NaN.
float lastSortedX(const QList<KxPointXY>& points) {
    float largest = kNaN;
    for (auto p = points.crbegin(); p != points.crend() && !std::isnan(p->x); ++p) {
        largest = largest > p->x ? largest : p->x; // NaN: takes p.x
    }
    return largest;
}

/// The x of the first point after sorting ascending by x: the smallest of the points before the first NaN.
float firstSortedX(const QList<KxPointXY>& points) {
    float smallest = kNaN;
    for (auto p = points.cbegin(); p != points.cend() && !std::isnan(p->x); ++p) {
        smallest = smallest < p->x ? smallest : p->x; // NaN: takes p.x
    }
    return smallest;
}

} // namespace

int KxProfile::findNearestToX(float x, bool fromRight) {
    const QList<KxPointXY>& list = points;
    if (!fromRight && x <= lastSortedX(list)) {
        const auto atOrBeyond = [x](const KxPointXY& p) { return p.x >= x; };
        const auto found = std::find_if(list.cbegin(), list.cend(), atOrBeyond);
        return found == list.cend() ? -1 : static_cast<int>(found - list.cbegin());
    }
    if (fromRight && firstSortedX(list) <= x) {
        const auto atOrBefore = [x](const KxPointXY& p) { return p.x <= x; };
        const auto found = std::find_if(list.crbegin(), list.crend(), atOrBefore);
        return static_cast<int>(list.crend() - found) - 1;
    }
    return -1;
}

bool KxProfile::findNearestToX(float x, KxPointXY& point, bool fromRight) {
    const int index = findNearestToX(x, fromRight);
    if (index < 0) {
        return false;
    }
    point = std::as_const(points)[index];
    return true;
}

} // namespace KxMath
