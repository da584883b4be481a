// What the contour of a rim adds to a measured wheel.
#include "inspect/wheel/contourResults.h"

#include "inspect/wheel/doubts.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace KxInspect::detail {

namespace {

/// The nominal height of a flange in the excess over it, as METRO_calcWheelParameters() chooses it.
constexpr float kNominalFrom = 29.0f;
constexpr float kLowNominal = 28.0f;
constexpr float kHighNominal = 30.0f;

/// The interval of the excess over the nominal height, from that of the height. Where the nominal height is in doubt, both count.
Interval excessInterval(const Interval& height, const Estimate& estimate, float shownHeight, float shown) {
    const float nominal = shownHeight >= kNominalFrom ? kHighNominal : kLowNominal;
    if (!height.isKnown() || (height.low >= kNominalFrom) == (height.high >= kNominalFrom)) {
        return estimate.plus(-static_cast<double>(nominal)).interval(shown);
    }
    return {std::min(height.low - kLowNominal, kNominalFrom - kHighNominal),
            std::max(height.high - kHighNominal, kNominalFrom - kLowNominal)};
}

/// Says why measures that were found have no interval.
void explainIntervals(const RimMeasures& rim, WheelResult& result) {
    constexpr std::optional<float> WheelMeasures::*kFromBack[] = {
        &WheelMeasures::xAtLevel18, &WheelMeasures::flangeThickness, &WheelMeasures::rimWidth};
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const auto measure = kWheelMeasures[i].value;
        if (!(result.measures.*measure) || result.intervals[i].isKnown()) {
            continue;
        }
        const bool isFromBack = std::find(std::begin(kFromBack), std::end(kFromBack), measure) != std::end(kFromBack);
        result.intervalReasons[i] = !rim.values[i] ? rim.reasons[i]
                                    : isFromBack && rim.isBackUnsure
                                        ? "the profile shows less than 3 mm of the flat flange back, so that how "
                                          "far its first point is off the back is not known"
                                        : "there are too few points to find their noise";
    }
}

/// Tells where smoothing moves a measure of the library away from what the points show.
void warnOfSmoothing(const RimMeasures& rim, WheelResult& result) {
    constexpr float kAllowed = 0.05f; // mm
    for (const auto measure : {&WheelMeasures::heightAt70, &WheelMeasures::xAtLevel18}) {
        for (std::size_t i = 0; i < kSmoothMeasures; ++i) {
            const std::optional<float>& value = result.measures.*measure;
            if (kWheelMeasures[i].value != measure || !value || !rim.values[i]) {
                continue;
            }
            const float off = *value - static_cast<float>(rim.values[i]->value());
            const float noise = 2.0f * static_cast<float>(rim.values[i]->deviation());
            if (std::abs(off) > kAllowed && !(std::abs(off) <= noise)) { // NaN: true
                result.warnings.push_back(std::string("is smoothed: ") + kWheelMeasures[i].key + " is " +
                                          QString::number(std::abs(static_cast<double>(off)), 'f', 2).toStdString() +
                                          (off > 0.0f ? " mm larger" : " mm smaller") + " than the points show");
            }
        }
    }
}

} // namespace

void addContourResults(const RimMeasures& rim, WheelResult& result) {
    result.places = rim.places;
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        std::optional<float>& value = result.measures.*kWheelMeasures[i].value;
        const std::optional<Estimate>& estimate = rim.values[i];
        const bool isHollow = kWheelMeasures[i].value == &WheelMeasures::treadHollow;
        if (i >= kSmoothMeasures) {
            value = estimate ? std::optional(static_cast<float>(estimate->value())) : std::nullopt;
            result.reasons[i] = rim.reasons[i];
        }
        if (isHollow && value) {
            value = std::max(0.0f, *value);
        }
        if (value && estimate) {
            Interval& interval = result.intervals[i];
            interval = estimate->interval(isHollow ? static_cast<float>(estimate->value()) : *value);
            if (isHollow && interval.isKnown()) {
                interval = {std::max(0.0f, interval.low), std::max(0.0f, interval.high)};
            }
        }
    }
    warnOfSmoothing(rim, result);
    const std::optional<float>& excess = result.measures.heightExcess;
    for (std::size_t i = 0; i < kWheelMeasures.size() && excess; ++i) {
        if (kWheelMeasures[i].value == &WheelMeasures::heightExcess && rim.values[0]) {
            result.intervals[i] =
                excessInterval(result.intervals[0], *rim.values[0], *result.measures.heightAt70, *excess);
        }
    }
    explainIntervals(rim, result);
}

} // namespace KxInspect::detail
