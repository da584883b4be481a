// Positions on a regular grid.
#pragma once

namespace KxMath::detail {

/// origin + index * pitch, calculated in double precision and rounded once. An int is the quicker index: SSE2 converts
/// it on vectors, a 64-bit integer not.
template <typename Index>
float gridPosition(Index index, float pitch, float origin) {
    return static_cast<float>(static_cast<double>(index) * static_cast<double>(pitch) + static_cast<double>(origin));
}

} // namespace KxMath::detail
