#include "profileSupport.h"

using namespace testing_support;

namespace {

/// The Akima spline step by step, with a look-up by bisection for every sample.
struct PlainSpline {
    QList<float> x, coeffs;

    static float slopeOfParabola(float t, const KxPointXY& p0, const KxPointXY& p1, const KxPointXY& p2) {
        const double dx1 = static_cast<double>(p1.x - p0.x), dx2 = static_cast<double>(p2.x - p0.x);
        const double dy1 = static_cast<double>(p1.y) - static_cast<double>(p0.y),
                     dy2 = static_cast<double>(p2.y) - static_cast<double>(p0.y);
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
        const auto dx = [&](qsizetype i) { return p[i + 1].x - p[i].x; };
        for (qsizetype i = 0; i <= n - 2; ++i) {
            s[i] = (p[i + 1].y - p[i].y) / dx(i);
        }
        s[n - 1] = s[n - 2];
        for (qsizetype i = 1; i < n; ++i) {
            w[i] = std::abs(s[i] - s[i - 1]);
        }
        for (qsizetype i = 2; i <= n - 3; ++i) {
            d[i] = std::abs(w[i - 1]) + std::abs(w[i + 1]) != 0.0f
                       ? (w[i + 1] * s[i - 1] + w[i - 1] * s[i]) / (w[i + 1] + w[i - 1])
                       : (dx(i) * s[i - 1] + dx(i - 1) * s[i]) / (p[i + 1].x - p[i - 1].x);
        }
        d[0] = slopeOfParabola(p[0].x, p[0], p[1], p[2]);
        d[1] = slopeOfParabola(p[1].x, p[0], p[1], p[2]);
        d[n - 2] = slopeOfParabola(p[n - 2].x, p[n - 3], p[n - 2], p[n - 1]);
        d[n - 1] = slopeOfParabola(p[n - 1].x, p[n - 3], p[n - 2], p[n - 1]);
        std::transform(p.begin(), p.end(), std::back_inserter(x), [](const KxPointXY& q) { return q.x; });
        for (qsizetype i = 0; i < n - 1; ++i) {
            const auto h = static_cast<double>(dx(i));
            const auto rise = static_cast<double>(p[i + 1].y - p[i].y);
            const auto d0 = static_cast<double>(d[i]);
            const auto d1 = static_cast<double>(d[i + 1]);
            coeffs += {p[i].y, d[i], static_cast<float>((3.0 * rise - 2.0 * d0 * h - d1 * h) / (h * h)),
                       static_cast<float>((-2.0 * rise + (d0 + d1) * h) / (h * h * h))};
        }
    }

    float value(float at) const {
        if (x.empty() || at < x.front() || at > x.back()) {
            return kNaN;
        }
        qsizetype low = 0;
        for (qsizetype high = x.size(); low != high - 1;) {
            const qsizetype middle = (low + high) / 2;
            (x[middle] >= at ? high : low) = middle;
        }
        if (low >= x.size() - 1) {
            return kNaN; // knots that are no numbers
        }
        const double t = static_cast<double>(at) - static_cast<double>(x[low]);
        const auto c = [&](qsizetype k) { return static_cast<double>(coeffs[4 * low + k]); };
        return static_cast<float>(((c(3) * t + c(2)) * t + c(1)) * t + c(0));
    }

    /// Ends also where the step does not advance.
    Points sample(float step, float from, float to) const {
        Points out;
        const float end = std::isnan(to) || to > x.back() ? x.back() : to;
        for (float at = std::isnan(from) || from < x.front() ? x.front() : from;; at += step) {
            const float y = value(at);
            out += std::isnan(y) ? Points() : Points{{at, y}};
            if (at + step >= end || !(at + step > at)) {
                return out;
            }
        }
    }

