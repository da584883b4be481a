#include "profileSupport.h"

#include <cmath>
#include <deque>

using namespace KxMath;
using namespace testing_support;

namespace {

Points plainRemoveNoise(const Points& p, qint64 window, int maxJumps, float threshold) {
    Points kept;
    for (qint64 i = 0; i < p.size(); i += window) {
        if (i + window < p.size()) {
            int jumps = 0;
            for (qint64 k = 0; k < window; ++k) {
                jumps += std::abs(p[i + k].y - p[i + k + 1].y) > threshold ? 1 : 0;
            }
            if (jumps <= maxJumps) {
                kept.append(p.mid(i, window));
            }
        }
    }
    return kept;
}

Points plainRemoveLineParts(Points points, int maxParts, float maxCorrelation, float maxGap, int minPoints) {
    std::deque<KxProfile> parts(static_cast<std::size_t>(maxParts));
    sortByExchanges(points);
    std::size_t current = 0;
    int used = 1;
    for (qsizetype i = 0; i < points.size() - 1; ++i) {
        parts[current].points.append(points[i]);
        if (KxPointXY::calcDistance(points[i], points[i + 1]) > maxGap) {
            if (used >= maxParts) {
                break;
            }
            ++current;
            ++used;
        }
    }
    Points kept;
    for (std::size_t k = 0; k <= current; ++k) {
        if (parts[k].size() > minPoints && std::abs(parts[k].calcCorrelation()) < maxCorrelation) {
            kept.append(parts[k].points);
        }
    }
    return kept;
}

} // namespace

TEST(Cleaning, RemoveNoiseFollowsItsDefinition) {
    Nasty nasty(51);
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        const int window = nastyWindow(nasty, profile.size());
        const int maxJumps = nasty.pick(std::array{0, 1, 3, window / 2, -1, INT_MAX, INT_MIN});
        const float threshold = nastyLimit(nasty);
        profile.removeNoise(window, maxJumps, threshold, kNaN);
        expectPoints(profile, window <= 0 ? points : plainRemoveNoise(points, window, maxJumps, threshold));
        ASSERT_FALSE(HasFailure()) << window << ' ' << maxJumps << ' ' << threshold;
    }
}

TEST(Cleaning, RemoveNoiseDropsTheTail) {
    const struct {
        const char* desc;
        int points;
        int window;
        int kept;
    } cases[] = {
        {"the last window ends at the last point", 30, 10, 20},
        {"the last window is incomplete", 29, 10, 20},
        {"one point behind the last window", 31, 10, 30},
        {"longer than the profile", 5, 6, 0},
        {"no window", 5, 0, 5},
        {"negative", 5, INT_MIN, 5},
        {"huge", 5, INT_MAX, 0},
    };
    for (const auto& c : cases) {
        KxProfile profile;
        profile.points.resize(c.points, KxPointXY(1.0f, 2.0f));
        profile.removeNoise(c.window, 0, 0.0f, 0.0f);
        EXPECT_EQ(profile.size(), c.kept) << c.desc;
    }
}

TEST(Cleaning, LevelsKeepOnlyWhatIsStrictlyBeyondTheLine) {
    // 0.1f * 3 + 0.7f is 1 in single precision; in double it is less.
    const Points points = {{3, 0.99999994f}, {3, 1}, {3, 1.0000001f}, {3, kNaN}, {kNaN, 0}, {kInf, 5}, {-kInf, 5}};
    KxProfile low = profileOf(points);
    KxProfile high = profileOf(points);
    low.removeHighLevel(KxLine(0.1f, 0.7f));
    high.removeLowLevel(KxLine(0.1f, 0.7f));
    expectPoints(low, {points[0], points[5]});
    expectPoints(high, {points[2], points[6]});
    low.removeHighLevel(KxLine());
    expectPoints(low, {});
}

TEST(Cleaning, RemoveLinePartsFollowsItsDefinition) {
    Nasty nasty(53);
    int kept = 0;
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        const Points points = nastyPoints(nasty, 120);
        KxProfile profile = profileOf(points);
        const int maxParts = nasty.pick(std::array{2, 3, 5, 1000, INT_MAX, 1, 0, INT_MIN});
        const int minPoints = nasty.pick(std::array{0, 1, 3, 10, -1, INT_MIN, INT_MAX});
        const float maxCorrelation = nasty.pick(std::array{0.5f, 0.9f, nastyLimit(nasty)});
        const float maxGap = nasty.pick(std::array{1.0f, 10.0f, nastyLimit(nasty)});
        profile.removeLineParts(maxParts, maxCorrelation, maxGap, minPoints);
        expectPoints(profile, maxParts <= 1 ? points
                                            : plainRemoveLineParts(points, std::min(maxParts, 1000), maxCorrelation,
                                                                   maxGap, minPoints));
        ASSERT_FALSE(HasFailure());
        kept += profile.isEmpty() || maxParts <= 1 ? 0 : 1;
    }
    EXPECT_GT(kept, 150);
}

TEST(Cleaning, RemoveLinePartsNeverKeepsTheLastPoint) {
    KxProfile profile = profileOf({{3, 1}, {0, 0}, {1, 5}, {2, 0}});
    profile.removeLineParts(2, 0.99f, 100.0f, 2);
    EXPECT_EQ(exact(profile.points), exact(Points{{0, 0}, {1, 5}, {2, 0}}));
}
