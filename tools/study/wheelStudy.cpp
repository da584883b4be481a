// Wheels measured with three gauges: placement, dirt and noise differ from measurement to measurement.
#include "tools/study/gauge.h"
#include "tools/study/studies.h"

#include "simulator/wornRim.h"

#include <KxInspect/Wheel.h>

#include <array>
#include <cmath>
#include <map>
#include <string>
#include <utility>

namespace kxstudy {

namespace {

/// The truth and the width of the tolerance of a measure.
struct Studied {
    double (*truth)(const kxsim::RimTruth&);
    double tolerance;
};

const std::map<std::string, Studied> kStudied = {
    {"xAtLevel18", {[](const kxsim::RimTruth& t) { return t.thicknessAt18; }, 1.0}},
    {"widthLevel2ToH13", {[](const kxsim::RimTruth& t) { return t.flankWidth; }, 1.0}},
    {"flangeHeight", {[](const kxsim::RimTruth& t) { return t.height; }, 1.0}},
    {"flangeThickness", {[](const kxsim::RimTruth& t) { return t.thickness; }, 1.0}},
    {"flangeSlope", {[](const kxsim::RimTruth& t) { return t.flangeSlope; }, 1.0}},
    {"treadHollow", {[](const kxsim::RimTruth& t) { return t.hollow; }, 1.0}},
    {"treadSlope", {[](const kxsim::RimTruth& t) { return t.treadSlope; }, 0.02}},
    {"rimWidth", {[](const kxsim::RimTruth& t) { return t.width; }, 1.0}},
};

/// The gauge of a station with some of what makes it err.
Gauge gaugeWith(int station, const Causes& causes) {
    Gauge gauge = gaugeOf(station);
    gauge.dirt *= causes.dirt ? 1.0 : 0.0;
    gauge.placementShift *= causes.placing ? 1.0 : 0.0;
    gauge.placementTurn *= causes.placing ? 1.0 : 0.0;
    if (!causes.gauge) {
        gauge.shift = gauge.turn = 0.0;
        gauge.scale = 1.0;
    }
    return gauge;
}

} // namespace

std::vector<StudiedValue> studyWheel(const Report& report, const Causes& causes) {
    std::vector<StudiedValue> values;
    for (const KxInspect::WheelMeasure& measure : KxInspect::kWheelMeasures) {
        if (const auto studied = kStudied.find(measure.key); studied != kStudied.end()) {
            values.push_back({"wheel", measure.title, measure.unit, studied->second.tolerance, 3});
        }
    }
    KxInspect::WheelOptions options;
    options.gaugeError = gaugeError();
    for (int part = 0; part < kParts; ++part) {
        report("wheel: wheel " + std::to_string(part + 1));
        kxsim::Random wear({5000, static_cast<std::uint64_t>(part)});
        const kxsim::Contour contour = kxsim::makeRimContour(kxsim::randomWear(wear));
        const kxsim::RimTruth truth = kxsim::trueMeasures(contour);
        for (int station = 0; station < kStations; ++station) {
            for (int pass = 0; pass < kPasses; ++pass) {
                kxsim::Random random({5001, static_cast<std::uint64_t>(part), static_cast<std::uint64_t>(station),
                                      static_cast<std::uint64_t>(pass)});
                KxInspect::CrossSection section;
                section.profile = measuredBy(gaugeWith(station, causes), contour, random);
                const KxInspect::WheelResult result = measureWheel(section, options);
                std::size_t next = 0;
                for (std::size_t i = 0; i < KxInspect::kWheelMeasures.size(); ++i) {
                    const KxInspect::WheelMeasure& measure = KxInspect::kWheelMeasures[i];
                    const auto studied = kStudied.find(measure.key);
                    if (studied == kStudied.end()) {
                        continue;
                    }
                    const std::optional<float> value = result.measures.*measure.value;
                    values[next++].readings.push_back({part, station,
                                                       value ? static_cast<double>(*value) : std::nan(""),
                                                       studied->second.truth(truth), result.intervals[i]});
                }
            }
        }
    }
    return values;
}

} // namespace kxstudy
