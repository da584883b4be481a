// Measurement errors of a sensor.
#include "simulator/disturbance.h"

#include <cmath>

namespace kxsim {

namespace {

constexpr std::uint64_t kStream = 3;

double quantize(double value, double step) {
    return step > 0.0 ? step * std::round(value / step) : value;
}

} // namespace

Disturbance::Disturbance(const Parameters& p, int sensor, std::uint64_t profile)
    : parameters_(p), random_(p.pass == 0 ? Random({p.seed, kStream, static_cast<std::uint64_t>(sensor), profile})
                                          : Random({p.seed, kStream, static_cast<std::uint64_t>(sensor), profile,
                                                    static_cast<std::uint64_t>(p.pass)})) {}

bool Disturbance::apply(double& x, double& y) {
    const Parameters& p = parameters_;
    const bool isMissing = random_.chance(p.missing);
    y += p.noise * random_.normal();
    if (random_.chance(p.spikes)) {
        const double height = p.spikeSize * random_.uniform(0.3, 1.0);
        y += random_.chance(0.5) ? height : -height;
    }
    x = quantize(x, p.quantum);
    y = quantize(y, p.quantum);
    return !isMissing;
}

} // namespace kxsim
