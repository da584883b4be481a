// What the functions that turn results into JSON have in common.
#pragma once

#include "Export.h"

#include <string>

namespace KxInspect {

/// Whether JSON holds what pages draw, beside the values.
enum class Pictures {
    Left, ///< only the values
    Included, ///< one member "pictures" more: points, lines, curves
};

/// The shortest decimal text that reads back as the same float, "1360.1"; empty for NaN and infinities.
KXINSPECT_EXPORT std::string shortestText(float value);

} // namespace KxInspect
