// Four floats that are worked on at once.
#pragma once

#include <cstring>

namespace KxMath::detail {

/// Each operation gives the four results of the operation on floats, rounding included.
using Float4 __attribute__((vector_size(16))) = float;

inline Float4 loadFloat4(const float* values) {
    Float4 v;
    std::memcpy(&v, values, sizeof(v));
    return v;
}

} // namespace KxMath::detail
