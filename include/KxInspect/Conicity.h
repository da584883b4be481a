// The equivalent conicity of a wheel-set on its track, from four measured profiles.
#pragma once

#include "CrossSection.h"
#include "Error.h"
#include "Export.h"
#include "Interval.h"
#include "Json.h"
#include "Profile.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// The four profiles as indices: the first wheel, the rail under it, the second wheel, on the side of positive
/// displacements, and its rail.
enum WheelSetPart : std::size_t { Wheel1, Rail1, Wheel2, Rail2 };

template <typename T>
using PerWheelSetPart = std::array<T, 4>;

/// "wheel1", "rail1", "wheel2", "rail2".
KXINSPECT_EXPORT const char* nameOf(WheelSetPart part);

inline bool isWheel(WheelSetPart part) {
    return part == Wheel1 || part == Wheel2;
}

/// @{ The least and the largest value of an input.
inline constexpr std::array<double, 2> kTrackDistances = {100.0, 10000.0};
inline constexpr std::array<double, 2> kGaugeDepths = {0.0, 100.0};
inline constexpr std::array<double, 2> kWheelRadii = {10.0, 10000.0};
inline constexpr std::array<double, 2> kAmplitudeCounts = {1.0, 100000.0};
inline constexpr std::array<double, 2> kShownAmplitudes = {0.0, 100.0};
inline constexpr std::array<double, 2> kEdgeMargins = {0.0, 1.0};
inline constexpr std::array<double, 2> kSmoothingWindows = {0.0, 50.0};
/// @}

/// What the conicity is calculated from, lengths in mm.
struct ConicityInput {
    PerWheelSetPart<CrossSection> sections = {};
    float gauge = 1435.0f; ///< distance of the rails, `gaugeDepth` below their tops
    float gaugeDepth = 14.0f; ///< 0: the gauge is the distance of the ends of the profiles on their gauge sides
    float backToBack = 1360.0f; ///< distance of the flange backs
    /// @{ x of the flange back in the wheel's profile. Empty: 0 or -70 (the tape circle is then at 0) where the profile fits
    /// such a place, or else where its steep back is.
    std::optional<float> flangeBack1 = {};
    std::optional<float> flangeBack2 = {};
    /// @}
    float radius1 = 460.0f; ///< radius of the first wheel at its tape circle; only the difference of the two counts
    float radius2 = 460.0f; ///< that of the second wheel
    unsigned int amplitudes = 100; ///< about how many are calculated, from 1 mm on
    /// Empty: the contacts are searched every 0.01 mm and the integral reaches the turning points. A distance in mm: the curve is that of
    /// KxMath::EquivalentConicity, with contacts every 0.1 mm and an integral that ends so far from the turning points.
    std::optional<float> edgeMargin = {};
    float shownAmplitude = 3.0f; ///< the amplitude whose conicity is shown first
    /// The length of the contour that is smoothed by one local parabola, half of it on each side of a point. 0: none.
    /// Empty: as much as the noise of each profile asks for, none for profiles without noise.
    std::optional<float> smoothing = {};
    /// Of the gauge that measured both wheels, and of another one, as good, that measured both rails: each error is the same in
    /// the two profiles of a gauge. The intervals contain them.
    GaugeError gaugeError = {};
};

/// Where a wheel touches its rail, lengths in mm, in the coordinates of the placed profiles.
struct Contact {
    float displacement = 0.0f; ///< of the wheel-set, towards the second side
    float slope = 0.0f; ///< of the wheel at its contact point
    Point wheel = {}; ///< the contact point of the wheel
    Point rail = {}; ///< that of the rail
    float outwards = 0.0f; ///< from the contact point of the centred wheel-set to that of the rail, positive outwards
};

/// A prepared and placed profile.
struct PlacedSection {
    std::string file = {}; ///< as in the input
    std::string reading = {}; ///< the readingNote() of a text file
    std::optional<int> dropped = {}; ///< points that were missing or hidden by others
    std::optional<bool> isCut = {}; ///< of rails: cut at the gauge depth; false: it does not reach down so far
    /// The standard deviations of its points in x and in y, found from the points themselves; NaN when it was not looked for.
    Point noise = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::quiet_NaN()};
    /// The shortest and the longest window of its smoothing, mm; empty when it was not smoothed.
    std::optional<std::array<float, 2>> windows = {};
    /// (x, distance from the smoothed contour) of its points, positive below it or, where it is steep, outside; empty
    /// when it was not smoothed. x is counted as in the file, outwards.
    std::vector<Point> residuals = {};
    /// Points every 0.1 mm on the track, y up; each side has its own origin. As prepared where the profiles
    /// could not be placed.
    std::vector<Point> points = {};
};

