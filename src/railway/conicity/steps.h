// The steps from four profiles to the conicity curve.
#pragma once

#include "KxMath/KxProfile.h"

#include <vector>

namespace KxMath::detail {

/// Distance of the points of the resampled profiles, and of neighbouring displacements.
inline constexpr float kLateralStep = 0.1f;

/// Wheels and rails are not wider; resampling wider profiles every 0.1 mm would only take time. No displacement is
/// larger.
inline constexpr float kMaxWidth = 1000.0f;

/// A wheel and the rail below it, in the coordinates of the track.
struct WheelOnRail {
    KxProfile wheel;
    KxProfile rail;
    std::vector<double> radii; ///< rolling radius at each point of the wheel
    qsizetype start = 0; ///< index of the wheel point over the first rail point while the wheel-set is centred
};

/// The wheel-set on its track.
struct Track {
    WheelOnRail first; ///< on the side of negative x
    WheelOnRail second; ///< on the side of positive x
};

/// Resamples, turns and places the profiles in `track`, and calculates radii and starts.
/// @return false when they cannot be placed; they are then left where the last possible step put them
bool placeOnTrack(Track& track, float radius1, float radius2, float railDistance, float wheelDistance);

/// The contact points of one displacement.
struct Contact {
    double displacement;
    qsizetype railIndex1;
    qsizetype wheelIndex1;
    qsizetype railIndex2;
    qsizetype wheelIndex2;
    double deltaR; ///< rolling radius of the second wheel minus that of the first
};

/// The contacts for the displacements 0, -0.1, -0.2, ... and then 0.1, 0.2, ...
std::vector<Contact> sweepLaterally(const Track& track);

/// The oscillation about its centre, by amplitude: curves over the same amplitudes.
struct Oscillation {
    KxProfile potential; ///< (amplitude, potential)
    KxProfile right; ///< (amplitude, displacement at the right turning point)
    KxProfile left; ///< (amplitude, displacement at the left turning point)

    /// The number of amplitudes.
    qsizetype count() const;
};

/// The oscillation from the difference of radii over ascending displacements.
/// @return false when that has no finite value
bool findOscillation(const QList<KxPointXY>& deltaR, Oscillation& oscillation);

/// The conicity over the amplitude.
void calcConicityCurve(const Oscillation& oscillation, unsigned int amplitudeCount, float edgeMargin,
                       KxProfile& conicity);

} // namespace KxMath::detail
