// Filling, copying, measuring, moving and turning clouds.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxPointCloud.h>

#include <gtest/gtest.h>

#include <limits>

using namespace KxMath;
using namespace testing_support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Fills the six range fields with v, v + 1, ...
template <typename Cloud>
void setRange(Cloud& cloud, float v) {
    cloud.minX = v;
    cloud.maxX = v + 1;
    cloud.minY = v + 2;
    cloud.maxY = v + 3;
    cloud.minZ = v + 4;
    cloud.maxZ = v + 5;
}

ExactList rangeOf(std::initializer_list<float> fields) {
    return exact(QList<float>(fields));
}

const ExactList kUnknown = rangeOf({kNaN, kNaN, kNaN, kNaN, kNaN, kNaN});

} // namespace

template <typename Point>
class CloudOf : public testing::Test {};
using PointTypes = testing::Types<KxPointXY, KxPointXYZ, KxPointXYZRGB>;
TYPED_TEST_SUITE(CloudOf, PointTypes);

TYPED_TEST(CloudOf, NewIsEmptyAndUnknown) {
    KxPointCloud<TypeParam> cloud;
    EXPECT_EQ(cloud.size(), 0);
    EXPECT_TRUE(cloud.isEmpty());
    EXPECT_EQ(exactRange(cloud), kUnknown);
    EXPECT_EQ(cloud.zIndexBuilt, 0);
    EXPECT_EQ(cloud.calcAverageY(), 0.0f);
    TypeParam out = Nasty(1).point<TypeParam>();
    const ExactList before = exact(out);
    setRange(cloud, 1);
    EXPECT_FALSE(cloud.calcCenterPoint(out));
    EXPECT_FALSE(cloud.caclCenterMassPoint(out));
    EXPECT_EQ(exact(out), before);
}

TYPED_TEST(CloudOf, CopyAppendAndClearTouchWhatTheySay) {
    Nasty nasty(2);
    for (int round = 0; round < 100; ++round) {
        nasty.nextCase();
        KxPointCloud<TypeParam> a;
        KxPointCloud<TypeParam> b;
        a.points = nasty.points<TypeParam>(nasty.size());
        b.points = nasty.points<TypeParam>(nasty.size());
        setRange(a, 10);
        setRange(b, nasty.pick(std::array{9.5f, 10.0f, 10.5f, kNaN}));
        a.zIndexBuilt = b.zIndexBuilt = 1;
        a.zIndex[3] = 4;
        b.zIndex[5] = 6;
        const ExactList aPoints = exact(a.points);
        const ExactList bPoints = exact(b.points);
        const QMap<float, int> aIndex = a.zIndex;

        KxPointCloud<TypeParam> copy(b);
        EXPECT_EQ(exact(copy.points), bPoints);
        EXPECT_EQ(exactRange(copy), exactRange(b));
        EXPECT_EQ(copy.zIndexBuilt, 0);
        EXPECT_TRUE(copy.zIndex.isEmpty());

        static_assert(std::is_void_v<decltype(copy += b)> && std::is_void_v<decltype(copy = b)>);
        KxPointCloud<TypeParam> sum(a);
        sum.zIndexBuilt = 1;
        sum += b;
        ExactList both = aPoints;
        both.insert(both.end(), bPoints.begin(), bPoints.end());
        EXPECT_EQ(exact(sum.points), both);
        EXPECT_EQ(exact(sum.minZ), exact(b.minZ < 14.0f ? b.minZ : 14.0f));
        EXPECT_EQ(exact(sum.maxX), exact(b.maxX > 11.0f ? b.maxX : 11.0f));
        EXPECT_EQ(sum.zIndexBuilt, 0);
        copy.clear();
        copy += a;
        EXPECT_EQ(exactRange(copy), kUnknown) << "an unknown bound stays unknown";

        a = b;
        EXPECT_EQ(exact(a.points), bPoints);
        EXPECT_EQ(exactRange(a), exactRange(b));
        EXPECT_EQ(a.zIndexBuilt, 0);
        EXPECT_EQ(a.zIndex, aIndex);
        if (!b.points.isEmpty()) {
            b.points[0] = TypeParam();
        }
        EXPECT_EQ(exact(a.points), bPoints) << "a copy is deep";

        b.clear();
        EXPECT_TRUE(b.isEmpty());
        EXPECT_EQ(exactRange(b), kUnknown);
        EXPECT_EQ(b.zIndexBuilt, 1);
        EXPECT_EQ(b.zIndex.size(), 1);
    }
}

