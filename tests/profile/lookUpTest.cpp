#include "profileSupport.h"

#include <optional>

using namespace testing_support;

namespace {

struct Value {
    float y;
    std::optional<int> segment; ///< as far as it is written
};

Value plainCalcY(const Points& p, float x, float maxDistance) {
    const int n = static_cast<int>(p.size());
    if (n < 2) {
        return {n == 1 && std::abs(p[0].x - x) <= maxDistance ? p[0].y : kNaN, {}};
    }
    int segment = n - 1;
    for (int i = n - 1; i >= 0; --i) {
        segment = x < p[i].x ? i - 1 : segment;
    }
    for (int i = 0; i <= segment + 1 && i < n; ++i) {
        if (p[i].x == x) {
            return {p[i].y, {}};
        }
    }
    const int left = std::clamp(segment, 0, n - 2);
    KxPointXY a = p[left], b = p[left + 1];
    const auto isTooFar = [&](float from, float to) { return std::abs(from - to) > maxDistance; };
    if (a.x == b.x) {
        return {isTooFar(a.x, x) ? kNaN : (a.y + b.y) * 0.5f, segment};
    }
    if (a.x > b.x) {
        std::swap(a, b);
    }
    if (isTooFar(b.x, a.x) || isTooFar(a.x, x) || isTooFar(b.x, x)) {
        return {kNaN, segment};
    }
    KxProfile pair = profileOf({a, b});
    KxLine line;
    line.calcFromPointCloud(pair);
    const bool isWithin = segment >= 0 && segment < n - 1; // elsewhere slopes up to 1 are continued
    return {isWithin || std::abs(line.k) <= 1.0f ? line.k * x + line.b : kNaN, segment};
}

TEST(LookUp, CalcYEqualsThePlainDefinition) {
    int found = 0;
    forNasty(91, 4000, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 40);
        KxProfile profile = profileOf(points);
        for (int k = 0; k < 4; ++k) {
            const float x = nasty.chance(30) ? nastyLimit(nasty) : nasty.plain() * 1.01f;
            const float gap = points.size() < 2 ? 0.0f : std::abs(points[1].x - points[0].x);
            const float maxDistance =
                nasty.chance(60) ? nasty.pick(std::array{kNaN, kNaN, gap}) : nastyLimit(nasty, profile.points);
            const Value plain = plainCalcY(points, x, maxDistance);
            int segment = -77;
            const float y = profile.calcY(x, maxDistance, &segment);
            ASSERT_EXACT(y, plain.y) << "x " << x << " distance " << maxDistance;
            ASSERT_EQ(segment, plain.segment.value_or(-77));
            ASSERT_EXACT(profile.calcY(x, maxDistance, nullptr), y);
            found += std::isnan(y) ? 0 : 1;
        }
    });
    EXPECT_GT(found, 2000);
    EXPECT_EQ(profileOf({{0, 0}, {10, 10}}).calcY(12, 20, nullptr), 12.0f) << "a slope of exactly 1 is continued";
}

} // namespace
