// Profiles made from others: level runs, differences, straight pieces, the view from above.
#include "profileSupport.h"

using namespace testing_support;

namespace {

/// The run from `i` on in one direction: points that differ by at most the step from the last one taken.
Points plainRun(const Points& p, qsizetype i, int direction, float height, float maxStep, int maxMisses) {
    Points run;
    for (int misses = 0; i >= 0 && i < p.size() && misses < maxMisses; i += direction) {
        const bool isTaken = std::abs(p[i].y - height) <= maxStep;
        misses = isTaken ? 0 : misses + 1;
        height = isTaken ? p[i].y : height;
        run += isTaken ? Points{p[i]} : Points();
    }
    return run;
}

TEST(LineSegment, FollowsTheLevelOnBothSides) {
    int found = 0;
    forNasty(131, 4000, [&](Nasty& nasty) {
        const Points points = pointsFor(
            nasty.size(20), [&](int i) { return at(i, nasty.chance(8) ? std::nan("") : 0.5 * nasty.below(4)); });
        KxProfile profile = profileOf(points), out = profileOf({{7, 7}});
        const float x = nasty.chance(2) ? kNaN : 0.5f * static_cast<float>(nasty.below(44) - 2);
        const float maxStep = 0.5f * static_cast<float>(nasty.below(3));
        const int maxMisses = nasty.pick(std::array{1, 2, 3, 30, 0, -3});
        const float height = profile.calcY(x, kNaN, nullptr);
        const auto lengthOrHeight = [&](float v) {
            return nasty.pick(std::array{kNaN, kNaN, v, v - 0.25f, v + 0.25f});
        };
        const float minY = lengthOrHeight(height), maxY = lengthOrHeight(height);

        Points expected;
        if (points.size() >= 2 && !(height < minY) && !(height > maxY)) {
            const auto start = std::ranges::count_if(points, [&](const KxPointXY& p) { return p.x <= x; }) - 1;
            expected = plainRun(points, start, -1, height, maxStep, maxMisses) +
                       plainRun(points, start + 1, 1, height, maxStep, maxMisses);
            sortByExchanges(expected);
        }
        const float length = expected.isEmpty() ? 0.0f : expected.last().x - expected.first().x;
        const float minLength = lengthOrHeight(length), maxLength = lengthOrHeight(length);
        const bool isFound = !expected.isEmpty() && !(length < minLength) && !(length > maxLength);
        ASSERT_EQ(profile.calcLineSegment(x, maxStep, maxMisses, out, minY, maxY, minLength, maxLength), isFound);
        ASSERT_EXACT(out.points, expected);
        expectPoints(profile, points);
        found += isFound ? 1 : 0;
    });
    EXPECT_GT(found, 250);
    // Of points with one x the first is the start, and both sides join there.
    KxProfile steps = profileOf({{1, 1}, {2, 1.1f}, {2, 9}, {3, 1.2f}}), out;
    EXPECT_TRUE(steps.calcLineSegment(2.0f, 0.5f, 2, out, kNaN, kNaN, kNaN, kNaN));
    EXPECT_EXACT(out.points, exact(Points{{1, 1}, {2, 1.1f}, {3, 1.2f}}));
}

/// The sums are running floats from the left. Deliberately every second point of the tail goes, the first included.
void plainDistance(const Points& minuend, const Points& subtrahend, Points& out, qint64 window, bool cutTail) {
    const qsizetype n = std::min(minuend.size(), subtrahend.size());
    for (qsizetype i = 0; i < n; ++i) {
        out[i].y = minuend[i].y - subtrahend[i].y;
    }
    for (qsizetype start = 0; window > 0 && start + window <= n; start += window) {
        float sum = 0.0f;
        for (qsizetype i = start; i < start + window; ++i) {
            sum += out[i].y;
        }
        for (qsizetype i = start; i < start + window; ++i) {
            out[i].y = std::abs(sum);
        }
    }
    for (qsizetype i = out.size() - 1; n > 0 && cutTail && i >= n; --i) {
        if ((i - n) % 2 == 0) {
            out.removeAt(i);
        }
    }
}

TEST(ProfileDistance, WritesDifferencesAndBlockSums) {
    forNasty(132, 1500, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 60);
        const Points others =
            nasty.points<KxPointXY>(std::max(0, static_cast<int>(points.size()) + nasty.below(3) - 1));
        KxProfile minuend = profileOf(points), subtrahend = profileOf(others);
        Points expected = nasty.points<KxPointXY>(minuend.size() + nasty.below(7));
        KxProfile out = profileOf(expected);
        const int window = nastyWindow(nasty, minuend.size());
        const bool cutTail = nasty.chance(50);
        minuend.calcDistance(subtrahend, out, window, 0, cutTail);
        plainDistance(points, others, expected, window, cutTail);
        expectPoints(out, expected);
        expectPoints(minuend, points);
        expectPoints(subtrahend, others);
    });
}

