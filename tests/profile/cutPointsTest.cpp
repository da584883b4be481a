#include "profileSupport.h"

using namespace KxMath;
using namespace testing_support;

namespace {

int plainCutPoint(const Points& p, qint64 w, float threshold) {
    const qint64 n = p.size();
    if (w <= 0 || n < 2 * w) {
        return -1;
    }
    QList<float> differences(n, kNaN);
    for (qint64 c = w; c < n - w - 1; ++c) {
        float after = 0.0f;
        float before = 0.0f;
        for (qint64 k = c + 1; k <= c + w; ++k) {
            after += p[k].y;
        }
        for (qint64 k = c - w; k <= c - 1; ++k) {
            before += p[k].y;
        }
        differences[c] = after - before;
    }
    for (qint64 c = w + 1; c < n - w - 2; ++c) {
        const float left = differences[c - 1];
        const float right = differences[c + 1];
        if ((left > threshold && right < -threshold) || (left < -threshold && right > threshold)) {
            return static_cast<int>(c);
        }
    }
    return -1;
}

int plainCutPoints(const Points& receiver, Points& cutPoints, QList<int>& indices, int w, float threshold) {
    cutPoints.clear(); // which may be the receiver
    Points work = receiver;
    sortByExchanges(work);
    int offset = 0;
    while (work.size() >= 2 * qint64{w}) {
        const int cut = plainCutPoint(work, w, threshold);
        if (cut < 0) {
            break;
        }
        cutPoints.append(work[cut]);
        offset += cut;
        indices.append(offset);
        work = receiver.mid(offset + 1);
        sortByExchanges(work);
    }
    return static_cast<int>(cutPoints.size());
}

KxProfile profileWithHeights(const QList<float>& heights) {
    KxProfile profile;
    for (const float y : heights) {
        profile.points.append(KxPointXY(static_cast<float>(profile.size()), y));
    }
    return profile;
}

} // namespace

TEST(CutPoints, SearchesFollowTheirDefinitions) {
    Nasty nasty(111);
    int cuts = 0;
    for (int round = 0; round < 2500; ++round) {
        SCOPED_TRACE(round);
        Points points = nastyPoints(nasty, 100);
        KxProfile profile = profileOf(points);
        const int window = nasty.chance(60) ? 1 + nasty.below(6) : nastyWindow(nasty, profile.size());
        const float threshold = nasty.chance(50) ? 0.5f : nastyLimit(nasty);
        ASSERT_EQ(profile.calcCutPoint(window, threshold), plainCutPoint(points, window, threshold));

        Points expected = {{9, 9}};
        QList<int> indices = {77}, expectedIndices = {77};
        KxProfile cutPoints;
        cutPoints.points = expected;
        cuts += plainCutPoints(points, expected, expectedIndices, window, threshold);
        ASSERT_EQ(profile.detectCutPoints(cutPoints, indices, window, threshold), expected.size());
        ASSERT_EQ(exact(cutPoints.points), exact(expected)) << window << ' ' << threshold;
        ASSERT_EQ(exact(indices), exact(expectedIndices));
        expectPoints(profile, points);
    }
    EXPECT_GT(cuts, 1000);
}

TEST(CutPoints, AProfileGivenAsItsOwnResultIsEmptiedFirst) {
    Points points;
    for (int i = 0; i < 40; ++i) {
        points.append(KxPointXY(static_cast<float>(i), i >= 18 && i < 22 ? 10.0f : 0.0f));
    }
    KxProfile profile = profileOf(points);
    QList<int> indices;
    EXPECT_GE(profile.calcCutPoint(3, 1.0f), 0);
    EXPECT_EQ(profile.detectCutPoints(profile, indices, 3, 1.0f), 0);
    EXPECT_TRUE(profile.isEmpty());
    EXPECT_TRUE(indices.isEmpty());
}

TEST(CutPoints, ARidgeIsACutAndASingleStepIsNot) {
    EXPECT_EQ(profileWithHeights({0, 0, 0, 9, 0, 0, 0}).calcCutPoint(3, 1.0f), -1); // too short for its window
    QList<float> step(40, 0.0f);
    std::fill(step.begin() + 20, step.end(), 10.0f);
    EXPECT_EQ(profileWithHeights(step).calcCutPoint(3, 1.0f), -1);
    QList<float> ridge(40, 0.0f);
    ridge[20] = 10.0f;
    EXPECT_EQ(profileWithHeights(ridge).calcCutPoint(3, 9.0f), 20);
    EXPECT_EQ(profileWithHeights(ridge).calcCutPoint(3, 10.0f), -1); // strictly
    ridge[20] = -10.0f;
    EXPECT_EQ(profileWithHeights(ridge).calcCutPoint(3, 9.0f), 20);
}

TEST(CutPoints, IndicesAfterTheFirstLagByOne) {
    QList<float> ridges(100, 0.0f);
    ridges[20] = ridges[50] = ridges[80] = 10.0f;
    KxProfile profile = profileWithHeights(ridges);
    KxProfile cutPoints;
    QList<int> indices;
    EXPECT_EQ(profile.detectCutPoints(cutPoints, indices, 3, 1.0f), 3);
    EXPECT_EQ(exact(cutPoints.points), exact(Points{{20, 10}, {50, 10}, {80, 10}}));
    EXPECT_EQ(indices, (QList<int>{20, 49, 79}));
}
