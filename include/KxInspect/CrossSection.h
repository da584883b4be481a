// Cross-sections of wheels and rails: where they come from, and how they are prepared for a measurement.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "ProfileFile.h"

#include <optional>
#include <string>

namespace KxInspect {

/// The orientation of a profile in its file.
struct Orientation {
    bool isUp = false; ///< y points up
    bool isMirrored = false; ///< x points inwards
};

/// A cross-section as it was measured, in a file or in memory:
///
///     CrossSection fromFile{"wheel.whl"};
///     CrossSection fromMemory;
///     fromMemory.profile = profile;
struct CrossSection {
    std::string file = {}; ///< UTF-8; with a profile only its name in results, which may be empty
    std::optional<Profile> profile = {}; ///< taken instead of the content of the file
    TextOptions text = {}; ///< how to read a text file
    Orientation orientation = {};
};

/// What a cross-section shows.
enum class SectionKind { Wheel, Rail };

/// The largest width of a section for calculations, mm.
inline constexpr float kMaxSectionWidth = 1000.0f;

/// @{ The steps that measureConicity() takes with each section, in this order, for callers who prepare their own;
/// lengths in mm. Sections that are functions of x pass its preparation unchanged, rails with a gauge depth of 0.

/// Turns a profile to y down and x outwards, which the other steps take. Its points are reversed when the last one then
/// has a smaller x than the first one; with NaN in one of the two they keep their order.
KXINSPECT_EXPORT void orient(Profile& profile, Orientation orientation);

/// Makes a section a function of x. Points with NaN are dropped. If x then rises all the way, the rest stays as it is;
/// otherwise the points are sorted by x, and the side that can be in contact is kept: of wheels the lowest point of each 0.1
/// mm, of rails the highest.
/// @return the number of points that were dropped
KXINSPECT_EXPORT int keepRunningSurface(Profile& section, SectionKind kind);

/// Cuts a rail that is a function of x on its gauge side (the small x), where it is `depth` mm below its top, so that
/// it begins at the gauge point. A depth of 0 and rails of fewer than 2 points leave everything as it is.
/// @return false, without a cut, when the rail does not reach down so far
KXINSPECT_EXPORT bool cutAtGaugeDepth(Profile& rail, float depth);

/// Only for sections of which keepRunningSurface() dropped points: puts points every 0.1 mm on the straight lines
/// between those of a section that is a function of x, where the calculation takes its samples; its spline would
/// overshoot beside steep flanks. The first and the last point stay. Sections that are wider than kMaxSectionWidth, or too far
/// from the origin for such steps, stay as they are.
KXINSPECT_EXPORT void straighten(Profile& section);
/// @}

} // namespace KxInspect
