// The measures of wheel profiles and their limits.
#pragma once

#include "CrossSection.h"
#include "Error.h"
#include "Export.h"
#include "Interval.h"
#include "Json.h"
#include "Profile.h"
#include "Progress.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// @{ Where a wheel is measured, mm: x is counted outwards from the flange back, levels (heights) from the tip of the
/// flange towards the axle.
inline constexpr float kTapeCircleX = 70.0f; ///< x of the tape circle (EN 13715, 2020)
inline constexpr float kTipLevel = 2.0f; ///< level at which the flank width begins
inline constexpr float kFlankLevel = 18.0f; ///< level of the flange thickness
inline constexpr float kFlankDepth = 13.0f; ///< the flank width ends this far above the tape circle
inline constexpr float kThicknessDepth = 10.0f; ///< Sd is measured, and qR ends, this far above the tape circle
/// @}

/// @{ The least and the largest value of an option, mm.
inline constexpr std::array<double, 2> kFlangeBacks = {-10000.0, 10000.0};
inline constexpr std::array<double, 2> kSpacings = {0.01, 1.0}; ///< or 0
/// @}

/// The measures of a wheel, mm. Empty for a measure that was not found. The first four are those of
/// KxMath::METRO_calcWheelParameters(), from a smooth profile; the others are those of railways, from the points themselves.
struct WheelMeasures {
    std::optional<float> heightAt70 = {}; ///< h: the level of the tape circle
    std::optional<float> xAtLevel18 = {}; ///< flange thickness at level 18, from the flange back
    std::optional<float> widthLevel2ToH13 = {}; ///< flank width: distance in x from level 2 to level h - 13
    std::optional<float> heightExcess = {}; ///< flange height excess: h - 30 for h >= 29, otherwise h - 28
    std::optional<float> flangeHeight = {}; ///< Sh: from the tape circle to the tip of the flange
    std::optional<float> flangeThickness = {}; ///< Sd: from the flange back to the flank 10 mm above the tape circle
    std::optional<float> flangeSlope =
        {}; ///< qR: distance in x on the flank from level 2 to 10 mm above the tape circle
    std::optional<float> treadHollow =
        {}; ///< how far the tread rises again towards the field side; 0 where it does not
    std::optional<float> treadSlope =
        {}; ///< slope of the tread at the tape circle, without unit: how fast the radius falls outwards
    std::optional<float> rimWidth = {}; ///< from the flange back to the outer face of the rim
};

/// The limits of a measure, in its unit. The limit itself is allowed.
struct Limit {
    std::optional<float> min = {};
    std::optional<float> max = {};

    bool isSet() const { return min || max; }
    /// True without a limit; false for a measure that is missing when there is one.
    bool holds(const std::optional<float>& value) const {
        return !isSet() || (value && !(min && *value < *min) && !(max && *value > *max));
    }
};

struct WheelLimits {
    Limit heightAt70 = {};
    Limit xAtLevel18 = {};
    Limit widthLevel2ToH13 = {};
    Limit heightExcess = {};
    Limit flangeHeight = {};
    Limit flangeThickness = {};
    Limit flangeSlope = {};
    Limit treadHollow = {};
    Limit treadSlope = {};
    Limit rimWidth = {};
};

/// A measure with its names.
struct WheelMeasure {
    const char* key; ///< for programs, that of JSON and CSV
    const char* title; ///< for people
    const char* unit; ///< "mm", or empty
    int decimals; ///< for people
    std::optional<float> WheelMeasures::*value;
    Limit WheelLimits::*limit;
};

/// All measures, in the order of outputs.
inline constexpr std::array<WheelMeasure, 10> kWheelMeasures = {{
    {"heightAt70", "level of the tape circle", "mm", 3, &WheelMeasures::heightAt70, &WheelLimits::heightAt70},
    {"xAtLevel18", "flange thickness at level 18", "mm", 3, &WheelMeasures::xAtLevel18, &WheelLimits::xAtLevel18},
    {"widthLevel2ToH13", "flank width, level 2 to h-13", "mm", 3, &WheelMeasures::widthLevel2ToH13,
     &WheelLimits::widthLevel2ToH13},
    {"heightExcess", "flange height excess", "mm", 3, &WheelMeasures::heightExcess, &WheelLimits::heightExcess},
    {"flangeHeight", "flange height (Sh)", "mm", 3, &WheelMeasures::flangeHeight, &WheelLimits::flangeHeight},
    {"flangeThickness", "flange thickness (Sd)", "mm", 3, &WheelMeasures::flangeThickness,
     &WheelLimits::flangeThickness},
    {"flangeSlope", "flange slope (qR)", "mm", 3, &WheelMeasures::flangeSlope, &WheelLimits::flangeSlope},
    {"treadHollow", "hollow of the tread", "mm", 3, &WheelMeasures::treadHollow, &WheelLimits::treadHollow},
    {"treadSlope", "tread slope at the tape circle", "", 4, &WheelMeasures::treadSlope, &WheelLimits::treadSlope},
    {"rimWidth", "rim width", "mm", 3, &WheelMeasures::rimWidth, &WheelLimits::rimWidth},
}};

enum class WheelVerdict {
    NoLimits, ///< no measure has a limit
    Within, ///< all measures are within their limits
    Outside, ///< one does not
    NotMeasured, ///< none is outside, but one with a limit was not found
    NotRead, ///< there is no profile
};

/// "within", "outside", "not measured", "not read", empty for NoLimits.
KXINSPECT_EXPORT const char* textOf(WheelVerdict verdict);

