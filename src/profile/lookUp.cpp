// The value of y(x) at a position.
#include "profile/lookUp.h"

#include "KxMath/KxProfile.h"

#include "geometry/lineFit.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

namespace {

/// The value at `x` on the line through two neighbours. `isBetween` is false where the profile has to be continued
/// beyond an end.
float valueAt(float x, const KxPointXY& first, const KxPointXY& second, bool isBetween, float maxDistance) {
    if (first.x == second.x) {
        if (std::abs(first.x - x) > maxDistance) { // NaN: false, no limit
            return kNaN;
        }
        return (first.y + second.y) * 0.5f;
    }
    const bool isFalling = first.x > second.x;
    const KxPointXY pair[2] = {isFalling ? second : first, isFalling ? first : second};
    if (std::abs(pair[1].x - pair[0].x) > maxDistance || std::abs(pair[0].x - x) > maxDistance ||
        std::abs(pair[1].x - x) > maxDistance) { // NaN: false, no limit
        return kNaN;
    }
    KxLine line;
    detail::fitLine(pair, pair + 2, line);
    constexpr float kMaxOuterSlope = 1.0f;
    if (!isBetween && !(std::abs(line.k) <= kMaxOuterSlope)) {
        return kNaN;
    }
    return line.y(x);
}

} // namespace

float detail::heightAt(const QList<KxPointXY>& points, qsizetype found, float x, float maxDistance) {
    const qsizetype n = points.size();
    if (n == 0) {
        return kNaN;
    }
    if (n == 1) {
        return std::abs(points[0].x - x) <= maxDistance ? points[0].y : kNaN; // NaN: false
    }
    if (found < n && points[found].x == x) {
        return points[found].y;
    }
    const bool isBetween = found > 0 && found < n;
    const qsizetype first = std::clamp<qsizetype>(found - 1, 0, n - 2);
    return valueAt(x, points[first], points[first + 1], isBetween, maxDistance);
}

float KxProfile::calcY(float x, float maxDistance, int* segment) {
    const QList<KxPointXY>& list = points;
    const qsizetype found = detail::findAtOrBeyond(list.constData(), list.size(), x, 0);
    const bool isAnswered = list.size() < 2 || (found < list.size() && list[found].x == x);
    if (segment != nullptr && !isAnswered) {
        *segment = static_cast<int>(found - 1); // -1 before the first point, n - 1 behind the last
    }
    return detail::heightAt(list, found, x, maxDistance);
}

} // namespace KxMath
