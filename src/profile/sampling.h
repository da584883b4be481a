// Sampling an interpolant at a regular step.
#pragma once

#include "KxMath/KxInterpolant.h"

#include "simd/instructionSets.h"

#include <array>
#include <cstddef>

namespace KxMath::detail {

/// The value at `x`, its segment found by a bisection of the knots; NaN outside the knots, and where knots that are no
/// numbers lead beyond the last segment.
float valueByBisection(const KxInterpolant& spline, float x);

/// The samples of a spline from `from` on that are numbers, `step` apart by a running single-precision sum, while below
/// `to`; the first is always taken. They come in blocks, so that several can be calculated at once.
class Sampler {
public:
    static constexpr int kMost = 256; ///< samples in a block

    struct Block {
        int count = 0;
        std::array<float, kMost + 4> xs; // four at a time are looked at, behind the last one too
        std::array<float, kMost + 4> ys;
    };

    /// The spline must be built, stay as it is, and `step` must be positive.
    Sampler(const KxInterpolant& spline, float step, float from, float to,
            InstructionSet instructions = widestInstructionSet());

    /// Takes the next samples; possibly none of those that were looked at is a number. @return false at the end
    /// @param beside is called with 0, 1 and so on up to kMost - 1: each position waits for the one before, and leaves
    ///        time for what waits for its own kind
    template <typename Beside>
    bool next(Block& block, Beside beside);

    bool next(Block& block) {
        return next(block, [](int) {});
    }

    /// Whether the end was reached, and not a position that adding the step does not change.
    bool isComplete() const { return state_ == State::BeyondEnd; }

private:
    enum class State { AtSample, BeyondEnd, Stuck };

    /// The values at the positions of the block; those that are not numbers leave it.
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

template <typename Beside>
bool Sampler::next(Block& block, Beside beside) {
    if (state_ != State::AtSample) {
        return false;
    }
    float x = x_;
    int count = 0;
    while (state_ == State::AtSample && count < kMost) {
        beside(count);
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
    for (; count < kMost; ++count) {
        beside(count);
    }
    calculate(block);
    return true;
}

} // namespace KxMath::detail
