// Slope, sign changes, correlation, area and value of y(x).
#include "KxMath/KxProfile.h"

#include "geometry/lineFit.h"
#include "profile/correlation.h"
#include "profile/lookUp.h"
#include "profile/sampling.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace KxMath {

using detail::kNaN;

namespace {

/// The area between two points, positive whatever their order in x.
float trapezoid(const KxPointXY& a, const KxPointXY& b) {
    return (a.y + b.y) * std::abs(b.x - a.x) * 0.5f;
}

float trapezoidSum(const QList<KxPointXY>& points) {
    float sum = 0.0f;
    for (qsizetype i = 0; i + 1 < points.size(); ++i) {
        sum += trapezoid(points[i], points[i + 1]);
    }
    return sum;
}

/// The areas between neighbours of a block's samples, `before` being that in front of the first one; behind the last
/// one what adds nothing.
void fillAreas(const detail::Sampler::Block& block, const std::optional<KxPointXY>& before,
               std::array<float, detail::Sampler::kMost>& areas) {
    const auto point = [&](std::size_t i) { return KxPointXY(block.xs[i], block.ys[i]); };
    const std::size_t count = static_cast<std::size_t>(block.count);
    std::fill(areas.begin(), areas.end(), -0.0f);
    if (before && count > 0) {
        areas[0] = trapezoid(*before, point(0));
    }
    for (std::size_t i = 1; i < count; ++i) {
        areas[i] = trapezoid(point(i - 1), point(i));
    }
}

/// The area under the spline, from samples `step` apart; nothing when the step is too small to reach the end.
std::optional<float> sampledArea(const KxInterpolant& spline, float step) {
    detail::Sampler sampler(spline, step, kNaN, kNaN);
    detail::Sampler::Block block;
    std::array<float, detail::Sampler::kMost> areas;
    areas.fill(-0.0f);
    std::optional<KxPointXY> last;
    float sum = 0.0f;
    const auto add = [&](int i) { sum += areas[static_cast<std::size_t>(i)]; };
    while (sampler.next(block, add)) { // adds the areas of the block before
        fillAreas(block, last, areas);
        if (block.count > 0) {
            const std::size_t at = static_cast<std::size_t>(block.count - 1);
            last.emplace(block.xs[at], block.ys[at]);
        }
    }
    std::for_each(areas.begin(), areas.end(), [&](float area) { sum += area; });
    return sampler.isComplete() ? std::optional<float>(sum) : std::nullopt;
}

/// The area under the Akima spline through `profile`, with a step that is halved until the area settles.
float refinedArea(KxProfile& profile) {
    constexpr float kFirstStep = 0.01f;
    constexpr float kTolerance = 0.005f;
    constexpr int kMaxHalvings = 20;
    profile.removeDuplicates();
    profile.sort(KxSortAscending, KxSortAscending);
    const KxInterpolant spline(profile, Akima);
    if (spline.count < 1) {
        // With nothing to sample the points are what is summed, round after round.
        return trapezoidSum(profile.points);
    }
    float area = kNaN;
    float step = kFirstStep;
    for (int halvings = 0; halvings <= kMaxHalvings; ++halvings, step *= 0.5f) {
        const std::optional<float> refined = sampledArea(spline, step);
        if (!refined) {
            break; // a smaller step does not reach the end either
        }
        const float difference = std::abs(area - *refined);
        area = *refined;
        if (difference <= kTolerance) { // NaN: false, as in the first round
            break;
        }
    }
    return area;
}

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

float detail::correlation(QList<KxPointXY>::const_iterator begin, QList<KxPointXY>::const_iterator end) {
    double sx = 0.0;
    double sy = 0.0;
    double sxx = 0.0;
    double syy = 0.0;
    double sxy = 0.0;
    for (auto p = begin; p != end; ++p) {
        const double x = static_cast<double>(p->x);
        const double y = static_cast<double>(p->y);
        sx += x;
        sy += y;
        sxx += x * x;
        syy += y * y;
        sxy += x * y;
    }
    const double n = static_cast<double>(end - begin);
    const double mx = sx / n;
    const double my = sy / n;
    return static_cast<float>(((sxy / n - mx * my) / std::sqrt(syy / n - my * my)) / std::sqrt(sxx / n - mx * mx));
}

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

KxProfile KxProfile::derivative() {
    KxProfile slopes;
    const QList<KxPointXY>& list = points;
    for (qsizetype i = 0; i + 1 < list.size(); ++i) {
        const float slope = (list[i + 1].y - list[i].y) / (list[i + 1].x - list[i].x);
        // Deliberately swapped: the slope is the first coordinate, the position the second.
        slopes.points.append(KxPointXY(slope, list[i].x));
    }
    return slopes;
}

int KxProfile::findZeros(float* const xs) {
    const QList<KxPointXY>& list = points;
    int count = 0;
    for (qsizetype i = 1; i < list.size(); ++i) {
        const float previous = list[i - 1].y;
        const float current = list[i].y;
        // Deliberately strict: a y of exactly 0 is no sign and hides the change across it.
        if ((current > 0.0f && previous < 0.0f) || (current < 0.0f && previous > 0.0f)) {
            xs[count] = list[i].x;
            ++count;
        }
    }
    return count;
}

float KxProfile::calcCorrelation() {
    return detail::correlation(points.constBegin(), points.constEnd());
}

float KxProfile::integral(int fromIndex, int toIndex, bool plain) {
    const float from = std::as_const(points)[fromIndex].x;
    const float to = std::as_const(points)[toIndex].x;
    KxProfile between(*this);
    between.trim(from, kNaN, to, kNaN);
    constexpr int kMaxPlainPoints = 4;
    if (plain || between.size() <= kMaxPlainPoints) {
        return trapezoidSum(between.points);
    }
    return refinedArea(between);
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
