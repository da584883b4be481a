// The pose of a sensor from the ridges of the calibration object.
#pragma once

#include "KxMath/KxPlacement.h"

#include "railway/calibration/calibrationObject.h"
#include "railway/calibration/ridgeFit.h"

namespace KxMath::detail {

/// Angles in radians. Of a mirrored sensor it is the pose of its mirror image, with alpha and gamma not yet folded.
struct SensorPose {
    double alpha;
    double beta;
    double gamma;
    double x;
    double y;
    double z;
};

/// A pose and how well it is determined.
struct PoseFit {
    SensorPose pose;
    bool isGood; ///< neither too uncertain nor in contradiction to the object
    double residual; ///< root mean square distance of the points on the flanks from the object, along Y
    double angleDeviation; ///< largest standard deviation of an angle
};

/// Finds the pose from which the ridges are seen as fitted.
PoseFit fitPose(const RidgeFit& fit, const CalibrationObject& object, const KxPlacement& placement);

} // namespace KxMath::detail
