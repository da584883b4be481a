// Trigonometric functions of many numbers at once. Each result is calculated in double precision with an error that is
// below 2^-40 of it. Where that leaves no doubt what the nearest float is, it is that of the standard library's
// function as well, which is nearer still; where it does, or where the argument is out of the ordinary, that function
// is asked.
#include "numeric/blockTrigonometry.h"

#include "numeric/angles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace KxMath::detail {

namespace {

// Two numbers that are worked on at once: as doubles, as their bits (or as the answers to a comparison, all bits for
// yes), and rounded.
using Double2 __attribute__((vector_size(16))) = double;
using Bits2 __attribute__((vector_size(16))) = long long;
using Float2 __attribute__((vector_size(8))) = float;

constexpr std::ptrdiff_t kAtOnce = 16;
using Floats = std::array<float, kAtOnce>;
using Numbers = std::array<Double2, kAtOnce / 2>;

constexpr double kDoubt = 1.0 / static_cast<double>(std::int64_t{1} << 39);
constexpr double kPiHalves = 1.5707963267948966;

Bits2 bitsOf(Double2 v) {
    return reinterpret_cast<Bits2>(v);
}

Double2 choose(Bits2 answers, Double2 yes, Double2 no) {
    return reinterpret_cast<Double2>((answers & bitsOf(yes)) | (~answers & bitsOf(no)));
}

Double2 withoutSign(Double2 v) {
    return reinterpret_cast<Double2>(bitsOf(v) & std::numeric_limits<long long>::max());
}

Double2 loadTwo(const Floats& values, std::size_t pair) {
    Float2 two;
    std::memcpy(&two, values.data() + 2 * pair, sizeof(two));
    return __builtin_convertvector(two, Double2);
}

/// The sum of coefficients times powers of `x`, the last coefficient being that of the highest power. Even and odd
/// powers are summed side by side, since each step waits for the one before.
template <std::size_t N>
Double2 polynomial(const std::array<double, N>& coeffs, Double2 x) {
    static_assert(N % 2 == 0);
    const Double2 square = x * x;
    Double2 even = Double2{} + coeffs[N - 2];
    Double2 odd = Double2{} + coeffs[N - 1];
    for (std::size_t i = N - 2; i > 0; i -= 2) {
        even = even * square + coeffs[i - 2];
        odd = odd * square + coeffs[i - 1];
    }
    return even + x * odd;
}

/// Taylor's coefficients of atan(t) / t in powers of t^2: 1, -1/3, 1/5 and so on.
constexpr std::array<double, 14> kAtanCoeffs = [] {
    std::array<double, 14> coeffs{};
    for (std::size_t i = 0; i < coeffs.size(); ++i) {
        coeffs[i] = (i % 2 == 0 ? 1.0 : -1.0) / static_cast<double>(2 * i + 1);
    }
    return coeffs;
}();

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

constexpr std::array<double, 8> kSinCoeffs = sineCoeffs(1);
constexpr std::array<double, 8> kCosCoeffs = sineCoeffs(0);

/// atan(|v|) = atan(c) + atan((|v| - c) / (1 + c |v|)) with c = 0, 1 or infinity, so that the series is about 0.4 at
/// most.
Double2 atanOf(Double2 signedValue) {
    constexpr double kTanOfEighth = 0.41421356237309503;
    constexpr double kTanOfThreeEighths = 2.4142135623730949;
    const Double2 zero{};
    const Double2 one = zero + 1.0;
    const Double2 v = withoutSign(signedValue);
    const Bits2 isSmall = v <= kTanOfEighth;
    const Bits2 isLarge = v > kTanOfThreeEighths;
    const Double2 numerator = choose(isLarge, -one, v - choose(isSmall, zero, one));
    const Double2 denominator = choose(isSmall, one, v + choose(isLarge, zero, one));
    const Double2 base = choose(isSmall, zero, choose(isLarge, kPiHalves * one, 0.5 * kPiHalves * one));
    const Double2 t = numerator / denominator;
    const Double2 result = base + t * polynomial(kAtanCoeffs, t * t);
    return reinterpret_cast<Double2>(bitsOf(result) | (bitsOf(signedValue) ^ bitsOf(v))); // the sign again
}

/// Sine and cosine by those of what remains beside a multiple of pi / 2.
void sineAndCosineOf(Double2 value, Double2& sine, Double2& cosine) {
    // pi / 2 as a sum: up to 2^20 times the first one is an exact double.
    constexpr double kUpper = 1.57079632673412561417;
    constexpr double kLower = 6.07710050650619224932e-11;
    constexpr double kToInteger = 6755399441055744.0; // 1.5 * 2^52: what is added to it is rounded to an integer
    const Double2 shifted = value * (1.0 / kPiHalves) + kToInteger;
    const Double2 quarters = shifted - kToInteger;
    const Double2 rest = value - quarters * kUpper - quarters * kLower;
    const Double2 square = rest * rest;
    const Double2 sineOfRest = rest * polynomial(kSinCoeffs, square);
    const Double2 cosineOfRest = polynomial(kCosCoeffs, square);
    const Bits2 isOdd = -(bitsOf(shifted) & 1);
    // Of four quarters the sine is negative in the last two, the cosine in the middle ones: the sign is the top bit.
    const Bits2 sineSign = (bitsOf(shifted) & 2) << 62;
    const Bits2 cosineSign = ((bitsOf(shifted) + 1) & 2) << 62;
    sine = reinterpret_cast<Double2>(bitsOf(choose(isOdd, cosineOfRest, sineOfRest)) ^ sineSign);
    cosine = reinterpret_cast<Double2>(bitsOf(choose(isOdd, sineOfRest, cosineOfRest)) ^ cosineSign);
}

/// Rounds results. @return false when one of them is too near the middle between two floats, or is none
bool roundAll(const Numbers& results, Floats& rounded) {
    Bits2 areSure = ~Bits2{};
    for (std::size_t pair = 0; pair < results.size(); ++pair) {
        const Double2 result = results[pair];
        const Double2 doubt = withoutSign(result) * kDoubt;
        const Float2 lower = __builtin_convertvector(result - doubt, Float2);
        const Float2 upper = __builtin_convertvector(result + doubt, Float2);
        const Float2 middle = __builtin_convertvector(result, Float2);
        areSure &= __builtin_convertvector(lower, Double2) == __builtin_convertvector(upper, Double2); // NaN: no
        std::memcpy(rounded.data() + 2 * pair, &middle, sizeof(middle));
    }
    return (areSure[0] & areSure[1]) != 0;
}

/// What is left of `count` values from `begin` on, as a whole block.
Floats blockOf(const float* values, std::ptrdiff_t begin, std::ptrdiff_t count) {
    Floats block{};
    std::copy_n(values + begin, std::min(kAtOnce, count - begin), block.begin());
    return block;
}

} // namespace

