// Obstacles besides wheels.
#include "simulator/bodies.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kxsim {

double hitBox(const Box& box, const Ray& ray, double end) {
    double enter = 0.0;
    double leave = end;
    for (double Vec3::*const axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        const double origin = ray.origin.*axis;
        const double direction = ray.direction.*axis;
        if (direction == 0.0) {
            if (origin < box.low.*axis || origin > box.high.*axis) {
                return end;
            }
            continue;
        }
        double near = (box.low.*axis - origin) / direction;
        double far = (box.high.*axis - origin) / direction;
        if (near > far) {
            std::swap(near, far);
        }
        enter = std::max(enter, near);
        leave = std::min(leave, far);
    }
    return enter < leave ? enter : end;
}

double hitTrackBody(const TrackBody& body, const Ray& ray, double end) {
    for (std::size_t i = 0; i + 1 < body.size(); ++i) {
        const Vec3& a = body[i];
        const double dy = body[i + 1].y - a.y;
        const double dz = body[i + 1].z - a.z;
        const double determinant = ray.direction.y * dz - ray.direction.z * dy;
        if (determinant == 0.0) {
            continue;
        }
        const double oy = a.y - ray.origin.y;
        const double oz = a.z - ray.origin.z;
        const double t = (oy * dz - oz * dy) / determinant;
        const double along = (oy * ray.direction.z - oz * ray.direction.y) / determinant;
        if (t > 0.0 && t < end && along >= 0.0 && along <= 1.0) {
            end = t;
        }
    }
    return end;
}

TrackBody makeRailHead(double gauge, int side) {
    // The head of rail profile 60E1 (EN 13674-1), coarsely: the gauge is measured 14 mm below the top.
    constexpr double kHeadWidth = 72.0;
    constexpr double kCornerRadius = 13.0;
    constexpr double kHeadHeight = 37.0;
    constexpr int kCornerSteps = 8;
    const double inner = gauge / 2.0;
    TrackBody head = {{0.0, side * inner, -kHeadHeight}};
    for (int i = 0; i <= kCornerSteps; ++i) {
        const double angle = i * std::numbers::pi / 2.0 / kCornerSteps;
        head.push_back(
            {0.0, side * (inner + kCornerRadius * (1.0 - std::cos(angle))), -kCornerRadius * (1.0 - std::sin(angle))});
    }
    head.push_back({0.0, side * (inner + kHeadWidth - kCornerRadius), 0.0});
    head.push_back({0.0, side * (inner + kHeadWidth), -kCornerRadius});
    head.push_back({0.0, side * (inner + kHeadWidth), -kHeadHeight});
    return head;
}

} // namespace kxsim
