// Placing two wheels and two rails on the track.
#include "lists/checked.h"
#include "railway/conicity/steps.h"

#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace KxMath::detail {

namespace {

/// Resamples a profile every 0.1 mm. @return false for fewer than 3 different x and for a width beyond reason
bool resample(KxProfile& profile) {
    float min = kNaN;
    float max = kNaN;
    for (const KxPointXY& p : std::as_const(profile.points)) {
        widen(min, max, p.x);
    }
    if (!(max - min <= kMaxWidth)) { // NaN: true
        return false;
    }
    profile.removeDuplicates();
    constexpr int kMinKnots = 3;
    if (profile.size() < kMinKnots) {
        return false;
    }
    profile.interpolate(kLateralStep, kNaN, kNaN, Akima);
    return !profile.isEmpty();
}

void turnUpsideDown(KxProfile& profile) {
    for (KxPointXY& p : writableSpan(profile.points)) {
        p.y = -p.y;
    }
}

void mirror(KxProfile& profile) {
    for (KxPointXY& p : writableSpan(profile.points)) {
        p.x = -p.x;
    }
    profile.sort(KxSortAscending, KxSortAscending);
}

std::tuple<KxProfile&, KxProfile&, KxProfile&, KxProfile&> profilesOf(Track& track) {
    return {track.first.wheel, track.second.wheel, track.first.rail, track.second.rail};
}

/// Turns the profiles to y up and all of them to x rising from the first side to the second, and moves each with its
/// reference corner to the origin: the flange backs with the lowest point of the wheel at height 0, the gauge sides
/// with the top of the rail at height 0.
void orient(Track& track) {
    const auto [wheel1, wheel2, rail1, rail2] = profilesOf(track);
    for (KxProfile* const profile : {&wheel1, &wheel2, &rail1, &rail2}) {
        turnUpsideDown(*profile);
    }
    mirror(wheel1);
    mirror(rail1);
    for (KxProfile* const profile : {&wheel1, &wheel2, &rail1, &rail2}) {
        profile->calcRange();
    }
    wheel1.shift(-wheel1.maxX, -wheel1.minY, 0.0f);
    wheel2.shift(-wheel2.minX, -wheel2.minY, 0.0f);
    rail1.shift(-rail1.maxX, -rail1.maxY, 0.0f);
    rail2.shift(-rail2.minX, -rail2.maxY, 0.0f);
}

/// Lets both wheels start at a common height of their flange backs and returns the index of that height in the first
/// wheel; in the second one it is then 0. Nothing when the wheels have no common height.
std::optional<qsizetype> matchWheelHeights(KxProfile& wheel1, KxProfile& wheel2) {
    constexpr double kTolerance = 0.025;
    const QList<KxPointXY>& first = wheel1.points;
    const QList<KxPointXY>& second = wheel2.points;
    qsizetype i = first.size() - 1;
    qsizetype j = 0;
    while (i >= 0 && j < second.size()) {
        const float difference = second[j].y - first[i].y;
        if (std::abs(static_cast<double>(difference)) <= kTolerance) { // NaN: false
            if (j == 0) {
                truncate(wheel1.points, i + 1);
            } else {
                detach(wheel2.points);
                wheel2.points.remove(0, j);
            }
            return i;
        }
        if (first[i].y < second[j].y) {
            ++j;
        } else {
            --i;
        }
    }
    return {};
}

/// The rolling radius at each point: `radius` at the point `reference`, more where the wheel reaches lower.
std::vector<double> rollingRadii(const QList<KxPointXY>& wheel, qsizetype reference, float radius) {
    const double height = static_cast<double>(wheel[reference].y);
    std::vector<double> radii;
    radii.reserve(static_cast<size_t>(wheel.size()));
    for (const KxPointXY& p : wheel) {
        radii.push_back(height - static_cast<double>(p.y) + static_cast<double>(radius));
    }
    return radii;
}

bool isAbove(const KxPointXY& wheel, const KxPointXY& rail) {
    constexpr double kTolerance = 0.1;
    return std::abs(static_cast<double>(wheel.x - rail.x)) <= kTolerance; // NaN: false
}

/// Finds the wheel points above the first rail points. @return false when there are none
bool alignStarts(WheelOnRail& first, WheelOnRail& second) {
    const QList<KxPointXY>& wheel1 = first.wheel.points;
    const KxPointXY railEnd1 = first.rail.points.at(0);
    const auto over =
        std::find_if(wheel1.cbegin(), wheel1.cend(), [&](const KxPointXY& p) { return isAbove(p, railEnd1); });
    if (over == wheel1.cend()) {
        return false;
    }
    first.start = over - wheel1.cbegin() + 1; // deliberately one past the match

    // Deliberately from the rail's count down, not from the wheel's; beyond the wheel there is nothing to find.
    const QList<KxPointXY>& wheel2 = second.wheel.points;
    const KxPointXY railEnd2 = second.rail.points.at(0);
    qsizetype j = std::min(second.rail.points.size(), wheel2.size()) - 1;
    while (j >= 0 && !isAbove(wheel2[j], railEnd2)) {
        --j;
    }
    second.start = j - 1; // deliberately one before the match
    return j >= 0;
}

} // namespace

bool placeOnTrack(Track& track, float radius1, float radius2, float railDistance, float wheelDistance) {
    const auto [wheel1, wheel2, rail1, rail2] = profilesOf(track);
    for (KxProfile* const profile : {&wheel1, &wheel2, &rail1, &rail2}) {
        if (!resample(*profile)) {
            return false;
        }
    }
    orient(track);
    const std::optional<qsizetype> reference = matchWheelHeights(wheel1, wheel2);
    if (!reference) {
        return false;
    }
    track.first.radii = rollingRadii(wheel1.points, *reference, radius1);
    track.second.radii = rollingRadii(wheel2.points, 0, radius2);
    wheel2.shift(wheelDistance * 0.5f, 0.0f, 0.0f);
    wheel1.shift(-(wheelDistance * 0.5f), 0.0f, 0.0f);
    rail1.shift(-(railDistance * 0.5f), 0.0f, 0.0f);
    rail2.shift(railDistance * 0.5f, 0.0f, 0.0f);
    return alignStarts(track.first, track.second);
}

} // namespace KxMath::detail
