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

} // namespace
