// Wheel-sets on their tracks as a gauge measures them, with noise: what the intervals of the conicity are tried on.
#pragma once

#include <KxInspect/Conicity.h>

#include <cstdint>
#include <vector>

namespace kxsim {

/// Wheels and rails in closed form.
enum class TrackCase {
    NewOn40, ///< S1002 on 60E1 inclined 1:40, all sides equal
    NewOn20, ///< S1002 on 60E1 inclined 1:20, a wider gauge, one wheel 0.3 mm larger
    Hollow, ///< hollow wheels, unequally deep, on rails with a worn crown
    WornFlange, ///< a flange worn by 3 mm, a tread worn towards its field side, rails of unequal inclination
    Cones ///< straight treads of unequal slopes on rails with one radius
};

inline constexpr TrackCase kTrackCases[] = {TrackCase::NewOn40, TrackCase::NewOn20, TrackCase::Hollow,
                                            TrackCase::WornFlange, TrackCase::Cones};

const char* nameOf(TrackCase track);

/// How the profiles are measured.
struct Measuring {
    double noise = 0.0; ///< standard deviation of the points, mm
    double spacing = 0.1; ///< of the points along the contour, mm
    bool isAcrossOnly = true; ///< noise in y alone; false: in x and y
    KxInspect::GaugeError gaugeError = {}; ///< drawn for the gauge of both wheels, and for that of both rails
};

/// The profiles of a track as they are measured once.
KxInspect::ConicityInput measured(TrackCase track, const Measuring& measuring, std::uint64_t seed);

} // namespace kxsim
