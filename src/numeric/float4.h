// Four floats that are worked on at once.
#pragma once

#include "numeric/vectors.h"

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

/// A bit for each answer, the lowest for the first.
inline unsigned answerBits(Answers4 answers) {
#ifdef __SSE__
    return static_cast<unsigned>(_mm_movemask_ps(reinterpret_cast<__m128>(answers)));
#else
    return (answers[0] & 1u) | (answers[1] & 2u) | (answers[2] & 4u) | (answers[3] & 8u);
#endif
}

/// Whether there is a yes among the answers.
inline bool anyOf(Answers4 answers) {
    return answerBits(answers) != 0;
}

/// Whether all answers are yes.
inline bool allOf(Answers4 answers) {
    return !anyOf(~answers);
}

/// Whether all answers of a vector of any width are yes.
template <typename Answers>
[[gnu::always_inline]] inline bool areAllYes(Answers answers) {
    if constexpr (sizeof(Answers) == sizeof(Answers4)) {
        return allOf(reinterpret_cast<Answers4>(answers));
    } else {
        static_assert(sizeof(Answers) == 2 * sizeof(Answers4));
        const auto all = reinterpret_cast<typename Vectors<sizeof(Answers)>::FloatAnswers>(answers);
        return allOf(__builtin_shufflevector(all, all, 0, 1, 2, 3) & __builtin_shufflevector(all, all, 4, 5, 6, 7));
    }
}

} // namespace KxMath::detail
