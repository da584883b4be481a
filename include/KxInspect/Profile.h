// Points, lines and profiles: plain values.
#pragma once

#include <limits>
#include <vector>

namespace KxInspect {

/// A point of a profile in the frame of its sensor, mm: x along the laser line, y along the beam. NaN where a value is
/// missing.
struct Point {
    float x = std::numeric_limits<float>::quiet_NaN();
    float y = std::numeric_limits<float>::quiet_NaN();

    bool operator==(const Point& other) const { return x == other.x && y == other.y; } ///< NaN equals nothing
};

/// A point in space, mm.
struct Point3 {
    float x = std::numeric_limits<float>::quiet_NaN();
    float y = std::numeric_limits<float>::quiet_NaN();
    float z = std::numeric_limits<float>::quiet_NaN();

    bool operator==(const Point3& other) const { return x == other.x && y == other.y && z == other.z; }
};

/// The line y = slope x + intercept.
struct Line {
    float slope = 0.0f;
    float intercept = 0.0f; ///< mm

    bool operator==(const Line& other) const { return slope == other.slope && intercept == other.intercept; }
};

/// The points that a sensor measures at once, in the order of the sensor.
struct Profile {
    std::vector<Point> points;
    float z = std::numeric_limits<float>::quiet_NaN(); ///< where along the scan it was taken, mm; NaN: not known
};

} // namespace KxInspect
