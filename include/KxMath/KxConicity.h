// The equivalent conicity of a wheel-set on a track.
#pragma once

#include "KxMathExport.h"
#include "KxProfile.h"

namespace KxMath {

/// The equivalent conicity of a wheel-set on a track as a function of the amplitude of its lateral oscillation, from
/// the cross-sections of two wheels and two rails (in the sense of UIC 519, 2004, and EN 15302: the conicity of the
/// pair of cones with the same wavelength of the kinematic oscillation).
///
/// All lengths are in millimetres. Profiles come with y pointing **down** and x outwards: a wheel from its flange back,
/// a rail from its gauge side; left and right look alike. The four are resampled every 0.1 mm, placed on the track, and
/// the wheel-set is moved sideways in steps of 0.1 mm until the rolling radii differ by 15 mm or a rail leaves its
/// wheel. The oscillation about the displacement with equal radii is then integrated for each amplitude. Amplitudes
/// beyond 1 m are left out; only splines through rough profiles reach them.
///
/// The wheels are aligned with the rails on the grid of 0.1 mm: choose railDistance - wheelDistance as a multiple of
/// 0.2 mm.
///
/// @param wheel1 one wheel
/// @param wheel2 the other wheel, on the side of positive displacements
/// @param rail1 the rail under the first wheel
/// @param rail2 the rail under the second wheel
/// @param radius1 rolling radius of the first wheel at the height where the two wheels are matched (on the flange back)
/// @param radius2 that of the second wheel. Equal radii give the same result whatever their size
/// @param railDistance twice the distance of each rail's first point (its gauge side end) from the track centre
/// @param wheelDistance distance between the flange backs
/// @param amplitudeCount approximate number of amplitudes on the curve, from 1 mm on; 0 gives none
/// @param conicity receives the curve, points (amplitude, conicity)
/// @param deltaR receives the difference of the rolling radii, second minus first, over the displacement, ascending
/// @param contactSlope1 receives the slope of the first wheel at its contact point over the displacement, in the order
///        of the search: 0, -0.1, -0.2, ... and then 0.1, 0.2, ...
/// @param contactSlope2 receives that of the second wheel
/// @param placedProfiles an array of 4; receives new profiles for display: first wheel, first rail, second wheel,
///        second rail, each side moved so that its flange backs are 5 mm off the origin
/// @param contacts1 an array with an entry per displacement (the number of points of a resampled wheel is enough);
///        receives new profiles of two points for the first wheel: the contact point of the wheel and that of the rail,
///        in the coordinates of the placed profiles and in the order of the search
/// @param contactCount1 receives the number of entries set in `contacts1`
/// @param contacts2 likewise for the second wheel
/// @param contactCount2 receives the number of entries set in `contacts2`
/// @param edgeMargin distance from the turning points at which the integration ends, in mm; 0.001 suits
///
/// **Ownership:** the profiles in the three arrays belong to the caller, who deletes them. When the result is 0 or more
/// all four `placedProfiles` are set, also when no curve could be calculated.
///
/// @return the number of points in `conicity`
/// @return 0, curves empty, when there is nothing to calculate: fewer than 3 different x in a profile, profiles wider
///         than 1 m, wheels without a common height, a rail that is not below its wheel, no finite difference of radii
/// @return -1, nothing written, when a profile is empty
KXMATH_EXPORT int EquivalentConicity(KxProfile wheel1, KxProfile wheel2, KxProfile rail1, KxProfile rail2,
                                     float radius1, float radius2, float railDistance, float wheelDistance,
                                     unsigned int amplitudeCount, KxProfile& conicity, KxProfile& deltaR,
                                     KxProfile& contactSlope1, KxProfile& contactSlope2,
                                     KxProfile** const placedProfiles, KxProfile** const contacts1, int& contactCount1,
                                     KxProfile** const contacts2, int& contactCount2, float edgeMargin);

} // namespace KxMath
