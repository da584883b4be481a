#include "support/testing.h"

using namespace testing_support;

namespace {

template <typename A, typename B>
constexpr bool kCanAssign = requires(A a, B b) {
    { a = b } -> std::same_as<void>;
};
static_assert(kCanAssign<KxPointXY&, const KxPointXY&>, "the assignment deliberately returns nothing");

TEST(Points, DefaultIsMissingAndCopiesKeepAllFields) {
    EXPECT_EXACT(exact(QList<KxPointXY>(1), QList<KxPointXYZ>(1)), ExactList(5, exact(kNaN)));
    EXPECT_EXACT(QList<KxPointXYZRGB>(1), KxPointXYZRGB(kNaN, kNaN, kNaN, 0));
    const KxPointXYZRGB colour(1, 2, 3, 0xff00fe01u);
    KxPointXYZRGB target;
    KxPointXYZ space;
    EXPECT_TRUE(&(target = colour) == &target && &(space = KxPointXYZ(1, kNaN, -0.0f)) == &space);
    EXPECT_EXACT(exact(target, space), exact(colour, KxPointXYZ(1, kNaN, -0.0f)));
    for (const float v : {0.0f, -0.0f, 1.0f, kInf, -kInf}) { // only NaN is null
        EXPECT_FALSE(KxPointXY(v, 0).isNull() || KxPointXY(0, v).isNull());
        EXPECT_TRUE(KxPointXY(v, kNaN).isNull() && KxPointXY(kNaN, v).isNull());
    }
}

TEST(Points, DistancesRoundTheSumOfSquares) {
    EXPECT_EQ(KxPointXY::calcDistance({1, 2}, {4, -2}), 5.0f);
    EXPECT_EQ(KxPointXYZ::calcDistance({1, 2, 3}, {3, -1, 9}), 7.0f);
    EXPECT_EQ(KxPointXYZ(1, 2, 3).calcDistance(KxPointXYZ(1, 2, 3)), 0.0f);
    // 4096^2 + 1 is not a float: in double the root would round up.
    EXPECT_EQ(KxPointXY(0, 0).calcDistance(KxPointXY(4096, 1)), 4096.0f);
    // y first: (1 + 1) + 2^25 would be larger, each 1 alone is lost.
    EXPECT_EQ(KxPointXYZ::calcDistance({0, 0, 0}, {1, 4096, 1}), 4096.0f);
    EXPECT_EQ(KxPointXYZ::calcDistance({0, 0, 0}, {1e-30f, 0, 0}), 0.0f) << "the squares underflow";
    EXPECT_EQ(KxPointXY::calcDistance({-3e38f, 0}, {3e38f, 0}), kInf);
    EXPECT_TRUE(std::isnan(KxPointXY::calcDistance({0, kNaN}, {0, 0})));
}

TEST(Version, IsOneConstantText) {
    EXPECT_STREQ(KxMath_GetVersionString(), "2.0.10");
    EXPECT_EQ(KxMath_GetVersionString(), KxMath_GetVersionString());
}

} // namespace
