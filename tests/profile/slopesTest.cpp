#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(Slopes, DerivativeHoldsTheSlopeInX) {
    EXPECT_EXACT(profileOf({{0, 0}, {1, 2}, {3, 4}, {3, 5}, {3, 5}}).derivative().points,
                 exact(Points{{2, 0}, {1, 1}, {kInf, 3}, {kNaN, 3}}));
    EXPECT_EQ(profileOf({{1, 1}}).derivative().size() + profileOf({}).derivative().size(), 0);
}

} // namespace
