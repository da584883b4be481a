// Four floats that are worked on at once.
#pragma once

#include <cstring>

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

inline bool areAll(Answers4 answers) {
    return (answers[0] & answers[1] & answers[2] & answers[3]) != 0;
}

} // namespace KxMath::detail