/// How wheels are measured.
struct WheelOptions {
    /// x of the flange back in the profile's file. Points before it are cut; a profile that begins later is joined to the
    /// back at the height of its first point. Empty: 0 or -70 (the tape circle is then at 0) where the profile fits such a
    /// place, or else where its steep back is.
    std::optional<float> flangeBack = {};
    /// The profile is resampled linearly at this spacing, mm: the measurement takes means of 20 points, which round the
    /// flange the more the wider the points are apart. 0: the points are measured as they are.
    float spacing = 0.02f;
    Point centre = {0.0f, 0.0f}; ///< x and z of the wheel's centre, for sections in space
    WheelLimits limits = {};
    GaugeError gaugeError = {};
};

/// Where a wheel was measured: x from the flange back, y the level as in WheelResult::section.
struct WheelPlaces {
    std::optional<Point> tip = {}; ///< of the flange
    std::optional<Point> tape = {}; ///< the tape circle
    std::optional<Point> flankTop = {}; ///< on the flank, 2 mm below the tip: qR begins
    std::optional<Point> flank = {}; ///< on the flank, 10 mm above the tape circle: the end of Sd and qR
    std::optional<Point> hollowBottom = {}; ///< the lowest place of a hollow tread
    std::optional<Point> hollowCrest = {}; ///< the highest place outside of it
    std::optional<float> outerFace = {}; ///< x of the outer face of the rim
};

/// A measured wheel, with everything that any output shows. The points are empty in a result that was read from JSON
/// without pictures.
struct WheelResult {
    std::string file = {};
    std::string error = {}; ///< why there is no profile, the predicate of a sentence about the file; empty otherwise
    std::string reading = {}; ///< the readingNote() of a text file
    std::vector<std::string> warnings = {}; ///< violated assumptions, predicates of sentences about the profile
    WheelMeasures measures = {};
    /// The 95 % confidence interval of each measure from the noise of the points, and from WheelOptions::gaugeError, in the
    /// order of kWheelMeasures; unknown
    /// for measures that were not found, and where there are too few points to find the noise.
    std::array<Interval, kWheelMeasures.size()> intervals = {};
    /// Why a measure was not found, a clause, in the order of kWheelMeasures; empty for measures that were found and for
    /// wheels that were not read.
    std::array<std::string, kWheelMeasures.size()> reasons = {};
    /// Why the interval of a measure that was found is unknown, a clause; empty for the others.
    std::array<std::string, kWheelMeasures.size()> intervalReasons = {};
    WheelVerdict verdict = WheelVerdict::NoLimits;
    /// The points that were measured, and the smooth profile from which the measures were taken: x from the flange
    /// back, y from the tip of the flange towards the axle.
    std::vector<Point> section = {};
    std::vector<Point> measured = {};
    /// x where the measured profile first reaches kTipLevel outside the tip; the flank width begins there.
    std::optional<float> widthStart = {};
    WheelPlaces places = {}; ///< of the railways' measures

    /// Whether any measure was found.
    bool isMeasured() const;
};

inline bool WheelResult::isMeasured() const {
    for (const WheelMeasure& measure : kWheelMeasures) {
        if (measures.*measure.value) {
            return true;
        }
    }
    return false;
}

/// Measures a wheel. A file is a profile, or holds the section of a rim in space (a 3-D cloud section), which
/// measureRim() measures. Faults of the profile are in the result; an Error is thrown only for options that
/// are out of range (BadArgument, with the name of the field as key).
KXINSPECT_EXPORT WheelResult measureWheel(const CrossSection& wheel, const WheelOptions& options = {});

/// Measures the section of a rim in space: y is the height, and x and z are turned about the centre until the section
/// lies along x, its outer end at the flange back. `flangeBack` and `spacing` are not used; points that are not finite
/// are left out.
/// @param file only the name in the result
KXINSPECT_EXPORT WheelResult measureRim(const std::vector<Point3>& points, const std::string& file = {},
                                        const WheelOptions& options = {});

/// Wheels that were measured with the same options.
struct WheelResults {
    std::vector<WheelResult> wheels = {};
    WheelLimits limits = {};
    GaugeError gaugeError = {}; ///< that the intervals contain
    std::string version = {}; ///< of KxMath that measured; empty in results read from JSON without pictures
};

/// Measures wheels one after the other, each as measureWheel().
KXINSPECT_EXPORT WheelResults measureWheels(const std::vector<CrossSection>& wheels, const WheelOptions& options = {},
                                            const Progress& progress = {});

/// How many wheels were judged by limits.
struct WheelJudgement {
    std::size_t wheels = 0; ///< that were to be judged: all, or none without limits
    std::size_t judged = 0; ///< within or outside
    std::size_t outside = 0; ///< of those judged
};

KXINSPECT_EXPORT WheelJudgement judgementOf(const WheelResults& results);

/// Why a wheel could not be judged by its limits, a clause. Empty for other verdicts than NotMeasured and NotRead.
KXINSPECT_EXPORT std::string reasonNotJudged(const WheelResult& wheel, const WheelLimits& limits);

/// The verdict on measures by limits; never NotRead.
KXINSPECT_EXPORT WheelVerdict verdictOf(const WheelMeasures& measures, const WheelLimits& limits);

/// The results as JSON.
KXINSPECT_EXPORT std::string toJson(const WheelResults& results, Pictures pictures = Pictures::Left);

/// Reads what toJson() wrote, with pictures or without. Throws an Error, Damaged for invalid JSON, Unsuitable with
/// the key for a value that is missing or wrong.
KXINSPECT_EXPORT WheelResults wheelsFromJson(const std::string& json);

} // namespace KxInspect
