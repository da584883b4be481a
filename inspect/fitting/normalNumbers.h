// Normally distributed numbers for resampling.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

namespace KxInspect::detail {

/// The same numbers on every platform: the standard library fixes its engines, but not its distributions. Mean 0, standard
/// deviation 1.
class NormalNumbers {
public:
    explicit NormalNumbers(std::uint64_t seed) : engine_(seed) {}

    float next() {
        if (hasSpare_) {
            hasSpare_ = false;
            return spare_;
        }
        // G. E. P. Box, M. E. Muller, A Note on the Generation of Random Normal Deviates, 1958.
        const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
        const double angle = 2.0 * std::numbers::pi * uniform();
        spare_ = static_cast<float>(radius * std::sin(angle));
        hasSpare_ = true;
        return static_cast<float>(radius * std::cos(angle));
    }

private:
    /// At least 0, below 1.
    double uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }

    std::mt19937_64 engine_;
    float spare_ = 0.0f; ///< the second number of a pair
    bool hasSpare_ = false;
};

} // namespace KxInspect::detail
