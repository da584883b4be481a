// The equivalent conicity from measured profiles: reading, preparing, calculating, judging.
#include "inspect/base/ranges.h"
#include "inspect/conicity/calculation.h"
#include "inspect/conicity/preparation.h"
#include "inspect/conicity/resampling.h"
#include "inspect/conicity/warnings.h"
#include "inspect/sections/sectionReader.h"

#include <KxInspect/Wheel.h>
#include <KxMath/KxMathVersion.h>

#include <QtCore/QString>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

using Prepared = PerWheelSetPart<detail::PreparedSection>;

constexpr WheelSetPart kParts[] = {Wheel1, Rail1, Wheel2, Rail2};

void checkNumbers(const ConicityInput& input) {
    detail::checkRange("gauge", input.gauge, kTrackDistances);
    detail::checkRange("backToBack", input.backToBack, kTrackDistances);
    detail::checkRange("gaugeDepth", input.gaugeDepth, kGaugeDepths);
    for (const auto& back : {input.flangeBack1, input.flangeBack2}) {
        detail::checkRange("flangeBack", back.value_or(0.0f), kFlangeBacks);
    }
    detail::checkRange("radius1", input.radius1, kWheelRadii);
    detail::checkRange("radius2", input.radius2, kWheelRadii);
    detail::checkRange("amplitudes", static_cast<float>(input.amplitudes), kAmplitudeCounts);
    detail::checkRange("edgeMargin", input.edgeMargin.value_or(0.0f), kEdgeMargins);
    detail::checkRange("shownAmplitude", input.shownAmplitude, kShownAmplitudes);
    for (const float error : {input.gaugeError.place, input.gaugeError.turn, input.gaugeError.scale}) {
        detail::checkRange("gaugeError", error, kGaugeErrors);
    }
    detail::checkRange("smoothing", input.smoothing.value_or(0.0f), kSmoothingWindows);
}

void append(std::vector<std::string>& all, const std::vector<std::string>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

PerWheelSetPart<Profile> surfacesOf(const Prepared& sections, Profile detail::PreparedSection::*surface) {
    PerWheelSetPart<Profile> surfaces;
    for (const WheelSetPart part : kParts) {
        surfaces[part] = sections[part].*surface;
    }
    return surfaces;
}

/// Whether the profiles are taken as they are: none is smoothed or noisy.
bool areTakenAsMeasured(const Prepared& sections) {
    return std::none_of(sections.begin(), sections.end(), [](const detail::PreparedSection& section) {
        return !section.windows.empty() || section.noise.isWorthSmoothing();
    });
}

/// Whether an interval says more than that a conicity is half or double of what it may be.
bool tellsSomething(const Interval& interval) {
    constexpr float kMostRatio = 4.0f; // of its ends
    return interval.isKnown() && interval.high <= kMostRatio * interval.low;
}

/// Drops the end of a curve that has neither conicities nor intervals.
void endWhereNothingIsKnown(ConicityResult& result) {
    while (!result.conicity.empty() && !hasConicity(result.conicity.back()) && !result.intervals.back().isKnown()) {
        result.conicity.pop_back();
        result.intervals.pop_back();
    }
}

/// Takes the effect of noise off the curve, says how far it may be off, and drops values that say nothing.
void judgeNoise(const Prepared& sections, const ConicityInput& input, ConicityResult& result) {
    if (result.conicity.empty()) {
        return;
    }
    const bool isCorrected = !areTakenAsMeasured(sections);
    const bool isExact = !input.gaugeError.isSet() &&
                         std::all_of(sections.begin(), sections.end(), [](const detail::PreparedSection& section) {
                             return section.windows.empty() && section.noise.isNegligible();
                         });
    const detail::NoiseEffect effect = detail::resample(sections, input, result.conicity.back().x,
                                                        isCorrected ? detail::kFineStep : detail::kLateralStep);
    for (Point& p : result.conicity) {
        const float correction = effect.correction(p.x);
        if (isCorrected) {
            p.y = (input.edgeMargin ? p.y : effect.observedAt(p.x)) * correction;
        }
        Interval interval = hasConicity(p) ? effect.interval(p.x, isCorrected ? p.y : p.y * correction) : Interval();
        if (!isCorrected && interval.isKnown()) {
            interval = {std::min(interval.low, p.y), std::max(interval.high, p.y)};
        } else if (isExact && hasConicity(p)) { // the trials end earlier
            interval = {p.y, p.y};
        }
        p.y = tellsSomething(interval) ? p.y : std::numeric_limits<float>::quiet_NaN();
        result.intervals.push_back(interval);
    }
    if (std::any_of(result.conicity.begin(), result.conicity.end(), hasConicity)) {
        result.reason.clear(); // the profiles without smoothing may have none
        endWhereNothingIsKnown(result);
    } else if (result.isCalculated()) {
        result.reason = "no amplitude has a conicity: the noise of the profiles hides it";
    }
}

/// The oscillation of the profiles as they were measured.
detail::Oscillation oscillationOf(const Prepared& sections, const ConicityInput& input) {
    PerWheelSetPart<std::vector<float>> surfaces;
    for (const WheelSetPart part : kParts) {
        const detail::PreparedSection& section = sections[part];
        surfaces[part] = detail::samplesOf(section, part, section.points, input.gaugeDepth, detail::kFineStep);
    }
    return detail::sweep(surfaces, detail::standOf(input), detail::kFineStep);
}

/// The curve of the profiles without smoothing and correction, when `result` is not corrected yet.
std::vector<Point> curveAsMeasured(const Prepared& sections, const ConicityInput& input, const ConicityResult& result) {
    if (!input.edgeMargin || areTakenAsMeasured(sections)) {
        return result.conicity;
    }
    ConicityResult asMeasured;
    detail::calculate(surfacesOf(sections, &detail::PreparedSection::unsmoothed), input, {}, asMeasured);
    return asMeasured.conicity;
}

} // namespace

