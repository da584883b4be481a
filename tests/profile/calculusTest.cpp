#include "profileSupport.h"

#include <cmath>
#include <optional>

using namespace KxMath;
using namespace testing_support;

namespace {

struct Value {
    float y;
    std::optional<int> segment; ///< as far as it is written
};

Value plainCalcY(const Points& p, float x, float maxDistance) {
    const int n = static_cast<int>(p.size());
    if (n == 0) {
        return {kNaN, {}};
    }
    if (n == 1) {
        return {std::abs(p[0].x - x) <= maxDistance ? p[0].y : kNaN, {}};
    }
    KxPointXY a = p[n - 2];
    KxPointXY b = p[n - 1];
    int segment = n - 1;
    for (int i = 0; i < n; ++i) {
        if (p[i].x == x) {
            return {p[i].y, {}};
        }
        if (x < p[i].x) {
            a = i == 0 ? p[0] : p[i - 1];
            b = i == 0 ? p[1] : p[i];
            segment = i - 1;
            break;
        }
    }
    const auto isTooFar = [&](float from, float to) { return std::abs(from - to) > maxDistance; };
    if (a.x == b.x) {
        return {isTooFar(a.x, x) ? kNaN : (a.y + b.y) * 0.5f, segment};
    }
    if (a.x > b.x) {
        std::swap(a, b);
    }
    if (isTooFar(b.x, a.x) || isTooFar(a.x, x) || isTooFar(b.x, x)) {
        return {kNaN, segment};
    }
    KxProfile pair;
    pair.points = {a, b};
    KxLine line;
    line.calcFromPointCloud(pair);
    const bool isWithin = segment >= 0 && segment < n - 1;
    return {isWithin || std::abs(line.k) <= 1.0f ? line.k * x + line.b : kNaN, segment};
}

float trapezoids(const Points& p) {
    float sum = 0.0f;
    for (qsizetype i = 0; i + 1 < p.size(); ++i) {
        sum += (p[i].y + p[i + 1].y) * std::abs(p[i + 1].x - p[i].x) * 0.5f;
    }
    return sum;
}

/// Sampled again from the points in every round. For profiles on which it converges.
float plainIntegral(const Points& points, int from, int to, bool plain) {
    KxProfile trimmed;
    trimmed.points = points;
    trimmed.trim(points[from].x, kNaN, points[to].x, kNaN);
    if (plain || trimmed.size() <= 4) {
        return trapezoids(trimmed.points);
    }
    float previous = kNaN;
    for (float step = 0.01f;; step *= 0.5f) {
        KxProfile fresh;
        fresh = trimmed;
        fresh.removeDuplicates();
        fresh.sort(KxSortAscending, KxSortAscending);
        KxInterpolant spline(fresh, Akima);
        spline.generatePointCloud(fresh, step, kNaN, kNaN);
        const float area = trapezoids(fresh.points);
        const float difference = std::abs(previous - area);
        previous = area;
        if (!std::isnan(difference) && difference <= 0.005f) {
            return area;
        }
    }
}

} // namespace

TEST(Calculus, CalcYFollowsItsDefinition) {
    Nasty nasty(91);
    int found = 0;
    for (int round = 0; round < 4000; ++round) {
        const Points points = nastyPoints(nasty, 40);
        KxProfile profile = profileOf(points);
        for (int k = 0; k < 4; ++k) {
            const float x = nasty.chance(30) ? nastyLimit(nasty) : nasty.plain() * 1.01f;
            const float maxDistance = nasty.chance(60) ? kNaN : nastyLimit(nasty);
            const Value plain = plainCalcY(points, x, maxDistance);
            int segment = -77;
            const float y = profile.calcY(x, maxDistance, &segment);
            ASSERT_EQ(exact(y), exact(plain.y)) << round << " x " << x << " distance " << maxDistance;
            ASSERT_EQ(segment, plain.segment.value_or(-77)) << round;
            ASSERT_EQ(exact(profile.calcY(x, maxDistance, nullptr)), exact(y));
            found += std::isnan(y) ? 0 : 1;
        }
    }
    EXPECT_GT(found, 2000);
}

TEST(Calculus, CalcYExtrapolatesUpToASlopeOfOne) {
    const struct {
        const char* desc;
        Points points;
        float x;
        float maxDistance;
        float y;
        int segment;
    } cases[] = {
        {"between", {{0, 0}, {10, 10}}, 5, 20, 5, 0},
        {"neighbours too far apart", {{0, 0}, {10, 10}}, 5, 6, kNaN, 0},
        {"as far as allowed", {{0, 0}, {10, 10}}, 5, 10, 5, 0},
        {"behind, slope 1", {{0, 0}, {10, 10}}, 12, 20, 12, 1},
        {"behind, slope 2", {{0, 0}, {10, 20}}, 12, 20, kNaN, 1},
        {"before, slope -1", {{0, 0}, {10, -10}}, -1, kNaN, 1, -1},
        {"before, slope -2", {{0, 0}, {10, -20}}, -1, kNaN, kNaN, -1},
        {"steep between", {{0, 0}, {1, 20}}, 0.5f, kNaN, 10, 0},
        {"equal x", {{2, 3}, {2, 5}}, 1, kNaN, 4, -1},
        {"at a point", {{2, 3}, {2, 5}}, 2, 0, 3, -9},
        {"one point has a limit", {{2, 3}}, 2, kNaN, kNaN, -9},
        {"one point within the limit", {{2, 3}}, 3, 1, 3, -9},
    };
    for (const auto& c : cases) {
        KxProfile profile = profileOf(c.points);
        int segment = -9;
        EXPECT_EQ(exact(profile.calcY(c.x, c.maxDistance, &segment)), exact(c.y)) << c.desc;
        EXPECT_EQ(segment, c.segment) << c.desc;
    }
}

