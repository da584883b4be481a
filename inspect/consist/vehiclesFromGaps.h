// Vehicles found by the gaps between axles alone.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// Successive axles that make a vehicle.
struct FoundVehicle {
    std::size_t first = 0; ///< index of its first axle
    std::size_t count = 0;
    std::vector<int> layout = {}; ///< axles of its bogies; empty: no vehicle that is known has these axles
    /// The numbers of its axles, from 1, in parallel with the axles that are there; fewer than the layout has where one was
    /// not seen.
    std::vector<int> axles = {};
    bool isDoubtful = false; ///< other vehicles are nearly as likely
};

/// Divides the axles of a train into vehicles. Vehicles that are known: with two or three single axles; with two bogies
/// of two or three axles each; with three or more bogies of two axles, as articulated trains have, in which bodies share
/// bogies and the gaps do not tell where one ends. Of all divisions the cheapest counts (dynamic programming, Bellman,
/// Dynamic Programming, 1957); docs/consist.md has the ranges and the prices.
std::vector<FoundVehicle> vehiclesFromGaps(const std::vector<double>& places);

} // namespace KxInspect::detail
