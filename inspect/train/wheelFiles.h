// The files that show what detection has found in a recording.
#pragma once

#include "inspect/recordings/recordingName.h"
#include "inspect/train/wheelCollector.h"

namespace KxInspect::detail {

/// Writes the profiles of the wheels as "NAME/WW_PP.bin" into a folder, which is made where it is missing, and where
/// the wheels start as "starts-SENSOR.ini" and "starts-SENSOR.csv": the bytes that METRO_detectWheels_Test() leaves.
/// Files that are there already are replaced, others stay. Throws an Error when something cannot be written.
void writeWheelFiles(const QString& folder, const RecordingFiles& recording, int sensor, const WheelCollector& found);

} // namespace KxInspect::detail
