// The circle on which the flange tip of a wheel turns, from the profiles of a pass.
#include "inspect/train/flangeCircle.h"

#include "inspect/fitting/leastSquares.h"
#include "inspect/fitting/median.h"

#include <KxInspect/PassResult.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

/// Where tips are looked for behind the reference line: before the gauge face of a rail, which would be farther down.
constexpr double kTipRange = 30.0; // mm
constexpr double kTipHalfWidth = 2.5; // mm to both sides of the tip that a parabola follows
constexpr double kTipReach = 2.0; // mm to both sides of the tip that must be in view
constexpr int kFewestTipPoints = 8; // to each side

/// The lowest place of the parabola through the points around `middle`.
std::optional<SectionPoint> lowestNear(const std::vector<SectionPoint>& section, double middle) {
    LeastSquares3 parabola;
    double from = 0.0;
    double to = 0.0;
    const Neighbours near = visitNeighbours(section, middle, kTipHalfWidth, [&](double t, double down) {
        parabola.add({1.0, t, t * t}, down);
        from = std::min(from, t);
        to = std::max(to, t);
    });
    if (near.fewer() < kFewestTipPoints || std::min(-from, to) < kTipReach) {
        return {};
    }
    const auto c = parabola.solve();
    if (!c || (*c)[2] >= 0.0) {
        return {};
    }
    const double t = std::clamp(-(*c)[1] / (2.0 * (*c)[2]), -kTipHalfWidth, kTipHalfWidth);
    return SectionPoint{middle + t, (*c)[0] + ((*c)[1] + (*c)[2] * t) * t};
}

/// Circle of least weighted squares of x^2 + y^2 - 2 a x - 2 b y - c (Kasa, A circle fitting procedure and its error
/// analysis, 1976), about the first tip for the sake of rounding.
std::optional<FlangeCircle> fitWeighted(const std::vector<ProfileTip>& tips, const std::vector<double>& weights) {
    LeastSquares3 sums;
    for (size_t i = 0; i < tips.size(); ++i) {
        const double x = tips[i].place - tips[0].place;
        const double y = tips[i].down - tips[0].down;
        sums.add({2.0 * x, 2.0 * y, 1.0}, x * x + y * y, weights[i]);
    }
    const auto c = sums.solve();
    if (!c) {
        return {};
    }
    const auto [x, y, rest] = *c;
    const double radius = std::sqrt(x * x + y * y + rest);
    return std::isfinite(radius) ? std::optional(FlangeCircle{tips[0].place + x, tips[0].down + y, radius, 0.0})
                                 : std::nullopt;
}

double meanDown(const std::vector<SectionPoint>& section, double from, double to) {
    double sum = 0.0;
    int count = 0;
    for (const SectionPoint& p : section) {
        if (p.across >= from && p.across <= to) {
            sum += p.down;
            ++count;
        }
    }
    return sum / count; // NaN where there is none
}

} // namespace

std::vector<SectionPoint> sectionOf(const QList<KxMath::KxPointXY>& points, const KxMath::KxLine& reference,
                                    double towardsRail) {
    const double slope = static_cast<double>(reference.k);
    const double cosine = 1.0 / std::hypot(1.0, slope);
    std::vector<SectionPoint> section;
    section.reserve(static_cast<size_t>(points.size()));
    for (const KxMath::KxPointXY& p : points) {
        const double x = static_cast<double>(p.x);
        const double y = static_cast<double>(p.y);
        if (std::isfinite(x) && std::isfinite(y)) {
            section.push_back(
                {(y - slope * x - static_cast<double>(reference.b)) * cosine, towardsRail * (x + slope * y) * cosine});
        }
    }
    return section;
}

double directionOfRail(const std::vector<QList<KxMath::KxPointXY>>& profiles, const KxMath::KxLine& reference) {
    double votes = 0.0;
    for (const QList<KxMath::KxPointXY>& points : profiles) {
        const std::vector<SectionPoint> section = sectionOf(points, reference, 1.0);
        const double difference = meanDown(section, 10.0, 20.0) -
                                  meanDown(section, static_cast<double>(kTreadFrom), static_cast<double>(kTreadTo));
        votes += std::isfinite(difference) ? std::copysign(1.0, difference) : 0.0;
    }
    return votes == 0.0 ? 0.0 : std::copysign(1.0, votes);
}

std::optional<SectionPoint> flangeTip(const std::vector<SectionPoint>& section) {
    const SectionPoint* lowest = nullptr;
    for (const SectionPoint& p : section) {
        if (p.across > 0.0 && p.across < kTipRange && (lowest == nullptr || p.down > lowest->down)) {
            lowest = &p;
        }
    }
    if (lowest == nullptr) {
        return {};
    }
    constexpr int kSteps = 4; // from the lowest point, which noise has chosen, to the tip
    std::optional<SectionPoint> tip = *lowest;
    for (int step = 0; step < kSteps && tip; ++step) {
        tip = lowestNear(section, tip->across);
    }
    return tip;
}

double tipError(const std::vector<SectionPoint>& section, const SectionPoint& tip) {
    LeastSquares3 parabola;
    const Neighbours near = visitNeighbours(section, tip.across, kTipHalfWidth, [&](double t, double down) {
        parabola.add({1.0, t, t * t}, down);
    });
    const auto c = parabola.solve();
    if (!c) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    std::vector<double> sizes;
    visitNeighbours(section, tip.across, kTipHalfWidth, [&](double t, double down) {
        sizes.push_back(std::abs(down - (*c)[0] - ((*c)[1] + (*c)[2] * t) * t));
    });
    // In the middle of evenly spread points a parabola is 3/2 as uncertain as their mean.
    constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
    return 1.5 * kNormal * median(sizes) / std::sqrt(near.before + near.behind);
}

std::optional<FlangeCircle> fitFlangeCircle(const std::vector<ProfileTip>& tips) {
    if (tips.size() < kFewestTips) {
        return {};
    }
    // Weights of the biweight function: Beaton and Tukey, The fitting of power series, 1974.
    constexpr int kRounds = 20;
    constexpr double kTuning = 4.685;
    constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
    constexpr double kLeastScatter = 1e-4; // mm; keeps weights defined on perfect data
    std::vector<double> weights(tips.size(), 1.0);
    std::vector<double> offsets(tips.size());
    std::optional<FlangeCircle> circle;
    for (int round = 0; round < kRounds; ++round) {
        circle = fitWeighted(tips, weights);
        if (!circle) {
            return {};
        }
        for (size_t i = 0; i < tips.size(); ++i) {
            offsets[i] =
                std::abs(std::hypot(tips[i].place - circle->place, tips[i].down - circle->down) - circle->radius);
        }
        circle->scatter = kNormal * median(offsets);
        const double reach = kTuning * std::max(circle->scatter, kLeastScatter);
        for (size_t i = 0; i < tips.size(); ++i) {
            const double u = std::min(1.0, offsets[i] / reach);
            weights[i] = (1.0 - u * u) * (1.0 - u * u);
        }
    }
    return circle;
}

} // namespace KxInspect::detail
