// Defects of the tread, told from the profiles of one wheel.
#include "inspect/train/wheelDefects.h"

#include <KxMath/KxMetro.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

constexpr int kDegree = 20; // of the curve in METRO_detectWheelDefect()

/// Moves the middle of the profile to x = 0. The curve of the fit is the same in exact numbers; in rounded ones the
/// high powers of an x that lies to one side lose it.
void centre(KxMath::KxProfile& profile) {
    const auto [first, last] =
        std::minmax_element(profile.points.cbegin(), profile.points.cend(),
                            [](const KxMath::KxPointXY& a, const KxMath::KxPointXY& b) { return a.x < b.x; });
    const float middle = (first->x + last->x) / 2.0f;
    for (KxMath::KxPointXY& p : profile.points) {
        p.x -= middle;
    }
}

} // namespace

KxMath::KxProfile cutTread(KxMath::KxProfile& profile, const DefectLines& lines, const DefectLimits& limits) {
    KxMath::KxProfile stretch = profile;
    stretch.removeHighLevel(lines.high);
    stretch.removeLowLevel(lines.low);
    const auto isLeftOut = [&](const KxMath::KxPointXY& p) { // one y of NaN would leave the profile without a curve
        return !(p.x >= limits.fromX && p.x <= limits.toX) || !std::isfinite(p.x) || !std::isfinite(p.y);
    };
    QList<KxMath::KxPointXY>& points = stretch.points;
    points.erase(std::remove_if(points.begin(), points.end(), isLeftOut), points.end());
    return stretch;
}

ProfileDeviation judgeProfile(KxMath::KxProfile& profile, const DefectLines& lines, const DefectLimits& limits) {
    ProfileDeviation result;
    result.stretch = cutTread(profile, lines, limits);
    if (result.stretch.size() < kFewestJudgedPoints) {
        return result;
    }
    KxMath::KxProfile centred = result.stretch;
    centre(centred);
    KxMath::KxProfile curve = centred;
    curve.polynomFit(kDegree);
    result.isSound = KxMath::METRO_detectWheelDefect(centred, kDegree, limits.maxDeviation, limits.pointsHigher);
    for (qsizetype i = 0; i < centred.points.size(); ++i) {
        const float deviation = centred.points[i].y - curve.points[i].y;
        result.deviation.points.append(KxMath::KxPointXY(result.stretch.points[i].x, deviation));
        result.deviating += std::abs(deviation) > limits.maxDeviation ? 1 : 0;
        result.largest = std::max(result.largest, std::abs(deviation));
    }
    return result;
}

WheelDefects judgeWheel(int profiles, const std::function<KxMath::KxProfile(int)>& read, const DefectLines& lines,
                        const DefectLimits& limits) {
    WheelDefects result;
    result.largest = std::numeric_limits<float>::quiet_NaN();
    for (int number = 1; number <= profiles; ++number) {
        KxMath::KxProfile profile = read(number);
        const ProfileDeviation judged = judgeProfile(profile, lines, limits);
        if (judged.deviation.points.isEmpty()) {
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

} // namespace kxtool
