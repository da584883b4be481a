// Sampling an interpolant at a regular step.
#pragma once

#include "KxMath/KxInterpolant.h"

#include "numeric/bounds.h"

#include <cmath>

namespace KxMath::detail {

/// A segment of a spline in double precision.
class Cubic {
public:
    Cubic(const KxInterpolant& spline, int segment)
        : Cubic(spline.coeffs + 4 * static_cast<qsizetype>(segment), spline.knotsX[segment]) {}

    float operator()(float x) const {
        const double t = static_cast<double>(x) - start_;
        return static_cast<float>(((c3_ * t + c2_) * t + c1_) * t + c0_);
    }

private:
    Cubic(const float* coeffs, float start)
        : start_(static_cast<double>(start)), c0_(static_cast<double>(coeffs[0])), c1_(static_cast<double>(coeffs[1])),
          c2_(static_cast<double>(coeffs[2])), c3_(static_cast<double>(coeffs[3])) {}

    double start_;
    double c0_;
    double c1_;
    double c2_;
    double c3_;
};

/// The value at `x`, its segment found by a bisection of the knots; NaN outside the knots, and where knots that are no
/// numbers lead beyond the last segment.
float valueByBisection(const KxInterpolant& spline, float x);

/// Whether the knots rise; they do not with NaN among them.
bool areKnotsOrdered(const KxInterpolant& spline);

/// Calls `visit` with the samples from `from` on that are numbers, `step` apart by a running single-precision sum,
/// while below `to`; the first is always taken. The spline must be built and `step` positive.
/// @return false when the end was not reached, because adding the step does not advance any more
template <typename Visit>
bool forEachSample(const KxInterpolant& spline, float step, float from, float to, Visit visit) {
    const float* const knots = spline.knotsX;
    const int lastKnot = spline.count - 1;
    const float end = std::isnan(to) || to > knots[lastKnot] ? knots[lastKnot] : to;
    float x = std::isnan(from) || from < knots[0] ? knots[0] : from;
    enum class Step { Advanced, Stuck, BeyondEnd };
    const auto sample = [&](float y) {
        if (!std::isnan(y)) {
            visit(KxPointXY(x, y));
        }
        const float next = x + step;
        if (next >= end) { // deliberately not counted beforehand: the running sum decides the last sample
            return Step::BeyondEnd;
        }
        if (!(next > x)) { // NaN: true
            return Step::Stuck;
        }
        x = next;
        return Step::Advanced;
    };
    Step state = sample(valueByBisection(spline, x));
    // Rising positions go through the segments one after the other; all of them lie before the last knot.
    const bool isOrdered = areKnotsOrdered(spline);
    for (int segment = 0; isOrdered && state == Step::Advanced && segment < lastKnot; ++segment) {
        const Cubic cubic(spline, segment);
        const float segmentEnd = knots[segment + 1];
        while (x <= segmentEnd && state == Step::Advanced) {
            state = sample(cubic(x));
        }
    }
    while (state == Step::Advanced) {
        state = sample(valueByBisection(spline, x));
    }
    return state == Step::BeyondEnd;
}

} // namespace KxMath::detail
