// Sampling an interpolant at a regular step.
#include "profile/sampling.h"

#include "rounding/bounds.h"
#include "simd/float4.h"
#include "sorting/ordering.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace KxMath::detail {

namespace {

constexpr int kStepSamples = 4; // calculated together, whatever the width of vectors

/// A segment of a spline in double precision.
template <typename Number>
class Cubic {
public:
    Cubic(const KxInterpolant& spline, int segment)
        : start_(broadcast<Number>(static_cast<double>(spline.knotsX[segment]))), c0_(coefficient(spline, segment, 0)),
          c1_(coefficient(spline, segment, 1)), c2_(coefficient(spline, segment, 2)),
          c3_(coefficient(spline, segment, 3)) {}

    [[gnu::always_inline]] Number operator()(Number x) const {
        const Number t = x - start_;
        return ((c3_ * t + c2_) * t + c1_) * t + c0_;
    }

private:
    [[gnu::always_inline]] static Number coefficient(const KxInterpolant& spline, int segment, int power) {
        return broadcast<Number>(static_cast<double>(spline.coeffs[4 * static_cast<std::ptrdiff_t>(segment) + power]));
    }

    Number start_;
    Number c0_;
    Number c1_;
    Number c2_;
    Number c3_;
};

/// False for two knots or more with NaN among them.
bool areRising(const float* knots, int count) {
    return allAdjacent(
        knots, knots + count, [](float knot) { return knot; }, [](float a, float b) { return a <= b; });
}

/// Removes the samples that are NaN.
void dropMissing(Sampler::Block& block) {
    int missing = 0;
    for (int i = 0; i < block.count; ++i) {
        missing += std::isnan(block.ys[static_cast<std::size_t>(i)]) ? 1 : 0;
    }
    if (missing == 0) {
        return;
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(block.count); ++i) {
        if (!std::isnan(block.ys[i])) {
            block.xs[kept] = block.xs[i];
            block.ys[kept] = block.ys[i];
            ++kept;
        }
    }
    block.count = static_cast<int>(kept);
}

} // namespace

float valueByBisection(const KxInterpolant& spline, float x) {
    const float* const knots = spline.knotsX;
    if (x < knots[0] || x > knots[spline.count - 1]) { // NaN: false
        return kNaN;
    }
    int low = 0;
    int high = spline.count;
    while (low != high - 1) {
        const int middle = low + (high - low) / 2;
        if (knots[middle] >= x) { // NaN: false
            high = middle;
        } else {
            low = middle;
        }
    }
    return low < spline.count - 1 ? static_cast<float>(Cubic<double>(spline, low)(static_cast<double>(x))) : kNaN;
}

Sampler::Sampler(const KxInterpolant& spline, float step, float from, float to, InstructionSet instructions)
    : spline_(spline), step_(step), areKnotsOrdered_(areRising(spline.knotsX, spline.count)),
      instructions_(instructions) {
    const float firstKnot = spline.knotsX[0];
    const float lastKnot = spline.knotsX[spline.count - 1];
    end_ = std::isnan(to) || to > lastKnot ? lastKnot : to;
    x_ = std::isnan(from) || from < firstKnot ? firstKnot : from;
}

void Sampler::calculate(Block& block) {
    std::fill_n(block.xs.begin() + block.count, kStepSamples, kNaN);
    int done = 0;
    if (isFirst_) {
        isFirst_ = false;
        block.ys[0] = valueByBisection(spline_, block.xs[0]);
        done = 1;
    }
    if (areKnotsOrdered_) { // all positions but the first lie between the knots
        calculateAlongSegments(block, done);
        done = block.count;
    }
    for (; done < block.count; ++done) {
        const auto i = static_cast<std::size_t>(done);
        block.ys[i] = valueByBisection(spline_, block.xs[i]);
    }
    dropMissing(block);
}

/// The positions rise, and so pass the segments in order. Always four are calculated with the cubic of the current
/// segment; those beyond its end are overwritten with the next segment. That costs less than finding out first how many
/// lie in it.
void Sampler::calculateAlongSegments(Block& block, int from) {
    runOn(instructions_, [this, &block, from]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Doubles = typename Vectors<kBytes>::Doubles;
        constexpr int kLanes = static_cast<int>(Vectors<kBytes>::kDoubleLanes);
        int i = from;
        while (i < block.count) {
            const Cubic<Doubles> cubic(spline_, segment_);
            const float end = spline_.knotsX[segment_ + 1];
            for (;;) {
                const float* const xs = block.xs.data() + i;
                for (int k = 0; k < kStepSamples; k += kLanes) { // those behind the end are calculated again later
                    storeAsFloats(block.ys.data() + i + k, cubic(loadAsDoubles<Doubles>(xs + k)));
                }
                if (xs[kStepSamples - 1] <= end) {
                    i += kStepSamples;
                    continue;
                }
                // By predicted branches and not by counting a mask: the next step does not wait for the comparisons.
                for (int k = 0; xs[k] <= end; ++k) {
                    ++i;
                }
                break;
            }
            segment_ += i < block.count ? 1 : 0;
        }
    });
}

} // namespace KxMath::detail
