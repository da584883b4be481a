// The profiles of a wheel in its own directions.
#include "inspect/train/wheelSections.h"

#include "inspect/fitting/median.h"

#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kFlangeEnd = 35.0; // mm behind the back face; the tip is before it

/// How far down a tip is that is so far from the axle, in a profile at a place.
double downOf(double fromAxle, const AxleFit& axle, double place, double skewed) {
    constexpr int kRounds = 3;
    double down = axle.level;
    for (int round = 0; round < kRounds; ++round) {
        const double along = axle.fromAxle(place, down) - skewed;
        down = axle.value[AxleFit::Down] + std::sqrt(std::max(0.0, fromAxle * fromAxle - along * along));
    }
    return down;
}

} // namespace

WheelSections::WheelSections(const WheelView& wheel) {
    const double towardsRail = directionOfRail(wheel.profiles, wheel.reference);
    for (std::size_t i = 0; i < wheel.profiles.size() && towardsRail != 0.0; ++i) {
        const auto place = static_cast<double>(wheel.places[i]);
        const auto straightSection = [&](const PointList& points) {
            std::vector<SectionPoint> section = sectionOf(points, wheel.reference, towardsRail);
            for (SectionPoint& p : section) {
                p = wheel.plane.inTrack(wheel.askew.straightened(p, place));
                p = {p.across - wheel.lean * p.down, p.down + wheel.lean * p.across};
            }
            return section;
        };
        Section section = {static_cast<int>(i) + 1, place, {}, stationsOf(straightSection(wheel.treads[i]))};
        for (const SectionPoint& p : straightSection(wheel.profiles[i])) {
            if (p.across < kFlangeEnd) {
                section.flange.push_back(p);
            }
        }
        sections_.push_back(std::move(section));
    }
}

FlangeTips WheelSections::tips(const std::optional<AxleFit>& axle, double skew, double across) const {
    FlangeTips result;
    std::vector<double> errors;
    std::vector<double> acrosses;
    for (const Section& section : sections_) {
        std::vector<SectionPoint> flange = section.flange;
        const auto skewed = [&](const SectionPoint& p) { return skew * (p.across - across); };
        for (SectionPoint& p : flange) {
            p.down = axle ? axle->radiusOf(axle->fromAxle(section.place, p.down) - skewed(p), p.down) : p.down;
        }
        if (const std::optional<SectionPoint> tip = flangeTip(flange)) {
            result.tips.push_back(
                {section.place, axle ? downOf(tip->down, *axle, section.place, skewed(*tip)) : tip->down});
            errors.push_back(tipError(flange, *tip));
            acrosses.push_back(tip->across);
        }
    }
    result.error = median(errors);
    result.across = median(acrosses);
    for (std::size_t i = 0; i < acrosses.size(); ++i) {
        result.tips[i].place -= skew * (acrosses[i] - result.across);
    }
    return result;
}

TreadTable WheelSections::table() const {
    TreadTable table;
    for (const Section& section : sections_) {
        table.add(section.number, section.place, section.tread);
    }
    return table;
}

} // namespace KxInspect::detail
