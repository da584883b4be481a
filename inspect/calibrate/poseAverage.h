// The mean of poses that several profiles of one pose gave.
#pragma once

#include "inspect/calibrate/poseMeasurement.h"

namespace kxtool {

struct PoseAverage {
    int profiles = 0;
    PoseValues pose{};
    PoseValues deviation{}; ///< standard deviation of a single profile; NaN for one profile
    PoseValues largest{}; ///< largest difference of a profile from the mean
    double foundY = 0.0; ///< mean y by the object
    double pointDifference =
        0.0; ///< largest distance of a point, put back by its own pose, from where the mean puts it
    QString fault; ///< why the profiles cannot be from one pose
};

/// Averages the poses that were found.
PoseAverage averagePoses(const std::vector<PoseMeasurement>& measurements);

} // namespace kxtool
