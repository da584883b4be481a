// From the plane of a sensor to the track frame.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace KxMath;
using testing_support::exact;
using testing_support::Nasty;

namespace {

constexpr float kPiF = 3.1415927410125732f;

float radians(float deg) {
    return static_cast<float>(static_cast<double>(deg) * std::numbers::pi / 180.0);
}

} // namespace

TEST(XYtoXYZ, AxesOfQuarterTurns) {
    // Where (px, py) = (2, 3) goes, by hand: u and v of the angles.
    const float half = std::sqrt(0.75f);
    const struct {
        float alpha, beta, gamma; // degrees
        float x, y, z;
    } kCases[] = {
        {0, 0, 0, 3, 0, 2}, // no turn: py is X, px is Z
        {90, 0, 0, 2, 0, -3}, // py is -Z, px is X
        {0, 90, 0, 0, 3, 2}, // py is Y
        {0, 0, 90, 3, -2, 0}, // px is -Y
        {90, 60, 30, 2 * half, 1, -3}, // beta and gamma turn against each other
        {-90, 30, 60, 0, -2, 3},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.alpha << ' ' << c.beta << ' ' << c.gamma);
        KxProfile p, none;
        p.points = {KxPointXY(2, 3), KxPointXY(0, 0)};
        _KxMETRO_SensorCoord_ degrees{10, 20, 30, c.alpha, c.beta, c.gamma, 2};
        _KxMETRO_SensorCoord_ inRadians{10, 20, 30, radians(c.alpha), radians(c.beta), radians(c.gamma), 2};
        KxPointCloud<KxPointXYZ> cloud;
        cloud.points = {KxPointXYZ(7, 8, 9)}; // stays
        METRO_XYtoXYZ(p, cloud, degrees);
        METRO_XYtoXYZ(none, cloud, degrees);
        METRO_XYtoXYZ(p, cloud, inRadians, 50.0f, 4.0f, 0);
        METRO_XYtoXYZ(none, cloud, degrees, 50.0f, 4.0f, 1);
        ASSERT_EQ(cloud.size(), 5);
        EXPECT_EQ(exact(cloud.points[0]), exact(7, 8, 9));
        for (const auto& [at, roll] : {std::pair{1, 0.0f}, {3, 50.0f}}) {
            EXPECT_NEAR(cloud.points[at].x, 10 + c.x + roll, 1e-5f);
            EXPECT_NEAR(cloud.points[at].y, 20 + c.y, 1e-5f);
            EXPECT_NEAR(cloud.points[at].z, 30 + c.z, 1e-5f);
            EXPECT_EQ(exact(cloud.points[at + 1]), exact(10 + roll, 20, 30));
        }
    }
}

TEST(XYtoXYZ, DoublePrecisionRoundedOnce) {
    Nasty nasty(52);
    for (int round = 0; round < 300; ++round) {
        nasty.nextCase();
        _KxMETRO_SensorCoord_ k{nasty.value(), nasty.value(), nasty.value(), nasty.value(),
                                nasty.value(), nasty.value(), nasty.below(6)};
        const float radius = nasty.value();
        const float step = nasty.value();
        const int index = nasty.pick(std::array{0, 1, -3, 700, std::numeric_limits<int>::min()});
        KxProfile p;
        p.points = nasty.points<KxPointXY>(nasty.size(20));
        for (const bool isRolling : {false, true}) {
            const auto angle = [&](float v) { // the product before the quotient
                return isRolling ? static_cast<double>(v) : static_cast<double>(v) * static_cast<double>(kPiF) / 180.0;
            };
            const double a = angle(k.alpha), b = angle(k.beta), c = angle(k.gamma);
            const double R = static_cast<double>(radius), s = static_cast<double>(step);
            const double phi = -(s / R) * index;
            const double Dx = isRolling ? R * std::cos(phi) - index * s : 0.0;
            const double Dz = isRolling ? R * std::sin(phi) : 0.0;
            KxPointCloud<KxPointXYZ> cloud;
            if (isRolling) {
                METRO_XYtoXYZ(p, cloud, k, radius, step, index);
            } else {
                METRO_XYtoXYZ(p, cloud, k);
            }
            ASSERT_EQ(cloud.size(), p.size());
            for (int i = 0; i < p.size(); ++i) {
                const double px = static_cast<double>(p.points[i].x), py = static_cast<double>(p.points[i].y);
                const double X = (sin(a) * cos(b) * cos(c) + sin(b) * sin(c)) * px + static_cast<double>(k.x) +
                                 cos(a) * cos(b) * py + Dx;
                const double Y =
                    (sin(a) * sin(b) * cos(c) - sin(c) * cos(b)) * px + static_cast<double>(k.y) + cos(a) * sin(b) * py;
                const double Z = cos(a) * cos(c) * px + static_cast<double>(k.z) - sin(a) * py + Dz;
                const KxPointXYZ expected(static_cast<float>(X), static_cast<float>(Y), static_cast<float>(Z));
                ASSERT_EQ(exact(cloud.points[i]), exact(expected)) << "round " << round << ", point " << i;
            }
        }
    }
}