    /// A step that does not take forever: a share of the range of the knots.
    float someStep(Nasty& nasty) const {
        const float range = x.back() - x.front(), share = static_cast<float>(1 + nasty.below(100)) * 0.01f;
        const float step = range * share * share;
        return std::isfinite(range) && step > 0.0f ? step : kInf;
    }
};

TEST(Interpolant, EqualsThePlainDefinition) {
    int samples = 0;
    forNasty(101, 3000, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 60);
        const PlainSpline plain(points);
        KxProfile profile = profileOf(points);
        KxInterpolant spline(profile, Akima);
        expectPoints(profile, points);
        ASSERT_EQ(spline.count, plain.x.size());
        ASSERT_EQ(spline.type, plain.x.empty() ? -1 : 0);
        if (spline.count == 0) {
            return;
        }
        ASSERT_EXACT(QList<float>(spline.knotsX, spline.knotsX + spline.count), plain.x);
        ASSERT_EXACT(QList<float>(spline.coeffs, spline.coeffs + qsizetype{4} * (spline.count - 1)), plain.coeffs);
        for (const float x : {points[0].x, plain.x.back(), nasty.plain(), nasty.special()}) {
            ASSERT_EXACT(spline.calcY(x), plain.value(x)) << x;
        }
        const float step = plain.someStep(nasty);
        const float from = nasty.chance(40) ? kNaN : nasty.value();
        const float to = nasty.chance(40) ? kNaN : nasty.value();
        KxProfile out = profileOf({{1, 2}});
        const int count = spline.generatePointCloud(out, step, from, to);
        ASSERT_EQ(count, out.size());
        ASSERT_EXACT(out.points, plain.sample(step, from, to)) << step << ' ' << from << ' ' << to;
        samples += out.size();
    });
    EXPECT_GT(samples, 10000);
}

TEST(Interpolant, InterpolateReplacesThePointsBySamples) {
    forNasty(102, 600, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 40);
        KxProfile cleaned = profileOf(points);
        cleaned.removeDuplicates();
        sortByExchanges(cleaned.points);
        const PlainSpline plain(cleaned.points);
        const bool isBuilt = !plain.x.empty() && nasty.chance(80);
        const float step =
            isBuilt && nasty.chance(80) ? plain.someStep(nasty) : nasty.pick(std::array{0.0f, -1.0f, kNaN});
        const int type = isBuilt ? 0 : nasty.pick(std::array{-1, 1, INT_MAX, INT_MIN});
        KxProfile profile = profileOf(points);
        const int count = profile.interpolate(step, kNaN, kNaN, static_cast<_KxInterpolantType_>(type));
        ASSERT_EQ(count, profile.size());
        const Points expected = isBuilt && step > 0.0f ? plain.sample(step, kNaN, kNaN) : cleaned.points;
        ASSERT_EXACT(profile.points, expected) << "step " << step;
    });
}

TEST(Interpolant, EdgesAndRefusals) {
    KxProfile two = profileOf({{0, 0}, {1, 1}}), line = profileOf({{2, 2}, {0, 0}, {1, 1}});
    KxInterpolant spline(two, Akima);
    KxProfile out = profileOf({{7, 7}});
    EXPECT_EQ(spline.generatePointCloud(out, 0.5f, kNaN, kNaN), 0);
    EXPECT_TRUE(spline.type == -1 && std::isnan(spline.calcY(0.5f)));
    EXPECT_EQ(spline.buildFromPointCloud(line, Akima), 3);
    for (const float step : {0.0f, -1.0f, -kInf, kNaN}) {
        EXPECT_EQ(spline.generatePointCloud(out, step, kNaN, kNaN), 0);
    }
    EXPECT_EQ(spline.generatePointCloudH(out, 1.0f, 0.0f, 1.0f, 2.0f), 0);
    expectPoints(out, {{7, 7}}); // refused each time
    constexpr float kBounds[] = {kNaN, -5.0f, 0.0f, 0.5f, 1.0f, 2.0f, 3.0f, kInf, -kInf};
    for (const float step : {0.5f, 1.0f, kInf, 1e-9f}) {
        for (const float from : kBounds) {
            for (const float to : kBounds) {
                if (step > 0.1f || from >= 0.5f) { // from 0.5 on 1e-9 is too small to advance
                    spline.generatePointCloud(out, step, from, to);
                    EXPECT_EXACT(out.points, PlainSpline(line.points).sample(step, from, to)) << from;
                }
            }
        }
    }
    EXPECT_EQ(spline.buildFromPointCloud(two, static_cast<_KxInterpolantType_>(-1)), 0);
    EXPECT_EQ(spline.count, 3); // the type -1 changes nothing
    EXPECT_EQ(spline.buildFromPointCloud(line, static_cast<_KxInterpolantType_>(1)), 0);
    EXPECT_TRUE(spline.count == 0 && spline.type == -1 && spline.knotsX == nullptr);
}

} // namespace
