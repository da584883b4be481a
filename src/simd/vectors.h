// Numbers that are worked on at once. Each operation on vectors gives the results of the operation on their numbers,
// rounding included.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

namespace KxMath::detail {

/// Vectors of `kBytes` bytes: of floats, of doubles, and of answers to comparisons of these, -1 for yes.
template <std::size_t kBytes>
struct Vectors {
    static constexpr std::ptrdiff_t kFloats = kBytes / sizeof(float);
    static constexpr std::ptrdiff_t kDoubles = kBytes / sizeof(double);
    using Floats __attribute__((vector_size(kBytes))) = float;
    using FloatAnswers __attribute__((vector_size(kBytes))) = int;
    using Doubles __attribute__((vector_size(kBytes))) = double;
    using DoubleAnswers __attribute__((vector_size(kBytes))) = long long;
    using FewFloats __attribute__((vector_size(kBytes / 2))) = float; ///< as many as there are doubles
};

// How wide vectors are passed depends on the instructions that a function is compiled for: these are a part of theirs.

template <typename Vector, typename Number>
[[gnu::always_inline]] inline Vector loadVector(const Number* values) {
    Vector v;
    std::memcpy(&v, values, sizeof(v));
    return v;
}

template <typename Vector, typename Number>
[[gnu::always_inline]] inline void storeVector(Number* values, Vector v) {
    std::memcpy(values, &v, sizeof(v));
}

/// The same number throughout.
template <typename Vector, typename Number>
[[gnu::always_inline]] inline Vector repeated(Number value) {
    return value - Vector{}; // not 0 + value, which makes 0 of -0
}

/// The elements of `yes` where the answer is yes, and those of `no` where it is not, bit by bit.
template <typename Answers, typename Vector>
[[gnu::always_inline]] inline Vector select(Answers answers, Vector yes, Vector no) {
    return reinterpret_cast<Vector>((reinterpret_cast<Answers>(yes) & answers) |
                                    (reinterpret_cast<Answers>(no) & ~answers));
}

/// Every second float of two vectors from `kFirst` on.
template <int kFirst, typename Floats, std::size_t... kAt>
[[gnu::always_inline]] inline Floats everySecond(Floats a, Floats b, std::index_sequence<kAt...>) {
    return __builtin_shufflevector(a, b, (kFirst + 2 * static_cast<int>(kAt))...);
}

/// Numbers of `a` and `b` in turn, from number `kFirst` on.
template <int kFirst, typename Vector, std::size_t... kAt>
[[gnu::always_inline]] inline Vector inTurn(Vector a, Vector b, std::index_sequence<kAt...>) {
    constexpr int kCount = sizeof...(kAt);
    return __builtin_shufflevector(a, b, (kFirst + static_cast<int>(kAt / 2) + (kAt % 2 == 0 ? 0 : kCount))...);
}

/// Numbers of 32 bits of `a` and `b` in turn, as many as there is room for.
template <typename Vector>
[[gnu::always_inline]] inline Vector inTurn(Vector a, Vector b) {
    return inTurn<0>(a, b, std::make_index_sequence<sizeof(Vector) / 4>());
}

/// The first numbers of pairs that stand one after the other, a vector of them.
template <typename Floats>
[[gnu::always_inline]] inline Floats loadFirsts(const float* pairs) {
    constexpr std::size_t kCount = sizeof(Floats) / sizeof(float);
    return everySecond<0>(loadVector<Floats>(pairs), loadVector<Floats>(pairs + kCount),
                          std::make_index_sequence<kCount>());
}

/// The second numbers.
template <typename Floats>
[[gnu::always_inline]] inline Floats loadSeconds(const float* pairs) {
    constexpr std::size_t kCount = sizeof(Floats) / sizeof(float);
    return everySecond<1>(loadVector<Floats>(pairs), loadVector<Floats>(pairs + kCount),
                          std::make_index_sequence<kCount>());
}

/// Writes pairs of numbers one after the other.
template <typename Floats>
[[gnu::always_inline]] inline void storePairs(Floats firsts, Floats seconds, float* pairs) {
    constexpr std::size_t kCount = sizeof(Floats) / sizeof(float);
    constexpr std::make_index_sequence<kCount> kAll;
    storeVector(pairs, inTurn<0>(firsts, seconds, kAll));
    storeVector(pairs + kCount, inTurn<kCount / 2>(firsts, seconds, kAll));
}

} // namespace KxMath::detail
