// Whether intervals of 95 % hold as many true values as they should.
#pragma once

#include <cmath>

namespace kxtables {

/// Whether the intervals may hold 93 % of all true values or more: what was counted is within three standard deviations of a
/// sample of so many independent values. True without values.
inline bool holdsEnough(int held, int values) {
    constexpr double kLeast = 0.93;
    const double n = values;
    return held >= kLeast * n - 3.0 * std::sqrt(n * kLeast * (1.0 - kLeast));
}

} // namespace kxtables
