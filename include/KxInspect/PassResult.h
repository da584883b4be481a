// What was measured in a pass of a train. Everything that tables, files and pages show of a pass is in here.
#pragma once

#include "Consist.h"
#include "Export.h"
#include "Interval.h"
#include "Json.h"
#include "Limits.h"
#include "PassIdentity.h"
#include "PassKept.h"
#include "PassWheels.h"
#include "Profile.h"
#include "Settings.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// The tread of one wheel, each profile compared with a smooth curve through it.
struct TreadDefects {
    int judged = 0; ///< profiles that show enough of the tread between the lines, see kFewestJudgedPoints
    std::vector<int> profiles; ///< the numbers of the defective ones, ascending
    int deviating = 0; ///< points of all judged profiles that deviate
    int worstProfile = 0; ///< the judged one with the largest deviation, 0 when there is none
    float largest = std::numeric_limits<float>::quiet_NaN(); ///< its deviation, mm; NaN when there is none
    /// More profiles are defective than allowed. Absent without a verdict: PassWheel::defectsReason says why. A tread is
    /// sound only when enough profiles are judged; defects that were found count however few these are.
    std::optional<bool> isDefective;
    /// What deviates, mm: DefectLimits::maxDeviation, or four times the noise of the points if that is more.
    float limit = std::numeric_limits<float>::quiet_NaN();
};

/// A profile with fewer points (at different x) between the lines is not judged: a curve of 21 coefficients follows
/// whatever it shows.
inline constexpr int kFewestJudgedPoints = 63;

/// @{ Where the tread is looked for: around the tape circle, distances behind the reference line, mm. A profile is judged
/// when it shows, between the lines, at least so many millimetres of this range.
inline constexpr float kTreadFrom = 45.0f;
inline constexpr float kTreadTo = 95.0f;
inline constexpr int kLeastTread = 8;
/// @}

/// A tread is called sound when at least one in so many profiles of the wheel is judged, and more than the defective
/// ones that are allowed.
inline constexpr int kProfilesPerJudged = 10;

/// A tread is not called sound when noise demands more than this many times DefectLimits::maxDeviation.
inline constexpr float kMostNoisy = 3.0f;

/// The radius of the tread in one profile.
struct RadiusDeviation {
    int profile = 0; ///< its number, from 1
    float place = 0.0f; ///< of the profile before (negative) or behind the axle, mm
    float deviation = 0.0f; ///< from the circle of the whole wheel, mm
    Interval interval = {}; ///< of the deviation
};

/// A part of the circumference of a wheel.
struct SeenArc {
    float from = 0.0f; ///< mm
    float to = 0.0f;
};

/// The tread of one wheel compared with a circle about its axle.
struct Roundness {
    std::vector<RadiusDeviation> radii; ///< of the profiles that show flange and tread
    float flangeRadius = 0.0f; ///< of the tip, mm
    float scatter = 0.0f; ///< of the tips about their circle, as a standard deviation, mm
    std::vector<int> profiles; ///< the numbers of those that stand off the circle together, ascending
    float largest = 0.0f; ///< what the profiles of a run are off at least, of all runs the most, mm
    bool isOut = false;
    /// Whether `profiles` stand off by what dirt of up to 0.1 mm explains: then the wheel is not out of round.
    bool isDirty = false;
    Interval largestInterval = {}; ///< of `largest`
    /// @{ The part of the tread that the radii are of, behind the reference line, mm: all that is compared, or the
    /// narrower band that stands off farthest.
    float bandFrom = kTreadFrom;
    float bandTo = kTreadTo;
    /// @}
    /// How far off counts, mm: DefectLimits::maxRadiusDeviation, or what the noise of the pass demands if that is more;
    /// the median of the profiles.
    float limit = 0.0f;
    /// The parts of the circumference that the compared profiles show, along it from where the wheel stood on the rail
    /// when its axle passed the laser, forward positive, mm; ascending. Nothing is known of the rest.
    std::vector<SeenArc> seen = {};
};

/// A wheel in one recording. Its profiles are counted from 1.
struct PassWheel {
    int number = 0; ///< from 1 on, as in the names of its files
    int profiles = 0;
    int firstRecord = 0; ///< from 1 on
    int chosenProfile = 0; ///< the one with the most points below the level line, 0 when none has any
    int points = 0; ///< of the chosen profile below the level line
    std::optional<TreadDefects> defects; ///< absent when they were not asked for
    std::string defectsReason; ///< why they have no verdict; empty when they have one or were not asked for
    /// Absent when it was not asked for, or could not be judged: the records have no rising z, too few profiles show
    /// flange and tread, or the flange tips give no circle.
    std::optional<Roundness> roundness;
    std::string roundnessReason; ///< why it was not judged; empty when it was, or was not asked for

