// Stretches of a row of a height map. NaN marks an empty cell.
#pragma once

#include "KxMath/KxPoints.h"

#include "simd/float4.h"

namespace KxMath::detail {

/// The number of cells that are not empty.
int countFilled(const float* cells, int count);

/// Whether a cell is not empty; meant for a few of them.
inline bool isAnyFilled(const float* cells, int count) {
    bool isFilled = false;
    int c = 0;
    for (; count - c >= 4 && !isFilled; c += 4) {
        const Float4 v = loadFloat4(cells + c);
        isFilled = anyOf(v == v);
    }
    for (; c < count; ++c) {
        isFilled = isFilled || cells[c] == cells[c];
    }
    return isFilled;
}

/// Empties all cells. @return how many were not empty
int emptyAll(float* cells, int count);

/// Empties the cells below `min` and above `max`; bounds of NaN are switched off. @return how many that were
int emptyOutside(float* cells, int count, float min, float max);

/// Writes the cells of a row from `begin` up to, not including, `end` that are not empty as points in units of `step`.
/// One point more than there are may be written behind them: so no branch depends on what is empty.
/// @return behind the last point
KxPointXYZ* writeFilled(const float* cells, int row, int begin, int end, float step, KxPointXYZ* to);

} // namespace KxMath::detail
