// Stretches of a row of a height map. NaN marks an empty cell.
#pragma once

#include "KxMath/KxPoints.h"

#include <memory>

namespace KxMath::detail {

/// The number of cells that are not empty.
int countFilled(const float* cells, int count);

/// Empties all cells. @return how many were not empty
int emptyAll(float* cells, int count);

/// Empties the cells below `min` and above `max`; bounds of NaN are switched off. @return how many that were
int emptyOutside(float* cells, int count, float min, float max);

/// Writes the cells of a row from `begin` up to, not including, `end` that are not empty as points in units of `step`.
/// One point more than there are may be written behind them: so no branch depends on what is empty.
/// @return behind the last point
inline KxPointXYZ* writeFilled(const float* cells, int row, int begin, int end, float step, KxPointXYZ* to) {
    const float z = static_cast<float>(row) * step;
    for (int c = begin; c < end; ++c) {
        const float height = cells[c];
        std::construct_at(to, static_cast<float>(c) * step, height, z);
        to += height == height ? 1 : 0;
    }
    return to;
}

} // namespace KxMath::detail
