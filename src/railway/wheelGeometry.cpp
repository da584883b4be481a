// The circle of a wheel and the measures of its rim profile.
#include "KxMath/KxMetro.h"

#include "lists/checked.h"
#include "lists/filtering.h"
#include "rounding/angles.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace KxMath {

namespace {

using detail::kNaN;

/// The smallest polar angle of points about the origin, in degrees. Where the signs of the coordinates are the same the
/// angle rises with their quotient, roundings included, so that a few arc tangents are enough.
class SmallestAngle {
public:
    void add(float a, float b) {
        if (std::isnan(a) || std::isnan(b)) {
            return; // no angle
        }
        const float quotient = b / a;
        if (a == 0.0f || quotient == 0.0f) { // of 0 and -0 the first one counts
            take(detail::polarAngleDeg(a, b, detail::toDegrees(quotient))); // the arc tangent of 0 is 0
            return;
        }
        Least& least = a < 0.0f ? behind_ : b > 0.0f ? above_ : below_;
        if (std::isnan(least.a) ? !std::isnan(quotient) : quotient < least.quotient) { // NaN: false
            least = {quotient, a, b};
        }
    }

    float result() {
        for (const Least& least : {behind_, above_, below_}) {
            if (!std::isnan(least.a)) {
                take(detail::polarAngleDeg(least.a, least.b));
            }
        }
        return angle_;
    }

private:
    /// The point of the smallest quotient, the first of equal ones.
    struct Least {
        float quotient = kNaN;
        float a = kNaN;
        float b = kNaN;
    };

    void take(float angle) { angle_ = angle < angle_ ? angle : angle_; }

    float angle_ = std::numeric_limits<float>::max();
    Least behind_, above_, below_;
};

/// Moves the rim so that the circle's centre becomes the origin.
/// @return the smallest polar angle of its points about the centre, in degrees
float moveToCenter(QList<KxPointXYZ>& rim, const KxCircle& circle) {
    SmallestAngle angle;
    for (KxPointXYZ& p : detail::writableSpan(rim)) {
        p.x -= circle.x;
        p.z -= circle.y;
        angle.add(p.x, p.z);
    }
    return angle.result();
}

void negateY(KxProfile& profile) {
    for (KxPointXY& p : detail::writableSpan(profile.points)) {
        p.y = -p.y;
    }
}

/// Removes the points near the start of the profile that lie above its first point: the back of the flange.
void removeBack(KxProfile& profile) {
    constexpr float kBackWidth = 20.0f;
    const int first = profile.getIndexX(profile.minX);
    if (first < 0) {
        return;
    }
    const float height = profile.points.at(first).y;
    bool isAtBack = true;
    detail::keepIf(profile.points, [&](const KxPointXY& p) {
        const bool keep = !(isAtBack && p.y > height); // NaN stays
        if (p.x >= kBackWidth) { // this point was still tested
            isAtBack = false;
        }
        return keep;
    });
}

/// The rim's cross-section as a smooth profile, x and y from 0 on.
void makeProfile(const KxPointCloud<KxPointXYZ>& rim, KxProfile& profile) {
    constexpr int kSmoothing = 20;
    constexpr float kSpacing = 0.1f;
    profile.points = detail::filledList<KxPointXY>(rim.points.size());
    std::transform(rim.points.cbegin(), rim.points.cend(), detail::writable(profile.points),
                   [](const KxPointXYZ& p) { return KxPointXY(p.x, p.y); });
    profile.rotateEvklid(180.0f);
    profile.sort(KxSortAscending, KxSortAscending);
    negateY(profile);
    profile.calcRange();
    profile.shift(-profile.minX, -profile.minY, 0.0f);
    profile.calcRange();
    removeBack(profile);
    profile.wndFilter(kSmoothing);
    profile.interpolate(kSpacing, kNaN, kNaN, Akima);
}

/// Reads measures off a profile. Searches go from point to point and end at the last but two.
class Measurement {
public:
    explicit Measurement(const KxProfile& profile) : points(profile.points) {}

    /// The lowest point above 0, the first of equal ones, the ends left out.
    std::optional<qsizetype> findLowest() const {
        std::optional<qsizetype> lowest;
        for (qsizetype i = 1; i <= points.size() - 2; ++i) {
            const float y = points[i].y;
            if (y > 0.0f && (!lowest || y < points[*lowest].y)) { // NaN: false
                lowest = i;
            }
        }
        return lowest;
    }

