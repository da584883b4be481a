// The vehicles of a train: a list of them, and which axle of a pass belongs to which.
#pragma once

#include "Export.h"
#include "InputFile.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// A vehicle of a list. Its axles are counted from the end that comes first in the list.
struct ListedVehicle {
    std::string mark = {}; ///< of its type, UTF-8; may be empty
    std::string number = {}; ///< its own, UTF-8; no two vehicles of a list have the same one; may be empty
    std::string vehicleClass = {}; ///< for limits that differ by class; may be empty
    std::vector<double> spacings = {}; ///< between its successive axles, mm; one fewer than it has axles
    double toNext = 0.0; ///< from its last axle to the first one of the next vehicle, mm; of the last vehicle not used

    std::size_t axles() const { return spacings.size() + 1; }
};

/// A train as it is listed, from one end to the other; it may pass with either end ahead.
struct Consist {
    std::string file = {}; ///< where it was read from, as the caller named it; empty when it was filled in
    std::vector<ListedVehicle> vehicles = {};
    std::optional<InputFile> source = {}; ///< `file` as it was read; absent when the list was filled in
};

/// Reads a list of vehicles, see docs/consist.md. Throws an Error with the line for a file that is none: NotFound,
/// Unreadable, Damaged for what breaks the form, Unsuitable for distances out of range and numbers that come twice.
/// @param path see KxInspect.h
KXINSPECT_EXPORT Consist readConsist(const std::string& path);

/// Which end of a list passes first.
enum class ConsistOrder {
    Found, ///< that which fits the spacings of the axles; none when both do
    Listed, ///< the first vehicle of the list
    Turned, ///< the last one
};

/// How the vehicles of a pass are counted.
enum class VehicleOrder {
    Passing, ///< in the order of passing, without a list, or where both ends of the list fit alike
    Listed, ///< as in the list, whose first vehicle passed first
    Turned, ///< as in the list, whose last vehicle passed first
};

/// A vehicle of a pass.
struct KXINSPECT_EXPORT PassVehicle {
    int number = 0; ///< from 1, see VehicleOrder
    std::vector<int> layout = {}; ///< axles of its bogies, 1 for an axle without: {2, 2}, {3, 3}, {1, 1}
    int seen = 0; ///< how many of its axles a sensor saw
    /// @{ As in the list; absent without one. Empty where the list leaves them empty.
    std::optional<std::string> mark = {};
    std::optional<std::string> vehicleNumber = {};
    std::optional<std::string> vehicleClass = {};
    /// @}
    std::string doubt = {}; ///< what speaks against it; empty when nothing does

    int axles() const;
};

/// The place of an axle of a pass in its train. Absent numbers have a reason, but for axles that run in no bogie.
struct AxleNumber {
    std::optional<int> vehicle = {}; ///< PassVehicle::number
    std::optional<int> bogie = {}; ///< in its vehicle, from 1; absent too for an axle that runs in none
    std::optional<int> axle = {}; ///< in its vehicle, from 1
    std::string reason = {}; ///< why there is no vehicle; empty when there is one
};

/// The vehicles of a pass.
struct PassTrain {
    std::vector<PassVehicle> vehicles = {}; ///< by number
    VehicleOrder order = VehicleOrder::Passing;
    bool isListed = false; ///< a list was given
    /// How many mm of z there are to a mm of the list; absent without a list that fits.
    std::optional<double> scale = {};
    std::string reason = {}; ///< why there are no vehicles at all; empty when there are some
    std::vector<std::string> mismatches = {}; ///< what of the list and what of the pass have no partner; UTF-8
};

/// Numbers the axles of a pass from their places.
/// @param places of the axles along the pass, mm, ascending
/// @param consist null without a list
/// @param numbers gets those of the axles, in parallel with `places`
KXINSPECT_EXPORT PassTrain numberAxles(const std::vector<double>& places, const Consist* consist, ConsistOrder order,
                                       std::vector<AxleNumber>& numbers);

} // namespace KxInspect
