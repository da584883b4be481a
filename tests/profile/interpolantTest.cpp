#include "profileSupport.h"

#include <cmath>
#include <vector>

using namespace KxMath;
using namespace testing_support;

namespace {

/// The Akima spline step by step, with a look-up by bisection for every sample.
struct PlainSpline {
    std::vector<float> x;
    std::vector<std::array<float, 4>> c;

    static float slopeOfParabola(float t, const KxPointXY& p0, const KxPointXY& p1, const KxPointXY& p2) {
        const double dx1 = static_cast<double>(p1.x - p0.x);
        const double dx2 = static_cast<double>(p2.x - p0.x);
        const double dy1 = static_cast<double>(p1.y) - static_cast<double>(p0.y);
        const double dy2 = static_cast<double>(p2.y) - static_cast<double>(p0.y);
        const auto a = static_cast<double>(static_cast<float>((dy2 - dx2 / dx1 * dy1) / (dx2 * dx2 - dx2 * dx1)));
        const auto b = static_cast<double>(static_cast<float>((dy1 - a * (dx1 * dx1)) / dx1));
        return static_cast<float>(b + 2.0 * a * (static_cast<double>(t) - static_cast<double>(p0.x)));
    }

    explicit PlainSpline(Points p) {
        sortByExchanges(p);
        const auto n = p.size();
        if (n < 3) {
            return;
        }
        QList<float> s(n), w(n), d(n);
        for (qsizetype i = 0; i <= n - 2; ++i) {
            s[i] = (p[i + 1].y - p[i].y) / (p[i + 1].x - p[i].x);
        }
        s[n - 1] = s[n - 2];
        for (qsizetype i = 1; i < n; ++i) {
            w[i] = std::abs(s[i] - s[i - 1]);
        }
        for (qsizetype i = 2; i <= n - 3; ++i) {
            if (std::abs(w[i - 1]) + std::abs(w[i + 1]) != 0.0f) {
                d[i] = (w[i + 1] * s[i - 1] + w[i - 1] * s[i]) / (w[i + 1] + w[i - 1]);
            } else {
                d[i] = ((p[i + 1].x - p[i].x) * s[i - 1] + (p[i].x - p[i - 1].x) * s[i]) / (p[i + 1].x - p[i - 1].x);
            }
        }
        d[0] = slopeOfParabola(p[0].x, p[0], p[1], p[2]);
        d[1] = slopeOfParabola(p[1].x, p[0], p[1], p[2]);
        d[n - 2] = slopeOfParabola(p[n - 2].x, p[n - 3], p[n - 2], p[n - 1]);
        d[n - 1] = slopeOfParabola(p[n - 1].x, p[n - 3], p[n - 2], p[n - 1]);
        for (qsizetype i = 0; i < n; ++i) {
            x.push_back(p[i].x);
            if (i == n - 1) {
                break;
            }
            const auto h = static_cast<double>(p[i + 1].x - p[i].x);
            const auto rise = static_cast<double>(p[i + 1].y - p[i].y);
            const auto d0 = static_cast<double>(d[i]);
            const auto d1 = static_cast<double>(d[i + 1]);
            c.push_back({p[i].y, d[i], static_cast<float>((3.0 * rise - 2.0 * d0 * h - d1 * h) / (h * h)),
                         static_cast<float>((-2.0 * rise + (d0 + d1) * h) / (h * h * h))});
        }
    }

    float value(float at) const {
        if (x.empty() || at < x.front() || at > x.back()) {
            return kNaN;
        }
        std::size_t low = 0;
        std::size_t high = x.size();
        while (low != high - 1) {
            const std::size_t middle = (low + high) / 2;
            (x[middle] >= at ? high : low) = middle;
        }
        if (low >= c.size()) {
            return kNaN; // knots that are no numbers
        }
        const double t = static_cast<double>(at) - static_cast<double>(x[low]);
        const auto coeff = [&](std::size_t k) { return static_cast<double>(c[low][k]); };
        return static_cast<float>(((coeff(3) * t + coeff(2)) * t + coeff(1)) * t + coeff(0));
    }

