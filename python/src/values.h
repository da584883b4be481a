// What objects of Python hold: lists of points. A cached range and an index, which the library's classes keep beside
// them, are made where a call needs them, so that nothing here can be out of date.
#pragma once

#include "arguments.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfile.h>

#include <QtCore/QList>

#include <bit>

namespace kxpython {

struct Profile {
    using Point = KxMath::KxPointXY;
    static constexpr const char* kName = "Profile";

    QList<Point> points;
    float z = kNaN; ///< position along the scan, mm; NaN: not known
};

struct Cloud {
    using Point = KxMath::KxPointXYZ;
    static constexpr const char* kName = "Cloud";

    QList<Point> points;
};

struct ColourCloud {
    using Point = KxMath::KxPointXYZRGB;
    static constexpr const char* kName = "ColourCloud";

    QList<Point> points;
};

/// A circle, and how far the points that it was fitted to are off it.
struct Circle {
    float x = kNaN;
    float y = kNaN;
    float radius = kNaN;
    float rms = kNaN; ///< root mean square, mm; NaN for a circle that was not fitted
};

/// The object of the library that a value stands for; it shares the points.
template <typename Value>
auto libraryObject(const Value& value) {
    if constexpr (std::is_same_v<Value, Profile>) {
        KxMath::KxProfile object;
        object.points = value.points;
        return object;
    } else {
        KxMath::KxPointCloud<typename Value::Point> object;
        object.points = value.points;
        return object;
    }
}

/// A value with other points: a position stays.
template <typename Value>
Value withPoints(const Value& value, QList<typename Value::Point> points) {
    Value result(value);
    result.points = std::move(points);
    return result;
}

/// What a call of the library makes of a value, whose own points stay as they are.
template <typename Value, typename Work>
Value changed(const Value& value, Work work) {
    auto object = libraryObject(value);
    unlocked(value.points.size(), [&] { work(object); });
    return withPoints(value, object.points);
}

/// What a call of the library finds in a value.
template <typename Value, typename Work>
auto found(const Value& value, Work work) {
    auto object = libraryObject(value);
    return unlocked(value.points.size(), [&] { return work(object); });
}

/// A profile as the library returned it.
inline Profile profileOf(const KxMath::KxPointCloud<KxMath::KxPointXY>& object) {
    return {object.points, kNaN};
}

/// The points of a value without those that `isLeftOut` holds for.
template <typename Value, typename Condition>
Value without(const Value& value, Condition isLeftOut) {
    QList<typename Value::Point> points;
    for (const typename Value::Point& point : value.points) {
        if (!isLeftOut(point)) {
            points.append(point);
        }
    }
    return withPoints(value, std::move(points));
}

} // namespace kxpython
