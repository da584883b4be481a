// Whether the tread of a wheel is round, judged by all its profiles together.
#include "inspect/train/wheelRoundness.h"

#include "inspect/fitting/median.h"
#include "inspect/train/dirtOnTread.h"
#include "inspect/train/roundnessFit.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// Successive profiles whose tread is off to the same side.
struct Runs {
    std::vector<int> profiles; ///< of all runs that are off farther than allowed
    double largest = 0.0; ///< what the profiles of a run are off at least, of all runs the most
    double error = 0.0; ///< standard error of that
    bool isAny = false; ///< so many profiles succeed each other somewhere
};

/// How far off counts.
double limitOf(const BandRadius& radius, const DefectLimits& limits) {
    return std::max(static_cast<double>(limits.maxRadiusDeviation), kLimitErrors * radius.error);
}

Runs runsOf(const std::vector<BandRadius>& radii, const DefectLimits& limits) {
    Runs result;
    const auto length = static_cast<size_t>(std::max(1, limits.radiusProfiles));
    for (size_t first = 0; length <= radii.size() && first <= radii.size() - length; ++first) {
        const auto run = radii.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = run + static_cast<std::ptrdiff_t>(length);
        if ((end - 1)->profile - run->profile != static_cast<int>(length) - 1) {
            continue;
        }
        result.isAny = true;
        for (const double side : {1.0, -1.0}) {
            const auto least = std::min_element(run, end, [&](const BandRadius& a, const BandRadius& b) {
                return side * a.deviation < side * b.deviation;
            });
            if (side * least->deviation > result.largest) {
                result.largest = side * least->deviation;
                result.error = least->error;
            }
            const bool isOff =
                std::all_of(run, end, [&](const BandRadius& r) { return side * r.deviation > limitOf(r, limits); });
            for (auto radius = run; radius != end && isOff; ++radius) {
                if (result.profiles.empty() || result.profiles.back() < radius->profile) {
                    result.profiles.push_back(radius->profile);
                }
            }
        }
    }
    return result;
}

/// 95 % of a normal distribution.
Interval interval95(double value, double error) {
    constexpr double kNormal95 = 1.96;
    return Interval::around(static_cast<float>(value), static_cast<float>(kNormal95 * error));
}

/// What was found over a part of the width.
struct Judgement {
    Band band;
    std::vector<BandRadius> radii;
    Runs runs;
    bool isDirt = false; ///< dirt explains what is off

    bool isOff() const { return !runs.profiles.empty(); }
};

/// The median of the limits of the profiles.
double limitOf(const std::vector<BandRadius>& radii, const DefectLimits& limits) {
    std::vector<double> of;
    of.reserve(radii.size());
    for (const BandRadius& r : radii) {
        of.push_back(limitOf(r, limits));
    }
    return median(of);
}

Judgement judgeBand(const TreadTable& table, const Band& band, const DefectLimits& limits) {
    Judgement judged = {band, table.deviations(band), {}};
    judged.runs = runsOf(judged.radii, limits);
    judged.isDirt =
        judged.isOff() && isExplainedByDirt(judged.radii, table.treadRadius(), limitOf(judged.radii, limits),
                                            static_cast<std::size_t>(std::max(1, limits.radiusProfiles)));
    return judged;
}

/// Whether a judgement says more than another one: that a part is off, and that dirt does not explain it; then by how much.
bool tellsMore(const Judgement& a, const Judgement& b) {
    const auto rank = [](const Judgement& judged) { return !judged.isOff() ? 0 : judged.isDirt ? 1 : 2; };
    return rank(a) != rank(b) ? rank(a) > rank(b) : rank(a) > 0 && a.runs.largest > b.runs.largest;
}

/// Judges the whole width that is seen and, where that is round or dirt explains it, bands of it: flats may be narrow, and
/// of those that are one plane only the edge next to the flange may be in view.
Judgement judgeBands(const TreadTable& table, const DefectLimits& limits) {
    constexpr std::size_t kWidths[] = {10, 5}; // mm
    Judgement farthest = judgeBand(table, {}, limits);
    if (farthest.isOff() && !farthest.isDirt) {
        return farthest;
    }
    for (const std::size_t width : kWidths) {
        for (std::size_t first = 0; first + width <= Band().width(); first += width / 2) {
            Judgement band = judgeBand(table, {first, first + width - 1}, limits);
            if (band.radii.size() >= kFewestRadii && tellsMore(band, farthest)) {
                farthest = std::move(band);
            }
        }
    }
    return farthest;
}

