// How a wheel stands in its recording.
#include "inspect/train/wheelStand.h"

namespace KxInspect::detail {

WheelStand findStand(const FoundWheel& wheel, bool hasPlaces, const KxMath::KxLine& level,
                     const KxMath::KxLine& reference, const LaserPlane& plane) {
    std::vector<double> places;
    for (std::size_t i = 0; i < wheel.profiles.size(); ++i) {
        places.push_back(hasPlaces ? static_cast<double>(wheel.places[i])
                                   : static_cast<double>(wheel.firstRecord) + static_cast<double>(i));
    }
    WheelStand stand;
    stand.hasPlaces = hasPlaces;
    stand.across = plane.acrossPerAcross;
    stand.face = findBackFace(wheel.profiles, places, level, reference);
    stand.line = fitFaceLine(stand.face);
    stand.askew = askewOf(stand.line);
    stand.axle = findAxle(wheel.profiles, places, reference, stand.line);
    if (!stand.face.offsets.empty()) {
        stand.from = stand.face.offsets.front().place - stand.axle.place;
        stand.to = stand.face.offsets.back().place - stand.axle.place;
    }
    return stand;
}

} // namespace KxInspect::detail
