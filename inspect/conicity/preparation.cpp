// Preparing measured profiles for the calculation.
#include "inspect/conicity/preparation.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/sections/contourChecks.h"
#include "inspect/sections/flangeBack.h"
#include "inspect/sections/runningSurface.h"
#include "inspect/sections/shownOrientation.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// What the turning of a profile means, in words: "y points up, x inwards".
std::string wordsOf(Orientation taken) {
    const bool isUp = taken.isUp.value_or(false);
    const bool isMirrored = taken.isMirrored.value_or(false);
    return std::string(isUp ? "y points up" : "y points down") + (isMirrored ? ", x inwards" : ", x outwards");
}

/// One part of an orientation: as given, else as shown. Adds to the warnings where both contradict each other.
bool decide(std::optional<bool> given, std::optional<bool> shown, const std::string& doubt,
            std::vector<std::string>& warnings) {
    if (given && shown && *given != *shown) {
        warnings.push_back(doubt);
    }
    return given ? *given : shown.value_or(false);
}

/// How a profile stood in its file.
struct Turned {
    Orientation taken;
    bool isAsShown; ///< as its shape shows
};

/// Turns a profile without NaN, as it was asked for or as its shape shows.
Turned turn(Profile& profile, WheelSetPart part, const ConicityInput& input, std::vector<std::string>& warnings) {
    const CrossSection& section = input.sections[part];
    const Orientation given = section.orientation;
    const ShownOrientation shown =
        isWheel(part) ? shownByWheel(profile.points) : shownByRail(profile.points, input.gaugeDepth);
    const bool isGiven = given.isUp && given.isMirrored;
    if (!shown.isRecognised && !isGiven && widthOf(profile.points) <= kMaxSectionWidth) {
        fail(ErrorKind::Unsuitable, {nameOf(part), section.file, {}},
             isWheel(part) ? QStringLiteral("shows no wheel in any orientation: no flange of 15 to 45 mm near "
                                            "one end, 70 mm from the tape circle")
                           : QStringLiteral("shows no rail in any orientation: no convex head"));
    }
    const std::string name = nameOf(part);
    const Orientation taken = {decide(given.isUp, shown.orientation.isUp,
                                      name + ": its shape shows y in the other direction than was said", warnings),
                               decide(given.isMirrored, shown.orientation.isMirrored,
                                      name + ": its shape shows x in the other direction than was said", warnings)};
    const bool isFound = (!given.isUp && *taken.isUp) || (!given.isMirrored && *taken.isMirrored);
    if (isFound) {
        warnings.push_back(name + ": " + wordsOf(taken) + ", as its shape shows");
    }
    orient(profile, taken);
    const auto isAsShown = [](std::optional<bool> value, std::optional<bool> seen) { return !seen || value == seen; };
    return {taken, shown.isRecognised && isAsShown(taken.isUp, shown.orientation.isUp) &&
                       isAsShown(taken.isMirrored, shown.orientation.isMirrored)};
}

/// Makes a turned wheel begin at its flange back.
void cutAtFlangeBack(Profile& wheel, WheelSetPart part, const ConicityInput& input, bool isMirrored,
                     std::vector<std::string>& warnings) {
    const std::string& file = input.sections[part].file;
    if (const std::optional<float> given = part == Wheel1 ? input.flangeBack1 : input.flangeBack2) {
        beginAtFlangeBack(wheel.points, isMirrored ? -*given : *given);
        return;
    }
    const std::optional<FlangeBack> back = findFlangeBack(wheel.points);
    if (!back) {
        fail(ErrorKind::Unsuitable, {nameOf(part), file, {}},
             QStringLiteral("does not begin on a steep flange back, and its x is not counted from there: say "
                            "where the flange back is"));
    }
    constexpr float kTolerance = 0.05f;
    const float first = std::min_element(wheel.points.begin(), wheel.points.end(), isLeft)->x;
    if (!back->isSeen && std::abs(first - back->x) > kTolerance) {
        warnings.push_back(QStringLiteral("%1 shows no flange back: it is taken to be at x = %2, where its x is "
                                          "counted from")
                               .arg(QLatin1String(nameOf(part)))
                               .arg(static_cast<double>(isMirrored ? -back->x : back->x))
                               .toStdString());
    }
    beginAtFlangeBack(wheel.points, back->x);
}

/// Cuts a rail at its gauge point.
void cut(Profile& rail, WheelSetPart part, float gaugeDepth, PlacedSection& result,
         std::vector<std::string>& warnings) {
    result.isCut = cutAtGaugeDepth(rail, gaugeDepth);
    if (!*result.isCut) {
        warnings.push_back(std::string(nameOf(part)) + " does not reach down to the gauge depth on its gauge "
                                                       "side: its end is taken as gauge point");
    }
}

/// Drops outliers of a contour, and tells of them and of its largest gap.
int clean(Profile& profile, WheelSetPart part, std::vector<std::string>& warnings) {
    const Outliers outliers = dropOutliers(profile.points);
    if (outliers.count > 0) {
        warnings.push_back(
            QStringLiteral("%1: %2 outliers were dropped; the farthest one, at x = %3, is %4 mm beside its "
                           "neighbours")
                .arg(QLatin1String(nameOf(part)))
                .arg(outliers.count)
                .arg(static_cast<double>(outliers.farthest.x), 0, 'f', 1)
                .arg(static_cast<double>(outliers.distance), 0, 'f', 2)
                .toStdString());
    }
    if (const std::optional<Gap> gap = largestGap(profile.points)) {
        warnings.push_back(QStringLiteral("%1 has a gap of %2 mm at x = %3, which is taken as straight")
                               .arg(QLatin1String(nameOf(part)))
                               .arg(static_cast<double>(gap->width), 0, 'f', 1)
                               .arg(static_cast<double>(gap->middle.x), 0, 'f', 1)
                               .toStdString());
    }
    return outliers.count;
}

} // namespace

PlacedSection prepare(Profile& profile, WheelSetPart part, const ConicityInput& input,
                      std::vector<std::string>& warnings) {
    PlacedSection result;
    result.file = shown(input.sections[part].file);
    const int missing = dropMissing(profile);
    const int outliers = clean(profile, part, warnings);
    const Turned turned = turn(profile, part, input, warnings);
    if (isWheel(part) && turned.isAsShown) {
        cutAtFlangeBack(profile, part, input, *turned.taken.isMirrored, warnings);
    }
    if (!isWheel(part) && input.gaugeDepth > 0.0f) {
        cut(profile, part, input.gaugeDepth, result, warnings);
    }
    const std::optional<int> hidden =
        keepRunningSurface(profile, isWheel(part) ? SectionKind::Wheel : SectionKind::Rail);
    if (!hidden) {
        fail(ErrorKind::Unsuitable, {nameOf(part), input.sections[part].file, {}},
             QStringLiteral("holds points that do not follow a contour from one end to the other"));
    }
    result.dropped = missing + outliers + *hidden;
    if (missing + *hidden > 0) {
        warnings.push_back(std::string(nameOf(part)) + ": " + std::to_string(missing + *hidden) +
                           " points that are missing or stand behind others were dropped");
    }
    return result;
}

} // namespace KxInspect::detail
