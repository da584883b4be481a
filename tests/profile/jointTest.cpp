// The joint between two plates, on simulated profiles.
#include "profileSupport.h"

using namespace testing_support;

namespace {

enum class Bottom { Missing, NaN, Flat, Rough, Slope };

struct Scene {
    float gap = 0.0f; // mm
    float step = 0.0f, spacing = 0.1f;
    float tilt = 0.0f; // of both plates
    float rightTilt = 0.0f; // added to the right one, about its edge
    float jointX = 0.0f; // where the left plate ends
    float length = 50.0f; // of the profile, from -length / 2
    Bottom bottom = Bottom::Missing;
    int missingPercent = 0, spikePercent = 0;

    float rightX() const { return jointX + gap; }
    float heightAt(float x) const {
        return 20.0f + tilt * x + (x >= rightX() ? step + rightTilt * (x - rightX()) : 0.0f);
    }
};

KxProfile scan(const Scene& scene, unsigned seed) {
    std::mt19937 engine(seed);
    std::normal_distribution<float> noise(0.0f, 0.02f);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    const float start = -0.5f * scene.length + scene.spacing * unit(engine);
    KxProfile profile;
    float x = start;
    for (int i = 1; x < 0.5f * scene.length; x = start + static_cast<float>(i++) * scene.spacing) {
        const bool isInGap = x > scene.jointX && x < scene.rightX();
        if (isInGap && scene.bottom == Bottom::Missing) {
            continue;
        }
        float y = scene.heightAt(x) + noise(engine);
        const float rough = isInGap && scene.bottom == Bottom::Rough ? 1.0f + 6.0f * unit(engine) : 0.0f;
        const float depths[] = {0.0f, kNaN, 4.0f, rough, 6.0f + (x - scene.jointX)};
        y -= isInGap ? depths[static_cast<int>(scene.bottom)] : 0.0f;
        y += 100.0f * unit(engine) < static_cast<float>(scene.spikePercent) ? 5.0f : 0.0f;
        y = 100.0f * unit(engine) < static_cast<float>(scene.missingPercent) ? kNaN : y;
        profile.points.append(KxPointXY(x, y));
    }
    return profile;
}

void expectJoint(const Scene& scene, unsigned seed) {
    KxProfile profile = scan(scene, seed);
    InputLog input;
    input.add(profile.points);
    const RoundReport report(seed, 0, input);
    const Points before = profile.points;
    KxPointCloud<KxPointXY> joint;
    joint.points.append(KxPointXY(9.0f, 9.0f));
    ASSERT_TRUE(profile.detectJoint(joint));
    EXPECT_EXACT(before, profile.points);
    ASSERT_EQ(2, joint.size());
    // Where points are missing or spikes at an edge, that edge cannot be seen; the last seen point counts.
    const bool hasLosses = scene.missingPercent > 0;
    float edges[] = {hasLosses ? -kInf : scene.jointX, hasLosses ? kInf : scene.rightX()};
    for (const KxPointXY& p : before) {
        if (hasLosses && std::isfinite(p.y)) {
            edges[0] = p.x <= scene.jointX ? std::max(edges[0], p.x) : edges[0];
            edges[1] = p.x >= scene.rightX() ? std::min(edges[1], p.x) : edges[1];
        }
    }
    const float tolerance = std::max(0.1f, scene.spacing);
    for (const int side : {0, 1}) {
        const KxPointXY p = joint.points[side];
        EXPECT_NEAR(p.x, edges[side], hasLosses ? tolerance + scene.spacing : tolerance * 1.0001f);
        const float rightX = scene.rightX();
        EXPECT_NEAR(p.y, 20.0f + scene.tilt * p.x + (side == 0 ? 0.0f : scene.step + scene.rightTilt * (p.x - rightX)),
                    0.03f);
    }
}

TEST(Joint, EdgesOfGapsAndSteps) {
    std::mt19937 engine(31);
    const auto between = [&](float a, float b) { return std::uniform_real_distribution<float>(a, b)(engine); };
    const auto pick = [&](std::initializer_list<float> list) { return list.begin()[engine() % list.size()]; };
    for (unsigned seed = 1; seed <= 250; ++seed) {
        Scene scene;
        scene.spacing = pick({0.03f, 0.05f, 0.1f, 0.2f});
        scene.length = pick({25.0f, 50.0f, 64.0f});
        scene.tilt = pick({0.0f, 0.05f, -0.3f, 1.0f, -2.0f});
        scene.rightTilt = pick({0.0f, 0.0f, 0.05f, -0.1f});
        scene.jointX = between(-0.2f, 0.2f) * scene.length;
        if (seed % 3 != 1) { // gap, step, both
            scene.gap = pick({0.5f, 0.5f, 3.0f, between(0.5f, 3.0f)});
            scene.bottom = static_cast<Bottom>(engine() % 5);
        }
        if (seed % 3 != 0) {
            scene.step = pick({0.3f, -0.3f, between(0.3f, 3.0f), between(-3.0f, -0.3f)});
        }
        if (seed % 5 == 0 && scene.spacing <= 0.1f) {
            scene.missingPercent = 2;
            scene.spikePercent = 1;
        }
        expectJoint(scene, seed);

        // One plate has none. With points further apart, two missing neighbours are a gap.
        Scene plate{.spacing = seed % 7 == 0 ? 0.5f : scene.spacing, .tilt = scene.tilt, .jointX = 1000.0f};
        plate.length = std::array{10.0f, 50.0f, 64.0f}[seed / 6 % 3];
        plate.missingPercent = plate.spacing <= 0.1f && seed % 2 == 0 ? 3 : 0;
        plate.spikePercent = plate.spacing <= 0.1f && seed % 3 == 0 ? 2 : 0;
        KxPointCloud<KxPointXY> joint;
        joint.points.append(KxPointXY(9.0f, 9.0f));
        KxProfile whole = scan(plate, seed);
        InputLog input;
        input.add(whole.points);
        const RoundReport report(seed, 0, input);
        EXPECT_FALSE(whole.detectJoint(joint)) << "spacing " << plate.spacing;
        EXPECT_EXACT(exact(Points{{9.0f, 9.0f}}), joint.points);
    }
}

TEST(Joint, TakesProfilesOfAnyKind) {
    KxPointCloud<KxPointXY> joint;
    for (int count : {0, 1, 9, 10, 200}) {
        for (const float v : {kNaN, kInf, 1.0f}) {
            KxProfile same = profileOf(Points(count, KxPointXY(v, v)));
            EXPECT_FALSE(same.detectJoint(joint)) << count << " points at " << v;
        }
    }
    Scene scene;
    scene.step = 1.0f;
    KxProfile profile = scan(scene, 3);
    ASSERT_TRUE(profile.detectJoint(joint));
    KxProfile shuffled(profile);
    shuffled.points += {{kInf, 1.0f}, {kNaN, 1.0f}, {0.0f, kInf}}; // not finite: left out
    std::shuffle(shuffled.points.begin(), shuffled.points.end(), std::mt19937(1));
    ASSERT_TRUE(shuffled.detectJoint(shuffled)); // into itself
    EXPECT_EXACT(joint.points, shuffled.points);
}

} // namespace
