// The limits of the seed search where the user gave none.
#pragma once

#include "inspect/scan/scanGrid.h"

namespace kxtool {

/// Fills in the limits from the block means:
/// - start and end: the largest and the smallest mean;
/// - tolerance: ten times the median difference of neighbouring means, which is a few times what noise makes of them,
///   but at least 1/500 of the range of the means;
/// - step: the tolerance, so that the bands of the levels overlap;
/// - minCount: twice the longer side of the grid, since the block means along a step between two heights form strips
///   of one cell's width.
SeedSearch chooseSearch(const SeedOptions& options, const CellValues& means);

} // namespace kxtool
