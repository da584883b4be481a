// A smooth function through 2-D points, sampled at a regular step.
#pragma once

#include "KxMathExport.h"
#include "KxPointCloud.h"

namespace KxMath {

/// Kind of an interpolation. Any other value may be passed and makes building fail.
enum _KxInterpolantType_ : int {
    Akima = 0, ///< cubic spline with locally averaged slopes
};

/// The Akima spline of a set of points (H. Akima, A new method of interpolation and smooth curve fitting based on local
/// procedures, J. ACM 17, 1970), with parabolas through the first and the last three points for the end slopes.
///
/// On segment i, from knotsX[i] to knotsX[i + 1], the value is ((c3 * t + c2) * t + c1) * t + c0 with t = x -
/// knotsX[i], evaluated in double precision. An interpolant owns its arrays and cannot be copied.
///
/// No member works on a const interpolant, and temporaries do not bind to parameters that are non-const references.
/// calcY() and generatePointCloud() only read the interpolant: threads may call them together on one object, each with
/// an `out` of its own.
class KXMATH_EXPORT KxInterpolant {
public:
    float* knotsX; ///< x of the knots, ascending; null when nothing is built
    float* coeffs; ///< c0, c1, c2, c3 of each segment; null when nothing is built
    int count; ///< number of knots, 0 when nothing is built
    int type; ///< the `_KxInterpolantType_` that is built, -1 when nothing is built

    /// An interpolant with nothing built.
    KxInterpolant();
    /// buildFromPointCloud() on a new interpolant.
    KxInterpolant(const KxPointCloud<KxPointXY>& points, _KxInterpolantType_ type);
    KxInterpolant(const KxInterpolant&) = delete;
    KxInterpolant& operator=(const KxInterpolant&) = delete;
    ~KxInterpolant();

    /// Builds the function through `points`, in any order. Remove points with equal x before, since they cause a
    /// division by zero (KxProfile::removeDuplicates()).
    /// @return the number of knots
    /// @return 0 for fewer than 3 points and for a type other than Akima; nothing is built then. The type -1 leaves
    ///         what was built before
    int buildFromPointCloud(const KxPointCloud<KxPointXY>& points, _KxInterpolantType_ type);

    /// The value at `x`; NaN outside the knots (the first and the last are inside) and when nothing is built.
    float calcY(float x);

    /// Samples the function at from, from + step, ... while below `to`; the sum runs in single precision. A bound that
    /// is NaN or outside the knots becomes the first or last knot. The first sample is always taken; `to` itself only
    /// when it is `from`. Sampling also ends where adding the step no longer changes the sum. `out` is emptied first;
    /// samples with NaN height are left out.
    /// @return the number of points in `out`
    /// @return 0, `out` unchanged, when `step` is NaN, 0 or below, or when nothing is built
    int generatePointCloud(KxPointCloud<KxPointXY>& out, float step, float from, float to);

    /// Reserved: does nothing and returns 0.
    int generatePointCloudH(KxPointCloud<KxPointXY>& out, float, float, float, float);

private:
    int buildAkimaSpline(KxPointCloud<KxPointXY>* sortedPoints);
    float diff3p(float t, float x0, float y0, float x1, float y1, float x2, float y2);
};

} // namespace KxMath