void atanOf(const float* values, std::ptrdiff_t count, float* results) {
    for (std::ptrdiff_t begin = 0; begin < count; begin += kAtOnce) {
        const Floats block = blockOf(values, begin, count);
        Numbers numbers;
        Floats rounded;
        for (std::size_t pair = 0; pair < numbers.size(); ++pair) {
            numbers[pair] = atanOf(loadTwo(block, pair));
        }
        if (!roundAll(numbers, rounded)) {
            std::transform(block.begin(), block.end(), rounded.begin(), atanF);
        }
        std::copy_n(rounded.begin(), std::min(kAtOnce, count - begin), results + begin);
    }
}

void sinesAndCosinesOf(const float* radians, std::ptrdiff_t count, float* sines, float* cosines) {
    constexpr float kLargest = 100000.0f; // so many quarters that they are still exact
    for (std::ptrdiff_t begin = 0; begin < count; begin += kAtOnce) {
        const Floats block = blockOf(radians, begin, count);
        Numbers sineNumbers;
        Numbers cosineNumbers;
        Floats roundedSines;
        Floats roundedCosines;
        int large = 0;
        for (const float radian : block) {
            large += std::abs(radian) <= kLargest ? 0 : 1; // NaN: 1
        }
        for (std::size_t pair = 0; pair < sineNumbers.size(); ++pair) {
            sineAndCosineOf(loadTwo(block, pair), sineNumbers[pair], cosineNumbers[pair]);
        }
        if (large > 0 || !roundAll(sineNumbers, roundedSines)) {
            std::transform(block.begin(), block.end(), roundedSines.begin(), sinF);
        }
        if (large > 0 || !roundAll(cosineNumbers, roundedCosines)) {
            std::transform(block.begin(), block.end(), roundedCosines.begin(), cosF);
        }
        const std::ptrdiff_t filled = std::min(kAtOnce, count - begin);
        std::copy_n(roundedSines.begin(), filled, sines + begin);
        std::copy_n(roundedCosines.begin(), filled, cosines + begin);
    }
}

} // namespace KxMath::detail
