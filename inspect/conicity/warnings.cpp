// Warnings: violated assumptions of the method, and limited validity of a result.
#include "inspect/conicity/warnings.h"

#include "inspect/sections/flangeBack.h"
#include "inspect/sections/plausibility.h"
#include "inspect/sections/runningSurface.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// The violated assumptions of one profile as predicates of sentences.
std::vector<QString> contradictionsOf(const std::vector<Point>& section, bool isWheel, float gaugeDepth) {
    std::vector<QString> found = {fewPoints(section.size())};
    if (const float width = widthOf(section); !(width <= kMaxSectionWidth)) { // NaN: true
        found.push_back(QStringLiteral("is %1 mm wide, more than the %2 mm that are calculated with")
                            .arg(static_cast<double>(width))
                            .arg(static_cast<double>(kMaxSectionWidth)));
    }
    found.push_back(isWheel ? wheelContradiction(section) : railContradiction(section, gaugeDepth));
    return found;
}

/// How far a wheel-set can move between its rails, mm; NaN when that is not known.
float flangeClearance(const PerWheelSetPart<Profile>& sections, float gauge, float backToBack) {
    return gauge - backToBack - flangeThickness(sections[Wheel1].points) - flangeThickness(sections[Wheel2].points);
}

/// Whether `distance` is a multiple of `step` within a hundredth of a millimetre.
bool isMultiple(float distance, float step) {
    return std::abs(distance - std::round(distance / step) * step) < 0.01f;
}

std::string jumpWarning(const Point& from, float jump) {
    return QStringLiteral("the difference of radii jumps by %1 mm at the displacement %2 mm")
        .arg(static_cast<double>(jump), 0, 'f', 2)
        .arg(static_cast<double>(from.x), 0, 'f', 1)
        .toStdString();
}

} // namespace

std::vector<std::string> findContradictions(const PerWheelSetPart<Profile>& sections, const ConicityInput& input) {
    std::vector<std::string> found;
    for (const WheelSetPart part : {Wheel1, Rail1, Wheel2, Rail2}) {
        for (const QString& predicate : contradictionsOf(sections[part].points, isWheel(part), input.gaugeDepth)) {
            if (!predicate.isEmpty()) {
                found.push_back(std::string(nameOf(part)) + " " + predicate.toStdString());
            }
        }
    }
    constexpr float kMostClearance = 60.0f; // flanges worn to 22 mm in a gauge that is widened by 30 mm
    if (const float clearance = flangeClearance(sections, input.gauge, input.backToBack);
        input.gaugeDepth > 0.0f && clearance > kMostClearance) { // NaN: false
        found.push_back(
            QStringLiteral("the flanges have a clearance of %1 mm between the rails: gauge and back-to-back "
                           "distance hardly belong together")
                .arg(static_cast<double>(clearance), 0, 'f', 1)
                .toStdString());
    }
    constexpr float kGrid = 0.2f;
    if (input.edgeMargin && !isMultiple(input.gauge - input.backToBack, kGrid)) {
        found.emplace_back(
            "gauge minus back-to-back distance is no multiple of 0.2 mm: the wheels are lined up with the "
            "rails to the next 0.1 mm");
    }
    return found;
}

std::string whyNoFit(const PerWheelSetPart<Profile>& sections, const ConicityResult& result) {
    const bool isGaugeKnown =
        result.sections[Rail1].isCut.value_or(false) && result.sections[Rail2].isCut.value_or(false);
    const float clearance = flangeClearance(sections, result.gauge, result.backToBack);
    if (!isGaugeKnown || !(clearance < 0.0f)) {
        return {};
    }
    return QStringLiteral(
               "the wheel-set does not fit between the rails: its flanges are %1 mm and %2 mm thick, and with "
               "%3 mm between their backs they need %4 mm more than the gauge of %5 mm")
        .arg(static_cast<double>(flangeThickness(sections[Wheel1].points)), 0, 'f', 1)
        .arg(static_cast<double>(flangeThickness(sections[Wheel2].points)), 0, 'f', 1)
        .arg(static_cast<double>(result.backToBack))
        .arg(static_cast<double>(-clearance), 0, 'f', 1)
        .arg(static_cast<double>(result.gauge))
        .toStdString();
}

QString missingAmplitudes(const ConicityResult& result) {
    std::size_t missing = 0;
    std::size_t hidden = 0;
    for (std::size_t i = 0; i < result.conicity.size(); ++i) {
        if (!hasConicity(result.conicity[i])) {
            ++missing;
            hidden += i < result.intervals.size() && result.intervals[i].isKnown() ? 1 : 0;
        }
    }
    if (missing == 0) {
        return {};
    }
    const QString count =
        QStringLiteral("%1 of %2 amplitudes have no conicity: ").arg(missing).arg(result.conicity.size());
    if (hidden == 0) {
        return count + QStringLiteral("the difference of radii is too rough there for the method");
    }
    const QString noise = QStringLiteral("the noise of the profiles hides it");
    return count + (hidden == missing ? noise
                                      : noise + QStringLiteral(" at %1, and the difference of radii is too rough for "
                                                               "the method at the others")
                                                    .arg(hidden));
}

std::vector<std::string> findLimits(const ConicityResult& result) {
    std::vector<std::string> found;
    if (result.isCalculated() && !result.shownConicity) {
        found.push_back(QStringLiteral("no conicity at the amplitude of %1 mm: ")
                            .arg(static_cast<double>(result.shownAmplitude))
                            .toStdString() +
                        reasonWithoutConicity(result, result.shownAmplitude));
    }
    if (const QString missing = missingAmplitudes(result); !missing.isEmpty()) {
        found.push_back(missing.toStdString());
    }
    constexpr float kJump = 0.5f; // mm between neighbours 0.1 mm apart
    for (std::size_t i = 0; i + 1 < result.deltaR.size(); ++i) {
        const Point& from = result.deltaR[i];
        const float jump = result.deltaR[i + 1].y - from.y;
        if (std::abs(jump) > kJump && std::abs(from.x) <= result.shownAmplitude) {
            found.push_back(jumpWarning(from, jump));
        }
    }
    return found;
}

} // namespace KxInspect::detail
