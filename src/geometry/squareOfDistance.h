// Squares of distances, as KxPointXY::calcDistance() and KxPointXYZ::calcDistance() round them before the root.
#pragma once

namespace KxMath::detail {

/// @tparam Number float, or a vector of floats
template <typename Number>
inline Number squareOfDistance(Number dx, Number dy) {
    return dx * dx + dy * dy;
}

template <typename Number>
inline Number squareOfDistance(Number dx, Number dy, Number dz) {
    return dy * dy + dx * dx + dz * dz;
}

} // namespace KxMath::detail
