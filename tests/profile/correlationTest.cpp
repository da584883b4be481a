#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(Correlation, CorrelationIsCarriedInDouble) {
    EXPECT_EQ(profileOf({{1, 2}, {2, 4}, {3, 6}}).calcCorrelation(), 1.0f);
    EXPECT_EQ(profileOf({{1, 2}, {2, 0}, {3, -2}}).calcCorrelation(), -1.0f);
    EXPECT_TRUE(std::isnan(profileOf({}).calcCorrelation()));
    EXPECT_TRUE(std::isnan(profileOf({{1, 2}, {2, 2}}).calcCorrelation()));
    // Sums in floats would lose the squares' last digits here: x is a thousand times its spread.
    KxProfile far = profileOf(pointsFor(1000, [](int i) { return at(100000.0 + i * 0.125, i % 2); }));
    EXPECT_NEAR(far.calcCorrelation(), std::sqrt(3.0) / 1000.0, 1e-6);
}

} // namespace
