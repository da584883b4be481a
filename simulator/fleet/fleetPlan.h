// What a simulated fleet is like.
#pragma once

#include <cstdint>

namespace kxsim {

/// A part of wheels or passes is a number from 0 to 1; lengths are in mm, times in days.
struct FleetPlan {
    std::uint64_t seed = 1;
    int firstYear = 2024; ///< its first day is the first one of the plan
    int days = 730;
    int vehicles = 200;
    int perTrain = 4; ///< vehicles, always the same ones
    int axles = 4; ///< of a vehicle, two bogies of two
    int stations = 3;
    double passesPerDay = 1.0; ///< of a train, each at a station that is drawn
    double failedPasses = 0.01; ///< part of the passes in which a side measured nothing
    double missingValues = 0.02; ///< part of the values that are missing by themselves
    double flatsPerYear = 0.05; ///< of a wheel
    double suddenFlats = 0.3; ///< part of the flats that are there at once
    double shiftsPerYear = 1.0; ///< of one side of a station
    double dirtPerYear = 2.0; ///< times that the windows of one side of a station are dirty, for 3 to 15 days
    double seesFlat = 1.0; ///< chance that a pass shows a flat; 1: rows of sensors that see the whole circumference
};

/// @{ Beyond these a wheel is to be turned; the sheets of railways differ.
inline constexpr double kLeastThickness = 24.0; ///< Sd
inline constexpr double kMostHeight = 32.0; ///< Sh
inline constexpr double kMostHollow = 2.0;
inline constexpr double kMostOffRound = 0.3; ///< a flat of 32 mm on a wheel of 850 mm
/// @}

} // namespace kxsim
