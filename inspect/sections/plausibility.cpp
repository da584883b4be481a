// Plausibility checks of the orientation and kind of cross-sections.
#include "inspect/sections/plausibility.h"

#include "inspect/fitting/lookUp.h"
#include "inspect/sections/runningSurface.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

QString fewPoints(std::size_t count) {
    constexpr std::size_t kMinPoints = 100;
    return count < kMinPoints ? QStringLiteral("has %1 points only").arg(count) : QString();
}

QString wheelContradiction(const std::vector<Point>& wheel) {
    constexpr float kMinFlangeHeight = 15.0f;
    constexpr float kMaxFlangeHeight = 45.0f;
    constexpr float kLeastFromBack = 5.0f; // the tip; the upper end of a back face upside down is nearer
    if (wheel.empty()) {
        return {};
    }
    // A wheel has its flange, the largest y, near the flange back, and its tread less far down.
    const float back = wheel.front().x;
    const float width = widthOf(wheel);
    const auto [highest, lowest] = std::minmax_element(wheel.begin(), wheel.end(), isHigher);
    const float tread = static_cast<float>(valueAt(wheel, static_cast<double>(back + kTapeCircleX)));
    if (lowest->x - back < width * 0.4f && lowest->x - back >= kLeastFromBack) {
        const float height = lowest->y - tread;
        if (std::isnan(height) || (height >= kMinFlangeHeight && height <= kMaxFlangeHeight)) {
            return {};
        }
        return QStringLiteral(
                   "has a flange %1 mm high, from its tip to the tread at the tape circle; usual are %2 to %3 mm")
            .arg(QString::number(static_cast<double>(height), 'f', 1),
                 QString::number(static_cast<double>(kMinFlangeHeight)),
                 QString::number(static_cast<double>(kMaxFlangeHeight)));
    }
    if (highest->x - back < width * 0.4f && tread - highest->y >= kMinFlangeHeight) {
        return QStringLiteral("looks upside down (its y should point down; see --up)");
    }
    return QStringLiteral("has its lowest point far from the flange back (x should point outwards; see --mirror)");
}

QString railContradiction(const std::vector<Point>& rail, float gaugeDepth) {
    constexpr float kTolerance = 0.1f;
    if (rail.empty()) {
        return {};
    }
    // A rail has its top, the smallest y, away from its ends.
    const auto [top, bottom] = std::minmax_element(rail.begin(), rail.end(), isHigher);
    const auto isEnd = [&rail](auto p) { return p == rail.begin() || p == rail.end() - 1; };
    if (!isEnd(bottom) && isEnd(top)) {
        return QStringLiteral("looks upside down (its y should point down; see --up)");
    }
    if (rail.front().y - top->y < gaugeDepth - kTolerance && rail.back().y - top->y >= gaugeDepth) {
        return QStringLiteral(
            "reaches down to the gauge depth on its outer side only (x should point outwards; see --mirror)");
    }
    return isEnd(top) ? QStringLiteral("rises to one end: its top is not in the profile") : QString();
}

} // namespace KxInspect::detail
