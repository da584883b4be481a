// The joint between two plates, on simulated profiles.
#include "support/bits.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace KxMath;
using testing_support::exact;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kNoise = 0.02f;

enum class Bottom { Missing, NaN, Flat, Rough, Slope };

struct Scene {
    float gap = 0.0f; // mm
    float step = 0.0f;
    float spacing = 0.1f;
    float tilt = 0.0f; // of both plates
    float rightTilt = 0.0f; // added to the right one, about its edge
    float jointX = 0.0f; // where the left plate ends
    float length = 50.0f; // of the profile, from -length / 2
    Bottom bottom = Bottom::Missing;
    int missingPercent = 0;
    int spikePercent = 0;
};

KxProfile scan(const Scene& scene, unsigned seed) {
    std::mt19937 engine(seed);
    std::normal_distribution<float> noise(0.0f, kNoise);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    const float start = -0.5f * scene.length + scene.spacing * unit(engine);
    KxProfile profile;
    for (int i = 0; start + static_cast<float>(i) * scene.spacing < 0.5f * scene.length; ++i) {
        const float x = start + static_cast<float>(i) * scene.spacing;
        const float rightX = scene.jointX + scene.gap;
        float y = 20.0f + scene.tilt * x + noise(engine);
        if (x > scene.jointX && x < rightX) {
            switch (scene.bottom) {
            case Bottom::Missing:
                continue;
            case Bottom::NaN:
                y = kNaN;
                break;
            case Bottom::Flat:
                y -= 4.0f;
                break;
            case Bottom::Rough:
                y -= 1.0f + 6.0f * unit(engine);
                break;
            case Bottom::Slope:
                y -= 6.0f + (x - scene.jointX);
                break;
            }
        } else if (x >= rightX) {
            y += scene.step + scene.rightTilt * (x - rightX);
        }
        if (100.0f * unit(engine) < static_cast<float>(scene.spikePercent)) {
            y += 5.0f;
        }
        if (100.0f * unit(engine) < static_cast<float>(scene.missingPercent)) {
            y = kNaN;
        }
        profile.points.append(KxPointXY(x, y));
    }
    return profile;
}

/// The x of the outermost point of a plate that can be seen at all.
float seenEdge(const KxProfile& profile, const Scene& scene, bool isLeft) {
    float edge = isLeft ? -1e9f : 1e9f;
    for (const KxPointXY& p : profile.points) {
        if (std::isfinite(p.y) && (isLeft ? p.x <= scene.jointX : p.x >= scene.jointX + scene.gap)) {
            edge = isLeft ? std::max(edge, p.x) : std::min(edge, p.x);
        }
    }
    return edge;
}

void expectJoint(const Scene& scene, unsigned seed) {
    SCOPED_TRACE(::testing::Message() << "gap " << scene.gap << ", step " << scene.step << ", spacing " << scene.spacing
                                      << ", tilt " << scene.tilt << " + " << scene.rightTilt << ", at " << scene.jointX
                                      << ", bottom " << static_cast<int>(scene.bottom) << ", missing "
                                      << scene.missingPercent << ", spikes " << scene.spikePercent << ", seed "
                                      << seed);
    KxProfile profile = scan(scene, seed);
    const QList<KxPointXY> before = profile.points;
    KxPointCloud<KxPointXY> joint;
    joint.points.append(KxPointXY(9.0f, 9.0f));
    ASSERT_TRUE(profile.detectJoint(joint));
    EXPECT_EQ(exact(before), exact(profile.points));
    ASSERT_EQ(2, joint.size());
    const KxPointXY left = joint.points[0];
    const KxPointXY right = joint.points[1];
    const float tolerance = std::max(0.1f, scene.spacing);
    const float rightX = scene.jointX + scene.gap;
    // Where points are missing or spikes at an edge, that edge cannot be seen; the last seen point counts.
    const bool hasLosses = scene.missingPercent > 0 || scene.spikePercent > 0;
    const float leftTruth = hasLosses ? seenEdge(profile, scene, true) : scene.jointX;
    const float rightTruth = hasLosses ? seenEdge(profile, scene, false) : rightX;
    EXPECT_NEAR(left.x, leftTruth, hasLosses ? tolerance + scene.spacing : tolerance * 1.0001f);
    EXPECT_NEAR(right.x, rightTruth, hasLosses ? tolerance + scene.spacing : tolerance * 1.0001f);
    EXPECT_NEAR(left.y, 20.0f + scene.tilt * left.x, 0.03f);
    EXPECT_NEAR(right.y, 20.0f + scene.tilt * right.x + scene.step + scene.rightTilt * (right.x - rightX), 0.03f);
}

} // namespace

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
        const unsigned kind = seed % 3; // gap, step, both
        if (kind != 1) {
            scene.gap = pick({0.5f, 0.5f, 3.0f, between(0.5f, 3.0f)});
            scene.bottom = static_cast<Bottom>(engine() % 5);
        }
        if (kind != 0) {
            scene.step = pick({0.3f, -0.3f, between(0.3f, 3.0f), between(-3.0f, -0.3f)});
        }
        if (seed % 5 == 0 && scene.spacing <= 0.1f) {
            scene.missingPercent = 2;
            scene.spikePercent = 1;
        }
        expectJoint(scene, seed);
    }
}

TEST(Joint, NotOnOnePlate) {
    std::mt19937 engine(32);
    const auto pick = [&](std::initializer_list<float> list) { return list.begin()[engine() % list.size()]; };
    for (unsigned seed = 1; seed <= 250; ++seed) {
        Scene scene;
        scene.spacing = pick({0.03f, 0.05f, 0.1f, 0.2f, 0.5f});
        scene.length = pick({10.0f, 50.0f, 64.0f});
        scene.tilt = pick({0.0f, 0.05f, -0.3f, 1.0f, -2.0f});
        scene.jointX = 1000.0f;
        if (scene.spacing <= 0.1f) { // further apart, two missing neighbours are a gap
            scene.missingPercent = seed % 2 == 0 ? 3 : 0;
            scene.spikePercent = seed % 3 == 0 ? 2 : 0;
        }
        KxProfile profile = scan(scene, seed);
        KxPointCloud<KxPointXY> joint;
        joint.points.append(KxPointXY(9.0f, 9.0f));
        EXPECT_FALSE(profile.detectJoint(joint)) << "seed " << seed << ", spacing " << scene.spacing << ", length "
                                                 << scene.length << ", tilt " << scene.tilt;
        EXPECT_EQ(exact(QList<KxPointXY>{{9.0f, 9.0f}}), exact(joint.points));
    }
}

TEST(Joint, TakesProfilesOfAnyKind) {
    KxPointCloud<KxPointXY> joint;
    for (int count : {0, 1, 9, 10, 200}) {
        const float kinds[] = {kNaN, std::numeric_limits<float>::infinity(), 1.0f};
        for (const float v : kinds) {
            KxProfile same;
            same.points.fill(KxPointXY(v, v), count);
            EXPECT_FALSE(same.detectJoint(joint)) << count << " points at " << v;
        }
    }
    Scene scene;
    scene.step = 1.0f;
    KxProfile profile = scan(scene, 3);
    ASSERT_TRUE(profile.detectJoint(joint));
    KxProfile shuffled(profile);
    std::shuffle(shuffled.points.begin(), shuffled.points.end(), std::mt19937(1));
    ASSERT_TRUE(shuffled.detectJoint(shuffled)); // into itself
    EXPECT_EQ(exact(joint.points), exact(shuffled.points));
}
