// Railway functions over the recordings of profile sensors beside a metro track.
//
// Pointers must not be null unless a function says so, and arrays must have the size that it names. Temporaries do not
// bind to parameters that are non-const references. Threads may call these functions at the same time on different
// objects; those that write files do so in the current directory, one folder per recording: at most one call for each
// recording at a time.
#pragma once

#include "KxMathExport.h"
#include "KxPointCloud.h"
#include "KxPrimitives.h"
#include "KxProfile.h"

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QString>

class QSettings;

namespace KxMath {

/// The pose of a sensor in the track frame: X along the track, Y across it, Z up, in mm.
///
/// A profile point (px, py) is at (x, y, z) + px * u + py * v, where
///     u = (sin a cos b cos c + sin b sin c, sin a sin b cos c - sin c cos b, cos a cos c)
///     v = (cos a cos b, cos a sin b, -sin a)
/// and a, b, c stand for alpha, beta, gamma. Deliberately, the unit of the angles depends on the function:
/// METRO_calcAnglesCoord() stores radians and METRO_XYtoXYZ() reads radians when it is given a wheel radius, degrees
/// when it is not.
struct _KxMETRO_SensorCoord_ {
    float x; ///< X of the origin of the profile's coordinates
    float y; ///< Y of that origin
    float z; ///< Z of that origin
    float alpha; ///< angle a
    float beta; ///< angle b
    float gamma; ///< angle c
    int position; ///< placement of the sensor, set by the caller; the calibration distinguishes 2, 3, 4 and 5
};

/// What a calibration found in its profile.
struct _KxMETRO_DbgData_ {
    int apexCount; ///< number of apexes below, at most 10
    float apexX[10]; ///< positions of the apexes along the laser line
    float apexY[10]; ///< heights of the apexes
    float value0; ///< root mean square distance of the flanks from the object in mm, NaN without a pose
    float value1; ///< largest standard deviation of an angle in degrees, NaN without a pose
    float lineK[11]; ///< slopes of the lines, `apexCount` + 1 of them; NaN where a line is missing
    float lineB[11]; ///< intercepts of the lines, likewise
};

/// Measures of the rim profile of a wheel, in mm. NaN: not found.
struct _WheelProfileValues {
    float heightAt70; ///< flange height: height at x = 70, the tape circle, above the lowest point, the flange tip
    float xAtLevel18; ///< flange thickness at level 18: x at which the flank reaches the height 18
    float widthLevel2ToH13; ///< distance in x between the heights 2 and `heightAt70` - 13 on the flank
    float heightExcess; ///< `heightAt70` minus 30 when it is 29 or more, minus 28 when it is below 29
    float value4; ///< always NaN
};

/// Appends the points of a profile to a cloud in the track frame. The range of the cloud is not updated.
/// @param profile is only read
/// @param cloud receives the points
/// @param coord the pose of the sensor, its angles in degrees (deliberately: the other form reads radians)
KXMATH_EXPORT void METRO_XYtoXYZ(KxProfile& profile, KxPointCloud<KxPointXYZ>& cloud, _KxMETRO_SensorCoord_& coord);

/// METRO_XYtoXYZ() for one of the successive profiles of a wheel that rolls past: the points are also moved by
/// (R cos f - n s, 0, R sin f), where f = -(s / R) n.
///
/// The images of a point on the axle box of a wheel rolling towards +X, which advances by `step` from profile to
/// profile, are on a circle of the radius `radius`. The correction moves a profile as a whole and does not rotate it
/// about the axle. The profiles that a sensor at rest takes of a rim therefore do not combine to a round wheel.
/// @param profile is only read
/// @param cloud receives the points
/// @param coord the pose of the sensor, its angles in radians (deliberately: the other form reads degrees)
/// @param radius radius R of the wheel; 0 gives NaN points
/// @param step advance s of the wheel from profile to profile
/// @param index index n of the profile
KXMATH_EXPORT void METRO_XYtoXYZ(KxProfile& profile, KxPointCloud<KxPointXYZ>& cloud, _KxMETRO_SensorCoord_& coord,
                                 float radius, float step, int index);

/// Finds the pose of a sensor from a profile of the calibration object: roof ridges along X that face the sensor, their
/// crests in the plane Y = `p4`, at Z = -P, 0, P and, obliquely, 2.5 P + p3 X, with half a ridge at either end (at -Z
/// for the placements 3 and 4). docs/calibration.md draws and derives it.
///
/// One profile does not determine the sign of gamma: it is taken as 0 to 180 degrees before folding. A sensor that is
/// rotated the other way about its axis gets the pose of a mirror image.
/// @param profile the profile of the object; is only read
/// @param p1 2 P, the distance from the first to the third crest
/// @param p2 depth of the valleys between the straight crests
/// @param p3 obliqueness of the fourth crest, not 0, with the sign of the object as it is mounted
/// @param p4 Y of the plane of the crests
/// @param coord `position` is read: 3 and 4 give alpha and gamma as 2 pi minus the angle found, 2, 4 and 5 add pi to
///        beta. Receives the angles in radians, x, z and, for 2, 4 and 5 only, y
/// @param apexes crest, valley, crest, ... of the object where they are roughly known; when empty,
///        METRO_detectApexes() finds them with 2.0. The flanks between them are fitted to the profile; with an empty
///        profile the apexes are taken as exact
/// @param dbg receives the apexes and lines, whatever the result; may be null
/// @return true when `coord` was written
/// @return false, `coord` untouched, when the seven apexes of the object are not found, a flank has too few points, no
///         pose gives finite values, lengths contradict the object, or the noise of the profile leaves an angle
///         uncertain by more than 0.1 degrees or a point by more than 0.2 mm (four standard deviations)
KXMATH_EXPORT bool METRO_calcAnglesCoord(KxProfile& profile, float p1, float p2, float p3, float p4,
                                         _KxMETRO_SensorCoord_& coord, QList<QPointF> apexes, _KxMETRO_DbgData_* dbg);

/// True when more than `minPoints` points of the profile are strictly below the line; NaN points do not count.
KXMATH_EXPORT bool METRO_isWheel(KxProfile profile, KxLine level, int minPoints);
/// True when more than `minPoints` points of the profile are strictly between the lines: below `level`, above `low`.
KXMATH_EXPORT bool METRO_isWheel(KxProfile profile, KxLine level, KxLine low, int minPoints);

/// Finds the wheels in a recording and writes their profiles to files.
///
/// The recording is a sequence of profile records or 2-D cloud sections. Its name is relative to the current directory;
/// the number after its first "_" is the serial number of the sensor (a text that is not a number counts as 0), which
/// is searched in the keys "SENSOR1/SN", "SENSOR2/SN", ... (a 0 ends the search, and without a match up to 49 the keys
/// of sensor 50 are used). Each profile is cleaned with KxProfile::removeNoise() and is a wheel profile when
/// METRO_isWheel() is true. Successive wheel profiles are one wheel; they are written as 2-D cloud files
/// "./NAME/WW_PP.bin", where NAME is the recording without ".bin", and WW and PP are the wheel and its profile, counted
/// from 1, with two digits or more. The directory is created if it is missing; files already in it stay. Wheels of
/// fewer than "minProfsInWheel" profiles are removed again, except one that is still open at the end of the recording.
/// The first record that cannot be read ends the recording.
///
/// @param recording name of the file
/// @param mode 3: also KxProfile::removeLineParts(), and a low line below which points do not count; any other value:
///        one line only
/// @param settings the keys "minProfsInWheel" and, below "SENSOR%1/", "SN", "wndSize", "higherPoinInWnd", "maxdY",
///        "level_b", "level_k", "lowlevel_b", "lowlevel_k", "minPointsIn", "maxCorr", "parts", "maxDist"
/// @param wheelCount receives the number of wheels
/// @return true when the recording was read; also when it holds no wheel
/// @return false, nothing written, when the serial number is not found or the recording cannot be opened (its directory
///         may have been created)
KXMATH_EXPORT bool METRO_detectWheels(QString recording, QSettings* settings, int mode, int* wheelCount);

/// METRO_detectWheels() that also records where wheels start: the number of the record, from 1 on, is stored in
/// `results` as "Wheel_%1/firstProfInWheel" when the wheel starts, and all starts (wheel, record) are written to
/// "test.csv" in the current directory, those of wheels that were removed again included.
KXMATH_EXPORT bool METRO_detectWheels_Test(QString recording, QSettings* settings, int mode, int* wheelCount,
                                           QSettings* results);

/// Cuts a profile into straight parts and intersects neighbouring ones.
/// @param profile the profile, in any order
/// @param apexes not emptied; receives the intersections in order of x. Parallel neighbours give a NaN point
/// @param lines emptied, then receives the lines of the parts; NaN for a part of fewer than 2 points
/// @param maxDY cut points that differ from their neighbours by less are dropped
/// @return the number of points in `apexes`
KXMATH_EXPORT int METRO_detectApexes(KxProfile profile, KxProfile& apexes, QList<KxLine>& lines, float maxDY);

/// The distance across a wheel pair seen by two facing sensors: `baseDist` plus the offsets of both wheels from the
/// reference lines of their sensors. The offset is the difference of the intercepts, perpendicular to the reference
/// line; the wheel's line is fitted to the first half of the points in list order, and its slope is not used.
/// Deliberately, both profiles are cut to that half (n / 2 points, rounded down).
/// NaN when a half has fewer than 2 points.
KXMATH_EXPORT float METRO_calcWheelsDist(KxProfile& left, KxProfile& right, KxLine refLeft, KxLine refRight,
                                         float baseDist);

/// The distance across each wheel pair of a train, from the wheel files of METRO_detectWheels() for both recordings.
/// For each wheel it uses the profile with the most points below the level line, the first of equal ones.
/// @param recording1 name of the first recording, as for METRO_detectWheels()
/// @param recording2 name of the second recording
/// @param wheelCount number of wheels
/// @param settings the keys "SENSOR1/SN", "SENSOR2/SN", "calibrLines2" (the base distance) and for the group of each
///        recording's sensor "/k2", "/b2" (its reference line), "/level_k", "/level_b". A recording of neither sensor
///        uses the keys "k2", "b2", "level_k", "level_b" without a group
/// @param distances an array of `wheelCount`; receives the distances, NaN where a line cannot be fitted
/// @return true when all were written
/// @return false when a directory, the first profile of a wheel, or a profile with points below the level line is
///         missing; distances of the wheels before that stay written
KXMATH_EXPORT bool METRO_calcWheelsDistInTrain(QString recording1, QString recording2, int wheelCount,
                                               QSettings* settings, float* distances);

/// Checks a wheel profile by its distance in y from the polynomial of degree 20 fitted to it. Points more than
/// `maxDeviation` away count; NaN points do not. A profile without a fit is sound.
/// @param profile is only read
/// @param degree not used: deliberately, the degree is always 20
/// @param maxDeviation in the unit of y
/// @param pointsHigher number of points
/// @return true (sound) when at most `pointsHigher` points count
/// @return false (a defect) when more do
KXMATH_EXPORT bool METRO_detectWheelDefect(KxProfile& profile, int degree, float maxDeviation, int pointsHigher);

/// Checks the wheels of a train by wheel files named as those of METRO_detectWheels(), for one recording. **The only
/// function of the library that may not return.**
///
/// The sensor of the recording is found as in METRO_detectWheels(). For each wheel w, counted from 0, the file
/// "./NAME/WW_00.bin" is checked with METRO_detectWheelDefect() between a low and a high line, again and again as long
/// as it exists: deliberately, the profile number is never increased. A call with such a file DOES NOT RETURN until the
/// file is removed. METRO_detectWheels() counts profiles from 1 and creates no such file. Wheels with more than
/// "minimalDefectsProf" sound readings are marked with 0.
/// To check the profiles that METRO_detectWheels() wrote, read them and call METRO_detectWheelDefect().
/// @param recording name of the recording, as for METRO_detectWheels()
/// @param settings the keys "use" (0, as when missing: do nothing), "polynomDegree", "maxDeviation", "pointsHigher",
///        "minimalDefectsProf" and, below "SENSOR%1/", "SN", "level_k", "level_b", "lowLevel_k", "lowLevel_b" (not
///        those of METRO_detectWheels(), which are spelled "lowlevel_k" and "lowlevel_b")
/// @param marksLow an array of `wheelCount` marks for sensors up to number 10. Only 0 is ever written: fill it with
///        another value before
/// @param marksHigh likewise for sensors above number 10
/// @param wheelCount number of wheels
/// @return true when the wheels were checked
/// @return false, nothing written, when "use" is 0, the serial number is not found or the directory is missing
KXMATH_EXPORT bool METRO_detectDefectsInTrain(QString recording, QSettings* settings, unsigned char* const marksLow,
                                              unsigned char* const marksHigh, int wheelCount);

/// The circle through the x and y of three points of a wheel: the first one with the smallest x in `first`, with the
/// smallest z in `second` and with the largest x in `third`. Calculates the cached ranges of the clouds.
/// @param first only its cached range changes
/// @param second likewise
/// @param third likewise
/// @param circle unchanged when one of the clouds has no such point; NaN when the three points are on one line
KXMATH_EXPORT void METRO_calcWheel(KxPointCloud<KxPointXYZ>& first, KxPointCloud<KxPointXYZ>& second,
                                   KxPointCloud<KxPointXYZ>& third, KxCircle& circle);

/// Measures the cross-section of a rim: heights y over a width that runs inwards, towards the centre of a circle in the
/// plane of x and z. y grows from the tip of the flange towards the axle: the tip is at the lowest y, the tread above. The section is rotated about the centre until its first point is on +x, read from its outer end
/// inwards with both coordinates starting at 0, cut off at the back of the flange, smoothed over 20 points and
/// resampled 0.1 apart. The tip of the flange is the lowest point, and heights count upwards from it. The
/// smoothing rounds the tip and displaces the flank, by more the greater the distance of the points.
/// @param rim changed: moved so that the centre is the origin, and rotated. NaN points do not take part in the angle
/// @param circle centre in x and z (deliberately its fields x and y; METRO_calcWheel() finds a circle in x and y); the
///        radius is not used
/// @param values receives the measures; NaN for each that is not found
/// @param measured receives the profile that was measured, may be null
KXMATH_EXPORT void METRO_calcWheelParameters(KxPointCloud<KxPointXYZ>& rim, KxCircle circle,
                                             _WheelProfileValues* values, KxProfile* measured);

} // namespace KxMath
