// Parts of a row of a height map. NaN marks an empty cell.
#pragma once

#include "KxMath/KxPoints.h"

#include "simd/float4.h"
#include "simd/instructionSets.h"

namespace KxMath::detail {

/// The number of cells that are not empty.
int countFilled(const float* cells, int count, InstructionSet instructions = widestInstructionSet());

/// Whether any cell is not empty. Meant for few cells: a call through runOn() would cost more than it gains.
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

/// Empties the cells below `min` and above `max`; a bound of NaN is switched off. @return how many were emptied
int emptyOutside(float* cells, int count, float min, float max, InstructionSet instructions = widestInstructionSet());

/// Writes the cells of a row from `begin` up to, not including, `end` that are not empty as points in units of `step`.
/// One extra point may be written behind the last one, so that no branch depends on which cells are empty.
/// @return the end of the points
KxPointXYZ* writeFilled(const float* cells, int row, int begin, int end, float step, KxPointXYZ* to);

} // namespace KxMath::detail
