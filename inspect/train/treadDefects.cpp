// Defects of the tread, found in the single profiles of a wheel.
#include "inspect/train/treadDefects.h"

#include <KxMath/KxProfile.h>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr int kDegree = 20; // of the curve in METRO_detectWheelDefect()

/// Moves the middle of the tread to x = 0. The curve of the fit is the same in exact numbers; in rounded ones the high
/// powers of an x that lies to one side lose it.
void centre(PointList& tread) {
    const auto [first, last] = std::minmax_element(
        tread.cbegin(), tread.cend(), [](const KxMath::KxPointXY& a, const KxMath::KxPointXY& b) { return a.x < b.x; });
    const float middle = (first->x + last->x) / 2.0f;
    for (KxMath::KxPointXY& p : tread) {
        p.x -= middle;
    }
}

} // namespace

PointList cutTread(const PointList& profile, const TreadLines& lines, const DefectLimits& limits) {
    KxMath::KxProfile stretch;
    stretch.points = profile;
    stretch.removeHighLevel(lines.high);
    stretch.removeLowLevel(lines.low);
    const auto isLeftOut = [&](const KxMath::KxPointXY& p) { // one y of NaN would leave the profile without a curve
        return !(p.x >= limits.fromX && p.x <= limits.toX) || !std::isfinite(p.x) || !std::isfinite(p.y);
    };
    stretch.points.removeIf(isLeftOut);
    return stretch.points;
}

TreadDeviation judgeTread(const PointList& tread, const DefectLimits& limits) {
    TreadDeviation result;
    if (tread.size() < kFewestJudgedPoints) {
        return result;
    }
    KxMath::KxProfile curve;
    curve.points = tread;
    centre(curve.points);
    curve.polynomFit(kDegree); // where there is no fit the points themselves are the curve
    result.points = tread;
    for (qsizetype i = 0; i < tread.size(); ++i) {
        const float deviation = tread[i].y - std::as_const(curve.points)[i].y;
        result.points[i].y = deviation;
        result.deviating += std::abs(deviation) > limits.maxDeviation ? 1 : 0; // NaN: false
        result.largest = std::max(result.largest, std::abs(deviation));
    }
    result.isSound = result.deviating <= limits.pointsHigher;
    return result;
}

TreadDefects judgeTreads(const std::vector<PointList>& treads, const DefectLimits& limits) {
    TreadDefects result;
    int number = 0;
    for (const PointList& tread : treads) {
        ++number;
        const TreadDeviation judged = judgeTread(tread, limits);
        if (judged.points.isEmpty()) {
            continue;
        }
        ++result.judged;
        result.deviating += judged.deviating;
        if (!judged.isSound) {
            result.profiles.push_back(number);
        }
        if (!(judged.largest <= result.largest)) { // the first one takes the place of NaN
            result.largest = judged.largest;
            result.worstProfile = number;
        }
    }
    result.isDefective = static_cast<int>(result.profiles.size()) > limits.minProfiles;
    return result;
}

} // namespace KxInspect::detail
