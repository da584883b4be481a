// Preparing measured profiles for the calculation.
#include "inspect/conicity/preparation.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/sections/upright.h"

namespace KxInspect::detail {

namespace {

[[noreturn]] void refuse(WheelSetPart part, const ConicityInput& input, const QString& reason) {
    fail(ErrorKind::Unsuitable, {nameOf(part), input.sections[part].file, {}}, reason);
}

/// Turns a contour, and makes a wheel begin at its flange back.
void place(Profile& profile, WheelSetPart part, const ConicityInput& input, Notes& notes) {
    const SectionKind kind = isWheel(part) ? SectionKind::Wheel : SectionKind::Rail;
    const auto stance = turnUpright(profile, kind, input.sections[part].orientation, input.gaugeDepth, notes);
    if (!stance) {
        refuse(part, input, noShapeOf(kind));
    }
    const std::optional<float> back = part == Wheel1 ? input.flangeBack1 : input.flangeBack2;
    if (isWheel(part) && (back || stance->isAsShown) && !placeFlangeBack(profile, back, stance->isMirrored, notes)) {
        refuse(part, input, noFlangeBack());
    }
}

} // namespace

PlacedSection prepare(Profile& profile, WheelSetPart part, const ConicityInput& input,
                      std::vector<std::string>& warnings) {
    PlacedSection result;
    result.file = shown(input.sections[part].file);
    Notes notes;
    const int missing = dropMissing(profile);
    const int outliers = cleanContour(profile, notes);
    place(profile, part, input, notes);
    if (!isWheel(part) && input.gaugeDepth > 0.0f) {
        result.isCut = cutAtGaugeDepth(profile, input.gaugeDepth);
        if (!*result.isCut) {
            notes.push_back(
                QStringLiteral("does not reach down to the gauge depth on its gauge side: its end is taken as "
                               "gauge point"));
        }
    }
    const auto hidden = keepRunningSurface(profile, isWheel(part) ? SectionKind::Wheel : SectionKind::Rail);
    if (!hidden) {
        refuse(part, input, QStringLiteral("holds points that do not follow a contour from one end to the other"));
    }
    result.dropped = missing + outliers + *hidden;
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
