// The pose of a sensor from profiles of the calibration object. docs/calibration.md draws the object and defines the
// frames, the angles and the placement codes.
#pragma once

#include "CalibrationObject.h"
#include "Export.h"
#include "Interval.h"
#include "Json.h"
#include "Profile.h"
#include "Progress.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// Position and orientation of a sensor in the track frame, as in the record of coordinates but with angles in degrees.
/// Also used for six statistics of these values. NaN where a value is not known.
struct SensorPose {
    double x = std::numeric_limits<double>::quiet_NaN(); ///< mm
    double y = std::numeric_limits<double>::quiet_NaN(); ///< mm
    double z = std::numeric_limits<double>::quiet_NaN(); ///< mm
    double alpha = std::numeric_limits<double>::quiet_NaN(); ///< degrees
    double beta = std::numeric_limits<double>::quiet_NaN(); ///< degrees
    double gamma = std::numeric_limits<double>::quiet_NaN(); ///< degrees
};

/// A value of a pose with its name in settings, JSON and tables.
struct PoseField {
    const char* name;
    double SensorPose::*value;
    bool isAngle; ///< in degrees, otherwise in mm
};

inline constexpr std::array<PoseField, 6> kPoseFields = {{{"x", &SensorPose::x, false},
                                                          {"y", &SensorPose::y, false},
                                                          {"z", &SensorPose::z, false},
                                                          {"alpha", &SensorPose::alpha, true},
                                                          {"beta", &SensorPose::beta, true},
                                                          {"gamma", &SensorPose::gamma, true}}};

/// The points of a profile in the track frame, transformed by a pose in single precision; NaN where the pose is NaN.
KXINSPECT_EXPORT std::vector<Point3> toTrack(const Profile& profile, const SensorPose& pose);

/// What is known before the pose.
struct CalibrationTask {
    int placement = 2; ///< the placement code of the sensor
    CalibrationObject object = calibrationObjectFor(2); ///< as a sensor of that placement sees it
    /// y of the sensor, mm. Placements that do not find y take it from here. For all placements it tells on which side of
    /// the crests the sensor stands; a rough value is enough for that.
    std::optional<float> sensorY = {};
    /// On which side of the crests the sensor stands, where sensorY is not given. One profile does not show it: it looks
    /// the same from a sensor with -beta and -gamma on the other side. Shots of an object that was moved along Y do.
    std::optional<SensorSide> side = {};
    /// Where the oblique crest is seen to be. The placement says it too: above the straight ones, below for mirrored
    /// placements. One profile looks the same to a sensor that is upside down with the object the other way up, so that
    /// a wrong placement may go unnoticed unless this says it again, or the object was moved along Z.
    std::optional<ObliqueCrest> obliqueCrest = {};
    ObjectError objectError = {}; ///< what no profile shows of itself; the intervals contain it

    /// The side as given, by `side` or by sensorY.
    std::optional<SensorSide> givenSide() const {
        if (!side && sensorY) {
            return static_cast<double>(*sensorY) < object.crestY ? SensorSide::SmallerY : SensorSide::LargerY;
        }
        return side;
    }
};

/// The caller's names of the arguments, for the reasons and warnings in results: a program names its options here.
struct CalibrationTerms {
    std::string placement = "placement";
    std::string obliqueness = "obliqueness";
    std::string sensorY = "sensorY";
    std::string crestY = "crestY";
    std::string side = "side";
    std::string moved = "moved";
    std::string obliqueCrest = "obliqueCrest";
};

/// Flanks in the order of Z (of -Z for mirrored placements): 2 * ridge, + 1 behind the crest; ridges 0 to 2 are
/// straight, 3 is the oblique one.
inline constexpr std::size_t kFlankCount = 8;

/// "before crest 1", "behind crest 1" and so on.
KXINSPECT_EXPORT std::string flankName(std::size_t flank);

/// The distances of the points on a flank from the object along Y, in mm; positive behind it, seen from the sensor. NaN
/// for a flank without points, which is not judged either.
struct KXINSPECT_EXPORT FlankResidual {
    int points = 0;
    double mean = std::numeric_limits<double>::quiet_NaN();
    double rms = std::numeric_limits<double>::quiet_NaN();
    double largest = std::numeric_limits<double>::quiet_NaN(); ///< by its absolute value
    double uncertainty = std::numeric_limits<double>::quiet_NaN(); ///< half the width of the 95 % interval of the mean

    /// The flank deviates from the object by more than noise: its mean exceeds 0.02 mm and four standard deviations.
    /// False without points; see isJudged().
    bool isOff() const;
    bool isJudged() const { return points > 0; }
};
using FlankResiduals = std::array<FlankResidual, kFlankCount>;

