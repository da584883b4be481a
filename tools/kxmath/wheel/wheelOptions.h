// The options of kxmath wheel.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/options.h"

#include <KxInspect/Wheel.h>

namespace kxtool {

class WheelCommandOptions : public Options {
public:
    WheelCommandOptions();

    /// The files with their orientation and columns.
    std::vector<KxInspect::CrossSection> wheels() const;

    /// The clouds of three sensors that give the centre of the wheel; none, or three.
    QStringList marks() const;

    /// The options of the measurement. Reads the clouds of the marks.
    KxInspect::WheelOptions measurement() const;

    /// The verdicts on which the command fails. Without a limit there is none to fail on.
    FailOn failOn() const;
};

} // namespace kxtool
