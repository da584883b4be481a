#include "profileSupport.h"

#include <cmath>

using namespace KxMath;
using namespace testing_support;

namespace {

// The plain definitions write into `out` by index, which may be the points they read.

void plainKihFilter(const Points& in, Points& out, float maxStep) {
    constexpr float kWeights[20] = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                    0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                    0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};
    const qsizetype n = in.size();
    if (n < 20) {
        return;
    }
    QList<float> filtered(n);
    for (qsizetype i = 0; i < n; ++i) {
        if (!std::isnan(maxStep) && i > 0 && in[i].x - in[i - 1].x > maxStep) {
            filtered[i] = in[i].y;
            continue;
        }
        for (qsizetype k = 0; k < 20; ++k) {
            filtered[i] += i - k < 0 ? 0.0f : kWeights[k] * in[i - k].y;
        }
    }
    for (qsizetype i = 0; i < n; ++i) {
        out[i] = KxPointXY(in[i].x, i < 20 ? in[i].y : filtered[i]);
    }
}

void plainWndFilter(Points& points, qint64 w) {
    const auto h = static_cast<qsizetype>(std::floor(static_cast<float>(w) / 2.5f));
    for (qsizetype i = 0; w >= 0 && i < points.size() - w; ++i) {
        float sum = 0.0f;
        for (qsizetype k = i; k < i + w; ++k) {
            sum += points[k].y;
        }
        points[i + h].y = sum / static_cast<float>(w);
    }
}

void plainMedFilt(const Points& in, Points& out, qint64 w) {
    for (qsizetype i = 0; w > 0 && i < in.size() - w; ++i) {
        Points scratch = in.mid(i, w);
        sortByExchanges(scratch);
        out[i].y = scratch[w / 2].y;
    }
}

void plainDiffFilt(qsizetype n, Points& out, qint64 w) {
    const qsizetype h = w / 2;
    for (qsizetype i = 0; w > 0 && w + 2 <= n && i < n - w + 1; ++i) {
        float upperX = 0.0f, upperY = 0.0f, lowerX = 0.0f, lowerY = 0.0f;
        for (qsizetype k = h; k < w; ++k) {
            upperX += out[i + k].x;
            upperY += out[i + k].y;
        }
        for (qsizetype k = 0; k < h; ++k) {
            lowerX += out[i + k].x;
            lowerY += out[i + k].y;
        }
        out[i].y = (upperY - lowerY) / (upperX - lowerX);
    }
}

/// Runs a filter and its plain definition with `out` being the receiver, a copy of it, and a longer profile.
template <typename Filter, typename Plain>
void compareFilters(int maxPoints, Filter filter, Plain plain) {
    Nasty nasty(31);
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE(round);
        Points points = nastyPoints(nasty, maxPoints);
        KxProfile receiver = profileOf(points);
        const int window = nastyWindow(nasty, receiver.size());
        const float limit = nastyLimit(nasty);
        if (nasty.chance(40)) {
            filter(receiver, receiver, window, limit);
            plain(points, points, window, limit);
            expectPoints(receiver, points);
        } else {
            Points target = nasty.chance(50) ? points : nasty.points<KxPointXY>(receiver.size() + nasty.below(4));
            KxProfile out = profileOf(target);
            filter(receiver, out, window, limit);
            plain(points, target, window, limit);
            expectPoints(receiver, points);
            expectPoints(out, target);
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "window " << window << " limit " << limit;
    }
}

} // namespace

TEST(Smoothing, KihFilterFollowsItsDefinition) {
    compareFilters(
        100, [](KxProfile& in, KxProfile& out, int, float limit) { in.kihFilter20(out, limit); },
        [](const Points& in, Points& out, int, float limit) { plainKihFilter(in, out, limit); });
}

TEST(Smoothing, WndFilterFollowsItsDefinition) {
    compareFilters(
        300, [](KxProfile&, KxProfile& out, int window, float) { out.wndFilter(window); },
        [](const Points&, Points& out, int window, float) { plainWndFilter(out, window); });
}

TEST(Smoothing, MedFiltFollowsItsDefinition) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int window, float) { in.medFilt(out, window, INT_MIN); },
        [](const Points& in, Points& out, int window, float) { plainMedFilt(in, out, window); });
}

TEST(Smoothing, DiffFiltFollowsItsDefinition) {
    compareFilters(
        120, [](KxProfile& in, KxProfile& out, int window, float) { in.diffFilt(out, window); },
        [](const Points& in, Points& out, int window, float) { plainDiffFilt(in.size(), out, window); });
}

TEST(Smoothing, KihFilterLagsByTenPointsAndCopiesTheFirstTwenty) {
    KxProfile profile;
    for (int i = 0; i < 60; ++i) {
        profile.points.append(KxPointXY(static_cast<float>(i), i == 25 || i == 5 ? 1.0f : 0.0f));
    }
    profile.kihFilter20(kNaN);
    EXPECT_EQ(profile.points[5].y, 1.0f);
    EXPECT_EQ(profile.points[20].y, 0.0407f); // of the pulse at 5, 15 points back
    EXPECT_EQ(profile.points[25].y, 0.0f); // the point itself has no weight
    EXPECT_EQ(profile.points[35].y, 0.1185f);
    EXPECT_EQ(profile.points[44].y, 0.0013f);
    EXPECT_EQ(profile.points[45].y, 0.0f);
    double gain = 0.0;
    for (int i = 25; i < 60; ++i) {
        gain += static_cast<double>(profile.points[i].y);
    }
    EXPECT_NEAR(gain, 1.0001, 1e-7);
}

TEST(Smoothing, WndFilterWritesAtWindowOverTwoAndAHalf) {
    const struct {
        int window;
        int at;
    } cases[] = {{1, 0}, {2, 0}, {3, 1}, {5, 2}, {6, 2}, {7, 2}, {8, 3}, {10, 4}, {100, 40}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.window);
        KxProfile profile;
        for (int i = 0; i <= c.window; ++i) { // room for one window
            profile.points.append(KxPointXY(0.0f, static_cast<float>(2 * i)));
        }
        Points expected = profile.points;
        expected[c.at].y = static_cast<float>(c.window - 1);
        profile.wndFilter(c.window);
        EXPECT_EQ(exact(profile.points), exact(expected));
    }
}

TEST(Smoothing, MedFiltOrdersByXAndOnlyShiftsAnOrderedProfile) {
    KxProfile profile;
    for (const float y : {7.0f, 1.0f, 9.0f, 3.0f, 5.0f}) {
        profile.points.append(KxPointXY(static_cast<float>(profile.size()), y));
    }
    profile.medFilt(profile, 3, 0);
    EXPECT_EQ(exact(profile.points), exact(Points{{0, 1}, {1, 9}, {2, 9}, {3, 3}, {4, 5}}));
}
