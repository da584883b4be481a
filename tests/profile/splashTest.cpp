#include "profileSupport.h"

using namespace testing_support;

namespace {

bool plainSplashFilter(Points& p, float threshold, float maxWidth) {
    const int m = static_cast<int>(p.size()) - 1;
    if (m < 5) {
        return false;
    }
    QList<float> first(m, 0.0f), second(m, 0.0f);
    for (int k = 0; k < m - 1; ++k) {
        first[k] = p[k + 1].y - p[k].y;
    }
    for (int k = 0; k < m - 1; ++k) {
        second[k] = first[k + 1] - first[k];
    }
    QList<bool> isMarked(m, false);
    for (int i = 0; i < m;) {
        if (!(std::abs(second[i]) > threshold)) {
            ++i;
            continue;
        }
        int j = i + 1;
        float width = 0.0f;
        for (; j < m; ++j) {
            const float dx = p[j].x - p[j - 1].x;
            if (std::abs(second[j]) >= threshold || dx >= maxWidth) {
                break;
            }
            width += dx;
        }
        for (int k = i; width <= maxWidth && k <= j && k < m; ++k) { // deliberately with the index that ended it
            isMarked[k] = true;
        }
        i = j;
    }
    for (int k = m - 1; k >= 0; --k) {
        if (isMarked[k]) {
            p.removeAt(k);
        }
    }
    return isMarked.contains(true);
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
    const KxCircle circle = unroll(out);
    const bool isChanged = plainSplashFilter(out.points, threshold, maxWidth * 180.0f / (radius * 3.1415927f));
    rollUp(out, circle);
    return isChanged;
}

/// Deliberately rolled up in every round, and not unrolled again.
void plainWndFilterPolar(KxProfile& out, float maxDeviation, int w, int offset) {
    const int n = out.size();
    if (w < 0) {
        return;
    }
    KxProfile work(out);
    const KxCircle circle = unroll(work);
    for (int i = 0; i < n; ++i) {
        const auto y = [&](int k) -> float& { return work.points[(i + k) % n].y; };
        float sum = 0.0f, goodSum = 0.0f;
        for (int k = 0; k < w; ++k) {
            sum += y(k);
        }
        const float mean = sum / static_cast<float>(w);
        int goodCount = 0;
        for (int k = 0; k < w; ++k) {
            y(k) = std::abs(y(k) - mean) > maxDeviation ? kNaN : y(k);
        }
        for (int k = 0; k < w; ++k) {
            goodSum += std::isnan(y(k)) ? 0.0f : y(k);
            goodCount += std::isnan(y(k)) ? 0 : 1;
        }
        const float goodMean = goodSum / static_cast<float>(goodCount);
        for (int k = 0; k < w; ++k) {
            y(k) = std::isnan(y(k)) ? goodMean : y(k);
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
    for (int i = 0, count = nasty.size(80); i < count; ++i) {
        const double angle = (nasty.chance(50) ? i : nasty.below(1000)) * 0.01;
        const double radius = nasty.chance(8) ? 50.0 + nasty.below(10) : 50.0 + nasty.below(100) * 1e-3;
        points.append(at(3.0 + radius * std::cos(angle), -4.0 + radius * std::sin(angle)));
    }
    return points;
}

TEST(Splash, FilterEqualsThePlainDefinition) {
    int changed = 0;
    forNasty(41, 4000, [&](Nasty& nasty) {
        Points points = nastyPoints(nasty, 100);
        KxProfile out = profileOf(points);
        const float threshold = nastyLimit(nasty, points), maxWidth = nastyLimit(nasty, points);
        const bool isChanged = out.splashFilter(out, threshold, maxWidth);
        ASSERT_EQ(isChanged, plainSplashFilter(points, threshold, maxWidth)) << threshold << ' ' << maxWidth;
        expectPoints(out, points);
        changed += isChanged ? 1 : 0;
    });
    EXPECT_GT(changed, 400);
}

TEST(Splash, PolarFiltersEqualThePlainDefinition) {
    int changed = 0;
    forNasty(42, 1200, [&](Nasty& nasty) {
        const Points points = nasty.chance(60) ? arc(nasty) : nastyPoints(nasty, 40);
        KxProfile plain = profileOf(points), out = profileOf(points);
        if (nasty.chance(50)) {
            const float threshold = nasty.pick(std::array{0.5f, 1.0f, nastyLimit(nasty)});
            const float maxWidth = nasty.pick(std::array{1.5f, 5.0f, nastyLimit(nasty)});
            const bool isChanged = out.splashFilterPolar(out, 50.0f, threshold, maxWidth);
            ASSERT_EQ(isChanged, plainSplashFilterPolar(plain, 50.0f, threshold, maxWidth));
            changed += isChanged ? 1 : 0;
        } else {
            const int window = std::min(nastyWindow(nasty, out.size()), 3 * out.size()); // longer ones wrap around, too
            const int offset = nasty.pick(std::array{0, 1, window / 2, -1, out.size(), INT_MAX, INT_MIN});
            const float maxDeviation = nasty.pick(std::array{0.5f, nastyLimit(nasty)});
            out.wndFilterPolar(out, maxDeviation, window, offset);
            plainWndFilterPolar(plain, maxDeviation, window, offset);
        }
        expectPoints(out, plain.points);
    });
    EXPECT_GT(changed, 100);
}

} // namespace
