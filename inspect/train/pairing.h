// Which wheel of one recording belongs to which of the other.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A wheel pair of the train: indices into the wheels of both sides. One is missing where only one sensor saw a wheel.
using PairedWheels = std::array<std::optional<std::size_t>, 2>;

/// Pairs by number: wheel 1 with wheel 1, and so on. The surplus of the longer side has no partner.
std::vector<PairedWheels> pairByNumber(size_t firstCount, size_t secondCount);

/// Pairs by place: the sensors face each other, so that the places of their wheels differ by one number all along. The
/// number that brings most wheels together counts, the smallest of equally good ones; wheels
/// belong together when they then are at most half the smallest gap between neighbouring wheels apart.
/// @param first, second the places of the wheels in the recordings, ascending
/// @return pairs in order of their place
std::vector<PairedWheels> pairByPlace(const std::vector<double>& first, const std::vector<double>& second);

} // namespace KxInspect::detail
