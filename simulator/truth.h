// The truth about a simulated pass.
#pragma once

#include "simulator/parameters.h"
#include "simulator/recorder.h"
#include "simulator/train.h"

#include <QtCore/QString>

#include <array>

namespace kxsim {

/// The output of the recorder of a sensor.
struct RecordingTruth {
    QString fileName; ///< without a directory
    int records;
    std::vector<WheelRecords> wheels;
};

/// Writes the truth as JSON. Throws a KxInspect::Error when the file could not be written.
void writeTruth(const QString& fileName, const Parameters& parameters, const Train& train,
                const std::array<RecordingTruth, 2>& recordings);

} // namespace kxsim