TYPED_TEST(CloudOf, CallsOnItself) {
    for (const int size : {0, 1, 2, 300}) {
        KxPointCloud<TypeParam> cloud;
        cloud.points = Nasty(3).points<TypeParam>(size);
        setRange(cloud, 1);
        const ExactList range = exactRange(cloud);
        const ExactList once = exact(cloud.points);
        ExactList twice = once;
        twice.insert(twice.end(), once.begin(), once.end());
        const KxPointCloud<TypeParam>& same = cloud;
        cloud.zIndexBuilt = 1;
        cloud = same;
        EXPECT_EQ(exact(cloud.points), once);
        EXPECT_EQ(cloud.zIndexBuilt, 0);
        cloud.zIndexBuilt = 1;
        cloud += same;
        EXPECT_EQ(exact(cloud.points), twice);
        EXPECT_EQ(cloud.zIndexBuilt, 0);
        EXPECT_EQ(exactRange(cloud), range);
        if (size > 0) {
            EXPECT_TRUE(cloud.caclCenterMassPoint(cloud.points[0]));
            EXPECT_TRUE(cloud.calcCenterPoint(cloud.points[0]));
            EXPECT_EQ(cloud.points[0].x, 1.5f);
        }
    }
}

TYPED_TEST(CloudOf, RangeOverNastyPoints) {
    constexpr bool kIsFlat = std::is_same_v<TypeParam, KxPointXY>;
    Nasty nasty(4);
    for (int round = 0; round < 200; ++round) {
        nasty.nextCase();
        KxPointCloud<TypeParam> cloud;
        cloud.points = nasty.points<TypeParam>(nasty.size());
        if (nasty.chance(50)) { // bounds of either zero
            const float sign = nasty.pick(std::array{1.0f, -1.0f});
            for (TypeParam& p : cloud.points) {
                p.x = sign * nasty.pick(std::array{0.0f, -0.0f, 1.0f, kNaN});
                p.y = sign * nasty.pick(std::array{0.0f, -0.0f, 1.0f, 2.0f});
            }
        }
        setRange(cloud, 7);
        // By definition: NaN is replaced by anything, a known bound only by what lies beyond it.
        float known[6] = {kNaN, kNaN, kNaN, kIsFlat ? 10.0f : kNaN, kIsFlat ? 11.0f : kNaN, kIsFlat ? 12.0f : kNaN};
        for (const TypeParam& p : cloud.points) {
            const ExactList fields = exact(p);
            for (std::size_t axis = 0; axis < (kIsFlat ? 2u : 3u); ++axis) {
                const float v = static_cast<float>(fields[axis].value);
                float& min = known[2 * axis];
                float& max = known[2 * axis + 1];
                min = std::isnan(min) || min > v ? v : min;
                max = std::isnan(max) || max < v ? v : max;
            }
        }
        cloud.calcRange();
        EXPECT_EQ(exactRange(cloud), rangeOf({known[0], known[1], known[2], known[3], known[4], known[5]}));
    }
}

TYPED_TEST(CloudOf, SizesAreUpperLessLowerBounds) {
    KxPointCloud<TypeParam> cloud;
    cloud.minX = 1;
    cloud.maxX = 3;
    cloud.minY = 5;
    cloud.maxY = 9;
    EXPECT_EQ(cloud.size_x(), 2.0f);
    EXPECT_EQ(cloud.size_y(), 4.0f);
    if constexpr (!std::is_same_v<TypeParam, KxPointXY>) {
        cloud.minZ = 11;
        cloud.maxZ = 19;
        EXPECT_EQ(cloud.size_z(), 8.0f);
    }
    cloud.maxX = kNaN;
    EXPECT_TRUE(std::isnan(cloud.size_x()));
}

TEST(Cloud2D, KeepsAnOldMaxYWhenTheRangeIsCalculated) {
    KxPointCloud<KxPointXY> cloud;
    cloud.points = {{0, 0}, {1, 5}};
    cloud.calcRange();
    EXPECT_EQ(exactRange(cloud), rangeOf({0, 1, 0, 5, kNaN, kNaN}));
    cloud.points = {{0, 0}, {1, 2}};
    cloud.calcRange();
    EXPECT_EQ(cloud.maxY, 5.0f);
    cloud.points.clear();
    cloud.calcRange();
    EXPECT_EQ(exactRange(cloud), rangeOf({kNaN, kNaN, kNaN, 5, kNaN, kNaN}));
}

