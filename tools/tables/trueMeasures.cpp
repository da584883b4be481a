// The true measures of a simulated wheel.
#include "tools/tables/trueMeasures.h"

#include "simulator/wornRim.h"

namespace kxtables {

double trueMeasure(const kxsim::Wheel& wheel, KxInspect::PassMeasure measure) {
    using KxInspect::PassMeasure;
    const kxsim::RimTruth rim = kxsim::trueMeasures(kxsim::rimOf(wheel.contour, wheel.shape.diameter));
    switch (measure) {
    case PassMeasure::Diameter:
        return wheel.shape.diameter;
    case PassMeasure::FlangeHeight:
        return rim.height;
    case PassMeasure::FlangeThickness:
        return rim.thickness;
    case PassMeasure::FlangeSlope:
        return rim.flangeSlope;
    case PassMeasure::TreadHollow:
        return rim.hollow;
    case PassMeasure::RimWidth:
        break;
    }
    return rim.width;
}

} // namespace kxtables
