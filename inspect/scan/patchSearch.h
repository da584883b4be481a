// Default limits of the search for patches.
#pragma once

#include <KxInspect/Patches.h>

namespace KxInspect::detail {

/// Fills in the limits from the block means:
/// - start and end: the largest and the smallest mean;
/// - tolerance: ten times the median difference of neighbouring means, a few times their noise, but at least 1/500 of
///   the range of the means;
/// - step: the tolerance, so that the bands of the levels overlap;
/// - minCount: twice the longer side of the map, since the block means along a step between two heights form strips
///   of one cell's width.
PatchSearch chooseSearch(const PatchOptions& options, const HeightMap& map, const PatchResult& blocks);

} // namespace KxInspect::detail
