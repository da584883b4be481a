// Positions in a profile and the heights there.
#pragma once

#include "KxMath/KxPoints.h"

#include "rounding/bounds.h"
#include "simd/float4.h"
#include "simd/instructionSets.h"

#include <QtCore/QList>

#include <algorithm>

namespace KxMath::detail {

/// The position of the first point from `from` on that is at or beyond `x`, the number of points when there is none.
/// NaN never matches.
inline qsizetype findAtOrBeyond(const KxPointXY* data, qsizetype count, float x, qsizetype from,
                                InstructionSet instructions = widestInstructionSet()) {
    runOn(instructions, [&]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr qsizetype kPoints = Vectors<kBytes>::kFloatLanes / 2; // in a vector
        constexpr qsizetype kBlock = 8 * kPoints;
        const Floats limits = interleaveLow(broadcast<Floats>(x), broadcast<Floats>(kNaN)); // y >= NaN is false
        for (; from + kBlock <= count; from += kBlock) { // a whole block is usually passed
            typename Vectors<kBytes>::FloatMask isBeyond{};
            for (qsizetype k = from; k < from + kBlock; k += kPoints) {
                isBeyond |= loadVector<Floats>(&data[k].x) >= limits;
            }
            if (!allOf(~isBeyond)) {
                break;
            }
        }
    });
    while (from < count && !(data[from].x >= x)) { // NaN: true
        ++from;
    }
    return from;
}

/// KxProfile::calcY() at `x`, `found` being the first point at or beyond it.
float heightAt(const QList<KxPointXY>& points, qsizetype found, float x, float maxDistance);

} // namespace KxMath::detail
