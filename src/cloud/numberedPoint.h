// A point on its way through a filter.
#pragma once

#include <cstdint>

namespace KxMath::detail {

/// A point with its number in some list. Without constructors, so that room for many is not filled in vain.
struct NumberedPoint {
    float x;
    float y;
    float z;
    std::uint32_t number;
};

} // namespace KxMath::detail
