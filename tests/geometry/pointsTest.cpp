// Point types and the version of the library.
#include "support/bits.h"

#include <KxMath/KxMathVersion.h>
#include <KxMath/KxPoints.h>

#include <gtest/gtest.h>

#include <limits>

using namespace KxMath;
using namespace testing_support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

template <typename A, typename B>
constexpr bool kCanAssign = requires(A a, B b) {
    { a = b } -> std::same_as<void>;
};

} // namespace

TEST(Points, DefaultIsMissingAlsoWhereAListFills) {
    EXPECT_EQ(exact(KxPointXY()), exact(KxPointXY(kNaN, kNaN)));
    EXPECT_EQ(exact(KxPointXYZ()), exact(KxPointXYZ(kNaN, kNaN, kNaN)));
    EXPECT_EQ(exact(KxPointXYZRGB()), exact(KxPointXYZRGB(kNaN, kNaN, kNaN, 0)));
    EXPECT_EQ(exact(QList<KxPointXY>(1)), exact(KxPointXY()));
    EXPECT_EQ(exact(QList<KxPointXYZ>(1)), exact(KxPointXYZ()));
    EXPECT_EQ(exact(QList<KxPointXYZRGB>(1)), exact(KxPointXYZRGB()));
}

TEST(Points, CopiesKeepAllFields) {
    static_assert(kCanAssign<KxPointXY&, const KxPointXY&>, "the assignment deliberately returns nothing");
    const KxPointXYZRGB colour(1, 2, 3, 0xff00fe01u);
    KxPointXYZRGB target;
    EXPECT_EQ(&(target = colour), &target);
    EXPECT_EQ(exact(target), exact(colour));
    KxPointXYZ space;
    EXPECT_EQ(&(space = KxPointXYZ(1, kNaN, -0.0f)), &space);
    EXPECT_EQ(exact(space), exact(KxPointXYZ(1, kNaN, -0.0f)));
}

TEST(Points, IsNullOnlyWithNaN) {
    for (const float v : {0.0f, -0.0f, 1.0f, kInfinity, -kInfinity}) {
        EXPECT_FALSE(KxPointXY(v, 0).isNull());
        EXPECT_FALSE(KxPointXY(0, v).isNull());
        EXPECT_TRUE(KxPointXY(v, kNaN).isNull());
        EXPECT_TRUE(KxPointXY(kNaN, v).isNull());
    }
}

TEST(Points, DistancesRoundTheSumOfSquares) {
    EXPECT_EQ(KxPointXY::calcDistance({1, 2}, {4, -2}), 5.0f);
    EXPECT_EQ(KxPointXYZ::calcDistance({1, 2, 3}, {3, -1, 9}), 7.0f);
    EXPECT_EQ(KxPointXYZ(1, 2, 3).calcDistance(KxPointXYZ(1, 2, 3)), 0.0f);
    // 4096^2 + 1 is no float: in double the root would round up.
    EXPECT_EQ(KxPointXY(0, 0).calcDistance(KxPointXY(4096, 1)), 4096.0f);
    // y first: (1 + 1) + 2^25 would be larger, each 1 alone is lost.
    EXPECT_EQ(KxPointXYZ::calcDistance({0, 0, 0}, {1, 4096, 1}), 4096.0f);
    EXPECT_EQ(KxPointXYZ::calcDistance({0, 0, 0}, {1e-30f, 0, 0}), 0.0f) << "the squares underflow";
    EXPECT_EQ(KxPointXY::calcDistance({-3e38f, 0}, {3e38f, 0}), kInfinity);
}

TEST(Points, DistanceOfNaNIsNaN) {
    EXPECT_TRUE(std::isnan(KxPointXY::calcDistance({0, kNaN}, {0, 0})));
    for (int i = 0; i < 6; ++i) {
        float c[6] = {1, 2, 3, 4, 5, 6};
        c[i] = kNaN;
        EXPECT_TRUE(std::isnan(KxPointXYZ(c[0], c[1], c[2]).calcDistance(KxPointXYZ(c[3], c[4], c[5])))) << i;
    }
}

TEST(Version, IsOneConstantText) {
    EXPECT_STREQ(KxMath_GetVersionString(), "2.0.10");
    EXPECT_EQ(KxMath_GetVersionString(), KxMath_GetVersionString());
}
