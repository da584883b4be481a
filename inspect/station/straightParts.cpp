// The straight parts of profiles.
#include "inspect/station/straightParts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

using PointList = QList<KxMath::KxPointXY>;

constexpr qsizetype kFewestPoints = 5;
// A piece with a gap of this length is no longer a piece of one surface.
constexpr double kMostGap = kPartLength / 3.0;

double distance(const KxMath::KxPointXY& a, const KxMath::KxPointXY& b) {
    return std::hypot(static_cast<double>(a.x - b.x), static_cast<double>(a.y - b.y));
}

/// The finite points without single ones that stand off both neighbours, while these are close to each other.
PointList withoutSpikes(const PointList& points) {
    PointList finite;
    finite.reserve(points.size());
    for (const KxMath::KxPointXY& p : points) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            finite.append(p);
        }
    }
    PointList kept;
    kept.reserve(finite.size());
    for (qsizetype i = 0; i < finite.size(); ++i) {
        const bool isSpike = i > 0 && i + 1 < finite.size() && distance(finite[i - 1], finite[i]) > kMostGap &&
                             distance(finite[i], finite[i + 1]) > kMostGap &&
                             distance(finite[i - 1], finite[i + 1]) <= kMostGap;
        if (!isSpike) {
            kept.append(finite[i]);
        }
    }
    return kept;
}

/// The line with the least squares of the distances from it, through the points from `begin` up to `end`.
StraightPart fit(const PointList& points, qsizetype begin, qsizetype end, int record) {
    const double count = static_cast<double>(end - begin);
    double x = 0.0;
    double y = 0.0;
    for (qsizetype i = begin; i < end; ++i) {
        x += static_cast<double>(points[i].x) / count;
        y += static_cast<double>(points[i].y) / count;
    }
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    for (qsizetype i = begin; i < end; ++i) {
        const double dx = static_cast<double>(points[i].x) - x;
        const double dy = static_cast<double>(points[i].y) - y;
        xx += dx * dx / count;
        xy += dx * dy / count;
        yy += dy * dy / count;
    }
    const double angle = std::atan2(2.0 * xy, xx - yy) / 2.0;
    const double across = (xx + yy) / 2.0 - std::hypot((xx - yy) / 2.0, xy);
    return {record, static_cast<float>(angle * 180.0 / std::numbers::pi), static_cast<float>(x), static_cast<float>(y),
            static_cast<float>(std::sqrt(std::max(0.0, across)))};
}

} // namespace

void addStraightParts(const PointList& all, int record, std::vector<StraightPart>& parts) {
    const PointList points = withoutSpikes(all);
    qsizetype begin = 0;
    for (qsizetype i = 1; i < points.size(); ++i) {
        if (distance(points[i - 1], points[i]) > kMostGap) {
            begin = i;
        } else if (distance(points[begin], points[i]) >= kPartLength) {
            if (i + 1 - begin >= kFewestPoints) {
                parts.push_back(fit(points, begin, i + 1, record));
            }
            begin += (i + 1 - begin) / 2;
        }
    }
}

double straightLimit(const std::vector<StraightPart>& parts, double degrees) {
    constexpr double kAlike = 5.0; // degrees
    constexpr double kTimes = 2.0;
    constexpr double kFloor = 0.02; // mm
    std::vector<float> deviations;
    for (const StraightPart& part : parts) {
        if (std::abs(static_cast<double>(part.degrees) - degrees) <= kAlike) {
            deviations.push_back(part.deviation);
        }
    }
    if (deviations.empty()) {
        return kFloor;
    }
    const auto quartile = deviations.begin() + static_cast<std::ptrdiff_t>(deviations.size() / 4);
    std::nth_element(deviations.begin(), quartile, deviations.end());
    return std::max(kFloor, kTimes * static_cast<double>(*quartile));
}

} // namespace KxInspect::detail
