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
/// the wheel-set is moved sideways by 0.1 mm at a time until the rolling radii differ by 15 mm or a rail leaves its
/// wheel. The oscillation about the displacement with equal radii is then integrated for each amplitude; amplitudes
/// beyond 1 m, to which only splines through rough profiles swing out, are left out.
///
/// The wheels are lined up with the rails on the grid of 0.1 mm: keep railDistance - wheelDistance a multiple of 0.2
/// mm.
///
/// @param wheel1,wheel2 the wheels; the second one is on the side of positive displacements
/// @param rail1,rail2 the rails under them
/// @param radius1,radius2 rolling radii at the height where the two wheels are matched (on the flange back); equal
/// radii
///        of any size give the same result
/// @param railDistance twice the distance of each rail's first point (its gauge side end) from the track centre
/// @param wheelDistance distance between the flange backs
/// @param amplitudeCount about how many amplitudes from 1 mm on the curve has; 0 gives none
/// @param conicity receives the curve, points (amplitude, conicity)
/// @param deltaR receives the difference of the rolling radii, second minus first, over the displacement, ascending
/// @param contactSlope1,contactSlope2 receive the slope of each wheel at its contact point over the displacement, in
/// the
///        order of the search: 0, -0.1, -0.2, ... and then 0.1, 0.2, ...
/// @param placedProfiles room for 4; receives new profiles for display: first wheel, first rail, second wheel, second
///        rail, each side moved so that its flange backs stand 5 mm off the origin
/// @param contacts1,contacts2 room for an entry per displacement (the number of points of a resampled wheel is enough);
///        receive new profiles of two points, the contact point of the wheel and that of the rail, where the placed
///        profiles stand and in the order of the search
/// @param contactCount1,contactCount2 receive the number of those entries
/// @param edgeMargin distance from the turning points at which the integration ends, in mm; 0.001 suits
///
/// **Ownership:** the profiles in the three arrays belong to the caller, who deletes them. When the result is 0 or more
/// all four `placedProfiles` are set, whatever else could be made.
///
/// @return the number of points in `conicity`
/// @return 0, curves empty, when there is nothing to calculate: fewer than 3 different x in a profile, profiles wider
/// than
///         1 m, wheels without a common height, a rail that does not lie below its wheel, no finite difference of radii
/// @return -1, nothing written, when a profile is empty
KXMATH_EXPORT int EquivalentConicity(KxProfile wheel1, KxProfile wheel2, KxProfile rail1, KxProfile rail2,
                                     float radius1, float radius2, float railDistance, float wheelDistance,
                                     unsigned int amplitudeCount, KxProfile& conicity, KxProfile& deltaR,
                                     KxProfile& contactSlope1, KxProfile& contactSlope2,
                                     KxProfile** const placedProfiles, KxProfile** const contacts1, int& contactCount1,
                                     KxProfile** const contacts2, int& contactCount2, float edgeMargin);

} // namespace KxMath
