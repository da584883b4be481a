#include "profileSupport.h"

#include <cmath>
#include <numbers>

using namespace KxMath;
using namespace testing_support;

namespace {

bool plainSplashFilter(Points& p, float threshold, float maxWidth) {
    const int n = static_cast<int>(p.size());
    const int m = n - 1;
    if (m < 5) {
        return false;
    }
    QList<float> first(m, 0.0f), second(m, 0.0f);
    for (int k = 0; k <= n - 3; ++k) {
        first[k] = p[k + 1].y - p[k].y;
    }
    for (int k = 0; k <= n - 3; ++k) {
        second[k] = first[k + 1] - first[k];
    }
    QList<int> marked;
    for (int i = 0; i < m;) {
        if (!(std::abs(second[i]) > threshold)) {
            ++i;
            continue;
        }
        int j = i + 1;
        float width = 0.0f;
        while (j < m) {
            const float dx = p[j].x - p[j - 1].x;
            if (std::abs(second[j]) >= threshold || dx >= maxWidth) {
                break;
            }
            width += dx;
            ++j;
        }
        if (width <= maxWidth) {
            for (int k = j; k >= i; --k) {
                if (k < m && !marked.contains(k)) {
                    marked.append(k);
                }
            }
        }
        if (j > 0) {
            --j;
        }
        i = j + 1;
    }
    std::sort(marked.begin(), marked.end());
    for (qsizetype k = marked.size() - 1; k >= 0; --k) {
        p.removeAt(marked[k]);
    }
    return !marked.isEmpty();
}

void swapXY(KxProfile& profile) {
    for (KxPointXY& p : profile.points) {
        std::swap(p.x, p.y);
    }
}

/// The circle about which `work` is turned into (angle, radius), ordered by angle.
KxCircle unroll(KxProfile& work) {
    KxCircle circle;
    circle.calcFromPointCloud(work);
    work.shift(-circle.x, -circle.y, 0.0f);
    work.toPolar();
    swapXY(work);
    sortByExchanges(work.points);
    return circle;
}

void rollUp(KxProfile& work, const KxCircle& circle) {
    swapXY(work);
    work.toEvklid();
    work.shift(circle.x, circle.y, 0.0f);
}

bool plainSplashFilterPolar(KxProfile& out, float radius, float threshold, float maxWidth) {
    KxProfile work(out);
    const KxCircle circle = unroll(work);
    const bool isChanged = plainSplashFilter(work.points, threshold, maxWidth * 180.0f / (radius * 3.1415927f));
    rollUp(work, circle);
    out = work;
    return isChanged;
}

void plainWndFilterPolar(KxProfile& out, float maxDeviation, int w, int offset) {
    KxProfile work(out);
    if (w < 0 || w > work.size()) {
        return;
    }
    const KxCircle circle = unroll(work);
    const int n = work.size();
    for (int i = 0; i < n; ++i) {
        float sum = 0.0f;
        for (int k = 0; k < w; ++k) {
            sum += work.points[(i + k) % n].y;
        }
        const float mean = sum / static_cast<float>(w);
        for (int k = 0; k < w; ++k) {
            if (std::abs(work.points[(i + k) % n].y - mean) > maxDeviation) {
                work.points[(i + k) % n].y = kNaN;
            }
        }
        float goodSum = 0.0f;
        int goodCount = 0;
        for (int k = 0; k < w; ++k) {
            if (!std::isnan(work.points[(i + k) % n].y)) {
                goodSum += work.points[(i + k) % n].y;
                ++goodCount;
            }
        }
        const float goodMean = goodSum / static_cast<float>(goodCount);
        for (int k = 0; k < w; ++k) {
            if (std::isnan(work.points[(i + k) % n].y)) {
                work.points[(i + k) % n].y = goodMean;
            }
        }
        const qint64 at = qint64{i} + offset >= n ? qint64{i} + offset - n : qint64{i} + offset;
        if (at >= 0 && at < n) {
            work.points[at].y = goodMean;
        }
        rollUp(work, circle);
        out = work;
    }
}

/// Part of a circle about (3, -4), now and then with points that stand off.
Points arc(Nasty& nasty) {
    Points points;
    const int count = nasty.size(80);
    for (int i = 0; i < count; ++i) {
        const double angle = (nasty.chance(50) ? i : nasty.below(1000)) * 0.01;
        const double radius = nasty.chance(8) ? 50.0 + nasty.below(10) : 50.0 + nasty.below(100) * 1e-3;
        points.append(KxPointXY(static_cast<float>(3.0 + radius * std::cos(angle)),
                                static_cast<float>(-4.0 + radius * std::sin(angle))));
    }
    return points;
}

} // namespace