/// The 95 % interval of the mean of a flank.
inline Interval intervalOf(const FlankResidual& flank) {
    return Interval::around(static_cast<float>(flank.mean), static_cast<float>(flank.uncertainty));
}

/// A point of a profile and its distance from the object.
struct CalibrationPoint {
    Point point = {};
    std::optional<std::size_t> flank = {}; ///< empty for an outlier, and for a point on no flank or too near its ends
    bool isOutlier = false; ///< off its flank by more than the noise of the profile; it does not count
    double residual = std::numeric_limits<double>::quiet_NaN(); ///< along Y, mm; NaN without a flank
};

/// The pose from one profile.
struct ProfilePose {
    std::string name = {}; ///< as the caller gave it
    std::string fault = {}; ///< why there is no pose, the predicate of a sentence about the profile; empty with one
    /// y is NaN when the placement does not find it and the task does not give it.
    SensorPose pose = {};
    /// y by the object, for every placement, mm; NaN without a pose.
    double foundY = std::numeric_limits<double>::quiet_NaN();
    double rms = std::numeric_limits<double>::quiet_NaN(); ///< of the points on all flanks, mm
    /// Standard deviation of the least certain angle, degrees.
    double angleDeviation = std::numeric_limits<double>::quiet_NaN();
    /// Half the width of the 95 % interval of each value, from the noise of the points and CalibrationTask::objectError; of
    /// y, that of foundY.
    SensorPose uncertainty = {};
    SensorPose byObject = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0}; ///< the part of it that the error of the object makes
    int outliers = 0; ///< points that do not count
    std::array<double, 3> moved = {0.0, 0.0, 0.0}; ///< as in NamedProfile
    FlankResiduals flanks = {};
    std::vector<CalibrationPoint> points = {}; ///< the finite points of the profile; without a pose on no flank

    bool hasPose() const { return fault.empty(); }
};

/// A pose with y by the object.
inline SensorPose withFoundY(SensorPose pose, double foundY) {
    pose.y = foundY;
    return pose;
}

/// The 95 % interval of a value of a pose.
inline Interval intervalOf(const SensorPose& pose, const SensorPose& uncertainty, double SensorPose::*value) {
    return Interval::around(static_cast<float>(pose.*value), static_cast<float>(uncertainty.*value));
}

/// The mean of the poses of several profiles; values are NaN when no profile has a pose.
struct PoseAverage {
    int profiles = 0; ///< with a pose
    std::string fault = {}; ///< why the profiles cannot be of one pose, a sentence; empty when they can
    SensorPose pose = {};
    /// @{ Standard deviation of a single profile, and largest difference of a profile from the mean; of y, those of foundY.
    /// NaN for one profile.
    SensorPose deviation = {};
    SensorPose largest = {};
    /// @}
    /// Half the width of the 95 % interval of each value: from the noise of the points, or from the spread of the profiles
    /// where that is certainly larger; of y, that of foundY.
    SensorPose uncertainty = {};
    double foundY = std::numeric_limits<double>::quiet_NaN(); ///< mean y by the object, mm
    /// Largest distance of a point, put back by the pose of its own profile, from where the mean puts it, mm. NaN for one
    /// profile.
    double pointDifference = std::numeric_limits<double>::quiet_NaN();
};

/// The calibration of a sensor from profiles of one pose.
struct CalibrationResult {
    std::string version = {}; ///< of KxMath that measured it
    CalibrationTask task = {};
    std::optional<SensorSide> side =
        {}; ///< where the sensor stands: as given, or as moved shots show; empty without pose
    std::vector<ProfilePose> profiles = {}; ///< in the order of the input
    PoseAverage average = {};
    /// The other pose that explains the profiles as well, where nothing but the placement excludes it: that of an upside-down
    /// sensor, with the oblique crest on the other side of the straight ones. Empty where the task or moves along Z
    /// confirm the placement, and without a pose.
    std::optional<SensorPose> otherPose = {};
    FlankResiduals flanks = {}; ///< of all profiles with a pose
    std::vector<std::string> unreadable = {}; ///< files that the caller could not read, each with the reason
    std::vector<std::string> warnings = {};

    /// True when at least one profile has a pose, and all that have one agree: average.pose is the sensor's.
    bool hasPose() const { return average.profiles > 0 && average.fault.empty(); }
    /// True when the pose has a y, found or given.
    bool hasY() const { return !std::isnan(average.pose.y); }
};

