// The profiles of a wheel in the track frame.
#pragma once

#include <KxInspect/Settings.h>
#include <KxMath/KxPoints.h>

#include <QtCore/QList>

#include <vector>

namespace KxInspect::detail {

/// A point of a wheel, or the mean of neighbours in a profile: in the track frame, along from where the wheel passes the
/// origin of the track, across counted outwards on its side.
struct TrackPoint {
    double along; ///< mm in the direction of travel, the travel of the train taken off
    double across; ///< mm from the middle of the track
    double up; ///< mm
    int profile; ///< from 0
};

/// The profiles that a sensor has of a wheel.
struct SensorProfiles {
    const std::vector<QList<KxMath::KxPointXY>>* profiles = nullptr;
    const std::vector<float>* places = nullptr; ///< z of the profiles
    const SensorSettings* sensor = nullptr; ///< with its side and pose
};

/// The points of all profiles, means of neighbours within half a millimetre, by METRO_XYtoXYZ().
std::vector<TrackPoint> trackPointsOf(const SensorProfiles& seen);

} // namespace KxInspect::detail
