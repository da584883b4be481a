// What the wheels of a simulated fleet really are, day by day.
#pragma once

#include "simulator/fleet/fleetPlan.h"

#include <KxInspect/PassWheels.h>

#include <array>
#include <optional>
#include <vector>

namespace kxsim {

/// A flat that comes, grows, and goes when the wheel is turned. Days from the first one of the plan.
struct FleetFlat {
    double from = 0.0;
    double growth = 0.0; ///< mm a day; 0: it is there at once
    double depth = 0.0; ///< at `from`, mm
};

/// Between two turnings.
struct WheelLife {
    double from = 0.0; ///< days; the first may have begun before the plan
    double until = 0.0; ///< the end of the plan or a turning
    std::array<double, KxInspect::kPassMeasures> atStart = {}; ///< in the order of PassMeasure, on the day `from`
    std::array<double, KxInspect::kPassMeasures> perDay = {};
    std::optional<FleetFlat> flat = {};
};

/// What goes beyond its limit.
enum class Crossing { Thickness, Height, Hollow, Flat };

struct CrossingTruth {
    double day = 0.0;
    Crossing what = Crossing::Thickness;
    double growing =
        0.0; ///< days since it began: since the life began, or the flat; 0 for a flat that is there at once
};

struct FleetWheel {
    std::vector<WheelLife> lives = {};

    const WheelLife& lifeOn(double day) const;
    double valueOn(double day, KxInspect::PassMeasure measure) const;
    double offRoundOn(double day) const; ///< mm; 0 without a flat
    std::vector<CrossingTruth> crossings() const; ///< the first of each life for each reason, by day
};

/// The wheels of a vehicle: left and right of each axle in turn. All are turned together, 10 to 40 days after one of them
/// has gone beyond a limit.
std::vector<FleetWheel> wheelsOfVehicle(const FleetPlan& plan, int vehicle);

} // namespace kxsim
