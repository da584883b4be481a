// Sampling an interpolant at a regular step.
#pragma once

#include "KxMath/KxInterpolant.h"

#include "simd/instructionSets.h"

#include <array>
#include <cstddef>

namespace KxMath::detail {

/// The value at `x`, its segment found by a bisection of the knots; NaN outside the knots, and where NaN among the
/// knots leads beyond the last segment.
float valueByBisection(const KxInterpolant& spline, float x);

/// The samples of a spline that are not NaN, from `from` on, `step` apart by a running single-precision sum, while
/// below `to`; the first is always taken. They come in blocks: positions first, then the values on vectors.
class Sampler {
public:
    static constexpr int kBlockSize = 256; ///< samples in a block

    struct Block {
        int count = 0;
        std::array<float, kBlockSize + 4> xs; // with padding: samples are calculated four at a time
        std::array<float, kBlockSize + 4> ys;
    };

    /// The spline must be built, stay as it is, and `step` must be positive.
    Sampler(const KxInterpolant& spline, float step, float from, float to,
            InstructionSet instructions = widestInstructionSet());

    /// Takes the next samples. Their number may be 0, where all samples of a block are NaN. @return false at the end
    /// @param interleave is called with 0, 1 and so on up to kBlockSize - 1 between the positions. These are a running
    /// sum,
    ///        a loop-carried dependency that leaves the processor idle; another chain of operations runs meanwhile
    template <typename Interleave>
    bool next(Block& block, Interleave interleave);

    bool next(Block& block) {
        return next(block, [](int) {});
    }

    /// Whether the end was reached, and not a position that adding the step does not change.
    bool isComplete() const { return state_ == State::BeyondEnd; }

private:
    enum class State { AtSample, BeyondEnd, Stuck };

    /// Calculates the values at the positions of the block, and removes those that are NaN.
    void calculate(Block& block);
    void calculateAlongSegments(Block& block, int from);

    const KxInterpolant& spline_;
    float step_;
    float end_;
    float x_; ///< the sample to come
    State state_ = State::AtSample;
    bool isFirst_ = true;
    bool areKnotsOrdered_;
    int segment_ = 0; ///< where the sample to come is searched from, in ordered knots
    InstructionSet instructions_;
};

template <typename Interleave>
bool Sampler::next(Block& block, Interleave interleave) {
    if (state_ != State::AtSample) {
        return false;
    }
    float x = x_;
    int count = 0;
    while (state_ == State::AtSample && count < kBlockSize) {
        interleave(count);
        block.xs[static_cast<std::size_t>(count)] = x;
        ++count;
        const float next = x + step_;
        if (next >= end_) { // deliberately not counted beforehand: the running sum decides the last sample
            state_ = State::BeyondEnd;
        } else if (!(next > x)) { // NaN: true
            state_ = State::Stuck;
        } else {
            x = next;
        }
    }
    x_ = x;
    block.count = count;
    for (; count < kBlockSize; ++count) {
        interleave(count);
    }
    calculate(block);
    return true;
}

} // namespace KxMath::detail
