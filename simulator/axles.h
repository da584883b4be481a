// Where the axles of a simulated train stand.
#pragma once

#include "simulator/parameters.h"

#include <vector>

namespace kxsim {

struct AxlePlace {
    int car; ///< from 1, as the two below; counted as listed, also in a turned train
    int bogie; ///< in its car
    int axle; ///< in its bogie
    double behind; ///< distance behind the first axle that passes
    int listed; ///< from 1, counted as listed; what a wheel pair keeps from pass to pass is drawn by it
};

/// The axles of a train in the order in which they pass.
std::vector<AxlePlace> axlesOf(const Parameters& parameters);

/// The shortest distance of two successive axles; infinite for a single one.
double closestAxles(const std::vector<AxlePlace>& axles);

} // namespace kxsim
