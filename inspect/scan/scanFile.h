// The scan that a height map is made from.
#pragma once

#include "tools/kxmath/console/console.h"
#include "tools/kxmath/grid/gridOptions.h"

#include <KxMath/KxProfileZ.h>

namespace kxtool {

struct Scan {
    KxMath::KxProfileZSet set; ///< profiles one pitch apart, with their positions and range
    int records = 0; ///< in the file
    int emptyRecords = 0; ///< those among them without points
};

/// Reads the file and places its profiles. Throws a CommandError for a file that is missing, damaged, of another kind
/// or without points.
void readScan(const GridOptions& options, Progress& progress, Scan& scan);

} // namespace kxtool
