// The edge clearing against its plain definition: every slab extracted, every edge point trimmed to.
#include "support/testing.h"

using namespace testing_support;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

void plainClearEdgeEffect(Cloud& cloud, float step) {
    cloud.calcRange();
    const float quotient = (cloud.maxZ - cloud.minZ) / step;
    const int slabs = quotient >= 1.0f && quotient < 2147483648.0f ? static_cast<int>(quotient) : 0;
    Cloud work;
    int peak = 0; // of the preceding slab if this one has no peak; it may be after this slab
    for (int i = 0; i < slabs; ++i) {
        const float low = static_cast<float>(i) * step + cloud.minZ,
                    high = static_cast<float>(static_cast<double>(low) + 0.0001);
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
        const int left = lowestFrom(0, 1), right = lowestFrom(n - 1, -1);
        const auto trimTo = [&](const KxPointXYZ& p) { cloud.trim(p.x, p.x, p.y, p.y, p.z, p.z); };
        std::for_each(work.points.begin(), work.points.begin() + left, trimTo);
        std::for_each(work.points.rbegin(), work.points.rend() - (right + 1), trimTo);
    }
}

TEST(EdgeClearing, EmptySlabsNeedNoTime) {
    Cloud cut, whole;
    cut.points = {{0, 5, 0}, {0, 1, 1}, {1, 0, 1}, {2, 3, 1}, {0, 0, 2}};
    whole.points = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {0, 0, 2}};
    const SpacePoints before = whole.points;
    for (Cloud* const cloud : {&cut, &whole}) {
        cloud->clearEdgeEffect(1e-9f);
    }
    EXPECT_EXACT(exact(cut.points, whole.points), exact(KxPointXYZ(0, 1, 1), before));
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
        float step = spacing * nasty.pick(std::array{1.0f, 0.9999f, 0.5f, 0.01f, 3.0f, -1.0f, 0.0f, kNaN});
        step = plain.size_z() / step > 3000.0f ? plain.size_z() / 3000.0f : step;
        plainClearEdgeEffect(plain, step);
        const int before = cloud.size();
        cloud.clearEdgeEffect(step);
        ASSERT_EXACT(plain.points, cloud.points);
        ASSERT_EXACT(exactRange(plain), exactRange(cloud));
        cleared += cloud.size() != before ? 1 : 0;
    });
    EXPECT_GT(cleared, 300);
    EXPECT_LT(cleared, 2700);
}

} // namespace
