// Which sample of a rail a wheel touches while the wheel-set moves sideways.
#include "inspect/conicity/lateralSweep.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace KxInspect;

/// A tread whose slope grows evenly: the conicity tells where it is touched.
std::vector<float> hollowTread(double bend) {
    constexpr int kSamples = 1400;
    std::vector<float> heights;
    heights.reserve(kSamples);
    for (int i = 0; i < kSamples; ++i) {
        heights.push_back(static_cast<float>(-bend * i * i));
    }
    return heights;
}

/// A rail that can be touched at one sample only.
std::vector<float> edge(std::size_t samples, std::size_t touched) {
    std::vector<float> heights(samples, 200.0f);
    heights[touched] = 0.0f;
    return heights;
}

TEST(LateralSweep, FindsTheContactAtEachSampleOfARail) {
    constexpr double kBend = 1e-5;
    constexpr double kStep = 0.1; // mm
    constexpr long kFirst = 660;
    const std::vector<float> wheel = hollowTread(kBend);
    for (const std::size_t samples : {1u, 15u, 16u, 37u}) {
        for (std::size_t touched = 0; touched < samples; ++touched) {
            const double first = kStep * kFirst;
            const auto oscillation = detail::sweep({wheel, edge(samples, touched), wheel, edge(samples, touched)},
                                                   {{first, first}, 0.0}, kStep);
            // One step outwards and one inwards change the radii by 2 bend (first + touched) each.
            const double slope = 2.0 * kBend * static_cast<double>(kFirst + static_cast<long>(touched)) / kStep;
            const auto conicity = oscillation.conicity(3.0);
            ASSERT_TRUE(conicity);
            EXPECT_NEAR(*conicity, slope, 0.001 * slope) << samples << " samples, touched at " << touched;
        }
    }
}

} // namespace
