// The options of kxmath conicity.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/options.h"

#include <KxInspect/Conicity.h>

namespace kxtool {

class ConicityOptions : public Options {
public:
    ConicityOptions();

    /// The profiles and the track that the options describe.
    KxInspect::ConicityInput input() const;

    /// The verdicts on which the command fails.
    FailOn failOn() const;
};

} // namespace kxtool
