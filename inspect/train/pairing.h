// Which wheel of one recording belongs to which of the other.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// A wheel pair of the train: indices into the wheels of both sides. One is missing where only one sensor saw a wheel.
struct PairedWheels {
    std::array<std::optional<std::size_t>, 2> wheels;
    bool isDoubtful = false; ///< other partners are as likely
};

/// The wheels of both sides joined, in order along the train.
struct Pairing {
    std::vector<PairedWheels> pairs;
    std::string doubt; ///< why pairs are doubtful, a sentence without its end; empty when none is
    bool isContested = false; ///< another way joins more wheels
};

/// Pairs by place: the sensors face each other, so that the places of their wheels differ by one number all along, the
/// shift, which is near 0 when both recordings count from the same place. Wheels belong together when they then are at
/// most half the smallest gap between neighbouring wheels apart.
///
/// The shift that joins most wheels counts. One near 0 (within that half gap) counts as well when it joins as many as
/// any other, or at least half of the wheels within kExactShift; with others, a train of even axle distances
/// would be moved on by an axle when each sensor missed one end of it. A shift far from 0 has to join two wheels more than
/// any other. Else the pairs are doubtful.
/// @param first, second the places of the axles in the recordings, ascending, mm
Pairing pairByPlace(const std::vector<double>& first, const std::vector<double>& second);

inline constexpr double kExactShift = 100.0; // mm

/// The pairs that a shift joins, in order of their place.
std::vector<PairedWheels> pairsAtShift(const std::vector<double>& first, const std::vector<double>& second,
                                       double shift, double reach);

} // namespace KxInspect::detail