TEST(CloudMeasures, CentresAndMeans) {
    KxPointCloud<KxPointXYZRGB> cloud;
    cloud.points = {{0, 16777216, 2, 1}, {4, 1, 4, 2}, {kNaN, 1, kNaN, 3}};
    EXPECT_EQ(cloud.calcAverageY(), 16777216.0f / 3) << "a single-precision sum loses each 1";
    KxPointXYZRGB out(0, 0, 0, 77);
    EXPECT_TRUE(cloud.caclCenterMassPoint(out));
    EXPECT_EQ(exact(out), exact(KxPointXYZRGB(kNaN, 16777216.0f / 3, kNaN, 77)));
    EXPECT_TRUE(cloud.calcCenterPoint(out)) << "calculates the range first";
    EXPECT_EQ(exact(out), exact(KxPointXYZRGB(2, 8388608.5f, 3, 77)));
    EXPECT_EQ(exactRange(cloud), rangeOf({0, 4, 1, 16777216, 2, 4}));
    EXPECT_EQ(cloud.size_z(), 2.0f);
    setRange(cloud, 10);
    EXPECT_TRUE(cloud.calcCenterPoint(out)) << "a known range is taken as it is";
    EXPECT_EQ(exact(out), exact(KxPointXYZRGB(10.5f, 12.5f, 14.5f, 77)));
    cloud.maxZ = kNaN;
    EXPECT_TRUE(std::isnan(cloud.size_z()));
    EXPECT_TRUE(cloud.calcCenterPoint(out)) << "one unknown bound makes the whole range new";
    EXPECT_EQ(out.x, 2.0f);
}

TYPED_TEST(CloudOf, ShiftLeavesACoordinateUntouchedOnlyForExactly0) {
    KxPointCloud<TypeParam> cloud;
    cloud.points = Nasty(5).points<TypeParam>(50);
    cloud.points[1].x = kNaN;
    cloud.points[2].y = -0.0f;
    setRange(cloud, 3);
    const ExactList range = exactRange(cloud);
    const ExactList before = exact(cloud.points);
    cloud.zIndexBuilt = 1;
    cloud.shift(0.0f, -0.0f, 0.0f);
    EXPECT_EQ(exact(cloud.points), before);
    cloud.shift(kNaN, 0, std::is_same_v<TypeParam, KxPointXY> ? kNaN : 0.25f);
    for (qsizetype i = 0; i < 50; ++i) {
        EXPECT_TRUE(std::isnan(cloud.points[i].x));
        const std::size_t width = exact(cloud.points[i]).size();
        EXPECT_EQ(exact(cloud.points[i])[1], before[static_cast<std::size_t>(i) * width + 1]);
        if constexpr (!std::is_same_v<TypeParam, KxPointXY>) {
            const float z = static_cast<float>(before[static_cast<std::size_t>(i) * width + 2].value);
            EXPECT_EQ(exact(cloud.points[i].z), exact(z + 0.25f));
        }
    }
    EXPECT_EQ(exactRange(cloud), range);
    EXPECT_EQ(cloud.zIndexBuilt, 1);
}

TEST(Cloud2D, ResizeScalesAboutTheOrigin) {
    KxPointCloud<KxPointXY> cloud;
    cloud.points = {{1, 2}, {kNaN, -3}};
    cloud.resize(2, -1, 100);
    EXPECT_EQ(exact(cloud.points), exact(QList<KxPointXY>{{2, -2}, {kNaN, 3}}));
    cloud.resize(1, kNaN, 1);
    EXPECT_EQ(exact(cloud.points), exact(QList<KxPointXY>{{2, kNaN}, {kNaN, kNaN}}));
    EXPECT_EQ(exactRange(cloud), kUnknown);
}