    /// The first position behind `start` at which the profile rises from below a level, or from it, to it or above.
    std::optional<qsizetype> findCrossing(qsizetype start, float level) const {
        for (qsizetype i = start + 1; i <= points.size() - 3; ++i) {
            if (points[i - 1].y <= level && level <= points[i].y) { // NaN: false
                return i;
            }
        }
        return std::nullopt;
    }

    float crossingX(qsizetype i) const { return (points[i - 1].x + points[i].x) / 2.0f; }

    /// The height at a position behind `start`.
    std::optional<float> heightAt(float x, qsizetype start) const {
        constexpr float kClose = 0.01f;
        for (qsizetype i = start + 1; i <= points.size() - 3; ++i) {
            const float before = (points[i - 1].x + points[i].x) / 2.0f;
            const float after = (points[i + 1].x + points[i + 2].x) / 2.0f; // deliberately one point further on
            if (before <= x && after >= x) {
                const KxPointXY& a = points[i];
                const KxPointXY& b = points[i + 1];
                if (b.x - a.x < kClose) {
                    return (a.y + b.y) / 2.0f;
                }
                const float t = (x - a.x) / (b.x - a.x);
                return (b.y - a.y) * t + a.y;
            }
        }
        return std::nullopt;
    }

    /// The x at which the line to point i reaches a level.
    float levelX(qsizetype i, float level) const {
        const KxPointXY& a = points[i - 1];
        const KxPointXY& b = points[i];
        const float t = (level - a.y) / (b.y - a.y);
        return (b.x - a.x) * t + a.x;
    }

private:
    const QList<KxPointXY>& points;
};

/// Fills in what can be read off the profile.
void measure(const KxProfile& profile, _WheelProfileValues& values) {
    constexpr float kTapeCircle = 70.0f;
    constexpr float kTipLevel = 2.0f;
    constexpr float kFlankDepth = 13.0f; // above the tread
    constexpr float kFlankLevel = 18.0f;
    const Measurement m(profile);
    const auto lowest = m.findLowest();
    if (!lowest) {
        return;
    }
    const auto tip = m.findCrossing(*lowest, kTipLevel);
    if (!tip) {
        return;
    }
    const auto found = m.heightAt(kTapeCircle, *tip);
    if (!found) {
        return;
    }
    const float height = *found;
    values.heightAt70 = height;
    if (const auto flank = m.findCrossing(*lowest, height - kFlankDepth)) {
        values.widthLevel2ToH13 = m.crossingX(*flank) - m.crossingX(*tip);
    }
    values.heightExcess = height - (height >= 29.0f ? 30.0f : 28.0f);
    if (const auto flank = m.findCrossing(*lowest, kFlankLevel)) {
        values.xAtLevel18 = m.levelX(*flank, kFlankLevel);
    }
}

} // namespace

void METRO_calcWheel(KxPointCloud<KxPointXYZ>& first, KxPointCloud<KxPointXYZ>& second, KxPointCloud<KxPointXYZ>& third,
                     KxCircle& circle) {
    first.calcRange();
    second.calcRange();
    third.calcRange();
    const int start = first.getIndexX(first.minX);
    const int lowest = second.getIndexZ(second.minZ);
    const int end = third.getIndexX(third.maxX);
    if (start < 0 || lowest < 0 || end < 0) {
        return;
    }
    KxProfile marks;
    for (const KxPointXYZ& p : {first.points.at(start), second.points.at(lowest), third.points.at(end)}) {
        marks.points.append(KxPointXY(p.x, p.y)); // deliberately without the z that chose the second one
    }
    KxCircle fitted; // stays NaN when the points lie on a line
    fitted.calcFromPointCloud(marks);
    circle = fitted;
}

void METRO_calcWheelParameters(KxPointCloud<KxPointXYZ>& rim, KxCircle circle, _WheelProfileValues* values,
                               KxProfile* measured) {
    const float minAngle = moveToCenter(rim.points, circle);
    rim.rotateXZ(-minAngle);
    *values = {kNaN, kNaN, kNaN, kNaN, kNaN};
    KxProfile profile;
    makeProfile(rim, profile);
    if (measured != nullptr) {
        *measured = profile;
    }
    measure(profile, *values);
}

} // namespace KxMath