    /// Ends also where the step does not advance.
    Points sample(float step, float from, float to) const {
        Points out;
        const float start = std::isnan(from) || from < x.front() ? x.front() : from;
        const float end = std::isnan(to) || to > x.back() ? x.back() : to;
        for (float at = start;;) {
            if (const float y = value(at); !std::isnan(y)) {
                out.append(KxPointXY(at, y));
            }
            const float next = at + step;
            if (next >= end || !(next > at)) {
                return out;
            }
            at = next;
        }
    }
};

/// A step that does not take forever on the knots of a spline: a share of their range.
float someStep(Nasty& nasty, const std::vector<float>& x) {
    const float range = x.back() - x.front();
    const float share = static_cast<float>(1 + nasty.below(100)) * 0.01f;
    return std::isfinite(range) && range > 0.0f ? range * share * share : kInf;
}

} // namespace

TEST(Interpolant, FollowsItsDefinition) {
    Nasty nasty(101);
    int samples = 0;
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        const Points points = nastyPoints(nasty, 60);
        const PlainSpline plain(points);
        KxProfile profile = profileOf(points);
        KxInterpolant spline(profile, Akima);
        expectPoints(profile, points);
        ASSERT_EQ(spline.count, plain.x.size());
        ASSERT_EQ(spline.type, plain.x.empty() ? -1 : 0);
        if (spline.count == 0) {
            continue;
        }
        ASSERT_EQ(exact(QList<float>(spline.knotsX, spline.knotsX + spline.count)),
                  exact(QList<float>(plain.x.begin(), plain.x.end())));
        QList<float> coeffs;
        for (const auto& c : plain.c) {
            coeffs.append(QList<float>(c.begin(), c.end()));
        }
        ASSERT_EQ(exact(QList<float>(spline.coeffs, spline.coeffs + 4 * (spline.count - 1))), exact(coeffs));
        for (const float x : {points[0].x, plain.x.back(), nasty.plain(), nasty.special()}) {
            ASSERT_EQ(exact(spline.calcY(x)), exact(plain.value(x))) << x;
        }
        const float step = someStep(nasty, plain.x);
        const float from = nasty.chance(40) ? kNaN : nasty.value();
        const float to = nasty.chance(40) ? kNaN : nasty.value();
        KxProfile out = profileOf({{1, 2}});
        const int count = spline.generatePointCloud(out, step, from, to);
        ASSERT_EQ(count, out.size());
        ASSERT_EQ(exact(out.points), exact(plain.sample(step, from, to))) << step << ' ' << from << ' ' << to;
        samples += out.size();
    }
    EXPECT_GT(samples, 10000);
}

TEST(Interpolant, InterpolateReplacesThePointsBySamples) {
    Nasty nasty(102);
    for (int round = 0; round < 600; ++round) {
        const Points points = nastyPoints(nasty, 40);
        KxProfile cleaned = profileOf(points);
        cleaned.removeDuplicates();
        sortByExchanges(cleaned.points);
        const PlainSpline plain(cleaned.points);
        const bool isBuilt = !plain.x.empty() && nasty.chance(80);
        const float step =
            isBuilt && nasty.chance(80) ? someStep(nasty, plain.x) : nasty.pick(std::array{0.0f, -1.0f, kNaN});
        const auto type =
            static_cast<_KxInterpolantType_>(isBuilt ? 0 : nasty.pick(std::array{-1, 1, INT_MAX, INT_MIN}));
        KxProfile profile = profileOf(points);
        const int count = profile.interpolate(step, kNaN, kNaN, type);
        ASSERT_EQ(count, profile.size());
        const Points expected = isBuilt && step > 0.0f ? plain.sample(step, kNaN, kNaN) : cleaned.points;
        ASSERT_EQ(exact(profile.points), exact(expected)) << round << " step " << step;
    }
}

