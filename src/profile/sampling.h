// Sampling an interpolant at a regular step.
#pragma once

#include "KxMath/KxInterpolant.h"

#include "numeric/bounds.h"

#include <cmath>

namespace KxMath::detail {

/// The segments of an interpolant. Looking up rising positions is cheap: the search starts at the segment found before.
class SegmentCursor {
public:
    explicit SegmentCursor(const KxInterpolant& spline);

    /// The value at `x`; NaN outside the knots, and where knots that are no numbers lead beyond the last segment.
    float valueAt(float x);

private:
    int segmentOf(float x);

    const KxInterpolant& spline_;
    bool isOrdered_; ///< knots that rise; with NaN among them every look-up is a full search
    int segment_ = 0;
};

/// The value of the cubic of `segment` at `x`.
float segmentValue(const KxInterpolant& spline, int segment, float x);

/// The segment that a bisection of the knots leads to.
int bisectSegment(const KxInterpolant& spline, float x);

/// Calls `visit` with the samples from `from` on that are numbers, `step` apart by a running single-precision sum,
/// while below `to`; the first is always taken. The spline must be built and `step` positive.
/// @return false when the end was not reached, because adding the step does not advance any more
template <typename Visit>
bool forEachSample(const KxInterpolant& spline, float step, float from, float to, Visit visit) {
    const float first = spline.knotsX[0];
    const float last = spline.knotsX[spline.count - 1];
    const float start = std::isnan(from) || from < first ? first : from;
    const float end = std::isnan(to) || to > last ? last : to;
    SegmentCursor cursor(spline);
    for (float x = start;;) {
        const float y = cursor.valueAt(x);
        if (!std::isnan(y)) {
            visit(KxPointXY(x, y));
        }
        const float next = x + step;
        if (next >= end) { // deliberately not counted beforehand: the running sum decides the last sample
            return true;
        }
        if (!(next > x)) { // NaN: true
            return false;
        }
        x = next;
    }
}

} // namespace KxMath::detail
