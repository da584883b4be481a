// The three point types: plain values of 32-bit floats; a quiet NaN marks a missing value.
#pragma once

#include "KxMathExport.h"

#include <QtCore/qtypeinfo.h>

#include <limits>

// With -ffast-math or -ffinite-math-only a compiler may take any test for NaN in the program for false. The library
// itself is compiled without, but the program that looks at its results is not. This is an error under -Werror, on
// purpose: no test of such a program would find out. One that does without NaN defines KXMATH_ALLOW_FAST_MATH and keeps
// its -Werror.
#if defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ && !defined(KXMATH_ALLOW_FAST_MATH)
#warning "KxMath marks missing values with NaN, which -ffast-math breaks; see KxPoints.h"
#endif

namespace KxMath {

/// A point of a profile or of a 2-D cloud. Units are the caller's; sensors give millimetres.
///
/// No member function of the point types works on a const point.
class KXMATH_EXPORT KxPointXY {
public:
    float x; ///< position along the laser line
    float y; ///< measured height or distance

    /// A missing point: both coordinates are quiet NaN.
    KxPointXY() : x(std::numeric_limits<float>::quiet_NaN()), y(std::numeric_limits<float>::quiet_NaN()) {}
    KxPointXY(float xValue, float yValue) : x(xValue), y(yValue) {}
    KxPointXY(const KxPointXY&) = default;

    /// Copies both fields. Deliberately returns nothing, so that assignments of points cannot be chained.
    void operator=(const KxPointXY& other) {
        x = other.x;
        y = other.y;
    }

    /// True when x or y is NaN. Infinities and (0, 0) are ordinary points.
    bool isNull();

    /// The Euclidean distance from `a` to `b` in single precision. A NaN coordinate makes it NaN.
    static float calcDistance(KxPointXY a, KxPointXY b);
    /// The Euclidean distance from this point to `p`.
    float calcDistance(KxPointXY p);
};

/// A point in space.
class KXMATH_EXPORT KxPointXYZ {
public:
    float x; ///< position along the laser line
    float y; ///< measured height or distance
    float z; ///< position along the scan axis

    /// A missing point: all coordinates are quiet NaN.
    KxPointXYZ()
        : x(std::numeric_limits<float>::quiet_NaN()), y(std::numeric_limits<float>::quiet_NaN()),
          z(std::numeric_limits<float>::quiet_NaN()) {}
    KxPointXYZ(float xValue, float yValue, float zValue) : x(xValue), y(yValue), z(zValue) {}
    KxPointXYZ(const KxPointXYZ&) = default;
    KxPointXYZ& operator=(const KxPointXYZ&) = default;

    /// The Euclidean distance from `a` to `b` in single precision. A NaN coordinate makes it NaN.
    static float calcDistance(KxPointXYZ a, KxPointXYZ b);
    /// The Euclidean distance from this point to `p`.
    float calcDistance(KxPointXYZ p);
};

/// A point in space with a packed colour, which the library copies and stores but never interprets.
class KXMATH_EXPORT KxPointXYZRGB {
public:
    float x;
    float y;
    float z;
    unsigned int rgb; ///< colour, in the caller's format

    /// A missing point: all coordinates are quiet NaN, the colour is 0.
    KxPointXYZRGB()
        : x(std::numeric_limits<float>::quiet_NaN()), y(std::numeric_limits<float>::quiet_NaN()),
          z(std::numeric_limits<float>::quiet_NaN()), rgb(0) {}
    KxPointXYZRGB(float xValue, float yValue, float zValue, unsigned int rgbValue)
        : x(xValue), y(yValue), z(zValue), rgb(rgbValue) {}
    KxPointXYZRGB(const KxPointXYZRGB&) = default;
    KxPointXYZRGB& operator=(const KxPointXYZRGB&) = default;
};

static_assert(sizeof(KxPointXY) == 8);
static_assert(sizeof(KxPointXYZ) == 12);
static_assert(sizeof(KxPointXYZRGB) == 16);

} // namespace KxMath

// The assignment of KxPointXY keeps it from being trivially copyable in the language's sense;
// its bytes may be moved all the same.
Q_DECLARE_TYPEINFO(KxMath::KxPointXY, Q_RELOCATABLE_TYPE);
Q_DECLARE_TYPEINFO(KxMath::KxPointXYZ, Q_PRIMITIVE_TYPE);
Q_DECLARE_TYPEINFO(KxMath::KxPointXYZRGB, Q_PRIMITIVE_TYPE);
