// Obstacles besides wheels: boxes of the train, and bodies along the track.
#pragma once

#include "simulator/vector.h"

#include <vector>

namespace kxsim {

/// An upright box.
struct Box {
    Vec3 low;
    Vec3 high;
};

/// The first hit before `end`; `end` when there is none.
double hitBox(const Box& box, const Ray& ray, double end);

/// A cross-section (x unused) extruded endlessly along the track; neighbouring points are joined.
using TrackBody = std::vector<Vec3>;

/// The first hit before `end`; `end` when there is none.
double hitTrackBody(const TrackBody& body, const Ray& ray, double end);

/// The head of a rail, of which a sensor sees at most the top and the inner side.
/// @param side 1 on the left, -1 on the right
TrackBody makeRailHead(double gauge, int side);

} // namespace kxsim
