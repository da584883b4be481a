// Setting up a station: its settings from recordings of wheel pairs with known distances.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "Progress.h"
#include "Settings.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// A pass of a train whose distances were measured by other means.
struct KnownPass {
    std::vector<std::string> recordings; ///< two files PREFIX_SERIAL.bin of facing sensors, UTF-8
    std::vector<double>
        distances; ///< back-to-back, of all wheel pairs in the order of the pass, 100 to 10000 mm; NaN: not known
};

struct FitOptions {
    /// Settings whose filter of noise is kept, by serial numbers; the defaults without.
    std::optional<StationSettings> settings;
    bool withTreads = false; ///< finds the lines for the judgement of treads, too
    double maxResidual = 1.0; ///< what a measured distance may differ from the known one, mm
};

/// A wheel of a pass.
struct FittedWheel {
    int pass = 0; ///< from 1
    int number = 0; ///< in its recording, from 1
    int firstRecord = 0; ///< that shows its back face, from 1
    int lastRecord = 0;
    double offset = 0.0; ///< of its back face from the reference line, mm
    double degrees = 0.0; ///< of its back face to the reference line
};

/// What was found for a sensor. What is absent was not found, see StationFit::fault.
struct FittedSensor {
    int number = 0; ///< n of its keys SENSORn/...
    int serial = 0;
    std::vector<std::string> files; ///< its recordings, in the order of the passes
    std::vector<FittedWheel> wheels;
    std::optional<Line> reference;
    std::optional<Line> level;
    std::optional<Line> low;
    std::optional<Line> treadHigh; ///< for the judgement of treads
    std::optional<Line> treadLow;
    double noise = std::numeric_limits<double>::quiet_NaN(); ///< of points about straight pieces, rms, mm
    double margin = std::numeric_limits<double>::quiet_NaN(); ///< of the level line beyond the farthest back face, mm
    double fromMargin = std::numeric_limits<double>::quiet_NaN(); ///< margins that measure all wheels alike, mm
    double toMargin = std::numeric_limits<double>::quiet_NaN();
    double turn = 0.0; ///< of the level line to the reference line, degrees
    /// The largest difference of the offset of a wheel, measured as in a pass, from that of its whole back face, mm.
    double deviation = std::numeric_limits<double>::quiet_NaN();
    WheelDetection detection; ///< minPoints and, where points are sparse, maxJump are fitted
    int records = 0; ///< of all its recordings
    int shortestWheel = 0; ///< records below the level line, of the wheel with the fewest
    int longestOther = 0; ///< of the longest run of records that is no wheel
    int profiles = 0; ///< number of profiles in `points`, evenly spread over its recordings
    std::vector<Point> points; ///< of raw profiles, for pictures
};

/// A wheel pair with its distance.
struct FittedPair {
    int pass = 0; ///< from 1
    int pair = 0; ///< from 1
    double given = std::numeric_limits<double>::quiet_NaN(); ///< NaN: not known
    double measured = std::numeric_limits<double>::quiet_NaN(); ///< with the fitted settings
    double residual = std::numeric_limits<double>::quiet_NaN(); ///< measured minus given
};

/// The settings of a station, found from recordings.
struct KXINSPECT_EXPORT StationFit {
    std::string fault; ///< why there are no settings, a sentence without its full stop; empty when there are
    std::vector<FittedSensor> sensors; ///< two
    float baseDistance = std::numeric_limits<float>::quiet_NaN();
    /// The base distance is known within so many mm to both sides, with a probability of 95 %: from the residuals. NaN with
    /// one distance, which has no residual.
    float baseUncertainty = std::numeric_limits<float>::quiet_NaN();
    int minProfilesInWheel = 0;
    double maxResidual = 0.0; ///< as given
    std::vector<FittedPair> pairs;
    std::vector<std::string> warnings;

    bool hasSettings() const { return fault.empty(); }
    int known() const; ///< pairs with a residual
    double rms() const; ///< of the residuals, NaN without
    double largest() const; ///< residual by its size, NaN without
};

/// Finds the lines of both sensors and the base distance of a station from passes with known distances.
///
/// The sensors need not stand in a certain way: all is found from the back faces of the wheels, which are straight, come
/// and go, and are nearest to the sensor. The known distances say how many there are. Each recording is read several
/// times; memory follows the wheels.
/// Throws an Error for recordings that are missing, damaged or of wrong names, and for arguments that have no sense.
/// What cannot be found in good recordings is a fault of the result.
/// @param passes at least one; all of the same two sensors
KXINSPECT_EXPORT StationFit fitStation(const std::vector<KnownPass>& passes, const FitOptions& options = {},
                                       const Progress& progress = {});

/// The fitted settings, to measure with. Throws an Error for a fit with a fault.
KXINSPECT_EXPORT StationSettings settingsOf(const StationFit& fit);

/// Which file of settings.
enum class SettingsKind { Station, Defects };

/// The text of a settings file with the keys of a fit: existing keys and placeholders (";key=") are replaced, others
/// added to their sections. Everything else stays as it is. Sensors that the text names keep their number. Throws an
/// Error for a fit with a fault or, with SettingsKind::Defects, without lines of the tread; when the text is no INI
/// file or has no place for the sensors (Unsuitable); when a temporary file, with which the text is checked, cannot be
/// written (Unwritable).
/// @param text may be empty
/// @param file its name, for the error
KXINSPECT_EXPORT std::string withFit(const std::string& text, const StationFit& fit, SettingsKind kind,
                                     const std::string& file = {});

/// Throws the Error that storeFit() would throw for the sensors: to be called before a long fit.
/// @param serials of both sensors
KXINSPECT_EXPORT void checkFitTarget(const std::string& file, const std::vector<int>& serials);

/// Sets the keys of a settings file as withFit() does; it is made where there is none. Those who change one file at once
/// take turns, as with storePose(). Throws the errors of withFit(), and Unreadable and Unwritable for the file, which
/// then stays as it was.
/// @param progress called while it waits; it may throw to give up
KXINSPECT_EXPORT void storeFit(const std::string& file, const StationFit& fit, SettingsKind kind,
                               const Progress& progress = {});

/// The text of a new settings file for two sensors: every key with its meaning, unit, range and default. Keys that only
/// the user can know are placeholders, ";key=".
/// @param serials of the sensors, two or none
KXINSPECT_EXPORT std::string newSettings(SettingsKind kind, const std::vector<int>& serials = {});

/// What is wrong with settings.
struct SettingsFinding {
    bool isRefused = false; ///< measuring refuses such settings; else it goes on, but something does not fit
    std::string key; ///< "SENSOR1/level_k"; empty where it is about none
    std::string text; ///< a sentence without its full stop
};

/// What a check of settings says.
struct KXINSPECT_EXPORT SettingsCheck {
    std::vector<SettingsFinding> findings; ///< empty: all fits
    std::vector<std::string> facts; ///< what was looked at, and what fits

    bool isRefused() const;
};

/// Checks a settings file by itself and, for a station, against recordings. Throws an Error when a file cannot be read.
/// @param recordings none, one, or the two of each of several passes; none for the judgement of treads
/// @param mode of the wheel detection; mode 3 needs the low lines
KXINSPECT_EXPORT SettingsCheck checkSettings(const std::string& file, SettingsKind kind,
                                             const std::vector<std::string>& recordings = {}, int mode = 0,
                                             const Progress& progress = {});

} // namespace KxInspect
