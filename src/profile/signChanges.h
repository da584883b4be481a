// Where y changes its sign.
#pragma once

namespace KxMath::detail {

/// Deliberately strict: a value of exactly 0 has no sign and hides the change across it. NaN: false.
inline bool changesSign(float a, float b) {
    return (a < 0.0f && b > 0.0f) || (a > 0.0f && b < 0.0f);
}

} // namespace KxMath::detail
