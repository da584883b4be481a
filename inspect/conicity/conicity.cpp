// The equivalent conicity from measured profiles: reading, preparing, calculating, judging.
#include "inspect/base/ranges.h"
#include "inspect/conicity/calculation.h"
#include "inspect/conicity/preparation.h"
#include "inspect/conicity/warnings.h"
#include "inspect/sections/sectionReader.h"

#include <KxInspect/Wheel.h>
#include <KxMath/KxMathVersion.h>

#include <QtCore/QString>

#include <cmath>

namespace KxInspect {

namespace {

using Sections = PerWheelSetPart<Profile>;

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
    detail::checkRange("edgeMargin", input.edgeMargin, kEdgeMargins);
    detail::checkRange("shownAmplitude", input.shownAmplitude, kShownAmplitudes);
}

void append(std::vector<std::string>& all, const std::vector<std::string>& more) {
    all.insert(all.end(), more.begin(), more.end());
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
    Sections sections;
    for (const WheelSetPart part : {Wheel1, Rail1, Wheel2, Rail2}) {
        sections[part] = detail::readSection(input.sections[part], nameOf(part));
        result.sections[part] = detail::prepare(sections[part], part, input, result.warnings);
    }
    append(result.warnings, detail::findContradictions(sections, input));
    result.reason = detail::whyNoFit(sections, result);
    if (result.reason.empty()) {
        detail::calculate(sections, input, result);
        append(result.warnings, detail::findLimits(result));
    } else {
        for (const WheelSetPart part : {Wheel1, Rail1, Wheel2, Rail2}) {
            result.sections[part].points = sections[part].points;
        }
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
    return "the difference of radii is too rough there for the method";
}

std::optional<float> conicityAt(const ConicityResult& result, float amplitude) {
    return detail::conicityAt(result.conicity, amplitude);
}

} // namespace KxInspect
