// Loading, storing and comparing the coordinates of adjacent points.
#pragma once

#include "KxMath/KxPoints.h"

#include "simd/float4.h"
#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

// Points are interleaved pairs of floats.
static_assert(sizeof(KxPointXY) == 2 * sizeof(float));

/// The x of as many points as a vector has lanes.
template <typename Floats = Float4>
[[gnu::always_inline]] inline Floats loadXs(const KxPointXY* points) {
    return loadFirstsOfPairs<Floats>(&points->x);
}

/// The y of as many points as a vector has lanes.
template <typename Floats = Float4>
[[gnu::always_inline]] inline Floats loadYs(const KxPointXY* points) {
    return loadSecondsOfPairs<Floats>(&points->x);
}

/// Copies the y of `count` points.
inline void copyYs(const KxPointXY* points, std::ptrdiff_t count, float* ys) {
    std::ptrdiff_t i = 0;
    for (; i + 4 <= count; i += 4) {
        storeFloat4(ys + i, loadYs(points + i));
    }
    for (; i < count; ++i) {
        ys[i] = points[i].y;
    }
}

/// Copies the x of `count` points.
inline void copyXs(const KxPointXY* points, std::ptrdiff_t count, float* xs) {
    std::ptrdiff_t i = 0;
    for (; i + 4 <= count; i += 4) {
        storeFloat4(xs + i, loadXs(points + i));
    }
    for (; i < count; ++i) {
        xs[i] = points[i].x;
    }
}

/// Sets the coordinates of `count` points.
inline void setPoints(const float* xs, const float* ys, std::ptrdiff_t count, KxPointXY* points) {
    std::ptrdiff_t i = 0;
    for (; i + 4 <= count; i += 4) {
        storeInterleaved(loadFloat4(xs + i), loadFloat4(ys + i), &points[i].x);
    }
    for (; i < count; ++i) {
        points[i] = KxPointXY(xs[i], ys[i]);
    }
}

/// Whether `holds(x, next x)` for all pairs of adjacent points. It is called with floats and with vectors of floats.
template <typename Holds>
bool allAdjacentX(const KxPointXY* points, std::ptrdiff_t count, Holds holds,
                  InstructionSet instructions = widestInstructionSet()) {
    bool allHold = true;
    std::ptrdiff_t i = 0;
    runOn(instructions, [&]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        using Mask = typename Vectors<kBytes>::FloatMask;
        constexpr std::ptrdiff_t kPoints = Vectors<kBytes>::kFloatLanes / 2; // in a vector
        constexpr std::ptrdiff_t kBlock = 8 * kPoints;
        const Mask isY = interleaveLow(Mask{}, ~Mask{}); // lanes that do not count
        for (; allHold && i + kBlock < count; i += kBlock) {
            Mask mask = ~Mask{};
            for (std::ptrdiff_t k = i; k < i + kBlock; k += kPoints) {
                mask &= holds(loadVector<Floats>(&points[k].x), loadVector<Floats>(&points[k + 1].x)) | isY;
            }
            allHold = allOf(mask);
        }
    });
    for (; allHold && i + 1 < count; ++i) {
        allHold = holds(points[i].x, points[i + 1].x);
    }
    return allHold;
}

} // namespace KxMath::detail
