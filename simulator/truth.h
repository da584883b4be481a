// The truth about a simulated pass.
#pragma once

#include "simulator/parameters.h"
#include "simulator/recorder.h"
#include "simulator/train.h"

#include <QtCore/QString>

#include <vector>

namespace kxsim {

/// The output of the recorder of a sensor.
struct RecordingTruth {
    QString fileName; ///< without a directory
    int records;
    std::vector<WheelRecords> wheels;
};

/// Writes the truth as JSON. Throws a KxInspect::Error when the file could not be written.
void writeTruth(const QString& fileName, const Parameters& parameters, const Train& train,
                const std::vector<RecordingTruth>& recordings);

/// Writes the measures of each wheel as CSV, a line per wheel. Throws a KxInspect::Error as writeTruth() does.
void writeWheelTruth(const QString& fileName, const Train& train);

} // namespace kxsim
