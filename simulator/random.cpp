// Random numbers that do not depend on the standard library.
#include "simulator/random.h"

#include <cmath>
#include <numbers>

namespace kxsim {

namespace {

/// One step of SplitMix64 (G. L. Steele, D. Lea, C. H. Flood, Fast Splittable Pseudorandom Number Generators, 2014).
std::uint64_t mix(std::uint64_t z) {
    z += 0x9e3779b97f4a7c15u;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
}

std::uint64_t combine(std::initializer_list<std::uint64_t> seeds) {
    std::uint64_t state = 0;
    for (const std::uint64_t seed : seeds) {
        state = mix(state ^ seed);
    }
    return state;
}

} // namespace

Random::Random(std::initializer_list<std::uint64_t> seeds) : engine_(combine(seeds)) {}

double Random::uniform() {
    return static_cast<double>(engine_() >> 11) * 0x1p-53;
}

double Random::uniform(double from, double to) {
    return from + (to - from) * uniform();
}

double Random::normal() {
    if (hasSpare_) {
        hasSpare_ = false;
        return spare_;
    }
    // G. E. P. Box, M. E. Muller, A Note on the Generation of Random Normal Deviates, 1958.
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * std::numbers::pi * uniform();
    spare_ = radius * std::sin(angle);
    hasSpare_ = true;
    return radius * std::cos(angle);
}

double Random::boundedNormal() {
    for (;;) {
        const double value = normal();
        if (std::abs(value) <= 3.0) {
            return value;
        }
    }
}

bool Random::chance(double probability) {
    return uniform() < probability;
}

} // namespace kxsim
