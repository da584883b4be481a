// What kxmath calibrate found, and how it is told.
#pragma once

#include "inspect/calibrate/poseAverage.h"

#include <QtCore/QStringList>

namespace kxtool {

struct CalibrationResult {
    CalibrationTask task;
    std::vector<PoseMeasurement> measurements;
    PoseAverage average;
    QStringList unreadable; ///< files, each with what is wrong with it
    QStringList warnings;

    bool hasPose() const { return average.profiles > 0 && average.fault.isEmpty(); }
    bool hasY() const { return task.findsY() || task.sensorY.has_value(); }
};

/// The tables for the standard output.
QString calibrationText(const CalibrationResult& result);

QString calibrationJson(const CalibrationResult& result);

/// A self-contained HTML page: the pose, what is to be thought of it, the profile and its residuals.
QString calibrationReport(const CalibrationResult& result);

} // namespace kxtool