    int lastRecord() const { return firstRecord + profiles - 1; }
};

/// What became of the points of a recording until wheels were looked for.
struct PointCounts {
    std::int64_t recorded = 0; ///< all points of all records, missing ones included
    std::int64_t missing = 0; ///< without a finite x or y
    std::int64_t removed = 0; ///< of the others, by the noise filter and, in the mode that has them, as straight parts
    std::int64_t below = 0; ///< of those with finite x and y, below the level line, before the filters
    /// Of `removed`, as straight parts; the others were noise. Absent in results of versions that did not count them apart.
    std::optional<std::int64_t> straight = {};
};

/// One side of the track: the recording of its sensor and the wheels in it.
struct PassSide {
    std::string file; ///< without its folder, UTF-8
    std::string name; ///< the same; ends with ".bin", whether the file does or not
    std::string wheelDirectory; ///< the folder of its wheel files, relative to that of the pass
    int serial = 0; ///< serial number of the sensor
    int sensor = 0; ///< number of the sensor in the settings
    std::int64_t bytes = 0;
    std::string sha256 = {}; ///< of the file, 64 hexadecimal digits in lower case
    int cloudSections = 0; ///< records of this kind
    int profileRecords = 0; ///< records of that kind
    Line level;
    Line reference; ///< NaN for a sensor that measures no distances
    std::vector<PassWheel> wheels;
    /// Why nothing was measured of it, a clause; the file may then be empty, and so are size and hash of one that cannot be
    /// read. Of several recordings one may fail.
    std::string missing = {};
    /// Absent in a result of a version that did not count them, and for a recording of which nothing was measured.
    std::optional<PointCounts> points = {};

    int records() const { return cloudSections + profileRecords; }
};

/// A wheel pair of the train. A side that did not see the wheel has none.
struct WheelPair {
    std::array<std::optional<std::size_t>, 2> wheels = {}; ///< of both sides: the place in PassSide::wheels
    float distance = std::numeric_limits<float>::quiet_NaN(); ///< across the pair, mm; NaN: see `reason`
    float deviation = std::numeric_limits<float>::quiet_NaN(); ///< from the nominal distance, mm; NaN likewise
    std::optional<bool> inTolerance; ///< absent without a distance
    std::string reason; ///< why there is no distance; empty when there is one
    /// Of the distance: noise of the profiles of both wheels, and PassResult::baseUncertainty where that is known.
    Interval interval = {};
    /// Why the distance has no interval; empty when it has one, or when there is no distance.
    std::string intervalReason = {};
    /// Where both back faces are measured: a place along the track behind the axle, mm; 0: below the axle. NaN without a
    /// distance, and when each side is measured where its chosen profile is.
    float chord = std::numeric_limits<float>::quiet_NaN();
    /// How far the wheelset stands askew, mrad; positive when the wheel that SENSOR2 sees is ahead, where z rises. NaN:
    /// see `yawReason`.
    float yaw = std::numeric_limits<float>::quiet_NaN();
    Interval yawInterval = {};
    std::string yawReason = {}; ///< why the yaw is not known; empty when it is
    AxleNumber axle = {}; ///< which axle of the train it is
    /// Where the axle is along the pass, in mm of the z of the records; absent where that does not rise.
    std::optional<double> place = {};

    bool isComplete() const { return wheels[0] && wheels[1]; }
};

/// How far the tread of a wheel stands off its rings, over all profiles and the places across it.
struct TreadMap {
    int profiles = 0; ///< of the wheel, each a row; 0: the roundness of the wheel was not judged
    int columns = 0; ///< 1 mm apart
    float from = kTreadFrom; ///< where the first column is, behind the reference line, mm
    /// Of the radius from the median of all profiles at the same place, row by row, mm. NaN where a profile does not show
    /// the tread, or was not compared.
    std::vector<float> deviations = {};
};

/// What a page draws of one wheel.
struct WheelPicture {
    std::size_t side = 0; ///< which one
    int overlaid = 0; ///< number of profiles in `profiles`, evenly spread over those of the wheel
    std::vector<Point> profiles; ///< the points of these profiles
    std::vector<Point> chosen; ///< the chosen profile; empty when there is none, as all that follow
    std::vector<Point> half; ///< the points of it that the line is fitted to
    std::vector<double> heights; ///< of `half` above the reference line, mm along y
    std::optional<Line> fit; ///< absent with fewer than two points
    float offset = std::numeric_limits<float>::quiet_NaN(); ///< of the fit from the reference line, mm; NaN without fit
    /// Offset of the back face behind the reference line, mm, over the place of the profile behind the axle; in mm along
    /// the pass where its records have a rising z, else in records.
    std::vector<Point> faces;
    bool hasPlaces = false; ///< these places are mm
    std::optional<Line> faceLine; ///< through them; absent when they give none
    std::optional<Line> low; ///< the low line, in the mode that has one
    std::vector<Point> deviations; ///< of the worst profile from its curve, over x; empty when defects were not judged
    TreadMap tread = {};
};

