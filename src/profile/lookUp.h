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
/// NaN is neither, on either side.
inline qsizetype findAtOrBeyond(const KxPointXY* data, qsizetype count, float x, qsizetype from,
                                InstructionSet instructions = widestInstructionSet()) {
    runOn(instructions, [&]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr qsizetype kPoints = Vectors<kBytes>::kFloats / 2;
        constexpr qsizetype kAtOnce = 8 * kPoints;
        const Floats limits = inTurn(repeated<Floats>(x), repeated<Floats>(kNaN)); // no y is beyond NaN
        for (; from + kAtOnce <= count; from += kAtOnce) { // most points are passed
            typename Vectors<kBytes>::FloatAnswers isBeyond{};
            for (qsizetype k = from; k < from + kAtOnce; k += kPoints) {
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
