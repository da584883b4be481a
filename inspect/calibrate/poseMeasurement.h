// The pose of a sensor from one profile of the calibration object, and how well the flanks fit.
#pragma once

#include "simulator/calibrationObject.h"

#include <KxMath/KxMetro.h>

#include <QtCore/QString>

#include <array>
#include <optional>
#include <vector>

namespace kxtool {

/// What is known beforehand.
struct CalibrationTask {
    int placement = 2;
    kxsim::CalibrationObject object;
    std::optional<float> sensorY; ///< y of the sensor

    /// True for the placements with which the calibration finds y.
    bool findsY() const { return placement == 2 || placement == 4 || placement == 5; }
};

/// The values of a pose for people and files: x, y, z in mm, alpha, beta, gamma in degrees.
inline constexpr std::array kPoseNames = {"x", "y", "z", "alpha", "beta", "gamma"};
inline constexpr size_t kFirstAngle = 3;
using PoseValues = std::array<double, kPoseNames.size()>;

/// Flanks in the order of the profile: 2 * ridge, + 1 behind the crest; ridges 0 to 2 are straight, 3 is oblique.
inline constexpr int kFlankCount = 8;
QString flankName(int flank);

/// The distances of the points on a flank from the object along Y, in mm; positive behind it, seen from the sensor.
struct FlankResidual {
    int points = 0;
    double mean = 0.0;
    double rms = 0.0;
    double largest = 0.0; ///< by its absolute value

    /// The flank lies off the object by more than noise explains.
    bool isOff() const;
};

struct MeasuredPoint {
    KxMath::KxPointXY point;
    int flank; ///< -1 on none, or too near to a crest or valley to tell
    double residual;
};

struct PoseMeasurement {
    QString name; ///< of the file, with the number of the profile where it holds several
    QString fault; ///< why there is no pose; then only the points below count
    PoseValues pose{};
    double foundY = 0.0; ///< y by the object, for every placement
    double rms = 0.0; ///< of the points on all flanks
    double angleDeviation = 0.0; ///< standard deviation of the least certain angle, degrees
    std::array<FlankResidual, kFlankCount> flanks;
    std::vector<MeasuredPoint> points;
};

/// Finds the pose for the points of a profile.
PoseMeasurement measurePose(const QList<KxMath::KxPointXY>& profile, const CalibrationTask& task);

/// Where a pose puts the points of a profile.
KxMath::KxPointCloud<KxMath::KxPointXYZ> toTrack(const std::vector<MeasuredPoint>& points, const PoseValues& pose);

/// The residuals of several profiles together.
std::array<FlankResidual, kFlankCount> pooled(const std::vector<PoseMeasurement>& measurements);

} // namespace kxtool
