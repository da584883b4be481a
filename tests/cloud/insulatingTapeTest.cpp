// The tape query on simulated surfaces.
#include "support/bits.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

using namespace KxMath;
using testing_support::exact;
using testing_support::exactRange;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct Scene {
    const char* desc;
    float width; // mm, of the surface
    float tapeStart; // mm, from its left end
    float spacing; // mm, between points
    float slope; // of the surface across
    float height; // of the tape; 0: no tape
    float min, max; // asked for
    int missingPercent;
    int spikePercent;
};

constexpr float kTapeWidth = 20.0f;
constexpr float kRoughness = 0.1f;

/// Profiles 1 mm apart along z; `isTape` tells for each point whether it lies on the tape.
Cloud scan(const Scene& scene, unsigned seed, std::vector<bool>& isTape) {
    std::mt19937 engine(seed);
    std::normal_distribution<float> rough(0.0f, kRoughness);
    std::uniform_int_distribution<int> percent(0, 99);
    Cloud cloud;
    for (int profile = 0; profile < 12; ++profile) {
        for (float x = 0.0f; x < scene.width; x += scene.spacing) {
            const bool isOnTape = scene.height > 0.0f && x >= scene.tapeStart && x <= scene.tapeStart + kTapeWidth;
            float y = 50.0f + scene.slope * x + 0.02f * static_cast<float>(profile) + rough(engine);
            y += isOnTape ? scene.height : 0.0f;
            const bool isSpike = percent(engine) < scene.spikePercent;
            if (isSpike) {
                y += 0.3f * static_cast<float>(percent(engine) - 50);
            }
            const bool isMissing = percent(engine) < scene.missingPercent;
            cloud.points.append(KxPointXYZ(x - 30.0f, isMissing ? kNaN : y, static_cast<float>(profile)));
            isTape.push_back(isOnTape && !isMissing && !isSpike);
        }
    }
    return cloud;
}

} // namespace

TEST(InsulatingTape, IsFoundOnARoughSurface) {
    const Scene scenes[] = {
        {"middle", 100.0f, 40.0f, 0.1f, 0.0f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"tilted", 100.0f, 10.0f, 0.1f, 0.4f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"at the end", 60.0f, 40.0f, 0.1f, -0.1f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"fine", 70.0f, 20.0f, 0.05f, 0.0f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"coarse", 150.0f, 70.0f, 0.5f, 0.05f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"nearly half", 45.0f, 12.0f, 0.1f, 0.0f, 1.0f, 0.5f, 1.5f, 0, 0},
        {"tight bounds", 100.0f, 30.0f, 0.1f, 0.0f, 1.0f, 0.9f, 1.1f, 0, 0},
        {"one bound", 100.0f, 30.0f, 0.1f, 0.0f, 1.0f, 0.5f, kNaN, 0, 0},
        {"missing points", 100.0f, 30.0f, 0.1f, 0.1f, 1.0f, 0.5f, 1.5f, 10, 0},
        {"spikes", 100.0f, 30.0f, 0.1f, 0.1f, 1.0f, 0.5f, 1.5f, 0, 5},
    };
    for (const Scene& scene : scenes) {
        for (const float step : {1.0f, 3.0f}) {
            for (unsigned seed = 1; seed <= 2; ++seed) {
                SCOPED_TRACE(::testing::Message() << scene.desc << ", slabs of " << step << ", seed " << seed);
                std::vector<bool> isTape;
                Cloud cloud = scan(scene, seed, isTape);
                std::set<std::array<float, 2>> truth;
                int expected = 0;
                for (qsizetype i = 0; i < cloud.points.size(); ++i) {
                    if (isTape[static_cast<std::size_t>(i)]) {
                        truth.insert({cloud.points[i].x, cloud.points[i].z});
                        ++expected;
                    }
                }
                Cloud tape;
                tape.points.append(KxPointXYZ());
                const int count = cloud.extractInsulatingTape(tape, step, scene.min, scene.max);
                ASSERT_EQ(count + 1, tape.size());
                int right = 0;
                for (const KxPointXYZ& p : tape.points) {
                    right += static_cast<int>(truth.count({p.x, p.z}));
                }
                EXPECT_GE(right, expected * 0.95);
                EXPECT_LE(count - right, expected * 0.02);
            }
        }
    }
}

TEST(InsulatingTape, IsNotInvented) {
    const Scene bare{"", 100.0f, 0.0f, 0.1f, 0.1f, 0.0f, 0.5f, 1.5f, 5, 2};
    for (unsigned seed = 1; seed <= 8; ++seed) {
        std::vector<bool> isTape;
        Cloud cloud = scan(bare, seed, isTape);
        Cloud tape;
        EXPECT_EQ(0, cloud.extractInsulatingTape(tape, 1.0f, bare.min, bare.max)) << seed;
    }
}

TEST(InsulatingTape, LeavesTheCloudAndAppendsToTheTape) {
    std::vector<bool> isTape;
    Cloud cloud = scan({"", 60.0f, 20.0f, 0.2f, 0.0f, 1.0f, 0.5f, 1.5f, 3, 0}, 5, isTape);
    cloud.points.append(KxPointXYZ(std::numeric_limits<float>::infinity(), 0.0f, 0.0f));
    const QList<KxPointXYZ> before = cloud.points;
    Cloud tape;
    tape.zIndexBuilt = 1;
    const int count = cloud.extractInsulatingTape(tape, 1.0f, 0.5f, 1.5f);
    EXPECT_EQ(exact(before), exact(cloud.points));
    EXPECT_EQ(exactRange(Cloud()), exactRange(cloud));
    EXPECT_EQ(0, tape.zIndexBuilt);
    EXPECT_EQ(count, cloud.extractInsulatingTape(cloud, 1.0f, 0.5f, 1.5f)); // onto itself
    EXPECT_EQ(before.size() + count, cloud.points.size());
    EXPECT_EQ(exact(tape.points), exact(cloud.points.mid(before.size())));
    Cloud flat, few;
    for (const float step : {0.0f, -1.0f, kNaN}) {
        EXPECT_EQ(0, cloud.extractInsulatingTape(few, step, 0.5f, 1.5f));
    }
    for (int i = 0; i < 100; ++i) { // exact heights: no roughness at all
        flat.points.append(KxPointXYZ(static_cast<float>(i), i >= 40 && i < 60 ? 3.0f : 2.0f, 0.0f));
    }
    EXPECT_EQ(20, flat.extractInsulatingTape(few, 1e-30f, 0.5f, 1.5f));
    Cloud narrow; // all points above each other
    narrow.points.fill(KxPointXYZ(1.0f, 2.0f, 0.0f), 50);
    EXPECT_EQ(0, narrow.extractInsulatingTape(few, 1.0f, 0.5f, 1.5f));
}
