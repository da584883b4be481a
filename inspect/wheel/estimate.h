// A value with its uncertainty, propagated from the points that it depends on.
#pragma once

#include <KxInspect/Interval.h>

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// The effect of the noise of one point: what its deviation by one standard deviation across the contour, in x and in y, adds
/// to a value.
struct Pull {
    std::size_t point = 0;
    double x = 0.0;
    double y = 0.0;
};

/// A value and, to first order, how it depends on the points. Values that share points are combined with what they
/// have in common.
class Estimate {
public:
    Estimate() = default;
    /// @param freedom the degrees of freedom of the standard deviation in the pulls
    Estimate(double value, std::vector<Pull> pulls, double freedom);

    /// this + factor * other
    Estimate plus(const Estimate& other, double factor = 1.0) const;
    Estimate plus(double constant) const;

    double value() const { return value_; }
    double deviation() const; ///< standard deviation
    double freedom() const; ///< of the standard deviation (F. E. Satterthwaite, 1946)

    /// The interval that holds the true value with a probability of 95 %. It holds `shown` too: where that is beyond one end, the
    /// interval is extended on this side, and shortened on the other one so that the probability stays.
    Interval interval(float shown) const;

private:
    struct Part {
        double variance;
        double freedom;
    };

    double value_ = 0.0;
    std::vector<Pull> pulls_ = {};
    std::vector<Part> parts_ = {};
};

} // namespace KxInspect::detail
