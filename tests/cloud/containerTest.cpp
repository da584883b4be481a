// Filling, copying, measuring, moving and rotating clouds.
#include "support/testing.h"

using namespace testing_support;

namespace {

using Space = KxPointCloud<KxPointXYZ>;

const ExactList kUnknown(6, exact(kNaN));

/// Nasty points, a range from `first` on, and an index that does not belong to them.
template <typename Point>
void fill(KxPointCloud<Point>& cloud, Nasty& nasty, float first) {
    cloud.points = nasty.points<Point>(nasty.size());
    setRange(cloud, first);
    cloud.zIndexBuilt = 1;
    cloud.zIndex[3] = 4;
}

/// Extends a range to `v`: NaN is replaced by any value, a known bound only by a value beyond it.
void widen(float& min, float& max, float v) {
    min = std::isnan(min) || min > v ? v : min;
    max = std::isnan(max) || max < v ? v : max;
}

template <typename Point>
class CloudOf : public testing::Test {};
TYPED_TEST_SUITE(CloudOf, PointTypes);

TYPED_TEST(CloudOf, EmptyHasNoRangeAndNoCentre) {
    KxPointCloud<TypeParam> cloud;
    EXPECT_TRUE(cloud.isEmpty() && cloud.size() == 0 && cloud.zIndexBuilt == 0);
    EXPECT_EXACT(exactRange(cloud), kUnknown);
    EXPECT_EQ(cloud.calcAverageY(), 0.0f);
    TypeParam out = Nasty(1).point<TypeParam>();
    const ExactList before = exact(out);
    setRange(cloud, 1);
    EXPECT_FALSE(cloud.calcCenterPoint(out) || cloud.caclCenterMassPoint(out));
    EXPECT_EXACT(out, before);
}

TYPED_TEST(CloudOf, CopyAppendAndClearTouchWhatTheySay) {
    forNasty(2, 100, [](Nasty& nasty) {
        KxPointCloud<TypeParam> a, b;
        fill(a, nasty, 10);
        fill(b, nasty, nasty.pick(std::array{9.5f, 10.0f, 10.5f, kNaN}));
        b.zIndex[5] = 6;
        const ExactList bPoints = exact(b.points);

        KxPointCloud<TypeParam> copy(b), sum(a);
        EXPECT_EXACT(copy.points, bPoints);
        EXPECT_EXACT(exactRange(copy), exactRange(b));
        EXPECT_TRUE(copy.zIndex.isEmpty() && copy.zIndexBuilt == 0);

        static_assert(std::is_void_v<decltype(copy += b)> && std::is_void_v<decltype(copy = b)>);
        sum.zIndexBuilt = 1;
        sum += b;
        EXPECT_EXACT(sum.points, a.points + b.points);
        ExactList range = exactRange(a);
        const ExactList other = exactRange(b);
        for (std::size_t i = 0; i < 6; ++i) { // minimum and maximum alternate; an unknown bound is skipped
            const bool isBeyond = i % 2 == 0 ? other[i].value < range[i].value : other[i].value > range[i].value;
            range[i] = isBeyond ? other[i] : range[i];
        }
        EXPECT_EXACT(exactRange(sum), range);
        EXPECT_EQ(sum.zIndexBuilt, 0);
        copy.clear();
        copy += a;
        EXPECT_EXACT(exactRange(copy), kUnknown) << "an unknown bound stays unknown";

        a = b;
        EXPECT_EXACT(exactRange(a), exactRange(b));
        EXPECT_TRUE(a.zIndexBuilt == 0 && a.zIndex.size() == 1);
        b.points.fill(TypeParam());
        EXPECT_EXACT(a.points, bPoints) << "a copy is deep";

        b.clear();
        EXPECT_TRUE(b.isEmpty() && b.zIndexBuilt == 1 && b.zIndex.size() == 2);
        EXPECT_EXACT(exactRange(b), kUnknown);
    });
}

TYPED_TEST(CloudOf, CallsOnItself) {
    forNasty(3, 50, [](Nasty& nasty) {
        KxPointCloud<TypeParam> cloud;
        const KxPointCloud<TypeParam>& same = cloud;
        fill(cloud, nasty, 1);
        const ExactList range = exactRange(cloud);
        const QList<TypeParam> once = cloud.points;
        cloud = same;
        EXPECT_EXACT(cloud.points, once);
        cloud += same;
        EXPECT_EXACT(cloud.points, once + once);
        EXPECT_EXACT(exactRange(cloud), range);
        if (!once.isEmpty()) {
            EXPECT_TRUE(cloud.caclCenterMassPoint(cloud.points[0]) && cloud.calcCenterPoint(cloud.points[0]));
            EXPECT_EQ(cloud.points[0].x, 1.5f);
        }
    });
}

TYPED_TEST(CloudOf, RangeOverNastyPoints) {
    constexpr bool kIsFlat = std::is_same_v<TypeParam, KxPointXY>;
    forNasty(4, 200, [](Nasty& nasty) {
        KxPointCloud<TypeParam> cloud, known;
        fill(cloud, nasty, 7);
        if (nasty.chance(50)) { // bounds of either zero
            const float sign = nasty.pick(std::array{1.0f, -1.0f});
            for (TypeParam& p : cloud.points) {
                p.x = sign * nasty.pick(std::array{0.0f, -0.0f, 1.0f, kNaN});
                p.y = sign * nasty.pick(std::array{0.0f, -0.0f, 1.0f, 2.0f});
            }
        }
        if constexpr (kIsFlat) { // deliberately keeps an old maxY, and has no z
            setRange(known, 7);
            known.minX = known.maxX = known.minY = kNaN;
        }
        for (const TypeParam& p : cloud.points) {
            widen(known.minX, known.maxX, p.x);
            widen(known.minY, known.maxY, p.y);
            if constexpr (!kIsFlat) {
                widen(known.minZ, known.maxZ, p.z);
            }
        }
        cloud.calcRange();
        EXPECT_EXACT(exactRange(cloud), exactRange(known));
    });
}

TYPED_TEST(CloudOf, ShiftLeavesACoordinateUntouchedOnlyForExactly0) {
    forNasty(5, 100, [](Nasty& nasty) {
        KxPointCloud<TypeParam> cloud;
        fill(cloud, nasty, 3);
        const ExactList range = exactRange(cloud);
        QList<TypeParam> expected = cloud.points;
        constexpr std::array kShifts{0.0f, -0.0f, 0.25f, kNaN};
        const float dx = nasty.pick(kShifts), dy = nasty.pick(kShifts), dz = nasty.pick(kShifts);
        const auto shifted = [](float v, float d) { return d == 0.0f ? v : v + d; };
        for (TypeParam& p : expected) {
            p.x = shifted(p.x, dx);
            p.y = shifted(p.y, dy);
            if constexpr (requires { p.z; }) {
                p.z = shifted(p.z, dz);
            }
        }
        cloud.shift(dx, dy, dz);
        EXPECT_EXACT(cloud.points, expected);
        EXPECT_EXACT(exactRange(cloud), range);
        EXPECT_EQ(cloud.zIndexBuilt, 1);
    });
}

TEST(CloudMeasures, CentresMeansAndSizes) {
    KxPointCloud<KxPointXYZRGB> cloud;
    cloud.points = {{0, 16777216, 2, 1}, {4, 1, 4, 2}, {kNaN, 1, kNaN, 3}};
    EXPECT_EQ(cloud.calcAverageY(), 16777216.0f / 3) << "a single-precision sum loses each 1";
    KxPointXYZRGB out(0, 0, 0, 77);
    EXPECT_TRUE(cloud.caclCenterMassPoint(out));
    EXPECT_EXACT(out, KxPointXYZRGB(kNaN, 16777216.0f / 3, kNaN, 77));
    EXPECT_TRUE(cloud.calcCenterPoint(out)) << "calculates the range first";
    EXPECT_EXACT(out, KxPointXYZRGB(2, 8388608.5f, 3, 77));
    EXPECT_EXACT(exactRange(cloud), exact(QList<float>{0, 4, 1, 16777216, 2, 4}));
    setRange(cloud, 10);
    EXPECT_TRUE(cloud.size_x() == 1 && cloud.size_y() == 1 && cloud.size_z() == 1);
    for (float* const bound : boundsOf(cloud)) {
        setRange(cloud, 10);
        EXPECT_TRUE(cloud.calcCenterPoint(out)) << "a known range is taken as it is";
        EXPECT_EXACT(out, KxPointXYZRGB(10.5f, 12.5f, 14.5f, 77));
        *bound = kNaN;
        EXPECT_TRUE(std::isnan(cloud.size_x() + cloud.size_y() + cloud.size_z()));
        EXPECT_TRUE(cloud.calcCenterPoint(out)) << "one unknown bound makes the whole range new";
        EXPECT_EQ(out.x, 2.0f);
    }
}

TEST(Cloud2D, ResizeScalesAboutTheOrigin) {
    KxPointCloud<KxPointXY> cloud;
    cloud.points = {{1, 2}, {kNaN, -3}};
    cloud.resize(2, -1, 100);
    EXPECT_EXACT(cloud.points, exact(Points{{2, -2}, {kNaN, 3}}));
    cloud.resize(1, kNaN, 1);
    EXPECT_EXACT(cloud.points, exact(Points{{2, kNaN}, {kNaN, kNaN}}));
    EXPECT_EXACT(exactRange(cloud), kUnknown);
}

TEST(CloudTurns, RotateFromFirstTowardsSecondAxis) {
    using Axis = float KxPointXYZ::*;
    const std::tuple<void (Space::*)(float), Axis, Axis, Axis> planes[] = {
        {&Space::rotateXY, &KxPointXYZ::x, &KxPointXYZ::y, &KxPointXYZ::z},
        {&Space::rotateXZ, &KxPointXYZ::x, &KxPointXYZ::z, &KxPointXYZ::y},
        {&Space::rotateYZ, &KxPointXYZ::y, &KxPointXYZ::z, &KxPointXYZ::x},
    };
    Nasty nasty(6);
    for (const auto& [turn, first, second, fixed] : planes) {
        for (const float deg : {0.0f, 90.0f, -90.0f, 180.0f, 33.3f, 725.0f, -1e5f}) {
            Space cloud;
            for (int i = 0; i < 300; ++i) {
                KxPointXYZ p;
                p.*first = i < 20 ? 0.0f : nasty.plain();
                p.*second = i % 7 == 0 ? 0.0f : nasty.plain();
                p.*fixed = nasty.special();
                cloud.points.append(p);
            }
            const SpacePoints before = cloud.points;
            SCOPED_TRACE(testing::Message() << deg << " degrees");
            InputLog input;
            input.add(before);
            const RoundReport report(6, 0, input);
            setRange(cloud, 3);
            const ExactList range = exactRange(cloud);
            cloud.zIndexBuilt = 1;
            (cloud.*turn)(deg);
            EXPECT_TRUE(cloud.zIndexBuilt == 0 && exactRange(cloud) == range);
            const double rad = static_cast<double>(deg) * 3.14159265358979 / 180;
            // Angles up to 360 + |deg| degrees are rounded twice to single precision, and pi is off by 2.8e-8 of it.
            const double rounding = (360 + std::abs(static_cast<double>(deg))) / 57 * 2e-7 + 3e-7;
            for (qsizetype i = 0; i < before.size(); ++i) {
                const double a = static_cast<double>(before[i].*first), b = static_cast<double>(before[i].*second);
                const double bound = std::hypot(a, b) * rounding;
                const KxPointXYZ& p = cloud.points[i];
                EXPECT_NEAR(static_cast<double>(p.*first), std::cos(rad) * a - std::sin(rad) * b, bound);
                EXPECT_NEAR(static_cast<double>(p.*second), std::sin(rad) * a + std::cos(rad) * b, bound);
                EXPECT_EXACT(p.*fixed, before[i].*fixed);
            }
        }
    }
    Space cloud;
    cloud.points = {{kNaN, 1, 1}, {1, kNaN, 1}, {-1, kNaN, 1}, {0, kNaN, 1}, {kInf, 1, 1}, {0, -0.0f, 1}};
    cloud.rotateXY(0);
    const KxPointXYZ gone(kNaN, kNaN, 1); // and 0 * infinity in y
    EXPECT_EXACT(cloud.points, exact(SpacePoints{gone, gone, gone, gone, {kInf, kNaN, 1}, {0, 0, 1}}));
}

TEST(CloudTurns, RotateTurnsInOrderAndSkipsNoTurns) {
    forNasty(7, 100, [](Nasty& nasty) {
        Space one, steps;
        one.points = steps.points = nasty.points<KxPointXYZ>(20);
        one.zIndexBuilt = steps.zIndexBuilt = 1;
        float angles[3];
        for (int i = 0; i < 3; ++i) {
            constexpr void (Space::*kTurns[])(float) = {&Space::rotateXY, &Space::rotateXZ, &Space::rotateYZ};
            angles[i] = nasty.pick(std::array{0.0f, -0.0f, kNaN, 20.0f, -40.0f});
            if (angles[i] != 0.0f && !std::isnan(angles[i])) {
                (steps.*kTurns[i])(angles[i]);
            }
        }
        one.rotate(angles[0], angles[1], angles[2]);
        EXPECT_EXACT(one.points, steps.points);
        EXPECT_EQ(one.zIndexBuilt, steps.zIndexBuilt);
    });
}

} // namespace