TEST(Calculus, DerivativeHoldsTheSlopeInX) {
    KxProfile profile = profileOf({{0, 0}, {1, 2}, {3, 4}, {3, 5}, {3, 5}});
    EXPECT_EQ(exact(profile.derivative().points), exact(Points{{2, 0}, {1, 1}, {kInf, 3}, {kNaN, 3}}));
    EXPECT_EQ(profileOf({{1, 1}}).derivative().size(), 0);
    EXPECT_EQ(profileOf({}).derivative().size(), 0);
}

TEST(Calculus, AHeightOfZeroHidesTheSignChange) {
    const struct {
        QList<float> heights;
        QList<float> zeros;
    } cases[] = {
        {{-1, 2, -3}, {1, 2}}, {{-1, 0, 1}, {}},  {{-1, kNaN, 1}, {}}, {{1, -0.0f, -1}, {}},
        {{-kInf, kInf}, {1}},  {{1, 1, -1}, {2}}, {{1}, {}},           {{}, {}},
    };
    for (const auto& c : cases) {
        KxProfile profile;
        for (const float y : c.heights) {
            profile.points.append(KxPointXY(static_cast<float>(profile.size()), y));
        }
        QList<float> xs(c.heights.size());
        xs.resize(profile.findZeros(xs.data()));
        EXPECT_EQ(exact(xs), exact(c.zeros));
    }
}

TEST(Calculus, CorrelationIsCarriedInDouble) {
    EXPECT_EQ(profileOf({{1, 2}, {2, 4}, {3, 6}}).calcCorrelation(), 1.0f);
    EXPECT_EQ(profileOf({{1, 2}, {2, 0}, {3, -2}}).calcCorrelation(), -1.0f);
    EXPECT_EQ(profileOf({{-1, 1}, {0, 0}, {1, 1}}).calcCorrelation(), 0.0f);
    EXPECT_TRUE(std::isnan(profileOf({}).calcCorrelation()));
    EXPECT_TRUE(std::isnan(profileOf({{1, 2}, {2, 2}}).calcCorrelation()));
    // Sums in floats would lose the squares' last digits here: x is a thousand times its spread.
    KxProfile far;
    for (int i = 0; i < 1000; ++i) {
        far.points.append(KxPointXY(100000.0f + static_cast<float>(i) * 0.125f, static_cast<float>(i % 2)));
    }
    EXPECT_NEAR(far.calcCorrelation(), std::sqrt(3.0) / 1000.0, 1e-6);
}

TEST(Calculus, IntegralFollowsItsDefinition) {
    EXPECT_EQ(profileOf({{0, 0}, {1, 1}, {2, 0}}).integral(0, 2, true), 1.0f);
    EXPECT_EQ(profileOf({{2, 0}, {1, 1}, {0, 0}}).integral(2, 0, true), 1.0f); // whatever the direction
    Nasty nasty(92);
    for (int round = 0; round < 300; ++round) {
        Points points;
        const int count = 2 + nasty.below(40);
        for (int i = 0; i < count; ++i) {
            const float x = static_cast<float>(nasty.chance(80) ? i : nasty.below(count)) * 0.2f;
            points.append(KxPointXY(x, static_cast<float>(nasty.below(100)) * 0.05f));
        }
        KxProfile profile = profileOf(points);
        const int from = nasty.below(count);
        const int to = nasty.below(count);
        for (const bool plain : {false, true}) {
            ASSERT_EQ(exact(profile.integral(from, to, plain)), exact(plainIntegral(points, from, to, plain))) << round;
        }
        expectPoints(profile, points);
    }
}

TEST(Calculus, RefinedIntegralEndsWhereItCannotConverge) {
    const auto profileAt = [](float x0, float dx, float y) {
        KxProfile profile;
        for (int i = 0; i < 10; ++i) {
            profile.points.append(KxPointXY(x0 + static_cast<float>(i) * dx, y));
        }
        return profile;
    };
    KxProfile holed = profileAt(0.0f, 0.1f, 1.0f);
    holed.points[4].y = kNaN; // the spline is NaN about it, and samples that are NaN are left out
    EXPECT_NEAR(holed.integral(0, 9, false), 0.9f, 0.01f);
    EXPECT_EQ(profileAt(0.0f, 0.001f, kNaN).integral(0, 9, false), 0.0f); // no samples
    EXPECT_EQ(profileAt(0.0f, 0.001f, kInf).integral(0, 9, false), 0.0f);
    // At 1e6 floats are 0.0625 apart, so that the first step does not advance; at 1e5 it does.
    EXPECT_TRUE(std::isnan(profileAt(1e6f, 1.0f, 1.0f).integral(0, 9, false)));
    EXPECT_NEAR(profileAt(1e5f, 1.0f, 1.0f).integral(0, 9, false), 9.0f, 0.02f);
    EXPECT_TRUE(std::isnan(profileAt(-1e30f, 1e29f, 1.0f).integral(0, 9, false)));
    // Sums whose rounding is beyond the limit never settle. They drift while the step is halved, until it ends it all.
    EXPECT_NEAR(profileAt(1000.0f, 0.5f, 1e6f).integral(0, 9, false), 4.5e6f, 0.01f * 4.5e6f);
}
