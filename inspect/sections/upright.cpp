// Measured profiles made ready.
#include "inspect/sections/upright.h"

#include "inspect/sections/contourChecks.h"
#include "inspect/sections/flangeBack.h"
#include "inspect/sections/runningSurface.h"
#include "inspect/sections/shownOrientation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

QString fixed(float value, int digits) {
    return QString::number(static_cast<double>(value), 'f', digits);
}

/// Whether what was taken does not contradict the shape.
bool agrees(bool taken, std::optional<bool> shown) {
    return !shown || *shown == taken;
}

constexpr double kToTapeCircle = 55.0; // mm from the tip: a turn raises or lowers the flange by its tangent times that

double degrees(double slope) {
    return std::atan(slope) * 180.0 / std::numbers::pi;
}

/// A back face that leans shows a profile that is turned.
void noteLean(const std::vector<Point>& wheel, Notes& notes) {
    constexpr double kMost =
        0.005; // radians: changes the height of the flange by half of its usual tolerance of 0.5 mm
    constexpr double kSure = 3.0; // standard errors
    const std::optional<Lean> lean = leanOfBack(wheel);
    if (lean && std::abs(lean->slope) > std::max(kMost, kSure * lean->error)) {
        notes.push_back(
            QStringLiteral("has a flange back that leans by %1 degrees: a profile that is turned by so much "
                           "has a flange that is %2 mm too high or too low")
                .arg(std::abs(degrees(lean->slope)), 0, 'f', 1)
                .arg(std::abs(lean->slope) * kToTapeCircle, 0, 'f', 1));
    }
}

} // namespace

int cleanContour(Profile& profile, Notes& notes) {
    const Outliers outliers = dropOutliers(profile.points);
    if (outliers.count > 0) {
        notes.push_back(
            QStringLiteral("has %1 outliers, which were dropped; the farthest one, at x = %2, is %3 mm beside "
                           "its neighbours")
                .arg(outliers.count)
                .arg(fixed(outliers.farthest.x, 1), fixed(outliers.distance, 2)));
    }
    if (const std::optional<Gap> gap = largestGap(profile.points)) {
        notes.push_back(QStringLiteral("has a gap of %1 mm at x = %2, which is taken as straight")
                            .arg(fixed(gap->width, 1), fixed(gap->middle.x, 1)));
    }
    return outliers.count;
}

std::optional<Stance> turnUpright(Profile& profile, SectionKind kind, Orientation given, float gaugeDepth,
                                  Notes& notes) {
    const ShownOrientation shown =
        kind == SectionKind::Wheel ? shownByWheel(profile.points) : shownByRail(profile.points, gaugeDepth);
    const bool isGiven = given.isUp && given.isMirrored;
    if (!shown.isRecognised && !isGiven && widthOf(profile.points) <= kMaxSectionWidth) {
        return {};
    }
    const Orientation& seen = shown.orientation;
    Stance stance;
    stance.isUp = given.isUp.value_or(seen.isUp.value_or(false));
    stance.isMirrored = given.isMirrored.value_or(seen.isMirrored.value_or(false));
    stance.isAsShown =
        shown.isRecognised && agrees(stance.isUp, seen.isUp) && agrees(stance.isMirrored, seen.isMirrored);
    const auto words = [](bool isUp, bool isMirrored) {
        return (isUp ? QStringLiteral("y up and ") : QStringLiteral("y down and ")) +
               (isMirrored ? QStringLiteral("x inwards") : QStringLiteral("x outwards"));
    };
    const bool isTurned = (!given.isUp && stance.isUp) || (!given.isMirrored && stance.isMirrored);
    if (shown.isRecognised && !stance.isAsShown) {
        notes.push_back(QStringLiteral("is taken to have %1, but its shape shows %2")
                            .arg(words(stance.isUp, stance.isMirrored),
                                 words(seen.isUp.value_or(stance.isUp), seen.isMirrored.value_or(stance.isMirrored))));
    } else if (isTurned) {
        notes.push_back(
            QStringLiteral("has %1, as its shape shows, and was turned").arg(words(stance.isUp, stance.isMirrored)));
    }
    if (shown.isRecognised && !given.isMirrored && !seen.isMirrored && !shown.isEven) {
        notes.push_back((kind == SectionKind::Rail
                             ? QStringLiteral("does not show which side is the gauge side: %1 is taken")
                             : QStringLiteral("is a wheel in two orientations: %1 is taken"))
                            .arg(words(stance.isUp, stance.isMirrored)));
    }
    orient(profile, {stance.isUp, stance.isMirrored});
    return stance;
}

QString noShapeOf(SectionKind kind) {
    return kind == SectionKind::Wheel
               ? QStringLiteral("shows no wheel in any orientation: no flange of 15 to 45 mm near one end, 70 mm from "
                                "the tape circle")
               : QStringLiteral("shows no rail in any orientation: no convex head");
}

bool placeFlangeBack(Profile& wheel, std::optional<float> given, bool isMirrored, Notes& notes) {
    constexpr float kTolerance = 0.05f;
    noteLean(wheel.points, notes);
    if (given) {
        beginAtFlangeBack(wheel.points, isMirrored ? -*given : *given);
        return true;
    }
    const std::optional<FlangeBack> back = findFlangeBack(wheel.points);
    if (!back) {
        return false;
    }
    const float first = std::min_element(wheel.points.begin(), wheel.points.end(), isLeft)->x;
    if (!back->isSeen && std::abs(first - back->x) > kTolerance) {
        notes.push_back(
            QStringLiteral(
                "shows no flange back: it is taken to be at x = %1, where its x is counted from, and nothing "
                "shows whether the profile is turned, which makes the flange 1 mm too high or too low for each "
                "degree")
                .arg(static_cast<double>(isMirrored ? -back->x : back->x)));
    }
    beginAtFlangeBack(wheel.points, back->x);
    return true;
}

QString noFlangeBack() {
    return QStringLiteral("does not begin on a steep flange back, and its x is not counted from there: say where the "
                          "flange back is");
}

} // namespace KxInspect::detail
