#include "profileSupport.h"

#include <optional>

using namespace testing_support;

namespace {

struct Value {
    float y;
    std::optional<int> segment; ///< as far as it is written
};

Value plainCalcY(const Points& p, float x, float maxDistance) {
    const int n = static_cast<int>(p.size());
    if (n < 2) {
        return {n == 1 && std::abs(p[0].x - x) <= maxDistance ? p[0].y : kNaN, {}};
    }
    int segment = n - 1;
    for (int i = n - 1; i >= 0; --i) {
        segment = x < p[i].x ? i - 1 : segment;
    }
    for (int i = 0; i <= segment + 1 && i < n; ++i) {
        if (p[i].x == x) {
            return {p[i].y, {}};
        }
    }
    const int left = std::clamp(segment, 0, n - 2);
    KxPointXY a = p[left], b = p[left + 1];
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
    KxProfile pair = profileOf({a, b});
    KxLine line;
    line.calcFromPointCloud(pair);
    const bool isWithin = segment >= 0 && segment < n - 1; // elsewhere slopes up to 1 are continued
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
    KxProfile trimmed = profileOf(points);
    trimmed.trim(points[from].x, kNaN, points[to].x, kNaN);
    if (plain || trimmed.size() <= 4) {
        return trapezoids(trimmed.points);
    }
    trimmed.removeDuplicates();
    trimmed.sort(KxSortAscending, KxSortAscending);
    float previous = kNaN;
    for (float step = 0.01f;; step *= 0.5f) {
        KxProfile samples(trimmed);
        KxInterpolant(trimmed, Akima).generatePointCloud(samples, step, kNaN, kNaN);
        const float area = trapezoids(samples.points);
        if (std::abs(previous - area) <= 0.005f) { // NaN: false
            return area;
        }
        previous = area;
    }
}

TEST(Calculus, CalcYFollowsItsDefinition) {
    int found = 0;
    forNasty(91, 4000, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 40);
        KxProfile profile = profileOf(points);
        for (int k = 0; k < 4; ++k) {
            const float x = nasty.chance(30) ? nastyLimit(nasty) : nasty.plain() * 1.01f;
            const float gap = points.size() < 2 ? 0.0f : std::abs(points[1].x - points[0].x);
            const float maxDistance = nasty.chance(60) ? nasty.pick(std::array{kNaN, kNaN, gap}) : nastyLimit(nasty);
            const Value plain = plainCalcY(points, x, maxDistance);
            int segment = -77;
            const float y = profile.calcY(x, maxDistance, &segment);
            ASSERT_EXACT(y, plain.y) << "x " << x << " distance " << maxDistance;
            ASSERT_EQ(segment, plain.segment.value_or(-77));
            ASSERT_EXACT(profile.calcY(x, maxDistance, nullptr), y);
            found += std::isnan(y) ? 0 : 1;
        }
    });
    EXPECT_GT(found, 2000);
    EXPECT_EQ(profileOf({{0, 0}, {10, 10}}).calcY(12, 20, nullptr), 12.0f) << "a slope of exactly 1 is continued";
}

TEST(Calculus, DerivativeHoldsTheSlopeInX) {
    EXPECT_EXACT(profileOf({{0, 0}, {1, 2}, {3, 4}, {3, 5}, {3, 5}}).derivative().points,
                 exact(Points{{2, 0}, {1, 1}, {kInf, 3}, {kNaN, 3}}));
    EXPECT_EQ(profileOf({{1, 1}}).derivative().size() + profileOf({}).derivative().size(), 0);
}

TEST(Calculus, AHeightOfZeroHidesTheSignChange) {
    const std::pair<QList<float>, QList<float>> cases[] = {
        {{-1, 2, -3}, {1, 2}}, {{-1, 0, 1}, {}},  {{-1, kNaN, 1}, {}}, {{1, -0.0f, -1}, {}},
        {{-kInf, kInf}, {1}},  {{1, 1, -1}, {2}}, {{1}, {}},           {{}, {}},
    };
    for (const auto& [ys, zeros] : cases) {
        QList<float> xs(ys.size());
        xs.resize(heights(ys).findZeros(xs.data()));
        EXPECT_EXACT(xs, zeros);
    }
}

TEST(Calculus, CorrelationIsCarriedInDouble) {
    EXPECT_EQ(profileOf({{1, 2}, {2, 4}, {3, 6}}).calcCorrelation(), 1.0f);
    EXPECT_EQ(profileOf({{1, 2}, {2, 0}, {3, -2}}).calcCorrelation(), -1.0f);
    EXPECT_TRUE(std::isnan(profileOf({}).calcCorrelation()));
    EXPECT_TRUE(std::isnan(profileOf({{1, 2}, {2, 2}}).calcCorrelation()));
    // Sums in floats would lose the squares' last digits here: x is a thousand times its spread.
    KxProfile far = profileOf(pointsFor(1000, [](int i) { return at(100000.0 + i * 0.125, i % 2); }));
    EXPECT_NEAR(far.calcCorrelation(), std::sqrt(3.0) / 1000.0, 1e-6);
}

TEST(Calculus, IntegralFollowsItsDefinition) {
    EXPECT_EQ(profileOf({{2, 0}, {1, 1}, {0, 0}}).integral(2, 0, true), 1.0f); // whatever the direction
    forNasty(92, 300, [](Nasty& nasty) {
        Points points;
        const int count = 2 + nasty.below(40);
        for (int i = 0; i < count; ++i) {
            const float x = static_cast<float>(nasty.chance(80) ? i : nasty.below(count)) * 0.2f;
            points.append(KxPointXY(x, static_cast<float>(nasty.below(100)) * 0.05f));
        }
        KxProfile profile = profileOf(points);
        const int from = nasty.below(count), to = nasty.below(count);
        for (const bool plain : {false, true}) {
            ASSERT_EXACT(profile.integral(from, to, plain), plainIntegral(points, from, to, plain));
        }
        expectPoints(profile, points);
    });
}

TEST(Calculus, RefinedIntegralEndsWhereItCannotConverge) {
    const struct {
        float x0, dx, y, expected, tolerance;
    } cases[] = {
        {0.0f, 0.001f, kNaN, 0.0f, 0.0f}, // no samples
        {0.0f, 0.001f, kInf, 0.0f, 0.0f},
        {1e6f, 1.0f, 1.0f, kNaN, 0.0f}, // floats are 0.0625 apart: the first step does not advance
        {1e5f, 1.0f, 1.0f, 9.0f, 0.02f}, // here it does
        {-1e30f, 1e29f, 1.0f, kNaN, 0.0f},
        // Sums whose rounding is beyond the limit never settle. They drift while the step is halved, until it ends.
        {1000.0f, 0.5f, 1e6f, 4.5e6f, 0.01f * 4.5e6f},
    };
    for (const auto& c : cases) {
        KxProfile profile = heights(QList<float>(10, c.y));
        std::for_each(profile.points.begin(), profile.points.end(), [&](KxPointXY& p) { p.x = c.x0 + p.x * c.dx; });
        const float area = profile.integral(0, 9, false);
        EXPECT_TRUE(std::isnan(c.expected) ? std::isnan(area) : std::abs(area - c.expected) <= c.tolerance) << c.x0;
    }
    KxProfile holed = heights({1, 1, 1, 1, kNaN, 1, 1, 1, 1, 1});
    // The spline is NaN about the hole, and samples that are NaN are left out.
    EXPECT_NEAR(holed.integral(0, 9, false), 9.0f, 0.01f);
}

} // namespace