bool isFinite(const KxPointXY& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

void writeOnLine(const Points& in, Points& out, qsizetype begin, qsizetype end, float k, float c) {
    for (qsizetype i = begin; i < end; ++i) {
        out[i] = KxPointXY(in[i].x, k * in[i].x + c);
    }
}

/// Deliberately not guarded against points above each other.
void writeOnChord(const Points& in, Points& out, qsizetype begin, qsizetype end, KxPointXY p, KxPointXY q) {
    const float width = p.x - q.x;
    writeOnLine(in, out, begin, end, (p.y - q.y) / width, (q.y * p.x - q.x * p.y) / width);
}

TEST(StraightPieces, ChordsOfBlocks) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int window, float) { in.addLineSegments(out, window, 0); },
        [](const Points& in, Points& out, qint64 w, float) {
            const qsizetype n = in.size();
            for (qsizetype i = 0; w > 0 && i + w <= n; i += w) {
                if (i == n - 1) {
                    out[i] = KxPointXY(in[i]); // a last block of one point has no chord
                } else {
                    writeOnChord(in, out, i, i + w, in[i], in[std::min(i + w, n - 1)]);
                }
            }
        });
}

TEST(StraightPieces, ParallelsThroughTheMiddleOfBlocks) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int w, float slope) { in.addParallelLine(out, w, 0, slope); },
        [](const Points& in, Points& out, qint64 w, float slope) {
            for (qsizetype i = 0; w > 0 && i + w <= in.size(); i += w) {
                const KxPointXY middle = in[i + w / 2];
                writeOnLine(in, out, i, i + w, slope, middle.y - middle.x * slope);
            }
        });
}

TEST(StraightPieces, BlocksAreWideInMillimetres) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int, float width) { in.addLineSegmentsWithMMWindow(out, width); },
        [](const Points& in, Points& out, int, float width) {
            const auto start = std::find_if(in.begin(), in.end(), isFinite) - in.begin();
            qsizetype written = 0;
            for (qsizetype i = start, next = start + 1; width > 0.0f && next < in.size(); ++next) {
                const KxPointXY p = in[i], q = in[next];
                if (isFinite(q) && std::abs(q.x - p.x) >= width) {
                    std::copy(in.begin() + written, in.begin() + i, out.begin() + written); // missing at first
                    writeOnChord(in, out, i, next, p, q);
                    written = i = next;
                }
            }
        });
    const std::pair<Points, int> cases[] = {
        {{{0, 0}, {1, 1}, {2, 1}, {3, 1}}, 2}, {{{2, 0}, {0, 1}}, 1}, {{{0, 0}, {1.9f, 1}}, 0}, {{}, 0}};
    for (const auto& [points, written] : cases) {
        KxProfile profile = profileOf(points);
        EXPECT_EQ(profile.addLineSegmentsWithMMWindow(profile, 2.0f), written);
    }
}

TEST(CloudTopView, TakesPointsAtOrAboveTheLevel) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{1, 0, 10}, {2, -0.1f, 20}, {3, kNaN, 30}, {4, 5, kNaN}};
    KxProfile profile = profileOf({{1, 2}}); // the old range stays
    EXPECT_EQ(profile.makeCloudTopView(cloud, 0.0f), 2);
    expectPoints(profile, {{1, 10}, {4, kNaN}});
    EXPECT_EQ(profile.makeCloudTopView(cloud, kNaN), 4);
    expectPoints(profile, {{1, 10}, {2, 20}, {3, 30}, {4, kNaN}});
}

} // namespace
