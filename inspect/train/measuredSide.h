// One side of a pass between detection and result.
#pragma once

#include "inspect/train/passInputs.h"
#include "inspect/train/wheelCollector.h"
#include "inspect/train/wheelDistance.h"
#include "inspect/train/wheelStand.h"

#include <vector>

namespace KxInspect::detail {

/// A recording, the wheels in it, and what is measured with them. The lists are in parallel.
struct MeasuredSide {
    SideInput input;
    WheelCollector found;
    std::vector<ChosenProfile> chosen;
    std::vector<WheelStand> stands = {};
    std::vector<TreadMap> treads = {}; ///< empty where treads are not judged
};

} // namespace KxInspect::detail
