// The four profiles of a wheel-set on its track, made ready for the calculation.
#include "inspect/conicity/wheelSet.h"

#include "inspect/fitting/lookUp.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfile;

bool isNaN(const KxPointXY& p) {
    return std::isnan(p.x) || std::isnan(p.y);
}

bool isRising(const QList<KxPointXY>& points) {
    const auto isNotRising = [](const KxPointXY& a, const KxPointXY& b) { return !(a.x < b.x); };
    return std::adjacent_find(points.cbegin(), points.cend(), isNotRising) == points.cend();
}

/// The profiles of one result: room for what a sweep over a metre of wheel can hand out.
constexpr size_t kContactRoom = 20000;

} // namespace

const char* roleName(size_t role) {
    constexpr const char* kNames[RoleCount] = {"wheel1", "rail1", "wheel2", "rail2"};
    return kNames[role];
}

int keepRunningSurface(KxProfile& profile, bool isWheel) {
    constexpr float kCellWidth = 0.1f;
    const int before = profile.size();
    profile.points.removeIf(isNaN);
    if (isRising(profile.points)) {
        return before - profile.size();
    }
    profile.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    // y points down: what can touch is the largest y of a wheel and the smallest of a rail.
    const auto isOutside = [isWheel](const KxPointXY& a, const KxPointXY& b) {
        return isWheel ? a.y > b.y : a.y < b.y;
    };
    QList<KxPointXY> kept;
    float cellEnd = -std::numeric_limits<float>::infinity();
    for (const KxPointXY& p : std::as_const(profile.points)) {
        if (kept.isEmpty() || p.x >= cellEnd) {
            kept.append(p);
            cellEnd = p.x + kCellWidth;
        } else if (isOutside(p, kept.last())) {
            kept.last().y = p.y;
        }
    }
    profile.points = kept;
    return before - profile.size();
}

float widthOf(const KxProfile& profile) {
    return profile.points.isEmpty() ? 0.0f : profile.points.last().x - profile.points.first().x;
}

bool cutAtGaugeDepth(KxProfile& rail, float depth) {
    constexpr float kTolerance = 0.01f;
    const QList<KxPointXY>& points = rail.points;
    if (!(depth > 0.0f) || points.size() < 2) {
        return true;
    }
    const auto isHigher = [](const KxPointXY& a, const KxPointXY& b) { return a.y < b.y; };
    const auto top = std::min_element(points.cbegin(), points.cend(), isHigher);
    const float level = top->y + depth;
    qsizetype i = top - points.cbegin();
    while (i >= 0 && points[i].y < level) {
        --i;
    }
    if (i < 0) {
        return points.first().y >= level - kTolerance;
    }
    const KxPointXY below = points[i];
    const KxPointXY above = points[i + 1];
    const float part = (level - above.y) / (below.y - above.y);
    const KxPointXY gaugePoint(above.x + (below.x - above.x) * part, level);
    rail.points.remove(0, i);
    rail.points.first() = gaugePoint;
    return true;
}

void straighten(KxProfile& profile) {
    constexpr float kStep = 0.1f; // summed up as the calculation does, so that its samples are these points
    if (profile.size() < 2 || !(widthOf(profile) <= kMaxWidth)) { // NaN: true
        return;
    }
    const float last = profile.points.last().x;
    QList<KxPointXY> samples;
    for (float x = profile.points.first().x; x < last;) {
        samples.append(KxPointXY(x, static_cast<float>(valueAt(profile, static_cast<double>(x)))));
        const float next = x + kStep;
        if (!(next > x)) {
            return; // too far from the origin for steps of 0.1 mm
        }
        x = next;
    }
    samples.append(profile.points.last());
    profile.points = samples;
}

bool calculate(WheelSet& set, ConicityResult& result) {
    std::vector<KxProfile*> contacts1(kContactRoom);
    std::vector<KxProfile*> contacts2(kContactRoom);
    KxProfile* placed[RoleCount] = {};
    int count1 = 0;
    int count2 = 0;
    const int points = KxMath::EquivalentConicity(
        set.profiles[Wheel1], set.profiles[Wheel2], set.profiles[Rail1], set.profiles[Rail2], set.radius1, set.radius2,
        set.gauge, set.backToBack, set.amplitudes, result.conicity, result.deltaR, result.contactSlope1,
        result.contactSlope2, placed, contacts1.data(), count1, contacts2.data(), count2, set.edgeMargin);
    for (size_t role = 0; role < RoleCount; ++role) {
        result.placed[role].reset(placed[role]);
    }
    for (size_t i = 0; i < static_cast<size_t>(count1); ++i) {
        result.contacts1.emplace_back(contacts1[i]);
        result.contacts2.emplace_back(contacts2[i]);
    }
    return points > 0;
}

bool hasConicity(const KxPointXY& p) {
    return p.y > 0.0f && !std::isinf(p.y); // NaN: false
}

float conicityAt(const ConicityResult& result, float amplitude) {
    const KxPointXY p(amplitude, static_cast<float>(valueAt(result.conicity, static_cast<double>(amplitude))));
    return hasConicity(p) ? p.y : std::numeric_limits<float>::quiet_NaN();
}

} // namespace kxtool
