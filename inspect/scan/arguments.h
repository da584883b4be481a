// Checks of arguments.
#pragma once

#include "inspect/base/error.h"

#include <KxInspect/HeightMap.h>

#include <cmath>

namespace KxInspect::detail {

/// Throws an Error about an argument.
[[noreturn]] inline void failArgument(const char* key, const QString& reason) {
    fail(ErrorKind::BadArgument, {{}, {}, key}, reason);
}

/// Throws an Error unless a number is finite and above 0.
inline void checkAbove0(const char* key, float value) {
    if (!(value > 0.0f) || !std::isfinite(value)) {
        failArgument(key, QStringLiteral("%1 needs a number above 0, got %2")
                              .arg(QLatin1String(key))
                              .arg(static_cast<double>(value)));
    }
}

/// Throws an Error unless a number is finite.
inline void checkFinite(const char* key, float value) {
    if (!std::isfinite(value)) {
        failArgument(
            key, QStringLiteral("%1 needs a number, got %2").arg(QLatin1String(key)).arg(static_cast<double>(value)));
    }
}

/// Throws an Error unless a map has one height per cell.
inline void checkMap(const HeightMap& map) {
    if (map.rows < 1 || map.columns < 1 || map.heights.size() != map.position(map.rows, 0)) {
        failArgument("map", QStringLiteral("the map has %1 heights for %2 rows and %3 columns")
                                .arg(map.heights.size())
                                .arg(map.rows)
                                .arg(map.columns));
    }
}

} // namespace KxInspect::detail
