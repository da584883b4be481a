// The pose of a sensor in the frame of the calibration object.
#pragma once

#include "inspect/calibrate/flankSearch.h"
#include "inspect/fitting/normalEquations.h"

#include <KxInspect/CalibrationObject.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

using Vec3 = Vector<3>;

/// Where the sensor is in the frame of the object, and what is x and y of its profile there. The frame is that of the
/// track for an object that faces a sensor at smaller Y, with its oblique crest at rising Z and its obliqueness above 0,
/// and with crests at Y = 0; x of the profile is read in the direction in which the ridges follow each other. What a
/// profile shows determines this pose, and nothing of how the object stands in the track.
struct ObjectPose {
    /// The values that are fitted: alpha, beta, gamma in radians, then X, Y, Z.
    enum Value { kAlpha, kBeta, kGamma, kX, kY, kZ, kCount };
    Vector<kCount> values{};

    Vec3 alongX() const; ///< direction of x of the profile
    Vec3 alongY() const;
    Vec3 origin() const { return {values[kX], values[kY], values[kZ]}; }
    Vec3 at(const ReadPoint& point) const;
};

/// A pose fitted to the points on the flanks.
struct ObjectFit {
    ObjectPose pose;
    Matrix<ObjectPose::kCount> covariance{}; ///< from the noise of the points, and flanks that deviate by more
    double inflation = 1.0; ///< by how much the latter increase it
    Vector<ObjectPose::kCount> objectDeviations{}; ///< of the values, from the errors of the object
    std::array<double, kFlankCount> flankDeviations{}; ///< standard deviations of the mean distances along Y, mm
    double noise = 0.0; ///< standard deviation of the points along y of the profile, mm
    std::vector<bool> areOutliers; ///< of each point: it lies off its flank by more than noise
    bool hasAllFlanks = false; ///< five points or more on each
    double misfit = 0.0; ///< how far the worst flank deviates from the object beyond its noise, along Y, mm
};

/// The pose from which the flanks have these lines, roughly. Empty where there is none.
std::optional<ObjectPose> poseFromLines(const FlankLines& lines, const CalibrationObject& object);

/// Finds what the errors of an object do to the values of a fit: by how much they change with each of its measures.
void addObjectError(const std::vector<ReadPoint>& points, const CalibrationObject& object, const ObjectError& error,
                    ObjectFit& fit);

/// Fits the pose to all points by least squares along y, without outliers.
/// @param points ordered by x
/// @return empty when a flank has too few points or the fit does not converge
std::optional<ObjectFit> fitObjectPose(const std::vector<ReadPoint>& points, const CalibrationObject& object,
                                       const ObjectPose& start);

} // namespace KxInspect::detail
