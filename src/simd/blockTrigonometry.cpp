// Trigonometric functions of many numbers at once. Each result is calculated in double precision with a relative error
// below 2^-40. Where every double within that error rounds to the same float, the function of the standard library,
// whose error is smaller still, rounds to it as well. Where they do not, and for arguments out of the ordinary, the
// block is calculated with that function.
#include "simd/blockTrigonometry.h"

#include "rounding/angles.h"
#include "simd/float4.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace KxMath::detail {

namespace {

constexpr std::ptrdiff_t kBlock = 16;
using Floats = std::array<float, kBlock>;

/// A block of numbers in double precision.
template <typename Doubles>
using Numbers = std::array<Doubles, sizeof(double) * kBlock / sizeof(Doubles)>;

constexpr double kMaxError = 1.0 / static_cast<double>(std::int64_t{1} << 39);
constexpr double kPiHalves = 1.5707963267948966;

/// The bits of doubles, or a mask of them.
template <typename Doubles>
using BitsOf = typename Vectors<sizeof(Doubles)>::DoubleMask;

template <typename Doubles>
[[gnu::always_inline]] inline BitsOf<Doubles> bitsOf(Doubles v) {
    return reinterpret_cast<BitsOf<Doubles>>(v);
}

template <typename Doubles>
[[gnu::always_inline]] inline Doubles withoutSign(Doubles v) {
    return reinterpret_cast<Doubles>(bitsOf(v) & std::numeric_limits<long long>::max());
}

/// Vector `i` of the block.
template <typename Doubles>
[[gnu::always_inline]] inline Doubles loadDoubles(const Floats& block, std::size_t i) {
    constexpr std::size_t kLanes = sizeof(Doubles) / sizeof(double);
    return loadAsDoubles<Doubles>(block.data() + kLanes * i);
}

/// The sum of coefficients times powers of `x`, the last coefficient being that of the highest power. The steps of
/// Horner's scheme are a loop-carried dependency; even and odd powers are two independent chains, interleaved.
template <typename Doubles, std::size_t N>
[[gnu::always_inline]] inline Doubles polynomial(const std::array<double, N>& coeffs, Doubles x) {
    static_assert(N % 2 == 0);
    const Doubles square = x * x;
    Doubles even = broadcast<Doubles>(coeffs[N - 2]);
    Doubles odd = broadcast<Doubles>(coeffs[N - 1]);
    for (std::size_t i = N - 2; i > 0; i -= 2) {
        even = even * square + coeffs[i - 2];
        odd = odd * square + coeffs[i - 1];
    }
    return even + x * odd;
}

/// Taylor's coefficients of atan(t) / t in powers of t^2: 1, -1/3, 1/5 and so on.
constexpr std::array<double, 14> atanCoeffs() {
    std::array<double, 14> coeffs{};
    for (std::size_t i = 0; i < coeffs.size(); ++i) {
        coeffs[i] = (i % 2 == 0 ? 1.0 : -1.0) / static_cast<double>(2 * i + 1);
    }
    return coeffs;
}

/// Taylor's coefficients of sin(r) / r (`first` 1) or cos(r) (`first` 0) in powers of r^2: 1 / n! with changing sign.
constexpr std::array<double, 8> sineCoeffs(int first) {
    std::array<double, 8> coeffs{};
    double coeff = 1.0;
    for (std::size_t i = 0; i < coeffs.size(); ++i) {
        coeffs[i] = coeff;
        const int n = 2 * static_cast<int>(i) + first;
        coeff /= -static_cast<double>((n + 1) * (n + 2));
    }
    return coeffs;
}

constexpr std::array<double, 14> kAtanCoeffs = atanCoeffs();
constexpr std::array<double, 8> kSinCoeffs = sineCoeffs(1);
constexpr std::array<double, 8> kCosCoeffs = sineCoeffs(0);

/// atan(|v|) = atan(c) + atan((|v| - c) / (1 + c |v|)) with c = 0, 1 or infinity, so that the series is about 0.4 at
/// most.
template <typename Doubles>
[[gnu::always_inline]] inline Doubles atanOf(Doubles signedValue) {
    constexpr double kTanOfEighth = 0.41421356237309503;
    constexpr double kTanOfThreeEighths = 2.4142135623730949;
    const Doubles zero{};
    const Doubles one = broadcast<Doubles>(1.0);
    const Doubles v = withoutSign(signedValue);
    const BitsOf<Doubles> isSmall = v <= kTanOfEighth;
    const BitsOf<Doubles> isLarge = v > kTanOfThreeEighths;
    const Doubles numerator = select(isLarge, -one, v - select(isSmall, zero, one));
    const Doubles denominator = select(isSmall, one, v + select(isLarge, zero, one));
    const Doubles base = select(isSmall, zero, select(isLarge, kPiHalves * one, 0.5 * kPiHalves * one));
    const Doubles t = numerator / denominator;
    const Doubles result = base + t * polynomial(kAtanCoeffs, t * t);
    return reinterpret_cast<Doubles>(bitsOf(result) | (bitsOf(signedValue) ^ bitsOf(v))); // the sign again
}

/// Sine and cosine by those of what remains beside a multiple of pi / 2.
template <typename Doubles>
[[gnu::always_inline]] inline void sineAndCosineOf(Doubles value, Doubles& sine, Doubles& cosine) {
    // pi / 2 as a sum of which the first part has trailing zeros: up to 2^20 times it is an exact double, so that the
    // subtraction loses nothing (W. J. Cody, W. Waite, Software Manual for the Elementary Functions, 1980).
    constexpr double kUpper = 1.57079632673412561417;
    constexpr double kLower = 6.07710050650619224932e-11;
    constexpr double kToInteger = 6755399441055744.0; // 1.5 * 2^52: what is added to it is rounded to an integer
    const Doubles shifted = value * (1.0 / kPiHalves) + kToInteger;
    const Doubles quarters = shifted - kToInteger;
    const Doubles rest = value - quarters * kUpper - quarters * kLower;
    const Doubles square = rest * rest;
    const Doubles sineOfRest = rest * polynomial(kSinCoeffs, square);
    const Doubles cosineOfRest = polynomial(kCosCoeffs, square);
    const BitsOf<Doubles> isOdd = -(bitsOf(shifted) & 1);
    // Of four quarters the sine is negative in the last two, the cosine in the middle ones: the sign is the top bit.
    const BitsOf<Doubles> sineSign = (bitsOf(shifted) & 2) << 62;
    const BitsOf<Doubles> cosineSign = ((bitsOf(shifted) + 1) & 2) << 62;
    sine = reinterpret_cast<Doubles>(bitsOf(select(isOdd, cosineOfRest, sineOfRest)) ^ sineSign);
    cosine = reinterpret_cast<Doubles>(bitsOf(select(isOdd, sineOfRest, cosineOfRest)) ^ cosineSign);
}

/// Rounds results. @return false when one of them is NaN, or so near the middle between two floats that the error may
/// decide which one is nearest
template <typename Doubles>
[[gnu::always_inline]] inline bool roundAll(const Numbers<Doubles>& results, Floats& rounded) {
    using HalfFloats = typename Vectors<sizeof(Doubles)>::HalfFloats;
    BitsOf<Doubles> areSure = ~BitsOf<Doubles>{};
    float* target = rounded.data();
    for (const Doubles result : results) {
        const Doubles error = withoutSign(result) * kMaxError;
        const HalfFloats lowest = convert<HalfFloats>(result - error);
        const HalfFloats highest = convert<HalfFloats>(result + error);
        areSure &= convert<Doubles>(lowest) == convert<Doubles>(highest); // NaN: false
        storeAsFloats(target, result);
        target += sizeof(Doubles) / sizeof(double);
    }
    return allOf(areSure);
}

/// The values from `begin` on, zeros where there are fewer than a block.
inline Floats blockOf(const float* values, std::ptrdiff_t begin, std::ptrdiff_t count) {
    Floats block{};
    std::copy_n(values + begin, std::min(kBlock, count - begin), block.begin());
    return block;
}

} // namespace

