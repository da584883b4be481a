// Straight parts and apexes against the definition written out.
#include "support/testing.h"

using namespace testing_support;

namespace {

/// The method step by step, with the public operations.
int literalApexes(KxProfile profile, KxProfile& apexes, QList<KxLine>& lines, float maxDY) {
    profile.sort(KxSortAscending, KxSortAscending);
    KxProfile cuts;
    QList<int> cutIndex;
    profile.detectCutPoints(cuts, cutIndex, 5, 0.0f);
    const QList<KxPointXY>& c = cuts.points;
    const auto remove = [&](int i) {
        cuts.points.removeAt(i);
        cutIndex.removeAt(i);
    };
    for (int i = cuts.size() - 2; i >= 1; --i) {
        if (std::fabs(c[i].y - c[i - 1].y) < maxDY && std::fabs(c[i].y - c[i + 1].y) < maxDY) {
            remove(i);
        }
    }
    for (int i = cuts.size() - 3; i >= 0; --i) {
        KxPointCloud<KxPointXY> ends;
        ends.points = {c[i], c[i + 2]};
        KxLine line;
        line.calcFromPointCloud(ends);
        if (std::fabs(line.y(c[i + 1].x) - c[i + 1].y) < 3 * maxDY) {
            remove(i + 1);
        }
    }
    lines.clear();
    for (int j = 0; j <= cuts.size() - 2; ++j) {
        KxProfile part;
        part.points = profile.points.mid(cutIndex[j], cutIndex[j + 1] - cutIndex[j]);
        KxLine line;
        part.calcLine(line);
        lines.append(line);
    }
    for (int j = 0; j <= static_cast<int>(lines.size()) - 2; ++j) {
        KxPointXY apex;
        lines[j].calcIntersection(lines[j + 1], apex);
        apexes.points.append(apex);
    }
    return apexes.size();
}

ExactList exactLines(const QList<KxLine>& lines) {
    ExactList all;
    for (const KxLine& line : lines) {
        append(all, exact(line.k, line.b));
    }
    return all;
}

/// A zigzag of random flanks with noise; now and then shuffled a little.
Points zigzag(Nasty& nasty, int n) {
    Points points;
    float y = 0, slope = 1;
    for (int i = 0; i < n; ++i) {
        slope = nasty.chance(6) ? static_cast<float>(nasty.below(9) - 4) * 0.4f : slope;
        y += slope;
        points.append(KxPointXY(static_cast<float>(i) - 50.0f, y + static_cast<float>(nasty.below(100)) * 0.002f));
        if (i > 0 && nasty.chance(2)) {
            points.swapItemsAt(i, nasty.below(i));
        }
    }
    return points;
}

} // namespace

TEST(DetectApexes, EqualsThePlainDefinition) {
    int found = 0;
    forNasty(53, 600, [&](Nasty& nasty) {
        KxProfile p;
        const int n = nasty.size();
        p.points = nasty.chance(50) ? zigzag(nasty, n) : nasty.points<KxPointXY>(n);
        const float maxDY = nasty.pick(std::array{0.0f, 0.1f, 1.0f, 2.0f, NAN});
        KxProfile apexes, expectedApexes;
        apexes.points = expectedApexes.points = {KxPointXY(7, 8)}; // what is there stays
        QList<KxLine> lines{KxLine(1, 2)}, expectedLines;
        const KxProfile before = p;
        ASSERT_EQ(METRO_detectApexes(p, apexes, lines, maxDY), literalApexes(p, expectedApexes, expectedLines, maxDY));
        ASSERT_EXACT(exactLines(lines), exactLines(expectedLines));
        ASSERT_EXACT(exact(p.points, apexes.points), exact(before.points, expectedApexes.points));
        found += apexes.size() - 1;
    });
    EXPECT_GT(found, 500);
}