/// The conicity at one amplitude.
struct ConicityRow {
    float amplitude = 0.0f; ///< mm
    std::optional<float> conicity = {}; ///< empty when the curve has none there, see reasonWithoutConicity()
    Interval interval = {};
    /// That of the profiles without smoothing and correction; empty where they have none.
    std::optional<float> asMeasured = {};
};

/// The equivalent conicity, with everything that any output shows. `dropped`, `isCut`, `points`, `residuals` and contacts
/// are empty in a result that was read from JSON without pictures.
struct ConicityResult {
    PerWheelSetPart<PlacedSection> sections = {};
    /// @{ As in the input.
    float gauge = 0.0f;
    float backToBack = 0.0f;
    float radius1 = 0.0f;
    float radius2 = 0.0f;
    std::optional<float> edgeMargin = {};
    float shownAmplitude = 0.0f;
    GaugeError gaugeError = {};
    /// @}

    /// Why there is no conicity, a sentence; empty when there is one.
    std::string reason = {};
    /// (amplitude, conicity), mm and 1, ascending, from 0.5 mm on. NaN where the difference of radii is too rough for the
    /// method, and where the noise hides the value: high > 4 low in its interval. The effect that noise has on average is
    /// taken off.
    std::vector<Point> conicity = {};
    /// For each point of `conicity` where the conicity of the profiles without their noise is, also where the noise hides
    /// it. Unknown where more than a quarter of the resampled profiles have no conicity; there `conicity` is NaN, too.
    std::vector<Interval> intervals = {};
    /// The conicity at `shownAmplitude`; empty when the curve does not reach it or has no conicity there.
    std::optional<float> shownConicity = {};
    Interval shownInterval = {};
    std::optional<float> shownAsMeasured = {}; ///< see ConicityRow
    std::vector<ConicityRow> rows = {}; ///< at 0.5, 1, 2, 3, ... 10 mm
    /// (displacement, rolling radius of the second wheel minus that of the first), mm, ascending.
    std::vector<Point> deltaR = {};
    /// The contacts of each side in the order of the search: at the displacements 0, -0.1, -0.2, ..., then 0.1, 0.2,
    /// ...
    std::vector<Contact> contacts1 = {};
    std::vector<Contact> contacts2 = {};
    /// Violated assumptions of the method, and limited validity of the result, one sentence each.
    std::vector<std::string> warnings = {};
    std::string version = {}; ///< of KxMath that calculated; empty in a result read from JSON without pictures

    bool isCalculated() const { return reason.empty(); }
};

/// Reads and prepares the profiles and calculates the conicity. Where no amplitude has one, or nothing can be calculated the result says so in
/// `reason`, and its warnings often explain it. Throws an Error when a file cannot be read or holds no points, and when a
/// number of the input is out of its range (BadArgument, with the name of the field as key).
KXINSPECT_EXPORT ConicityResult measureConicity(const ConicityInput& input);

/// Whether a point of the curve holds a conicity: a number above 0.
KXINSPECT_EXPORT bool hasConicity(const Point& p);

/// The conicity at an amplitude, linearly interpolated in the curve. Empty outside the curve and where it has no
/// conicity.
KXINSPECT_EXPORT std::optional<float> conicityAt(const ConicityResult& result, float amplitude);

/// The interval of conicityAt(), unknown where there is none.
KXINSPECT_EXPORT Interval intervalAt(const ConicityResult& result, float amplitude);

/// Why conicityAt() is empty, a clause: "the curve ends at 7.82 mm". Empty where there is a conicity.
KXINSPECT_EXPORT std::string reasonWithoutConicity(const ConicityResult& result, float amplitude);

/// The result as JSON.
KXINSPECT_EXPORT std::string toJson(const ConicityResult& result, Pictures pictures = Pictures::Left);

/// Reads what toJson() wrote, with pictures or without. Throws an Error, Damaged for invalid JSON, Unsuitable with
/// the key for a value that is missing or wrong.
KXINSPECT_EXPORT ConicityResult conicityFromJson(const std::string& json);

} // namespace KxInspect
