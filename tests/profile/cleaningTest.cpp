#include "profileSupport.h"

#include <deque>

using namespace testing_support;

namespace {

Points plainRemoveNoise(const Points& p, qint64 window, int maxJumps, float threshold) {
    Points kept;
    for (qint64 i = 0; i + window < p.size(); i += window) {
        int jumps = 0;
        for (qint64 k = i; k < i + window; ++k) {
            jumps += std::abs(p[k].y - p[k + 1].y) > threshold ? 1 : 0;
        }
        kept += jumps <= maxJumps ? p.mid(i, window) : Points();
    }
    return kept;
}

/// Deliberately without the last point.
Points plainRemoveLineParts(Points points, int maxParts, float maxCorrelation, float maxGap, int minPoints) {
    std::deque<KxProfile> parts(1);
    sortByExchanges(points);
    for (qsizetype i = 0; i < points.size() - 1; ++i) {
        parts.back().points.append(points[i]);
        if (KxPointXY::calcDistance(points[i], points[i + 1]) > maxGap) {
            if (static_cast<int>(parts.size()) >= maxParts) {
                break;
            }
            parts.emplace_back();
        }
    }
    Points kept;
    for (KxProfile& part : parts) {
        const bool isKept = part.size() > minPoints && std::abs(part.calcCorrelation()) < maxCorrelation;
        kept += isKept ? part.points : Points();
    }
    return kept;
}

TEST(Cleaning, RemoveNoiseEqualsThePlainDefinition) {
    forNasty(51, 3000, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        const int window = nastyWindow(nasty, profile.size());
        const int maxJumps = nasty.pick(std::array{0, 1, 3, window / 2, -1, INT_MAX, INT_MIN});
        const float threshold = nastyLimit(nasty, points);
        profile.removeNoise(window, maxJumps, threshold, kNaN);
        expectPoints(profile, window <= 0 ? points : plainRemoveNoise(points, window, maxJumps, threshold));
    });
}

TEST(Cleaning, LevelsKeepOnlyWhatIsStrictlyBeyondTheLine) {
    // 0.1f * 3 + 0.7f is 1 in single precision; in double it is less.
    const Points points = {{3, 0.99999994f}, {3, 1}, {3, 1.0000001f}, {3, kNaN}, {kNaN, 0}, {kInf, 5}, {-kInf, 5}};
    KxProfile low = profileOf(points), high = profileOf(points);
    low.removeHighLevel(KxLine(0.1f, 0.7f));
    high.removeLowLevel(KxLine(0.1f, 0.7f));
    expectPoints(low, {points[0], points[5]});
    expectPoints(high, {points[2], points[6]});
    low.removeHighLevel(KxLine());
    expectPoints(low, {});
}

TEST(Cleaning, LevelsEqualThePlainDefinition) {
    int mixed = 0;
    forNasty(52, 3000, [&](Nasty& nasty) {
        Points points = nastyPoints(nasty);
        const float k = nasty.pick(std::array{0.0f, -0.0f, 0.1f, -3.0f, nastyLimit(nasty)});
        const float b = nasty.pick(std::array{0.7f, nastyLimit(nasty, points)});
        for (KxPointXY& p : points) { // runs on one side, and points exactly on the line
            p.y = nasty.chance(60) ? std::abs(p.y) : nasty.chance(5) ? p.x * k + b : p.y;
        }
        Points below, above;
        for (const KxPointXY& p : std::as_const(points)) {
            const float y = p.x * k + b;
            below += p.y < y ? Points{p} : Points();
            above += p.y > y ? Points{p} : Points();
        }
        KxProfile low = profileOf(points), high = profileOf(points);
        const Points copy = high.points; // shared: must not change
        low.removeHighLevel(KxLine(k, b));
        high.removeLowLevel(KxLine(k, b));
        expectPoints(low, below);
        expectPoints(high, above);
        EXPECT_EXACT(copy, points);
        mixed += !below.isEmpty() && !above.isEmpty() ? 1 : 0;
    });
    EXPECT_GT(mixed, 500);
}

TEST(Cleaning, RemoveLinePartsEqualsThePlainDefinition) {
    int kept = 0;
    forNasty(53, 3000, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 120);
        KxProfile profile = profileOf(points);
        const int maxParts = nasty.pick(std::array{2, 3, 5, 1000, INT_MAX, 1, 0, INT_MIN});
        const int minPoints = nasty.pick(std::array{0, 1, 3, 10, -1, INT_MIN, INT_MAX});
        const float maxCorrelation = nasty.pick(std::array{0.5f, 0.9f, nastyLimit(nasty)});
        const float maxGap = nasty.pick(std::array{1.0f, 10.0f, nastyLimit(nasty, points)});
        profile.removeLineParts(maxParts, maxCorrelation, maxGap, minPoints);
        expectPoints(profile, maxParts <= 1
                                  ? points
                                  : plainRemoveLineParts(points, maxParts, maxCorrelation, maxGap, minPoints));
        kept += profile.isEmpty() || maxParts <= 1 ? 0 : 1;
    });
    EXPECT_GT(kept, 150);
}

} // namespace
