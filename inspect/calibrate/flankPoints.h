// The points of a profile on the flanks of the calibration object, and how their distances change with the pose.
#pragma once

#include "inspect/calibrate/objectPose.h"
#include "inspect/calibrate/objectSurface.h"

namespace KxInspect::detail {

using Gradient = Vector<ObjectPose::kCount>;

/// A pose with the derivatives of its directions by the angles.
class Tangent {
public:
    explicit Tangent(const ObjectPose& pose);

    /// How the distance along y of a point from a plane changes with the values of the pose.
    Gradient gradient(const ReadPoint& point, const FlankPlane& plane) const;

    /// How the distance along Y changes with y.
    double perY(const FlankPlane& plane) const { return alongY_[1] + plane.onX * alongY_[0] + plane.onZ * alongY_[2]; }

private:
    Vec3 alongX_;
    Vec3 alongY_;
    Vec3 byX_[3]{};
    Vec3 byY_[3]{};
};

/// The points on flanks with their distances from them.
class FlankPoints {
public:
    /// @param points,object must outlive this
    FlankPoints(const std::vector<ReadPoint>& points, const CalibrationObject& object, double slopeFactor);

    /// Finds the flanks of all points and which of them are outliers.
    void look(const ObjectPose& pose);

    /// Calls `use` for each point on a flank with the point moved onto the flank, the flank, and the distance of the
    /// point from it along y. Gradients at the points as measured would hold their noise and give a bias.
    template <typename Use>
    void forEach(Use use) const {
        for (std::size_t i = 0; i < points_.size(); ++i) {
            if (flanks_[i]) {
                use(ReadPoint{points_[i].x, points_[i].y - distances_[i]}, *flanks_[i], distances_[i]);
            }
        }
    }

    const FlankPlane& plane(std::size_t flank) const { return planes_[flank]; }
    const std::vector<bool>& areOutliers() const { return isOutlier_; }

private:
    const std::vector<ReadPoint>& points_;
    const CalibrationObject& object_;
    FlankPlane planes_[kFlankCount];
    std::vector<double> distances_;
    std::vector<std::optional<std::size_t>> flanks_;
    std::vector<bool> isInside_; ///< off crests and valleys
    std::vector<bool> isOutlier_;
};

} // namespace KxInspect::detail