TEST(Splash, FilterFollowsItsDefinition) {
    Nasty nasty(41);
    int changed = 0;
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE(round);
        Points points = nastyPoints(nasty, 100);
        KxProfile out = profileOf(points);
        const float threshold = nastyLimit(nasty);
        const float maxWidth = nastyLimit(nasty);
        const bool isChanged = out.splashFilter(out, threshold, maxWidth);
        ASSERT_EQ(isChanged, plainSplashFilter(points, threshold, maxWidth));
        expectPoints(out, points);
        ASSERT_FALSE(HasFailure()) << threshold << ' ' << maxWidth;
        changed += isChanged ? 1 : 0;
    }
    EXPECT_GT(changed, 400);
}

TEST(Splash, PolarFiltersFollowTheirDefinitions) {
    Nasty nasty(42);
    int changed = 0;
    for (int round = 0; round < 1200; ++round) {
        SCOPED_TRACE(round);
        const Points points = nasty.chance(60) ? arc(nasty) : nastyPoints(nasty, 40);
        KxProfile plain = profileOf(points);
        KxProfile out = profileOf(points);
        if (nasty.chance(50)) {
            const float threshold = nasty.pick(std::array{0.5f, 1.0f, nastyLimit(nasty)});
            const float maxWidth = nasty.pick(std::array{1.5f, 5.0f, nastyLimit(nasty)});
            const bool isChanged = out.splashFilterPolar(out, 50.0f, threshold, maxWidth);
            ASSERT_EQ(isChanged, plainSplashFilterPolar(plain, 50.0f, threshold, maxWidth));
            changed += isChanged ? 1 : 0;
        } else {
            const int window = nastyWindow(nasty, out.size());
            const int offset = nasty.pick(std::array{0, 1, window / 2, -1, out.size(), INT_MAX, INT_MIN});
            const float maxDeviation = nasty.pick(std::array{0.5f, nastyLimit(nasty)});
            out.wndFilterPolar(out, maxDeviation, window, offset);
            plainWndFilterPolar(plain, maxDeviation, window, offset);
        }
        expectPoints(out, plain.points);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(changed, 100);
}

TEST(Splash, RemovesOneBeforeTheBendThroughTheIndexThatEndedIt) {
    const auto profileWithY = [](std::initializer_list<float> ys) {
        KxProfile profile;
        for (const float y : ys) {
            profile.points.append(KxPointXY(static_cast<float>(profile.size()), y));
        }
        return profile;
    };
    KxProfile five = profileWithY({0, 0, 9, 0, 0});
    EXPECT_FALSE(five.splashFilter(five, 1.0f, 5.0f));
    EXPECT_EQ(five.size(), 5);
    // Second differences: 0 9 -18 9 0 0 and the two last slots.
    KxProfile spike = profileWithY({0, 0, 0, 9, 0, 0, 0, 0});
    EXPECT_TRUE(spike.splashFilter(spike, 1.0f, 2.0f));
    EXPECT_EQ(exact(spike.points), exact(Points{{0, 0}, {4, 0}, {5, 0}, {6, 0}, {7, 0}}));
}

TEST(Splash, PolarFilterTakesASpikeOffACircle) {
    KxProfile circle;
    for (int i = 0; i < 360; ++i) {
        const double angle = i * std::numbers::pi / 180.0;
        const double radius = i >= 100 && i < 103 ? 52.0 : 50.0;
        circle.points.append(
            KxPointXY(static_cast<float>(radius * std::cos(angle)), static_cast<float>(radius * std::sin(angle))));
    }
    EXPECT_TRUE(circle.splashFilterPolar(circle, 50.0f, 1.0f, 5.0f));
    EXPECT_GE(circle.size(), 350);
    for (const KxPointXY& p : circle.points) {
        EXPECT_NEAR(std::hypot(p.x, p.y), 50.0f, 0.01f);
    }
}
