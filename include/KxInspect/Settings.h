// Settings of a measuring station and of the judgement of treads: values that a file gives or a program fills in.
#pragma once

#include "Export.h"
#include "InputFile.h"
#include "Profile.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// What is known of a key of settings files.
struct SettingKey {
    std::string name; ///< "level_k"
    bool isPerSensor = false; ///< in the sections SENSORn, else before all sections
    bool isWhole = false; ///< holds a whole number
    std::string meaning; ///< a few words
    std::string unit; ///< "mm"; empty for pure numbers
    std::optional<double> byDefault; ///< absent where there is none
    double min = 0.0; ///< the smallest value that has a sense
    double max = 0.0; ///< the largest
    std::string needed; ///< "always", "mode 3", "defects" (for the judgement of treads); empty: never
    std::string settings; ///< which read it: "station", "defects", "both"; empty: other uses of the file
    std::vector<std::string> words = {}; ///< holds one of these; empty: holds a number
};

/// All keys that a settings file may hold for a pass, and those that other uses of the same file read (poses). Values
/// are read and checked by this table. Keys of both kinds of settings stand once.
KXINSPECT_EXPORT const std::vector<SettingKey>& settingKeys();

/// What the file of some settings does not give: a key that is missing, holds no number, or one out of range. That is no
/// error before a call needs the key.
struct SettingFault {
    std::string key; ///< "SENSOR1/level_k"
    std::string reason; ///< for an Error about the key
};

/// How wheels are recognised in the profiles of a sensor.
struct WheelDetection {
    int noiseWindow = 3; ///< points in a window of the noise filter, key wndSize
    int maxJumps = 1; ///< so many steps higher than `maxJump` may be in a window, key higherPoinInWnd
    float maxJump = 1.5f; ///< mm, key maxdY
    int minPoints = 2; ///< a profile with more points below the level line shows a wheel, key minPointsIn
    int maxParts = 1; ///< in mode 3: so many straight parts are removed, key maxCorr (deliberately)
    float maxCorrelation = 0.0f; ///< in mode 3: what counts as straight, key parts (deliberately)
    float maxGap = 10.0f; ///< in mode 3: parts end at wider gaps, mm, key maxDist
};

/// The angles of the pose of a sensor, see docs/calibration.md, degrees.
struct SensorAngles {
    double alpha = 0.0;
    double beta = 0.0;
    double gamma = 0.0;
};

/// The origin of the pose of a sensor in the track frame, mm.
struct SensorOrigin {
    double x = 0.0; ///< along the track
    double y = 0.0; ///< across it, to the left, from its middle
    double z = 0.0; ///< up
};

/// How far the values of a pose may be off, to both sides, with a probability of 95 %: mm and degrees. Their errors are
/// taken to be independent of each other and of those of other sensors.
struct PoseUncertainty {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double alpha = 0.0;
    double beta = 0.0;
    double gamma = 0.0;
};

/// The side of the track whose wheels a sensor sees, in the direction of rising z. Left is where Y of the track frame is
/// positive.
enum class TrackSide { Left, Right };

/// "left", "right".
KXINSPECT_EXPORT const char* textOf(TrackSide side);

/// One sensor of a station. Lines are those of its own frame; one that is absent is not known.
struct SensorSettings {
    int number = 0; ///< n of the keys SENSORn/...
    int serial = 0; ///< serial number, key SN
    std::optional<Line> level; ///< points below it are wheel; keys level_k, level_b
    std::optional<Line> low; ///< in mode 3, points above it only; keys lowlevel_k, lowlevel_b
    std::optional<Line> reference; ///< where a wheel stands at the base distance; keys k2, b2
    WheelDetection detection;
    /// The angles of its pose, for the shape of wheels; absent unless all are there. Keys alpha, beta, gamma.
    std::optional<SensorAngles> angles = {};
    std::optional<SensorOrigin> origin = {}; ///< of its pose; absent unless all of it is there. Keys x, y, z
    std::optional<TrackSide> side = {}; ///< key side
    /// Of its pose; absent unless all of it is there. Keys xUncertainty, yUncertainty and so on.
    std::optional<PoseUncertainty> poseUncertainty = {};

