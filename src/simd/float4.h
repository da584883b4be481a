// Vectors of four floats, which every processor that the library is built for has, and what needs intrinsics.
#pragma once

#include "simd/vectors.h"

#include <cmath>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace KxMath::detail {

using Float4 = Vectors<16>::Floats;
using Mask4 = Vectors<16>::FloatMask;

inline Float4 loadFloat4(const float* values) {
    return loadVector<Float4>(values);
}

inline void storeFloat4(float* values, Float4 v) {
    storeVector(values, v);
}

/// Two floats, then two zeros.
inline Float4 loadFloat2(const float* values) {
    // As one number of 8 bytes: put together in memory, the load of the vector would wait for both stores.
    double both;
    std::memcpy(&both, values, sizeof(both));
    return reinterpret_cast<Float4>(Vectors<16>::Doubles{both, 0.0});
}

/// `v < bound ? v : bound` for each lane: NaN and a zero of the other sign leave the bound.
[[gnu::always_inline]] inline Float4 minOf(Float4 v, Float4 bound) {
#ifdef __SSE2__
    return _mm_min_ps(v, bound); // defined that way; compilers take three instructions for the conditional
#else
    return v < bound ? v : bound;
#endif
}

/// `v > bound ? v : bound` for each lane: NaN and a zero of the other sign leave the bound.
[[gnu::always_inline]] inline Float4 maxOf(Float4 v, Float4 bound) {
#ifdef __SSE2__
    return _mm_max_ps(v, bound);
#else
    return v > bound ? v : bound;
#endif
}

/// The square root of each lane, correctly rounded.
[[gnu::always_inline]] inline Float4 rootOf(Float4 v) {
#ifdef __SSE2__
    return _mm_sqrt_ps(v); // the vector extension has none, and compilers keep a call that sets errno for std::sqrt()
#else
    return Float4{std::sqrt(v[0]), std::sqrt(v[1]), std::sqrt(v[2]), std::sqrt(v[3])};
#endif
}

[[gnu::always_inline]] inline Vectors<32>::Floats rootOf(Vectors<32>::Floats v) {
    const Float4 low = rootOf(__builtin_shufflevector(v, v, 0, 1, 2, 3));
    const Float4 high = rootOf(__builtin_shufflevector(v, v, 4, 5, 6, 7));
    return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
}

/// Whether a lane of a mask is true.
[[gnu::always_inline]] inline bool anyOf(Mask4 mask) {
#ifdef __SSE2__
    return _mm_movemask_ps(reinterpret_cast<__m128>(mask)) != 0;
#else
    return (mask[0] | mask[1] | mask[2] | mask[3]) != 0;
#endif
}

/// Whether all lanes of a mask are true. The mask may be of any width and number type.
template <typename Mask>
[[gnu::always_inline]] inline bool allOf(Mask mask) {
    if constexpr (sizeof(Mask) == sizeof(Mask4)) {
        return !anyOf(~reinterpret_cast<Mask4>(mask));
    } else {
        static_assert(sizeof(Mask) == 2 * sizeof(Mask4));
        const auto all = reinterpret_cast<typename Vectors<sizeof(Mask)>::FloatMask>(mask);
        return allOf(__builtin_shufflevector(all, all, 0, 1, 2, 3) & __builtin_shufflevector(all, all, 4, 5, 6, 7));
    }
}

/// Writes triples of a lane of each vector.
inline void storeInterleaved(Float4 a, Float4 b, Float4 c, float* triples) {
    const Float4 low = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Float4 high = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Float4 endOfSecond = __builtin_shufflevector(low, c, 3, 4, 3, 4);
    storeFloat4(triples, __builtin_shufflevector(low, c, 0, 1, 4, 2));
    storeFloat4(triples + 4, __builtin_shufflevector(endOfSecond, high, 0, 1, 4, 5));
    storeFloat4(triples + 8, __builtin_shufflevector(high, c, 4, 2, 3, 5));
}

/// Exchanges rows and columns: lane i of the first vector becomes the first lane of vector i, and so on.
inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
    const Float4 lowAB = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Float4 lowCD = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Float4 highAB = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Float4 highCD = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a = __builtin_shufflevector(lowAB, lowCD, 0, 1, 4, 5);
    b = __builtin_shufflevector(lowAB, lowCD, 2, 3, 6, 7);
    c = __builtin_shufflevector(highAB, highCD, 0, 1, 4, 5);
    d = __builtin_shufflevector(highAB, highCD, 2, 3, 6, 7);
}

} // namespace KxMath::detail
