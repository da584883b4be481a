// Measurement errors of a sensor.
#pragma once

#include "simulator/parameters.h"
#include "simulator/random.h"

#include <cstdint>

namespace kxsim {

/// Noise, spikes, steps and missing points of one profile. Every profile of every sensor has its own random numbers.
class Disturbance {
public:
    /// @param parameters must outlive the disturbance
    Disturbance(const Parameters& parameters, int sensor, std::uint64_t profile);

    /// Changes the true coordinates of the next point into measured ones.
    /// @return false when the point is missing
    bool apply(double& x, double& y);

private:
    const Parameters& parameters_;
    Random random_;
};

} // namespace kxsim
