// The calibration object and the placement codes.
#include <KxInspect/CalibrationObject.h>
#include <KxMath/KxPlacement.h>

namespace KxInspect {

Placement placementOf(int code) {
    const KxMath::KxPlacement placement(code);
    return {placement.isMirrored, placement.isTurned, placement.findsY};
}

CalibrationObject calibrationObjectFor(int placement, double crestY) {
    CalibrationObject object;
    object.crestY = crestY;
    if (placementOf(placement).isTurned) {
        object.obliqueness = -object.obliqueness;
    }
    return object;
}

CalibrationObject calibrationObjectFacing(SensorSide side, double crestY) {
    CalibrationObject object;
    object.crestY = crestY;
    object.obliqueness *= side == SensorSide::SmallerY ? 1.0 : -1.0;
    return object;
}

std::array<CalibrationRidge, kRidgeCount> ridgesOf(const CalibrationObject& object) {
    const double p = object.pitch;
    const double t = object.obliqueness;
    return {{{-2.0 * p, 0.0}, {-p, 0.0}, {0.0, 0.0}, {p, 0.0}, {2.5 * p, t}, {4.0 * p, t}}};
}

} // namespace KxInspect
