// The tape query on simulated surfaces.
#include "support/testing.h"

#include <set>

using namespace testing_support;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

struct Scene {
    const char* desc;
    float width, tapeStart, spacing; // mm: of the surface, from its left end, between points
    float slope; // of the surface across
    float height; // of the tape; 0: no tape
    float min, max; // of the query
    int missingPercent, spikePercent;
};

constexpr float kTapeWidth = 20.0f, kRoughness = 0.1f;

/// Profiles 1 mm apart along z; `tape` receives x and z of the points on the tape.
Cloud scan(const Scene& scene, unsigned seed, std::set<std::array<float, 2>>& tape) {
    std::mt19937 engine(seed);
    std::normal_distribution<float> rough(0.0f, kRoughness);
    std::uniform_int_distribution<int> percent(0, 99);
    Cloud cloud;
    for (int profile = 0; profile < 12; ++profile) {
        const float z = 7.0f + static_cast<float>(profile);
        for (float x = 0.0f; x < scene.width; x += scene.spacing) {
            const bool isOnTape = scene.height > 0.0f && x >= scene.tapeStart && x <= scene.tapeStart + kTapeWidth;
            const bool isSpike = percent(engine) < scene.spikePercent;
            const bool isMissing = percent(engine) < scene.missingPercent;
            const float y = 50.0f + scene.slope * x + 0.02f * z + rough(engine) + (isOnTape ? scene.height : 0.0f) +
                            (isSpike ? 0.3f * static_cast<float>(percent(engine) - 50) : 0.0f);
            cloud.points.append(KxPointXYZ(x - 30.0f, isMissing ? kNaN : y, z));
            if (isOnTape && !isMissing && !isSpike) {
                tape.insert({x - 30.0f, z});
            }
        }
    }
    return cloud;
}

TEST(InsulatingTape, IsFoundOnARoughSurfaceAndNotInvented) {
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
        {"no tape", 100.0f, 0.0f, 0.1f, 0.1f, 0.0f, 0.5f, 1.5f, 5, 2},
        {"no tape, smooth", 100.0f, 0.0f, 0.1f, 0.0f, 0.0f, 0.5f, 1.5f, 0, 0},
    };
    for (const Scene& scene : scenes) {
        for (unsigned seed = 1; seed <= 4; ++seed) {
            const float step = seed % 2 == 0 ? 1.0f : 3.0f;
            SCOPED_TRACE(testing::Message() << scene.desc << ", slabs of " << step);
            std::set<std::array<float, 2>> truth;
            Cloud cloud = scan(scene, seed, truth), tape;
            InputLog input;
            input.add(cloud.points);
            const RoundReport report(seed, 0, input);
            tape.points.append(KxPointXYZ());
            const int count = cloud.extractInsulatingTape(tape, step, scene.min, scene.max);
            ASSERT_EQ(count + 1, tape.size());
            const auto right = std::ranges::count_if(tape.points, [&](const KxPointXYZ& p) {
                return truth.count({p.x, p.z}) > 0;
            });
            const auto expected = static_cast<double>(truth.size());
            EXPECT_GE(static_cast<double>(right), expected * 0.95);
            EXPECT_LE(static_cast<double>(count - right), expected * 0.02);
        }
    }
}

TEST(InsulatingTape, LeavesTheCloudAndAppendsToTheTape) {
    std::set<std::array<float, 2>> truth;
    Cloud cloud = scan({"", 60.0f, 20.0f, 0.2f, 0.0f, 1.0f, 0.5f, 1.5f, 3, 0}, 5, truth);
    cloud.points.append(KxPointXYZ(kInf, 0.0f, 0.0f));
    const SpacePoints before = cloud.points;
    Cloud tape;
    tape.zIndexBuilt = 1;
    const int count = cloud.extractInsulatingTape(tape, 1.0f, 0.5f, 1.5f);
    EXPECT_EXACT(before, cloud.points);
    EXPECT_EXACT(exactRange(Cloud()), exactRange(cloud));
    EXPECT_EQ(0, tape.zIndexBuilt);
    EXPECT_EQ(count, cloud.extractInsulatingTape(cloud, 1.0f, 0.5f, 1.5f)); // onto itself
    EXPECT_EXACT(before + tape.points, cloud.points);
    Cloud flat, few, narrow;
    for (const float step : {0.0f, -1.0f, kNaN}) {
        EXPECT_EQ(0, cloud.extractInsulatingTape(few, step, 0.5f, 1.5f));
    }
    // Exact heights: no roughness at all.
    flat.points = pointsFor(100, [](int i) { return at(i, i >= 40 && i < 60 ? 3 : 2, 0); });
    EXPECT_EQ(20, flat.extractInsulatingTape(few, 1e-30f, 0.5f, 1.5f));
    narrow.points.fill(KxPointXYZ(1.0f, 2.0f, 0.0f), 50); // all above each other
    EXPECT_EQ(0, narrow.extractInsulatingTape(few, 1.0f, 0.5f, 1.5f));
}

} // namespace
