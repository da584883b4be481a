// The edge clearing against its plain definition: every slab extracted, every edge point trimmed to.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace KxMath;
using testing_support::exact;
using testing_support::exactRange;
using testing_support::Nasty;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

void plainClearEdgeEffect(Cloud& cloud, float step) {
    cloud.calcRange();
    const float quotient = (cloud.maxZ - cloud.minZ) / step;
    if (!(quotient >= 1.0f && quotient < 2147483648.0f)) {
        return;
    }
    const int slabs = static_cast<int>(quotient);
    Cloud work;
    int peak = 0;
    for (int i = 0; i < slabs; ++i) {
        const float low = static_cast<float>(i) * step + cloud.minZ;
        const float high = static_cast<float>(static_cast<double>(low) + 0.0001);
        cloud.extract(work, cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, low, high, false);
        const int n = work.size();
        const auto y = [&](int k) { return work.points.at(k).y; };
        float level = 0.0f;
        for (int k = 0; k < n; ++k) {
            if (level <= y(k)) {
                level = y(k);
                peak = k;
            }
        }
        int left = 0;
        float lowest = level;
        for (int k = 0; k < peak && k < n; ++k) { // a peak of the slab before may lie behind this one
            if (lowest >= y(k)) {
                lowest = y(k);
                left = k;
            }
        }
        int right = n - 1;
        lowest = level;
        for (int k = n - 1; k > peak; --k) {
            if (lowest >= y(k)) {
                lowest = y(k);
                right = k;
            }
        }
        const auto trimTo = [&](const KxPointXYZ& p) { cloud.trim(p.x, p.x, p.y, p.y, p.z, p.z); };
        for (int k = 0; k < left; ++k) {
            trimTo(work.points[k]);
        }
        for (int k = n - 1; k > right; --k) {
            trimTo(work.points[k]);
        }
    }
}

Cloud cloudOf(const QList<KxPointXYZ>& points) {
    Cloud cloud;
    cloud.points = points;
    return cloud;
}

} // namespace

TEST(EdgeClearing, TrimsToTheEdgePoints) {
    const KxPointXYZ end(0.0f, 0.0f, 10.0f); // makes the extent in z
    const struct {
        const char* desc;
        QList<float> ys; ///< of the profile at z = 0, stored order
        QList<float> left;
    } cases[] = {
        {"lows at both ends", {0.0f, 1.0f, 3.0f, 2.0f, 1.0f}, {0.0f, 1.0f, 3.0f, 2.0f, 1.0f, 0.0f}},
        {"one point outside", {2.0f, 1.0f, 3.0f, 2.0f, 1.0f}, {2.0f}},
        {"one outside, stored twice", {2.0f, 2.0f, 1.0f, 3.0f, 1.0f}, {}}, // they differ in x
        {"one on each side", {2.0f, 1.0f, 3.0f, 1.0f, 4.0f, 1.0f, 1.5f}, {}},
        {"all negative: the peak is the first extracted", {-3.0f, -2.0f, -1.0f}, {-3.0f, -2.0f, -1.0f, 0.0f}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        Cloud cloud;
        for (qsizetype i = 0; i < c.ys.size(); ++i) {
            cloud.points.append(KxPointXYZ(static_cast<float>(i), c.ys[i], 0.0f));
        }
        cloud.points.append(end);
        cloud.clearEdgeEffect(6.0f);
        QList<float> left;
        for (const KxPointXYZ& p : cloud.points) {
            left.append(p.y);
        }
        EXPECT_EQ(c.left, left);
    }
}

TEST(EdgeClearing, EqualsThePlainDefinition) {
    Nasty nasty(26);
    int cleared = 0;
    for (int round = 0; round < 3000; ++round) {
        nasty.nextCase();
        Cloud cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size(60));
        const float spacing = nasty.pick(std::array{1.0f, 0.25f, 1e-4f, 3e-5f});
        for (KxPointXYZ& p : cloud.points) { // few profiles, mostly single-peaked so that some stay
            p.z = spacing * static_cast<float>(nasty.below(4));
            if (round % 2 == 0) {
                p.y = -std::abs(p.x) + static_cast<float>(round % 5);
            }
            if (nasty.chance(2)) {
                p.z = nasty.value();
            }
        }
        Cloud plain(cloud);
        plain.calcRange();
        // Whole, shared and overlapping slabs, as long as the plain loop ends.
        float step = spacing * nasty.pick(std::array{1.0f, 0.9999f, 0.5f, 0.01f, 3.0f, -1.0f, 0.0f});
        if (plain.size_z() / step > 3000.0f) {
            step = plain.size_z() / 3000.0f;
        }
        plainClearEdgeEffect(plain, step);
        const int before = cloud.size();
        cloud.clearEdgeEffect(step);
        ASSERT_EQ(exact(plain.points), exact(cloud.points)) << "round " << round;
        ASSERT_EQ(exactRange(plain), exactRange(cloud)) << "round " << round;
        cleared += cloud.size() != before ? 1 : 0;
    }
    EXPECT_GT(cleared, 300);
    EXPECT_LT(cleared, 2700);
}

TEST(EdgeClearing, EmptySlabsCostNothing) {
    for (const float step : {1e-6f, 1e-9f, 0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()}) {
        Cloud cloud = cloudOf({{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 0.0f}, {2.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 2.0f}});
        cloud.clearEdgeEffect(step);
        EXPECT_EQ(4, cloud.size()) << step;
    }
    Cloud edge =
        cloudOf({{0.0f, 5.0f, 0.0f}, {0.0f, 1.0f, 1.0f}, {1.0f, 0.0f, 1.0f}, {2.0f, 3.0f, 1.0f}, {0.0f, 0.0f, 2.0f}});
    edge.clearEdgeEffect(1e-9f);
    EXPECT_EQ(exact(QList<KxPointXYZ>{{0.0f, 1.0f, 1.0f}}), exact(edge.points));
}
