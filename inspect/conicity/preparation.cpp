// Preparing measured profiles for the calculation.
#include "inspect/conicity/preparation.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/conicity/lateralSweep.h"
#include "inspect/sections/contourSmoothing.h"
#include "inspect/sections/flangeBack.h"
#include "inspect/sections/runningSurface.h"
#include "inspect/sections/upright.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

[[noreturn]] void refuse(WheelSetPart part, const ConicityInput& input, const QString& reason) {
    fail(ErrorKind::Unsuitable, {nameOf(part), input.sections[part].file, {}}, reason);
}

SectionKind kindOf(WheelSetPart part) {
    return isWheel(part) ? SectionKind::Wheel : SectionKind::Rail;
}

/// Turns a contour, and finds the flange back of a wheel.
void place(Profile& profile, WheelSetPart part, const ConicityInput& input, PreparedSection& result, Notes& notes) {
    const SectionKind kind = kindOf(part);
    const auto stance = turnUpright(profile, kind, input.sections[part].orientation, input.gaugeDepth, notes);
    if (!stance) {
        refuse(part, input, noShapeOf(kind));
    }
    result.contour = profile.points;
    const std::optional<float> back = part == Wheel1 ? input.flangeBack1 : input.flangeBack2;
    if (isWheel(part) && (back || stance->isAsShown) && !placeFlangeBack(profile, back, stance->isMirrored, notes)) {
        refuse(part, input, noFlangeBack());
    }
    result.isBackMeasured = isWheel(part) && !back && isBackMeasured(result.contour);
    const auto first = std::min_element(profile.points.begin(), profile.points.end(), isLeft);
    result.flangeBack = first == profile.points.end() ? 0.0f : first->x;
}

/// Smoothing needs no more points than every 0.15 mm, resampling no more than 20000.
void averageGroups(PreparedSection& section, bool isSmoothed) {
    constexpr std::size_t kMost = 20000;
    constexpr double kSpacing = 0.15; // mm
    const int size =
        isSmoothed ? groupSize(section.contour, kSpacing) : static_cast<int>(section.contour.size() / kMost) + 1;
    if (size > 1) {
        section.contour = meansOfGroups(section.contour, size);
        const float less = 1.0f / std::sqrt(static_cast<float>(size));
        section.noise = {section.noise.x * less, section.noise.y * less};
    }
}

/// The windows of the smoothing that was asked for; otherwise about a third of what one parabola can fit: an error of its shape, which
/// grows with the second to fourth power of the window, is then small beside the noise.
std::vector<float> windowsOf(const PreparedSection& section, const std::optional<float>& smoothing) {
    constexpr float kShare = 0.35f;
    constexpr float kShortest = 1.5f; // mm
    if (smoothing) {
        return std::vector<float>(section.contour.size(), *smoothing);
    }
    std::vector<float> windows = parabolaWindows(section.contour, section.noise);
    std::for_each(windows.begin(), windows.end(),
                  [&](float& window) { window = std::max(kShare * window, kShortest); });
    return windows;
}

/// How far the points lie off the smoothed contour, positive below it or, where it is steep, outside.
std::vector<Point> residualsOf(const PreparedSection& section) {
    const ContourSmoothing smoothing(section.contour, section.windows, placesOfPoints(section.contour));
    std::vector<Point> residuals;
    for (std::size_t i = 0; i < section.contour.size(); ++i) {
        const Point& p = section.contour[i];
        const float dx = p.x - smoothing.contour()[i].x;
        const float dy = p.y - smoothing.contour()[i].y;
        residuals.push_back({p.x, std::copysign(std::hypot(dx, dy), std::abs(dx) > std::abs(dy) ? dx : dy)});
    }
    return residuals;
}

