// The recordings and settings of a pass, checked against each other before anything is read.
#pragma once

#include "inspect/recordings/recordStream.h"
#include "inspect/recordings/recordingName.h"
#include "inspect/train/laserPlane.h"

#include <KxInspect/Train.h>
#include <KxMath/KxWheelDetection.h>

#include <memory>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The lines between which a tread is judged.
struct TreadLines {
    KxMath::KxLine high;
    KxMath::KxLine low;
};

/// One side of the track.
struct SideInput {
    std::string path;
    RecordingFiles name;
    std::unique_ptr<RecordStream> stream; ///< at its beginning; null without a recording
    int sensor = 0;
    KxMath::KxWheelDetectionSettings detection;
    KxMath::KxLine reference;
    std::optional<TreadLines> tread; ///< set when defects are looked for
    LaserPlane plane = {};
    std::string missing = {}; ///< why there is no recording, a clause; empty with one
};

struct PassInputs {
    std::vector<SideInput> sides; ///< the two that face each other
    std::vector<SideInput> further = {}; ///< of other sensors
    bool isOfSeveral = false; ///< sensors, of which some may fail
    float baseDistance = 0.0f;
};

/// Opens a recording, nothing looked up. Throws an Error when it cannot be read or its name holds no serial number.
SideInput openSide(const std::string& path);

/// Opens a recording and looks up what the settings say of its sensor. Throws an Error as openPass() does.
SideInput openSide(const std::string& path, const StationSettings& settings, int mode);

/// Throws an Error for recordings of one name or of one sensor.
void checkSidesDiffer(const SideInput& first, const SideInput& second);

/// Opens the recordings and looks up what the settings say of them. Throws an Error when something is missing, wrong or
/// does not fit.
PassInputs openPass(const std::vector<std::string>& recordings, const StationSettings& settings,
                    const PassOptions& options);

} // namespace KxInspect::detail
