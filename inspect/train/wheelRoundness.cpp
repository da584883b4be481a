// Whether the tread of a wheel is round, judged by all its profiles together.
#include "inspect/train/wheelRoundness.h"

#include "inspect/fitting/median.h"
#include "inspect/train/flangeCircle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr size_t kStations = static_cast<size_t>(kRoundTo - kRoundFrom) + 1; // one each millimetre
constexpr int kFewestStations = 8; // of a profile

/// A value at each station of the tread, NaN where the profile does not show it.
using Stations = std::array<double, kStations>;

/// What one profile shows of the wheel.
struct Section {
    int number;
    double place;
    std::optional<double> tip;
    Stations tread;
};

/// Where the tread is at a station, on the line through the points within a millimetre of it.
double heightAt(const std::vector<SectionPoint>& tread, double station) {
    constexpr double kHalfWidth = 1.0;
    constexpr int kFewestPoints = 3; // to each side
    double s1 = 0.0;
    double s2 = 0.0;
    double d0 = 0.0;
    double d1 = 0.0;
    const Neighbours near = visitNeighbours(tread, station, kHalfWidth, [&](double t, double down) {
        s1 += t;
        s2 += t * t;
        d0 += down;
        d1 += t * down;
    });
    if (near.fewer() < kFewestPoints) {
        return kNaN;
    }
    return (s2 * d0 - s1 * d1) / (s2 * (near.before + near.behind) - s1 * s1);
}

Stations stationsOf(const std::vector<SectionPoint>& tread) {
    Stations result;
    for (size_t i = 0; i < kStations; ++i) {
        result[i] = heightAt(tread, kRoundFrom + static_cast<double>(i));
    }
    return result;
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

/// 1 when x runs towards the rail, -1 when it runs away: the flange reaches farther down than the tread. 0 when no
/// profile shows both.
double directionOfRail(const std::vector<PointList>& profiles, const KxMath::KxLine& reference) {
    double votes = 0.0;
    for (const PointList& points : profiles) {
        const std::vector<SectionPoint> section = sectionOf(points, reference, 1.0);
        const double difference = meanDown(section, 10.0, 20.0) - meanDown(section, kRoundFrom, kRoundTo);
        votes += std::isfinite(difference) ? std::copysign(1.0, difference) : 0.0;
    }
    return votes == 0.0 ? 0.0 : std::copysign(1.0, votes);
}

std::vector<Section> sectionsOf(const WheelView& wheel) {
    const double towardsRail = directionOfRail(wheel.profiles, wheel.reference);
    std::vector<Section> sections;
    for (size_t i = 0; i < wheel.profiles.size() && towardsRail != 0.0; ++i) {
        sections.push_back({static_cast<int>(i) + 1, static_cast<double>(wheel.places[i]),
                            flangeTip(sectionOf(wheel.profiles[i], wheel.reference, towardsRail)),
                            stationsOf(sectionOf(wheel.treads[i], wheel.reference, towardsRail))});
    }
    return sections;
}

/// The effects of the rows of a table with gaps, by median polish: each value is taken as the sum of what is common to
/// its row and what is common to its column (Tukey, Exploratory Data Analysis, 1977).
std::vector<double> rowEffects(const std::vector<Stations>& table) {
    constexpr int kRounds = 10;
    std::vector<double> effects(table.size(), 0.0);
    Stations common;
    for (int round = 0; round < kRounds; ++round) {
        for (size_t station = 0; station < kStations; ++station) {
            std::vector<double> values;
            for (size_t row = 0; row < table.size(); ++row) {
                if (!std::isnan(table[row][station])) {
                    values.push_back(table[row][station] - effects[row]);
                }
            }
            common[station] = median(values);
        }
        for (size_t row = 0; row < table.size(); ++row) {
            std::vector<double> values;
            for (size_t station = 0; station < kStations; ++station) {
                if (!std::isnan(table[row][station])) {
                    values.push_back(table[row][station] - common[station]);
                }
            }
            effects[row] = median(values);
        }
    }
    return effects;
}

std::vector<RadiusDeviation> radiiOf(const std::vector<Section>& sections, const FlangeCircle& circle) {
    std::vector<Stations> table;
    std::vector<RadiusDeviation> radii;
    for (const Section& section : sections) {
        Stations radius;
        int count = 0;
        for (size_t i = 0; i < kStations; ++i) {
            radius[i] = std::hypot(section.place - circle.place, section.tread[i] - circle.down);
            count += std::isnan(radius[i]) ? 0 : 1;
        }
        if (count >= kFewestStations) {
            table.push_back(radius);
            radii.push_back({section.number, static_cast<float>(section.place - circle.place), 0.0f});
        }
    }
    const std::vector<double> effects = rowEffects(table);
    const double middle = median(effects);
    for (size_t i = 0; i < radii.size(); ++i) {
        radii[i].deviation = static_cast<float>(effects[i] - middle);
    }
    return radii;
}

/// Looks at each run of successive profiles that are off to the same side.
void judgeRuns(Roundness& result, const DefectLimits& limits) {
    const auto length = static_cast<size_t>(std::max(1, limits.radiusProfiles));
    for (size_t first = 0; length <= result.radii.size() && first <= result.radii.size() - length; ++first) {
        const auto run = result.radii.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = run + static_cast<std::ptrdiff_t>(length);
        const bool isSuccessive = (end - 1)->profile - run->profile == static_cast<int>(length) - 1;
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
}

} // namespace

std::optional<Roundness> judgeRoundness(const WheelView& wheel, const DefectLimits& limits) {
    const std::vector<Section> sections = sectionsOf(wheel);
    std::vector<FlangeTip> tips;
    for (const Section& section : sections) {
        if (section.tip) {
            tips.push_back({section.place, *section.tip});
        }
    }
    const std::optional<FlangeCircle> circle = fitFlangeCircle(tips);
    // Tips that are no circle, or are seen worse than what is looked for, give no centre to measure from.
    if (!circle || !(circle->scatter <= static_cast<double>(limits.maxRadiusDeviation) / 2.0)) {
        return std::nullopt;
    }
    std::vector<RadiusDeviation> radii = radiiOf(sections, *circle);
    if (radii.size() < kFewestRadii) {
        return std::nullopt;
    }
    Roundness result;
    result.radii = std::move(radii);
    result.flangeRadius = static_cast<float>(circle->radius);
    result.scatter = static_cast<float>(circle->scatter);
    judgeRuns(result, limits);
    return result;
}

} // namespace KxInspect::detail
