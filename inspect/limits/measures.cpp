// The measures that limits may be given for.
#include <KxInspect/Limits.h>

namespace KxInspect {

const std::vector<MeasureInfo>& measureInfos() {
    // The ranges hold every railway: back-to-back distances of gauges from 600 to 1676 mm, wheels of 250 to 1500 mm.
    static const std::vector<MeasureInfo> infos = {
        {"backToBack", "mm", MeasureOf::Axle, "distance between the back faces", 400, 2000},
        {"yaw", "mrad", MeasureOf::Axle, "how far the wheelset stands askew", -100, 100},
        {"diameter", "mm", MeasureOf::Wheel, "diameter at the tape circle", 200, 2000},
        {"diameterDifferenceAxle", "mm", MeasureOf::Axle, "between the diameters of an axle", 0, 100},
        {"diameterDifferenceBogie", "mm", MeasureOf::Bogie, "the largest between the diameters of a bogie", 0, 100},
        {"diameterDifferenceVehicle", "mm", MeasureOf::Vehicle, "the largest between those of a vehicle", 0, 100},
        {"flangeHeight", "mm", MeasureOf::Wheel, "Sh", 10, 60},
        {"flangeThickness", "mm", MeasureOf::Wheel, "Sd", 10, 60},
        {"flangeSlope", "mm", MeasureOf::Wheel, "qR", 0, 30},
        {"treadHollow", "mm", MeasureOf::Wheel, "depth of the hollow of the tread", -10, 20},
        {"rimWidth", "mm", MeasureOf::Wheel, "width of the rim", 50, 250},
        {"roundness", "mm", MeasureOf::Wheel, "largest deviation of the tread from a circle about the axle", 0, 50},
        {"treadDeviation", "mm", MeasureOf::Wheel, "largest deviation of the tread from a smooth curve", 0, 50}};
    return infos;
}

const char* textOf(LimitVerdict verdict) {
    switch (verdict) {
    case LimitVerdict::Ok:
        return "ok";
    case LimitVerdict::Warning:
        return "warning";
    case LimitVerdict::Alarm:
        return "alarm";
    case LimitVerdict::NotMeasured:
        break;
    }
    return "not measured";
}

} // namespace KxInspect
