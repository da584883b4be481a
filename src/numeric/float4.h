// Four floats that are worked on at once.
#pragma once

#include <cstring>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace KxMath::detail {

/// Each operation gives the four results of the operation on floats, rounding included.
using Float4 __attribute__((vector_size(16))) = float;

/// Four answers of a comparison, -1 for yes.
using Answers4 __attribute__((vector_size(16))) = int;

inline Float4 loadFloat4(const float* values) {
    Float4 v;
    std::memcpy(&v, values, sizeof(v));
    return v;
}

inline void storeFloat4(float* values, Float4 v) {
    std::memcpy(values, &v, sizeof(v));
}

/// The elements of `yes` where the answer is yes, and those of `no` where it is not, bit by bit.
inline Float4 select(Answers4 answers, Float4 yes, Float4 no) {
    return reinterpret_cast<Float4>((reinterpret_cast<Answers4>(yes) & answers) |
                                    (reinterpret_cast<Answers4>(no) & ~answers));
}

/// The magnitudes, by dropping the signs.
inline Float4 magnitudes(Float4 v) {
    constexpr int kWithoutSign = 0x7fffffff;
    const Answers4 mask = {kWithoutSign, kWithoutSign, kWithoutSign, kWithoutSign};
    return reinterpret_cast<Float4>(reinterpret_cast<Answers4>(v) & mask);
}

/// Whether there is a yes among the answers.
inline bool anyOf(Answers4 answers) {
#ifdef __SSE__
    return _mm_movemask_ps(reinterpret_cast<__m128>(answers)) != 0;
#else
    return (answers[0] | answers[1] | answers[2] | answers[3]) != 0;
#endif
}

/// Whether all answers are yes.
inline bool allOf(Answers4 answers) {
    return !anyOf(~answers);
}

/// The first or the second numbers of four pairs that stand one after the other.
inline Float4 loadFirsts(const float* pairs) {
    return __builtin_shufflevector(loadFloat4(pairs), loadFloat4(pairs + 4), 0, 2, 4, 6);
}
inline Float4 loadSeconds(const float* pairs) {
    return __builtin_shufflevector(loadFloat4(pairs), loadFloat4(pairs + 4), 1, 3, 5, 7);
}

/// Writes four pairs of numbers one after the other.
inline void storePairs(Float4 firsts, Float4 seconds, float* pairs) {
    const Float4 low = __builtin_shufflevector(firsts, seconds, 0, 4, 1, 5);
    const Float4 high = __builtin_shufflevector(firsts, seconds, 2, 6, 3, 7);
    std::memcpy(pairs, &low, sizeof(low));
    std::memcpy(pairs + 4, &high, sizeof(high));
}

} // namespace KxMath::detail
