// What the stations of a simulated fleet measure, as results of passes.
#pragma once

#include "simulator/fleet/fleetWheels.h"

#include <KxInspect/PassResult.h>

#include <array>
#include <cstddef>
#include <vector>

namespace kxsim {

/// One side of a station measures differently from a day on.
struct FleetShift {
    int station = 0; ///< from 0
    KxInspect::TrackSide side = KxInspect::TrackSide::Left;
    double day = 0.0; ///< from the first one of the plan
    double size = 0.0; ///< mm, of the thickness of flanges
};

/// The windows of one side of a station are dirty: more noise, and more values are missing.
struct FleetDirt {
    int station = 0;
    KxInspect::TrackSide side = KxInspect::TrackSide::Left;
    double from = 0.0;
    double until = 0.0;
};

/// A pass, before it is measured.
struct FleetPass {
    double day = 0.0; ///< from the first one of the plan
    int train = 0; ///< from 0
    int station = 0;
};

/// A fleet with its truth.
class Fleet {
public:
    explicit Fleet(const FleetPlan& plan);

    const FleetPlan& plan() const { return plan_; }
    const std::vector<FleetPass>& passes() const { return passes_; } ///< in the order of time
    const std::vector<FleetShift>& shifts() const { return shifts_; } ///< likewise
    const std::vector<FleetDirt>& dirt() const { return dirt_; }
    /// @param wheel left and right of each axle in turn, from 0
    const FleetWheel& wheel(int vehicle, int wheel) const;
    static std::string vehicleNumber(int vehicle); ///< "V0001" for 0
    static std::string stationName(int station); ///< "station 1" for 0

    /// What a pass measures: the values of each wheel with noise, the error that its station always has, its shifts, and
    /// the flats that it sees. The intervals hold the noise. The same pass gives the same result, whatever was asked before.
    KxInspect::PassResult measure(std::size_t pass) const;

private:
    struct SensorState;

    SensorState stateOf(const FleetPass& pass, KxInspect::TrackSide side) const;

    FleetPlan plan_;
    std::vector<std::vector<FleetWheel>> vehicles_;
    std::vector<FleetPass> passes_;
    std::vector<FleetShift> shifts_;
    std::vector<FleetDirt> dirt_;
};

} // namespace kxsim
