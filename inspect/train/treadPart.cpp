// What of a profile is tread.
#include "inspect/train/treadPart.h"

#include "inspect/base/points.h"
#include "inspect/fitting/robustLine.h"
#include "inspect/train/flangeCircle.h"

#include <KxInspect/PassResult.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

/// Points with their directions in the wheel, in parallel.
struct Part {
    PointList points;
    std::vector<SectionPoint> section;

    template <typename Keep>
    void keepIf(Keep keep) {
        Part kept;
        for (std::size_t i = 0; i < section.size(); ++i) {
            if (keep(section[i])) {
                kept.points.append(std::as_const(points)[static_cast<qsizetype>(i)]);
                kept.section.push_back(section[i]);
            }
        }
        *this = std::move(kept);
    }
};

/// How far down the flange reaches; NaN where the profile shows no flange.
double lowestOfFlange(const std::vector<SectionPoint>& section) {
    if (const std::optional<SectionPoint> tip = flangeTip(section)) {
        return tip->down;
    }
    constexpr double kEnd = 30.0; // mm behind the back face; rails begin farther off
    constexpr std::size_t kFewest = 20;
    std::vector<double> downs;
    for (const SectionPoint& p : section) {
        if (p.across > 0.0 && p.across < kEnd) {
            downs.push_back(p.down);
        }
    }
    return downs.size() >= kFewest ? *std::max_element(downs.begin(), downs.end())
                                   : std::numeric_limits<double>::quiet_NaN();
}

/// Leaves the points that are above the tip of the flange as treads are. Flanges are 24 to 40 mm high; along a chord the
/// tread is farther from the tip, by the cosine of at most 45 degrees, and treads have defects.
void keepAboveTip(Part& part, double tip) { // NaN: none
    constexpr double kLeast = 15.0; // mm
    constexpr double kMost = 60.0;
    part.keepIf([&](const SectionPoint& p) { return tip - p.down >= kLeast && tip - p.down <= kMost; });
}

/// The mean distance down of the points between two places; NaN where there is none.
double meanDown(const std::vector<SectionPoint>& section, double from, double to) {
    double sum = 0.0;
    int count = 0;
    for (const SectionPoint& p : section) {
        if (p.across > from && p.across <= to) {
            sum += p.down;
            ++count;
        }
    }
    return sum / count;
}

/// A tread ends where its points leave the straight line around the tape circle for good, by more than a defect does,
/// and not where a chamfer begins to fall off: treads have slopes up to 1 in 7, chamfers about 1 in 1.
void leaveOutRimEnd(Part& part) {
    constexpr double kFar = 5.0; // mm
    constexpr double kStep = 2.0; // mm, for slopes
    constexpr double kBack = 1.0; // mm, half a step
    constexpr double kSteep = 1.0 / 3.0;
    constexpr int kMostSteps = 8; // chamfers are about 5 mm wide
    std::vector<Sample> samples;
    double last = -std::numeric_limits<double>::infinity();
    for (const SectionPoint& p : part.section) {
        last = std::max(last, p.across);
        if (p.across >= static_cast<double>(kTreadFrom) && p.across <= static_cast<double>(kTreadTo)) {
            samples.push_back({p.across, p.down});
        }
    }
    std::sort(samples.begin(), samples.end(), [](const Sample& a, const Sample& b) { return a.place < b.place; });
    const std::optional<RobustLine> line = fitRobustLine(samples);
    if (!line) {
        return;
    }
    double end = -std::numeric_limits<double>::infinity();
    for (const SectionPoint& p : part.section) {
        end = std::abs(p.down - line->at(p.across)) <= kFar ? std::max(end, p.across) : end;
    }
    for (int step = 0; step < kMostSteps; ++step) {
        const double fall =
            meanDown(part.section, end - kStep, end) - meanDown(part.section, end - 2.0 * kStep, end - kStep);
        if (!(std::abs(fall) > kSteep * kStep)) { // NaN: no points to tell
            break;
        }
        end -= kBack;
    }
    if (end < last) {
        part.keepIf([&](const SectionPoint& p) { return p.across <= end - kStep; });
    }
}

} // namespace

std::vector<PointList> treadParts(const std::vector<PointList>& profiles, const std::vector<PointList>& cuts,
                                  const KxMath::KxLine& reference) {
    const double towardsRail = directionOfRail(profiles, reference);
    std::vector<PointList> parts;
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        Part part = {cuts[i], sectionOf(cuts[i], reference, towardsRail == 0.0 ? 1.0 : towardsRail)};
        if (towardsRail != 0.0) {
            keepAboveTip(part, lowestOfFlange(sectionOf(profiles[i], reference, towardsRail)));
        }
        leaveOutRimEnd(part);
        parts.push_back(std::move(part.points));
    }
    return parts;
}

} // namespace KxInspect::detail
