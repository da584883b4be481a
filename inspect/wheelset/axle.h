// The axle of a wheel and what is turned about it.
#pragma once

#include "inspect/wheelset/trackPoints.h"

#include <array>
#include <cmath>

namespace KxInspect::detail {

/// How a wheel stands. Parameters as one vector, for least squares.
struct Axle {
    static constexpr std::size_t kParameters = 3;
    using Parameters = std::array<double, kParameters>;

    double along = 0.0; ///< of the axle at `pivot`, mm
    double up = 0.0; ///< mm
    double yaw = 0.0; ///< rad, positive when the axle runs forward outwards
    double pivot = 0.0; ///< across: where yaw leaves the axle in its place

    Axle movedBy(const Parameters& d) const { return {along + d[0], up + d[1], yaw + d[2], pivot}; }
};

/// A point of a wheel turned about its axle into one plane: the cross-section of the wheel.
struct TurnedPoint {
    double across; ///< along the axle, as TrackPoint::across
    double radius; ///< from the axle
};

inline TurnedPoint turned(const Axle& axle, const TrackPoint& p) {
    const double s = std::sin(axle.yaw), c = std::cos(axle.yaw);
    const double dx = p.along - axle.along;
    const double dy = p.across - axle.pivot;
    return {axle.pivot + c * dy + s * dx, std::hypot(c * dx - s * dy, p.up - axle.up)};
}

/// How a turned point moves with the parameters of its axle.
struct TurnedGradient {
    Axle::Parameters across;
    Axle::Parameters radius;
};

inline TurnedGradient gradientOf(const Axle& axle, const TrackPoint& p) {
    const double s = std::sin(axle.yaw), c = std::cos(axle.yaw);
    const double dx = p.along - axle.along;
    const double dy = p.across - axle.pivot;
    const double x = c * dx - s * dy;
    const double z = p.up - axle.up;
    const double r = std::hypot(x, z);
    return {{-s, 0.0, -s * dy + c * dx}, {-c * x / r, -z / r, x * (-s * dx - c * dy) / r}};
}

} // namespace KxInspect::detail
