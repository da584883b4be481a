// Profiles made from others: level runs, differences, straight pieces, the view from above.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace KxMath;
using testing_support::exact;
using testing_support::Nasty;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
using Points = QList<KxPointXY>;

KxProfile profileOf(const Points& points) {
    KxProfile profile;
    profile.points = points;
    return profile;
}

KxProfile heights(const QList<float>& ys) {
    KxProfile profile;
    for (qsizetype i = 0; i < ys.size(); ++i) {
        profile.points.append(KxPointXY(static_cast<float>(i), ys[i]));
    }
    return profile;
}

/// The y of the points; kUnwritten shows where nothing was written.
constexpr float kUnwritten = -77.0f;

KxProfile room(qsizetype count) {
    KxProfile out;
    out.points.fill(KxPointXY(kUnwritten, kUnwritten), count);
    return out;
}

QList<float> ysOf(const KxProfile& profile) {
    QList<float> ys;
    for (const KxPointXY& p : profile.points) {
        ys.append(p.y);
    }
    return ys;
}

} // namespace

TEST(LineSegment, FollowsTheLevelOnBothSides) {
    const Points run{{0, 5}, {1, 1}, {2, 1.2f}, {3, 1.4f}, {4, 1.3f}, {5, 6}, {6, 1.2f}};
    const Points drifting{{0, 0}, {1, 0.4f}, {2, 0.8f}, {3, 1.2f}, {4, 1.6f}};
    const Points missing{{0, 1}, {1, kNaN}, {2, 1}, {3, kNaN}, {4, kNaN}, {5, 1}};
    const struct {
        const char* desc;
        Points points;
        float x;
        int maxMisses;
        float minY, maxY, minLength, maxLength;
        bool isFound;
        QList<float> xs;
    } cases[] = {
        {"run", run, 2.5f, 2, kNaN, kNaN, kNaN, kNaN, true, {1, 2, 3, 4, 6}},
        {"too long", run, 2.5f, 2, kNaN, kNaN, kNaN, 3, false, {1, 2, 3, 4, 6}},
        {"too short", run, 2.5f, 2, kNaN, kNaN, 5.5f, kNaN, false, {1, 2, 3, 4, 6}},
        {"length on its bounds", run, 2.5f, 2, kNaN, kNaN, 5, 5, true, {1, 2, 3, 4, 6}},
        {"one miss ends a side", run, 2.5f, 1, kNaN, kNaN, kNaN, kNaN, true, {1, 2, 3, 4}},
        {"height too low", run, 2.5f, 2, 1.35f, kNaN, kNaN, kNaN, false, {}},
        {"height too high", run, 2.5f, 2, kNaN, 1.25f, kNaN, kNaN, false, {}},
        {"no misses allowed", run, 2.5f, 0, kNaN, kNaN, kNaN, kNaN, false, {}},
        {"negative misses", run, 2.5f, -3, kNaN, kNaN, kNaN, kNaN, false, {}},
        {"at a point", run, 3.0f, 2, kNaN, kNaN, kNaN, kNaN, true, {1, 2, 3, 4, 6}},
        {"before the first point", drifting, -0.5f, 9, kNaN, kNaN, kNaN, kNaN, true, {0, 1, 2, 3, 4}},
        {"behind the last point", drifting, 4.5f, 9, kNaN, kNaN, kNaN, kNaN, true, {0, 1, 2, 3, 4}},
        {"the reference drifts", drifting, 2.0f, 1, kNaN, kNaN, kNaN, kNaN, true, {0, 1, 2, 3, 4}},
        {"NaN is a miss", missing, 0.0f, 2, kNaN, kNaN, kNaN, kNaN, true, {0, 2}},
        {"NaN height passes the bounds", missing, 2.5f, 2, 0, 2, kNaN, kNaN, false, {}},
        {"NaN x", run, kNaN, 2, kNaN, kNaN, kNaN, kNaN, false, {}},
        {"one point", {{1, 1}}, 1.0f, 2, kNaN, kNaN, kNaN, kNaN, false, {}},
        {"no point", {}, 1.0f, 2, kNaN, kNaN, kNaN, kNaN, false, {}},
        {"equal x: the first of them",
         {{1, 1}, {2, 1.1f}, {2, 9}, {3, 1.2f}},
         2.0f,
         2,
         kNaN,
         kNaN,
         kNaN,
         kNaN,
         true,
         {1, 2, 3}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile profile = profileOf(c.points);
        KxProfile out = room(3);
        EXPECT_EQ(c.isFound,
                  profile.calcLineSegment(c.x, 0.5f, c.maxMisses, out, c.minY, c.maxY, c.minLength, c.maxLength));
        QList<float> xs;
        for (const KxPointXY& p : out.points) {
            xs.append(p.x);
        }
        EXPECT_EQ(c.xs, xs);
        EXPECT_EQ(exact(c.points), exact(profile.points));
    }
}

TEST(ProfileDistance, WritesDifferencesAndBlockSums) {
    const struct {
        const char* desc;
        QList<float> minuend, subtrahend;
        int window;
        bool cutTail;
        qsizetype room;
        QList<float> expected;
    } cases[] = {
        {"blocks of 2", {5, 7, 9, 11}, {1, 2, 3, 4}, 2, false, 4, {9, 9, 13, 13}},
        {"a rest", {5, 7, 9, 11}, {1, 2, 3, 4}, 3, false, 4, {15, 15, 15, 7}},
        {"window too large", {5, 7}, {1, 2}, 3, false, 2, {4, 5}},
        {"window 0", {5, 7}, {1, 2}, 0, false, 2, {4, 5}},
        {"negative window", {5, 7}, {1, 2}, -2, false, 2, {4, 5}},
        {"absolute sums", {1, 1, 1}, {2, 3, 1}, 2, false, 3, {3, 3, 0}},
        {"unequal counts", {5, 7, 9}, {1, 2}, 1, false, 3, {4, 5, kUnwritten}},
        {"empty", {}, {1, 2}, 1, true, 2, {kUnwritten, kUnwritten}},
        {"empty other", {1, 2}, {}, 1, true, 2, {kUnwritten, kUnwritten}},
        {"cut tail", {1, 1}, {0, 0}, 9, true, 5, {1, 1, kUnwritten}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile minuend = heights(c.minuend);
        KxProfile subtrahend = heights(c.subtrahend);
        KxProfile out = room(c.room);
        minuend.calcDistance(subtrahend, out, c.window, 0, c.cutTail);
        EXPECT_EQ(c.expected, ysOf(out));
        EXPECT_EQ(kUnwritten, out.points.first().x);
    }
}

// The single steps are not associative: the sum must be a running float from the left.
TEST(ProfileDistance, SumsInSinglePrecision) {
    KxProfile minuend = heights({1e8f, 3.0f, 3.0f, -1e8f});
    KxProfile zero = heights({0, 0, 0, 0});
    KxProfile out = room(4);
    minuend.calcDistance(zero, out, 4, 0, false);
    EXPECT_EQ((1e8f + 3.0f + 3.0f) - 1e8f, out.points[0].y);
    EXPECT_NE(6.0f, out.points[0].y);
}

TEST(ProfileDistance, CutsEverySecondPointOfTheTail) {
    for (int tail = 0; tail < 7; ++tail) {
        KxProfile six = heights({1, 2, 3, 4, 5, 6});
        KxProfile out = heights(QList<float>(6 + tail, 0.0f)); // x is the old position
        six.calcDistance(six, out, 0, 0, true);
        QList<int> expected{0, 1, 2, 3, 4, 5};
        for (int i = 7; i < 6 + tail; i += 2) {
            expected.append(i);
        }
        ASSERT_EQ(expected.size(), out.points.size());
        for (qsizetype i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(static_cast<float>(expected[i]), out.points[i].x);
        }
    }
}

TEST(StraightPieces, ReplaceBlocks) {
    const Points five{{0, 0}, {1, 5}, {2, 2}, {3, 7}, {4, 4}};
    const Points other{{0, 1}, {1, 1}, {2, 3}, {3, 1}, {4, 0}};
    const float u = kUnwritten;
    const struct {
        const char* desc;
        bool isParallel;
        Points points;
        int window;
        float slope;
        QList<float> expected;
    } cases[] = {
        {"chords join", false, five, 2, 0, {0, 1, 2, 3, u}},
        {"last chord to the last point", false, five.first(4), 2, 0, {0, 1, 2, 7}},
        {"one block of all", false, five, 5, 0, {0, 1, 2, 3, 4}},
        {"window 1 keeps the points", false, five, 1, 0, {0, 5, 2, 7, 4}},
        {"chord window too large", false, five, 6, 0, {u, u, u, u, u}},
        {"chord window 0", false, five, 0, 0, {u, u, u, u, u}},
        {"chord window negative", false, five, -2, 0, {u, u, u, u, u}},
        {"through the middle", true, other, 4, 0.5f, {2, 2.5f, 3, 3.5f, u}},
        {"pieces do not join", true, other, 2, 0.0f, {1, 1, 1, 1, u}},
        {"odd window", true, other, 3, 1.0f, {0, 1, 2, u, u}},
        {"parallel window too large", true, other, 6, 0.5f, {u, u, u, u, u}},
        {"parallel window 0", true, other, 0, 0.5f, {u, u, u, u, u}},
        {"largest window", true, other, std::numeric_limits<int>::max(), 0.5f, {u, u, u, u, u}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile profile = profileOf(c.points);
        KxProfile out = room(c.points.size());
        const auto run = [&](KxProfile& target) {
            c.isParallel ? profile.addParallelLine(target, c.window, 0, c.slope)
                         : profile.addLineSegments(target, c.window, 0);
        };
        run(out);
        EXPECT_EQ(c.expected, ysOf(out));
        for (qsizetype i = 0; i < out.points.size(); ++i) {
            EXPECT_EQ(out.points[i].y == u ? u : c.points[i].x, out.points[i].x);
        }
        EXPECT_EQ(exact(c.points), exact(profile.points));
        run(profile); // in place
        for (qsizetype i = 0; i < out.points.size(); ++i) {
            EXPECT_EQ(out.points[i].y == u ? c.points[i].y : out.points[i].y, profile.points[i].y);
        }
    }
    KxProfile vertical = profileOf({{1, 1}, {1, 2}, {1, 3}}); // not guarded
    KxProfile out = room(3);
    vertical.addLineSegments(out, 2, 0);
    EXPECT_FALSE(std::isfinite(out.points[0].y));
}

TEST(StraightPieces, BlocksAreWideInMillimetres) {
    const float u = kUnwritten;
    const struct {
        const char* desc;
        Points points;
        float window;
        int written;
        QList<float> expected;
    } cases[] = {
        {"uneven spacing", {{0, 0}, {0.5f, 9}, {2, 4}, {2.5f, 0}, {4, 0}, {4.5f, 3}}, 2.0f, 4, {0, 1, 4, 3, u, u}},
        {"exactly at the window", {{0, 0}, {1, 5}, {2, 2}, {3, 9}}, 1.0f, 3, {0, 5, 2, u}},
        {"from right to left", {{3, 0}, {2, 9}, {1, 4}, {0, 7}}, 2.0f, 2, {0, 2, u, u}},
        {"a missing point ends no block", {{0, 0}, {1, 9}, {2, kNaN}, {3, 6}, {4, 0}}, 2.0f, 3, {0, 2, 4, u, u}},
        {"missing x inside", {{0, 0}, {kNaN, 9}, {2, 4}}, 2.0f, 2, {0, kNaN, u}},
        {"missing at first", {{0, kNaN}, {1, 1}, {2, 5}, {3, 3}}, 2.0f, 3, {kNaN, 1, 2, u}},
        {"all missing", {{0, kNaN}, {1, kNaN}}, 1.0f, 0, {u, u}},
        {"window beyond the profile", {{0, 0}, {1, 1}}, 1.5f, 0, {u, u}},
        {"window 0", {{0, 0}, {1, 1}}, 0.0f, 0, {u, u}},
        {"negative", {{0, 0}, {1, 1}}, -1.0f, 0, {u, u}},
        {"NaN", {{0, 0}, {1, 1}}, kNaN, 0, {u, u}},
        {"infinite", {{0, 0}, {std::numeric_limits<float>::infinity(), 1}, {3, 1}}, 2.0f, 2, {0, kNaN, u}},
        {"empty", {}, 1.0f, 0, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile profile = profileOf(c.points);
        KxProfile out = room(c.points.size());
        EXPECT_EQ(c.written, profile.addLineSegmentsWithMMWindow(out, c.window));
        for (qsizetype i = 0; i < c.expected.size(); ++i) {
            if (std::isfinite(c.expected[i])) {
                EXPECT_EQ(c.expected[i], out.points[i].y) << i;
            } else {
                EXPECT_FALSE(std::isfinite(out.points[i].y)) << i;
            }
        }
        EXPECT_EQ(exact(c.points), exact(profile.points));
    }
}

TEST(CloudTopView, TakesPointsAtOrAboveTheLevel) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{1, 0, 10}, {2, -0.1f, 20}, {3, kNaN, 30}, {4, 5, kNaN}};
    KxProfile profile = heights({1, 2, 3});
    profile.calcRange();
    EXPECT_EQ(2, profile.makeCloudTopView(cloud, 0.0f));
    EXPECT_EQ(exact(Points{{1, 10}, {4, kNaN}}), exact(profile.points));
    EXPECT_EQ(3.0f, profile.maxY); // the old range stays
    EXPECT_EQ(4, profile.makeCloudTopView(cloud, kNaN));
    EXPECT_EQ(exact(Points{{1, 10}, {2, 20}, {3, 30}, {4, kNaN}}), exact(profile.points));
    EXPECT_EQ(0, profile.makeCloudTopView(KxPointCloud<KxPointXYZ>(), 0.0f));
}
