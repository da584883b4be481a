// The true measures of a simulated wheel.
#pragma once

#include "simulator/wheel.h"

#include <KxInspect/PassWheels.h>

namespace kxtables {

/// The value that a measurement of the wheel should find, mm; defects of the tread are left out.
double trueMeasure(const kxsim::Wheel& wheel, KxInspect::PassMeasure measure);

} // namespace kxtables
