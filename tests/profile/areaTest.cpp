#include "profileSupport.h"

using namespace testing_support;

namespace {

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

TEST(Area, IntegralEqualsThePlainDefinition) {
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

TEST(Area, RefinedIntegralEndsWhereItCannotConverge) {
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
