// Four floats that are worked on at once.
#pragma once

#include "simd/vectors.h"

#include <cstring>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace KxMath::detail {

using Float4 = Vectors<16>::Floats;
using Answers4 = Vectors<16>::FloatAnswers;

inline Float4 loadFloat4(const float* values) {
    return loadVector<Float4>(values);
}

inline void storeFloat4(float* values, Float4 v) {
    storeVector(values, v);
}

/// The magnitudes, by dropping the signs.
inline Float4 magnitudes(Float4 v) {
    constexpr int kWithoutSign = 0x7fffffff;
    const Answers4 mask = {kWithoutSign, kWithoutSign, kWithoutSign, kWithoutSign};
    return reinterpret_cast<Float4>(reinterpret_cast<Answers4>(v) & mask);
}

/// Two floats, and two zeros behind them.
inline Float4 loadFloat2(const float* values) {
    // As one number of 8 bytes: assembled in memory, the register would have to wait for both parts.
    double both;
    std::memcpy(&both, values, sizeof(both));
    return reinterpret_cast<Float4>(Vectors<16>::Doubles{both, 0.0});
}

/// `v < bound ? v : bound` for each float: NaN and a zero of the other sign leave the bound.
inline Float4 lowerOf(Float4 v, Float4 bound) {
#ifdef __SSE__
    return _mm_min_ps(v, bound); // has this definition; compilers use three instructions for the conditional
#else
    return v < bound ? v : bound;
#endif
}

/// `v > bound ? v : bound` for each float: NaN and a zero of the other sign leave the bound.
inline Float4 upperOf(Float4 v, Float4 bound) {
#ifdef __SSE__
    return _mm_max_ps(v, bound);
#else
    return v > bound ? v : bound;
#endif
}

/// Whether there is a yes among the answers.
inline bool anyOf(Answers4 answers) {
#ifdef __SSE__
    return _mm_movemask_ps(reinterpret_cast<__m128>(answers)) != 0;
#else
    return (answers[0] | answers[1] | answers[2] | answers[3]) != 0;
#endif
}

/// Whether all answers are yes, of a vector of any width.
template <typename Answers>
[[gnu::always_inline]] inline bool allOf(Answers answers) {
    if constexpr (sizeof(Answers) == sizeof(Answers4)) {
        return !anyOf(~reinterpret_cast<Answers4>(answers));
    } else {
        static_assert(sizeof(Answers) == 2 * sizeof(Answers4));
        const auto all = reinterpret_cast<typename Vectors<sizeof(Answers)>::FloatAnswers>(answers);
        return allOf(__builtin_shufflevector(all, all, 0, 1, 2, 3) & __builtin_shufflevector(all, all, 4, 5, 6, 7));
    }
}

} // namespace KxMath::detail
