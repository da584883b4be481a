// How the laser plane of a sensor lies in the track.
#include "inspect/train/laserPlane.h"

#include <array>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

using Direction = std::array<double, 3>; // along, across to the left, up

/// u and v of docs/calibration.md.
std::array<Direction, 2> axesOf(const SensorAngles& pose) {
    const auto radians = [](double degrees) { return degrees * std::numbers::pi / 180.0; };
    const double sa = std::sin(radians(pose.alpha)), ca = std::cos(radians(pose.alpha));
    const double sb = std::sin(radians(pose.beta)), cb = std::cos(radians(pose.beta));
    const double sc = std::sin(radians(pose.gamma)), cc = std::cos(radians(pose.gamma));
    return {{{sa * cb * cc + sb * sc, sa * sb * cc - sc * cb, ca * cc}, {ca * cb, ca * sb, -sa}}};
}

} // namespace

LaserPlane laserPlaneOf(const SensorSettings& sensor) {
    constexpr double kMostAcross = 0.1; // of the reference line: six degrees
    if (!sensor.angles || !sensor.reference) {
        return {};
    }
    const auto [u, v] = axesOf(*sensor.angles);
    const double slope = static_cast<double>(sensor.reference->slope);
    const double cosine = 1.0 / std::hypot(1.0, slope);
    Direction down; // along the reference line
    Direction across; // square to it, away from the sensor
    for (std::size_t i = 0; i < down.size(); ++i) {
        down[i] = (u[i] + slope * v[i]) * cosine;
        across[i] = (v[i] - slope * u[i]) * cosine;
    }
    if (down[2] > 0.0) {
        for (double& part : down) {
            part = -part;
        }
    }
    if (!(std::abs(down[1]) <= kMostAcross && std::abs(across[1]) > kMostAcross && -down[2] > kMostAcross)) {
        return {}; // NaN, too
    }
    LaserPlane plane;
    plane.acrossPerAcross = std::abs(across[1]);
    plane.downPerAcross = -across[2];
    plane.downPerDown = -down[2];
    plane.shear = down[0] / plane.downPerDown;
    plane.skew = (across[0] - plane.shear * plane.downPerAcross) / plane.acrossPerAcross;
    plane.isKnown = true;
    return plane;
}

} // namespace KxInspect::detail
