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

/// How a turned point moves with the parameters of its axle.
struct TurnedGradient {
    Axle::Parameters across;
    Axle::Parameters radius;
};

/// Turns points about an axle.
class Turning {
public:
    explicit Turning(const Axle& axle) : axle_(axle), sine_(std::sin(axle.yaw)), cosine_(std::cos(axle.yaw)) {}

    TurnedPoint turned(const TrackPoint& p) const {
        const double dx = p.along - axle_.along;
        const double dy = p.across - axle_.pivot;
        const double x = cosine_ * dx - sine_ * dy;
        const double z = p.up - axle_.up;
        return {axle_.pivot + cosine_ * dy + sine_ * dx, std::sqrt(x * x + z * z)};
    }

    TurnedGradient gradient(const TrackPoint& p) const {
        const double dx = p.along - axle_.along;
        const double dy = p.across - axle_.pivot;
        const double x = cosine_ * dx - sine_ * dy;
        const double z = p.up - axle_.up;
        const double r = std::sqrt(x * x + z * z);
        return {{-sine_, 0.0, -sine_ * dy + cosine_ * dx},
                {-cosine_ * x / r, -z / r, x * (-sine_ * dx - cosine_ * dy) / r}};
    }

private:
    Axle axle_;
    double sine_;
    double cosine_;
};

} // namespace KxInspect::detail
