// Positions in a profile and the heights there.
#pragma once

#include "KxMath/KxPoints.h"

#include "numeric/bounds.h"
#include "numeric/float4.h"
#include "numeric/instructionSets.h"

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
            if (!areAllYes(~isBeyond)) {
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

/// Looks up one position after the other. Rising positions are cheap: no point that was before one of them is at or
/// beyond a later one, whatever the order of the points, so that the search goes on where it stood.
class PositionCursor {
public:
    explicit PositionCursor(const QList<KxPointXY>& points) : points_(points.constData()), count_(points.size()) {}

    /// findAtOrBeyond() from the first point on.
    qsizetype find(float x) {
        constexpr qsizetype kNear = 4; // it is not far, as a rule
        qsizetype at = x >= previous_ ? found_ : 0; // NaN: anew
        const qsizetype near = std::min(at + kNear, count_);
        while (at < near && !(points_[at].x >= x)) { // NaN: true
            ++at;
        }
        previous_ = x;
        found_ = at < near ? at : findAtOrBeyond(points_, count_, x, at);
        return found_;
    }

private:
    const KxPointXY* points_;
    qsizetype count_;
    float previous_ = 0.0f;
    qsizetype found_ = 0; ///< belongs to `previous_`; 0 is where any search may start
};

} // namespace KxMath::detail
