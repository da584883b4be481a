// The points of a profile on the flanks of the calibration object.
#include "inspect/calibrate/flankPoints.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

Tangent::Tangent(const ObjectPose& pose) : alongX_(pose.alongX()), alongY_(pose.alongY()) {
    constexpr double kStep = 1e-6;
    for (std::size_t angle = 0; angle < 3; ++angle) {
        ObjectPose up = pose;
        ObjectPose down = pose;
        up.values[angle] += kStep;
        down.values[angle] -= kStep;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            byX_[angle][axis] = (up.alongX()[axis] - down.alongX()[axis]) / (2.0 * kStep);
            byY_[angle][axis] = (up.alongY()[axis] - down.alongY()[axis]) / (2.0 * kStep);
        }
    }
}

Gradient Tangent::gradient(const ReadPoint& point, const FlankPlane& plane) const {
    const auto alongPlane = [&](const Vec3& v) { return v[1] + plane.onX * v[0] + plane.onZ * v[2]; };
    Gradient gradient;
    for (std::size_t angle = 0; angle < 3; ++angle) {
        gradient[angle] = point.x * alongPlane(byX_[angle]) + point.y * alongPlane(byY_[angle]);
    }
    gradient[ObjectPose::kX] = plane.onX;
    gradient[ObjectPose::kY] = 1.0;
    gradient[ObjectPose::kZ] = plane.onZ;
    const double perY = alongPlane(alongY_);
    for (double& value : gradient) {
        value /= perY;
    }
    return gradient;
}

FlankPoints::FlankPoints(const std::vector<ReadPoint>& points, const CalibrationObject& object, double slopeFactor)
    : points_(points), object_(object), distances_(points.size()), flanks_(points.size()), isOutlier_(points.size()) {
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        planes_[flank] = planeOf(object, flank, slopeFactor);
    }
}

void FlankPoints::look(const ObjectPose& pose) {
    const Tangent tangent(pose);
    const Vec3 away = pose.alongY();
    std::vector<double> sizes;
    isInside_.assign(points_.size(), false);
    for (std::size_t i = 0; i < points_.size(); ++i) {
        Vec3 p = pose.at(points_[i]);
        flanks_[i] = flankAt(object_, p[0], p[2], 0.0);
        if (!flanks_[i]) {
            continue;
        }
        const FlankPlane& plane = planes_[*flanks_[i]];
        distances_[i] = plane.distance(p[0], p[1], p[2]) / tangent.perY(plane);
        // Where the point would be without noise decides: what the noise chose would be biased.
        for (std::size_t axis = 0; axis < 3; ++axis) {
            p[axis] -= distances_[i] * away[axis];
        }
        if (flankAt(object_, p[0], p[2]) == flanks_[i]) {
            sizes.push_back(std::abs(distances_[i]));
            isInside_[i] = true;
        }
    }
    const double limit = outlierLimit(std::move(sizes));
    for (std::size_t i = 0; i < points_.size(); ++i) {
        isOutlier_[i] = flanks_[i] && !(std::abs(distances_[i]) <= limit); // NaN: an outlier
        if (!isInside_[i] || isOutlier_[i]) {
            flanks_[i].reset();
        }
    }
}

} // namespace KxInspect::detail
