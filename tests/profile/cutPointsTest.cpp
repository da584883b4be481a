#include "profileSupport.h"

#include <numeric>

using namespace testing_support;

namespace {

int plainCutPoint(const Points& p, qint64 w, float threshold) {
    const qint64 n = p.size();
    const auto sum = [&](qint64 from) {
        return std::accumulate(p.begin() + from, p.begin() + from + w, 0.0f, [](float s, auto& q) { return s + q.y; });
    };
    const auto difference = [&](qint64 c) { return sum(c + 1) - sum(c - w); };
    for (qint64 c = w + 1; w >= 0 && c < n - w - 2; ++c) {
        const float left = difference(c - 1), right = difference(c + 1);
        if ((left > threshold && right < -threshold) || (left < -threshold && right > threshold)) {
            return static_cast<int>(c);
        }
    }
    return -1;
}

/// Deliberately the search goes on one point behind the last cut, which the index of the next does not count.
void plainCutPoints(const Points& receiver, Points& cutPoints, QList<int>& indices, int w, float threshold) {
    int offset = 0;
    for (Points work = receiver;; work = receiver.mid(offset + 1)) {
        sortByExchanges(work);
        const int cut = plainCutPoint(work, w, threshold);
        if (cut < 0) {
            return;
        }
        cutPoints.append(work[cut]);
        offset += cut;
        indices.append(offset);
    }
}

TEST(CutPoints, SearchesEqualThePlainDefinition) {
    qsizetype cuts = 0;
    forNasty(111, 2500, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 300);
        KxProfile profile = profileOf(points);
        const int window = nasty.chance(60) ? 1 + nasty.below(6) : nastyWindow(nasty, profile.size());
        const float threshold = nasty.chance(50) ? 0.5f : nastyLimit(nasty, points);
        ASSERT_EQ(profile.calcCutPoint(window, threshold), plainCutPoint(points, window, threshold));

        Points expected;
        QList<int> indices = {77}, expectedIndices = {77};
        KxProfile cutPoints = profileOf({{9, 9}});
        plainCutPoints(points, expected, expectedIndices, window, threshold);
        ASSERT_EQ(profile.detectCutPoints(cutPoints, indices, window, threshold), expected.size());
        ASSERT_EXACT(cutPoints.points, expected) << window << ' ' << threshold;
        ASSERT_EQ(indices, expectedIndices);
        expectPoints(profile, points);
        cuts += expected.size();
    });
    EXPECT_GT(cuts, 1000);
}

TEST(CutPoints, IndicesAfterTheFirstLagByOne) {
    QList<float> ridges(100, 0.0f);
    ridges[20] = ridges[50] = ridges[80] = 10.0f;
    KxProfile profile = heights(ridges), cutPoints;
    QList<int> indices;
    EXPECT_EQ(profile.detectCutPoints(cutPoints, indices, 3, 9.0f), 3);
    EXPECT_EQ(indices, (QList<int>{20, 49, 79}));
    EXPECT_EQ(profile.detectCutPoints(profile, indices, 3, 9.0f), 0); // as its own result it is emptied first
    EXPECT_TRUE(profile.isEmpty());
}

} // namespace
