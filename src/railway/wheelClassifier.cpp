// Telling wheel profiles from others.
#include "railway/wheelClassifier.h"

#include "KxMath/KxMetro.h"

namespace KxMath {

namespace {

/// The number of points that `isTaken`, without a branch for each.
template <typename IsTaken>
qsizetype count(const QList<KxPointXY>& points, IsTaken isTaken) {
    qsizetype taken = 0;
    for (const KxPointXY& p : points) {
        taken += isTaken(p) ? 1 : 0;
    }
    return taken;
}

} // namespace

// KxLine::y(), taken apart: the compiler sees that nothing changes the lines.

bool detail::isWheel(const QList<KxPointXY>& points, const KxLine& level, int minPoints) {
    const float k = level.k;
    const float b = level.b;
    return count(points, [=](const KxPointXY& p) { return k * p.x + b > p.y; }) > minPoints; // NaN: false
}

bool detail::isWheel(const QList<KxPointXY>& points, const KxLine& level, const KxLine& low, int minPoints) {
    const float k = level.k;
    const float b = level.b;
    const float lowK = low.k;
    const float lowB = low.b;
    const auto isBetween = [=](const KxPointXY& p) { // NaN: false
        return static_cast<bool>(static_cast<int>(k * p.x + b > p.y) & static_cast<int>(lowK * p.x + lowB < p.y));
    };
    return count(points, isBetween) > minPoints;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes a copy
bool METRO_isWheel(KxProfile profile, KxLine level, int minPoints) {
    return detail::isWheel(profile.points, level, minPoints);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes a copy
bool METRO_isWheel(KxProfile profile, KxLine level, KxLine low, int minPoints) {
    return detail::isWheel(profile.points, level, low, minPoints);
}

} // namespace KxMath