/// Runs of successive profiles as parts of the circumference.
std::vector<SeenArc> seenArcs(const std::vector<BandRadius>& radii, double radius) {
    std::vector<SeenArc> arcs;
    for (std::size_t i = 0; i < radii.size(); ++i) {
        const auto arc = static_cast<float>(arcOf(radii[i].fromAxle, radius));
        if (i == 0 || radii[i].profile != radii[i - 1].profile + 1) {
            arcs.push_back({arc, arc});
        }
        arcs.back().from = std::min(arcs.back().from, arc); // the wheel rolls on: arcs descend
        arcs.back().to = std::max(arcs.back().to, arc);
    }
    std::reverse(arcs.begin(), arcs.end());
    return arcs;
}

Roundness roundnessOf(const RoundnessFit& fit, const Judgement& judged, const DefectLimits& limits) {
    Roundness result;
    result.flangeRadius = static_cast<float>(fit.axle->value[AxleFit::Radius]);
    result.scatter = static_cast<float>(fit.axle->scatter);
    for (const BandRadius& r : judged.radii) {
        result.radii.push_back({r.profile, static_cast<float>(r.fromAxle), static_cast<float>(r.deviation),
                                interval95(r.deviation, r.error)});
    }
    result.limit = static_cast<float>(limitOf(judged.radii, limits));
    result.bandFrom = kTreadFrom + static_cast<float>(judged.band.first);
    result.bandTo = kTreadFrom + static_cast<float>(judged.band.last);
    result.seen = seenArcs(judged.radii, fit.table.treadRadius());
    result.profiles = judged.runs.profiles;
    result.largest = static_cast<float>(judged.runs.largest);
    result.largestInterval = interval95(judged.runs.largest, judged.runs.error);
    result.isOut = judged.isOff() && !judged.isDirt;
    result.isDirty = judged.isDirt;
    return result;
}

RoundnessVerdict judgeFit(const RoundnessFit& fit, const DefectLimits& limits) {
    const auto notJudged = [](const QString& reason) { return RoundnessVerdict{{}, reason.toStdString()}; };
    if (!fit.axle) {
        return {{}, fit.reason};
    }
    const Judgement judged = judgeBands(fit.table, limits);
    if (!judged.runs.isAny) {
        return notJudged(
            QStringLiteral("fewer than %1 successive profiles show flange and tread, the least that make a "
                           "wheel out of round (radiusProfiles)")
                .arg(limits.radiusProfiles));
    }
    const Roundness result = roundnessOf(fit, judged, limits);
    if (!(result.limit > 0.0f)) { // NaN, too
        return notJudged(QStringLiteral("the settings give no limit to compare with"));
    }
    if (!result.isOut && !(result.limit <= std::max(kMostLimit, limits.maxRadiusDeviation))) {
        return notJudged(QStringLiteral("the noise of the profiles hides deviations up to %1 mm, more than %2")
                             .arg(static_cast<double>(result.limit), 0, 'g', 3)
                             .arg(static_cast<double>(kMostLimit)));
    }
    return {result, {}};
}

} // namespace

double arcOf(double fromAxle, double radius) {
    return fromAxle - radius * std::asin(std::clamp(fromAxle / radius, -1.0, 1.0));
}

std::vector<RoundnessVerdict> judgeRoundness(const std::vector<WheelView>& wheels, const DefectLimits& limits) {
    std::vector<WheelSections> sections;
    std::vector<RoundnessFit> alone;
    for (const WheelView& wheel : wheels) {
        sections.emplace_back(wheel);
        alone.push_back(fitWheel(sections.back(), wheel, knowledgeOf(wheel.plane)));
    }
    std::vector<RoundnessVerdict> verdicts;
    for (std::size_t i = 0; i < wheels.size(); ++i) {
        const StationKnowledge known = knowledgeFrom(alone, i, wheels[i].plane);
        const RoundnessFit fit = fitWheel(sections[i], wheels[i], known);
        verdicts.push_back(judgeFit(fit, limits));
        if (verdicts.back().roundness) {
            verdicts.back().map = fit.table.map(static_cast<int>(wheels[i].profiles.size()));
        }
    }
    return verdicts;
}

} // namespace KxInspect::detail