namespace {

using Space = KxPointCloud<KxPointXYZ>;
using Turn = void (Space::*)(float);

/// The plane of a turn: the coordinates that it mixes and the one that stays.
struct Plane {
    Turn turn;
    float KxPointXYZ::*first;
    float KxPointXYZ::*second;
    float KxPointXYZ::*fixed;
};

constexpr Plane kPlanes[] = {
    {&Space::rotateXY, &KxPointXYZ::x, &KxPointXYZ::y, &KxPointXYZ::z},
    {&Space::rotateXZ, &KxPointXYZ::x, &KxPointXYZ::z, &KxPointXYZ::y},
    {&Space::rotateYZ, &KxPointXYZ::y, &KxPointXYZ::z, &KxPointXYZ::x},
};

} // namespace

TEST(CloudTurns, RotateFromFirstTowardsSecondAxis) {
    Nasty nasty(6);
    for (const Plane& plane : kPlanes) {
        for (const float deg : {0.0f, 90.0f, -90.0f, 180.0f, 33.3f, 725.0f, -1e5f}) {
            Space cloud;
            for (int i = 0; i < 300; ++i) {
                KxPointXYZ p;
                p.*plane.first = i < 20 ? 0.0f : nasty.plain();
                p.*plane.second = i % 7 == 0 ? 0.0f : nasty.plain();
                p.*plane.fixed = nasty.special();
                cloud.points.append(p);
            }
            const QList<KxPointXYZ> before = cloud.points;
            setRange(cloud, 3);
            const ExactList range = exactRange(cloud);
            cloud.zIndexBuilt = 1;
            (cloud.*plane.turn)(deg);
            EXPECT_EQ(cloud.zIndexBuilt, 0);
            EXPECT_EQ(exactRange(cloud), range);
            const double rad = static_cast<double>(deg) * 3.14159265358979 / 180;
            for (qsizetype i = 0; i < before.size(); ++i) {
                const double a = static_cast<double>(before[i].*plane.first);
                const double b = static_cast<double>(before[i].*plane.second);
                // Angles up to 360 + |deg| degrees are rounded twice to single precision, and pi is off by 2.8e-8 of
                // it.
                const double angle = (360 + std::abs(static_cast<double>(deg))) / 57;
                const double bound = std::hypot(a, b) * (angle * 2e-7 + 3e-7);
                const KxPointXYZ& p = cloud.points[i];
                EXPECT_NEAR(static_cast<double>(p.*plane.first), std::cos(rad) * a - std::sin(rad) * b, bound);
                EXPECT_NEAR(static_cast<double>(p.*plane.second), std::sin(rad) * a + std::cos(rad) * b, bound);
                EXPECT_EQ(exact(p.*plane.fixed), exact(before[i].*plane.fixed));
            }
        }
    }
}

TEST(CloudTurns, MissingAndInfiniteCoordinatesGiveMissingPoints) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Space cloud;
    cloud.points = {{kNaN, 1, 1}, {1, kNaN, 1}, {-1, kNaN, 1}, {0, kNaN, 1}, {kInfinity, 1, 1}, {0, -0.0f, 1}};
    cloud.rotateXY(0);
    for (qsizetype i = 0; i < 4; ++i) {
        EXPECT_EQ(exact(cloud.points[i]), exact(KxPointXYZ(kNaN, kNaN, 1))) << i;
    }
    EXPECT_EQ(exact(cloud.points[4]), exact(KxPointXYZ(kInfinity, kNaN, 1))) << "0 * infinity in y";
    EXPECT_EQ(exact(cloud.points[5]), exact(KxPointXYZ(0, 0, 1)));
}

TEST(CloudTurns, RotateTurnsInOrderAndSkipsNoTurns) {
    const QList<KxPointXYZ> points = Nasty(7).points<KxPointXYZ>(50);
    for (const float xy : {0.0f, 20.0f, kNaN}) {
        for (const float xz : {-0.0f, 30.0f}) {
            for (const float yz : {kNaN, -40.0f}) {
                Space one;
                Space steps;
                one.points = steps.points = points;
                one.zIndexBuilt = steps.zIndexBuilt = 1;
                one.rotate(xy, xz, yz);
                if (xy == 20.0f) {
                    steps.rotateXY(xy);
                }
                if (xz == 30.0f) {
                    steps.rotateXZ(xz);
                }
                if (yz == -40.0f) {
                    steps.rotateYZ(yz);
                }
                EXPECT_EQ(exact(one.points), exact(steps.points));
                EXPECT_EQ(one.zIndexBuilt, steps.zIndexBuilt);
            }
        }
    }
}
