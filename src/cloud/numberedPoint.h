// A point on its way through a filter.
#pragma once

#include <cstdint>

namespace KxMath::detail {

/// A point with its number in some list. Without constructors, so that a buffer of them can stay uninitialised.
struct NumberedPoint {
    float x;
    float y;
    float z;
    std::uint32_t number;
};

} // namespace KxMath::detail