/// Finds the pose for one profile of the object, in any order of its points, by least squares over all points on the
/// flanks, without outliers. A profile without a pose is no error: its result has a fault. Throws an Error (BadArgument)
/// for a pitch or slope that is not above 0, an obliqueness of 0, one of the numbers of the task that is not finite, an objectError below 0, a
/// task that gives neither sensorY nor side, or both where they contradict each other, or an obliqueCrest that contradicts
/// the placement. Without obliqueCrest see CalibrationResult::otherPose.
KXINSPECT_EXPORT ProfilePose measurePose(const Profile& profile, const CalibrationTask& task,
                                         const CalibrationTerms& terms = {});

/// A profile and its name in the result, for example its file.
struct NamedProfile {
    std::string name = {};
    Profile profile = {};
    /// How far the object was moved along X, Y and Z of the track, without turning it, from the place that the task
    /// describes, mm.
    std::array<double, 3> moved = {0.0, 0.0, 0.0};
};

/// Throws the Error (BadArgument) that measurePoses() throws for such a task, before there are profiles.
/// @param moves of the object, for all profiles; empty when it was not moved
KXINSPECT_EXPORT void checkCalibrationTask(const CalibrationTask& task, const std::vector<std::array<double, 3>>& moves,
                                           const CalibrationTerms& terms = {});

/// Why a result has no pose, a sentence. Empty where it has one.
KXINSPECT_EXPORT std::string reasonWithoutPose(const CalibrationResult& result);

/// Finds the pose from profiles that are all of one pose: measurePose() for each, and the mean. Profiles without a pose
/// are left out of the mean and are warned of where they are not the only one: once for each of the three most frequent
/// reasons, with their number, and once for all others. Shots with a moved object show by themselves which way X, Y and Z
/// of the track run, for each axis along which they differ; where that contradicts the placement, the side or the sign of
/// the obliqueness, there is no pose. Throws as measurePose() does; neither sensorY nor side is needed where the moves
/// differ along Y.
KXINSPECT_EXPORT CalibrationResult measurePoses(const std::vector<NamedProfile>& profiles, const CalibrationTask& task,
                                                const Progress& progress = {}, const CalibrationTerms& terms = {});

/// A pose as keys of a settings file: SENSORn/x, y, z in mm, alpha, beta, gamma in degrees, position, and the uncertainties.
struct PoseKeys {
    int sensor = 1; ///< n, from 1 to 49
    SensorPose pose = {}; ///< keys of values that are NaN are not changed
    int placement = 2;
    /// How far the values may be off, to both sides, with 95 %: keys SENSORn/xUncertainty and so on, in mm and degrees. Where
    /// one is NaN, its key is taken away: what it said was of another pose.
    SensorPose uncertainty = {};
};

/// The keys of a mean pose. Of a y that was given nothing is known: its uncertainty is NaN.
KXINSPECT_EXPORT PoseKeys poseKeysOf(const PoseAverage& average, int placement, int sensor);

/// The text of a settings file with the keys set: existing keys are replaced, the others added to their
/// section. Everything else stays as it is, remarks and line ends included. Throws an Error when the text is not UTF-8,
/// is no INI file, or is written so that other keys would change (Unsuitable); for a sensor out of range (BadArgument);
/// when a temporary file, with which the text is checked, cannot be written (Unwritable).
/// @param settings may be empty
/// @param file its name, for the error
KXINSPECT_EXPORT std::string withPose(const std::string& settings, const PoseKeys& keys, const std::string& file = {});

/// The text of a settings file, empty where there is none. Throws an Error (Unreadable) when it cannot be read whole.
/// @param file see KxInspect.h
KXINSPECT_EXPORT std::string readPoseSettings(const std::string& file);

/// Sets the keys of a settings file as withPose() does; it is made where there is none. Those who store poses in one file
/// at once, processes or threads, take turns: meanwhile FILE.lock stands beside it. The lock of a process that died is
/// removed. Throws the errors of readPoseSettings() and withPose(), and Unwritable when the file cannot be written, which
/// then stays as it was, or when another process holds the lock for 10 s.
/// @param progress called while it waits; it may throw to give up
KXINSPECT_EXPORT void storePose(const std::string& file, const PoseKeys& keys, const Progress& progress = {});

/// The result as JSON, with the fields of `kxmath calibrate --json`. With the pictures it also holds the points of the
/// profiles, the y that was given, and why profiles are not of one pose.
KXINSPECT_EXPORT std::string toJson(const CalibrationResult& result, Pictures pictures = Pictures::Left);

/// Reads a result that toJson() wrote. Without the pictures the profiles have no points, and values of a mean that is
/// no pose are NaN. Throws an Error (Damaged) for invalid JSON, and (Unsuitable) with the key for a value
/// that is missing or of another kind.
KXINSPECT_EXPORT CalibrationResult calibrationFromJson(const std::string& json);

} // namespace KxInspect
