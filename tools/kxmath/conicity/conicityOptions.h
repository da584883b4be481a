// The options of kxmath conicity.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/Conicity.h>

namespace kxtool {

class ConicityOptions : public Options {
public:
    ConicityOptions();

    /// What the options say about the profiles and the track.
    KxInspect::ConicityInput input() const;
};

} // namespace kxtool
