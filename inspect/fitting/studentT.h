// How far a mean may be off that is known from few values.
#pragma once

#include <limits>

namespace KxInspect::detail {

/// Of a mean whose standard error was estimated with so many degrees of freedom, 95 % lie within this many standard
/// errors of the truth: the 97.5 % quantile of Student's t, from its expansion by the quantile of the normal
/// distribution (Abramowitz and Stegun, Handbook of Mathematical Functions, 1964, 26.7.5), within 0.2 %. NaN below 1.
inline double studentT(double freedom) {
    if (!(freedom >= 1.0)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (freedom < 3.0) { // the expansion is too short for these; exact values, a straight line between them
        constexpr double kExact[] = {12.7062, 4.3027, 3.1824};
        const int whole = freedom < 2.0 ? 0 : 1;
        return kExact[whole] + (freedom - 1.0 - whole) * (kExact[whole + 1] - kExact[whole]);
    }
    constexpr double kNormal = 1.959963984540054;
    constexpr double kTerms[] = {2.3724, 2.8225, 2.5558, 1.5895}; // of 1 / freedom, for this quantile
    const double f = 1.0 / freedom;
    return kNormal + f * (kTerms[0] + f * (kTerms[1] + f * (kTerms[2] + f * kTerms[3])));
}

} // namespace KxInspect::detail
