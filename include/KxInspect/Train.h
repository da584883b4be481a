// Measuring the pass of a train from the recordings of facing sensors.
#pragma once

#include "Consist.h"
#include "CrossSection.h"
#include "Export.h"
#include "PassResult.h"
#include "Progress.h"
#include "Settings.h"
#include "TaskRunner.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// How a pass is measured.
struct PassOptions {
    int mode = 0; ///< 3: straight parts are removed and wheel points lie above a low line, too; any other: they do not
    std::optional<float> nominal; ///< distance, mm; the base distance when absent
    float tolerance = 3.0f; ///< allowed deviation to both sides, mm, the limit itself included
    std::optional<DefectSettings> defects; ///< treads are judged with them; absent: they are not judged
    std::optional<Consist> consist =
        {}; ///< the vehicles of the train; absent: they are found by the gaps between axles
    std::optional<Limits> limits = {}; ///< values are judged by them; absent: there are no verdicts by limits
    /// The cross-section that wheels should have, as measureWheel() takes it: pictures compare wheels with it. Values do not
    /// depend on it.
    std::optional<CrossSection> contour = {};
    ConsistOrder consistOrder = ConsistOrder::Found; ///< which end of the list passed first
    PassLabels labels = {}; ///< what the result says of where and when the pass was
    std::vector<int> shownPairs; ///< the pairs whose pictures the result holds, from 1 on; those that are there
    /// The result holds the pictures of the pairs with a finding, too: a distance out of tolerance, a defective tread, a
    /// wheel out of round, a value beyond a limit.
    bool areFindingsShown = false;
    /// Where the wheel files are left; made where it is missing. Empty: no files are written.
    /// It then holds a folder for each recording with the files "WW_PP.bin" of profile PP of wheel WW, and where the
    /// wheels of sensor n start, in "starts-n.ini" and "starts-n.csv". Each file appears whole or not at all.
    std::string wheelFolder;
    /// The file in which the chosen profiles of the wheels and their cross-sections are left, see KeptProfiles. It appears
    /// whole or not at all; an older one is replaced. Empty: none is written.
    std::string profileFile = {};
    /// Runs what recordings and wheels are measured with at once. Progress is then called in the threads of the runner, one
    /// call at a time.
    TaskRunner runner = {};
};

/// Finds the wheels in the recordings of two sensors that face each other across the track, pairs them, and measures
/// the distance across each pair; with `options.defects` judges the treads. Where the settings give the sides and poses of
/// sensors, measures each wheel from all profiles of all sensors of its side.
///
/// With more than two recordings the first sensor between the rails on either side gives the distances. One that is missing
/// or damaged is then no error as long as one of these two is whole: PassSide::missing says why it is not there.
///
/// Each recording is read once, from its beginning to its end. Memory follows the profiles of the wheels.
/// Throws an Error for recordings and settings that are missing, damaged or do not fit each other, for options out of
/// range, and for wheel files that cannot be written. A train without wheels is no error.
/// @param recordings two or more files named PREFIX_SERIAL.bin of profile records or 2-D cloud sections. The serial
///        numbers of two are those of SENSOR1 and SENSOR2 in the settings, in either order; others are of sensors with a side
KXINSPECT_EXPORT PassResult measurePass(const std::vector<std::string>& recordings, const StationSettings& settings,
                                        const PassOptions& options = {}, const Progress& progress = {});

/// The recordings in a folder, PREFIX_SERIAL.bin of the sensors that the settings name, in their order. Throws an Error when the
/// folder cannot be read or holds fewer than two.
KXINSPECT_EXPORT std::vector<std::string> recordingsIn(const std::string& folder, const StationSettings& settings);

/// Throws the Error that measurePass() would throw before it reads the first record: to be called before anything is
/// made ready for a pass.
KXINSPECT_EXPORT void checkPass(const std::vector<std::string>& recordings, const StationSettings& settings,
                                const PassOptions& options = {});

} // namespace KxInspect
