// Lines, circles, planes and free vectors, with their least-squares fits. All angles are in degrees. NaN in an argument
// spreads to the result unless a function says otherwise. No member works on a const object, and temporaries do not
// bind to parameters that are non-const references.
#pragma once

#include "KxMathExport.h"
#include "KxPoints.h"

namespace KxMath {

template <typename T>
class KxPointCloud;

/// A 2-D line in slope form: y = k * x + b.
class KXMATH_EXPORT KxLine {
public:
    float k; ///< slope
    float b; ///< intercept

    /// An unknown line: both fields are NaN.
    KxLine();
    KxLine(float k, float b);
    KxLine(const KxLine&) = default;
    KxLine& operator=(const KxLine&) = default;

    /// The height of the line at `x`.
    float y(float x);
    /// The position at which the line has the height `y`. k = 0 gives an infinity or NaN.
    float x(float y);

    /// The line through two points.
    /// @return true when done
    /// @return false when the points are less than 1e-5 apart in x; the line then becomes y = 0
    bool calcFromTwoPoints(KxPointXY& p1, KxPointXY& p2);

    /// Ordinary least squares of y on x, with single-precision sums in stored order: shift points that are far from the
    /// origin towards it first.
    /// When the sum of all x is exactly 0, the first point with x other than 0 counts twice, which keeps the
    /// quotients finite. Points that share one x other than 0 give infinite or NaN fields together with true.
    /// @return true when done
    /// @return false, line unchanged, for fewer than 2 points or when every x is 0
    bool calcFromPointCloud(KxPointCloud<KxPointXY>& cloud);

    /// The point in which two lines meet.
    /// @return true when `out` was written
    /// @return false, `out` unchanged, when the slopes are equal; NaN slopes do not count as equal
    static bool calcIntersection(KxLine& l1, KxLine& l2, KxPointXY& out);
    /// The same for this line and `other`.
    bool calcIntersection(KxLine& other, KxPointXY& out);

    /// The signed angle from `l2` to `l1` in degrees: positive when `l1` is the steeper one.
    static float calcAngle(KxLine& l1, KxLine& l2);
    /// The signed angle from `other` to this line.
    float calcAngle(KxLine& other);

    /// The perpendicular distance of `p` from the line, never negative.
    static float calcDistanceToPoint(KxLine& l, KxPointXY& p);
    /// The same for this line.
    float calcDistanceToPoint(KxPointXY& p);
};

/// A 2-D circle.
class KXMATH_EXPORT KxCircle {
public:
    float x; ///< x of the centre
    float y; ///< y of the centre
    float radius;

    /// An unknown circle: all fields are NaN.
    KxCircle();
    KxCircle(float x, float y, float radius);
    KxCircle(const KxCircle&) = default;
    KxCircle& operator=(const KxCircle&) = default;

    /// The algebraic least-squares circle through the points (I. Kasa, A circle fitting procedure and its error
    /// analysis, IEEE Trans. Instrum. Meas., 1976), with single-precision sums in stored order: shift points that are far
    /// from the origin towards it first (40 mm about x = y = 500: the radius is 0.8 mm off). The radius is the
    /// root mean square distance of the points from the centre.
    /// @return true when done
    /// @return false, circle unchanged, when the determinant of the normal equations is exactly 0: no point, one
    ///         point, points on one line
    bool calcFromPointCloud(KxPointCloud<KxPointXY>& cloud);
};

/// The plane a * x + b * y + c * z + d = 0; the normal (a, b, c) need not have unit length.
class KXMATH_EXPORT KxPlane {
public:
    float a;
    float b;
    float c;
    float d;

    /// An unknown plane: all fields are NaN.
    KxPlane();
    KxPlane(const KxPlane&) = default;
    KxPlane& operator=(const KxPlane&) = default;

    /// The plane through three points, calculated in double precision. Points on one line give a = b = c = d = 0.
    void calcFromPoints(KxPointXYZ& p1, KxPointXYZ& p2, KxPointXYZ& p3);

    /// The distance of `p` from the plane, never negative; NaN when the normal has length 0.
    static float calcDistance(KxPlane& pl, KxPointXYZ& p);
    /// The same for this plane.
    float calcDistance(KxPointXYZ& p);
};

/// A 2-D direction.
class KXMATH_EXPORT KxFreeVector {
public:
    float x;
    float y;

    /// An unknown vector: both fields are NaN.
    KxFreeVector();
    KxFreeVector(float x, float y);
    KxFreeVector(const KxFreeVector&) = default;
    KxFreeVector& operator=(const KxFreeVector&) = default;

    /// The length of the vector.
    float size();

    /// Scales the vector to the length `len`. A zero vector becomes NaN, and so does any vector when `len` is NaN.
    /// @return true when scaled
    /// @return false, vector unchanged, when `len` is 0 or negative
    bool resize(float len);

    /// Stores the direction of lhs + rhs as a vector of length 1, not the sum itself.
    /// @return true when stored
    /// @return false, vector unchanged, when the sum has length 0
    bool sumVectors(KxFreeVector& lhs, KxFreeVector& rhs);

    /// The unsigned angle between two vectors in degrees, 0 to 180; NaN when one has length 0, and when rounding makes
    /// the cosine of nearly parallel vectors greater than 1.
    static float calcAngleBetweenVectors(KxFreeVector& lhs, KxFreeVector& rhs);
    /// The same for this vector and `other`.
    float calcAngleBetweenVectors(KxFreeVector& other);

    /// The direction in which a profile leaves a point. The walk deliberately starts at the neighbour start + dir of
    /// the point `start` and runs in the direction `dir` to the first point at least `len` away, or to the last point.
    /// A NaN `len` walks to the end of the cloud.
    /// @param cloud the profile
    /// @param start any index; it is checked
    /// @param dir 1 or -1
    /// @param len least length of the walk
    /// @return true when the unit vector was stored
    /// @return false, vector unchanged, for any other `dir`, for `len` of 0 or below, and when start + dir or the
    ///         point after it lies outside the cloud
    bool calcFromPointCloud(KxPointCloud<KxPointXY>& cloud, int start, int dir, float len);
};

} // namespace KxMath
