// Limits of measures, and verdicts of values by them.
#pragma once

#include "Export.h"
#include "InputFile.h"
#include "Interval.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// What a measure is of.
enum class MeasureOf { Wheel, Axle, Bogie, Vehicle };

/// A measure that limits may be given for.
struct MeasureInfo {
    std::string name; ///< in files: "backToBack"
    std::string unit; ///< "mm"
    MeasureOf of = MeasureOf::Wheel;
    std::string meaning; ///< a few words
    double min = 0.0; ///< the smallest limit that has a sense
    double max = 0.0; ///< the largest
};

/// All of them, in the order of tables.
KXINSPECT_EXPORT const std::vector<MeasureInfo>& measureInfos();

/// The limits of a measure; a value that equals one is still within it. Absent ones are none.
struct LimitBounds {
    std::optional<double> alarmLow = {};
    std::optional<double> warningLow = {};
    std::optional<double> warningHigh = {};
    std::optional<double> alarmHigh = {};
};

/// The limits of a measure for the vehicles of a class.
struct MeasureLimits {
    std::string measure = {};
    std::string vehicleClass = {}; ///< empty: for all vehicles whose class has no limits of its own for the measure
    LimitBounds bounds = {};
};

/// Limits for all measures that have some. None are built in.
struct Limits {
    std::string file = {}; ///< where they were read from, as the caller named it; empty when they were filled in
    std::vector<MeasureLimits> measures = {};
    std::optional<InputFile> source = {}; ///< `file` as it was read; absent when they were filled in
};

/// Reads limits from an INI file, see docs/limits.md. Throws an Error with the line: NotFound, Unreadable, Damaged for what
/// breaks the form, Unsuitable for measures and keys that are not known, limits that are out of range or not in order.
/// @param path see KxInspect.h
KXINSPECT_EXPORT Limits readLimits(const std::string& path);

/// The limits of a measure for the vehicles of a class: its own, or else those for all; null when there are none.
/// @param vehicleClass empty: only those for all. The pointer is valid as long as `limits` is not changed.
KXINSPECT_EXPORT const LimitBounds* boundsOf(const Limits& limits, const std::string& measure,
                                             const std::string& vehicleClass);

/// From good to bad. What was not measured is not ok, and an alarm elsewhere is worse.
enum class LimitVerdict { Ok, NotMeasured, Warning, Alarm };

/// "ok", "not measured", "warning", "alarm"
KXINSPECT_EXPORT const char* textOf(LimitVerdict verdict);

/// A value beside its limits.
struct Assessment {
    std::string measure = {};
    int pair = 0; ///< of a wheel or an axle, from 1; else 0
    int side = 0; ///< of a wheel: that of its recording, from 1; else 0
    int vehicle = 0; ///< PassVehicle::number; 0 where it is not known
    int bogie = 0; ///< in its vehicle, of a bogie; else 0
    std::optional<double> value = {};
    Interval interval = {}; ///< of 95 %
    std::string reason = {}; ///< why there is no verdict on a value; empty when there is one
    LimitBounds bounds = {};
    LimitVerdict verdict = LimitVerdict::NotMeasured;
    /// Another verdict is possible within the interval. Absent where the interval is not known, or nothing was measured.
    std::optional<bool> isDoubtful = {};
};

/// The values of a pass that have limits, and what they say of its parts.
struct KXINSPECT_EXPORT PassAssessment {
    std::vector<MeasureLimits> limits = {};
    std::vector<Assessment> values = {};

    /// @{ The worst verdict on the values of a part; absent when none of them has a limit. To a wheel belong the values
    /// of its axle, to an axle those of its wheels, to a vehicle all of its axles and bogies. A pass without wheels is not
    /// measured.
    std::optional<LimitVerdict> ofWheel(int pair, int side) const;
    std::optional<LimitVerdict> ofPair(int pair) const;
    std::optional<LimitVerdict> ofVehicle(int vehicle) const;
    std::optional<LimitVerdict> ofPass() const;
    /// @}
    /// The verdict on one measure of an axle.
    std::optional<LimitVerdict> ofAxle(int pair, const std::string& measure) const;
    /// How many values have a verdict.
    int count(LimitVerdict verdict) const;
};

/// The verdict on a value; NaN is not measured.
KXINSPECT_EXPORT LimitVerdict verdictOf(double value, const LimitBounds& bounds);

} // namespace KxInspect
