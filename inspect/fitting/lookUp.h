// The value of a curve between its points.
#pragma once

#include <KxMath/KxProfile.h>

namespace KxInspect::detail {

/// The value at `x` of a curve ordered by x, on the straight line between its neighbours, in double precision (the
/// library's own look-up fits a line in single precision, which loses digits where points are close); NaN outside.
double valueAt(const KxMath::KxProfile& curve, double x);

} // namespace KxInspect::detail

namespace kxtool { // for what is still there
using KxInspect::detail::valueAt;
}
