// The edge clearing against its plain definition: every slab extracted, every edge point trimmed to.
#include "support/testing.h"

using namespace KxMath;
using namespace testing_support;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

void plainClearEdgeEffect(Cloud& cloud, float step) {
    cloud.calcRange();
    const float quotient = (cloud.maxZ - cloud.minZ) / step;
    const int slabs = quotient >= 1.0f && quotient < 2147483648.0f ? static_cast<int>(quotient) : 0;
    Cloud work;
    int peak = 0; // of the slab before where no height is one: it may lie behind this slab
    for (int i = 0; i < slabs; ++i) {
        const float low = static_cast<float>(i) * step + cloud.minZ;
        const float high = static_cast<float>(static_cast<double>(low) + 0.0001);
        cloud.extract(work, cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, low, high, false);
        const int n = work.size();
        float level = 0.0f;
        for (int k = 0; k < n; ++k) {
            if (level <= work.points[k].y) {
                level = work.points[k].y;
                peak = k;
            }
        }
        // The lowest point from an end to the peak, the last of equals.
        const auto lowestFrom = [&](int end, int direction) {
            float lowest = level;
            int at = end;
            for (int k = end; k >= 0 && k < n && (peak - k) * direction > 0; k += direction) {
                if (lowest >= work.points[k].y) {
                    lowest = work.points[k].y;
                    at = k;
                }
            }
            return at;
        };
        const int left = lowestFrom(0, 1);
        const int right = lowestFrom(n - 1, -1);
        const auto trimTo = [&](const KxPointXYZ& p) { cloud.trim(p.x, p.x, p.y, p.y, p.z, p.z); };
        std::for_each(work.points.begin(), work.points.begin() + left, trimTo);
        std::for_each(work.points.rbegin(), work.points.rend() - (right + 1), trimTo);
    }
}

TEST(EdgeClearing, TrimsToTheEdgePoints) {
    const struct {
        const char* desc;
        SpacePoints points;
        float step;
        QList<float> left; ///< heights
    } cases[] = {
        {"lows at both ends", {{0, 0, 0}, {1, 3, 0}, {2, 1, 0}, {0, 0, 10}}, 6, {0, 3, 1, 0}},
        {"one point outside", {{0, 2, 0}, {1, 1, 0}, {2, 3, 0}, {3, 1, 0}, {0, 0, 10}}, 6, {2}},
        {"one on each side", {{0, 2, 0}, {1, 1, 0}, {2, 3, 0}, {3, 1, 0}, {4, 1.5f, 0}, {0, 0, 10}}, 6, {}},
        {"all negative: the peak is the first extracted", {{0, -3, 0}, {1, -2, 0}, {0, 0, 10}}, 6, {-3, -2, 0}},
        {"empty slabs cost nothing", {{0, 5, 0}, {0, 1, 1}, {1, 0, 1}, {2, 3, 1}, {0, 0, 2}}, 1e-9f, {1}},
        {"nor where nothing is cut", {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {0, 0, 2}}, 1e-9f, {0, 1, 0, 0}},
        {"step 0", {{0, 5, 0}, {0, 1, 1}, {1, 0, 1}, {2, 3, 1}}, 0, {5, 1, 0, 3}},
        {"step -1", {{0, 5, 0}, {0, 1, 1}, {1, 0, 1}, {2, 3, 1}}, -1, {5, 1, 0, 3}},
        {"step NaN", {{0, 5, 0}, {0, 1, 1}, {1, 0, 1}, {2, 3, 1}}, kNaN, {5, 1, 0, 3}},
    };
    for (const auto& c : cases) {
        Cloud cloud;
        cloud.points = c.points;
        cloud.clearEdgeEffect(c.step);
        QList<float> left;
        for (const KxPointXYZ& p : cloud.points) {
            left.append(p.y);
        }
        EXPECT_EQ(exact(left), exact(c.left)) << c.desc;
    }
}

TEST(EdgeClearing, EqualsThePlainDefinition) {
    int cleared = 0;
    forNasty(26, 3000, [&](Nasty& nasty) {
        Cloud cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size(60));
        const float spacing = nasty.pick(std::array{1.0f, 0.25f, 1e-4f, 3e-5f});
        const bool isPeaked = nasty.chance(50);
        const float top = static_cast<float>(nasty.below(5));
        for (KxPointXYZ& p : cloud.points) { // few profiles, mostly single-peaked so that some stay
            p.z = nasty.chance(2) ? nasty.value() : spacing * static_cast<float>(nasty.below(4));
            p.y = isPeaked ? top - std::abs(p.x) : p.y;
        }
        Cloud plain(cloud);
        plain.calcRange();
        // Whole, shared and overlapping slabs, as long as the plain loop ends.
        float step = spacing * nasty.pick(std::array{1.0f, 0.9999f, 0.5f, 0.01f, 3.0f, -1.0f, 0.0f});
        step = plain.size_z() / step > 3000.0f ? plain.size_z() / 3000.0f : step;
        plainClearEdgeEffect(plain, step);
        const int before = cloud.size();
        cloud.clearEdgeEffect(step);
        ASSERT_EQ(exact(plain.points), exact(cloud.points));
        ASSERT_EQ(exactRange(plain), exactRange(cloud));
        cleared += cloud.size() != before ? 1 : 0;
    });
    EXPECT_GT(cleared, 300);
    EXPECT_LT(cleared, 2700);
}

} // namespace