void atanOf(const float* values, std::ptrdiff_t count, float* results, InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Doubles = typename Vectors<kBytes>::Doubles;
        for (std::ptrdiff_t begin = 0; begin < count; begin += kBlock) {
            const Floats block = blockOf(values, begin, count);
            Numbers<Doubles> numbers;
            Floats rounded;
            for (std::size_t i = 0; i < numbers.size(); ++i) {
                numbers[i] = atanOf(loadDoubles<Doubles>(block, i));
            }
            if (!roundAll<Doubles>(numbers, rounded)) {
                std::transform(block.begin(), block.end(), rounded.begin(), atanF);
            }
            std::copy_n(rounded.begin(), std::min(kBlock, count - begin), results + begin);
        }
    });
}

void sinesAndCosinesOf(const float* radians, std::ptrdiff_t count, float* sines, float* cosines,
                       InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Doubles = typename Vectors<kBytes>::Doubles;
        constexpr float kLargest = 100000.0f; // its multiple of pi / 2 is still exact
        for (std::ptrdiff_t begin = 0; begin < count; begin += kBlock) {
            const Floats block = blockOf(radians, begin, count);
            Numbers<Doubles> sineNumbers;
            Numbers<Doubles> cosineNumbers;
            Floats roundedSines;
            Floats roundedCosines;
            int large = 0;
            for (const float radian : block) {
                large += std::abs(radian) <= kLargest ? 0 : 1; // NaN: 1
            }
            for (std::size_t i = 0; i < sineNumbers.size(); ++i) {
                sineAndCosineOf(loadDoubles<Doubles>(block, i), sineNumbers[i], cosineNumbers[i]);
            }
            if (large > 0 || !roundAll<Doubles>(sineNumbers, roundedSines)) {
                std::transform(block.begin(), block.end(), roundedSines.begin(), sinF);
            }
            if (large > 0 || !roundAll<Doubles>(cosineNumbers, roundedCosines)) {
                std::transform(block.begin(), block.end(), roundedCosines.begin(), cosF);
            }
            const std::ptrdiff_t filled = std::min(kBlock, count - begin);
            std::copy_n(roundedSines.begin(), filled, sines + begin);
            std::copy_n(roundedCosines.begin(), filled, cosines + begin);
        }
    });
}

} // namespace KxMath::detail
