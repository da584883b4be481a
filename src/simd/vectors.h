// Vectors of floats and doubles, made of the vector extension of g++ and clang. An operation on vectors gives the
// results of the same operation on each lane, rounding included.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

namespace KxMath::detail {

/// The vectors of `kBytes` bytes. The lanes of a mask are -1 (true) or 0 (false).
template <std::size_t kBytes>
struct Vectors {
    static constexpr std::ptrdiff_t kFloatLanes = kBytes / sizeof(float);
    static constexpr std::ptrdiff_t kDoubleLanes = kBytes / sizeof(double);
    using Floats __attribute__((vector_size(kBytes))) = float;
    using FloatMask __attribute__((vector_size(kBytes))) = int;
    using Doubles __attribute__((vector_size(kBytes))) = double;
    using DoubleMask __attribute__((vector_size(kBytes))) = long long;
    using HalfFloats __attribute__((vector_size(kBytes / 2))) = float; ///< as many lanes as Doubles
};

// All functions on vectors are always_inline: how a vector is passed depends on the instruction set that a function is
// compiled for, and these become parts of kernels for different ones. See docs/kernels.md.

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

/// The same number in all lanes.
template <typename Vector, typename Number>
[[gnu::always_inline]] inline Vector broadcast(Number value) {
    return value - Vector{}; // not value + 0, which makes 0 of -0
}

/// Each lane converted to the number type of `Vector`.
template <typename Vector, typename From>
[[gnu::always_inline]] inline Vector convert(From v) {
    return __builtin_convertvector(v, Vector);
}

/// Floats as a vector of doubles.
template <typename Doubles>
[[gnu::always_inline]] inline Doubles loadAsDoubles(const float* values) {
    return convert<Doubles>(loadVector<typename Vectors<sizeof(Doubles)>::HalfFloats>(values));
}

/// A vector of doubles, each rounded to a float.
template <typename Doubles>
[[gnu::always_inline]] inline void storeAsFloats(float* values, Doubles v) {
    storeVector(values, convert<typename Vectors<sizeof(Doubles)>::HalfFloats>(v));
}

/// The lanes of `a` where the mask is true, those of `b` where it is false; bit by bit, so that NaN keeps its bits.
template <typename Mask, typename Vector>
[[gnu::always_inline]] inline Vector select(Mask mask, Vector a, Vector b) {
    return reinterpret_cast<Vector>((reinterpret_cast<Mask>(a) & mask) | (reinterpret_cast<Mask>(b) & ~mask));
}

/// Every second lane of `a` and `b`, one behind the other, from lane `kFirst` on.
template <int kFirst, typename Floats, std::size_t... kLane>
[[gnu::always_inline]] inline Floats deinterleave(Floats a, Floats b, std::index_sequence<kLane...>) {
    return __builtin_shufflevector(a, b, (kFirst + 2 * static_cast<int>(kLane))...);
}

/// Lanes of `a` and `b` alternately, from lane `kFirst` on.
template <int kFirst, typename Vector, std::size_t... kLane>
[[gnu::always_inline]] inline Vector interleave(Vector a, Vector b, std::index_sequence<kLane...>) {
    constexpr int kLanes = sizeof...(kLane);
    return __builtin_shufflevector(a, b, (kFirst + static_cast<int>(kLane / 2) + (kLane % 2 == 0 ? 0 : kLanes))...);
}

/// The lower half of the lanes of `a` and `b` alternately, which are of 32 bits.
template <typename Vector>
[[gnu::always_inline]] inline Vector interleaveLow(Vector a, Vector b) {
    return interleave<0>(a, b, std::make_index_sequence<sizeof(Vector) / 4>());
}

/// The first numbers of as many pairs as a vector has lanes.
template <typename Floats>
[[gnu::always_inline]] inline Floats loadFirstsOfPairs(const float* pairs) {
    constexpr std::size_t kLanes = sizeof(Floats) / sizeof(float);
    return deinterleave<0>(loadVector<Floats>(pairs), loadVector<Floats>(pairs + kLanes),
                           std::make_index_sequence<kLanes>());
}

/// The second numbers of as many pairs as a vector has lanes.
template <typename Floats>
[[gnu::always_inline]] inline Floats loadSecondsOfPairs(const float* pairs) {
    constexpr std::size_t kLanes = sizeof(Floats) / sizeof(float);
    return deinterleave<1>(loadVector<Floats>(pairs), loadVector<Floats>(pairs + kLanes),
                           std::make_index_sequence<kLanes>());
}

/// Writes pairs of a lane of each vector.
template <typename Floats>
[[gnu::always_inline]] inline void storeInterleaved(Floats firsts, Floats seconds, float* pairs) {
    constexpr std::size_t kLanes = sizeof(Floats) / sizeof(float);
    constexpr std::make_index_sequence<kLanes> kAll;
    storeVector(pairs, interleave<0>(firsts, seconds, kAll));
    storeVector(pairs + kLanes, interleave<kLanes / 2>(firsts, seconds, kAll));
}

} // namespace KxMath::detail
