// Range checks of arguments.
#pragma once

#include "inspect/base/error.h"

#include <array>

namespace KxInspect::detail {

/// Throws an Error when a value is not in its range, bounds included: "gauge needs a number from 100 to 10000, got 5".
inline void checkRange(const char* name, float value, const std::array<double, 2>& range) {
    if (!(value >= static_cast<float>(range[0]) && value <= static_cast<float>(range[1]))) { // NaN: true
        const auto number = [](double v) { return QString::number(v); };
        fail(ErrorKind::BadArgument, {{}, {}, name},
             QStringLiteral("%1 needs a number from %2 to %3, got %4")
                 .arg(QLatin1String(name), number(range[0]), number(range[1]), number(static_cast<double>(value))));
    }
}

} // namespace KxInspect::detail
