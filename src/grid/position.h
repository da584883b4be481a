// Positions on a regular grid.
#pragma once

#include <QtCore/qglobal.h>

namespace KxMath::detail {

/// origin + index * pitch, calculated in double precision and rounded once.
inline float gridPosition(qsizetype index, float pitch, float origin) {
    return static_cast<float>(static_cast<double>(index) * static_cast<double>(pitch) + static_cast<double>(origin));
}

} // namespace KxMath::detail
