// The options of kxmath wheel.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/Wheel.h>

namespace kxtool {

class WheelCommandOptions : public Options {
public:
    WheelCommandOptions();

    /// The files, and what the options say about their content.
    std::vector<KxInspect::CrossSection> wheels() const;

    /// What they say about the measurement.
    KxInspect::WheelOptions measurement() const;
};

} // namespace kxtool