const char* nameOf(WheelSetPart part) {
    constexpr PerWheelSetPart<const char*> kNames = {"wheel1", "rail1", "wheel2", "rail2"};
    return kNames[part];
}

ConicityResult measureConicity(const ConicityInput& input) {
    checkNumbers(input);
    ConicityResult result;
    result.gauge = input.gauge;
    result.backToBack = input.backToBack;
    result.radius1 = input.radius1;
    result.radius2 = input.radius2;
    result.edgeMargin = input.edgeMargin;
    result.shownAmplitude = input.shownAmplitude;
    result.gaugeError = input.gaugeError;
    Prepared sections;
    for (const WheelSetPart part : kParts) {
        std::string reading;
        const Profile measured = detail::readSection(input.sections[part], nameOf(part), reading);
        sections[part] = detail::prepare(measured, part, input, result.warnings);
        sections[part].placed.reading = reading;
        result.sections[part] = sections[part].placed;
    }
    const PerWheelSetPart<Profile> surfaces = surfacesOf(sections, &detail::PreparedSection::surface);
    append(result.warnings, detail::findContradictions(surfaces, input));
    result.reason = detail::whyNoFit(surfaces, result);
    std::vector<Point> asMeasured;
    if (result.reason.empty()) {
        detail::calculate(surfaces, input, oscillationOf(sections, input), result);
        asMeasured = curveAsMeasured(sections, input, result);
        judgeNoise(sections, input, result);
    } else {
        for (const WheelSetPart part : kParts) {
            result.sections[part].points = surfaces[part].points;
        }
    }
    detail::fillRows(result, asMeasured);
    if (result.reason.empty()) {
        append(result.warnings, detail::findLimits(result));
    }
    result.version = KxMath_GetVersionString();
    return result;
}

bool hasConicity(const Point& p) {
    return p.y > 0.0f && !std::isinf(p.y); // NaN: false
}

std::string reasonWithoutConicity(const ConicityResult& result, float amplitude) {
    if (conicityAt(result, amplitude)) {
        return {};
    }
    if (!result.isCalculated() || result.conicity.empty()) {
        return result.reason;
    }
    const auto place = [](const char* how, float x) {
        return how + QString::number(static_cast<double>(x), 'f', 2).toStdString() + " mm";
    };
    if (amplitude < result.conicity.front().x) {
        return place("the curve begins at ", result.conicity.front().x);
    }
    if (amplitude > result.conicity.back().x) {
        return place("the curve ends at ", result.conicity.back().x);
    }
    if (const Interval band = detail::bandAt(result, amplitude); band.isKnown()) {
        const auto text = [](float value) { return QString::number(static_cast<double>(value), 'f', 3).toStdString(); };
        return "the noise of the profiles leaves it anywhere from " + text(band.low) + " to " + text(band.high);
    }
    const bool isSmoothed = std::any_of(result.sections.begin(), result.sections.end(),
                                        [](const PlacedSection& section) { return section.windows.has_value(); });
    return isSmoothed ? "the profiles, or more than a quarter of the resampled ones, have no conicity there"
                      : "the difference of radii is too rough there for the method";
}

} // namespace KxInspect