TEST(Interpolant, GoesThroughItsKnotsAndReproducesAParabola) {
    KxProfile profile;
    for (int i = 0; i < 12; ++i) {
        const float x = static_cast<float>(i) + (i % 3 == 0 ? 0.25f : 0.0f);
        profile.points.append(KxPointXY(x, 3.0f - x + 0.5f * x * x));
    }
    KxProfile waves;
    for (int i = 0; i < 200; ++i) {
        waves.points.append(KxPointXY(static_cast<float>(i) * 0.1f, std::sin(static_cast<float>(i) * 0.2f)));
    }
    KxInterpolant parabola(profile, Akima);
    KxInterpolant wave(waves, Akima);
    for (const KxPointXY& p : profile.points) {
        EXPECT_NEAR(parabola.calcY(p.x), p.y, 1e-5f * std::abs(p.y));
    }
    // Between the first three and the last three points the end slopes are those of the parabola itself.
    EXPECT_NEAR(parabola.calcY(0.6f), 3.0f - 0.6f + 0.5f * 0.36f, 1e-5f);
    for (const KxPointXY& p : waves.points) {
        EXPECT_NEAR(wave.calcY(p.x), p.y, 1e-6f);
    }
    for (float x = 0.0f; x < 19.9f; x += 0.033f) {
        EXPECT_NEAR(wave.calcY(x), std::sin(2.0f * x), 2e-3f);
    }
}

TEST(Interpolant, EdgesAndRefusals) {
    const auto type = [](int v) { return static_cast<_KxInterpolantType_>(v); };
    KxProfile two = profileOf({{0, 0}, {1, 1}});
    KxProfile line = profileOf({{2, 2}, {0, 0}, {1, 1}});
    KxInterpolant spline(two, Akima);
    KxProfile out = profileOf({{7, 7}});
    EXPECT_EQ(spline.type, -1);
    EXPECT_TRUE(std::isnan(spline.calcY(0.5f)));
    EXPECT_EQ(spline.generatePointCloud(out, 0.5f, kNaN, kNaN), 0);
    EXPECT_EQ(spline.buildFromPointCloud(line, Akima), 3);
    EXPECT_EQ(spline.calcY(0.0f), 0.0f);
    EXPECT_EQ(spline.calcY(0.5f), 0.5f);
    EXPECT_EQ(spline.calcY(2.0f), 2.0f);
    EXPECT_TRUE(std::isnan(spline.calcY(std::nextafter(2.0f, 3.0f))));
    EXPECT_TRUE(std::isnan(spline.calcY(-1e-45f)));
    EXPECT_TRUE(std::isnan(spline.calcY(kNaN)));
    for (const float step : {0.0f, -1.0f, -kInf, kNaN}) {
        EXPECT_EQ(spline.generatePointCloud(out, step, kNaN, kNaN), 0);
    }
    EXPECT_EQ(spline.generatePointCloudH(out, 1.0f, 0.0f, 1.0f, 2.0f), 0);
    expectPoints(out, {{7, 7}}); // refused each time

    const struct {
        const char* desc;
        float step, from, to;
        Points samples;
    } cases[] = {
        {"the end is not sampled", 0.5f, kNaN, kNaN, {{0, 0}, {0.5f, 0.5f}, {1, 1}, {1.5f, 1.5f}}},
        {"from before the first knot", 1.0f, -5.0f, kNaN, {{0, 0}, {1, 1}}},
        {"to beyond the last knot", 1.0f, 0.5f, 9.0f, {{0.5f, 0.5f}, {1.5f, 1.5f}}},
        {"the first sample is always taken", 1.0f, 1.0f, 0.5f, {{1, 1}}},
        {"from at the end", 1.0f, 2.0f, kNaN, {{2, 2}}},
        {"from beyond the last knot", 1.0f, 3.0f, kNaN, {}},
        {"an infinite step", kInf, kNaN, kNaN, {{0, 0}}},
        {"infinite bounds", 1.0f, -kInf, kInf, {{0, 0}, {1, 1}}},
        {"from infinity", 1.0f, kInf, kNaN, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(spline.generatePointCloud(out, c.step, c.from, c.to), c.samples.size()) << c.desc;
        EXPECT_EQ(exact(out.points), exact(c.samples)) << c.desc;
    }
    EXPECT_EQ(spline.generatePointCloud(out, 1e-9f, 1.0f, kNaN), 1); // a step too small to advance ends

    EXPECT_EQ(spline.buildFromPointCloud(two, type(-1)), 0);
    EXPECT_EQ(spline.count, 3); // the type -1 changes nothing
    EXPECT_EQ(spline.buildFromPointCloud(line, type(1)), 0);
    EXPECT_EQ(spline.count, 0);
    EXPECT_EQ(spline.type, -1);
    EXPECT_EQ(spline.knotsX, nullptr);
}
