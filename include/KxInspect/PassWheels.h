// The measures of the wheels of a pass, from all profiles that the sensors of a side have of them.
#pragma once

#include "Export.h"
#include "Interval.h"
#include "Profile.h"
#include "Settings.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// @{ The measures of a wheel in a pass, in the order of PassWheelMeasures::values.
enum class PassMeasure {
    Diameter, ///< at the tape circle
    FlangeHeight, ///< Sh
    FlangeThickness, ///< Sd
    FlangeSlope, ///< qR
    TreadHollow,
    RimWidth
};

inline constexpr std::size_t kPassMeasures = 6;

/// A measure with its names.
struct PassMeasureInfo {
    PassMeasure measure;
    const char* key; ///< for programs, that of JSON and CSV
    const char* title; ///< for people
    int decimals; ///< for people; all are in mm
};

inline constexpr std::array<PassMeasureInfo, kPassMeasures> kPassMeasureInfos = {{
    {PassMeasure::Diameter, "diameter", "diameter", 2},
    {PassMeasure::FlangeHeight, "flangeHeight", "flange height (Sh)", 2},
    {PassMeasure::FlangeThickness, "flangeThickness", "flange thickness (Sd)", 2},
    {PassMeasure::FlangeSlope, "flangeSlope", "flange slope (qR)", 2},
    {PassMeasure::TreadHollow, "treadHollow", "hollow of the tread", 2},
    {PassMeasure::RimWidth, "rimWidth", "rim width", 2},
}};
/// @}

/// A value, or why there is none.
struct PassValue {
    std::optional<float> value = {}; ///< mm
    Interval interval = {}; ///< of 95 %; unknown where there is no value
    std::string reason = {}; ///< why there is no value, a clause; empty with one
    /// The part of the interval that the errors of the poses of the sensors make, mm to both sides; they are common to all
    /// wheels of a side. Absent where the settings do not say how far the poses may be off: the interval then lacks it.
    std::optional<float> byPoses = {};
};

/// What the interval of a value holds, in words: "noise only", "noise and poses".
inline const char* whatIntervalHolds(const PassValue& value) {
    return value.byPoses ? "noise and poses" : "noise only";
}

/// What a sensor has seen of a wheel.
struct SensorShare {
    int sensor = 0; ///< number in the settings
    bool isOnFieldSide = false; ///< outside of the rails
    int wheel = 0; ///< number of the wheel in its recording, 0 where that does not show it
    int profiles = 0; ///< that show the wheel
    int points = 0; ///< of the cross-section
    std::array<bool, kPassMeasures> measures = {}; ///< to which measures these contribute, in the order of PassMeasure
    std::string reason = {}; ///< why it contributes to none, a clause; empty where it does
};

/// The measures of one wheel.
struct PassWheelMeasures {
    int pair = 0; ///< from 1, the pair in PassResult::pairs; 0 for a wheel that no pair holds
    TrackSide side = TrackSide::Left;
    float place = 0.0f; ///< of the axle along the train, behind the origin of the track when z is 0, mm
    std::array<PassValue, kPassMeasures> values = {}; ///< in the order of PassMeasure
    std::vector<SensorShare> sensors = {}; ///< those of its side
    /// The cross-section, its points along the contour: x from the flange back, y from the tip of the flange towards the
    /// axle, mm. In pictures only.
    std::vector<Point> section = {};
    /// How far the section stands off the nominal contour, square to it, positive outside of it: x as in `section`, y the
    /// deviation, mm. In pictures only; empty without a contour, or where the two cannot be aligned.
    std::vector<Point> deviations = {};

    const PassValue& operator[](PassMeasure measure) const { return values[static_cast<std::size_t>(measure)]; }
};

} // namespace KxInspect
