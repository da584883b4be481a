// Railway functions over the recordings of profile sensors beside a metro track.
#pragma once

#include "KxMathExport.h"
#include "KxPrimitives.h"
#include "KxProfile.h"

#include <QtCore/QList>
#include <QtCore/QString>

class QSettings;

namespace KxMath {

/// True when more than `minPoints` points of the profile lie strictly below the line.
KXMATH_EXPORT bool METRO_isWheel(KxProfile profile, KxLine level, int minPoints);
/// True when more than `minPoints` points of the profile lie strictly between the lines.
KXMATH_EXPORT bool METRO_isWheel(KxProfile profile, KxLine level, KxLine low, int minPoints);

/// Finds the wheels in a recording and writes their profiles to files.
///
/// The recording is a sequence of profile records or 2-D cloud sections. Its name is taken relative to the current
/// directory; the number after its first "_" is the serial number of the sensor (a text that is no number is 0), which
/// is looked for in the keys "SENSOR1/SN", "SENSOR2/SN", ... (a 0 ends the search, and without a match up to 49 the
/// keys of sensor 50 are used). Each profile is cleaned with KxProfile::removeNoise() and is a wheel profile when
/// METRO_isWheel() says so. Successive wheel profiles are one wheel; they are written as 2-D cloud files
/// "./NAME/WW_PP.bin", NAME being the recording without ".bin", WW and PP the wheel and its profile from 1 on, with two
/// digits or more. The directory is created where it is missing; files already in it stay. Wheels of fewer than
/// "minProfsInWheel" profiles are removed again, except one that is still open at the end of the recording. The first
/// record that cannot be read ends the recording.
///
/// @param mode 3: KxProfile::removeLineParts() too, and a low line below which points do not count; any other value:
/// one
///        line only
/// @param settings the keys "minProfsInWheel" and, below "SENSOR%1/", "SN", "wndSize", "higherPoinInWnd", "maxdY",
///        "level_b", "level_k", "lowlevel_b", "lowlevel_k", "minPointsIn", "maxCorr", "parts", "maxDist"
/// @param wheelCount receives the number of wheels
/// @return false, nothing written, when the serial number is not found or the recording cannot be opened (its directory
///         may have been created)
KXMATH_EXPORT bool METRO_detectWheels(QString recording, QSettings* settings, int mode, int* wheelCount);

/// METRO_detectWheels() that also records where wheels start: the number of the record, from 1 on, is stored in
/// `results` as "Wheel_%1/firstProfInWheel" when the wheel starts, and all starts (wheel, record) are written to
/// "test.csv" in the current directory, those of wheels that were removed again included.
KXMATH_EXPORT bool METRO_detectWheels_Test(QString recording, QSettings* settings, int mode, int* wheelCount,
                                           QSettings* results);

/// Cuts a profile into straight parts and intersects neighbouring ones.
/// @param apexes not emptied; receives the intersections in order of x. Parallel neighbours give a NaN point
/// @param lines emptied, then receives the lines of the parts; NaN for a part of fewer than 2 points
/// @param maxDY cut points that stand off their neighbours by less are dropped
/// @return the number of points in `apexes`
KXMATH_EXPORT int METRO_detectApexes(KxProfile profile, KxProfile& apexes, QList<KxLine>& lines, float maxDY);

/// The distance across a wheel pair seen by two facing sensors: `baseDist` plus the offsets of both wheels from the
/// reference lines of their sensors. The offset is the difference of the intercepts, perpendicular to the reference
/// line; the wheel's line is fitted to the first half of the points in list order, and its slope is not used.
/// Deliberately, both profiles are cut to that half (n / 2 points, rounded down).
/// NaN when a half has fewer than 2 points.
KXMATH_EXPORT float METRO_calcWheelsDist(KxProfile& left, KxProfile& right, KxLine refLeft, KxLine refRight,
                                         float baseDist);

/// The distance across each wheel pair of a train, from the wheel files of METRO_detectWheels() for both recordings. Of
/// each wheel the profile counts that keeps the most points below the level line, the first of equal ones.
/// @param settings the keys "SENSOR1/SN", "SENSOR2/SN", "calibrLines2" (the base distance) and for the group of each
///        recording's sensor "/k2", "/b2" (its reference line), "/level_k", "/level_b". A recording of neither sensor
///        uses the keys "k2", "b2", "level_k", "level_b" without a group
/// @param distances receives `wheelCount` values
/// @return false when a directory, the first profile of a wheel, or a profile with points below the level line is
///         missing; distances of the wheels before that stay written
KXMATH_EXPORT bool METRO_calcWheelsDistInTrain(QString recording1, QString recording2, int wheelCount,
                                               QSettings* settings, float* distances);

} // namespace KxMath
