// Rows of height maps between profiles that are further apart than the pitch.
#pragma once

#include <KxInspect/HeightMap.h>

#include <vector>

namespace KxInspect::detail {

/// The distance of neighbouring profiles: that of the scan, otherwise the median of their positions. NaN when it is not
/// known, as of a scan with a position that is not finite.
float profileDistance(const Scan& scan);

/// How many rows reach from the first to the last of ascending positions; NaN without any.
double rowsFrom(const std::vector<float>& positions, float pitch);

/// Puts rows one pitch apart in place of those of a map that has one row for each profile. A row between two profiles is on
/// the straight lines between their heights where both have one and are at most `map.gap` apart; it counts as interpolated.
/// @param positions of the profiles, ascending, as many as the map has rows
void interpolateRows(const std::vector<float>& positions, HeightMap& map);

} // namespace KxInspect::detail
