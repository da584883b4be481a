// Random numbers that do not depend on the standard library: it fixes the engine, but not the distributions.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

namespace kxsim {

class Random {
public:
    /// Equal lists give equal sequences; lists that differ in one number give unrelated sequences.
    explicit Random(std::initializer_list<std::uint64_t> seeds);

    /// At least 0, below 1.
    double uniform();
    double uniform(double from, double to);
    /// Normal with mean 0 and standard deviation 1.
    double normal();
    /// normal() within +-3, by drawing again.
    double boundedNormal();
    /// True with the given probability.
    bool chance(double probability);

private:
    std::mt19937_64 engine_;
    double spare_ = 0.0; ///< the second number of a pair of normal ones
    bool hasSpare_ = false;
};

} // namespace kxsim
