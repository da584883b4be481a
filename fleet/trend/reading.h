// The readings of one value of one wheel, in the order of time.
#pragma once

#include <vector>

namespace kxfleet {

/// What one pass measured.
struct Reading {
    double day = 0.0; ///< when, in days since 1970-01-01 00:00 UTC
    double value = 0.0; ///< in the unit of the value; finite
    int station = 0; ///< number of the station in a list of the caller
};

using Readings = std::vector<Reading>; ///< in ascending order of their days

} // namespace kxfleet