    bool hasPose() const { return angles && origin; }
};

/// A station: its sensors and what they have in common.
struct StationSettings {
    std::string file; ///< where they were read from, as the caller named it; empty when they were filled in
    std::optional<float> baseDistance; ///< between the reference lines of facing sensors, mm; key calibrLines2
    /// The base distance is known within so many mm to both sides, with a probability of 95 %; key baseUncertainty.
    std::optional<float> baseUncertainty;
    int minProfilesInWheel = 5; ///< shorter runs of wheel profiles are no wheel; key minProfsInWheel
    std::vector<SensorSettings> sensors; ///< by their number
    std::vector<SettingFault> faults; ///< of the keys of all sensors
    std::vector<std::string> warnings; ///< of unknown keys, with the nearest known ones; UTF-8
    std::optional<InputFile> source = {}; ///< `file` as it was read; absent when the settings were filled in
};

/// Whether a sensor looks at the wheels from outside of the rails: by its pose it is farther from the middle of the track than
/// the back of a wheel. False for a sensor without a pose.
KXINSPECT_EXPORT bool isOnFieldSide(const SensorSettings& sensor, const StationSettings& settings);

/// When a profile and a wheel count as defective.
struct DefectLimits {
    float maxDeviation = 0.3f; ///< mm; points farther off the curve deviate; key maxDeviation
    int pointsHigher = 5; ///< the most deviating points of a sound profile; key pointsHigher
    int minProfiles = 1; ///< the most defective profiles of a sound wheel; key minimalDefectsProf
    float maxRadiusDeviation = 0.03f; ///< mm; how far the tread may be off a circle about the axle; same key
    int radiusProfiles = 3; ///< in so many successive profiles; same key
    float fromX = -std::numeric_limits<float>::infinity(); ///< points with x outside of the range are left out
    float toX = std::numeric_limits<float>::infinity();
};

/// The lines between which the profiles of one sensor are judged.
struct DefectLines {
    int number = 0; ///< n of the keys SENSORn/...
    int serial = 0; ///< serial number, key SN
    std::optional<Line> high; ///< keys level_k, level_b
    std::optional<Line> low; ///< keys lowLevel_k, lowLevel_b (not those of the wheel detection)
};

/// How treads are judged.
struct DefectSettings {
    std::string file; ///< where they were read from, as the caller named it; empty when they were filled in
    DefectLimits limits;
    std::vector<DefectLines> sensors; ///< by their number
    std::vector<SettingFault> faults; ///< of the keys of all sensors
    std::vector<std::string> warnings; ///< of unknown keys, with the nearest known ones; UTF-8
    std::optional<InputFile> source = {}; ///< `file` as it was read; absent when the settings were filled in
};

/// Reads the settings of a station from an INI file. Keys of sensors that are missing or wrong become `faults`; a
/// sensor whose SN is 0 or missing ends the list of sensors.
/// Throws an Error when there is no such file or when it cannot be read or parsed.
/// @param path see KxInspect.h
KXINSPECT_EXPORT StationSettings readStationSettings(const std::string& path);

/// Reads the settings of the judgement of treads from an INI file, as readStationSettings() does. Throws an Error for a
/// limit that is no number or out of range, too.
KXINSPECT_EXPORT DefectSettings readDefectSettings(const std::string& path);

/// @{ The sensor with a serial number, the first of several; null when there is none.
KXINSPECT_EXPORT const SensorSettings* findSensor(const StationSettings& settings, int serial);
KXINSPECT_EXPORT const DefectLines* findSensor(const DefectSettings& settings, int serial);
/// @}

} // namespace KxInspect
