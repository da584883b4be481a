// Whether the tread of a wheel is round, judged by all its profiles together.
#include "inspect/train/wheelRoundness.h"

#include "inspect/train/flangeCircle.h"
#include "inspect/train/radiusTable.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kFrom = static_cast<double>(kTreadFrom);
constexpr double kTo = static_cast<double>(kTreadTo);

/// What one profile shows of the wheel.
struct Section {
    int number;
    double place;
    std::optional<SectionPoint> tip;
    Stations tread;
};

std::vector<Section> sectionsOf(const WheelView& wheel) {
    const double towardsRail = directionOfRail(wheel.profiles, wheel.reference);
    std::vector<Section> sections;
    for (size_t i = 0; i < wheel.profiles.size() && towardsRail != 0.0; ++i) {
        const auto place = static_cast<double>(wheel.places[i]);
        const auto straightSection = [&](const PointList& points) {
            std::vector<SectionPoint> section = sectionOf(points, wheel.reference, towardsRail);
            for (SectionPoint& p : section) {
                p = wheel.askew.straightened(p, place);
            }
            return section;
        };
        sections.push_back({static_cast<int>(i) + 1, place, flangeTip(straightSection(wheel.profiles[i])),
                            stationsOf(straightSection(wheel.treads[i]))});
    }
    return sections;
}

/// Looks at each run of successive profiles that are off to the same side. @return false when there is no run
bool judgeRuns(Roundness& result, const DefectLimits& limits) {
    const auto length = static_cast<size_t>(std::max(1, limits.radiusProfiles));
    bool hasRun = false;
    for (size_t first = 0; length <= result.radii.size() && first <= result.radii.size() - length; ++first) {
        const auto run = result.radii.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = run + static_cast<std::ptrdiff_t>(length);
        const bool isSuccessive = (end - 1)->profile - run->profile == static_cast<int>(length) - 1;
        hasRun = hasRun || isSuccessive;
        const auto [low, high] = std::minmax_element(
            run, end, [](const RadiusDeviation& a, const RadiusDeviation& b) { return a.deviation < b.deviation; });
        const float least = std::max(low->deviation, -high->deviation); // above 0 when all are on one side
        if (!isSuccessive || least <= 0.0f) {
            continue;
        }
        result.largest = std::max(result.largest, least);
        for (auto radius = run; radius != end && least > limits.maxRadiusDeviation; ++radius) {
            if (result.profiles.empty() || result.profiles.back() < radius->profile) {
                result.profiles.push_back(radius->profile);
            }
        }
    }
    result.isOut = !result.profiles.empty();
    return hasRun;
}

/// Why the tips of the flange give no axle to measure from; empty when they do.
QString whyNoAxle(const std::vector<FlangeTip>& tips, const std::optional<FlangeCircle>& circle,
                  const DefectLimits& limits) {
    const double limit = static_cast<double>(limits.maxRadiusDeviation) / 2.0;
    if (tips.size() < kFewestTips) {
        return QStringLiteral("fewer than %1 profiles show the tip of the flange").arg(kFewestTips);
    }
    if (!circle || !std::isfinite(circle->scatter)) {
        return QStringLiteral("the tips of the flange are on no circle");
    }
    // What is seen worse than what is looked for gives no centre, either.
    return circle->scatter <= limit ? QString()
                                    : QStringLiteral("the tips of the flange scatter by %1 mm about their circle, more "
                                                     "than %2 mm, half of maxRadiusDeviation")
                                          .arg(circle->scatter, 0, 'g', 3)
                                          .arg(limit, 0, 'g', 3);
}

} // namespace

RoundnessVerdict judgeRoundness(const WheelView& wheel, const DefectLimits& limits) {
    const auto notJudged = [](const QString& reason) { return RoundnessVerdict{{}, reason.toStdString()}; };
    const std::vector<Section> sections = sectionsOf(wheel);
    if (sections.empty()) {
        return notJudged(QStringLiteral("flange and tread cannot be recognised in the profiles"));
    }
    std::vector<FlangeTip> tips;
    for (const Section& section : sections) {
        if (section.tip) {
            tips.push_back({section.place + wheel.askew.alongAt(section.tip->across), section.tip->down});
        }
    }
    const std::optional<FlangeCircle> circle = fitFlangeCircle(tips);
    if (const QString reason = whyNoAxle(tips, circle, limits); !reason.isEmpty()) {
        return notJudged(reason);
    }
    RadiusTable table;
    for (const Section& section : sections) {
        table.add(section.number, section.place, section.tread, *circle, wheel.askew);
    }
    if (table.size() < kFewestRadii) {
        return notJudged(QStringLiteral("fewer than %1 profiles show at least %2 mm of the tread between the lines")
                             .arg(kFewestRadii)
                             .arg(kLeastTread));
    }
    table.keepComparable();
    if (table.size() < kFewestRadii) {
        return notJudged(
            QStringLiteral("the profiles show different parts of the tread, fewer than %1 one that most show")
                .arg(kFewestRadii));
    }
    Roundness result;
    result.radii = table.deviations();
    result.flangeRadius = static_cast<float>(circle->radius);
    result.scatter = static_cast<float>(circle->scatter);
    if (!judgeRuns(result, limits)) {
        return notJudged(
            QStringLiteral("fewer than %1 successive profiles show flange and tread, the least that make a "
                           "wheel out of round (radiusProfiles)")
                .arg(limits.radiusProfiles));
    }
    return {result, {}};
}

} // namespace KxInspect::detail