/// What a page draws of one wheel pair.
struct PairPicture {
    int pair = 0; ///< its number, from 1
    std::vector<WheelPicture> wheels; ///< of the sides that saw it
};

/// What is asked of a pass: the distance of each pair, and the tread and the roundness of each wheel.
enum class PassQuestion { Distance, Tread, Roundness };

/// How many verdicts a pass gives on one of its questions.
struct VerdictCount {
    int asked = 0; ///< pairs, or wheels of both sides of all pairs; 0 when the question was not asked
    int judged = 0; ///< those that have a verdict
    int bad = 0; ///< of these: out of tolerance, defective, out of round

    int notJudged() const { return asked - judged; }
};

/// What a page draws of a recording in which no wheel was found: why not.
struct RawPicture {
    std::size_t side = 0; ///< which one
    int profiles = 0; ///< number of profiles in `points`, evenly spread over the recording
    std::vector<Point> points; ///< of these profiles, as they were recorded
    std::int64_t below = 0; ///< points below the level line, of the whole recording
    std::int64_t all = 0; ///< of so many that are finite
    std::optional<Line> low; ///< the low line, in the mode that has one
};

/// The cross-section that wheels should have.
struct NominalContour {
    std::string file = {}; ///< without its folder, UTF-8
    float flangeHeight = std::numeric_limits<float>::quiet_NaN(); ///< Sh, mm
    /// Its points along the contour: x from the flange back, y from the tip of the flange towards the axle, mm. In pictures
    /// only.
    std::vector<Point> section = {};
};

/// What was measured in a pass.
struct KXINSPECT_EXPORT PassResult {
    int mode = 0; ///< of the wheel detection
    PassIdentity identity;
    std::string settings; ///< the file of the station's settings, without its folder; may be empty
    std::string folder; ///< where wheel files were left; empty for nowhere. No part of the JSON form
    PassKept kept = {}; ///< what was left of the profiles beside the result
    std::vector<PassSide> sides; ///< the two that face each other
    std::vector<PassSide> further; ///< the recordings of other sensors, for the measures of wheels
    float baseDistance = 0.0f; ///< mm
    /// Half of the 95 % interval of the base distance, mm; absent when the settings do not give it: the intervals of
    /// distances then lack it.
    std::optional<float> baseUncertainty;
    float nominal = 0.0f; ///< distance, mm
    float tolerance = 0.0f; ///< mm to both sides, the limit itself included
    std::optional<DefectLimits> defectLimits; ///< set when defects were looked for
    std::vector<WheelPair> pairs; ///< in order along the train
    PassTrain train = {}; ///< its vehicles
    /// The measures of the left and the right wheel of each pair; empty when the settings give no side of a sensor.
    std::vector<PassWheelMeasures> wheels;
    std::optional<NominalContour> contour = {}; ///< absent when none was given
    std::optional<PassAssessment> assessment = {}; ///< absent without limits
    std::vector<std::string> warnings; ///< what makes results doubtful, UTF-8
    std::vector<PairPicture> pictures; ///< of the pairs that were asked for
    std::vector<RawPicture> rawPictures; ///< of the sides on which no wheel was found

    /// The wheel of one side of a pair, null when that sensor did not see it.
    const PassWheel* wheelOf(const WheelPair& pair, std::size_t side) const;
    /// The vehicle of a pair, null when it is not known.
    const PassVehicle* vehicleOf(const WheelPair& pair) const;
    int distances() const; ///< how many pairs have one
    VerdictCount count(PassQuestion question) const;
    /// True when the pass has a distance, or of several sensors a measure of a wheel, and, where treads were asked for, a verdict on a tread or on roundness.
    bool hasResult() const;
};

/// The result as a JSON document; missing values are null.
KXINSPECT_EXPORT std::string toJson(const PassResult& result, Pictures pictures = Pictures::Left);

/// Reads what toJson() wrote, with or without pictures. Throws an Error when it is no such document.
KXINSPECT_EXPORT PassResult passFromJson(const std::string& json);

} // namespace KxInspect
