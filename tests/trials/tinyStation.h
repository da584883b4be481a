// A measuring station whose truth is known, drawn at random, and passes of a few wheel pairs at it: for programs and tests
// that look at many.
#pragma once

#include "simulator/parameters.h"

#include <cstdint>

namespace kxsim {

/// A station with a pose, noise and sensors of its own, as `seed` says. Its passes differ in their seeds and speeds.
struct TinyStation {
    Parameters parameters; ///< of a pass with four wheel pairs; both sensors differ in place and turn
    double gaugeError; ///< standard deviation of the distances that the fit is given, mm
};

TinyStation drawStation(std::uint64_t seed);

/// A pass of one wheel pair at the station.
Parameters drawPass(const TinyStation& station, std::uint64_t seed);

} // namespace kxsim
