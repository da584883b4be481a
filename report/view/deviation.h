// A profile beside another one.
#pragma once

#include <KxInspect/HeightMap.h>
#include <KxInspect/Profile.h>
#include <KxInspect/Range.h>

#include <cstddef>
#include <limits>
#include <vector>

namespace kxreport {

/// The deviations of the points of a profile from a reference, along y.
struct Deviation {
    /// y of each point minus y of the reference at its x, mm, the reference on straight lines between neighbouring points.
    /// NaN for a missing point, where the reference has no line at that x, or more than one.
    std::vector<float> values;
    std::size_t compared = 0; ///< points with a deviation
    std::size_t outside = 0; ///< points where the reference has no line
    std::size_t ambiguous = 0; ///< points where it has several, with different heights
    KxInspect::Range range; ///< mm
    double rootMeanSquare = std::numeric_limits<double>::quiet_NaN(); ///< mm; NaN without a deviation
};

/// @param gap points of the reference that are further apart in x, mm, have no line between them
Deviation deviationOf(const KxInspect::Profile& profile, const KxInspect::Profile& reference, float gap);

/// The heights of a map less those of a reference, on the cells of the map. Where the cells of the reference lie elsewhere,
/// its heights are interpolated between the four around (bilinear). Missing where one of these is, or beyond the
/// reference. Throws an Error BadArgument when their pitches differ.
KxInspect::HeightMap mapDeviation(const KxInspect::HeightMap& map, const KxInspect::HeightMap& reference);

/// Up to which distance in x neighbouring points are joined: 2.5 times the median distance, 0 distances left out, which
/// bridges one missing point. NaN for fewer than two points.
float joiningGap(const std::vector<KxInspect::Profile>& profiles);

} // namespace kxreport
