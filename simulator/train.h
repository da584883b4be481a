// The train of a simulated pass.
#pragma once

#include "simulator/bodies.h"
#include "simulator/parameters.h"
#include "simulator/wheel.h"

#include <string>
#include <vector>

namespace kxsim {

struct WheelPair {
    int car; ///< from 1, as the two below
    int bogie;
    int axle;
    double behind; ///< distance behind the first axle of the train
    double backToBack;
    double lateralShift; ///< to the left
    double yaw; ///< turn about the vertical through the middle of the axle, rad, positive when the right wheel is ahead
    std::vector<Wheel> wheels; ///< left, right
};

/// An obstacle other than a wheel. The box has x relative to the first axle of the train.
struct Equipment {
    std::string kind;
    Box box;
};

struct Train {
    std::vector<WheelPair> pairs;
    std::vector<Equipment> equipment;
};

/// Draws the train of a seed.
Train makeTrain(const Parameters& parameters);

} // namespace kxsim
