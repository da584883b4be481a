// One pass of a train: what was found in the recordings of two facing sensors.
#pragma once

#include "inspect/recordings/recordingFile.h"
#include "inspect/settings/sensorSettings.h"
#include "inspect/train/pairing.h"
#include "inspect/train/wheelDefects.h"
#include "inspect/train/wheelRoundness.h"
#include "tools/kxmath/console/console.h"

#include <KxMath/KxProfile.h>

#include <QtCore/QStringList>

#include <array>
#include <optional>
#include <vector>

namespace kxtool {

/// A wheel in one recording.
struct Wheel {
    int number = 0; ///< from 1 on, as in the names of its files
    int profiles = 0;
    int firstRecord = 0; ///< from 1 on
    int chosenProfile = 0; ///< the one with the most points below the level line, 0 when none has any
    int pointsBelowLevel = 0; ///< of the chosen profile
    std::optional<WheelDefects> defects; ///< nothing when they were not looked for
    std::optional<WheelRoundness> roundness; ///< as the line above

    int lastRecord() const { return firstRecord + profiles - 1; }
};

/// One side of the track.
struct Side {
    RecordingFile recording;
    Sensor sensor;
    std::vector<Wheel> wheels;
};

struct Tolerance {
    float nominal = 0.0f; ///< mm
    float allowed = 0.0f; ///< mm to both sides, the limit itself included

    bool holds(float distance) const;
};

/// A wheel pair with the distance across it.
struct MeasuredPair {
    WheelPair wheels;
    float distance = 0.0f; ///< mm, NaN when there is none
};

struct Pass {
    int mode = 0;
    QString settingsName;
    QString folder; ///< where the wheel files are, absolute
    std::array<Side, 2> sides;
    float baseDistance = 0.0f;
    Tolerance tolerance;
    std::optional<DefectSettings> defectSettings; ///< set when defects were looked for
    std::vector<MeasuredPair> pairs; ///< in order along the train
    QStringList warnings;

    /// The wheel of one side of a pair, null when that sensor did not see it.
    const Wheel* wheelOf(const MeasuredPair& pair, size_t side) const;
    int distances() const; ///< how many pairs have one
    int defectiveWheels() const; ///< by single profiles
    int wheelsOutOfRound() const;
};

/// Detects the wheels in both recordings, which are in the current directory, and measures the pairs.
/// Throws a CommandError when the library refuses or when wheel files are missing or cut short.
Pass measurePass(const std::array<RecordingFile, 2>& recordings, TrainSettings& settings, int mode, Progress& progress);

/// Judges the treads of all wheels of a measured pass.
void judgeDefects(Pass& pass, const DefectSettings& settings, Progress& progress);

/// Reads a profile of a wheel from the folder of the pass, as detection has cleaned it.
void readWheelProfile(const Pass& pass, size_t side, int wheel, int profile, KxMath::KxProfile& result);

} // namespace kxtool
