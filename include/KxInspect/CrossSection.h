// Cross-sections of wheels and rails: where they come from, and how they are prepared for a measurement.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "ProfileFile.h"

#include <array>
#include <optional>
#include <string>

namespace KxInspect {

/// The orientation of a profile in its file. What is empty is found from the shape where a measurement does so, and
/// otherwise false.
struct Orientation {
    std::optional<bool> isUp = {}; ///< y points up
    std::optional<bool> isMirrored = {}; ///< x points inwards
};

/// What all points of a profile have in common and their noise does not show: standard uncertainties of the gauge (type B of
/// JCGM 100:2008; half of an expanded uncertainty with k = 2), from its certificate or from a study with it. The intervals of
/// what is measured contain them.
struct GaugeError {
    float place = 0.0f; ///< along x, mm: how far x is off the flange back, where that is not measured
    float turn = 0.0f; ///< of the profile in its plane, mrad
    float scale = 0.0f; ///< of all lengths, millionths

    bool isSet() const { return place != 0.0f || turn != 0.0f || scale != 0.0f; }
};

inline constexpr std::array<double, 2> kGaugeErrors = {0.0, 1000.0}; ///< least and largest, in the units of GaugeError

/// A cross-section as it was measured, in a file or in memory:
///
///     CrossSection fromFile{"wheel.whl"};
///     CrossSection fromMemory;
///     fromMemory.profile = profile;
struct CrossSection {
    std::string file = {}; ///< with a profile only its name in results, which may be empty
    std::optional<Profile> profile = {}; ///< taken instead of the content of the file
    TextOptions text = {}; ///< how to read a text file
    Orientation orientation = {};
};

/// What a cross-section shows.
enum class SectionKind { Wheel, Rail };

/// The largest width of a section for calculations, mm.
inline constexpr float kMaxSectionWidth = 1000.0f;

/// @{ The steps that measureConicity() takes with each section, in this order, for callers who prepare their own;
/// lengths in mm. The points of a section follow its contour, from one end to the other: the contour is the line through
/// them in their order. Sections whose x rises all the way pass unchanged, rails with a gauge depth of 0.

/// Turns a profile to y down and x outwards, which the other steps take. Its points are reversed when the last one then
/// has a smaller x than the first one; with NaN in one of the two they keep their order.
KXINSPECT_EXPORT void orient(Profile& profile, Orientation orientation);

/// Drops the points with NaN. @return their number
KXINSPECT_EXPORT int dropMissing(Profile& profile);

/// Cuts a rail on its gauge side (the small x) at its gauge point: the smallest x of its contour from the top to `depth`
/// mm below it. The rest of the contour, without NaN, begins there. A depth of 0 and rails of fewer than 2 points leave everything as it is.
/// @return false, without a cut, when the rail does not reach down so far on its gauge side
KXINSPECT_EXPORT bool cutAtGaugeDepth(Profile& rail, float depth);

/// Makes a section without NaN a function of x: of wheels the lowest side of the contour, of rails the highest, which can be
/// in contact. If x rises all the way, nothing changes; otherwise the points are every 0.1 mm from the smallest x on, where the calculation
/// takes its samples, and at the largest x. Sections that are wider than kMaxSectionWidth, or too far from the origin for such
/// steps, stay as they are.
/// @return the number of points that stand behind the others; empty, without a change, when the points follow no contour:
/// when the line through them is 50 times as long as they are wide and high
KXINSPECT_EXPORT std::optional<int> keepRunningSurface(Profile& section, SectionKind kind);
/// @}

} // namespace KxInspect
