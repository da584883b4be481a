// Axles of a vehicle joined to bogies.
#pragma once

#include <vector>

namespace KxInspect::detail {

/// How many axles each bogie of a vehicle has, from the distances between its axles; 1 stands for an axle without bogie.
///
/// Neighbours that are at most 3.6 m apart, and clearly closer than the widest gap of the vehicle, share a bogie.
std::vector<int> layoutOf(const std::vector<double>& spacings);

/// The bogie of an axle, both counted from 1; 0 when it runs in none.
int bogieOf(const std::vector<int>& layout, int axle);

inline constexpr double kMostBogieGap = 3600.0; // mm between neighbours; bogies of locomotives have up to 3.4 m

} // namespace KxInspect::detail
