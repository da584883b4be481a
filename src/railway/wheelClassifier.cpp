// Telling wheel profiles from others.
#include "KxMath/KxMetro.h"

#include <algorithm>

namespace KxMath {

bool METRO_isWheel(KxProfile profile, KxLine level, int minPoints) {
    const auto isBelow = [&](const KxPointXY& p) { return level.y(p.x) > p.y; }; // NaN: false
    return std::count_if(profile.points.cbegin(), profile.points.cend(), isBelow) > minPoints;
}

bool METRO_isWheel(KxProfile profile, KxLine level, KxLine low, int minPoints) {
    const auto isBetween = [&](const KxPointXY& p) { return level.y(p.x) > p.y && low.y(p.x) < p.y; }; // NaN: false
    return std::count_if(profile.points.cbegin(), profile.points.cend(), isBetween) > minPoints;
}

} // namespace KxMath
