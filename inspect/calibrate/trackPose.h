// From the pose in the frame of the calibration object to that in the track.
#pragma once

#include "inspect/calibrate/objectPose.h"

#include <KxInspect/Calibration.h>

#include <QtCore/QString>

#include <array>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// What a profile shows of the object.
struct Sighting {
    std::optional<ObjectFit> fit; ///< empty without one that is good
    bool isReversed = false; ///< the ridges follow each other in the direction of -x
    QString fault; ///< why there is no good one
    std::array<double, 3> moved{};
    std::vector<std::size_t> order; ///< of the points of the fit, their places among the finite ones of the profile
};

/// Half the width of the 95 % interval of a value of a fit, angles in degrees.
/// @param value an ObjectPose::Value
double halfWidthOf(const ObjectFit& fit, std::size_t value);

/// Which way the axes of the track run along those of the object: 1 or -1 for X, Y and Z.
using AxisSigns = std::array<int, 3>;

/// What shots with a moved object show of them; 0 for an axis along which the object was not moved far enough.
AxisSigns signsByMoves(const std::vector<Sighting>& sightings);

/// What is taken to be known of the axes: by the moves where they show it, otherwise by the task.
struct Axes {
    AxisSigns signs{};
    AxisSigns byMoves{};
    QString fault; ///< a contradiction between the two, or a side that is not known; the predicate of a sentence
};

Axes axesOf(const std::vector<Sighting>& sightings, const CalibrationTask& task, const CalibrationTerms& terms);

/// Half the widths of the 95 % intervals of the pose in the track. Axes that run the other way do not change them.
SensorPose uncertaintyOf(const ObjectFit& fit);

/// What of them the errors of the object make.
SensorPose uncertaintyByObject(const ObjectFit& fit);

/// The pose in the track, with the angles as the placement writes them.
SensorPose trackPose(const Sighting& sighting, const AxisSigns& signs, const CalibrationTask& task);

/// "above" or "below".
QString placeName(ObliqueCrest place);

/// The pose of the sensor that sees the same of the object mirrored in Z about the height of its middle straight crest.
SensorPose upsideDown(const SensorPose& pose, double crestZ);

/// Why a pose cannot be that of a sensor with the placement of the task, the predicate of a sentence; empty when it can.
QString placementFault(const Sighting& sighting, const Axes& axes, const CalibrationTask& task,
                       const CalibrationTerms& terms);

} // namespace KxInspect::detail