void smooth(Profile& profile, PreparedSection& section) {
    constexpr float kGap = 2.0f; // mm; the contour is straight across wider ones
    PlacedSection& placed = section.placed;
    const auto [least, most] = std::minmax_element(section.windows.begin(), section.windows.end());
    placed.windows = {*least, *most};
    placed.residuals = residualsOf(section);
    profile.points =
        ContourSmoothing(section.contour, section.windows, placesAlong(section.contour, kGap, PointPlaces::Tenth))
            .contour();
}

/// Whether the gauge side of a rail ends at the gauge depth as far as the noise tells.
bool endsAtDepth(const std::vector<Point>& rail, float gaugeDepth, const ContourNoise& noise) {
    constexpr float kDeviations = 4.0f;
    const auto top = std::min_element(rail.begin(), rail.end(), isHigher);
    return std::any_of(rail.begin(), rail.end(), [&](const Point& p) {
        return p.x < top->x && p.y >= top->y + gaugeDepth - kDeviations * std::max(noise.x, noise.y);
    });
}

/// Cuts a contour where the calculation begins, and makes it a function of x.
/// @return the number of points that stand behind others; empty when they follow no contour
std::optional<int> cut(Profile& profile, WheelSetPart part, float gaugeDepth, PreparedSection& section) {
    if (isWheel(part)) {
        beginAtFlangeBack(profile.points, section.flangeBack);
    } else if (gaugeDepth > 0.0f) {
        section.placed.isCut =
            cutAtGaugeDepth(profile, gaugeDepth) || endsAtDepth(profile.points, gaugeDepth, section.noise);
    }
    return keepRunningSurface(profile, kindOf(part));
}

} // namespace

std::vector<float> samplesOf(const PreparedSection& section, WheelSetPart part, const std::vector<Point>& contour,
                             float gaugeDepth, double step) {
    const float from = isWheel(part) ? section.flangeBack : gaugePointOf(contour, gaugeDepth);
    return sampledSurface(contour, kindOf(part), static_cast<double>(from), step);
}

PreparedSection prepare(const Profile& measured, WheelSetPart part, const ConicityInput& input,
                        std::vector<std::string>& warnings) {
    PreparedSection result;
    result.placed.file = shown(input.sections[part].file);
    Notes notes;
    Profile profile = measured;
    const int missing = dropMissing(profile);
    const int outliers = cleanContour(profile, notes);
    place(profile, part, input, result, notes);
    result.noise = noiseOf(result.contour);
    result.placed.noise = {result.noise.x, result.noise.y};
    result.unsmoothed.points = result.points = result.contour;
    const bool isSmoothed = input.smoothing ? *input.smoothing > 0.0f : result.noise.isWorthSmoothing();
    averageGroups(result, isSmoothed);
    if (isSmoothed) {
        result.windows = windowsOf(result, input.smoothing);
    }
    std::optional<int> hidden = cut(result.unsmoothed, part, input.gaugeDepth, result);
    result.surface = result.unsmoothed;
    if (!result.windows.empty() && hidden) {
        smooth(result.surface, result);
        if ((hidden = cut(result.surface, part, input.gaugeDepth, result))) {
            constexpr float kLeast = 0.05f; // mm
            hidden = countHidden(result.contour, result.surface.points, kindOf(part),
                                 std::max(kLeast, 4.0f * std::max(result.noise.x, result.noise.y)));
        }
    }
    if (!hidden) {
        refuse(part, input, QStringLiteral("holds points that do not follow a contour from one end to the other"));
    }
    if (!result.placed.isCut.value_or(true)) {
        notes.push_back(QStringLiteral("does not reach down to the gauge depth on its gauge side: its end is taken as "
                                       "gauge point"));
    }
    result.placed.dropped = missing + outliers + *hidden;
    if (missing + *hidden > 0) {
        notes.push_back(QStringLiteral("has %1 points that are missing or stand behind others, which were dropped")
                            .arg(missing + *hidden));
    }
    for (const QString& note : notes) {
        warnings.push_back(std::string(nameOf(part)) + " " + note.toStdString());
    }
    return result;
}

} // namespace KxInspect::detail
